// linfile.cpp - the .LIN parser and writer: headers, pattern lines, complex elements.
#include "emulator/drawing/linfile.h"

#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "emulator/core/encoding.h"
#include "emulator/core/numbers.h"
#include "emulator/core/text.h"

namespace vorhost {
namespace {

constexpr char kEndOfFile = '\x1A';
constexpr size_t kMaxNameBytes = 255;
constexpr size_t kMaxQuotedBytes = 32;  // of a faulty item in a message

// Blanks around items; a line end may be left from a CR LF file.
constexpr std::string_view kSpace = " \t\r";

std::string_view TrimSpace(std::string_view s) { return Trim(s, kSpace); }

// An item as it appears in a message: quoted, and clipped (at a character
// boundary) so that a line of garbage does not flood the report.
std::string Quote(std::string_view item) {
  size_t end = 0;
  while (end < item.size() && end < kMaxQuotedBytes) end += Big5CharLength(item, end);
  std::string out = "'";
  out += item.substr(0, end);
  if (end < item.size()) out += "...";
  return out + "'";
}

// Where a fault is reported: the file and the current line.
struct Where {
  std::string_view file;
  size_t line = 0;
  std::string* err = nullptr;

  bool Fail(const std::string& message) const {
    if (err) *err = FileLineMessage(file, line, message);
    return false;
  }
};

// A decimal number: [+-] digits [. digits] [e [+-] digits], with digits on
// at least one side of the point. Rejects what strtod would also take
// (hexadecimal, "inf", "nan") and values out of the drawing's range.
bool ParseNumber(std::string_view s, double* value) {
  size_t i = 0;
  auto digits = [&] {
    size_t start = i;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') i++;
    return i - start;
  };
  bool negative = i < s.size() && s[i] == '-';
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) i++;
  size_t magnitude = i;
  size_t mantissa = digits();
  if (i < s.size() && s[i] == '.') {
    i++;
    mantissa += digits();
  }
  if (mantissa == 0) return false;
  if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
    i++;
    if (i < s.size() && (s[i] == '-' || s[i] == '+')) i++;
    if (digits() == 0) return false;
  }
  if (i != s.size()) return false;
  double v = 0;
  auto [end, ec] = std::from_chars(s.data() + magnitude, s.data() + s.size(), v);
  if (ec != std::errc() || end != s.data() + s.size() || !InRange(v)) return false;
  *value = v == 0 ? 0.0 : (negative ? -v : v);  // no -0
  return true;
}

// A rotation in degrees, from a number with an optional unit suffix.
bool ParseAngle(std::string_view s, double* degrees) {
  double factor = 1;
  if (!s.empty()) {
    switch (UpperAscii(s.back())) {
      case 'D': s.remove_suffix(1); break;
      case 'R': s.remove_suffix(1); factor = 180 / std::numbers::pi; break;
      case 'G': s.remove_suffix(1); factor = 0.9; break;
      default: break;
    }
  }
  double v = 0;
  if (!ParseNumber(TrimSpace(s), &v)) return false;
  *degrees = v * factor;
  return true;
}

// A cursor over a pattern line. It steps over Big5 characters whole, so a
// trail byte is never taken for one of the format's ASCII delimiters.
class Cursor {
 public:
  explicit Cursor(std::string_view line) : line_(line) {}

  bool AtEnd() const { return pos_ >= line_.size(); }
  char Peek() const { return AtEnd() ? '\0' : line_[pos_]; }
  void Advance() { pos_ += AtEnd() ? 0 : Big5CharLength(line_, pos_); }
  void SkipSpaces() {
    while (!AtEnd() && kSpace.find(line_[pos_]) != std::string_view::npos) pos_++;
  }
  std::string_view Rest() const { return line_.substr(pos_); }

  // The trimmed run of characters up to (not including) the first of stops
  // or the end of the line.
  std::string_view ReadUntil(std::string_view stops) {
    size_t start = pos_;
    while (!AtEnd() && stops.find(line_[pos_]) == std::string_view::npos) Advance();
    return TrimSpace(line_.substr(start, pos_ - start));
  }

  // A double-quoted string at the cursor, unescaped. False when the line
  // ends before the closing quote.
  bool ReadQuoted(std::string* text) {
    Advance();  // the opening quote
    while (!AtEnd()) {
      size_t n = Big5CharLength(line_, pos_);
      char c = line_[pos_];
      if (n == 1 && c == '"') {
        Advance();
        return true;
      }
      if (n == 1 && c == '\\' && pos_ + 1 < line_.size() &&
          (line_[pos_ + 1] == '"' || line_[pos_ + 1] == '\\')) {
        pos_++;  // the escaped byte is kept, the backslash dropped
      }
      text->append(line_.substr(pos_, n));
      pos_ += n;
    }
    return false;
  }

