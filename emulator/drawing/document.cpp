// document.cpp - the document's variables, new records and selection sets.
#include "emulator/drawing/document.h"

#include <cstdlib>

#include "emulator/core/answer.h"
#include "emulator/core/text.h"

namespace vorhost {

long SelectionSets::Add(std::vector<uint64_t> members) {
  if (sets_.size() >= kMaxSets) return 0;
  long number = next_++;
  sets_[number] = std::move(members);
  return number;
}

const std::vector<uint64_t>* SelectionSets::Find(long number) const {
  auto it = sets_.find(number);
  return it == sets_.end() ? nullptr : &it->second;
}

bool SelectionSets::Free(long number) { return sets_.erase(number) > 0; }

bool Document::SetVariable(std::string_view name, const SysValue& value, std::string* why) {
  return vars_.Set(name, value, why,
                   [this](std::string_view var, std::string* text) { return CheckText(var, text); });
}

bool Document::CheckText(std::string_view name, std::string* value) const {
  *value = UpperName(*value);
  if (name == "CECOLOR") {  // kept as NewEntity reads it: BYLAYER, BYBLOCK or 1 to 255
    std::optional<short> color = ColorAnswer(Answer::Text(*value), true);
    if (!color) return false;
    *value = *color == kColorByLayer ? "BYLAYER" : *color == kColorByBlock ? "BYBLOCK" : std::to_string(*color);
    return true;
  }
  if (name == "TEXTSTYLE") return tables().styles().Find(*value) != nullptr;
  if (name == "CLAYER") return tables().layers().Find(*value) != nullptr;
  return tables().linetypes().Find(*value) != nullptr;
}

const Document::Current& Document::current() const {
  if (current_.version == vars_.version()) return current_;
  current_ = Current{vars_.version()};
  if (const std::string* layer = vars_.Text("CLAYER")) current_.layer = *layer;
  if (const std::string* linetype = vars_.Text("CELTYPE"); linetype && *linetype != "BYLAYER")
    current_.linetype = *linetype;
  if (const std::string* c = vars_.Text("CECOLOR")) {
    current_.color = *c == "BYLAYER" ? kColorByLayer : *c == "BYBLOCK" ? kColorByBlock
                                                                     : static_cast<short>(std::atoi(c->c_str()));
  }
  return current_;
}

Entity Document::NewEntity(std::string type) const {
  Entity e(std::move(type));
  const Current& current = this->current();
  e.layer = current.layer;
  e.linetype = current.linetype;
  e.color = current.color;
  return e;
}

Point3 Document::LastPoint() const {
  SysValue v;
  return vars_.Get("LASTPOINT", &v) ? std::get<Point3>(v) : Point3{0, 0, 0};
}

void Document::SetLastPoint(const Point3& p) { vars_.Force("LASTPOINT", p); }

}  // namespace vorhost
