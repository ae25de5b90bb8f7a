// dxf_numbers_test.cpp - numbers as DXF texts: whole numbers written as
// std::to_chars writes them, angles that come back as the same radians,
// handles in hexadecimal.
#include "emulator/io/dxf_numbers.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <random>
#include <string>

#include "emulator/io/dxf_format.h"

namespace vorhost::dxf {
namespace {

// What a real must read as: the shortest text of std::to_chars, with ".0"
// when it has neither point nor exponent, and no "-0".
std::string Reference(double v) {
  if (!std::isfinite(v) || v == 0) return "0.0";
  char buf[64];
  std::string s(buf, std::to_chars(buf, buf + sizeof buf, v).ptr);
  if (s.find_first_of(".e") == std::string::npos) s += ".0";
  return s;
}

std::string Real(double v) {
  NumberBuffer buf;
  return std::string(RealText(v, buf));
}

// Whole numbers take a shorter way than other reals: every one of them,
// and those around the limit where the exponent form starts to win
// ("1e+05"), reads as the shortest text does.
TEST(DxfNumbersTest, WholeNumbersReadAsTheShortestText) {
  for (int i = -100000; i <= 100000; i++) ASSERT_EQ(Real(i), Reference(i)) << i;
  for (double v : {1e5, -1e5, 1e5 - 0.5, 99999.5, 100001.0, 120000.0, 1e6, 1e15, 1e16, 1e22, 4503599627370496.0,
                   9007199254740993.0, 0.5, -0.25, 1e-300})
    EXPECT_EQ(Real(v), Reference(v)) << v;
  EXPECT_EQ(Real(99999), "99999.0");
  EXPECT_EQ(Real(10000), "10000.0") << "a tie with 1e+04 keeps the digits";
  EXPECT_EQ(Real(100000), "1e+05");
  EXPECT_EQ(Real(-0.0), "0.0");
  EXPECT_EQ(Real(NAN), "0.0");
  EXPECT_EQ(Real(-INFINITY), "0.0");

  std::mt19937_64 random(13);
  std::uniform_int_distribution<int> whole(-200000, 200000);
  for (int n = 0; n < 100000; n++) {
    double v = whole(random) / 8.0;  // whole, halves, quarters and eighths
    ASSERT_EQ(Real(v), Reference(v)) << v;
  }
}

TEST(DxfNumbersTest, AnglesComeBackAsTheSameRadians) {
  NumberBuffer buf;
  EXPECT_EQ(AngleText(0.0, buf), "0.0");
  EXPECT_EQ(AngleText(-0.0, buf), "0.0");
  EXPECT_EQ(AngleText(DegreesToRadians(90), buf), "90.0");
  EXPECT_EQ(AngleText(DegreesToRadians(-45), buf), "-45.0");
  EXPECT_EQ(AngleText(INFINITY, buf), "0.0");
  // Radians made from degrees, as the reader makes them, come back exactly.
  for (double degrees : {30.0, 123.456, 359.9, -0.001, 1e-9, 7200.5}) {
    double radians = DegreesToRadians(degrees), back = 0;
    std::string_view text = AngleText(radians, buf);
    std::from_chars(text.data(), text.data() + text.size(), back);
    EXPECT_EQ(DegreesToRadians(back), radians) << text;
  }
}

TEST(DxfNumbersTest, HandlesAreUpperCaseHexadecimal) {
  NumberBuffer buf;
  EXPECT_EQ(HandleText(0, buf), "0");
  EXPECT_EQ(HandleText(0x1F, buf), "1F");
  EXPECT_EQ(HandleText(0xFFFFFFFF, buf), "FFFFFFFF");
}

}  // namespace
}  // namespace vorhost::dxf
