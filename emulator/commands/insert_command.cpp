// insert_command.cpp - INSERT: a block from the drawing, or from a drawing
// file of its name on the search path, with its attributes asked for.
#include <cmath>
#include <utility>

#include "emulator/commands/registry.h"
#include "emulator/core/text.h"
#include "emulator/drawing/blocks.h"
#include "emulator/drawing/layout.h"
#include "emulator/platform/search_path.h"
#include "emulator/io/dxf.h"
#include "emulator/platform/filesystem.h"

namespace vorhost {
namespace {

// ATTDEF flags.
constexpr short kInvisible = 1, kConstant = 2, kPreset = 8;

// Copies into the drawing the table records of source that it lacks.
template <typename Record>
void Merge(SymbolTable<Record>& into, const SymbolTable<Record>& from) {
  for (const Record& r : from.records())
    if (!into.Find(r.name)) into.Put(r);
}

// Defines block name from the drawing file path: its model space becomes
// the block, based at the file's INSBASE; its tables and blocks join the
// drawing's where the drawing lacks them. A definition that would make a
// block insert itself (the file's model space inserting name, directly or
// through the drawing's blocks or the file's) is refused, and the drawing
// is left as it was.
bool DefineFromFile(Document& doc, const std::string& name, const std::string& path, std::string* why) {
  Drawing file;
  SysVarTable vars;
  if (!OpenDxf(path, &file, &vars, why, Files().ShownName(path))) return false;
  SysValue base;
  BlockRecord block{name};
  if (vars.Get("INSBASE", &base)) block.base = std::get<Point3>(base);
  for (const Entity& e : file.entities()) {
    if (e.erased) continue;
    block.entities.push_back(e);
    if (e.type == "ATTDEF") block.flags |= 2;
  }
  Tables& t = doc.tables();
  SymbolTable<BlockRecord> blocks = t.blocks();
  Merge(blocks, file.tables().blocks());
  blocks.Put(std::move(block));
  if (std::vector<std::string> cycle = BlockCycle(blocks, name); !cycle.empty()) {
    *why = "B" + DescribeCycle(cycle).substr(1) + ".";
    return false;
  }
  Merge(t.layers(), file.tables().layers());
  Merge(t.linetypes(), file.tables().linetypes());
  Merge(t.styles(), file.tables().styles());
  t.blocks() = std::move(blocks);
  return true;
}

class InsertCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    switch (state_) {
      case State::kName: return "\nBlock name (or ?) <" + LastName() + ">: ";
      case State::kPoint: return "\nInsertion point: ";
      case State::kXScale: return "\nX scale factor <1> / Corner / XYZ: ";
      case State::kYScale: return "\nY scale factor (default=X): ";
      case State::kRotation: return "\nRotation angle <0>: ";
      case State::kAttribute: {
        const Entity& def = Definition(pending_[values_.size()]);
        std::string fallback = def.Text(1);
        return "\n" + def.Text(3, def.Text(2)) + (fallback.empty() ? ": " : " <" + fallback + ">: ");
      }
    }
    return "";
  }

  Step Feed(const Answer& a) override {
    switch (state_) {
      case State::kName: return Name(a);
      case State::kPoint: {
        std::optional<Point3> p = AnswerPoint(a, doc().LastPoint());
        if (!p) return Reject("Invalid point.");
        at_ = *p;
        doc().SetLastPoint(*p);
        state_ = State::kXScale;
        return Step::kAsk;
      }
      case State::kXScale: return Scale(a, &sx_, 1, State::kYScale);
      case State::kYScale: return Scale(a, &sy_, sx_, State::kRotation);
      case State::kRotation: {
        std::optional<double> deg = a.IsEnter() ? 0.0 : AnswerReal(a);
        if (!deg) return Reject("Requires a numeric angle.");
        rotation_ = *deg * M_PI / 180;
        return StartAttributes();
      }
      case State::kAttribute: {
        const Entity& def = Definition(pending_[values_.size()]);
        values_.push_back(a.IsEnter() ? def.Text(1) : a.Echo());
        return values_.size() < pending_.size() ? Step::kAsk : Make();
      }
    }
    return Step::kAsk;
  }

 private:
  enum class State { kName, kPoint, kXScale, kYScale, kRotation, kAttribute };

  // An entity of the block being inserted, by its index in the block.
  const Entity& Definition(size_t index) const {
    return std::as_const(doc().tables()).blocks().Find(name_)->entities[index];
  }

  std::string LastName() const {
    SysValue v;
    return doc().sysvars().Get("INSNAME", &v) ? std::get<std::string>(v) : "";
  }

  Step Name(const Answer& a) {
    std::string typed = a.IsEnter() ? LastName() : UpperName(a.Echo());
    if (typed == "?") {
      for (const BlockRecord& b : std::as_const(doc().tables()).blocks().records()) Message(b.name);
      return Step::kAsk;
    }
    size_t eq = typed.find('=');
    std::string name = typed.substr(0, eq);
    std::string file = eq == std::string::npos ? "" : typed.substr(eq + 1);
    if (name.empty() || name.size() > 31 || (eq != std::string::npos && file.empty()))
      return Reject("Invalid block name.");
    if (file.empty() && std::as_const(doc().tables()).blocks().Find(name)) {
      name_ = std::as_const(doc().tables()).blocks().Find(name)->name;
    } else {
      std::string wanted = file.empty() ? name : file;
      if (wanted.size() < 4 || UpperName(wanted.substr(wanted.size() - 4)) != ".DXF") wanted += ".DXF";
      std::optional<std::string> path = FindFile(wanted);
      if (!path) return Reject("Block " + name + " not found, and no drawing file " + wanted + " on the search path.");
      std::string why;
      if (!DefineFromFile(doc(), name, *path, &why)) return Reject(why);
      name_ = name;
    }
    doc().sysvars().Force("INSNAME", name_);
    state_ = State::kPoint;
    return Step::kAsk;
  }

