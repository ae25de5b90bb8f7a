// command_runner.h - the host's command in progress: started by a name
// typed at the command prompt or sent by a program (ads_command), fed one
// answer at a time by the user or by programs, left pending between two
// calls of a program, finished by the user, or cancelled. It is the
// context the commands work in.
#ifndef VORHOST_SESSION_COMMAND_RUNNER_H
#define VORHOST_SESSION_COMMAND_RUNNER_H

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "emulator/commands/command.h"
#include "emulator/core/transcript.h"
#include "emulator/dialogs/dialogs.h"
#include "emulator/session/console.h"
#include "emulator/session/module_link.h"

namespace vorhost {

class CommandRunner : public CommandContext {
 public:
  // session_command runs the commands that act on the whole session
  // (NEW replaces the document and the command language, QUIT ends the
  // command line, ...), given the name in upper case; false for a name
  // that is none of them. None of the references is owned.
  CommandRunner(Transcript& transcript, Console& console, Document& document,
                const DialogManager& dialogs, ModuleLink& module,
                std::function<bool(const std::string&)> session_command)
      : transcript_(transcript), console_(console), document_(document), dialogs_(dialogs),
        module_(module), session_command_(std::move(session_command)) {}
  CommandRunner(const CommandRunner&) = delete;
  CommandRunner& operator=(const CommandRunner&) = delete;

  bool pending() const { return command_ != nullptr; }

  // A command typed at the command prompt, run until it ends (the user
  // answers its prompts); false for a name that is no command.
  bool Run(std::string_view typed);
  // Feeds a program's answers (ads_command): the first text starts a
  // command when none is pending; a command may stay pending after the
  // last item. RTNORM; RTREJ when an answer was refused (the command is
  // cancelled) or the command is unknown; RTCAN when the user cancelled a
  // PAUSE; RTERROR while a dialog is open. Prompts and answers are shown
  // when CMDECHO is not 0; refusals always.
  int Feed(const std::vector<Answer>& items);
  // Lets the user answer a pending command until it ends.
  void Finish();
  // Cancels a pending command.
  void Cancel();

  // CommandContext.
  Document& document() override { return document_; }
  void Message(std::string_view text) override;
  bool LoadApplication(std::string_view name, std::string* why) override {
    return module_.LoadApplication(name, why);
  }
  bool UnloadApplication(std::string_view name, std::string* why) override {
    return module_.UnloadApplication(name, why);
  }

 private:
  // Starts the command typed; false (and a message) for an unknown one.
  bool Start(std::string_view typed, bool echo);
  // One of a program's answers to the pending command; RTNORM to go on.
  int FeedOne(const Answer& item);

  Transcript& transcript_;
  Console& console_;
  Document& document_;
  const DialogManager& dialogs_;
  ModuleLink& module_;
  std::function<bool(const std::string&)> session_command_;
  std::unique_ptr<Command> command_;
  bool echo_ = true;  // prompts and answers of the pending command shown
};

}  // namespace vorhost

#endif
