// entity.h - one record of a drawing as the host keeps it: a type, a name
// and handle, the common properties, and the type's own groups in the order
// the host hands them out. Complex objects are runs of records, as in the
// host's file format: POLYLINE, its VERTEXes, SEQEND; INSERT, its ATTRIBs,
// SEQEND.
//
// The groups of each type the host makes, and their order, are in
// layout.h; records of other types, read from files, keep the groups they
// came with, x/y/z coordinate groups joined into points.
#ifndef VORHOST_DRAWING_ENTITY_H
#define VORHOST_DRAWING_ENTITY_H

#include <array>
#include <cstdint>
#include <optional>
#include <deque>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "emulator/core/numbers.h"
#include "emulator/drawing/group_list.h"
#include "emulator/drawing/record_name.h"

namespace vorhost {

class Entity {
 public:
  Entity() = default;
  explicit Entity(RecordName kind) : type(kind) {}

  // (Largest members first: a drawing keeps many records, 64 bytes each.)
  RecordName type;           // "LINE", "VERTEX", "LWPOLYLINE", ...
  RecordName layer = "0";
  RecordName linetype;       // empty: BYLAYER (no group 6)
  uint64_t id = 0;           // the entity name's number, unique in a session
  uint64_t owner = 0;        // VERTEX, ATTRIB, SEQEND: the id of their main entity
  uint32_t handle = 0;       // group 5, unique in the drawing
  short color = kColorByLayer;  // 256: BYLAYER (no group 62)
  bool erased = false;

  // Groups other than -1, 0, 5, 6, 8 and 62, in the host's order. Angles
  // are radians, as ads_entget gives them.
  GroupList groups;

  std::optional<Group> Find(int code) const;
  double Real(int code, double fallback = 0) const;
  Point3 Point(int code) const;  // (0,0,0) when missing
  short Short(int code, short fallback = 0) const;
  long Long(int code, long fallback = 0) const;
  std::string Text(int code, std::string_view fallback = "") const;

  // Replaces the first group of that code, or appends one.
  void Set(int code, GroupValue value);
  void Remove(int code);

  // Whether every real and point of the record is finite and within the
  // drawing's range (core/numbers.h): what a command checks before it adds
  // a record whose numbers it computed.
  bool NumbersInRange() const;

  // Whether this record belongs to the one before it (VERTEX, ATTRIB,
  // SEQEND): such records are never main entities.
  bool IsSubEntity() const { return type == "VERTEX" || type == "ATTRIB" || type == "SEQEND"; }
};

// Records in drawing order, a drawing's or a block's. A deque, not a vector:
// a record stays where it is while more are appended (pointers handed out by
// the drawing stay good), and a drawing of a hundred thousand records grows
// without ever copying them all to a twice larger block.
using EntityList = std::deque<Entity>;

}  // namespace vorhost

#endif
