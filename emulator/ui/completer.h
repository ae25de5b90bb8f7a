// completer.h - what Tab offers for the word under the cursor: at the
// command prompt the commands, and after "(" the module's and the host's
// functions; in a dialog the events, then the open dialog's tiles that fit
// the event, then a list's rows. It knows nothing of how the line is
// edited, so a terminal and a window share it.
#ifndef VORHOST_UI_COMPLETER_H
#define VORHOST_UI_COMPLETER_H

#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/input.h"

namespace vorhost {

class Host;

struct Completion {
  size_t start = 0;                     // where the word being completed begins (bytes)
  std::vector<std::string> candidates;  // in order, each once
  bool then_blank = true;               // a word completed whole is followed by a blank
  // The longest text every candidate begins with (letters compared
  // without regard to case; the first candidate's spelling).
  std::string CommonPrefix() const;
  // What Tab puts in place of word (the text from start to the cursor):
  // the one candidate whole, then a blank where then_blank, or what every
  // candidate begins with. False when that adds nothing: the candidates
  // are then listed.
  bool Replacement(std::string_view word, std::string* text) const;
  // The candidates in columns of equal width within width characters, a
  // line for each row.
  std::string Columns(size_t width) const;
};

class Completer {
 public:
  // host is not owned.
  explicit Completer(Host& host) : host_(host) {}

  // The candidates for the word that ends at cursor in line (UTF-8), typed
  // where the host asks for asking; none at a prompt of a command.
  Completion Complete(std::string_view line, size_t cursor, Asking asking) const;

 private:
  Completion CompleteCommand(std::string_view line, size_t start, std::string_view word) const;
  Completion CompleteEvent(std::string_view line, size_t start, std::string_view word) const;

  Host& host_;
};

}  // namespace vorhost

#endif
