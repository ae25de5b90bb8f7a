// dcl_tree.cpp - tile kinds, attribute values, and resolving a dialog file's definitions into
// trees.
#include "emulator/dcl/dcl_tree.h"

#include <algorithm>
#include <charconv>
#include <deque>
#include <iterator>
#include <set>
#include <utility>

#include "emulator/core/text.h"
#include "emulator/dcl/dcl_parser.h"

namespace vorhost::dcl {
namespace {

struct KindInfo {
  TileKind kind;
  const char* name;
  bool cluster;  // holds other tiles
  bool radio;    // a radio cluster
};

// ORDER KINDS: one row per TileKind, in its order.
constexpr KindInfo kKinds[] = {
    {TileKind::kDialog, "dialog", true, false},
    {TileKind::kRow, "row", true, false},
    {TileKind::kColumn, "column", true, false},
    {TileKind::kBoxedRow, "boxed_row", true, false},
    {TileKind::kBoxedColumn, "boxed_column", true, false},
    {TileKind::kRadioRow, "radio_row", true, true},
    {TileKind::kRadioColumn, "radio_column", true, true},
    {TileKind::kBoxedRadioRow, "boxed_radio_row", true, true},
    {TileKind::kBoxedRadioColumn, "boxed_radio_column", true, true},
    {TileKind::kConcatenation, "concatenation", true, false},
    {TileKind::kParagraph, "paragraph", true, false},
    {TileKind::kButton, "button", false, false},
    {TileKind::kToggle, "toggle", false, false},
    {TileKind::kRadioButton, "radio_button", false, false},
    {TileKind::kEditBox, "edit_box", false, false},
    {TileKind::kListBox, "list_box", false, false},
    {TileKind::kPopupList, "popup_list", false, false},
    {TileKind::kText, "text", false, false},
    {TileKind::kTextPart, "text_part", false, false},
    {TileKind::kSpacer, "spacer", false, false},
    {TileKind::kImage, "image", false, false},
    {TileKind::kImageButton, "image_button", false, false},
    {TileKind::kSlider, "slider", false, false},
};

constexpr bool KindsInOrder() {
  for (size_t i = 0; i < std::size(kKinds); ++i) {
    if (static_cast<size_t>(kKinds[i].kind) != i) return false;
  }
  return std::size(kKinds) == static_cast<size_t>(TileKind::kSlider) + 1;
}
static_assert(KindsInOrder(), "kKinds must list every TileKind in its order");

const KindInfo& Info(TileKind kind) { return kKinds[static_cast<size_t>(kind)]; }

const std::string& EmptyString() {
  static const std::string kEmpty;
  return kEmpty;
}

}  // namespace

const char* KindName(TileKind kind) { return Info(kind).name; }

bool KindByName(std::string_view name, TileKind* kind) {
  for (const KindInfo& info : kKinds) {
    if (name == info.name) {
      *kind = info.kind;
      return true;
    }
  }
  return false;
}

bool IsCluster(TileKind kind) { return Info(kind).cluster; }
bool IsRadioCluster(TileKind kind) { return Info(kind).radio; }

// ---- Attribute values ---------------------------------------------------------------

const std::string& AttrValue::text() const {
  const std::string* text = std::get_if<std::string>(&value_);
  return text ? *text : EmptyString();
}

double AttrValue::number() const {
  if (const int* i = std::get_if<int>(&value_)) return *i;
  if (const double* d = std::get_if<double>(&value_)) return *d;
  return 0;
}

const std::string& AttrValue::word() const {
  const Word* word = std::get_if<Word>(&value_);
  return word ? word->name : EmptyString();
}

std::string AttrValue::ToString() const {
  if (is_text()) return text();
  if (is_reserved()) return word();
  if (is_boolean()) return boolean() ? "true" : "false";
  if (is_integer()) return std::to_string(std::get<int>(value_));
  return ShortestText(std::get<double>(value_));
}

// ---- Tiles --------------------------------------------------------------------------

const AttrValue* Tile::Attr(std::string_view name) const {
  auto it = attrs.find(name);
  return it == attrs.end() ? nullptr : &it->second;
}

std::string Tile::AttrString(std::string_view name) const {
  const AttrValue* value = Attr(name);
  return value ? value->ToString() : std::string();
}

bool Tile::IsTrue(std::string_view name) const {
  const AttrValue* value = Attr(name);
  return value && value->boolean();
}

const Tile* Tile::Find(std::string_view key) const {
  if (Key() == key) return this;
  for (const Tile& child : children) {
    if (const Tile* found = child.Find(key)) return found;
  }
  return nullptr;
}

// ---- Resolving ----------------------------------------------------------------------

namespace {

// One file read for a Load: its name in messages, its bytes, its syntax tree.
struct Source {
  std::string where;
  std::string text;
  ParsedFile parsed;
};

// A resolved tree with its size, so that limits are checked without walks.
struct Resolved {
  Tile tile;
  size_t count = 0;  // tiles in the tree
  int depth = 0;     // levels of tiles, 1 for a tile without children
  int chain = 0;     // definitions one inside another, through types and children
};

// The work of one Library::Load: reads the files, keeps the definitions in
// force, and resolves them, each once, caching the trees.
class Resolver {
 public:
  explicit Resolver(const Loader& loader) : loader_(loader) {}
  Resolver(const Resolver&) = delete;
  Resolver& operator=(const Resolver&) = delete;

