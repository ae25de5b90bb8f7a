// dialog.h - a live dialog: the resolved tile tree of a dialog definition
// together with what the runtime keeps for each tile (value, mode, list
// rows, action). The state is plain data, so that a script driver prints
// it and a front end can draw it.
#ifndef VORHOST_DIALOGS_DIALOG_H
#define VORHOST_DIALOGS_DIALOG_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/dcl/dcl_tree.h"
#include "host/ads.h"

namespace vorhost {

class LiveTile {
 public:
  LiveTile(const dcl::Tile& def, LiveTile* parent);
  LiveTile(const LiveTile&) = delete;
  LiveTile& operator=(const LiveTile&) = delete;

  const dcl::Tile& def() const { return def_; }
  dcl::TileKind kind() const { return def_.kind; }
  const std::string& key() const { return key_; }
  LiveTile* parent() const { return parent_; }
  const std::vector<std::unique_ptr<LiveTile>>& children() const { return children_; }

  // The tile's value as the host reports it: a text's or edit box's text,
  // "0" or "1" for a toggle or radio button, a radio cluster's chosen
  // button key, a list's chosen row indexes ("" for none; blank-separated
  // for a list with multiple_select).
  std::string value;
  bool enabled = true;
  std::vector<std::string> rows;  // list_box and popup_list rows
  CLIENTFUNC action = nullptr;

  bool IsList() const { return kind() == dcl::TileKind::kListBox || kind() == dcl::TileKind::kPopupList; }
  bool MultipleSelect() const { return kind() == dcl::TileKind::kListBox && def_.IsTrue("multiple_select"); }
  // Whether the tile or one of its clusters is disabled.
  bool Usable() const;
  // The first tile with this key, this one or below; null if none.
  LiveTile* Find(std::string_view key);

 private:
  const dcl::Tile& def_;
  std::string key_;
  LiveTile* parent_;
  std::vector<std::unique_ptr<LiveTile>> children_;
};

// One dialog created by ads_new_dialog: its tree, the state of its tiles,
// and how it ended. The host's dialog handle is a pointer to it.
class Dialog {
 public:
  // The dialog of that name from the file with id file; fallback is the
  // action of tiles that have none (NULLCB for none).
  Dialog(std::string dialog_name, dcl::Tile tree, int file, CLIENTFUNC fallback);
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;

  const std::string& name() const { return name_; }
  int file_id() const { return file_id_; }
  CLIENTFUNC default_action() const { return default_action_; }
  LiveTile& root() { return *root_; }
  LiveTile* Find(std::string_view key) { return root_->Find(key); }
  // Every keyed tile in layout order.
  std::vector<LiveTile*> KeyedTiles();

  bool started = false;
  bool done = false;
  int status = DLGCANCEL;

  // Sets a tile's value as ads_set_tile does: a radio button "1" turns its
  // cluster's other buttons off, a cluster's value turns on the button it
  // names, a list takes the chosen indexes.
  void SetValue(LiveTile& tile, std::string value);

  // The dialog's tiles with their kinds, values, modes and list rows, one
  // per line (Big5), as a script asks to see them.
  std::string Describe();

 private:
  std::string name_;
  dcl::Tile tree_;  // owns the definitions the live tiles refer to
  int file_id_;
  CLIENTFUNC default_action_;
  std::unique_ptr<LiveTile> root_;
};

}  // namespace vorhost

#endif
