// dialog.cpp - live tiles and their values.
#include "emulator/dialogs/dialog.h"

#include <sstream>

namespace vorhost {
namespace {

// The initial value of a tile from its definition: its value attribute, a
// text's label, "0" for a switch without one. (A radio cluster takes the
// key of its button that is on; see LiveTile's constructor.)
std::string InitialValue(const dcl::Tile& def) {
  std::string value = def.AttrString("value");
  if (!value.empty()) return value;
  if (def.kind == dcl::TileKind::kText) return def.AttrString("label");
  if (def.kind == dcl::TileKind::kToggle || def.kind == dcl::TileKind::kRadioButton) return "0";
  return "";
}

void Collect(LiveTile& tile, std::vector<LiveTile*>* out) {
  if (!tile.key().empty()) out->push_back(&tile);
  for (const auto& child : tile.children()) Collect(*child, out);
}

}  // namespace

LiveTile::LiveTile(const dcl::Tile& def, LiveTile* parent)
    : value(InitialValue(def)), def_(def), key_(def.Key()), parent_(parent) {
  if (def.IsTrue("is_enabled") == false && def.Attr("is_enabled")) enabled = false;
  for (const dcl::Tile& child : def.children) children_.push_back(std::make_unique<LiveTile>(child, this));
  if (dcl::IsRadioCluster(def.kind) && value.empty())
    for (const auto& child : children_)
      if (child->value == "1") value = child->key();
}

bool LiveTile::Usable() const {
  for (const LiveTile* t = this; t; t = t->parent_)
    if (!t->enabled) return false;
  return true;
}

LiveTile* LiveTile::Find(std::string_view key) {
  if (key_ == key) return this;
  for (const auto& child : children_)
    if (LiveTile* found = child->Find(key)) return found;
  return nullptr;
}

Dialog::Dialog(std::string dialog_name, dcl::Tile tree, int file, CLIENTFUNC fallback)
    : name_(std::move(dialog_name)), tree_(std::move(tree)), file_id_(file), default_action_(fallback),
      root_(std::make_unique<LiveTile>(tree_, nullptr)) {}

std::vector<LiveTile*> Dialog::KeyedTiles() {
  std::vector<LiveTile*> out;
  Collect(*root_, &out);
  return out;
}

void Dialog::SetValue(LiveTile& tile, std::string value) {
  if (tile.kind() == dcl::TileKind::kRadioButton) {
    LiveTile* cluster = tile.parent();
    if (value == "1" && cluster && dcl::IsRadioCluster(cluster->kind())) {
      for (const auto& other : cluster->children())
        if (other->kind() == dcl::TileKind::kRadioButton) other->value = "0";
      cluster->value = tile.key();
    } else if (cluster && cluster->value == tile.key()) {
      cluster->value = "";
    }
    tile.value = value == "1" ? "1" : "0";
    return;
  }
  if (dcl::IsRadioCluster(tile.kind())) {
    for (const auto& button : tile.children())
      if (button->kind() == dcl::TileKind::kRadioButton) button->value = button->key() == value ? "1" : "0";
    tile.value = std::move(value);
    return;
  }
  tile.value = std::move(value);
}

std::string Dialog::Describe() {
  std::ostringstream out;
  std::string label = root_->def().AttrString("label");
  out << "Dialog " << name_ << (label.empty() ? "" : " \"" + label + "\"") << "\n";
  for (LiveTile* t : KeyedTiles()) {
    out << "  " << t->key() << " " << dcl::KindName(t->kind());
    if (!t->Usable()) out << " disabled";
    std::string tile_label = t->def().AttrString("label");
    if (!tile_label.empty() && t->kind() != dcl::TileKind::kText) out << " \"" << tile_label << "\"";
    if (t->kind() != dcl::TileKind::kButton) out << " = \"" << t->value << "\"";
    out << "\n";
    for (size_t i = 0; i < t->rows.size(); i++) {
      std::string row = t->rows[i];
      for (char& c : row)
        if (c == '\t') c = '|';
      out << "    " << i << ": " << row << "\n";
    }
  }
  return out.str();
}

}  // namespace vorhost
