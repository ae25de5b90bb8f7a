// history.cpp - the history file.
#include "emulator/ui/history.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "emulator/core/text.h"
#include "emulator/platform/replace_file.h"

namespace vorhost {

bool History::Load(const std::string& linux_path, std::string* why) {
  lines_.clear();
  std::error_code ec;
  if (!std::filesystem::exists(linux_path, ec)) return true;
  std::string contents;
  if (!std::filesystem::is_regular_file(linux_path, ec)) {
    *why = "cannot read the history file " + linux_path + ": it is not a file";
    return false;
  }
  if (!ReadWholeFile(linux_path, &contents)) {
    *why = "cannot read the history file " + linux_path + ": " + std::strerror(errno);
    return false;
  }
  size_t start = 0;
  while (start < contents.size()) {
    size_t nl = contents.find('\n', start);
    if (nl == std::string::npos) nl = contents.size();
    Add(std::string_view(contents).substr(start, nl - start));
    start = nl + 1;
  }
  return true;
}

bool History::Save(const std::string& linux_path, std::string* why) const {
  std::string contents;
  for (const std::string& line : lines_) contents += line + "\n";
  return ReplaceFile(linux_path, contents, linux_path, why);
}

void History::Add(std::string_view line) {
  line = line.substr(0, line.find_first_of(std::string_view("\r\n\0", 3)));
  if (Trim(line, kBlanks).empty() || (!lines_.empty() && lines_.back() == line)) return;
  lines_.emplace_back(line);
  if (lines_.size() > limit_) lines_.erase(lines_.begin(), lines_.begin() + static_cast<long>(lines_.size() - limit_));
}

std::string History::DefaultPath() {
  if (const char* path = std::getenv("VORHOST_HISTORY"); path && *path) return path;
  if (const char* home = std::getenv("HOME"); home && *home) return std::string(home) + "/.vorhost_history";
  return "";
}

}  // namespace vorhost
