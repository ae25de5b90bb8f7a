// host_text.cpp - data files between the host's Big5 text form and UTF-8.
#include "emulator/io/host_text.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/platform/replace_file.h"

namespace vorhost {
namespace {

constexpr char kEndOfFile = 0x1A;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The lines of a text up to its first 0x1A, each without its LF or CR LF;
// a final line end does not start another line.
std::vector<std::string_view> SplitLines(std::string_view text) {
  text = text.substr(0, text.find(kEndOfFile));
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  return lines;
}

// "「X」 (U+XXXX)" for the UTF-8 character that starts text.
std::string NameCharacter(std::string_view text) {
  auto lead = static_cast<unsigned char>(text[0]);
  size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  length = std::min(length, text.size());
  unsigned code = length == 1 ? lead : lead & (0x7F >> length);
  for (size_t i = 1; i < length; ++i) code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
  char number[16];
  std::snprintf(number, sizeof number, "U+%04X", code);
  return "\xE3\x80\x8C" + std::string(text.substr(0, length)) + "\xE3\x80\x8D (" + number + ")";
}

bool Refuse(int line, std::string why, TextFault* fault) {
  fault->line = line;
  fault->why = std::move(why);
  return false;
}

using Conversion = bool (*)(std::string_view, std::string*, int*, TextFault*);

ConvertResult ConvertFile(const std::string& path, Conversion convert, const char* done_as,
                          std::string* message) {
  std::string before, after;
  struct stat st;
  if (stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode) || !ReadWholeFile(path, &before)) {
    *message = path + ": cannot be read";
    return ConvertResult::kUnreadable;
  }
  if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
    *message = path + ": the file is read-only; it is unchanged";
    return ConvertResult::kUnwritable;
  }
  int lines = 0;
  TextFault fault;
  if (!convert(before, &after, &lines, &fault)) {
    *message = FileLineMessage(path, static_cast<size_t>(fault.line), fault.why + "; the file is unchanged");
    return ConvertResult::kRefused;
  }
  std::string err;
  if (!ReplaceFile(path, after, path, &err)) {  // keeps the file's permissions
    *message = err;
    return ConvertResult::kUnwritable;
  }
  *message = path + ": " + std::to_string(lines) + (lines == 1 ? " line" : " lines") + " written as " +
             done_as;
  return ConvertResult::kDone;
}

}  // namespace

bool Utf8ToHostText(std::string_view utf8, std::string* host_text, int* lines, TextFault* fault) {
  if (utf8.starts_with(kByteOrderMark)) utf8.remove_prefix(kByteOrderMark.size());
  host_text->clear();
  std::vector<std::string_view> source = SplitLines(utf8);
  for (size_t i = 0; i < source.size(); ++i) {
    int number = static_cast<int>(i) + 1;
    std::string_view line = source[i];
    if (!IsUtf8Text(line)) {
      return Refuse(number,
                    IsBig5Text(line) ? "the line is not UTF-8 text (it reads as Big5: converted already?)"
                                     : "the line is not UTF-8 text",
                    fault);
    }
    std::string big5;
    size_t consumed = 0;
    if (!Utf8ToBig5Text(line, &big5, &consumed))
      return Refuse(number, "the character " + NameCharacter(line.substr(consumed)) + " cannot be written in Big5",
                    fault);
    if (big5.size() > kHostLineMax) {
      return Refuse(number, "the line is " + std::to_string(big5.size()) +
                                " bytes in Big5; the module reads at most 255 bytes a line",
                    fault);
    }
    *host_text += big5;
    *host_text += "\r\n";
  }
  if (!source.empty()) *host_text += kEndOfFile;
  *lines = static_cast<int>(source.size());
  return true;
}

bool HostTextToUtf8(std::string_view host_text, std::string* utf8, int* lines, TextFault* fault) {
  utf8->clear();
  std::vector<std::string_view> source = SplitLines(host_text);
  for (size_t i = 0; i < source.size(); ++i) {
    std::string_view line = source[i];
    std::string converted;
    if (!Big5TextToUtf8(line, &converted)) {
      return Refuse(static_cast<int>(i) + 1,
                    LooksLikeUtf8(line) ? "the line is not Big5 text (it reads as UTF-8: converted already?)"
                                        : "the line is not Big5 text",
                    fault);
    }
    *utf8 += converted;
    *utf8 += '\n';
  }
  *lines = static_cast<int>(source.size());
  return true;
}

ConvertResult ImportTextFile(const std::string& path, std::string* message) {
  return ConvertFile(path, Utf8ToHostText, "Big5 text", message);
}

ConvertResult ExportTextFile(const std::string& path, std::string* message) {
  return ConvertFile(path, HostTextToUtf8, "UTF-8 text", message);
}

}  // namespace vorhost
