// transcript.h - the host's command-line history: what it printed and what
// the user answered, kept whole for expectations and passed on as UTF-8.
#ifndef VORHOST_CORE_TRANSCRIPT_H
#define VORHOST_CORE_TRANSCRIPT_H

#include <ostream>
#include <string>
#include <string_view>

namespace vorhost {

class Transcript {
 public:
  // Copies everything to out as it comes, when out is not null (not owned).
  explicit Transcript(std::ostream* out = nullptr) : out_(out) {}
  Transcript(const Transcript&) = delete;
  Transcript& operator=(const Transcript&) = delete;

  // Prints host text (Big5) exactly as given, line feeds included.
  void Write(std::string_view big5);
  // Starts a new line unless the last text ended one.
  void StartLine();
  // Prints text at the start of a line. Like every host text it leaves the
  // line open; the next text or prompt starts a new one.
  void WriteLine(std::string_view big5);
  // Keeps what the user typed (Big5) in the history without printing it:
  // a terminal has shown it already.
  void Record(std::string_view big5);

  // Everything printed so far, in UTF-8.
  const std::string& text() const { return text_; }
  // Forgets what was printed, for a host that lives on between unrelated
  // sessions (a fuzz target's); the next text starts a line.
  void Clear() {
    text_.clear();
    at_line_start_ = true;
    after_typed_line_ = false;
  }

 private:
  std::ostream* out_;
  std::string text_;
  bool at_line_start_ = true;
  bool after_typed_line_ = false;  // the last thing kept was a typed line
};

}  // namespace vorhost

#endif