  // Reads name and what it includes, and registers their definitions. from
  // and place say where it was included; null for a file asked for by the
  // caller, which is then reported missing with missing_message.
  bool ReadFile(const std::string& name, const Source* from, Place place, int depth,
                const std::string& missing_message, std::string* where, std::string* err);

  // Resolves every definition in force.
  bool ResolveAll(std::string* err);

  // The dialogs, in first-definition order, taken out of the cache.
  void TakeDialogs(std::vector<std::string>* names,
                   std::map<std::string, Tile, std::less<>>* trees);

 private:
  struct Entry {
    const Definition* def;
    const Source* source;
  };

  bool Register(const Source& source, std::string* err);
  bool ResolveDefinition(const std::string& name, const Source& from, Place place,
                         const Resolved** out, std::string* err);
  bool ResolveBase(const TypeRef& type, const Source& source, const Resolved** out,
                   std::string* err);
  bool ResolveNode(const TileNode& node, const Source& source, Resolved* out, std::string* err);
  bool ResolveChildren(const TileNode& node, const Source& source, Resolved* out, std::string* err);
  bool CheckChild(const Resolved& parent, const Resolved& child, const TileNode& node,
                  const Source& source, std::string* err) const;

  static bool Fail(const Source& source, Place place, const std::string& message,
                   std::string* err) {
    return ReportError(source.where, source.text, place, message, err);
  }

