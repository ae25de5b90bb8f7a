// dxf_numbers.cpp - reals, angles and handles as DXF texts.
#include "emulator/io/dxf_numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "emulator/io/dxf_format.h"

namespace vorhost::dxf {
namespace {

// Whole numbers below this are written as their digits by std::to_chars
// itself: their exponent form ("1e+04", five characters) is never shorter
// than their digits, and to_chars keeps the plain form on a tie. Most of a
// drawing's coordinates are such numbers, and the integer conversion is
// far cheaper than the search for the shortest real.
constexpr double kPlainWholeLimit = 1e5;

// Adds ".0" to a text of to_chars that has neither point nor exponent.
std::string_view WithPoint(char* buf, char* end) {
  if (std::none_of(buf, end, [](char c) { return c == '.' || c == 'e'; })) {
    *end++ = '.';
    *end++ = '0';
  }
  return {buf, static_cast<size_t>(end - buf)};
}

}  // namespace

std::string_view RealText(double v, NumberBuffer& buf) {
  if (!std::isfinite(v)) v = 0;
  if (v == 0) v = 0;  // no "-0"
  if (std::fabs(v) < kPlainWholeLimit) {
    long whole = static_cast<long>(v);  // in range: the cast only drops the fraction
    if (whole == v) {
      char* end = std::to_chars(buf, buf + kNumberChars - 2, whole).ptr;
      *end++ = '.';
      *end++ = '0';
      return {buf, static_cast<size_t>(end - buf)};
    }
  }
  return WithPoint(buf, std::to_chars(buf, buf + kNumberChars - 2, v).ptr);
}

std::string_view AngleText(double radians, NumberBuffer& buf) {
  // No angle at all, the usual case, is what the search below finds first.
  if (radians == 0) return "0.0";
  double degrees = RadiansToDegrees(radians);
  if (!std::isfinite(degrees)) return "0.0";
  for (int precision = 1; precision <= 17; precision++) {
    auto r = std::to_chars(buf, buf + kNumberChars, degrees, std::chars_format::general, precision);
    double back = 0;
    std::from_chars(buf, r.ptr, back);
    if (DegreesToRadians(back) == radians) return RealText(back, buf);
  }
  return RealText(degrees, buf);
}

std::string_view HandleText(uint32_t handle, NumberBuffer& buf) {
  char* end = std::to_chars(buf, buf + kNumberChars, handle, 16).ptr;
  for (char* c = buf; c != end; c++)
    if (*c >= 'a' && *c <= 'f') *c = static_cast<char>(*c - 32);
  return {buf, static_cast<size_t>(end - buf)};
}

}  // namespace vorhost::dxf
