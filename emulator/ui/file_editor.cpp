// file_editor.cpp - editing a host text file in the user's editor.
#include "emulator/ui/file_editor.h"

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"

namespace vorhost {
namespace {

bool WriteAll(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
  return static_cast<bool>(out.flush());
}

std::string Replace(std::string s, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = s.find(from, at)) != std::string::npos; at += to.size()) s.replace(at, from.size(), to);
  return s;
}

// The shell word for path, quoted.
std::string Quoted(const std::string& path) { return "'" + Replace(path, "'", "'\\''") + "'"; }

}  // namespace

EditOutcome EditInEditor(std::string* contents, std::string* why) {
  const std::string& original = *contents;
  bool end_mark = !original.empty() && original.back() == '\x1A';
  std::string text = end_mark ? original.substr(0, original.size() - 1) : original;
  std::string utf8 = Big5ToUtf8(Replace(text, "\r\n", "\n"));
  std::string back;
  if (!Utf8ToBig5(utf8, &back) || back != Replace(text, "\r\n", "\n")) {
    *why = "The file holds bytes that are not Big5 text; it is unchanged.";
    return EditOutcome::kCancelled;
  }
  char temp[] = "/tmp/vorhost_edit_XXXXXX.txt";
  int fd = mkstemps(temp, 4);
  if (fd < 0 || !WriteAll(temp, utf8)) {
    if (fd >= 0) close(fd), unlink(temp);
    *why = "No room for a copy to edit; the file is unchanged.";
    return EditOutcome::kCancelled;
  }
  close(fd);
  const char* editor = getenv("VISUAL");
  if (!editor || !*editor) editor = getenv("EDITOR");
  if (!editor || !*editor) editor = "vi";
  int status = std::system((std::string(editor) + " " + Quoted(temp)).c_str());
  std::string edited;
  bool read = ReadWholeFile(temp, &edited);
  unlink(temp);
  if (status != 0 || !read) {
    *why = "The editor did not end normally; the file is unchanged.";
    return EditOutcome::kCancelled;
  }
  if (edited == utf8) return EditOutcome::kUnchanged;
  std::string big5;
  if (!Utf8ToBig5(edited, &big5)) {
    *why = "The edit holds characters that Big5 cannot hold; the file is unchanged.";
    return EditOutcome::kCancelled;
  }
  big5 = Replace(Replace(big5, "\r\n", "\n"), "\n", "\r\n");
  if (end_mark) big5 += '\x1A';
  *contents = std::move(big5);
  return EditOutcome::kSaved;
}

}  // namespace vorhost
