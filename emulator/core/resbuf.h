// resbuf.h - the host's result-buffer lists: what kind of value an item
// carries, how lists are made, copied and released, and an owning pointer.
#ifndef VORHOST_CORE_RESBUF_H
#define VORHOST_CORE_RESBUF_H

#include <cstdarg>
#include <cstdint>
#include <memory>
#include <string>

#include "host/ads.h"

namespace vorhost {

// What the union of an item holds, decided by its type or group code.
enum class RbValue { kNone, kReal, kPoint, kShort, kLong, kString, kName };

RbValue ValueOf(int restype);

// One item of type restype with a zeroed value, from the host heap; nullptr
// when memory is short.
resbuf* NewRb(int restype);

// Releases a whole list, texts included; a null list is nothing to do.
void ReleaseList(resbuf* list);

// A deep copy of list, or nullptr when memory ran out on the way.
resbuf* CopyList(const resbuf* list);

// Builds a list from (type, value) pairs ended by 0, as ads_buildlist does;
// nullptr for an empty list or when memory ran out.
resbuf* BuildList(int first_type, va_list values);

// A text form of a list for tests and messages: ((5005 . "A") (5003 . 1)).
std::string DescribeList(const resbuf* list);

// An entity's name as the module holds it ({id, tag}), and back; 0 for a
// name that is not an entity's.
void EntityName(uint64_t id, long name[2]);
uint64_t EntityId(const long name[2]);

// A selection set's name ({number, tag}), and back; 0 for a name that is
// not a set's.
void SetName(long number, long name[2]);
long SetNumber(const long name[2]);

struct ListReleaser {
  void operator()(resbuf* list) const { ReleaseList(list); }
};
// Owns a result-buffer list and releases it with ReleaseList.
using RbList = std::unique_ptr<resbuf, ListReleaser>;

}  // namespace vorhost

#endif
