// property_commands.cpp - LAYER, LINETYPE, LTSCALE, CHPROP, and system
// variables typed as commands.
#include <cmath>
#include <deque>
#include <sstream>
#include <utility>

#include "emulator/commands/registry.h"
#include "emulator/commands/selection.h"
#include "emulator/core/text.h"
#include "emulator/core/wcmatch.h"
#include "emulator/drawing/linfile.h"
#include "emulator/platform/search_path.h"

namespace vorhost {
namespace {

std::string CurrentText(const Document& doc, const char* var) {
  SysValue v;
  return doc.sysvars().Get(var, &v) ? FormatSysValue(v) : "";
}

// The names of a comma-separated answer, upper-cased; empty entries dropped.
std::vector<std::string> NameList(const std::string& text) {
  std::vector<std::string> names;
  std::stringstream in(text);
  for (std::string item; std::getline(in, item, ',');) {
    size_t b = item.find_first_not_of(' '), e = item.find_last_not_of(' ');
    if (b != std::string::npos) names.push_back(UpperName(item.substr(b, e - b + 1)));
  }
  return names;
}

std::string ColorName(short c) {
  return c == kColorByLayer ? "BYLAYER" : c == kColorByBlock ? "BYBLOCK" : std::to_string(c);
}

// Loads linetypes (a name, a comma list, or "*") from a linetype file found
// on the search path into the drawing. Already loaded ones are reloaded
// when reload says so. Messages go through the host; false with *why when
// the file cannot be had.
bool ReadLinetypeFile(const std::string& file, std::vector<LinetypeRecord>* records,
                      std::string* why) {
  std::string name = file.empty() ? "ACAD.LIN" : file;
  std::optional<std::string> path = FindFile(name);
  if (!path && name.find('.') == std::string::npos) path = FindFile(name + ".LIN");
  if (!path) {
    *why = "Can't find file " + name + ".";
    return false;
  }
  std::string contents;
  ReadWholeFile(*path, &contents);  // one that cannot be read holds no linetype
  return ParseLinetypes(contents, name, records, why);
}

// Makes a linetype known to the drawing, looking in ACAD.LIN for one that
// is not loaded yet; false when it is nowhere.
bool EnsureLinetype(Document& doc, const std::string& name) {
  if (doc.tables().linetypes().Find(name)) return true;
  std::vector<LinetypeRecord> records;
  std::string why;
  if (!ReadLinetypeFile("ACAD.LIN", &records, &why)) return false;
  for (LinetypeRecord& r : records)
    if (SameName(r.name, name)) {
      doc.tables().linetypes().Put(std::move(r));
      return true;
    }
  return false;
}

// ---- LAYER -----------------------------------------------------------------

class LayerCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    switch (state_) {
      case State::kMain: return "\n?/Make/Set/New/ON/OFF/Color/Ltype/Freeze/Thaw/LOck/Unlock: ";
      case State::kNew: return "\nNew layer name(s): ";
      case State::kCurrent: return "\nNew current layer <" + CurrentText(doc(), "CLAYER") + ">: ";
      case State::kColor: return "\nColor: ";
      case State::kLinetype: return "\nLinetype (or ?) <CONTINUOUS>: ";
      case State::kNames: return "\nLayer name(s) " + names_prompt_ + " <" + CurrentText(doc(), "CLAYER") + ">: ";
      case State::kList: return "\nLayer name(s) to list <*>: ";
    }
    return "";
  }

  Step Feed(const Answer& a) override {
    switch (state_) {
      case State::kMain: return Main(a);
      case State::kNew: return New(a);
      case State::kCurrent: return Current(a);
      case State::kColor: {
        std::optional<short> c = ColorAnswer(a, false);
        if (!c) return Reject("Invalid color number or name.");
        color_ = *c;
        return AskNames("for color " + ColorName(*c));
      }
      case State::kLinetype: {
        std::string name = UpperName(a.text);
        if (a.IsEnter()) name = "CONTINUOUS";
        if (!EnsureLinetype(doc(), name)) return Reject("Linetype " + name + " not found.");
        linetype_ = doc().tables().linetypes().Find(name)->name;
        return AskNames("for linetype " + linetype_);
      }
      case State::kNames: return Names(a);
      case State::kList: return List(a);
    }
    return Step::kAsk;
  }

