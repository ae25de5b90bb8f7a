// terminal_screen.h - the host's output at a terminal. Whole lines go out
// at once; the line still open at the end (a prompt, such as "Command: ")
// is held back for the line reader, which shows it and edits behind it.
#ifndef VORHOST_UI_TERMINAL_SCREEN_H
#define VORHOST_UI_TERMINAL_SCREEN_H

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace vorhost {

// Writes all of text to the file descriptor fd, through writes a signal
// interrupted; stops quietly when the terminal is gone.
void WriteToFd(int fd, std::string_view text);

class TerminalScreen : private std::streambuf {
 public:
  // Writes to the file descriptor fd (not closed).
  explicit TerminalScreen(int fd);
  ~TerminalScreen() override;
  TerminalScreen(const TerminalScreen&) = delete;
  TerminalScreen& operator=(const TerminalScreen&) = delete;

  // Where the host's transcript goes (UTF-8).
  std::ostream& stream() { return stream_; }

  // The open line, not shown yet, for the reader to show as its prompt;
  // it is no longer held.
  std::string TakeOpenLine();
  // Shows the open line as it stands.
  void Flush();
  // Shows text of the front end's own (a drawn dialog, help) on lines of
  // its own; the open line stays held.
  void Show(std::string_view text);
  // Writes text as it stands (what the reader left on the line).
  void Write(std::string_view text);
  // The terminal's width in columns now; fallback when it is no terminal.
  int Columns(int fallback) const;

 private:
  int overflow(int c) override;
  std::streamsize xsputn(const char* s, std::streamsize n) override;
  // Writes out whatever of open_ ends with a line feed.
  void Emit();

  int fd_;
  std::ostream stream_;
  std::string open_;
};

}  // namespace vorhost

#endif
