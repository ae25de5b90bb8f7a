// text.cpp - names, trimming, numbers as text, whole files, fault messages.
#include "emulator/core/text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "emulator/core/encoding.h"

namespace vorhost {
namespace {

constexpr size_t kContextBefore = 40;  // bytes of a long line shown before the caret
constexpr size_t kContextWidth = 72;   // bytes of a long line shown in all

}  // namespace

std::string UpperName(std::string_view big5) {
  std::string out(big5);
  for (size_t i = 0; i < out.size(); i += Big5CharLength(big5, i))
    out[i] = UpperAscii(out[i]);  // a lead byte is never a letter
  return out;
}

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a == b) return true;  // the usual case when a table is searched for a name it holds
  for (size_t i = 0; i < a.size();) {
    size_t n = Big5CharLength(a, i);
    if (n != Big5CharLength(b, i)) return false;
    if (n == 1 ? UpperAscii(a[i]) != UpperAscii(b[i]) : a.substr(i, n) != b.substr(i, n)) return false;
    i += n;
  }
  return true;
}

std::string_view Trim(std::string_view s, std::string_view chars) {
  size_t first = s.find_first_not_of(chars);
  if (first == std::string_view::npos) return s.substr(s.size());
  return s.substr(first, s.find_last_not_of(chars) - first + 1);
}

std::string DecimalText(double v, int decimals) {
  if (!std::isfinite(v)) return "0";
  if (std::fabs(v) >= 1e15) return SignificantText(v, 15);
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
  std::string s = buf;
  if (s.find('.') != std::string::npos) {
    while (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
  }
  if (s == "-0") s = "0";
  return s;
}

std::string FixedText(double v, int decimals) {
  if (!(std::fabs(v) < 1e15)) return DecimalText(v, decimals);
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
  return buf;
}

std::string ShortestText(double v) {
  char buf[64];
  auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, ec == std::errc() ? end : buf);
}

std::string SignificantText(double v, int digits) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*g", digits, v);
  return buf;
}

bool ReadWholeFile(const std::string& linux_path, std::string* contents) {
  std::ifstream in(linux_path, std::ios::binary);
  if (!in) return false;
  std::ostringstream bytes;
  bytes << in.rdbuf();
  if (in.bad()) return false;
  *contents = std::move(bytes).str();
  return true;
}

std::string FileLineMessage(std::string_view file, size_t line, std::string_view message) {
  std::string out(file);
  out += ':';
  out += std::to_string(line);
  out += ": ";
  out += message;
  return out;
}

std::string Indented(std::string_view lines) {
  std::string out;
  size_t start = 0;
  while (start < lines.size()) {
    size_t nl = lines.find('\n', start);
    if (nl == std::string_view::npos) nl = lines.size();
    out.append("  ").append(lines.substr(start, nl - start)).append("\n");
    start = nl + 1;
  }
  return out;
}

std::string SourceExcerpt(std::string_view text, size_t offset, std::string_view mark) {
  offset = std::min(offset, text.size());
  size_t line_start = offset;
  while (line_start > 0 && text[line_start - 1] != '\n') line_start--;
  size_t line_end = text.find('\n', offset);
  if (line_end == std::string_view::npos) line_end = text.size();
  if (line_end > line_start && text[line_end - 1] == '\r') line_end--;

  // Clip a long line around the caret, stepping by characters so that a
  // Big5 character is never cut in two.
  size_t start = line_start;
  while (offset > start + kContextBefore) start += Big5CharLength(text, start);
  size_t end = start;
  while (end < line_end && end - start < kContextWidth) end += Big5CharLength(text, end);
  end = std::min(end, line_end);

  std::string shown = start > line_start ? "..." : "";
  std::string caret(shown.size(), ' ');
  shown += text.substr(start, end - start);
  if (end < line_end) shown += "...";
  for (size_t i = start; i < offset && i < end; ++i) caret += text[i] == '\t' ? '\t' : ' ';
  return shown + "\n" + caret + std::string(mark);
}

}  // namespace vorhost