 private:
  enum class State { kMain, kNew, kCurrent, kColor, kLinetype, kNames, kList };

  Step Main(const Answer& a) {
    if (a.IsEnter()) return Step::kDone;
    std::string key = a.kind == Answer::Kind::kText
                          ? (a.text == "?" ? "?"
                                           : MatchKeyword(a.text, {"Make", "Set", "New", "ON", "OFF", "Color",
                                                                   "Ltype", "Freeze", "Thaw", "LOck", "Unlock"}))
                          : "";
    action_ = key;
    if (key == "?") state_ = State::kList;
    else if (key == "NEW") state_ = State::kNew;
    else if (key == "MAKE" || key == "SET") state_ = State::kCurrent;
    else if (key == "COLOR") state_ = State::kColor;
    else if (key == "LTYPE") state_ = State::kLinetype;
    else if (key == "ON") return AskNames("to turn On");
    else if (key == "OFF") return AskNames("to turn Off");
    else if (key == "FREEZE") return AskNames("to Freeze");
    else if (key == "THAW") return AskNames("to Thaw");
    else if (key == "LOCK") return AskNames("to Lock");
    else if (key == "UNLOCK") return AskNames("to Unlock");
    else return Reject("Invalid option keyword.");
    return Step::kAsk;
  }

  Step AskNames(std::string what) {
    names_prompt_ = std::move(what);
    state_ = State::kNames;
    return Step::kAsk;
  }

  Step New(const Answer& a) {
    std::vector<std::string> names = NameList(a.Echo());
    for (const std::string& n : names)
      if (!ValidSymbolName(n)) return Reject("Invalid layer name: " + n);
    for (const std::string& n : names)
      if (!doc().tables().layers().Find(n)) doc().tables().layers().Put(LayerRecord{n});
    state_ = State::kMain;
    return Step::kAsk;
  }

  Step Current(const Answer& a) {
    if (!a.IsEnter()) {
      std::string name = UpperName(a.text);
      if (!ValidSymbolName(name)) return Reject("Invalid layer name.");
      if (!doc().tables().layers().Find(name)) {
        if (action_ == "SET") return Reject("Cannot find layer " + name + ".");
        doc().tables().layers().Put(LayerRecord{name});
      }
      doc().sysvars().Force("CLAYER", doc().tables().layers().Find(name)->name);
    }
    state_ = State::kMain;
    return Step::kAsk;
  }

  // Applies the chosen change to the layers the answer names (patterns allowed).
  Step Names(const Answer& a) {
    std::vector<std::string> patterns = a.IsEnter() ? std::vector<std::string>{CurrentText(doc(), "CLAYER")}
                                                    : NameList(a.text);
    int changed = 0;
    for (const LayerRecord& r : doc().tables().layers().records())
      for (const std::string& p : patterns)
        if (WcMatch(r.name, p)) {
          Change(*doc().tables().layers().Find(r.name));
          changed++;
          break;
        }
    if (changed == 0) Message("No matching layer names found.");
    state_ = State::kMain;
    return Step::kAsk;
  }

  void Change(LayerRecord& layer) {
    short on = layer.color < 0 ? -1 : 1;
    short magnitude = static_cast<short>(std::abs(layer.color));
    if (action_ == "COLOR") layer.color = static_cast<short>(on * color_);
    else if (action_ == "LTYPE") layer.linetype = linetype_;
    else if (action_ == "ON") layer.color = magnitude;
    else if (action_ == "OFF") layer.color = static_cast<short>(-magnitude);
    else if (action_ == "FREEZE") layer.flags |= 1;
    else if (action_ == "THAW") layer.flags &= ~1;
    else if (action_ == "LOCK") layer.flags |= 4;
    else if (action_ == "UNLOCK") layer.flags &= ~4;
  }

  Step List(const Answer& a) {
    std::string pattern = a.IsEnter() ? "*" : UpperName(a.text);
    Message("Layer name          State      Color   Linetype");
    for (const LayerRecord& r : doc().tables().layers().records())
      if (WcMatch(r.name, pattern)) {
        std::string state = r.color < 0 ? "Off" : "On";
        if (r.flags & 1) state += " Frozen";
        if (r.flags & 4) state += " Locked";
        std::string line = r.name;
        line.resize(std::max<size_t>(line.size() + 1, 20), ' ');
        state.resize(11, ' ');
        Message(line + state + std::to_string(std::abs(r.color)) + "       " + r.linetype);
      }
    state_ = State::kMain;
    return Step::kAsk;
  }

