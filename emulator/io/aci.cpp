// aci.cpp - the colour index's RGB values, computed from its pattern.
#include "emulator/io/aci.h"

#include <cmath>
#include <cstdio>

namespace vorhost {
namespace {

constexpr Rgb kFirst[10] = {{255, 255, 255}, {255, 0, 0},   {255, 255, 0},   {0, 255, 0},
                            {0, 255, 255},   {0, 0, 255},   {255, 0, 255},   {255, 255, 255},
                            {128, 128, 128}, {192, 192, 192}};
constexpr unsigned char kGreys[6] = {51, 91, 132, 173, 214, 255};
// Brightness of the five shades, from the last digit halved.
constexpr double kShade[5] = {1.0, 0.65, 0.5, 0.3, 0.15};

// One component of a fully saturated hue (degrees) at full brightness.
double HueComponent(double hue, double offset) {
  double h = std::fmod(hue + offset, 360.0);
  if (h < 60) return 1;
  if (h < 120) return (120 - h) / 60;
  if (h < 240) return 0;
  if (h < 300) return (h - 240) / 60;
  return 1;
}

}  // namespace

Rgb AciRgb(int index) {
  if (index < 1 || index > 255) return kFirst[7];
  if (index < 10) return kFirst[index];
  if (index >= 250) return {kGreys[index - 250], kGreys[index - 250], kGreys[index - 250]};
  double hue = (index / 10 - 1) * 15.0;
  int digit = index % 10;
  double c[3] = {HueComponent(hue, 0), HueComponent(hue, 240), HueComponent(hue, 120)};
  unsigned char out[3];
  for (int k = 0; k < 3; k++) {
    double v = 255 * c[k];
    if (digit % 2) v += (255 - v) / 2;  // odd digits: the pale half
    out[k] = static_cast<unsigned char>(std::floor(v * kShade[digit / 2]));
  }
  return {out[0], out[1], out[2]};
}

std::string HexColor(const Rgb& rgb) {
  char buf[8];
  std::snprintf(buf, sizeof buf, "#%02X%02X%02X", rgb.r, rgb.g, rgb.b);
  return buf;
}

}  // namespace vorhost
