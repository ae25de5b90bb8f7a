// dialogs_api.cpp - the dialog operations of host/ads.h, on the current
// host's dialog runtime.
#include <cstring>

#include "emulator/session/host.h"
#include "host/ads.h"

using vorhost::Dialog;
using vorhost::DialogManager;
using vorhost::Host;
using vorhost::LiveTile;

namespace {

DialogManager* Manager() {
  Host* host = Host::Current();
  return host ? &host->dialogs() : nullptr;
}

LiveTile* TileOf(ads_hdlg hdlg, const char* key) {
  DialogManager* m = Manager();
  Dialog* dialog = m ? m->Find(hdlg) : nullptr;
  return dialog && key ? dialog->Find(key) : nullptr;
}

// Copies text into buf of size bytes, cut to fit with its terminator.
int CopyOut(const std::string& text, char* buf, int size) {
  if (!buf || size <= 0) return RTERROR;
  size_t n = std::min(text.size(), static_cast<size_t>(size - 1));
  std::memcpy(buf, text.data(), n);
  buf[n] = '\0';
  return RTNORM;
}

}  // namespace

extern "C" int ads_load_dialog(const char* dclfile, int* dcl_id) {
  DialogManager* m = Manager();
  return m && dclfile && dcl_id ? m->Load(dclfile, dcl_id) : RTERROR;
}

extern "C" int ads_unload_dialog(int dcl_id) {
  DialogManager* m = Manager();
  return m ? m->Unload(dcl_id) : RTERROR;
}

extern "C" int ads_new_dialog(const char* dlgname, int dcl_id, CLIENTFUNC def_callback, ads_hdlg* hdlg) {
  DialogManager* m = Manager();
  return m && dlgname ? m->New(dlgname, dcl_id, def_callback, hdlg) : RTERROR;
}

extern "C" int ads_start_dialog(ads_hdlg hdlg, int* status) {
  DialogManager* m = Manager();
  return m ? m->Start(hdlg, status) : RTERROR;
}

extern "C" int ads_done_dialog(ads_hdlg hdlg, int status) {
  DialogManager* m = Manager();
  return m ? m->Done(hdlg, status) : RTERROR;
}

extern "C" int ads_term_dialog(void) {
  DialogManager* m = Manager();
  return m ? m->TerminateAll() : RTERROR;
}

extern "C" int ads_action_tile(ads_hdlg hdlg, const char* key, CLIENTFUNC tilefunc) {
  LiveTile* tile = TileOf(hdlg, key);
  if (!tile) return RTERROR;
  tile->action = tilefunc;
  return RTNORM;
}

extern "C" int ads_set_tile(ads_hdlg hdlg, const char* key, const char* value) {
  DialogManager* m = Manager();
  LiveTile* tile = TileOf(hdlg, key);
  if (!tile || !value) return RTERROR;
  m->Find(hdlg)->SetValue(*tile, value);
  return RTNORM;
}

extern "C" int ads_get_tile(ads_hdlg hdlg, const char* key, char* value, int maxlen) {
  LiveTile* tile = TileOf(hdlg, key);
  return tile ? CopyOut(tile->value, value, maxlen) : RTERROR;
}

extern "C" int ads_get_attr_string(ads_htile tile, const char* attr, char* value, int len) {
  DialogManager* m = Manager();
  LiveTile* t = m ? m->FindTile(tile) : nullptr;
  if (!t || !attr) return RTERROR;
  return CopyOut(t->def().AttrString(attr), value, len);
}

extern "C" int ads_mode_tile(ads_hdlg hdlg, const char* key, short mode) {
  LiveTile* tile = TileOf(hdlg, key);
  if (!tile) return RTERROR;
  if (mode == MODE_ENABLE) tile->enabled = true;
  else if (mode == MODE_DISABLE) tile->enabled = false;
  else if (mode != MODE_SETFOCUS && mode != MODE_SETSEL && mode != MODE_FLIP) return RTERROR;
  return RTNORM;
}

extern "C" int ads_start_list(ads_hdlg hdlg, const char* key, short operation, short index) {
  DialogManager* m = Manager();
  return m && key ? m->StartList(hdlg, key, operation, index) : RTERROR;
}

extern "C" int ads_add_list(const char* item) {
  DialogManager* m = Manager();
  return m && item ? m->AddList(item) : RTERROR;
}

extern "C" int ads_end_list(void) {
  DialogManager* m = Manager();
  return m ? m->EndList() : RTERROR;
}