  State state_ = State::kMain;
  std::string action_, names_prompt_, linetype_;
  short color_ = 7;
};

// ---- LINETYPE --------------------------------------------------------------

class LinetypeCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    switch (state_) {
      case State::kMain: return "\n?/Create/Load/Set: ";
      case State::kNames: return "\nLinetype(s) to load: ";
      case State::kFile: return "\nFile to search <ACAD.LIN>: ";
      case State::kReload:
        return "\nLinetype " + queue_.front().name + " is already loaded.  Reload it? <Y> ";
      case State::kSet: return "\nNew object linetype (or ?) <" + CurrentText(doc(), "CELTYPE") + ">: ";
    }
    return "";
  }

  Step Feed(const Answer& a) override {
    switch (state_) {
      case State::kMain: {
        if (a.IsEnter()) return Step::kDone;
        std::string key = a.kind == Answer::Kind::kText ? (a.text == "?" ? "?" : MatchKeyword(a.text, {"Create", "Load", "Set"})) : "";
        if (key == "LOAD") state_ = State::kNames;
        else if (key == "SET") state_ = State::kSet;
        else if (key == "?") List();
        else if (key == "CREATE") return Reject("Create is not offered by this host; write the linetype in a file and Load it.");
        else return Reject("Invalid option keyword.");
        return Step::kAsk;
      }
      case State::kNames:
        wanted_ = NameList(a.Echo());
        if (wanted_.empty()) {
          state_ = State::kMain;
          return Step::kAsk;
        }
        state_ = State::kFile;
        return Step::kAsk;
      case State::kFile: return Load(a);
      case State::kReload: {
        std::string key = a.IsEnter() ? "YES" : MatchKeyword(a.text, {"Yes", "No"});
        if (key.empty()) return Reject("Please answer Y or N.");
        if (key == "YES") Put(queue_.front(), "reloaded");
        queue_.pop_front();
        return Continue();
      }
      case State::kSet: return Set(a);
    }
    return Step::kAsk;
  }

 private:
  enum class State { kMain, kNames, kFile, kReload, kSet };

  Step Load(const Answer& a) {
    std::vector<LinetypeRecord> records;
    std::string why;
    if (!ReadLinetypeFile(a.Echo(), &records, &why)) return Reject(why);
    bool all = wanted_.size() == 1 && wanted_[0] == "*";
    for (const std::string& name : wanted_) {
      if (all) break;
      bool found = false;
      for (const LinetypeRecord& r : records) found = found || SameName(r.name, name);
      if (!found) Message("Linetype " + name + " not found in " + a.Echo() + ".");
    }
    for (LinetypeRecord& r : records) {
      bool asked = all;
      for (const std::string& name : wanted_) asked = asked || WcMatch(r.name, name);
      if (asked) queue_.push_back(std::move(r));
    }
    return Continue();
  }

  // Loads queued linetypes, stopping to ask about one already loaded
  // unless EXPERT is 3 or more.
  Step Continue() {
    SysValue expert;
    bool ask = !doc().sysvars().Get("EXPERT", &expert) || std::get<short>(expert) < 3;
    while (!queue_.empty()) {
      if (doc().tables().linetypes().Find(queue_.front().name)) {
        if (ask) {
          state_ = State::kReload;
          return Step::kAsk;
        }
        Put(queue_.front(), "reloaded");
      } else {
        Put(queue_.front(), "loaded");
      }
      queue_.pop_front();
    }
    state_ = State::kMain;
    return Step::kAsk;
  }

  void Put(const LinetypeRecord& r, const char* how) {
    doc().tables().linetypes().Put(r);
    Message("Linetype " + r.name + " " + how + ".");
  }

  Step Set(const Answer& a) {
    if (!a.IsEnter()) {
      std::string name = UpperName(a.text);
      if (name != "BYLAYER" && name != "BYBLOCK" && !EnsureLinetype(doc(), name))
        return Reject("Linetype " + name + " not found.  Use the Load option to load it.");
      doc().sysvars().Force("CELTYPE", name == "BYLAYER" || name == "BYBLOCK"
                                           ? name
                                           : doc().tables().linetypes().Find(name)->name);
    }
    state_ = State::kMain;
    return Step::kAsk;
  }

  void List() {
    for (const LinetypeRecord& r : doc().tables().linetypes().records())
      Message(r.name + "  " + r.description);
  }

  State state_ = State::kMain;
  std::vector<std::string> wanted_;
  std::deque<LinetypeRecord> queue_;
};

