// spatial_index.h - where the main entities of a drawing lie, for picks,
// windows and the drawing's extents without walking every record: each
// entity's box in a uniform grid of square cells.
//
// The drawing tells the index which entities it added, handed out for
// change, or erased (Touch), and when the tables that shape outlines (text
// styles, blocks) may have changed; the index looks at those again only
// when it is next asked (Refresh), so a run of changes costs one look per
// entity changed.
#ifndef VORHOST_DRAWING_SPATIAL_INDEX_H
#define VORHOST_DRAWING_SPATIAL_INDEX_H

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "emulator/drawing/geometry.h"

namespace vorhost {

class SpatialIndex {
 public:
  // A main entity whose box meets the area asked about. bounded is false
  // when its outline holds a point that is not finite: its box then says
  // nothing of where the outline runs, and the caller must look at the
  // outline itself.
  struct Hit {
    uint64_t id;
    const Box* box;
    bool bounded;
  };

  // The entity id (a main entity, or the owner of a sub-entity) is to be
  // looked at again: added, changed or erased.
  void Touch(uint64_t id) {
    if (!stale_) touched_.push_back(id);
  }
  // Brings the index up to date with drawing.
  void Refresh(const Drawing& drawing);

  // The main entities that are not erased whose box meets the rectangle
  // with corners a and b (any order; x and y only), and those with a box
  // that is not bounded, in drawing order.
  std::vector<Hit> Meeting(const Drawing& drawing, const Point3& a, const Point3& b) const;

  // The box of every main entity; empty for an empty drawing.
  const Box& Extents() const;

 private:
  struct Entry {
    Box box;
    bool bounded = true;
    bool in_grid = false;  // false: kept in loose_, looked at by every query
  };
  struct CellRange {
    int64_t x0, y0, x1, y1;
    uint64_t count() const { return uint64_t(x1 - x0 + 1) * uint64_t(y1 - y0 + 1); }
  };

  void Rebuild(const Drawing& drawing);
  // The entry of a main entity that is not erased and has an outline; false
  // for any other. blocks keeps the blocks traced for the next entity.
  static bool Measure(uint64_t id, const Drawing& drawing, BlockOutlines* blocks, Entry* entry);
  void Place(uint64_t id, Entry entry);
  void Remove(uint64_t id);
  CellRange CellsOf(double x1, double y1, double x2, double y2) const;
  static uint64_t Key(int64_t x, int64_t y) {
    return (uint64_t(uint32_t(int32_t(x))) << 32) | uint32_t(int32_t(y));
  }

  std::unordered_map<uint64_t, Entry> entries_;
  std::unordered_map<uint64_t, std::vector<uint64_t>> cells_;
  std::unordered_set<uint64_t> loose_;  // entities too large for the grid, or unbounded
  double cell_ = 1;
  size_t built_size_ = 0;        // entries at the last rebuild
  std::vector<uint64_t> touched_;
  bool stale_ = true;
  uint64_t tables_version_ = 0;
  mutable Box extents_;
  mutable bool extents_valid_ = false;
};

}  // namespace vorhost

#endif
