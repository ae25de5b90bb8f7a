// module_link.h - the host's side of the module's entry point: loading and
// unloading the module (messages 1 to 4), the functions it registers for
// the drawing that is open, and the calls of them under way (message 5).
// The module is a shared library the link loads and owns (LoadApplication,
// LoadFile), or an entry point linked into the program (Load, for tests).
// The host holds one module at a time.
#ifndef VORHOST_SESSION_MODULE_LINK_H
#define VORHOST_SESSION_MODULE_LINK_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "emulator/core/resbuf.h"
#include "emulator/lisp/interp.h"
#include "emulator/platform/shared_library.h"

namespace vorhost {

// The module's exported entry point, as the host calls it.
using EntryPoint = int (*)(int msg, void* pkt);

// A call of a registered function while the module runs it.
struct ModuleCall {
  int code = 0;
  RbList args;                         // the arguments, the host's: freed when the call ends
  lisp::Value result;                  // set by ads_ret*; void until then
  std::optional<std::string> failure;  // set by ads_fail
};

class ModuleLink {
 public:
  // The module's registered functions are defined in lisp as functions that
  // call the module (lisp is not owned and must outlive the link).
  explicit ModuleLink(lisp::Interpreter& lisp) : lisp_(lisp) {}
  ModuleLink(const ModuleLink&) = delete;
  ModuleLink& operator=(const ModuleLink&) = delete;

  // Loads the module at entry, unloading one that is loaded: message 1
  // with the application pointer, then 3 for the drawing that is open.
  void Load(EntryPoint entry);
  // Messages 4 and 2; the module's functions are gone from the language.
  // A module loaded from a file is closed when it has unlocked itself, and
  // stays in the process to its end otherwise.
  void Unload();
  bool loaded() const { return entry_ != nullptr; }

  // ARXLOAD: the module file name stands for (FindApplication), loaded
  // with LoadFile. False with *err, the message for the user, when it is
  // not found or refused.
  bool LoadApplication(std::string_view name, std::string* err);
  // Loads the shared library at linux_path as the module: it must export
  // acrxEntryPoint and acrxGetApiVersion, the latter answering this host's
  // ACRX_API_VERSION, and no module may be loaded. Then as Load. False
  // with *err, and nothing loaded, otherwise.
  bool LoadFile(const std::string& linux_path, std::string* err);
  // ARXUNLOAD: unloads the module name stands for (its file name, with or
  // without folder and extension, letters in any case) as Unload does.
  // Refused, false with *err, when no such module is loaded, when it has
  // not unlocked itself, or while a call of it is under way.
  bool UnloadApplication(std::string_view name, std::string* err);
  // The file names of the modules loaded from files, as (arx) lists them.
  std::vector<std::string> Applications() const;

  // The drawing closes: message 4, and its registrations go. Then a new
  // one opens: message 3, in which the module registers afresh.
  void CloseDrawing();
  void OpenDrawing();

  // The application pointer handed over with message 1;
  // acrxUnlockApplication with it allows the host to unload the module.
  void* app_id() { return &app_id_; }
  void Unlock(void* app_id);
  bool unlocked() const { return unlocked_; }

  // ads_defun and ads_undef: RTNORM or RTERROR. Names are case-blind.
  int Defun(std::string_view name, short code);
  int Undef(std::string_view name, short code);
  // The code registered under name for the drawing that is open.
  std::optional<short> RegisteredCode(std::string_view name) const;
  // The names registered for the drawing that is open, in upper case.
  std::vector<std::string> RegisteredNames() const;

  // Runs code in the module (message 5) with the arguments as a result
  // buffer list. False with *err when the module failed the call
  // (ads_fail) or none is loaded.
  bool Call(int code, const std::vector<lisp::Value>& args, lisp::Value* result, std::string* err);
  // The innermost call under way, or null.
  ModuleCall* call() { return calls_.empty() ? nullptr : calls_.back().get(); }

 private:
  void DropRegistrations();

  lisp::Interpreter& lisp_;
  EntryPoint entry_ = nullptr;
  std::unique_ptr<SharedLibrary> library_;  // null for a module linked in
  std::string name_;                        // the library's file name
  int app_id_ = 0;
  bool unlocked_ = false;
  bool drawing_open_ = true;
  std::vector<std::pair<std::string, short>> registered_;  // upper-case names
  std::vector<std::unique_ptr<ModuleCall>> calls_;          // innermost last
};

}  // namespace vorhost

#endif
