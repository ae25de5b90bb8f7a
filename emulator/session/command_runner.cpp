// command_runner.cpp - starting, feeding, finishing and cancelling commands.
#include "emulator/session/command_runner.h"

#include "emulator/core/text.h"
#include "host/ads.h"

namespace vorhost {

bool CommandRunner::Start(std::string_view typed, bool echo) {
  std::string name = UpperName(Trim(typed, " \t\r"));
  while (!name.empty() && (name[0] == '-' || name[0] == '_' || name[0] == '.')) name.erase(0, 1);
  if (session_command_ && session_command_(name)) return true;
  std::unique_ptr<Command> command = MakeCommand(*this, name);
  if (!command) {
    transcript_.WriteLine("Unknown command \"" + name + "\".  Press F1 for help.");
    return false;
  }
  command_ = std::move(command);
  echo_ = echo;
  if (command_->Begin() == Step::kDone) command_.reset();
  return true;
}

bool CommandRunner::Run(std::string_view typed) {
  if (!Start(typed, true)) return false;
  Finish();
  return true;
}

void CommandRunner::Finish() {
  echo_ = true;
  while (command_) {
    Input in = console_.Ask(command_->Prompt(), command_->asking(), command_->base(), command_->chosen());
    if (!in.IsAnswer()) {
      Cancel();
      return;
    }
    switch (command_->Feed(in.answer)) {
      case Step::kDone: command_.reset(); break;
      case Step::kReject: transcript_.WriteLine(command_->refusal()); break;
      case Step::kAsk: break;
    }
  }
}

void CommandRunner::Cancel() {
  if (!command_) return;
  std::unique_ptr<Command> command = std::move(command_);
  command->Cancelled();
}

int CommandRunner::Feed(const std::vector<Answer>& items) {
  if (dialogs_.any_open()) {
    transcript_.WriteLine("Commands cannot run while a dialog is open.");
    return RTERROR;
  }
  SysValue echo;
  bool echo_on = !document_.sysvars().Get("CMDECHO", &echo) || std::get<short>(echo) != 0;
  for (const Answer& item : items) {
    if (!command_) {
      if (item.kind != Answer::Kind::kText || item.IsEnter()) return RTREJ;
      if (echo_on) transcript_.WriteLine("Command: " + item.text);
      if (!Start(item.text, echo_on)) return RTREJ;
      continue;
    }
    if (int rc = FeedOne(item); rc != RTNORM) return rc;
  }
  return RTNORM;
}

int CommandRunner::FeedOne(const Answer& item) {
  const Answer* answer = &item;
  Input in;
  if (item.kind == Answer::Kind::kText && item.text == "\\") {  // PAUSE: the user answers
    in = console_.Ask(command_->Prompt(), command_->asking(), command_->base(), command_->chosen());
    if (!in.IsAnswer()) {
      Cancel();
      return RTCAN;
    }
    answer = &in.answer;
  } else if (echo_) {
    transcript_.Write(command_->Prompt());
    transcript_.Write(item.Echo());
  }
  switch (command_->Feed(*answer)) {
    case Step::kDone:
      command_.reset();
      echo_ = true;  // what follows is no longer the program's command
      break;
    case Step::kAsk: break;
    case Step::kReject:
      transcript_.WriteLine(command_->refusal());
      Cancel();
      transcript_.WriteLine("*Cancel*");
      return RTREJ;
  }
  return RTNORM;
}

void CommandRunner::Message(std::string_view text) {
  if (echo_) transcript_.WriteLine(text);
}

}  // namespace vorhost
