// answer.cpp - reading typed answers.
#include "emulator/core/answer.h"

#include <cctype>
#include <charconv>
#include <cmath>

#include "emulator/core/encoding.h"
#include "emulator/core/numbers.h"
#include "emulator/core/text.h"

namespace vorhost {
namespace {

// A whole text that is one decimal number (no hexadecimal, inf or nan).
std::optional<double> ParseNumber(std::string_view s) {
  s = Trim(s);
  if (s.empty()) return std::nullopt;
  if (s.front() == '+') s.remove_prefix(1);
  for (char c : s)
    if (!(c >= '0' && c <= '9') && c != '.' && c != '-' && c != 'e' && c != 'E' && c != '+')
      return std::nullopt;
  double v = 0;
  auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
  if (ec != std::errc() || end != s.data() + s.size() || !std::isfinite(v)) return std::nullopt;
  return v;
}

std::optional<Point3> ParseCoordinates(std::string_view s) {
  Point3 p{0, 0, 0};
  int n = 0;
  while (n < 3) {
    size_t comma = s.find(',');
    auto v = ParseNumber(s.substr(0, comma));
    if (!v) return std::nullopt;
    p[n++] = *v;
    if (comma == std::string_view::npos) break;
    s.remove_prefix(comma + 1);
    if (n == 3) return std::nullopt;
  }
  if (n < 2) return std::nullopt;
  return p;
}

// The point an answer names, before its range is checked.
std::optional<Point3> ReadPoint(const Answer& a, const Point3& last) {
  if (a.kind == Answer::Kind::kPoint) return a.point;
  if (a.kind != Answer::Kind::kText) return std::nullopt;
  std::string_view s = Trim(a.text);
  if (s.empty() || s.front() != '@') return ParseCoordinates(s);
  s.remove_prefix(1);
  if (s.empty()) return last;
  if (size_t lt = s.find('<'); lt != std::string_view::npos) {
    auto dist = ParseNumber(s.substr(0, lt));
    auto angle = ParseNumber(s.substr(lt + 1));
    if (!dist || !angle) return std::nullopt;
    double rad = *angle * M_PI / 180;
    return Point3{last[0] + *dist * std::cos(rad), last[1] + *dist * std::sin(rad), last[2]};
  }
  auto d = ParseCoordinates(s);
  if (!d) return std::nullopt;
  return Point3{last[0] + (*d)[0], last[1] + (*d)[1], last[2] + (*d)[2]};
}

}  // namespace

// What a program sent is echoed as it was, even a value the command will
// refuse.
std::string FormatNumber(double v) {
  if (std::isnan(v)) return "nan";
  if (std::isinf(v)) return v > 0 ? "inf" : "-inf";
  return DecimalText(v, 6);
}

std::string FormatPoint(const Point3& p) {
  return FormatNumber(p[0]) + "," + FormatNumber(p[1]) + "," + FormatNumber(p[2]);
}

std::string Answer::Echo() const {
  switch (kind) {
    case Kind::kText: return text;
    case Kind::kPoint: return FormatPoint(point);
    case Kind::kReal: return FormatNumber(real);
    case Kind::kInt: return std::to_string(integer);
    case Kind::kName: return "<Entity>";
    case Kind::kSet: return "<Selection set: " + std::to_string(entities.size()) + ">";
    case Kind::kWindow: return (crossing ? "C " : "W ") + FormatPoint(point) + " " + FormatPoint(corner);
  }
  return "";
}

std::optional<double> AnswerReal(const Answer& a) {
  std::optional<double> v;
  if (a.kind == Answer::Kind::kReal) v = a.real;
  else if (a.kind == Answer::Kind::kInt) v = static_cast<double>(a.integer);
  else if (a.kind == Answer::Kind::kText) v = ParseNumber(a.text);
  if (v && !InRange(*v)) return std::nullopt;
  return v;
}

std::optional<long> AnswerInt(const Answer& a, long lo, long hi) {
  std::optional<double> v = AnswerReal(a);
  if (!v || *v != std::floor(*v) || *v < lo || *v > hi) return std::nullopt;
  return static_cast<long>(*v);
}

std::optional<Point3> AnswerPoint(const Answer& a, const Point3& last) {
  std::optional<Point3> p = ReadPoint(a, last);
  if (p && !InRange(*p)) return std::nullopt;
  return p;
}

std::optional<short> ColorAnswer(const Answer& a, bool allow_logical) {
  if (std::optional<long> n = AnswerInt(a, 1, 255)) return static_cast<short>(*n);
  if (a.kind != Answer::Kind::kText) return std::nullopt;
  static const char* const kNames[] = {"RED", "YELLOW", "GREEN", "CYAN", "BLUE", "MAGENTA", "WHITE"};
  std::string key = MatchKeyword(a.text, {"RED", "YELLOW", "GREEN", "CYAN", "BLUE", "MAGENTA", "WHITE",
                                          "BYLAYER", "BYBLOCK"});
  for (short i = 0; i < 7; i++)
    if (key == kNames[i]) return static_cast<short>(i + 1);
  if (allow_logical && key == "BYLAYER") return kColorByLayer;
  if (allow_logical && key == "BYBLOCK") return kColorByBlock;
  return std::nullopt;
}

bool ValidSymbolName(std::string_view name) {
  if (name.empty() || name.size() > 31) return false;
  for (unsigned char c : name)
    if (!(std::isalnum(c) || c == '$' || c == '-' || c == '_' || c >= 0x80)) return false;
  return true;
}

std::string MatchKeyword(std::string_view typed, std::initializer_list<std::string_view> options) {
  std::string answer = UpperName(Trim(typed));
  if (answer.empty()) return "";
  for (std::string_view option : options) {
    size_t shortest = 0;
    while (shortest < option.size() && !(option[shortest] >= 'a' && option[shortest] <= 'z'))
      shortest++;
    if (shortest == 0) shortest = option.size();
    if (answer.size() < shortest || answer.size() > option.size()) continue;
    // The first byte settles most options before the option is upper-cased
    // (a first byte of Big5 is no letter: UpperAscii keeps it).
    if (UpperAscii(option[0]) != answer[0]) continue;
    std::string full = UpperName(option);
    if (full.compare(0, answer.size(), answer) == 0) return full;
  }
  return "";
}

}  // namespace vorhost
