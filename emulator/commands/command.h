// command.h - a host command as a little state machine: it shows a prompt,
// takes one answer at a time, and finishes, asks again, or refuses the
// answer. The same machine serves a person typing and a program feeding
// ads_command.
#ifndef VORHOST_COMMANDS_COMMAND_H
#define VORHOST_COMMANDS_COMMAND_H

#include <memory>
#include <string>
#include <string_view>

#include "emulator/core/answer.h"

namespace vorhost {

class Host;

enum class Step {
  kAsk,     // wants another answer: see Prompt()
  kDone,    // finished
  kReject,  // the answer does not fit; the command still asks the same
};

class Command {
 public:
  explicit Command(Host& host) : host_(host) {}
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  // Called once when the command starts: kDone for a command that needs no
  // answer.
  virtual Step Begin() { return Step::kAsk; }
  // What the command asks now (Big5), beginning with "\n" when the host
  // shows it on a line of its own.
  virtual std::string Prompt() const = 0;
  virtual Step Feed(const Answer& answer) = 0;
  // Called when the command is cancelled before it finished.
  virtual void Cancelled() {}

  // Why the last answer was refused, as the host tells the user.
  const std::string& refusal() const { return refusal_; }

 protected:
  Step Reject(std::string why) {
    refusal_ = std::move(why);
    return Step::kReject;
  }

  Host& host_;

 private:
  std::string refusal_;
};

// Makes the command of that name (upper case, without a leading "-", "_"
// or "."), or nullptr when the host has none.
std::unique_ptr<Command> MakeCommand(Host& host, std::string_view name);

// One line per command, for help texts: "NAME  what it does".
std::string CommandSummary();

}  // namespace vorhost

#endif
