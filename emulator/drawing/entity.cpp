// entity.cpp - group lookup on drawing records.
#include "emulator/drawing/entity.h"

#include <algorithm>

#include "emulator/core/numbers.h"

namespace vorhost {

const Group* Entity::Find(int code) const {
  for (const Group& g : groups)
    if (g.code == code) return &g;
  return nullptr;
}

double Entity::Real(int code, double fallback) const {
  const Group* g = Find(code);
  if (!g) return fallback;
  if (auto* d = std::get_if<double>(&g->value)) return *d;
  if (auto* s = std::get_if<short>(&g->value)) return *s;
  return fallback;
}

Point3 Entity::Point(int code) const {
  const Group* g = Find(code);
  if (g)
    if (auto* p = std::get_if<Point3>(&g->value)) return *p;
  return {0, 0, 0};
}

short Entity::Short(int code, short fallback) const {
  const Group* g = Find(code);
  if (g)
    if (auto* s = std::get_if<short>(&g->value)) return *s;
  return fallback;
}

long Entity::Long(int code, long fallback) const {
  const Group* g = Find(code);
  if (!g) return fallback;
  if (auto* l = std::get_if<long>(&g->value)) return *l;
  if (auto* s = std::get_if<short>(&g->value)) return *s;
  return fallback;
}

std::string Entity::Text(int code, std::string_view fallback) const {
  const Group* g = Find(code);
  if (g)
    if (auto* s = std::get_if<std::string>(&g->value)) return *s;
  return std::string(fallback);
}

void Entity::Set(int code, GroupValue value) {
  for (Group& g : groups)
    if (g.code == code) {
      g.value = std::move(value);
      return;
    }
  groups.push_back({code, std::move(value)});
}

void Entity::Remove(int code) {
  std::erase_if(groups, [code](const Group& g) { return g.code == code; });
}

bool Entity::NumbersInRange() const {
  for (const Group& g : groups) {
    if (auto* d = std::get_if<double>(&g.value); d && !InRange(*d)) return false;
    if (auto* p = std::get_if<Point3>(&g.value); p && !InRange(*p)) return false;
  }
  return true;
}

}  // namespace vorhost
