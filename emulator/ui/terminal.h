// terminal.h - a person at a terminal playing the user: lines read with
// editing, history and completion; Escape and Ctrl-C cancel what is
// asking; Ctrl-D at the command prompt is QUIT; F1, HELP and "?" show what
// may be typed; dialogs are drawn in the terminal; an answer that cannot
// be taken is explained and asked again, so that nothing a person types
// ends the session but QUIT, EXIT or Ctrl-D.
#ifndef VORHOST_UI_TERMINAL_H
#define VORHOST_UI_TERMINAL_H

#include <string>

#include "emulator/session/user.h"
#include "emulator/ui/completer.h"
#include "emulator/ui/dialog_view.h"
#include "emulator/ui/directives.h"
#include "emulator/ui/line_reader.h"
#include "emulator/ui/terminal_screen.h"

namespace vorhost {

class Host;

class TerminalUser : public User {
 public:
  // None of the references is owned. width is the most columns a drawn
  // dialog takes (fewer when the terminal is narrower); colour says whether
  // the drawn dialogs may use it.
  TerminalUser(Host& host, TerminalScreen& screen, LineReader& reader, int width, bool colour);
  TerminalUser(const TerminalUser&) = delete;
  TerminalUser& operator=(const TerminalUser&) = delete;

  Input Read(Asking asking, std::string_view prompt) override;
  DialogInput ReadEvent(Dialog& dialog, std::string_view prompt) override;
  EditOutcome EditText(std::string* text, std::string* why) override;
  // An alert stays on the screen until the person presses Enter.
  void Acknowledge(std::string_view message) override;
  std::string HelpNotes() override;

 private:
  // The next line, asked with prompt; help, a blank line in a dialog and a
  // line Big5 cannot hold are dealt with here and asked again.
  LineInput NextLine(const std::string& prompt, Asking asking);
  // A line of the script language a person may type (#answer, #show, ...);
  // kNext when it was carried out and the host should ask again.
  DirectiveStep Directive(const std::string& line, Input* answer);
  void ShowHelp(Asking asking);
  DialogViewStyle Style() const;

  Host& host_;
  TerminalScreen& screen_;
  LineReader& reader_;
  Completer completer_;
  int width_;
  bool colour_;
  int ends_in_a_row_ = 0;     // input ended this many times with nothing read between
  std::string last_drawing_;  // the dialog as drawn last, not drawn again unchanged
  DirectiveContext directives_;
};

}  // namespace vorhost

#endif
