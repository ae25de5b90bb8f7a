// user.h - whoever plays the user of the host: a script, a person at a
// terminal, or a window. The host asks; the user answers with the values
// of core/input.h, never by composing text for the host to parse.
#ifndef VORHOST_SESSION_USER_H
#define VORHOST_SESSION_USER_H

#include <string>
#include <string_view>

#include "emulator/core/input.h"
#include "emulator/dialogs/events.h"

namespace vorhost {

class User {
 public:
  virtual ~User() = default;

  // The next answer; prompt is what the host has just shown (Big5).
  virtual Input Read(Asking asking, std::string_view prompt) = 0;

  // The next event in dialog, the one on top (its tiles as they are now,
  // for a front end that draws them); prompt is what the host has shown.
  virtual DialogInput ReadEvent(Dialog& dialog, std::string_view prompt) = 0;

  // Lets the user edit *text, the contents of a text file of the host
  // (Big5, CR LF). kSaved leaves the new contents in *text for the host to
  // save; kUnchanged and kCancelled leave *text as it was, and a cancelled
  // edit may say why in *why.
  virtual EditOutcome EditText(std::string* text, std::string* why) = 0;

  // A help topic (Big5) has been printed in the transcript; a front end
  // with windows may show it in one too.
  virtual void ShowHelp(std::string_view topic, std::string_view text) {
    (void)topic;
    (void)text;
  }

  // An alert box has been shown (Big5); the user reads and closes it.
  virtual void Acknowledge(std::string_view message) { (void)message; }

  // The user's last answer could not be taken (a dialog event naming a
  // tile the dialog lacks, say); why has been shown. A person tries again;
  // a script has gone out of step and stops.
  virtual void Misstep(const std::string& why) { (void)why; }

  // What the user may type besides commands and expressions (a terminal's
  // keys and directives), shown at the end of HELP (UTF-8); "" for none.
  virtual std::string HelpNotes() { return ""; }
};

}  // namespace vorhost

#endif
