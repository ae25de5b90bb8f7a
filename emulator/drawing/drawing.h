// drawing.h - a drawing: its tables and its entities in drawing order, with
// the names and handles the host gives them.
#ifndef VORHOST_DRAWING_DRAWING_H
#define VORHOST_DRAWING_DRAWING_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <string>
#include <vector>

#include "emulator/drawing/entity.h"
#include "emulator/drawing/tables.h"

namespace vorhost {

class SpatialIndex;

class Drawing {
 public:
  Drawing();
  ~Drawing();
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;
  Drawing(Drawing&&) noexcept;
  Drawing& operator=(Drawing&&) noexcept;

  Tables& tables() { return tables_; }
  const Tables& tables() const { return tables_; }

  // Model space in drawing order, sub-entities right after their owner,
  // erased records included (they are skipped by everything else).
  const EntityList& entities() const { return entities_; }

  // Appends a record and gives it a name and a handle; a sub-entity's owner
  // is the main entity last appended. Returns the new record's id.
  uint64_t Append(Entity entity);

  // A record handed out for change: its main entity's outline is looked at
  // again at the next use of spatial().
  Entity* Find(uint64_t id);
  const Entity* Find(uint64_t id) const;
  // Where the record stands in entities(); kNoPosition for none.
  static constexpr size_t kNoPosition = static_cast<size_t>(-1);
  size_t PositionOf(uint64_t id) const;
  // The record with this handle, erased or not; nullptr if none.
  const Entity* FindByHandle(uint32_t handle) const;

  // The record after id in drawing order (the first for id 0), skipping
  // erased ones; 0 at the end.
  uint64_t Next(uint64_t id) const;
  // The last main entity that is not erased; 0 for an empty drawing.
  uint64_t Last() const;
  // Erases a main entity with its sub-entities.
  void Erase(uint64_t id);
  // Ids of the main entities that are not erased, in order.
  std::vector<uint64_t> MainEntities() const;

  // Where the main entities lie, brought up to date with every record
  // added, handed out for change or erased, and with the tables.
  const SpatialIndex& spatial() const;

  // The next handle to give (group 5, and the file's $HANDSEED).
  uint32_t handle_seed() const { return next_handle_; }
  void set_handle_seed(uint32_t seed) { next_handle_ = seed; }

 private:
  // The main entity of id (itself, or a sub-entity's owner) may have moved.
  void Touch(const Entity& e);
  void NoteHandle(uint32_t handle, size_t position);

  Tables tables_;
  EntityList entities_;
  // Positions in entities_ plus one (0: none), by id from the first id: a
  // drawing's ids only grow, with gaps where other drawings took some.
  uint64_t first_id_ = 0;
  std::vector<uint32_t> by_id_;
  // The same by handle: handles up to about twice the records' number in
  // a vector, any other (read from a file) in a map.
  std::vector<uint32_t> by_handle_;
  std::unordered_map<uint32_t, size_t> far_handles_;
  uint32_t next_handle_ = 0x20;
  uint64_t last_main_ = 0;
  mutable std::unique_ptr<SpatialIndex> spatial_;
};

}  // namespace vorhost

#endif
