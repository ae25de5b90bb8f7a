// dialogs.h - the host's dialog runtime: dialog files loaded by id, dialogs
// created from them, and the modal loop that takes the user's events and
// calls the application's actions. Nested dialogs are started from inside
// actions; events always go to the dialog on top.
#ifndef VORHOST_DIALOGS_DIALOGS_H
#define VORHOST_DIALOGS_DIALOGS_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "emulator/core/transcript.h"
#include "emulator/dcl/dcl_tree.h"
#include "emulator/dialogs/dialog.h"
#include "emulator/dialogs/events.h"

namespace vorhost {

// Where the runtime gets the user's events from: whoever plays the user,
// asked by the host.
class EventSource {
 public:
  virtual ~EventSource() = default;
  // The user's next event in dialog, the one on top.
  virtual DialogInput NextEvent(Dialog& dialog) = 0;
  // The last input could not be taken; why says so (a script stops there,
  // a person tries again).
  virtual void Misstep(const std::string& why) = 0;
};

class DialogManager {
 public:
  // Reports go to transcript; events come from events (neither owned).
  DialogManager(Transcript& transcript, EventSource& events) : transcript_(transcript), events_(events) {}
  DialogManager(const DialogManager&) = delete;
  DialogManager& operator=(const DialogManager&) = delete;

  // ads_load_dialog: the file found on the host's search path, with the
  // base definitions; RTNORM and a new id, or RTERROR (the reason is
  // printed in the transcript).
  int Load(const std::string& file, int* id);
  int Unload(int id);

  // ads_new_dialog: a dialog of a loaded file, not yet shown.
  int New(const std::string& name, int id, CLIENTFUNC default_action, ads_hdlg* hdlg);
  // ads_start_dialog: shows the dialog and lets the user work in it until
  // it is ended; the dialog is gone afterwards.
  int Start(ads_hdlg hdlg, int* status);
  int Done(ads_hdlg hdlg, int status);
  // ads_term_dialog: ends every open dialog with DLGALLDONE.
  int TerminateAll();

  // The dialog a handle stands for, if it exists.
  Dialog* Find(ads_hdlg hdlg);
  LiveTile* FindTile(ads_htile tile);
  // The dialog the user is working in, or null.
  Dialog* top() { return open_.empty() ? nullptr : open_.back(); }
  bool any_open() const { return !open_.empty(); }

  // ads_start_list / ads_add_list / ads_end_list.
  int StartList(ads_hdlg hdlg, const std::string& key, short operation, short index);
  int AddList(const std::string& row);
  int EndList();

 private:
  // Takes one event of the user's for the top dialog; false when the
  // user's input ended (every dialog is then ended).
  bool TakeEvent(Dialog& dialog);

  Transcript& transcript_;
  EventSource& events_;
  std::map<int, std::unique_ptr<dcl::Library>> files_;
  int next_id_ = 1;
  std::vector<std::unique_ptr<Dialog>> created_;  // created and not yet ended
  std::vector<Dialog*> open_;                     // started, innermost last

  // The list being filled between StartList and EndList.
  LiveTile* list_ = nullptr;
  short list_operation_ = 0;
  size_t list_index_ = 0;
};

}  // namespace vorhost

#endif
