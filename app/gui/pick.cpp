#include "app/gui/pick.h"

#include <algorithm>
#include <cmath>

#include "emulator/drawing/geometry.h"

namespace vorhost::gui {

namespace {

double SegmentDistance(const Point3& p, const Point3& a, const Point3& b) {
  double dx = b[0] - a[0], dy = b[1] - a[1], len2 = dx * dx + dy * dy;
  double t = len2 == 0 ? 0 : std::clamp(((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / len2, 0.0, 1.0);
  return std::hypot(p[0] - (a[0] + t * dx), p[1] - (a[1] + t * dy));
}

}  // namespace

uint64_t NearestObject(const Drawing& drawing, const Point3& p, double reach) {
  uint64_t chosen = 0;
  double best = reach;
  for (uint64_t id : drawing.MainEntities())
    for (const Chain& chain : EntityOutline(drawing, id))
      for (size_t k = 0; k < chain.size(); k++) {
        double d = chain.size() == 1 ? std::hypot(p[0] - chain[0][0], p[1] - chain[0][1])
                   : k + 1 < chain.size() ? SegmentDistance(p, chain[k], chain[k + 1])
                                          : reach + 1;
        if (d <= best) {
          best = d;
          chosen = id;
        }
      }
  return chosen;
}

}  // namespace vorhost::gui
