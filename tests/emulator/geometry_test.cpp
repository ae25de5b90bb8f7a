// geometry_test.cpp - outlines of records: arcs whatever their angles.
#include "emulator/drawing/geometry.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vorhost {
namespace {

// Sweeps come out in (0, 2 pi] in one step, angles of any size included:
// an arc read with an angle of 1e20 must not be walked round 1e19 times.
TEST(GeometryTest, ArcSweepsInConstantTime) {
  struct Case {
    double a1, a2, sweep;
  } cases[] = {
      {0, M_PI / 2, M_PI / 2},
      {M_PI / 2, 0, 1.5 * M_PI},
      {1, 1, 2 * M_PI},
      {-M_PI, M_PI, 2 * M_PI},
      {5 * M_PI, M_PI / 2, 1.5 * M_PI},
      {INFINITY, 0, 0},
      {0, NAN, 0},
  };
  for (const Case& c : cases) EXPECT_NEAR(ArcSweep(c.a1, c.a2), c.sweep, 1e-12) << c.a1 << " " << c.a2;
  for (double huge : {1e20, 1e99, 1e308}) {
    double sweep = ArcSweep(huge, -huge);
    EXPECT_TRUE(sweep > 0 && sweep <= 2 * M_PI) << huge;
    EXPECT_LE(ArcPoints({0, 0, 0}, 1, huge, -huge).size(), 33u) << huge;
  }
  EXPECT_TRUE(ArcPoints({0, 0, 0}, INFINITY, 0, 1).empty());

  Box box;
  box.Add({1, 2, 0});
  box.Add({NAN, 5, 0});
  box.Add({-INFINITY, 0, 0});
  EXPECT_EQ(box.lo, (Point3{1, 2, 0}));
  EXPECT_EQ(box.hi, (Point3{1, 2, 0}));
}

}  // namespace
}  // namespace vorhost