// ---- LTSCALE ---------------------------------------------------------------

class LtscaleCommand : public Command {
 public:
  using Command::Command;
  std::string Prompt() const override {
    return "\nNew scale factor <" + CurrentText(doc(), "LTSCALE") + ">: ";
  }
  Step Feed(const Answer& a) override {
    if (a.IsEnter()) return Step::kDone;
    std::optional<double> v = AnswerReal(a);
    if (!v || *v <= 0) return Reject("Requires a positive number.");
    doc().sysvars().Force("LTSCALE", *v);
    Message("Regenerating drawing.");
    return Step::kDone;
  }
};

// ---- CHPROP ----------------------------------------------------------------

class ChpropCommand : public Command {
 public:
  explicit ChpropCommand(CommandContext& context) : Command(context), selector_(context) {}

  std::string Prompt() const override {
    switch (state_) {
      case State::kSelect: return selector_.Prompt();
      case State::kMain: return "\nChange what property (Color/LAyer/LType/ltScale/Thickness) ? ";
      case State::kColor: return "\nNew color <" + Common([](const Entity& e) { return ColorName(e.color); }) + ">: ";
      case State::kLayer: return "\nNew layer <" + Common([](const Entity& e) { return e.layer; }) + ">: ";
      case State::kLinetype:
        return "\nNew linetype <" + Common([](const Entity& e) { return e.linetype.empty() ? std::string("BYLAYER") : e.linetype.str(); }) + ">: ";
      case State::kScale: return "\nNew linetype scale <" + Common([](const Entity& e) { return FormatNumber(e.Real(48, 1)); }) + ">: ";
      case State::kThickness: return "\nNew thickness <" + Common([](const Entity& e) { return FormatNumber(e.Real(39, 0)); }) + ">: ";
    }
    return "";
  }
  Asking asking() const override { return state_ == State::kSelect ? selector_.asking() : Asking::kPrompt; }
  const std::vector<uint64_t>* chosen() const override {
    return state_ == State::kSelect ? &selector_.selected() : nullptr;
  }

  Step Feed(const Answer& a) override {
    if (state_ == State::kSelect) {
      Step s = selector_.Feed(a);
      if (s == Step::kReject) return Reject(selector_.refusal());
      if (s == Step::kDone) {
        if (selector_.selected().empty()) return Step::kDone;
        state_ = State::kMain;
      }
      return Step::kAsk;
    }
    if (state_ == State::kMain) {
      if (a.IsEnter()) return Step::kDone;
      std::string key = a.kind == Answer::Kind::kText
                            ? MatchKeyword(a.text, {"Color", "LAyer", "LType", "ltScale", "Thickness"})
                            : "";
      if (key == "COLOR") state_ = State::kColor;
      else if (key == "LAYER") state_ = State::kLayer;
      else if (key == "LTYPE") state_ = State::kLinetype;
      else if (key == "LTSCALE") state_ = State::kScale;
      else if (key == "THICKNESS") state_ = State::kThickness;
      else return Reject("Invalid option keyword.");
      return Step::kAsk;
    }
    Step s = Change(a);
    if (s != Step::kReject) state_ = State::kMain;
    return s == Step::kReject ? s : Step::kAsk;
  }

 private:
  enum class State { kSelect, kMain, kColor, kLayer, kLinetype, kScale, kThickness };

  template <typename F>
  std::string Common(F value) const {
    std::string common;
    bool first = true;
    for (uint64_t id : selector_.selected()) {
      const Entity* e = std::as_const(doc().drawing()).Find(id);
      if (!e) continue;
      std::string v = value(*e);
      if (!first && v != common) return "varies";
      common = v;
      first = false;
    }
    return common;
  }

  // Applies f to each selected entity and to its vertices and end marker.
  template <typename F>
  void ForEach(F f) {
    Drawing& d = doc().drawing();
    for (uint64_t id : selector_.selected()) {
      Entity* e = d.Find(id);
      if (!e) continue;
      f(*e);
      if (e->type != "POLYLINE") continue;
      for (uint64_t sub = d.Next(id); sub; sub = d.Next(sub)) {
        Entity* v = d.Find(sub);
        if (!v->IsSubEntity() || v->owner != id) break;
        f(*v);
      }
    }
  }

