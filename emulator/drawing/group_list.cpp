// group_list.cpp - packing and unpacking a record's groups.
//
// A group is its code (4 bytes), its kind (1 byte: the index in
// GroupValue) and its value: a text as its length (4 bytes) and its bytes,
// a real as 8 bytes, a point as 24, a short as 2, a long as 8. Nothing is
// aligned: values are copied in and out with memcpy.
#include "emulator/drawing/group_list.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace vorhost {
namespace {

constexpr size_t kHead = sizeof(int32_t) + 1;

template <typename T>
T Load(const char* at) {
  T v;
  std::memcpy(&v, at, sizeof v);
  return v;
}

template <typename T>
char* Store(const T& v, char* at) {
  std::memcpy(at, &v, sizeof v);
  return at + sizeof v;
}

size_t ValueBytes(size_t kind, const char* value) {
  switch (kind) {
    case 0: return sizeof(uint32_t) + Load<uint32_t>(value);
    case 1: return sizeof(double);
    case 2: return sizeof(Point3);
    case 3: return sizeof(short);
    default: return sizeof(int64_t);
  }
}

const Group& Deref(const Group& g) { return g; }
const Group& Deref(const Group* g) { return *g; }

}  // namespace

int GroupList::Ref::code() const { return Load<int32_t>(at_); }
size_t GroupList::Ref::kind() const { return static_cast<unsigned char>(at_[sizeof(int32_t)]); }
size_t GroupList::Ref::Bytes() const { return kHead + ValueBytes(kind(), at_ + kHead); }

std::string_view GroupList::Ref::text() const {
  return {at_ + kHead + sizeof(uint32_t), Load<uint32_t>(at_ + kHead)};
}
double GroupList::Ref::real() const { return Load<double>(at_ + kHead); }
Point3 GroupList::Ref::point() const { return Load<Point3>(at_ + kHead); }
short GroupList::Ref::int16() const { return Load<short>(at_ + kHead); }
long GroupList::Ref::int32() const { return static_cast<long>(Load<int64_t>(at_ + kHead)); }

Group GroupList::Ref::ToGroup() const {
  switch (kind()) {
    case 0: return {code(), std::string(text())};
    case 1: return {code(), real()};
    case 2: return {code(), point()};
    case 3: return {code(), int16()};
    default: return {code(), int32()};
  }
}

GroupList::GroupList(const GroupList& other) { *this = other; }

GroupList& GroupList::operator=(const GroupList& other) {
  if (this == &other) return *this;
  std::unique_ptr<char[]> copy;
  if (other.used_ > 0) {
    copy = std::make_unique_for_overwrite<char[]>(other.used_);
    std::memcpy(copy.get(), other.data_.get(), other.used_);
  }
  data_ = std::move(copy);
  used_ = capacity_ = other.used_;
  return *this;
}

GroupList& GroupList::operator=(const std::vector<Group>& groups) {
  Assign(groups.data(), groups.data() + groups.size());
  return *this;
}

GroupList& GroupList::operator=(std::initializer_list<Group> groups) {
  Assign(groups.begin(), groups.end());
  return *this;
}

size_t GroupList::size() const { return static_cast<size_t>(std::distance(begin(), end())); }

GroupList::Ref GroupList::Find(int code) const {
  for (Ref g : *this)
    if (g.code() == code) return g;
  return Ref();
}

std::vector<Group> GroupList::ToVector() const {
  std::vector<Group> out;
  for (Ref g : *this) out.push_back(g.ToGroup());
  return out;
}

size_t GroupList::BytesOf(const Group& g) {
  if (auto* s = std::get_if<std::string>(&g.value)) return kHead + sizeof(uint32_t) + s->size();
  switch (g.value.index()) {
    case 1: return kHead + sizeof(double);
    case 2: return kHead + sizeof(Point3);
    case 3: return kHead + sizeof(short);
    default: return kHead + sizeof(int64_t);
  }
}

