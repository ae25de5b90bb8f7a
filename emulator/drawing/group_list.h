// group_list.h - a record's groups packed into one block of bytes.
//
// A drawing keeps its records for the whole session, and a panel diagram
// has a hundred thousand of them, most of them texts and attributes of a
// dozen groups. Kept as a vector of Group, each group would take 48 bytes
// however small its value, and every text over 15 bytes a block of its own.
// Here each group takes its code, a kind byte and its value's own bytes
// (8 for a real, 24 for a point, 2 for a short, the length and the bytes of
// a text), one after the other, in one block per record.
//
// Reading gives Group values (or, without a copy, GroupList::Ref views of
// them); writing is by whole lists, push_back and the Entity's Set and
// Remove. The order of the groups is kept as given.
#ifndef VORHOST_DRAWING_GROUP_LIST_H
#define VORHOST_DRAWING_GROUP_LIST_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "emulator/core/numbers.h"

namespace vorhost {

// The value of one group: its kind follows from the group code (see
// ValueOf in core/resbuf.h): texts, reals, points, 16-bit and 32-bit ints.
using GroupValue = std::variant<std::string, double, Point3, short, long>;

struct Group {
  int code;
  GroupValue value;
};

class GroupList {
 public:
  // One packed group, seen where it lies: valid while its list is not
  // changed. A default Ref stands for no group.
  class Ref {
   public:
    Ref() = default;
    explicit operator bool() const { return at_ != nullptr; }
    int code() const;
    // The index of the value's type in GroupValue (0 text, 1 real, 2 point,
    // 3 short, 4 long).
    size_t kind() const;
    bool is_text() const { return kind() == 0; }
    bool is_real() const { return kind() == 1; }
    bool is_point() const { return kind() == 2; }
    bool is_short() const { return kind() == 3; }
    bool is_long() const { return kind() == 4; }
    // The value; each is only meaningful for its kind.
    std::string_view text() const;
    double real() const;
    Point3 point() const;
    short int16() const;
    long int32() const;

    Group ToGroup() const;
    operator Group() const { return ToGroup(); }  // NOLINT: a Ref reads as the Group it holds

   private:
    friend class GroupList;
    explicit Ref(const char* at) : at_(at) {}
    // The bytes of this group, header included.
    size_t Bytes() const;
    const char* at_ = nullptr;
  };

  class const_iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Ref;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = Ref;

    const_iterator() = default;
    Ref operator*() const { return Ref(at_); }
    const_iterator& operator++() {
      at_ += Ref(at_).Bytes();
      return *this;
    }
    const_iterator operator++(int) {
      const_iterator old = *this;
      ++*this;
      return old;
    }
    bool operator==(const const_iterator& o) const { return at_ == o.at_; }

   private:
    friend class GroupList;
    explicit const_iterator(const char* at) : at_(at) {}
    const char* at_ = nullptr;
  };

  GroupList() = default;
  GroupList(std::initializer_list<Group> groups) { Assign(groups.begin(), groups.end()); }
  GroupList(const std::vector<Group>& groups) { Assign(groups.data(), groups.data() + groups.size()); }  // NOLINT
  // The groups pointed to, in that order.
  explicit GroupList(const std::vector<const Group*>& groups);
  GroupList(const GroupList& other);
  GroupList(GroupList&& other) noexcept = default;
  GroupList& operator=(const GroupList& other);
  GroupList& operator=(GroupList&& other) noexcept = default;
  GroupList& operator=(const std::vector<Group>& groups);
  GroupList& operator=(std::initializer_list<Group> groups);

  const_iterator begin() const { return const_iterator(data_.get()); }
  const_iterator end() const { return const_iterator(data_.get() + used_); }
  bool empty() const { return used_ == 0; }
  size_t size() const;  // counts the groups: a walk over them
  // The bytes the groups take.
  size_t bytes() const { return used_; }

  // The first group of that code; a null Ref if none.
  Ref Find(int code) const;
  std::vector<Group> ToVector() const;

  void push_back(const Group& g);
  // Replaces the first group of that code, or appends one.
  void Set(int code, const GroupValue& value);
  void Remove(int code);
  // Gives back room kept for more groups: records are kept long and made once.
  void shrink_to_fit();

 private:
  void Assign(const Group* first, const Group* last);
  template <typename It>
  void AssignFrom(It first, It last);
  // Room for n more bytes at the end.
  char* Grow(size_t n);
  // Appends g's bytes (room must be there).
  static char* Put(const Group& g, char* at);
  static size_t BytesOf(const Group& g);

  std::unique_ptr<char[]> data_;
  uint32_t used_ = 0;
  uint32_t capacity_ = 0;
};

}  // namespace vorhost

#endif
