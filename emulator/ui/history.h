// history.h - the lines a person typed, kept between sessions in a file
// of their home, one line each (UTF-8). The terminal's line reader recalls
// them with Up and Down; a window's command line can share them.
#ifndef VORHOST_UI_HISTORY_H
#define VORHOST_UI_HISTORY_H

#include <string>
#include <string_view>
#include <vector>

namespace vorhost {

class History {
 public:
  // Keeps at most limit lines, the newest.
  explicit History(size_t limit = 1000) : limit_(limit) {}

  // Reads the lines of the file at linux_path, replacing those held; a
  // file that does not exist is an empty history. False with *why when the
  // file is there and cannot be read.
  bool Load(const std::string& linux_path, std::string* why);
  // Writes the lines held to the file at linux_path, whole; false with *why.
  bool Save(const std::string& linux_path, std::string* why) const;

  // Keeps a line typed: not an empty one, nor one that repeats the last,
  // and a line end or NUL cuts it short.
  void Add(std::string_view line);
  const std::vector<std::string>& lines() const { return lines_; }

  // The history file: $VORHOST_HISTORY, else .vorhost_history in $HOME;
  // "" when neither is set (the history is then not kept).
  static std::string DefaultPath();

 private:
  size_t limit_;
  std::vector<std::string> lines_;
};

}  // namespace vorhost

#endif