  Step Change(const Answer& a) {
    if (a.IsEnter()) return Step::kAsk;
    switch (state_) {
      case State::kColor: {
        std::optional<short> c = ColorAnswer(a, true);
        if (!c) return Reject("Invalid color number or name.");
        ForEach([&](Entity& e) { e.color = *c; });
        break;
      }
      case State::kLayer: {
        std::string name = UpperName(a.Echo());
        const LayerRecord* layer = doc().tables().layers().Find(name);
        if (!layer) return Reject("Cannot find layer " + name + ".");
        ForEach([&](Entity& e) { e.layer = layer->name; });
        break;
      }
      case State::kLinetype: {
        std::string name = UpperName(a.Echo());
        if (name != "BYLAYER" && name != "BYBLOCK" && !EnsureLinetype(doc(), name))
          return Reject("Linetype " + name + " not found.  Use the LINETYPE command to load it.");
        std::string stored = name == "BYLAYER" ? "" : name == "BYBLOCK" ? name : doc().tables().linetypes().Find(name)->name;
        ForEach([&](Entity& e) { e.linetype = stored; });
        break;
      }
      case State::kScale:
      case State::kThickness: {
        std::optional<double> v = AnswerReal(a);
        if (!v || (state_ == State::kScale && *v <= 0)) return Reject("Requires a number.");
        int code = state_ == State::kScale ? 48 : 39;
        ForEach([&](Entity& e) {
          if (!e.IsSubEntity()) e.Set(code, *v);
        });
        break;
      }
      default: break;
    }
    return Step::kAsk;
  }

  State state_ = State::kSelect;
  ObjectSelector selector_;
};

// ---- System variables --------------------------------------------------------

// Parses what a user types at a system variable's prompt into its type.
bool ParseSysValue(const Answer& a, const SysValue& like, SysValue* out) {
  if (std::holds_alternative<short>(like)) {
    std::optional<long> v = AnswerInt(a, -32768, 32767);
    if (!v) return false;
    *out = static_cast<short>(*v);
  } else if (std::holds_alternative<double>(like)) {
    std::optional<double> v = AnswerReal(a);
    if (!v) return false;
    *out = *v;
  } else if (std::holds_alternative<Point3>(like)) {
    std::optional<Point3> p = AnswerPoint(a, {0, 0, 0});
    if (!p) return false;
    *out = *p;
  } else {
    *out = UpperName(a.Echo());
  }
  return true;
}

class SysvarCommand : public Command {
 public:
  SysvarCommand(CommandContext& context, std::string name) : Command(context), name_(std::move(name)) {}

  Step Begin() override {
    const SysVar* var = doc().sysvars().Find(name_);
    if (var->read_only) {
      Message(name_ + " = " + FormatSysValue(var->value) + " (read only)");
      return Step::kDone;
    }
    return Step::kAsk;
  }
  std::string Prompt() const override {
    return "\nNew value for " + name_ + " <" + CurrentText(doc(), name_.c_str()) + ">: ";
  }
  Step Feed(const Answer& a) override {
    if (a.IsEnter()) return Step::kDone;
    SysValue value;
    std::string why = "Invalid value.";
    if (ParseSysValue(a, doc().sysvars().Find(name_)->value, &value) &&
        doc().SetVariable(name_, value, &why))
      return Step::kDone;
    return Reject(why);
  }

 private:
  std::string name_;
};

const CommandEntry kPropertyCommands[] = {
    {"CHPROP", "change colour, layer, linetype, linetype scale or thickness of objects", Make<ChpropCommand>},
    {"LAYER", "make, set and change layers", Make<LayerCommand>},
    {"LINETYPE", "load linetypes from a file, set the current one", Make<LinetypeCommand>},
    {"LTSCALE", "the scale of all linetypes", Make<LtscaleCommand>},
};

}  // namespace


std::unique_ptr<Command> MakeSysvarCommand(CommandContext& context, std::string_view name) {
  if (!context.document().sysvars().Find(name)) return nullptr;
  return std::make_unique<SysvarCommand>(context, std::string(name));
}

std::span<const CommandEntry> PropertyCommands() { return kPropertyCommands; }

}  // namespace vorhost