char* GroupList::Put(const Group& g, char* at) {
  at = Store(static_cast<int32_t>(g.code), at);
  *at++ = static_cast<char>(g.value.index());
  switch (g.value.index()) {
    case 0: {
      const std::string& s = std::get<std::string>(g.value);
      at = Store(static_cast<uint32_t>(s.size()), at);
      if (!s.empty()) std::memcpy(at, s.data(), s.size());
      return at + s.size();
    }
    case 1: return Store(std::get<double>(g.value), at);
    case 2: return Store(std::get<Point3>(g.value), at);
    case 3: return Store(std::get<short>(g.value), at);
    default: return Store(static_cast<int64_t>(std::get<long>(g.value)), at);
  }
}

// first..last gives a Group& (or a Group* when Deref is the pointer's).
template <typename It>
void GroupList::AssignFrom(It first, It last) {
  size_t n = 0;
  for (It g = first; g != last; ++g) n += BytesOf(Deref(*g));
  if (n > std::numeric_limits<uint32_t>::max()) throw std::length_error("a record's groups over 4 GB");
  std::unique_ptr<char[]> data = n > 0 ? std::make_unique_for_overwrite<char[]>(n) : nullptr;
  char* at = data.get();
  for (It g = first; g != last; ++g) at = Put(Deref(*g), at);
  data_ = std::move(data);
  used_ = capacity_ = static_cast<uint32_t>(n);
}

void GroupList::Assign(const Group* first, const Group* last) { AssignFrom(first, last); }

GroupList::GroupList(const std::vector<const Group*>& groups) { AssignFrom(groups.begin(), groups.end()); }

char* GroupList::Grow(size_t n) {
  size_t need = size_t{used_} + n;
  if (need > std::numeric_limits<uint32_t>::max()) throw std::length_error("a record's groups over 4 GB");
  if (need > capacity_) {
    size_t room = std::min<size_t>(std::max(need, size_t{capacity_} * 2), std::numeric_limits<uint32_t>::max());
    auto data = std::make_unique_for_overwrite<char[]>(room);
    if (used_ > 0) std::memcpy(data.get(), data_.get(), used_);
    data_ = std::move(data);
    capacity_ = static_cast<uint32_t>(room);
  }
  return data_.get() + used_;
}

void GroupList::push_back(const Group& g) {
  size_t n = BytesOf(g);
  Put(g, Grow(n));
  used_ += static_cast<uint32_t>(n);
}

void GroupList::Set(int code, const GroupValue& value) {
  Ref old = Find(code);
  if (!old) {
    push_back({code, value});
    return;
  }
  // Same kind and size (a real, a point, a number, a text of the same
  // length): overwrite in place; else rebuild around it.
  Group g{code, value};
  size_t offset = static_cast<size_t>(old.at_ - data_.get());
  size_t old_bytes = old.Bytes(), new_bytes = BytesOf(g);
  if (old_bytes == new_bytes) {
    Put(g, data_.get() + offset);
    return;
  }
  size_t tail = used_ - offset - old_bytes;
  size_t n = used_ - old_bytes + new_bytes;
  auto data = std::make_unique_for_overwrite<char[]>(n);
  std::memcpy(data.get(), data_.get(), offset);
  Put(g, data.get() + offset);
  if (tail > 0) std::memcpy(data.get() + offset + new_bytes, data_.get() + offset + old_bytes, tail);
  data_ = std::move(data);
  used_ = capacity_ = static_cast<uint32_t>(n);
}

void GroupList::Remove(int code) {
  char* out = data_.get();
  for (const char* at = data_.get(); at != data_.get() + used_;) {
    size_t n = Ref(at).Bytes();
    if (Ref(at).code() != code) {
      if (out != at) std::memmove(out, at, n);
      out += n;
    }
    at += n;
  }
  used_ = static_cast<uint32_t>(out - data_.get());
}

void GroupList::shrink_to_fit() {
  if (capacity_ == used_) return;
  GroupList trimmed(*this);
  *this = std::move(trimmed);
}

}  // namespace vorhost
