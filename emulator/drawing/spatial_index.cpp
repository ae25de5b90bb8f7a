// spatial_index.cpp - entity boxes in a grid.
#include "emulator/drawing/spatial_index.h"

#include <algorithm>
#include <cmath>

namespace vorhost {
namespace {

// An entity spread over more cells than this is kept out of the grid and
// looked at by every query instead.
constexpr uint64_t kMaxCellsPerEntity = 64;
// Cell numbers stay within this, whatever the coordinates.
constexpr double kCellLimit = 1 << 30;

bool Finite(const Point3& p) { return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]); }

bool Meets(const Box& box, double x1, double y1, double x2, double y2) {
  return !box.empty && box.lo[0] <= x2 && box.hi[0] >= x1 && box.lo[1] <= y2 && box.hi[1] >= y1;
}

}  // namespace

SpatialIndex::CellRange SpatialIndex::CellsOf(double x1, double y1, double x2, double y2) const {
  auto cell = [this](double v) {
    double c = std::floor(v / cell_);
    if (!(c > -kCellLimit)) return static_cast<int64_t>(-kCellLimit);
    if (c > kCellLimit) return static_cast<int64_t>(kCellLimit);
    return static_cast<int64_t>(c);
  };
  return {cell(x1), cell(y1), cell(x2), cell(y2)};
}

bool SpatialIndex::Measure(uint64_t id, const Drawing& drawing, BlockOutlines* blocks, Entry* entry) {
  const Entity* e = drawing.Find(id);
  if (!e || e->erased || e->IsSubEntity()) return false;
  std::vector<Chain> outline = EntityOutline(drawing, id, blocks);
  if (outline.empty()) return false;
  for (const Chain& c : outline)
    for (const Point3& p : c) {
      if (Finite(p)) entry->box.Add(p);
      else entry->bounded = false;
    }
  return true;
}

void SpatialIndex::Place(uint64_t id, Entry entry) {
  if (entry.bounded) {
    CellRange r = CellsOf(entry.box.lo[0], entry.box.lo[1], entry.box.hi[0], entry.box.hi[1]);
    if (r.count() <= kMaxCellsPerEntity) {
      entry.in_grid = true;
      for (int64_t x = r.x0; x <= r.x1; x++)
        for (int64_t y = r.y0; y <= r.y1; y++) cells_[Key(x, y)].push_back(id);
    }
  }
  if (!entry.in_grid) loose_.insert(id);
  if (extents_valid_ && !entry.box.empty) {
    extents_.Add(entry.box.lo);
    extents_.Add(entry.box.hi);
  }
  entries_.emplace(id, entry);
}

void SpatialIndex::Remove(uint64_t id) {
  auto it = entries_.find(id);
  if (it == entries_.end()) return;
  const Entry& entry = it->second;
  if (entry.in_grid) {
    CellRange r = CellsOf(entry.box.lo[0], entry.box.lo[1], entry.box.hi[0], entry.box.hi[1]);
    for (int64_t x = r.x0; x <= r.x1; x++)
      for (int64_t y = r.y0; y <= r.y1; y++) {
        auto cell = cells_.find(Key(x, y));
        if (cell == cells_.end()) continue;
        std::vector<uint64_t>& ids = cell->second;
        auto at = std::find(ids.begin(), ids.end(), id);
        if (at != ids.end()) {
          *at = ids.back();
          ids.pop_back();
        }
        if (ids.empty()) cells_.erase(cell);
      }
  } else {
    loose_.erase(id);
  }
  entries_.erase(it);
  extents_valid_ = false;
}

