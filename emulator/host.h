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
#include "emulator/session/module_link.h"
#include "emulator/ui/transcript.h"
#include "emulator/ui/user.h"
#include "host/ads.h"

namespace vorhost {

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
  lisp::Interpreter& lisp() { return lisp_; }
  ModuleLink& module() { return link_; }
  DialogManager& dialogs() { return *dialogs_; }

  // The user is not owned. With none, every question is cancelled.
  void set_user(User* user) { user_ = user; }
  User* user() const { return user_; }

  // ---- The module --------------------------------------------------------
  // Loads the module (module().Load) for the drawing that is open.
  void LoadModule(EntryPoint entry) { link_.Load(entry); }
  void UnloadModule() { link_.Unload(); }
  // Closes the drawing (message 4) and opens a new one (message 3): the
  // command language starts afresh, as the host does for each drawing.
  void NewDrawing();
  // Replaces the drawing by the DXF file at linux_path, with the header
  // variables it holds, as NewDrawing does; false with *err (and the drawing
  // unchanged) when the file cannot be read.
  bool OpenDrawing(const std::string& linux_path, std::string* err);

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

  Transcript transcript_;
  Document document_;
  lisp::Interpreter lisp_;
  ModuleLink link_;
  std::unique_ptr<DialogManager> dialogs_;
  User* user_ = nullptr;
  Host* previous_ = nullptr;

  lisp::Value last_value_;
  bool echo_answers_ = true;

  std::unique_ptr<Command> command_;
  bool command_echo_ = true;  // prompts and answers of the pending command shown
};

}  // namespace vorhost

#endif
