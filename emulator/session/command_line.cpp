// command_line.cpp - lines at the command prompt.
#include "emulator/session/command_line.h"

#include "emulator/core/text.h"

namespace vorhost {
namespace {

// A line typed at the command prompt without its blanks and line end.
std::string_view TrimLine(std::string_view s) { return Trim(s, " \t\r"); }

}  // namespace

void CommandLine::Run() {
  stopped_ = false;
  while (!stopped_) {
    Input in = console_.Ask("Command: ", Asking::kCommand);
    if (in.kind == Input::Kind::kEnd) return;
    if (!in.IsAnswer()) continue;
    Execute(in.answer.kind == Answer::Kind::kText ? in.text() : in.answer.Echo());
    if (after_line_) after_line_();
  }
}

void CommandLine::Execute(std::string_view line) {
  line = TrimLine(line);
  if (line.empty()) {
    if (repeat_on_enter_ && !last_command_.empty()) runner_.Run(last_command_);
    return;
  }
  if (line.front() == '(' || line.front() == '\'') return Evaluate(line);
  if (line.front() == '!') return Evaluate(line.substr(1));
  std::string name(line);
  if (runner_.Run(name)) last_command_ = std::move(name);
}

void CommandLine::Evaluate(std::string_view line) {
  size_t pos = 0;
  while (pos < line.size() && !TrimLine(line.substr(pos)).empty()) {
    lisp::Value expr, value;
    std::string err;
    if (!lisp::Read(line, &pos, &expr, &err)) {
      transcript_.WriteLine("error: " + err);
      return;
    }
    if (!lisp_.Eval(expr, &value, &err)) {
      transcript_.WriteLine("error: " + err);
      transcript_.WriteLine(lisp::Print(expr));
      transcript_.WriteLine("*Cancel*");
      last_value_ = lisp::Value::Nil();
      return;
    }
    last_value_ = value;
    if (value.kind != lisp::Value::Kind::kVoid) transcript_.WriteLine(lisp::Print(value));
    // A command that a program left pending goes on with the user.
    runner_.Finish();
  }
}

}  // namespace vorhost
