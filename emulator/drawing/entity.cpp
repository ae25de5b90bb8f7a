// entity.cpp - group lookup on drawing records.
#include "emulator/drawing/entity.h"

#include <algorithm>

#include "emulator/core/numbers.h"

namespace vorhost {

// A drawing keeps many records: keep them small (on 64-bit machines; the
// emulator runs on nothing else).
static_assert(sizeof(void*) != 8 || sizeof(Entity) <= 64, "a record grew past 64 bytes");

std::optional<Group> Entity::Find(int code) const {
  if (GroupList::Ref g = groups.Find(code)) return g.ToGroup();
  return std::nullopt;
}

double Entity::Real(int code, double fallback) const {
  GroupList::Ref g = groups.Find(code);
  if (g && g.is_real()) return g.real();
  if (g && g.is_short()) return g.int16();
  return fallback;
}

Point3 Entity::Point(int code) const {
  GroupList::Ref g = groups.Find(code);
  return g && g.is_point() ? g.point() : Point3{0, 0, 0};
}

short Entity::Short(int code, short fallback) const {
  GroupList::Ref g = groups.Find(code);
  return g && g.is_short() ? g.int16() : fallback;
}

long Entity::Long(int code, long fallback) const {
  GroupList::Ref g = groups.Find(code);
  if (g && g.is_long()) return g.int32();
  if (g && g.is_short()) return g.int16();
  return fallback;
}

std::string Entity::Text(int code, std::string_view fallback) const {
  GroupList::Ref g = groups.Find(code);
  return std::string(g && g.is_text() ? g.text() : fallback);
}

void Entity::Set(int code, GroupValue value) { groups.Set(code, value); }

void Entity::Remove(int code) { groups.Remove(code); }

bool Entity::NumbersInRange() const {
  for (GroupList::Ref g : groups) {
    if (g.is_real() && !InRange(g.real())) return false;
    if (g.is_point() && !InRange(g.point())) return false;
  }
  return true;
}

}  // namespace vorhost
