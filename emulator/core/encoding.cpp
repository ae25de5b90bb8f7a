// encoding.cpp - Big5 <-> UTF-8 through iconv's CP950.
#include "emulator/core/encoding.h"

#include <iconv.h>

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

size_t Big5CharLength(std::string_view text, size_t pos) {
  if (pos + 1 >= text.size()) return 1;
  auto lead = static_cast<unsigned char>(text[pos]);
  auto trail = static_cast<unsigned char>(text[pos + 1]);
  bool is_lead = lead >= 0x81 && lead <= 0xFE;
  bool is_trail = (trail >= 0x40 && trail <= 0x7E) || (trail >= 0xA1 && trail <= 0xFE);
  return is_lead && is_trail ? 2 : 1;
}

bool Utf8ToBig5(std::string_view utf8, std::string* out) {
  out->clear();
  if (!ToBig5().ok()) return false;
  return ToBig5().Convert(utf8, out) == utf8.size();
}

}  // namespace vorhost
