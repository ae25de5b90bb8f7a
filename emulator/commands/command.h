// command.h - a host command as a little state machine: it shows a prompt,
// takes one answer at a time, and finishes, asks again, or refuses the
// answer. The same machine serves a person typing and a program feeding
// ads_command; it reaches the host only through its CommandContext.
#ifndef VORHOST_COMMANDS_COMMAND_H
#define VORHOST_COMMANDS_COMMAND_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/answer.h"
#include "emulator/core/input.h"
#include "emulator/drawing/document.h"

namespace vorhost {

// What a command may reach of the host: the document it works on, the
// command line for the texts it prints, and the module.
class CommandContext {
 public:
  virtual ~CommandContext() = default;
  virtual Document& document() = 0;
  // Text a command prints, such as "Linetype DASHED loaded.": shown when
  // the command's prompts are.
  virtual void Message(std::string_view text) = 0;
  // Loads or unloads a module by its name (Big5), as ARXLOAD and ARXUNLOAD
  // do; false with *why, the host's message, when refused.
  virtual bool LoadApplication(std::string_view name, std::string* why) = 0;
  virtual bool UnloadApplication(std::string_view name, std::string* why) = 0;
};

enum class Step {
  kAsk,     // wants another answer: see Prompt()
  kDone,    // finished
  kReject,  // the answer does not fit; the command still asks the same
};

class Command {
 public:
  explicit Command(CommandContext& context) : context_(context) {}
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  // Called once when the command starts: kDone for a command that needs no
  // answer.
  virtual Step Begin() { return Step::kAsk; }
  // What the command asks now (Big5), beginning with "\n" when the host
  // shows it on a line of its own.
  virtual std::string Prompt() const = 0;
  // What kind of answer the prompt wants, for a front end that offers
  // picking: kSelection while the command selects objects.
  virtual Asking asking() const { return Asking::kPrompt; }
  // The point the prompt's answer is measured from, where there is one
  // (LINE's "To point:" from the last point): a front end draws a line from
  // it to the cursor.
  virtual std::optional<Point3> base() const { return std::nullopt; }
  // The objects chosen so far while the command selects them, for a front
  // end that highlights them; null when it is selecting none.
  virtual const std::vector<uint64_t>* chosen() const { return nullptr; }
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
  Document& doc() const { return context_.document(); }
  void Message(std::string_view text) const { context_.Message(text); }

  CommandContext& context_;

 private:
  std::string refusal_;
};

// Makes the command of that name (upper case, without a leading "-", "_"
// or "."), or nullptr when the host has none.
std::unique_ptr<Command> MakeCommand(CommandContext& context, std::string_view name);

// One line per command, for help texts: "NAME  what it does".
std::string CommandSummary();
// The names a command may be typed by, aliases included, for completion.
std::vector<std::string> CommandNames();

}  // namespace vorhost

#endif
