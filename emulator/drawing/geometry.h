// geometry.h - where an entity lies: its outline as point chains (arcs and
// bulges sampled, texts as their boxes, inserts as their blocks' outlines),
// from which extents and window and crossing selections are decided.
#ifndef VORHOST_DRAWING_GEOMETRY_H
#define VORHOST_DRAWING_GEOMETRY_H

#include <optional>
#include <unordered_map>
#include <vector>

#include "emulator/drawing/drawing.h"

namespace vorhost {

using Chain = std::vector<Point3>;

struct BlockRecord;

// Blocks' outlines in their own coordinates, each traced once and reused
// while many entities are outlined with the drawing's tables as they are
// (the spatial index's rebuild): an insert of a block that inserts no other
// is then its block's chains moved into place, point for point as tracing
// the block again would place them. Holds pointers into the tables: it must
// not outlive a change to them.
class BlockOutlines {
 public:
  struct Traced {
    std::vector<Chain> chains;  // in the block's coordinates
    size_t spent = 0;           // of an InsertBudget, as tracing them spends it
  };
  // The block's traced outline; null for a block that inserts another,
  // whose outline depends on how deep it is inserted.
  const Traced* Of(const Drawing& drawing, const BlockRecord& block);

 private:
  std::unordered_map<const BlockRecord*, std::optional<Traced>> traced_;
};

// The outline of the main entity id and its sub-entities, in world
// coordinates. Empty for an entity with nothing to show. An insert's
// blocks are expanded within the limits of blocks.h (kMaxBlockDepth
// levels, kInsertBudget records and cells); blocks, when given, keeps the
// blocks traced for the next call.
std::vector<Chain> EntityOutline(const Drawing& drawing, uint64_t id, BlockOutlines* blocks = nullptr);

// The counter-clockwise sweep from angle a1 to a2 (radians), in (0, 2 pi]
// (equal angles make a full circle), found in constant time whatever the
// angles' size; 0 when either is not finite.
double ArcSweep(double a1, double a2);

// The points of an arc counter-clockwise from a1 to a2 (radians) about c;
// empty when the angles or the radius are not finite.
Chain ArcPoints(const Point3& c, double r, double a1, double a2);

// The centre, radius and angles of a polyline segment from p to q with
// bulge b (not 0): the arc runs counter-clockwise from a1 to a2 when b > 0.
// False when the segment has no arc: its ends are one point, or the arc
// cannot be given in finite numbers; the segment is then drawn straight.
bool BulgeArc(const Point3& p, const Point3& q, double b, Point3* centre, double* radius,
              double* a1, double* a2);

struct Box {
  Point3 lo{0, 0, 0}, hi{0, 0, 0};
  bool empty = true;
  // Grows the box to hold p; a point that is not finite (a block's point
  // at a scale too large for a double) is left out.
  void Add(const Point3& p);
};

Box EntityBox(const Drawing& drawing, uint64_t id);
// The box of every main entity of model space; empty for an empty drawing.
Box DrawingBox(const Drawing& drawing);

// Window selection takes an entity wholly inside the rectangle; crossing
// selection one inside it or crossing its edges. Corners in any order.
bool InsideWindow(const std::vector<Chain>& outline, const Point3& a, const Point3& b);
bool CrossesWindow(const std::vector<Chain>& outline, const Point3& a, const Point3& b);

}  // namespace vorhost

#endif
