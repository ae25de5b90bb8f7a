// host.h - the emulated CAD host: one object holding everything the module
// can reach through host/ads.h (registered functions, the call in progress,
// system variables, the command language, the drawing's tables, the
// transcript) and the user it asks. The ads_* functions act on the current
// host; vorhost makes one, tests make one per test.
#ifndef VORHOST_HOST_H
#define VORHOST_HOST_H

#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/commands/command.h"
#include "emulator/core/sysvars.h"
#include "emulator/dialogs/dialogs.h"
#include "emulator/drawing/document.h"
#include "emulator/lisp/interp.h"
#include "emulator/ui/transcript.h"
#include "emulator/ui/user.h"
#include "host/ads.h"

namespace vorhost {

// The module's exported entry point, as the host calls it.
using EntryPoint = int (*)(int msg, void* pkt);

// A call of a registered function while the module runs it.
struct ModuleCall {
  int code = 0;
  resbuf* args = nullptr;          // owned by the host, freed after the call
  lisp::Value result;              // set by ads_ret*; void until then
  std::optional<std::string> failure;  // set by ads_fail
};

class Host {
 public:
  // A host with a new drawing and no module, printing its transcript to
  // out (not owned; may be null). It becomes the current host.
  explicit Host(std::ostream* out = nullptr);
  // Unloads the module if it is loaded; the previous host becomes current.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // The host that the ads_* functions act on; null when there is none.
  static Host* Current();

  Transcript& transcript() { return transcript_; }
  Document& document() { return document_; }
  lisp::Interpreter& lisp() { return *lisp_; }
  DialogManager& dialogs() { return *dialogs_; }

  // The user is not owned. With none, every question is cancelled.
  void set_user(User* user) { user_ = user; }
  User* user() const { return user_; }

  // ---- The module --------------------------------------------------------
  // Loads the module: messages 1 (load) and 3 (drawing opened).
  void LoadModule(EntryPoint entry);
  // Messages 4 (drawing closing) and 2 (unload).
  void UnloadModule();
  bool module_loaded() const { return entry_ != nullptr; }
  // Closes the drawing (message 4) and opens a new one (message 3): the
  // command language starts afresh, as the host does for each drawing.
  void NewDrawing();
  // Replaces the drawing by the DXF file at linux_path, with the header
  // variables it holds, as NewDrawing does; false with *err (and the drawing
  // unchanged) when the file cannot be read.
  bool OpenDrawing(const std::string& linux_path, std::string* err);
  // The application pointer handed over with message 1; acrxUnlockApplication
  // with it allows the host to unload the module.
  void* app_id() { return &app_id_; }
  void UnlockApplication(void* app_id);
  bool unlocked() const { return unlocked_; }

  // ---- Registered functions (ads_defun, ads_undef) -----------------------
  int Defun(std::string_view name, short code);
  int Undef(std::string_view name, short code);
  // Registered name -> code, for the drawing now open.
  std::optional<short> RegisteredCode(std::string_view name) const;

  // Runs a registered function's code in the module (message 5) with the
  // given arguments. False with *err when the module failed the call
  // (ads_fail) or no module is loaded.
  bool CallModule(int code, const std::vector<lisp::Value>& args, lisp::Value* result,
                  std::string* err);
  // The call in progress, or null.
  ModuleCall* call() { return calls_.empty() ? nullptr : calls_.back().get(); }

  // ---- Commands ------------------------------------------------------------
  bool command_pending() const { return command_ != nullptr; }
  // Feeds a program's answers (ads_command): the first text starts a
  // command when none is pending; a command may stay pending after the
  // last item. RTNORM, or RTREJ when an answer was refused (the command is
  // cancelled) or the command is unknown. Prompts and answers are shown
  // when CMDECHO is not 0; refusals always.
  int FeedCommand(const std::vector<Answer>& items);
  // Lets the user answer a pending command until it ends.
  void FinishCommand();
  // Cancels a pending command.
  void CancelCommand();
  // Text a command prints, such as "Linetype DASHED loaded.": shown when
  // the command's prompts are.
  void CommandMessage(std::string_view text);

  // ---- The command line --------------------------------------------------
  // Shows prompt (Big5) and reads the user's answer, echoing it. An answer
  // while no user is set is a cancel.
  Input Ask(std::string_view prompt, Asking asking = Asking::kPrompt);
  // Whether answers are printed after their prompts (a script's are; a
  // terminal shows what a person types by itself).
  void set_echo_answers(bool echo) { echo_answers_ = echo; }
  // Executes one line typed at the command prompt (Big5): an expression,
  // "!symbol", or a command name.
  void Execute(std::string_view line);
  // Reads and executes command lines until the user's input ends.
  void Run();
  // The value of the last expression typed at the command prompt.
  const lisp::Value& last_value() const { return last_value_; }

  // An alert box with message (Big5).
  void Alert(std::string_view message);

 private:
  void DefineBuiltins();
  // Closes the drawing (message 4), puts in the new one, starts the command
  // language afresh and opens it (message 3).
  void ReplaceDocument(Document document);
  void EvaluateLine(std::string_view line);
  void RunCommand(std::string_view name);
  bool StartCommand(std::string_view typed, bool echo);
  void RegisterInLisp(const std::string& name, short code);

  Transcript transcript_;
  Document document_;
  std::unique_ptr<lisp::Interpreter> lisp_;
  std::unique_ptr<DialogManager> dialogs_;
  User* user_ = nullptr;
  Host* previous_ = nullptr;

  EntryPoint entry_ = nullptr;
  int app_id_ = 0;
  bool unlocked_ = false;
  bool drawing_open_ = true;
  std::vector<std::pair<std::string, short>> registered_;
  std::vector<std::unique_ptr<ModuleCall>> calls_;
  lisp::Value last_value_;
  bool echo_answers_ = true;

  std::unique_ptr<Command> command_;
  bool command_echo_ = true;  // prompts and answers of the pending command shown
};

}  // namespace vorhost

#endif
