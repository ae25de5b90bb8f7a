// numbers.cpp - reals as text.
#include "emulator/core/numbers.h"

#include <cstdio>

namespace vorhost {

std::string DecimalText(double v, int decimals) {
  if (!std::isfinite(v)) return "0";
  char buf[64];
  if (std::fabs(v) >= 1e15) {
    std::snprintf(buf, sizeof buf, "%.15g", v);
    return buf;
  }
  std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
  std::string s = buf;
  if (s.find('.') != std::string::npos) {
    while (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
  }
  if (s == "-0") s = "0";
  return s;
}

}  // namespace vorhost
