// sysvars.cpp - system variables with the host's metric defaults.
#include "emulator/core/sysvars.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>

#include "emulator/core/numbers.h"
#include "emulator/core/text.h"

namespace vorhost {
namespace {

struct Default {
  const char* name;
  SysValue value;
  short min, max;
  bool read_only;
};

// A new metric drawing. Integer switches carry their ranges; names are the
// host's. PLINETYPE starts at 0 so that PLINE makes old-style polylines.
const Default kDefaults[] = {
    {"ACADVER", std::string("14.0"), 0, 0, true},
    {"ANGBASE", 0.0, 0, 0, false},
    {"ANGDIR", short{0}, 0, 1, false},
    {"ATTDIA", short{0}, 0, 1, false},
    {"ATTMODE", short{1}, 0, 2, false},
    {"ATTREQ", short{1}, 0, 1, false},
    {"AUNITS", short{0}, 0, 4, false},
    {"AUPREC", short{0}, 0, 8, false},
    {"BLIPMODE", short{0}, 0, 1, false},
    {"CECOLOR", std::string("BYLAYER"), 0, 0, false},
    {"CELTSCALE", 1.0, 0, 0, false},
    {"CELTYPE", std::string("BYLAYER"), 0, 0, false},
    {"CLAYER", std::string("0"), 0, 0, false},
    {"CIRCLERAD", 0.0, 0, 0, false},
    {"CMDACTIVE", short{0}, 0, 0, true},
    {"CMDECHO", short{1}, 0, 1, false},
    {"CMDNAMES", std::string(""), 0, 0, true},
    {"DIMSCALE", 1.0, 0, 0, false},
    {"DWGNAME", std::string("UNNAMED"), 0, 0, true},
    {"DWGPREFIX", std::string("C:\\"), 0, 0, true},
    {"ELEVATION", 0.0, 0, 0, false},
    {"EXPERT", short{0}, 0, 5, false},
    {"FILEDIA", short{1}, 0, 1, false},
    {"FILLMODE", short{1}, 0, 1, false},
    {"GRIDMODE", short{0}, 0, 1, false},
    {"HIGHLIGHT", short{1}, 0, 1, false},
    {"INSBASE", Point3{0, 0, 0}, 0, 0, false},
    {"INSNAME", std::string(""), 0, 0, false},
    {"LASTPOINT", Point3{0, 0, 0}, 0, 0, false},
    {"LIMCHECK", short{0}, 0, 1, false},
    {"LIMMAX", Point3{420, 297, 0}, 0, 0, false},
    {"LIMMIN", Point3{0, 0, 0}, 0, 0, false},
    {"LTSCALE", 1.0, 0, 0, false},
    {"LUNITS", short{2}, 1, 5, false},
    {"LUPREC", short{4}, 0, 8, false},
    {"MEASUREMENT", short{1}, 0, 1, false},
    {"MIRRTEXT", short{1}, 0, 1, false},
    {"ORTHOMODE", short{0}, 0, 1, false},
    {"OSMODE", short{0}, 0, 16383, false},
    {"PDMODE", short{0}, 0, 100, false},
    {"PDSIZE", 0.0, 0, 0, false},
    {"PICKFIRST", short{1}, 0, 1, false},
    {"PLINETYPE", short{0}, 0, 2, false},
    {"PLINEWID", 0.0, 0, 0, false},
    {"QTEXTMODE", short{0}, 0, 1, false},
    {"REGENMODE", short{1}, 0, 1, false},
    {"SNAPMODE", short{0}, 0, 1, false},
    {"TEXTEVAL", short{0}, 0, 1, false},
    {"TEXTSIZE", 2.5, 0, 0, false},
    {"TEXTSTYLE", std::string("STANDARD"), 0, 0, false},
    {"THICKNESS", 0.0, 0, 0, false},
    {"TILEMODE", short{1}, 0, 1, false},
    {"UNITMODE", short{0}, 0, 1, false},
    {"USERI1", short{0}, 0, 0, false},
    {"USERI2", short{0}, 0, 0, false},
    {"USERR1", 0.0, 0, 0, false},
    {"USERR2", 0.0, 0, 0, false},
    {"USERS1", std::string(""), 0, 0, false},
    {"USERS2", std::string(""), 0, 0, false},
};

// Variables whose text must name something in the drawing, or a colour.
bool IsCheckedText(std::string_view name) {
  return name == "TEXTSTYLE" || name == "CLAYER" || name == "CELTYPE" || name == "CECOLOR";
}

// The entry of vars (the table's map, const or not) for a name in any case.
// The host's own code asks by upper-case names, which need no copy: a name
// without a lower-case letter is its own UpperName.
template <typename Vars>
auto Locate(Vars& vars, std::string_view name) {
  bool folded = std::none_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  return folded ? vars.find(name) : vars.find(UpperName(name));
}

// Four decimals, as the host shows reals.
std::string Real4(double v) { return FixedText(v, 4); }

}  // namespace

std::string FormatSysValue(const SysValue& value) {
  if (auto* s = std::get_if<short>(&value)) return std::to_string(*s);
  if (auto* r = std::get_if<double>(&value)) return Real4(*r);
  if (auto* p = std::get_if<Point3>(&value)) return Real4((*p)[0]) + "," + Real4((*p)[1]) + "," + Real4((*p)[2]);
  return std::get<std::string>(value);
}

SysVarTable::SysVarTable() {
  for (const Default& d : kDefaults) vars_[d.name] = SysVar{d.value, d.min, d.max, d.read_only};
}

SysVarTable::SysVarTable(SysVarTable&& other) noexcept
    : vars_(std::move(other.vars_)), version_(other.version_) {
  other.version_ = NewVersion();
}

SysVarTable& SysVarTable::operator=(SysVarTable&& other) noexcept {
  vars_ = std::move(other.vars_);
  version_ = other.version_;
  other.version_ = NewVersion();
  return *this;
}

uint64_t SysVarTable::NewVersion() {
  static std::atomic<uint64_t> last{0};
  return ++last;
}

const SysVar* SysVarTable::Find(std::string_view name) const {
  auto it = Locate(vars_, name);
  return it == vars_.end() ? nullptr : &it->second;
}

bool SysVarTable::Get(std::string_view name, SysValue* value) const {
  const SysVar* var = Find(name);
  if (!var) return false;
  *value = var->value;
  return true;
}

const std::string* SysVarTable::Text(std::string_view name) const {
  const SysVar* var = Find(name);
  return var ? std::get_if<std::string>(&var->value) : nullptr;
}

bool SysVarTable::Set(std::string_view name, const SysValue& value, std::string* why,
                      const TextCheck& check) {
  auto it = Locate(vars_, name);
  if (it == vars_.end()) {
    *why = "Unknown variable name.";
    return false;
  }
  const std::string& key = it->first;
  SysVar& var = it->second;
  if (var.read_only) {
    *why = "Variable " + key + " is read only.";
    return false;
  }
  SysValue v = value;
  if (std::holds_alternative<double>(var.value) && std::holds_alternative<short>(v))
    v = static_cast<double>(std::get<short>(v));
  if (v.index() != var.value.index()) {
    *why = "Invalid value for " + key + ".";
    return false;
  }
  auto* real = std::get_if<double>(&v);
  auto* point = std::get_if<Point3>(&v);
  if ((real && !InRange(*real)) || (point && !InRange(*point))) {
    *why = "Value must be between " + DecimalText(-kMaxMagnitude, 0) + " and " +
           DecimalText(kMaxMagnitude, 0) + ".";
    return false;
  }
  if (auto* s = std::get_if<short>(&v); s && var.min < var.max && (*s < var.min || *s > var.max)) {
    *why = "Value must be between " + std::to_string(var.min) + " and " + std::to_string(var.max) + ".";
    return false;
  }
  if (auto* text = std::get_if<std::string>(&v); text && IsCheckedText(key) && check &&
                                                  !check(key, text)) {
    *why = "Cannot set " + key + " to \"" + *text + "\".";
    return false;
  }
  var.value = std::move(v);
  version_ = NewVersion();
  return true;
}

void SysVarTable::Force(std::string_view name, SysValue value) {
  auto it = Locate(vars_, name);
  if (it == vars_.end()) it = vars_.emplace(UpperName(name), SysVar{}).first;
  it->second.value = std::move(value);
  version_ = NewVersion();
}

}  // namespace vorhost