void SpatialIndex::Rebuild(const Drawing& drawing) {
  entries_.clear();
  cells_.clear();
  loose_.clear();
  touched_.clear();
  std::vector<std::pair<uint64_t, Entry>> measured;
  BlockOutlines blocks;  // most inserts share a few blocks
  for (const Entity& e : drawing.entities()) {
    Entry entry;
    if (!e.erased && !e.IsSubEntity() && Measure(e.id, drawing, &blocks, &entry))
      measured.emplace_back(e.id, entry);
  }
  // The cell: about one entity's size, and no smaller than makes about one
  // cell for each entity over the drawing's extents.
  Box all;
  double sizes = 0;
  size_t count = 0;
  for (const auto& [id, entry] : measured) {
    if (!entry.bounded || entry.box.empty) continue;
    all.Add(entry.box.lo);
    all.Add(entry.box.hi);
    sizes += std::max(entry.box.hi[0] - entry.box.lo[0], entry.box.hi[1] - entry.box.lo[1]);
    count++;
  }
  cell_ = 1;
  if (count > 0) {
    double w = all.hi[0] - all.lo[0], h = all.hi[1] - all.lo[1];
    double n = static_cast<double>(count);
    double c = std::max({std::sqrt(w * h / n), sizes / n, std::max(w, h) / n});
    if (std::isfinite(c) && c > 0) cell_ = c;
  }
  extents_ = Box();
  extents_valid_ = true;
  entries_.reserve(measured.size());
  for (const auto& [id, entry] : measured) Place(id, entry);
  built_size_ = entries_.size();
  tables_version_ = drawing.tables().geometry_version();
  stale_ = false;
}

void SpatialIndex::Refresh(const Drawing& drawing) {
  if (stale_ || tables_version_ != drawing.tables().geometry_version()) {
    Rebuild(drawing);
    return;
  }
  if (touched_.empty()) return;
  // A drawing grown well past the grid's cell is given a new one.
  if (entries_.size() + touched_.size() > 2 * built_size_ + 4096) {
    Rebuild(drawing);
    return;
  }
  std::sort(touched_.begin(), touched_.end());
  touched_.erase(std::unique(touched_.begin(), touched_.end()), touched_.end());
  BlockOutlines blocks;
  for (uint64_t id : touched_) {
    Remove(id);
    Entry entry;
    if (Measure(id, drawing, &blocks, &entry)) Place(id, entry);
  }
  touched_.clear();
}

std::vector<SpatialIndex::Hit> SpatialIndex::Meeting(const Drawing& drawing, const Point3& a,
                                                     const Point3& b) const {
  double x1 = std::min(a[0], b[0]), x2 = std::max(a[0], b[0]);
  double y1 = std::min(a[1], b[1]), y2 = std::max(a[1], b[1]);
  std::vector<std::pair<size_t, uint64_t>> found;  // position in the drawing, id
  auto consider = [&](uint64_t id, const Entry& entry) {
    if (!entry.bounded || Meets(entry.box, x1, y1, x2, y2)) found.emplace_back(drawing.PositionOf(id), id);
  };
  bool finite = std::isfinite(x1) && std::isfinite(x2) && std::isfinite(y1) && std::isfinite(y2);
  CellRange r = finite ? CellsOf(x1, y1, x2, y2) : CellRange{0, 0, 0, 0};
  if (!finite || r.count() > cells_.size()) {
    for (const auto& [id, entry] : entries_) consider(id, entry);
  } else {
    for (int64_t x = r.x0; x <= r.x1; x++)
      for (int64_t y = r.y0; y <= r.y1; y++) {
        auto cell = cells_.find(Key(x, y));
        if (cell == cells_.end()) continue;
        for (uint64_t id : cell->second) consider(id, entries_.at(id));
      }
    for (uint64_t id : loose_) consider(id, entries_.at(id));
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  std::vector<Hit> hits;
  hits.reserve(found.size());
  for (const auto& [position, id] : found) {
    const Entry& entry = entries_.at(id);
    hits.push_back({id, &entry.box, entry.bounded});
  }
  return hits;
}

const Box& SpatialIndex::Extents() const {
  if (!extents_valid_) {
    extents_ = Box();
    for (const auto& [id, entry] : entries_)
      if (!entry.box.empty) {
        extents_.Add(entry.box.lo);
        extents_.Add(entry.box.hi);
      }
    extents_valid_ = true;
  }
  return extents_;
}

}  // namespace vorhost
