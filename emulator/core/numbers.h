// numbers.h - the range of the numbers a drawing keeps, and how the host
// shows a real to people (the command line, the dump) and in pictures.
//
// Every real that enters a drawing or a system variable (typed, sent by a
// program, read from a file) must be finite and at most kMaxMagnitude in
// size. That is far beyond any drawing, and far enough from the largest
// double (1.8e308) that what the host computes from such numbers (a
// circle through three points, a relative point, a block's points at its
// scale) stays finite, so that no infinity or NaN is ever made from them.
#ifndef VORHOST_CORE_NUMBERS_H
#define VORHOST_CORE_NUMBERS_H

#include <array>
#include <cmath>
#include <string>

namespace vorhost {

constexpr double kMaxMagnitude = 1e99;

// The 16-bit integers of the host's short values and DXF groups.
constexpr long kShortMin = -32768, kShortMax = 32767;

inline bool InRange(double v) { return std::isfinite(v) && std::fabs(v) <= kMaxMagnitude; }
inline bool InRange(const std::array<double, 3>& p) {
  return InRange(p[0]) && InRange(p[1]) && InRange(p[2]);
}
inline bool IsShort(long v) { return v >= kShortMin && v <= kShortMax; }

// v with `decimals` places, trailing zeros (and a bare point) dropped and
// no "-0": "2.5", "100", "-90". From 1e15 on, where the fixed form would
// run to dozens of digits, the exponent form every reader takes
// ("1e+99", "-2.5e+20"). A value that is not finite, which the host never
// keeps, is written "0" rather than a word no reader takes.
std::string DecimalText(double v, int decimals);

}  // namespace vorhost

#endif
