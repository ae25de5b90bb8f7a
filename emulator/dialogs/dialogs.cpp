// dialogs.cpp - loading dialog files, the modal loop, and the user's events.
#include "emulator/dialogs/dialogs.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

#include "emulator/core/text.h"
#include "emulator/host.h"
#include "emulator/platform/search_path.h"
#include "emulator/platform/filesystem.h"

namespace vorhost {
namespace {

// Splits "verb key rest": rest is everything after the single space that
// follows the key, blanks included.
void SplitEvent(const std::string& line, std::string* verb, std::string* key, std::string* rest) {
  size_t b = line.find_first_not_of(' ');
  std::string s = b == std::string::npos ? "" : line.substr(b);
  size_t sp1 = s.find(' ');
  *verb = s.substr(0, sp1);
  if (sp1 == std::string::npos) return;
  size_t kb = s.find_first_not_of(' ', sp1);
  if (kb == std::string::npos) return;
  size_t sp2 = s.find(' ', kb);
  *key = s.substr(kb, sp2 - kb);
  if (sp2 != std::string::npos) *rest = s.substr(sp2 + 1);
}

std::optional<size_t> RowIndex(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 6)
    return std::nullopt;
  return static_cast<size_t>(std::atoi(text.c_str()));
}

// The chosen rows of a list's value, in ascending order.
std::set<size_t> ChosenRows(const std::string& value) {
  std::set<size_t> rows;
  std::istringstream in(value);
  for (long n; in >> n;)
    if (n >= 0) rows.insert(static_cast<size_t>(n));
  return rows;
}

std::string JoinRows(const std::set<size_t>& rows) {
  std::string out;
  for (size_t r : rows) out += (out.empty() ? "" : " ") + std::to_string(r);
  return out;
}

bool Contains(LiveTile& tile, const LiveTile* wanted) {
  if (&tile == wanted) return true;
  for (const auto& child : tile.children())
    if (Contains(*child, wanted)) return true;
  return false;
}

}  // namespace

int DialogManager::Load(const std::string& file, int* id) {
  dcl::Loader loader = [this](const std::string& name, std::string* contents, std::string* where) {
    std::optional<std::string> path = FindFile(name);
    if (!path || !ReadWholeFile(*path, contents)) return false;
    *where = Files().ShownName(*path);
    return true;
  };
  auto library = std::make_unique<dcl::Library>();
  std::string err;
  if (!library->Load(file, loader, &err)) {
    host_.transcript().WriteLine("Dialog file error: " + err);
    return RTERROR;
  }
  *id = next_id_++;
  files_[*id] = std::move(library);
  return RTNORM;
}

int DialogManager::Unload(int id) {
  if (!files_.erase(id)) return RTERROR;
  std::erase_if(created_, [id](const std::unique_ptr<Dialog>& d) { return d->file_id() == id && !d->started; });
  return RTNORM;
}

int DialogManager::New(const std::string& name, int id, CLIENTFUNC default_action, ads_hdlg* hdlg) {
  auto file = files_.find(id);
  if (!hdlg || file == files_.end()) return RTERROR;
  dcl::Tile tree;
  std::string err;
  if (!file->second->Dialog(name, &tree, &err)) return RTERROR;
  created_.push_back(std::make_unique<Dialog>(name, std::move(tree), id, default_action));
  *hdlg = created_.back().get();
  return RTNORM;
}

Dialog* DialogManager::Find(ads_hdlg hdlg) {
  for (const auto& d : created_)
    if (d.get() == hdlg) return d.get();
  return nullptr;
}

LiveTile* DialogManager::FindTile(ads_htile tile) {
  for (const auto& d : created_)
    if (Contains(d->root(), static_cast<const LiveTile*>(tile))) return static_cast<LiveTile*>(tile);
  return nullptr;
}

int DialogManager::Start(ads_hdlg hdlg, int* status) {
  Dialog* dialog = Find(hdlg);
  if (!dialog || dialog->started) return RTERROR;
  dialog->started = true;
  open_.push_back(dialog);
  host_.transcript().WriteLine("[Dialog " + dialog->name() + "]");
  while (!dialog->done && TakeEvent(*dialog)) {
  }
  open_.pop_back();
  host_.transcript().WriteLine("[Dialog " + dialog->name() + " closed: " + std::to_string(dialog->status) + "]");
  if (status) *status = dialog->status;
  std::erase_if(created_, [dialog](const std::unique_ptr<Dialog>& d) { return d.get() == dialog; });
  return RTNORM;
}

int DialogManager::Done(ads_hdlg hdlg, int status) {
  Dialog* dialog = Find(hdlg);
  if (!dialog || !dialog->started) return RTERROR;
  dialog->done = true;
  dialog->status = status;
  return RTNORM;
}

int DialogManager::TerminateAll() {
  for (Dialog* d : open_) {
    d->done = true;
    d->status = DLGALLDONE;
  }
  return RTNORM;
}

bool DialogManager::TakeEvent(Dialog& dialog) {
  for (;;) {
    Input in = host_.Ask("\n" + dialog.name() + "> ", Asking::kDialog);
    if (in.kind == Input::Kind::kEnd) {
      TerminateAll();
      return false;
    }
    std::string line = in.kind == Input::Kind::kCancel ? "cancel" : in.text;
    std::string why;
    if (Apply(dialog, line, &why)) return true;
    host_.transcript().WriteLine(why);
    if (host_.user()) host_.user()->Misstep(why);
  }
}

