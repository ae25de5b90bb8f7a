// dxf_numbers.h - numbers as the host's DXF files write them: reals as the
// shortest text that reads back as them, angles in degrees that read back
// as the same radians, handles in upper-case hexadecimal. Each is made in
// the caller's buffer, without an allocation: a file holds hundreds of
// thousands of them.
#ifndef VORHOST_IO_DXF_NUMBERS_H
#define VORHOST_IO_DXF_NUMBERS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vorhost::dxf {

// Room for any of the texts below: the longest shortest form of a double
// ("-2.2250738585072014e-308") and ".0" fit with room to spare.
constexpr size_t kNumberChars = 64;
using NumberBuffer = char[kNumberChars];

// The shortest text that reads back as v (std::to_chars), always with a
// decimal point or exponent so that no reader takes it for an integer:
// "0.0", "2.5", "1e-07", "1e+20". A value that is not finite, and -0, are
// written "0.0".
std::string_view RealText(double v, NumberBuffer& buf);

// Degrees for an angle in radians: the shortest decimal text that
// DegreesToRadians maps back to exactly these radians, so that 90 stays
// "90.0" and a save and open keep every bit where that is possible.
std::string_view AngleText(double radians, NumberBuffer& buf);

// The handle in upper-case hexadecimal ("1F").
std::string_view HandleText(uint32_t handle, NumberBuffer& buf);

}  // namespace vorhost::dxf

#endif
