// scene.h - model space as things to draw: block references expanded into
// their blocks' records with the reference's transform, BYLAYER and BYBLOCK
// colours and linetypes resolved, hidden layers left out. Pictures of a
// drawing (SVG export) are made from this walk.
#ifndef VORHOST_IO_SCENE_H
#define VORHOST_IO_SCENE_H

#include <functional>
#include <cstddef>

#include "emulator/drawing/drawing.h"

namespace vorhost {

// A plane affine map, x' = a x + c y + e, y' = b x + d y + f; z is kept.
struct Affine {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

  Point3 Apply(const Point3& p) const { return {a * p[0] + c * p[1] + e, b * p[0] + d * p[1] + f, p[2]}; }
  // Only the linear part, for directions.
  Point3 Turn(double x, double y) const { return {a * x + c * y, b * x + d * y, 0}; }
  // This map first, then outer.
  Affine Then(const Affine& outer) const;
  double Det() const { return a * d - b * c; }
  // Whether circles stay circles: a rotation with one scale, maybe mirrored.
  bool Conformal() const;
  // The factor lengths grow by (exact when Conformal).
  double Scale() const;
};

// A run of consecutive records of a drawing or block.
struct RecordRun {
  EntityList::const_iterator first, last;
  EntityList::const_iterator begin() const { return first; }
  EntityList::const_iterator end() const { return last; }
  bool empty() const { return first == last; }
  size_t size() const { return static_cast<size_t>(last - first); }
};

// One record to draw, where and how.
struct PlacedRecord {
  const Entity* record = nullptr;  // never an INSERT, VERTEX or SEQEND
  RecordRun vertices;                // a POLYLINE's VERTEX records
  Affine transform;                  // record coordinates to world
  short color = 7;                   // 1 to 255
  const LinetypeRecord* linetype = nullptr;  // nullptr: continuous
  double linetype_scale = 1;         // the record's own (group 48), LTSCALE not included
};

// Calls visit for each record to draw, in drawing order: block references
// give their blocks' records and then their attributes. Erased records,
// paper-space records, attribute definitions inside blocks, invisible
// attributes and records on frozen or off layers are left out; a block
// reference on a frozen layer is left out whole. Records on layer 0 inside
// a block take the reference's layer; BYBLOCK takes its colour and
// linetype. Blocks are expanded within the limits of drawing/blocks.h:
// kMaxBlockDepth levels, and kInsertBudget records and cells for each
// reference in model space; what lies past them is not visited.
void WalkModelSpace(const Drawing& drawing, const std::function<void(const PlacedRecord&)>& visit);

}  // namespace vorhost

#endif
