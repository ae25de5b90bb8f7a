// line_reader.h - reading a line from a person at a terminal: with line
// editing, history and completion when vorhost is built with libedit, or
// plainly otherwise. Escape and Ctrl-C give kCancel, Ctrl-D on an empty
// line kEnd, F1 kHelp; kClosed when the terminal cannot be read any more.
#ifndef VORHOST_UI_LINE_READER_H
#define VORHOST_UI_LINE_READER_H

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "emulator/ui/completer.h"
#include "emulator/ui/history.h"

namespace vorhost {

struct LineInput {
  enum class Kind { kLine, kCancel, kEnd, kHelp, kClosed };
  Kind kind = Kind::kEnd;
  std::string text;  // kLine: the line, UTF-8, without its line end
};

// The candidates for the word that ends at a cursor in a line.
using CompleteFn = std::function<Completion(std::string_view line, size_t cursor)>;

class LineReader {
 public:
  virtual ~LineReader() = default;
  // Shows prompt (UTF-8, one line) and reads a line; a line read is kept
  // in the history.
  virtual LineInput Read(const std::string& prompt, const CompleteFn& complete) = 0;
};

// The reader for a person at the terminal of in_fd and out_fd, recalling
// and keeping lines in history (not owned).
std::unique_ptr<LineReader> MakeLineReader(History& history, int in_fd, int out_fd);

// Whether MakeLineReader edits lines (vorhost was built with libedit).
bool LineEditing();

// While one lives, Ctrl-C does not end the program: it cancels what the
// reader is reading, and is otherwise ignored.
class InterruptGuard {
 public:
  InterruptGuard();
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

  // Whether Ctrl-C was pressed since the last call; clears it.
  static bool Take();
};

}  // namespace vorhost

#endif
