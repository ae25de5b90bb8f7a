// dialogs.cpp - loading dialog files, the modal loop, and lists filled by the module.
#include "emulator/dialogs/dialogs.h"

#include <algorithm>

#include "emulator/core/text.h"
#include "emulator/platform/filesystem.h"
#include "emulator/platform/search_path.h"

namespace vorhost {
namespace {

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
    transcript_.WriteLine("Dialog file error: " + err);
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
  transcript_.WriteLine("[Dialog " + dialog->name() + "]");
  while (!dialog->done && TakeEvent(*dialog)) {
  }
  open_.pop_back();
  transcript_.WriteLine("[Dialog " + dialog->name() + " closed: " + std::to_string(dialog->status) + "]");
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
    DialogInput in = events_.NextEvent(dialog);
    if (in.kind == DialogInput::Kind::kEnd) {
      TerminateAll();
      return false;
    }
    std::string why = in.why;
    if (in.kind != DialogInput::Kind::kMistake && ApplyEvent(dialog, in.event, &why)) return true;
    events_.Misstep(why);
  }
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
