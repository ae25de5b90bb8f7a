// sysvars.h - the host's system variables: typed values with the host's
// defaults, ranges and read-only flags, looked up without regard to case.
#ifndef VORHOST_CORE_SYSVARS_H
#define VORHOST_CORE_SYSVARS_H

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>

#include "emulator/core/numbers.h"

namespace vorhost {

// A variable's value: an integer (the host's short), a real, a text or a point.
using SysValue = std::variant<short, double, std::string, Point3>;

// The texts the host shows for a value: "1", "2.5000", "STANDARD", "0.0000,0.0000,0.0000".
std::string FormatSysValue(const SysValue& value);

struct SysVar {
  SysValue value;
  short min = 0, max = 0;  // allowed integer range, when min < max
  bool read_only = false;
};

class SysVarTable {
 public:
  // A table holding the host's defaults for a new drawing.
  SysVarTable();
  SysVarTable(const SysVarTable&) = default;
  SysVarTable& operator=(const SysVarTable&) = default;
  // A table moved from is left with a version of its own, as its values
  // are no longer those of the version it had.
  SysVarTable(SysVarTable&& other) noexcept;
  SysVarTable& operator=(SysVarTable&& other) noexcept;

  // Changes whenever a variable does, so that what was read from the
  // table can be kept until then. No two tables that differ show the same
  // version: a copy shares it only while it holds the same values.
  uint64_t version() const { return version_; }

  const SysVar* Find(std::string_view name) const;
  bool Get(std::string_view name, SysValue* value) const;
  // The value of a text variable, read in place; null for an unknown name
  // or a variable of another type.
  const std::string* Text(std::string_view name) const;

  // Checks a new text value of TEXTSTYLE, CLAYER, CELTYPE or CECOLOR (an
  // existing style, layer or linetype name, or a colour) and may rewrite it
  // (a name in upper case, a colour's number); false refuses it.
  using TextCheck = std::function<bool(std::string_view name, std::string* value)>;

  // Sets a writable variable to a value of its own type (an integer is also
  // taken for a real), a text that names something passing check. False,
  // with *why set, when the name is unknown, the variable is read-only, the
  // type is wrong or the value out of range or refused by check.
  bool Set(std::string_view name, const SysValue& value, std::string* why,
           const TextCheck& check = {});

  // Sets any variable, read-only ones included (the host's own bookkeeping).
  void Force(std::string_view name, SysValue value);

 private:
  // Hashed so that a name is found without building a key: every new
  // record and most prompts read a few variables. The names are short, so
  // a byte-at-a-time hash (FNV-1a) is quicker than the library's.
  struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const {
      uint64_t h = 14695981039346656037u;
      for (char c : name) h = (h ^ static_cast<unsigned char>(c)) * 1099511628211u;
      return static_cast<size_t>(h);
    }
  };

  static uint64_t NewVersion();

  std::unordered_map<std::string, SysVar, NameHash, std::equal_to<>> vars_;  // upper-case names
  uint64_t version_ = NewVersion();
};

}  // namespace vorhost

#endif
