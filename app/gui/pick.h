// pick.h - the object a click at "Select objects:" picks: the nearest one
// whose outline passes within the pick box, measured on the screen.
#ifndef VORHOST_APP_GUI_PICK_H
#define VORHOST_APP_GUI_PICK_H

#include <cstdint>

#include "emulator/drawing/drawing.h"

namespace vorhost::gui {

// The main entity whose outline comes nearest p, if it comes within reach
// (drawing units); 0 for none. Of two as near, the one drawn later (on
// top) is taken.
uint64_t NearestObject(const Drawing& drawing, const Point3& p, double reach);

}  // namespace vorhost::gui

#endif
