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
  entity.groups.shrink_to_fit();  // records are kept long and made once
  if (entity.IsSubEntity()) entity.owner = last_main_;
  else last_main_ = entity.id;
  if (entities_.empty()) first_id_ = entity.id;
  by_id_.resize(entity.id - first_id_ + 1);
  by_id_.back() = static_cast<uint32_t>(entities_.size() + 1);
  NoteHandle(entity.handle, entities_.size());
  entities_.push_back(std::move(entity));
  Touch(entities_.back());
  return entities_.back().id;
}

void Drawing::NoteHandle(uint32_t handle, size_t position) {
  if (handle >= by_handle_.size() && handle < 2 * entities_.size() + 4096) by_handle_.resize(handle + 1);
  if (handle < by_handle_.size()) by_handle_[handle] = static_cast<uint32_t>(position + 1);
  else far_handles_[handle] = position;
}

Entity* Drawing::Find(uint64_t id) {
  size_t at = PositionOf(id);
  if (at == kNoPosition) return nullptr;
  Touch(entities_[at]);
  return &entities_[at];
}

const Entity* Drawing::Find(uint64_t id) const {
  size_t at = PositionOf(id);
  return at == kNoPosition ? nullptr : &entities_[at];
}

size_t Drawing::PositionOf(uint64_t id) const {
  if (id < first_id_ || id - first_id_ >= by_id_.size() || by_id_[id - first_id_] == 0) return kNoPosition;
  return by_id_[id - first_id_] - 1;
}

const Entity* Drawing::FindByHandle(uint32_t handle) const {
  if (handle < by_handle_.size())
    return by_handle_[handle] == 0 ? nullptr : &entities_[by_handle_[handle] - 1];
  auto it = far_handles_.find(handle);
  return it == far_handles_.end() ? nullptr : &entities_[it->second];
}

uint64_t Drawing::Next(uint64_t id) const {
  size_t start = 0;
  if (id != 0) {
    size_t at = PositionOf(id);
    if (at == kNoPosition) return 0;
    start = at + 1;
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
  size_t at = PositionOf(id);
  if (at == kNoPosition || entities_[at].IsSubEntity()) return;
  entities_[at].erased = true;
  Touch(entities_[at]);
  for (size_t i = at + 1; i < entities_.size() && entities_[i].IsSubEntity(); i++)
    entities_[i].erased = true;
}

std::vector<uint64_t> Drawing::MainEntities() const {
  std::vector<uint64_t> ids;
  for (const Entity& e : entities_)
    if (!e.erased && !e.IsSubEntity()) ids.push_back(e.id);
  return ids;
}

}  // namespace vorhost
