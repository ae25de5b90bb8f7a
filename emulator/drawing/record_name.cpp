// record_name.cpp - the session's one copy of each record name.
#include "emulator/drawing/record_name.h"

#include <unordered_set>

namespace vorhost {
namespace {

struct Hash {
  using is_transparent = void;
  size_t operator()(std::string_view s) const { return std::hash<std::string_view>()(s); }
};

// Nodes of an unordered_set stay where they are as it grows: the pointers
// names hold stay good. The host runs on one thread (the window's too).
class NamePool {
 public:
  const std::string* Intern(std::string_view text) {
    auto it = names_.find(text);
    if (it == names_.end()) it = names_.emplace(text).first;
    return &*it;
  }

 private:
  std::unordered_set<std::string, Hash, std::equal_to<>> names_;
};

NamePool& Pool() {
  static NamePool* pool = new NamePool;  // never destroyed: names outlive every static
  return *pool;
}

const std::string* EmptyName() {
  static const std::string* empty = Pool().Intern("");
  return empty;
}

}  // namespace

RecordName::RecordName() : text_(EmptyName()) {}

RecordName::RecordName(std::string_view text) : text_(text.empty() ? EmptyName() : Pool().Intern(text)) {}

}  // namespace vorhost
