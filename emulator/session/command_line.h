// command_line.h - the command prompt: the user's lines at "Command: ",
// each an expression of the command language (printed with its value), a
// symbol's value asked as "!name", or a command run until it ends.
#ifndef VORHOST_SESSION_COMMAND_LINE_H
#define VORHOST_SESSION_COMMAND_LINE_H

#include <functional>
#include <string>
#include <string_view>

#include "emulator/core/transcript.h"
#include "emulator/lisp/interp.h"
#include "emulator/session/command_runner.h"
#include "emulator/session/console.h"

namespace vorhost {

class CommandLine {
 public:
  // None of the references is owned.
  CommandLine(Transcript& transcript, Console& console, lisp::Interpreter& lisp, CommandRunner& runner)
      : transcript_(transcript), console_(console), lisp_(lisp), runner_(runner) {}
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  // Executes one line typed at the command prompt (Big5): an expression,
  // "!symbol", or a command name.
  void Execute(std::string_view line);
  // Reads and executes command lines until the user's input ends.
  void Run();
  // Ends Run after the line under way (QUIT).
  void Stop() { stopped_ = true; }
  // Called by Run after each line it executed (vorhost --live).
  void set_after_line(std::function<void()> after) { after_line_ = std::move(after); }
  // Whether Enter at the command prompt runs the last command again, as it
  // does for a person; a script's blank lines only space it out.
  void set_repeat_on_enter(bool repeat) { repeat_on_enter_ = repeat; }
  // The value of the last expression typed at the command prompt.
  const lisp::Value& last_value() const { return last_value_; }

 private:
  // Evaluates the expressions of a line in turn; an error ends the line.
  void Evaluate(std::string_view line);

  Transcript& transcript_;
  Console& console_;
  lisp::Interpreter& lisp_;
  CommandRunner& runner_;
  lisp::Value last_value_;
  bool stopped_ = false;
  bool repeat_on_enter_ = false;
  std::string last_command_;  // the last command name run from the prompt
  std::function<void()> after_line_;
};

}  // namespace vorhost

#endif
