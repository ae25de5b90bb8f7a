// show_bytes.h - bytes outside printable ASCII as \xNN, so that a failing
// Big5 case reads plainly in a test's message.
#ifndef VORMIS_TESTS_SUPPORT_SHOW_BYTES_H
#define VORMIS_TESTS_SUPPORT_SHOW_BYTES_H

#include <cstdio>
#include <string>
#include <string_view>

namespace vorhost::testing {

inline std::string Show(std::string_view s) {
  std::string out;
  for (unsigned char c : s) {
    if (c >= 0x20 && c < 0x7F) {
      out += static_cast<char>(c);
    } else {
      char buf[8];
      std::snprintf(buf, sizeof buf, "\\x%02X", c);
      out += buf;
    }
  }
  return out;
}

}  // namespace vorhost::testing

#endif