  const Loader& loader_;
  std::deque<Source> sources_;         // stable addresses: entries point into them
  std::set<std::string> read_;         // wheres of the files read
  std::map<std::string, Entry> defs_;  // the definitions in force
  std::vector<std::string> order_;     // their names, in first-definition order
  std::map<std::string, Resolved> done_;
  std::vector<std::string> resolving_;  // definitions being resolved, outermost first
  Resolved builtin_;                    // scratch for a built-in kind used as a type
  int level_ = 0;                       // ResolveNode calls in progress
  size_t load_tiles_ = 0;               // tiles in done_
};

bool Resolver::ReadFile(const std::string& name, const Source* from, Place place, int depth,
                        const std::string& missing_message, std::string* where, std::string* err) {
  std::string contents;
  if (!loader_(name, &contents, where)) {
    if (!from) {
      if (err) *err = missing_message;
      return false;
    }
    return Fail(*from, place, "cannot find included file \"" + name + "\"", err);
  }
  if (!read_.insert(*where).second) return true;
  if (depth > kMaxDepth) {
    return Fail(*from, place, "files included more than " + std::to_string(kMaxDepth) + " deep",
                err);
  }
  Source& source = sources_.emplace_back();
  source.where = *where;
  source.text = std::move(contents);
  if (!Parse(source.where, source.text, &source.parsed, err)) return false;
  for (const Include& include : source.parsed.includes) {
    std::string included_where;
    if (!ReadFile(include.name, &source, include.place, depth + 1, "", &included_where, err)) {
      return false;
    }
  }
  return Register(source, err);
}

bool Resolver::Register(const Source& source, std::string* err) {
  std::map<std::string_view, int> lines;  // of the names this file defines
  for (const Definition& def : source.parsed.definitions) {
    TileKind kind;
    if (KindByName(def.name, &kind)) {
      return Fail(source, def.place, "cannot redefine the built-in tile " + def.name, err);
    }
    auto [it, added] = lines.emplace(def.name, def.place.line);
    if (!added) {
      return Fail(source, def.place,
                  def.name + " is already defined at line " + std::to_string(it->second), err);
    }
    if (defs_.insert_or_assign(def.name, Entry{&def, &source}).second) order_.push_back(def.name);
  }
  return true;
}

bool Resolver::ResolveAll(std::string* err) {
  for (const std::string& name : order_) {
    const Entry& entry = defs_.at(name);
    const Resolved* resolved;
    if (!ResolveDefinition(name, *entry.source, entry.def->place, &resolved, err)) return false;
  }
  return true;
}

void Resolver::TakeDialogs(std::vector<std::string>* names,
                           std::map<std::string, Tile, std::less<>>* trees) {
  for (const std::string& name : order_) {
    Resolved& resolved = done_.at(name);
    if (resolved.tile.kind != TileKind::kDialog) continue;
    names->push_back(name);
    trees->emplace(name, std::move(resolved.tile));
  }
}

// The tree of the definition name, which is used at place in from.
bool Resolver::ResolveDefinition(const std::string& name, const Source& from, Place place,
                                 const Resolved** out, std::string* err) {
  if (auto it = done_.find(name); it != done_.end()) {
    *out = &it->second;
    return true;
  }
  if (auto it = std::find(resolving_.begin(), resolving_.end(), name); it != resolving_.end()) {
    std::string chain;
    for (; it != resolving_.end(); ++it) chain += *it + " -> ";
    return Fail(from, place, name + " refers to itself: " + chain + name, err);
  }
  if (resolving_.size() >= static_cast<size_t>(kMaxDepth)) {
    return Fail(from, place, "prototypes nested more than " + std::to_string(kMaxDepth) + " deep",
                err);
  }
  const Entry& entry = defs_.at(name);
  Resolved resolved;
  resolving_.push_back(name);
  bool ok = ResolveNode(entry.def->tile, *entry.source, &resolved, err);
  resolving_.pop_back();
  if (!ok) return false;
  // The stack check above depends on the order definitions are resolved
  // in; this one does not.
  if (++resolved.chain > kMaxDepth) {
    return Fail(from, place, "prototypes nested more than " + std::to_string(kMaxDepth) + " deep",
                err);
  }
  resolved.tile.type = name;
  resolved.tile.line = entry.def->place.line;
  load_tiles_ += resolved.count;
  if (load_tiles_ > kMaxLoadTiles) {
    return Fail(*entry.source, entry.def->place,
                "the definitions hold more than " + std::to_string(kMaxLoadTiles) + " tiles in all",
                err);
  }
  *out = &done_.emplace(name, std::move(resolved)).first->second;
  return true;
}

// What a type name stands for: a built-in kind, with no attributes or
// children, or a definition's tree.
bool Resolver::ResolveBase(const TypeRef& type, const Source& source, const Resolved** out,
                           std::string* err) {
  TileKind kind;
  if (KindByName(type.name, &kind)) {
    builtin_ = Resolved{};
    builtin_.tile.kind = kind;
    builtin_.count = 1;
    builtin_.depth = 1;
    *out = &builtin_;
    return true;
  }
  if (!defs_.count(type.name))
    return Fail(source, type.place, "unknown tile type " + type.name, err);
  return ResolveDefinition(type.name, source, type.place, out, err);
}

bool Resolver::ResolveNode(const TileNode& node, const Source& source, Resolved* out,
                           std::string* err) {
  // Each level of tiles or of prototypes adds at most one call here, and
  // prototypes alone are held to kMaxDepth, so past twice that the tree
  // being built is too deep.
  struct LevelGuard {
    int& level;
    explicit LevelGuard(int& l) : level(++l) {}
    ~LevelGuard() { --level; }
  } guard(level_);
  if (level_ > 2 * kMaxDepth) {
    return Fail(source, node.place(),
                "tiles nested more than " + std::to_string(kMaxDepth) + " deep", err);
  }

  // Attributes: the leftmost type's win over the others', the tile's own
  // over all. builtin_ is scratch, so each base is merged before the next
  // is looked up.
  out->tile = Tile{};
  for (size_t i = node.types.size(); i-- > 0;) {
    const TypeRef& type = node.types[i];
    const Resolved* base;
    if (!ResolveBase(type, source, &base, err)) return false;
    if (!base->tile.children.empty()) {
      if (node.types.size() > 1 || !node.attrs.empty() || !node.children.empty()) {
        return Fail(source, type.place,
                    type.name + " holds tiles of its own and cannot be changed; use it as \"" +
                        type.name + ";\"",
                    err);
      }
      *out = *base;
    }
    out->tile.kind = base->tile.kind;
    out->chain = std::max(out->chain, base->chain);
    for (const auto& [name, value] : base->tile.attrs)
      out->tile.attrs.insert_or_assign(name, value);
  }
  for (const AttrNode& attr : node.attrs) out->tile.attrs.insert_or_assign(attr.name, attr.value);
  out->tile.type = node.types.front().name;
  out->tile.file = source.where;
  out->tile.line = node.place().line;
  if (!out->tile.children.empty()) return true;  // a subassembly, as it stands
  return ResolveChildren(node, source, out, err);
}

// The node's own children under out, whose kind and attributes are set.
bool Resolver::ResolveChildren(const TileNode& node, const Source& source, Resolved* out,
                               std::string* err) {
  out->count = 1;
  out->depth = 1;
  if (node.children.empty()) return true;
  if (!IsCluster(out->tile.kind)) {
    return Fail(source, node.children.front().place(),
                std::string(KindName(out->tile.kind)) + " cannot hold tiles", err);
  }
  out->tile.children.reserve(node.children.size());
  for (const TileNode& child_node : node.children) {
    Resolved child;
    if (!ResolveNode(child_node, source, &child, err)) return false;
    if (!CheckChild(*out, child, child_node, source, err)) return false;
    out->count += child.count;
    out->depth = std::max(out->depth, child.depth + 1);
    out->chain = std::max(out->chain, child.chain);
    if (out->count > kMaxTiles) {
      return Fail(source, node.place(), "more than " + std::to_string(kMaxTiles) + " tiles", err);
    }
    if (out->depth > kMaxDepth) {
      return Fail(source, node.place(),
                  "tiles nested more than " + std::to_string(kMaxDepth) + " deep", err);
    }
    out->tile.children.push_back(std::move(child.tile));
  }
  return true;
}

bool Resolver::CheckChild(const Resolved& parent, const Resolved& child, const TileNode& node,
                          const Source& source, std::string* err) const {
  if (child.tile.kind == TileKind::kDialog) {
    return Fail(source, node.place(), "a dialog cannot be placed inside a tile", err);
  }
  if (child.tile.kind == TileKind::kRadioButton && !IsRadioCluster(parent.tile.kind)) {
    return Fail(source, node.place(), "radio_button outside a radio cluster", err);
  }
  return true;
}

}  // namespace

// ---- The library --------------------------------------------------------------------

bool Library::Load(const std::string& name, const Loader& loader, std::string* err) {
  if (!loader) {
    if (err) *err = "no loader to read dialog file " + name;
    return false;
  }
  Resolver resolver(loader);
  std::string base_where;
  std::string where;
  if (!resolver.ReadFile(kBaseFileName, nullptr, Place(), 0,
                         std::string("cannot find the base definitions ") + kBaseFileName,
                         &base_where, err) ||
      !resolver.ReadFile(name, nullptr, Place(), 0, "cannot find dialog file " + name, &where,
                         err) ||
      !resolver.ResolveAll(err)) {
    return false;
  }
  std::vector<std::string> names;
  std::map<std::string, Tile, std::less<>> trees;
  resolver.TakeDialogs(&names, &trees);
  file_ = std::move(where);
  dialog_names_ = std::move(names);
  dialogs_ = std::move(trees);
  return true;
}

bool Library::Dialog(std::string_view name, Tile* out, std::string* err) const {
  auto it = dialogs_.find(name);
  if (it == dialogs_.end()) {
    if (err) *err = file_ + ": no dialog named " + std::string(name);
    return false;
  }
  *out = it->second;
  return true;
}

std::vector<std::string> Library::DialogNames() const { return dialog_names_; }

}  // namespace vorhost::dcl