 private:
  std::string_view line_;
  size_t pos_ = 0;
};

// One NAME=value option of a text or shape element.
bool ParseOption(std::string_view item, const Where& where, LinetypeElement* element) {
  size_t eq = item.find('=');
  if (eq == std::string_view::npos) return where.Fail("option " + Quote(item) + " has no '='");
  std::string_view key = TrimSpace(item.substr(0, eq));
  std::string_view value = TrimSpace(item.substr(eq + 1));
  char k = key.size() == 1 ? UpperAscii(key[0]) : '\0';
  bool ok = false;
  switch (k) {
    case 'S': ok = ParseNumber(value, &element->scale); break;
    case 'X': ok = ParseNumber(value, &element->x); break;
    case 'Y': ok = ParseNumber(value, &element->y); break;
    case 'R':
    case 'A':
      ok = ParseAngle(value, &element->rotation);
      if (ok) element->absolute_rotation = k == 'A';
      break;
    default: return where.Fail("unknown option " + Quote(item));
  }
  if (!ok) return where.Fail("bad value in option " + Quote(item));
  return true;
}

// The first two items of a complex element: the quoted text and its style,
// or the shape's name and file.
bool ParseComplexHead(Cursor* cur, const Where& where, LinetypeElement* element) {
  cur->SkipSpaces();
  if (cur->Peek() == '"') {
    element->kind = LinetypeElement::Kind::kText;
    if (!cur->ReadQuoted(&element->text)) return where.Fail("unclosed quote in a text element");
    cur->SkipSpaces();
  } else {
    element->kind = LinetypeElement::Kind::kShape;
    element->text = cur->ReadUntil(",]");
    if (element->text.empty()) return where.Fail("a shape element without a shape name");
  }
  bool is_text = element->kind == LinetypeElement::Kind::kText;
  if (cur->AtEnd()) return where.Fail("unclosed '['");
  if (cur->Peek() != ',') {
    if (cur->Peek() == ']') {
      return where.Fail(is_text ? "a text element without a text style"
                                : "a shape element without a shape file");
    }
    return where.Fail("expected ',' after the text, found " + Quote(cur->Rest()));
  }
  cur->Advance();
  element->source = cur->ReadUntil(",]");
  if (element->source.empty()) {
    return where.Fail(is_text ? "a text element without a text style"
                              : "a shape element without a shape file");
  }
  return true;
}

// A bracketed text or shape element, the cursor on its '['.
bool ParseComplex(Cursor* cur, const Where& where, LinetypeElement* element) {
  cur->Advance();  // '['
  if (!ParseComplexHead(cur, where, element)) return false;
  while (cur->Peek() == ',') {
    cur->Advance();
    std::string_view option = cur->ReadUntil(",]");
    if (option.empty()) return where.Fail("an empty option in a complex element");
    if (!ParseOption(option, where, element)) return false;
  }
  if (cur->Peek() != ']') return where.Fail("unclosed '['");
  cur->Advance();
  return true;
}

// One element at the cursor: a number, or a complex element in brackets.
bool ParseElement(Cursor* cur, const Where& where, LinetypeElement* element) {
  if (cur->Peek() == '[') return ParseComplex(cur, where, element);
  std::string_view item = cur->ReadUntil(",");
  if (item.empty()) return where.Fail("an empty element in the pattern");
  if (!ParseNumber(item, &element->length)) return where.Fail("bad number " + Quote(item));
  return true;
}

// The elements after "A," of a pattern line.
bool ParseElements(Cursor* cur, const Where& where, std::vector<LinetypeElement>* elements) {
  bool has_number = false;
  while (true) {
    cur->SkipSpaces();
    if (cur->AtEnd()) {
      return where.Fail(elements->empty() ? "empty pattern" : "an empty element in the pattern");
    }
    LinetypeElement element;
    if (!ParseElement(cur, where, &element)) return false;
    has_number = has_number || element.kind == LinetypeElement::Kind::kPlain;
    elements->push_back(std::move(element));
    cur->SkipSpaces();
    if (cur->AtEnd()) break;
    if (cur->Peek() != ',') return where.Fail("expected ',' before " + Quote(cur->Rest()));
    cur->Advance();
  }
  if (!has_number) return where.Fail("a pattern without a dash, gap or dot");
  return true;
}

