// tables.cpp - the tables of a new drawing.
#include "emulator/drawing/tables.h"

#include <cmath>

namespace vorhost {

Tables::Tables() {
  styles_.Put(StyleRecord{"STANDARD"});
  layers_.Put(LayerRecord{"0"});
  linetypes_.Put(LinetypeRecord{"BYBLOCK", "", {}});
  linetypes_.Put(LinetypeRecord{"BYLAYER", "", {}});
  linetypes_.Put(LinetypeRecord{"CONTINUOUS", "Solid line", {}});
}

double LinetypeRecord::PatternLength() const {
  double total = 0;
  for (const LinetypeElement& e : elements) total += std::fabs(e.length);
  return total;
}

}  // namespace vorhost