  Step Scale(const Answer& a, double* value, double fallback, State next) {
    std::optional<double> v = a.IsEnter() ? fallback : AnswerReal(a);
    if (!v || *v == 0) return Reject("Requires a non-zero scale factor.");
    *value = *v;
    state_ = next;
    return Step::kAsk;
  }

  // Collects the definitions to ask about; with ATTREQ 0 nothing is asked.
  // The attributes' places, heights and angles (the block's, scaled and
  // turned by the insert's) must be in range, or the rotation is refused.
  Step StartAttributes() {
    const BlockRecord* block = std::as_const(doc().tables()).blocks().Find(name_);
    SysValue req;
    bool ask = !doc().sysvars().Get("ATTREQ", &req) || std::get<short>(req) != 0;
    defs_.clear();
    pending_.clear();
    attributes_.clear();
    for (size_t i = 0; i < block->entities.size(); i++) {
      const Entity& e = block->entities[i];
      if (e.type != "ATTDEF" || (e.Short(70) & kConstant)) continue;
      Entity attribute = Attribute(e, block->base);
      if (!attribute.NumbersInRange()) return Reject(kValueOutOfRange);
      attributes_.push_back(std::move(attribute.groups));
      defs_.push_back(i);
      if (ask && !(e.Short(70) & kPreset)) pending_.push_back(i);
    }
    if (pending_.empty()) return Make();
    Message("Enter attribute values");
    state_ = State::kAttribute;
    return Step::kAsk;
  }

  Point3 Place(const Point3& p, const Point3& base) const {
    double x = (p[0] - base[0]) * sx_, y = (p[1] - base[1]) * sy_;
    double c = std::cos(rotation_), s = std::sin(rotation_);
    return {at_[0] + x * c - y * s, at_[1] + x * s + y * c, at_[2] + p[2] - base[2]};
  }

  // An attribute of definition def with an empty value, on the current
  // layer unless def has its own.
  Entity Attribute(const Entity& def, const Point3& base) const {
    Entity e = NewAttribute(def);
    e.groups = LayOut("ATTRIB", {{10, Place(def.Point(10), base)}, {40, def.Real(40, 1) * std::fabs(sy_)},
                                 {1, std::string()}, {2, def.Text(2)}, {70, short(def.Short(70) & kInvisible)},
                                 {50, def.Real(50) + rotation_}, {41, def.Real(41, 1) * std::fabs(sx_ / sy_)},
                                 {51, def.Real(51)}, {7, def.Text(7, "STANDARD")}, {71, def.Short(71)},
                                 {72, def.Short(72)}, {11, Place(def.Point(11), base)}, {74, def.Short(74)}});
    return e;
  }
  Entity NewAttribute(const Entity& def) const {
    Entity e = doc().NewEntity("ATTRIB");
    if (def.layer != "0") e.layer = def.layer;
    return e;
  }

  Step Make() {
    const BlockRecord* block = std::as_const(doc().tables()).blocks().Find(name_);
    Drawing& d = doc().drawing();
    Entity insert = doc().NewEntity("INSERT");
    std::vector<Group> groups = {{2, block->name}, {10, at_}, {41, sx_}, {42, sy_}, {43, sx_}, {50, rotation_}};
    if (!defs_.empty()) groups.push_back({66, short{1}});  // ATTRIBs follow
    insert.groups = LayOut("INSERT", std::move(groups));
    d.Append(std::move(insert));
    size_t asked = 0;
    for (size_t k = 0; k < defs_.size(); k++) {
      const Entity& def = block->entities[defs_[k]];
      bool was_asked = asked < pending_.size() && pending_[asked] == defs_[k];
      // The properties are the current ones now, as a program may have
      // changed them between the answers.
      Entity attribute = NewAttribute(def);
      attribute.groups = std::move(attributes_[k]);
      attribute.Set(1, was_asked ? values_[asked++] : def.Text(1));
      d.Append(std::move(attribute));
    }
    if (!defs_.empty()) d.Append(doc().NewEntity("SEQEND"));
    return Step::kDone;
  }

  State state_ = State::kName;
  std::string name_;
  Point3 at_{};
  double sx_ = 1, sy_ = 1, rotation_ = 0;
  // Indexes in the block of its attribute definitions, and of those asked.
  std::vector<size_t> defs_, pending_;
  // The groups of each attribute of defs_, laid out while the definitions
  // are collected; the value is set when the attribute is made.
  std::vector<GroupList> attributes_;
  std::vector<std::string> values_;
};

const CommandEntry kInsertCommands[] = {
    {"INSERT", "insert a block, from the drawing or a drawing file on the search path", Make<InsertCommand>},
};

}  // namespace

std::span<const CommandEntry> InsertCommands() { return kInsertCommands; }

}  // namespace vorhost