// True for a line that is a pattern line by its first item, "A" alone.
bool IsPatternLine(std::string_view line) {
  if (line.empty() || UpperAscii(line[0]) != 'A') return false;
  std::string_view rest = TrimSpace(line.substr(1));
  return rest.empty() || rest[0] == ',';
}

bool ParsePattern(std::string_view line, const Where& where,
                  std::vector<LinetypeElement>* elements) {
  Cursor cur(line);
  cur.Advance();  // 'A'
  cur.SkipSpaces();
  if (cur.AtEnd()) return where.Fail("empty pattern");
  cur.Advance();  // ','
  return ParseElements(&cur, where, elements);
}

// "*NAME[,description]", the line trimmed.
bool ParseHeader(std::string_view line, const Where& where, LinetypeRecord* record) {
  Cursor cur(line.substr(1));
  std::string_view name = cur.ReadUntil(",");
  if (name.empty()) return where.Fail("a linetype header without a name");
  if (name.size() > kMaxNameBytes) return where.Fail("linetype name longer than 255 bytes");
  record->name = UpperName(name);
  cur.Advance();  // ',' if any
  record->description = TrimSpace(cur.Rest());
  return true;
}

bool NoPatternLine(const Where& header, const LinetypeRecord& record) {
  return header.Fail("linetype " + Quote(record.name) + " has no pattern line");
}

// Adds a definition, a later one of the same name replacing the earlier.
void Define(LinetypeRecord record, std::vector<LinetypeRecord>* records) {
  for (LinetypeRecord& old : *records) {
    if (old.name == record.name) {
      old = std::move(record);
      return;
    }
  }
  records->push_back(std::move(record));
}

// Shortest text that reads back to exactly v, without a leading zero.
std::string FormatNumber(double v) {
  std::string s = ShortestText(v);
  if (s.starts_with("0.")) s.erase(0, 1);
  if (s.starts_with("-0.")) s.erase(1, 1);
  return s;
}

// The text between quotes, escaped as ReadQuoted unescapes it.
std::string FormatQuoted(std::string_view text) {
  std::string out = "\"";
  for (size_t i = 0; i < text.size();) {
    size_t n = Big5CharLength(text, i);
    if (n == 1 && (text[i] == '"' || text[i] == '\\')) out += '\\';
    out += text.substr(i, n);
    i += n;
  }
  return out + "\"";
}

std::string FormatComplex(const LinetypeElement& e) {
  std::string out = "[";
  out += e.kind == LinetypeElement::Kind::kText ? FormatQuoted(e.text) : e.text;
  out += "," + e.source;
  out += ",S=" + FormatNumber(e.scale);
  out += (e.absolute_rotation ? ",A=" : ",R=") + FormatNumber(e.rotation);
  out += ",X=" + FormatNumber(e.x);
  out += ",Y=" + FormatNumber(e.y);
  return out + "]";
}

}  // namespace

bool ParseLinetypes(std::string_view contents, std::string_view file_name,
                    std::vector<LinetypeRecord>* out, std::string* err) {
  contents = contents.substr(0, contents.find(kEndOfFile));
  std::vector<LinetypeRecord> records;
  std::optional<LinetypeRecord> pending;  // a header awaiting its pattern
  Where where{file_name, 0, err};
  Where header_where = where;
  for (size_t pos = 0; pos < contents.size();) {
    size_t eol = contents.find('\n', pos);
    if (eol == std::string_view::npos) eol = contents.size();
    std::string_view line = TrimSpace(contents.substr(pos, eol - pos));
    pos = eol + 1;
    where.line++;
    if (line.empty() || line[0] == ';') continue;
    if (line[0] == '*') {
      if (pending) return NoPatternLine(header_where, *pending);
      pending.emplace();
      header_where = where;
      if (!ParseHeader(line, where, &*pending)) return false;
    } else if (IsPatternLine(line)) {
      if (!pending) return where.Fail("a pattern line without a '*NAME' line before it");
      if (!ParsePattern(line, where, &pending->elements)) return false;
      Define(std::move(*pending), &records);
      pending.reset();
    } else {
      return where.Fail("expected '*NAME', a pattern line or a comment, found " + Quote(line));
    }
  }
  if (pending) return NoPatternLine(header_where, *pending);
  *out = std::move(records);
  return true;
}

std::string FormatLinetype(const LinetypeRecord& record) {
  std::string out = "*" + record.name;
  if (!record.description.empty()) out += "," + record.description;
  out += "\r\nA";
  for (const LinetypeElement& e : record.elements) {
    out += ",";
    out += e.kind == LinetypeElement::Kind::kPlain ? FormatNumber(e.length) : FormatComplex(e);
  }
  return out + "\r\n";
}

}  // namespace vorhost
