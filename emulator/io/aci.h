// aci.h - the host's 256-colour index as RGB, for pictures of a drawing.
#ifndef VORHOST_IO_ACI_H
#define VORHOST_IO_ACI_H

#include <string>

namespace vorhost {

struct Rgb {
  unsigned char r = 0, g = 0, b = 0;
  bool operator==(const Rgb&) const = default;
};

// The colour of index 1 to 255: 1 to 7 red, yellow, green, cyan, blue,
// magenta, white; 8 and 9 greys; 10 to 249 twenty-four hues 15 degrees
// apart, each in five shades, full and pale; 250 to 255 greys to white.
// Anything else (0 BYBLOCK, 256 BYLAYER) gives white, as 7.
Rgb AciRgb(int index);

// "#RRGGBB".
std::string HexColor(const Rgb& rgb);

}  // namespace vorhost

#endif
