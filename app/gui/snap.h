// snap.h - the points a click snaps to: the ends and middles of what is
// drawn in model space, where the view shows them.
#ifndef VORHOST_APP_GUI_SNAP_H
#define VORHOST_APP_GUI_SNAP_H

#include <vector>

#include "emulator/drawing/drawing.h"

namespace vorhost::gui {

struct SnapPoint {
  Point3 at;
  bool mid = false;  // the middle of a segment or arc; else an end
};

// The most points gathered; a drawing with more snaps to the first ones.
inline constexpr size_t kMaxSnapPoints = 200000;

// Ends and middles of lines, arcs, and the segments of polylines (arc
// segments at the middle of their arcs), in world coordinates, block
// references expanded as they are drawn.
std::vector<SnapPoint> SnapPoints(const Drawing& drawing);

}  // namespace vorhost::gui

#endif
