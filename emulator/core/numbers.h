// numbers.h - points, colour numbers, and the range of the numbers a
// drawing keeps.
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

namespace vorhost {

using Point3 = std::array<double, 3>;

// The colour numbers that stand for the colour of the layer and of the
// block; the others are 1 to 255.
constexpr short kColorByBlock = 0;
constexpr short kColorByLayer = 256;

constexpr double kMaxMagnitude = 1e99;

// The 16-bit integers of the host's short values and DXF groups.
constexpr long kShortMin = -32768, kShortMax = 32767;

inline bool InRange(double v) { return std::isfinite(v) && std::fabs(v) <= kMaxMagnitude; }
inline bool InRange(const Point3& p) {
  return InRange(p[0]) && InRange(p[1]) && InRange(p[2]);
}
inline bool IsShort(long v) { return v >= kShortMin && v <= kShortMax; }

}  // namespace vorhost

#endif
