// layout.cpp - the host's record layouts.
#include "emulator/drawing/layout.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>

namespace vorhost {
namespace {

const Point3 kOrigin{0, 0, 0};

// The groups of a text-like record: TEXT, ATTRIB, ATTDEF. An attribute has
// its tag (and a definition its prompt) after the text, then its flags and
// field length, and its vertical justification as 74 rather than 73.
std::vector<GroupSlot> TextSlots(bool attribute, bool definition) {
  std::vector<GroupSlot> slots = {{10, kOrigin}, {40, 2.5}, {1, std::string()}};
  if (attribute) slots.push_back({2, std::string()});
  if (definition) slots.push_back({3, std::string()});
  if (attribute) slots.insert(slots.end(), {{70, short{0}}, {73, short{0}}});
  slots.insert(slots.end(), {{50, 0.0}, {41, 1.0}, {51, 0.0}, {7, std::string("STANDARD")},
                             {71, short{0}}, {72, short{0}}, {11, kOrigin, Presence::kJustified},
                             {attribute ? 74 : 73, short{0}}});
  return slots;
}

const std::map<std::string_view, std::vector<GroupSlot>>& Layouts() {
  static const std::map<std::string_view, std::vector<GroupSlot>> layouts = {
      // start, end
      {"LINE", {{10, kOrigin}, {11, kOrigin}}},
      // centre, radius
      {"CIRCLE", {{10, kOrigin}, {40, 0.0}}},
      // centre, radius, start and end angle
      {"ARC", {{10, kOrigin}, {40, 0.0}, {50, 0.0}, {51, 0.0}}},
      // vertices follow, (0,0,elevation), flags (1 closed), default widths
      {"POLYLINE", {{66, short{1}}, {10, kOrigin}, {70, short{0}}, {40, 0.0}, {41, 0.0}}},
      // location, start and end width, bulge, flags
      {"VERTEX", {{10, kOrigin}, {40, 0.0}, {41, 0.0}, {42, 0.0}, {70, short{0}}}},
      // insertion, height, text, rotation, width factor, oblique, style,
      // generation, justification, alignment point, vertical justification
      {"TEXT", TextSlots(false, false)},
      // ATTRIBs follow, block, insertion, scales, rotation
      {"INSERT", {{66, short{0}, Presence::kGiven}, {2, std::string()}, {10, kOrigin}, {41, 1.0},
                  {42, 1.0}, {43, 1.0}, {50, 0.0}}},
      // as TEXT with the tag, flags and field length; 74 vertical justification
      {"ATTRIB", TextSlots(true, false)},
      // as ATTRIB with the prompt after the tag
      {"ATTDEF", TextSlots(true, true)},
      // nothing of its own (its owner gives -2)
      {"SEQEND", {}},
  };
  return layouts;
}

const Group* FindIn(const std::vector<Group>& groups, int code) {
  for (const Group& g : groups)
    if (g.code == code) return &g;
  return nullptr;
}

short ShortIn(const std::vector<Group>& groups, int code) {
  const Group* g = FindIn(groups, code);
  const short* s = g ? std::get_if<short>(&g->value) : nullptr;
  return s ? *s : 0;
}

Point3 PointIn(const std::vector<Group>& groups, int code) {
  const Group* g = FindIn(groups, code);
  const Point3* p = g ? std::get_if<Point3>(&g->value) : nullptr;
  return p ? *p : kOrigin;
}

// Whether a text-like record of these groups is justified: 72 or its
// vertical justification is not 0.
bool Justified(std::string_view type, const std::vector<Group>& groups) {
  return ShortIn(groups, 72) != 0 || ShortIn(groups, type == "TEXT" ? 73 : 74) != 0;
}

bool Applies(const GroupSlot& slot, bool given, bool justified) {
  switch (slot.presence) {
    case Presence::kAlways: return true;
    case Presence::kGiven: return given;
    case Presence::kJustified: return justified;
  }
  return true;
}

}  // namespace

const std::vector<GroupSlot>* LayoutOf(std::string_view type) {
  // Looked up for every record made: the few types are compared length
  // first, most of them failing there.
  static const std::vector<std::pair<std::string_view, const std::vector<GroupSlot>*>> flat = [] {
    std::vector<std::pair<std::string_view, const std::vector<GroupSlot>*>> all;
    for (const auto& [name, slots] : Layouts()) all.push_back({name, &slots});
    return all;
  }();
  for (const auto& [name, slots] : flat)
    if (name.size() == type.size() && name == type) return slots;
  return nullptr;
}

GroupList LayOut(std::string_view type, std::vector<Group> groups, const Entity* polyline) {
  const std::vector<GroupSlot>* layout = LayoutOf(type);
  if (!layout) return GroupList(groups);
  bool justified = Justified(type, groups);
  // The record's groups in order, as pointers to those given, to the
  // layout's fallbacks and to the few made here, packed once at the end.
  // A group given is taken once, so that a second group of the same code
  // stays among the others; the search starts after the last one taken,
  // as groups mostly come in the layout's order.
  std::vector<const Group*> order;
  order.reserve(layout->size() + groups.size());
  std::vector<bool> taken(groups.size(), false);
  std::array<Group, 3> made;  // an alignment point and a vertex's two widths at most
  size_t made_count = 0, from = 0;
  for (const GroupSlot& slot : *layout) {
    size_t found = groups.size();
    for (size_t k = 0; k < groups.size(); k++) {
      size_t i = (from + k) % groups.size();
      if (!taken[i] && groups[i].code == slot.code) {
        found = i;
        break;
      }
    }
    bool given = found < groups.size();
    if (given) {
      taken[found] = true;
      from = found + 1;
    }
    if (!Applies(slot, given, justified)) continue;
    if (given) {
      order.push_back(&groups[found]);
    } else if (slot.presence == Presence::kJustified) {
      made[made_count] = {slot.code, PointIn(groups, 10)};
      order.push_back(&made[made_count++]);
    } else if (polyline && (slot.code == 40 || slot.code == 41)) {
      made[made_count] = {slot.code, polyline->Real(slot.code)};
      order.push_back(&made[made_count++]);
    } else {
      order.push_back(&slot.fallback);
    }
  }
  for (size_t i = 0; i < groups.size(); i++)
    if (!taken[i]) order.push_back(&groups[i]);
  return GroupList(order);
}

std::vector<Group> GroupsInOrder(const Entity& e) {
  std::vector<Group> groups = e.groups.ToVector(), out;
  std::vector<bool> used(groups.size(), false);
  if (const std::vector<GroupSlot>* layout = LayoutOf(e.type))
    for (const GroupSlot& slot : *layout)
      for (size_t i = 0; i < groups.size(); i++)
        if (!used[i] && groups[i].code == slot.code) {
          used[i] = true;
          out.push_back(groups[i]);
          break;
        }
  for (size_t i = 0; i < groups.size(); i++)
    if (!used[i]) out.push_back(std::move(groups[i]));
  return out;
}

}  // namespace vorhost
