// encoding.cpp - Big5 <-> UTF-8 through iconv's CP950.
#include "emulator/core/encoding.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace vorhost {

IconvConverter::IconvConverter(const char* to, const char* from) : cd_(iconv_open(to, from)) {}

IconvConverter::~IconvConverter() {
  if (ok()) iconv_close(cd_);
}

size_t IconvConverter::Convert(std::string_view in, std::string* out) {
  iconv(cd_, nullptr, nullptr, nullptr, nullptr);
  char* src = const_cast<char*>(in.data());
  size_t src_left = in.size();
  char buf[1024];
  while (src_left > 0) {
    char* dst = buf;
    size_t dst_left = sizeof buf;
    size_t r = iconv(cd_, &src, &src_left, &dst, &dst_left);
    out->append(buf, dst - buf);
    if (r == static_cast<size_t>(-1) && errno != E2BIG) break;
  }
  return in.size() - src_left;
}

namespace {

IconvConverter& ToUtf8() {
  static IconvConverter c("UTF-8", "CP950");
  return c;
}

IconvConverter& ToBig5() {
  static IconvConverter c("CP950", "UTF-8");
  return c;
}

}  // namespace

std::string Big5ToUtf8(std::string_view big5) {
  std::string out;
  out.reserve(big5.size() + big5.size() / 2);
  while (!big5.empty()) {
    size_t used = ToUtf8().ok() ? ToUtf8().Convert(big5, &out) : 0;
    big5.remove_prefix(used);
    if (big5.empty()) break;
    char esc[8];
    std::snprintf(esc, sizeof esc, "\\x%02X", static_cast<unsigned char>(big5[0]));
    out += esc;
    big5.remove_prefix(1);
  }
  return out;
}

bool Utf8ToBig5(std::string_view utf8, std::string* out, size_t* consumed) {
  out->clear();
  size_t used = ToBig5().ok() ? ToBig5().Convert(utf8, out) : 0;
  if (consumed) *consumed = used;
  return used == utf8.size();
}

namespace {

// The position of the next diameter byte standing alone in Big5 text, from
// pos, or npos.
size_t FindLoneDiameter(std::string_view text, size_t pos) {
  while (pos < text.size()) {
    size_t length = Big5CharLength(text, pos);
    if (length == 1 && text[pos] == kDiameterByte) return pos;
    pos += length;
  }
  return std::string_view::npos;
}

}  // namespace

bool Big5TextToUtf8(std::string_view big5, std::string* out) {
  out->clear();
  if (big5.find('\0') != std::string_view::npos || !ToUtf8().ok()) return false;
  for (size_t pos = 0;;) {
    size_t diameter = FindLoneDiameter(big5, pos);
    std::string_view part = big5.substr(pos, diameter - pos);
    if (ToUtf8().Convert(part, out) != part.size()) return false;
    if (diameter == std::string_view::npos) return true;
    *out += kDiameterUtf8;
    pos = diameter + 1;
  }
}

bool Utf8ToBig5Text(std::string_view utf8, std::string* out, size_t* consumed) {
  out->clear();
  for (size_t pos = 0;;) {
    size_t diameter = utf8.find(kDiameterUtf8, pos);
    std::string_view part = utf8.substr(pos, diameter - pos);
    std::string big5;
    size_t used = 0;
    bool ok = Utf8ToBig5(part, &big5, &used);
    *out += big5;
    if (!ok) {
      if (consumed) *consumed = pos + used;
      return false;
    }
    if (diameter == std::string_view::npos) return true;
    *out += kDiameterByte;
    pos = diameter + kDiameterUtf8.size();
  }
}

bool IsBig5Text(std::string_view text) {
  std::string ignored;
  return Big5TextToUtf8(text, &ignored);
}

bool IsUtf8Text(std::string_view text) {
  for (size_t i = 0; i < text.size();) {
    auto b = static_cast<unsigned char>(text[i]);
    if (b == 0) return false;
    if (b < 0x80) {
      ++i;
      continue;
    }
    // The length of the sequence and the range its second byte must be in,
    // which is what rules out overlong forms, surrogates and values past
    // U+10FFFF.
    size_t length;
    unsigned char low = 0x80, high = 0xBF;
    if (b >= 0xC2 && b <= 0xDF) {
      length = 2;
    } else if (b >= 0xE0 && b <= 0xEF) {
      length = 3;
      if (b == 0xE0) low = 0xA0;
      if (b == 0xED) high = 0x9F;
    } else if (b >= 0xF0 && b <= 0xF4) {
      length = 4;
      if (b == 0xF0) low = 0x90;
      if (b == 0xF4) high = 0x8F;
    } else {
      return false;
    }
    if (i + length > text.size()) return false;
    auto second = static_cast<unsigned char>(text[i + 1]);
    if (second < low || second > high) return false;
    for (size_t k = 2; k < length; ++k) {
      auto next = static_cast<unsigned char>(text[i + k]);
      if (next < 0x80 || next > 0xBF) return false;
    }
    i += length;
  }
  return true;
}

bool LooksLikeUtf8(std::string_view text) {
  bool wide = std::any_of(text.begin(), text.end(),
                          [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
  return wide && IsUtf8Text(text);
}

}  // namespace vorhost