void DialogManager::Fire(Dialog& dialog, LiveTile& tile, int reason) {
  CLIENTFUNC action = tile.action;
  if (!action) {
    if (tile.key() == "accept" || tile.key() == "cancel") {
      dialog.done = true;
      dialog.status = tile.key() == "accept" ? DLGOK : DLGCANCEL;
      return;
    }
    action = dialog.default_action();
  }
  if (!action) return;
  std::string value = tile.value;  // the action gets its own copy to read
  ads_callback_packet packet{&dialog, &tile, value.data(), nullptr, reason, 0, 0};
  action(&packet);
}

void DialogManager::Accept(Dialog& dialog, LiveTile& tile) {
  if (dialog.done || !tile.def().IsTrue("allow_accept")) return;
  if (LiveTile* ok = dialog.Find("accept"); ok && ok->Usable()) Fire(dialog, *ok, CBR_SELECT);
}

bool DialogManager::Apply(Dialog& dialog, const std::string& line, std::string* why) {
  std::string verb, key, rest;
  SplitEvent(line, &verb, &key, &rest);
  if (verb == "ok") key = "accept";
  if (verb == "cancel") key = "cancel";
  static const std::set<std::string> kVerbs = {"select", "double-click", "type", "enter", "press",
                                                "toggle", "choose", "ok", "cancel"};
  if (!kVerbs.count(verb)) {
    *why = "not a dialog event: \"" + line + "\" (select, double-click, type, enter, press, toggle, choose, ok, cancel)";
    return false;
  }
  LiveTile* tile = key.empty() ? nullptr : dialog.Find(key);
  if (!tile) {
    *why = "dialog " + dialog.name() + " has no tile \"" + key + "\"";
    return false;
  }
  if (!tile->Usable()) {
    *why = "tile \"" + key + "\" of dialog " + dialog.name() + " is disabled";
    return false;
  }
  auto wrong_kind = [&](const char* wanted) {
    *why = "tile \"" + key + "\" is a " + dcl::KindName(tile->kind()) + ", not " + wanted;
    return false;
  };
  if (verb == "select" || verb == "double-click") {
    if (!tile->IsList()) return wrong_kind("a list");
    std::optional<size_t> row = RowIndex(rest);
    if (!row || *row >= tile->rows.size()) {
      *why = "list \"" + key + "\" has no row " + rest + " (it has " + std::to_string(tile->rows.size()) + ")";
      return false;
    }
    if (tile->MultipleSelect()) {
      std::set<size_t> chosen = ChosenRows(tile->value);
      if (!chosen.erase(*row)) chosen.insert(*row);
      tile->value = JoinRows(chosen);
      Fire(dialog, *tile, CBR_SELECT);
      return true;
    }
    tile->value = std::to_string(*row);
    Fire(dialog, *tile, CBR_SELECT);
    if (verb == "double-click" && !dialog.done) {
      Fire(dialog, *tile, CBR_DOUBLE_CLICK);
      Accept(dialog, *tile);
    }
    return true;
  }
  if (verb == "type" || verb == "enter") {
    if (tile->kind() != dcl::TileKind::kEditBox) return wrong_kind("an edit box");
    tile->value = rest;
    Fire(dialog, *tile, verb == "type" ? CBR_LOST_FOCUS : CBR_SELECT);
    if (verb == "enter") Accept(dialog, *tile);
    return true;
  }
  if (verb == "toggle") {
    if (tile->kind() != dcl::TileKind::kToggle) return wrong_kind("a toggle");
    tile->value = tile->value == "1" ? "0" : "1";
    Fire(dialog, *tile, CBR_SELECT);
    return true;
  }
  if (verb == "choose") {
    if (tile->kind() != dcl::TileKind::kRadioButton) return wrong_kind("a radio button");
    dialog.SetValue(*tile, "1");
    if (tile->action) Fire(dialog, *tile, CBR_SELECT);
    LiveTile* cluster = tile->parent();
    if (!dialog.done && cluster && (cluster->action || (!tile->action && dialog.default_action())))
      Fire(dialog, *cluster, CBR_SELECT);
    return true;
  }
  // press, ok, cancel
  if (tile->kind() != dcl::TileKind::kButton && tile->kind() != dcl::TileKind::kImageButton)
    return wrong_kind("a button");
  Fire(dialog, *tile, CBR_SELECT);
  return true;
}

int DialogManager::StartList(ads_hdlg hdlg, const std::string& key, short operation, short index) {
  Dialog* dialog = Find(hdlg);
  LiveTile* tile = dialog ? dialog->Find(key) : nullptr;
  if (!tile || !tile->IsList()) return RTERROR;
  if (operation == LIST_NEW) {
    tile->rows.clear();
    tile->value = "";
  } else if (operation == LIST_CHANGE) {
    if (index < 0 || static_cast<size_t>(index) >= tile->rows.size()) return RTERROR;
  } else if (operation != LIST_APPEND) {
    return RTERROR;
  }
  list_ = tile;
  list_operation_ = operation;
  list_index_ = index < 0 ? 0 : static_cast<size_t>(index);
  return RTNORM;
}

int DialogManager::AddList(const std::string& row) {
  if (!list_) return RTERROR;
  if (list_operation_ == LIST_CHANGE) {
    if (list_index_ >= list_->rows.size()) return RTERROR;
    list_->rows[list_index_++] = row;
  } else {
    list_->rows.push_back(row);
  }
  return RTNORM;
}

int DialogManager::EndList() {
  if (!list_) return RTERROR;
  list_ = nullptr;
  return RTNORM;
}

}  // namespace vorhost
