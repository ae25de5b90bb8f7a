// drawing.cpp - entity names, handles and walking the drawing.
#include "emulator/drawing/drawing.h"

#include "emulator/drawing/spatial_index.h"

namespace vorhost {
namespace {

// Entity names stay unique for the whole session, across drawings, so that
// a name kept from a closed drawing never finds an entity of the next one.
uint64_t next_id = 1;

}  // namespace

Drawing::Drawing() : spatial_(std::make_unique<SpatialIndex>()) {}
Drawing::~Drawing() = default;
Drawing::Drawing(Drawing&&) noexcept = default;
Drawing& Drawing::operator=(Drawing&&) noexcept = default;

void Drawing::Touch(const Entity& e) {
  if (!spatial_) spatial_ = std::make_unique<SpatialIndex>();
  spatial_->Touch(e.IsSubEntity() ? e.owner : e.id);
}

const SpatialIndex& Drawing::spatial() const {
  if (!spatial_) spatial_ = std::make_unique<SpatialIndex>();
  spatial_->Refresh(*this);
  return *spatial_;
}

uint64_t Drawing::Append(Entity entity) {
  entity.id = next_id++;
  if (entity.handle == 0 || FindByHandle(entity.handle)) entity.handle = next_handle_;
  if (entity.handle >= next_handle_) next_handle_ = entity.handle + 1;
  entity.erased = false;
  if (entity.IsSubEntity()) entity.owner = last_main_;
  else last_main_ = entity.id;
  index_[entity.id] = entities_.size();
  by_handle_[entity.handle] = entities_.size();
  entities_.push_back(std::move(entity));
  Touch(entities_.back());
  return entities_.back().id;
}

Entity* Drawing::Find(uint64_t id) {
  auto it = index_.find(id);
  if (it == index_.end()) return nullptr;
  Touch(entities_[it->second]);
  return &entities_[it->second];
}

const Entity* Drawing::Find(uint64_t id) const {
  auto it = index_.find(id);
  return it == index_.end() ? nullptr : &entities_[it->second];
}

size_t Drawing::PositionOf(uint64_t id) const {
  auto it = index_.find(id);
  return it == index_.end() ? kNoPosition : it->second;
}

const Entity* Drawing::FindByHandle(uint32_t handle) const {
  auto it = by_handle_.find(handle);
  return it == by_handle_.end() ? nullptr : &entities_[it->second];
}

uint64_t Drawing::Next(uint64_t id) const {
  size_t start = 0;
  if (id != 0) {
    auto it = index_.find(id);
    if (it == index_.end()) return 0;
    start = it->second + 1;
  }
  for (size_t i = start; i < entities_.size(); i++)
    if (!entities_[i].erased) return entities_[i].id;
  return 0;
}

uint64_t Drawing::Last() const {
  for (size_t i = entities_.size(); i-- > 0;)
    if (!entities_[i].erased && !entities_[i].IsSubEntity()) return entities_[i].id;
  return 0;
}

void Drawing::Erase(uint64_t id) {
  auto it = index_.find(id);
  if (it == index_.end() || entities_[it->second].IsSubEntity()) return;
  entities_[it->second].erased = true;
  Touch(entities_[it->second]);
  for (size_t i = it->second + 1; i < entities_.size() && entities_[i].IsSubEntity(); i++)
    entities_[i].erased = true;
}

std::vector<uint64_t> Drawing::MainEntities() const {
  std::vector<uint64_t> ids;
  for (const Entity& e : entities_)
    if (!e.erased && !e.IsSubEntity()) ids.push_back(e.id);
  return ids;
}

}  // namespace vorhost
