#include "app/gui/snap.h"

#include <cmath>
#include <variant>

#include "emulator/io/scene.h"

namespace vorhost::gui {

namespace {

struct Vertex {
  Point3 at;
  double bulge = 0;
};

std::vector<Vertex> Vertices(const PlacedRecord& p) {
  std::vector<Vertex> out;
  const Entity& e = *p.record;
  if (e.type == "LWPOLYLINE") {
    for (const Group& g : e.groups) {
      if (g.code == 10 && std::holds_alternative<Point3>(g.value)) out.push_back({std::get<Point3>(g.value), 0});
      else if (g.code == 42 && !out.empty() && std::holds_alternative<double>(g.value))
        out.back().bulge = std::get<double>(g.value);
    }
  } else {
    for (const Entity& v : p.vertices)
      if (!v.erased && !(v.Short(70) & 16)) out.push_back({v.Point(10), v.Real(42)});
  }
  return out;
}

// The middle of the segment from a to b, on its arc when bulged: the arc
// bulges to the right of the chord for a positive bulge.
Point3 Middle(const Point3& a, const Point3& b, double bulge) {
  double dx = b[0] - a[0], dy = b[1] - a[1];
  double sagitta = bulge / 2;  // per unit of chord, along (dy, -dx)
  return {(a[0] + b[0]) / 2 + sagitta * dy, (a[1] + b[1]) / 2 - sagitta * dx, 0};
}

}  // namespace

std::vector<SnapPoint> SnapPoints(const Drawing& drawing) {
  std::vector<SnapPoint> out;
  auto add = [&out](const PlacedRecord& p, const Point3& at, bool mid) {
    Point3 world = p.transform.Apply(at);
    if (out.size() < kMaxSnapPoints && std::isfinite(world[0]) && std::isfinite(world[1]))
      out.push_back({{world[0], world[1], 0}, mid});
  };
  WalkModelSpace(drawing, [&](const PlacedRecord& p) {
    const Entity& e = *p.record;
    if (e.type == "LINE") {
      Point3 a = e.Point(10), b = e.Point(11);
      add(p, a, false);
      add(p, b, false);
      add(p, Middle(a, b, 0), true);
    } else if (e.type == "ARC") {
      Point3 c = e.Point(10);
      double r = e.Real(40), from = std::fmod(e.Real(50), 2 * M_PI), to = std::fmod(e.Real(51), 2 * M_PI);  // radians
      if (to < from) to += 2 * M_PI;
      for (auto [angle, mid] : {std::pair{from, false}, std::pair{to, false}, std::pair{(from + to) / 2, true}})
        add(p, {c[0] + r * std::cos(angle), c[1] + r * std::sin(angle), 0}, mid);
    } else if (e.type == "LWPOLYLINE" || (e.type == "POLYLINE" && !(e.Short(70) & (16 | 64)))) {
      std::vector<Vertex> vs = Vertices(p);
      bool closed = e.Short(70) & 1;
      for (size_t i = 0; i < vs.size(); i++) {
        add(p, vs[i].at, false);
        if (i + 1 < vs.size() || (closed && vs.size() > 2))
          add(p, Middle(vs[i].at, vs[(i + 1) % vs.size()].at, vs[i].bulge), true);
      }
    }
  });
  return out;
}

}  // namespace vorhost::gui
