// dxf_text.cpp - escapes and code pages of DXF texts.
#include "emulator/io/dxf_text.h"

#include <cstdio>
#include <cstdlib>

#include "emulator/core/encoding.h"
#include "emulator/io/dxf_format.h"

namespace vorhost::dxf {
namespace {

bool IsCaretTarget(char c) { return (c >= '@' && c <= '_') || c == ' '; }

bool IsHex(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool HexDigits(std::string_view s, size_t pos, size_t n) {
  if (pos + n > s.size()) return false;
  for (size_t i = pos; i < pos + n; i++)
    if (!IsHex(s[i])) return false;
  return true;
}

unsigned ParseHex(std::string_view s) {
  return static_cast<unsigned>(std::strtoul(std::string(s).c_str(), nullptr, 16));
}

void AppendUtf8(unsigned cp, std::string* out) {
  if (cp < 0x80) {
    *out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    *out += static_cast<char>(0xC0 | (cp >> 6));
    *out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    *out += static_cast<char>(0xE0 | (cp >> 12));
    *out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    *out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    *out += static_cast<char>(0xF0 | (cp >> 18));
    *out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    *out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    *out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// The length of the UTF-8 sequence at s[pos] and its code point; 0 when the
// bytes there are not a valid sequence.
size_t DecodeUtf8(std::string_view s, size_t pos, unsigned* cp) {
  auto b = static_cast<unsigned char>(s[pos]);
  size_t n = b < 0x80 ? 1 : (b >> 5) == 6 ? 2 : (b >> 4) == 14 ? 3 : (b >> 3) == 30 ? 4 : 0;
  if (n == 0 || pos + n > s.size()) return 0;
  *cp = n == 1 ? b : b & (0x7F >> n);
  for (size_t i = 1; i < n; i++) {
    auto c = static_cast<unsigned char>(s[pos + i]);
    if ((c >> 6) != 2) return 0;
    *cp = (*cp << 6) | (c & 0x3F);
  }
  return n;
}

// The Big5 form of a \U+XXXX escape at text[pos], or false to keep it.
bool UnicodeEscape(std::string_view text, size_t pos, std::string* big5) {
  if (text.compare(pos, 3, "\\U+") != 0 || !HexDigits(text, pos + 3, 4)) return false;
  std::string utf8;
  AppendUtf8(ParseHex(text.substr(pos + 3, 4)), &utf8);
  big5->clear();
  return Utf8ToBig5(utf8, big5);
}

// The two bytes of a \M+2XXXX escape (2: the Big5 code page) at text[pos].
bool MultibyteEscape(std::string_view text, size_t pos, std::string* big5) {
  if (text.compare(pos, 4, "\\M+2") != 0 || !HexDigits(text, pos + 4, 4)) return false;
  unsigned code = ParseHex(text.substr(pos + 4, 4));
  *big5 = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
  return true;
}

}  // namespace

std::string EscapeText(std::string_view big5) {
  std::string out;
  out.reserve(big5.size());
  for (size_t i = 0; i < big5.size();) {
    size_t len = Big5CharLength(big5, i);
    char c = big5[i];
    if (len == 1 && static_cast<unsigned char>(c) < 0x20) {
      out += '^';
      out += static_cast<char>(c + 0x40);
    } else if (len == 1 && c == '^' && i + 1 < big5.size() && IsCaretTarget(big5[i + 1])) {
      out += "^ ";
    } else {
      out.append(big5.substr(i, len));
    }
    i += len;
  }
  return out;
}

std::string UnescapeText(std::string_view big5) {
  std::string out;
  out.reserve(big5.size());
  std::string decoded;
  for (size_t i = 0; i < big5.size();) {
    size_t len = Big5CharLength(big5, i);
    char c = big5[i];
    if (len == 1 && c == '^' && i + 1 < big5.size() && IsCaretTarget(big5[i + 1])) {
      out += big5[i + 1] == ' ' ? '^' : static_cast<char>(big5[i + 1] - 0x40);
      i += 2;
    } else if (len == 1 && c == '\\' && UnicodeEscape(big5, i, &decoded)) {
      out += decoded;
      i += 7;
    } else if (len == 1 && c == '\\' && MultibyteEscape(big5, i, &decoded)) {
      out += decoded;
      i += 8;
    } else {
      out.append(big5.substr(i, len));
      i += len;
    }
  }
  return out;
}

std::string Utf8ToBig5Escaped(std::string_view utf8) {
  std::string out;
  if (Utf8ToBig5(utf8, &out)) return out;
  out.clear();
  for (size_t i = 0; i < utf8.size();) {
    unsigned cp = 0;
    size_t n = DecodeUtf8(utf8, i, &cp);
    if (n == 0) {
      out += '?';
      i++;
      continue;
    }
    std::string one;
    if (Utf8ToBig5(utf8.substr(i, n), &one)) {
      out += one;
    } else {
      char esc[16];
      std::snprintf(esc, sizeof esc, "\\U+%04X", cp);
      out += esc;
    }
    i += n;
  }
  return out;
}

void TextDecoder::Choose(std::string_view version, std::string_view code_page) {
  converter_.reset();
  mode_ = Mode::kBig5;
  if (version.size() == 6 && version.substr(0, 2) == "AC" && version >= kVersionUtf8) {
    mode_ = Mode::kUtf8;
    return;
  }
  std::string page;
  for (char c : code_page) page += static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
  std::string number;
  if (page.rfind("ANSI_", 0) == 0) number = page.substr(5);
  else if (page.rfind("DOS", 0) == 0) number = page.substr(3);
  if (number.empty() || number == "950") return;
  converter_ = std::make_unique<IconvConverter>("UTF-8", ("CP" + number).c_str());
  if (converter_->ok()) mode_ = Mode::kIconv;
}

std::string TextDecoder::ToUtf8(std::string_view raw) {
  std::string out;
  while (!raw.empty()) {
    raw.remove_prefix(converter_->Convert(raw, &out));
    if (raw.empty()) break;
    out += '?';  // a byte the code page does not define
    raw.remove_prefix(1);
  }
  return out;
}

std::string TextDecoder::Decode(std::string_view raw) {
  switch (mode_) {
    case Mode::kBig5: return UnescapeText(raw);
    case Mode::kUtf8: return UnescapeText(Utf8ToBig5Escaped(raw));
    case Mode::kIconv: return UnescapeText(Utf8ToBig5Escaped(ToUtf8(raw)));
  }
  return std::string(raw);
}

}  // namespace vorhost::dxf
