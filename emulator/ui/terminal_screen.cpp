// terminal_screen.cpp - output that keeps the prompt back for the reader.
#include "emulator/ui/terminal_screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace vorhost {

void WriteToFd(int fd, std::string_view text) {
  while (!text.empty()) {
    ssize_t n = write(fd, text.data(), text.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return;
    text.remove_prefix(static_cast<size_t>(n));
  }
}

TerminalScreen::TerminalScreen(int fd) : fd_(fd), stream_(this) {}

TerminalScreen::~TerminalScreen() { Flush(); }

int TerminalScreen::overflow(int c) {
  if (c != traits_type::eof()) {
    open_ += static_cast<char>(c);
    Emit();
  }
  return c == traits_type::eof() ? 0 : c;
}

std::streamsize TerminalScreen::xsputn(const char* s, std::streamsize n) {
  open_.append(s, static_cast<size_t>(n));
  Emit();
  return n;
}

void TerminalScreen::Emit() {
  size_t nl = open_.rfind('\n');
  if (nl == std::string::npos) return;
  WriteToFd(fd_, std::string_view(open_).substr(0, nl + 1));
  open_.erase(0, nl + 1);
}

std::string TerminalScreen::TakeOpenLine() {
  std::string line = std::move(open_);
  open_.clear();
  return line;
}

void TerminalScreen::Flush() {
  WriteToFd(fd_, open_);
  open_.clear();
}

void TerminalScreen::Show(std::string_view text) {
  if (text.empty()) return;
  WriteToFd(fd_, text);
  if (text.back() != '\n') WriteToFd(fd_, "\n");
}

void TerminalScreen::Write(std::string_view text) { WriteToFd(fd_, text); }

int TerminalScreen::Columns(int fallback) const {
  winsize size{};
  return ioctl(fd_, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : fallback;
}

}  // namespace vorhost
