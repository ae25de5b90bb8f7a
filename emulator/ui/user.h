// user.h - whoever plays the user of the host: a script, or a person at a
// terminal. The host asks; the user answers.
#ifndef VORHOST_UI_USER_H
#define VORHOST_UI_USER_H

#include <string>
#include <string_view>

namespace vorhost {

// What the host is asking for.
enum class Asking {
  kCommand,  // the command prompt: a command or an expression
  kPrompt,   // an answer to a prompt of a command or function
  kDialog,   // an event in the dialog that is open (see docs/scripting.md)
};

// One answer: a line of text (Big5), Escape, or the end of the user's input.
struct Input {
  enum class Kind { kLine, kCancel, kEnd };
  Kind kind = Kind::kEnd;
  std::string text;

  static Input Line(std::string text) { return {Kind::kLine, std::move(text)}; }
  static Input Cancel() { return {Kind::kCancel, {}}; }
  static Input End() { return {Kind::kEnd, {}}; }
};

// How an edit of a text file ended.
enum class EditOutcome { kSaved, kUnchanged, kCancelled };

class User {
 public:
  virtual ~User() = default;

  // The next answer; prompt is what the host has just shown (Big5).
  virtual Input Read(Asking asking, std::string_view prompt) = 0;

  // Lets the user edit *text, the contents of a text file of the host
  // (Big5, CR LF). kSaved leaves the new contents in *text for the host to
  // save; kUnchanged and kCancelled leave *text as it was, and a cancelled
  // edit may say why in *why.
  virtual EditOutcome EditText(std::string* text, std::string* why) = 0;

  // An alert box has been shown (Big5); the user reads and closes it.
  virtual void Acknowledge(std::string_view message) { (void)message; }

  // The user's last answer could not be taken (a dialog event naming a
  // tile the dialog lacks, say); why has been shown. A person tries again;
  // a script has gone out of step and stops.
  virtual void Misstep(const std::string& why) { (void)why; }
};

}  // namespace vorhost

#endif
