// layout.h - the groups of each record type the host makes, in the order
// the host keeps them and hands them out (ads_entget, the dump, DXF), with
// the value a record gets for a group it lacks. One table serves the
// commands that make records, the DXF reader that puts a file's records
// into the host's order, and the dump; angles are radians.
//
// Records of other types (LWPOLYLINE, SOLID, ... read from files) have no
// layout: they keep the groups they came with, in their order.
#ifndef VORHOST_DRAWING_LAYOUT_H
#define VORHOST_DRAWING_LAYOUT_H

#include <string_view>
#include <vector>

#include "emulator/drawing/entity.h"

namespace vorhost {

// When a group of a layout is part of a record.
enum class Presence {
  kAlways,
  kJustified,  // 11, the alignment point: only when 72 or the vertical justification is not 0
  kGiven,      // INSERT's 66: only when the record has it (ATTRIBs follow)
};

struct GroupSlot {
  GroupSlot(int slot_code, GroupValue value, Presence when = Presence::kAlways)
      : code(slot_code), fallback{slot_code, std::move(value)}, presence(when) {}
  int code;
  Group fallback;  // the group a record that lacks it gets
  Presence presence;
};

// The layout of a type, or null for a type the host does not make.
const std::vector<GroupSlot>* LayoutOf(std::string_view type);

// The groups of a record of type in the layout's order: each group of the
// layout that applies, taken from groups when there and else made (the
// alignment point from the insertion point, a vertex's widths from its
// polyline when one is given, the layout's fallback otherwise), then the
// groups the layout does not name, in their order. A type without a
// layout keeps its groups as they are.
GroupList LayOut(std::string_view type, std::vector<Group> groups, const Entity* polyline = nullptr);

// The record's groups in the layout's order, the others after them, none
// added: the order the dump writes them in.
std::vector<Group> GroupsInOrder(const Entity& e);

}  // namespace vorhost

#endif
