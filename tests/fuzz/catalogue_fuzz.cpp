// catalogue_fuzz.cpp - a run-type catalogue as the line tool reads it from
// the home directory (plat_fopen, text mode, the text list's field filter):
// every record parsed, composed and parsed again to the same fields; the
// line tool's rows, unfiltered and filtered by the first record's code, and
// the code list, filled in dialogs of the emulated host; a record copied,
// rewritten in place and the copy deleted, as the dialogs do; and the
// catalogue saved and read back line for line.
#include <cstring>
#include <string>
#include <vector>

#include "host/ads.h"
#include "host/dialogs.h"
#include "linetool/catalogue.h"
#include "support/fuzz_env.h"

namespace {

// Two list tiles, as the main dialog and the code dialog have them.
const char kLists[] =
    "VOR_ELINE_0 : dialog { : list_box { key = \"eline\"; } ok_cancel; }\n"
    "VOR_ELINE_2 : dialog { : list_box { key = \"codelist\"; } ok_cancel; }\n";

using Fields = std::vector<std::string>;

Fields CurrentFields() { return Fields(std::begin(RecordFields), std::end(RecordFields)); }

std::vector<std::string> Lines(const TextList& list) {
  std::vector<std::string> lines;
  for (const TextNode* node = list.head; node; node = node->next) lines.push_back(node->text);
  return lines;
}

void CheckRoundTrip(const char* text) {
  parse_record(text, 1);
  Fields read = CurrentFields();
  unescape_spec();
  if (std::strlen(SpecDisplay) > std::strlen(RecordFields[4]))
    vorfuzz::Broken("unescaping made the label longer");
  char line[256];
  if (!compose_record(line)) {
    if (line[0]) vorfuzz::Broken("a refused record left text behind");
    return;
  }
  if (std::strlen(line) > 255) vorfuzz::Broken("a composed record passes 255 bytes");
  parse_record(line, 1);
  if (CurrentFields() != read)
    vorfuzz::Broken(std::string("a composed record reads back otherwise: ") + line);
}

// Loads the list dialogs into DialogFile once; they stay loaded.
void LoadLists() {
  static const bool loaded = [] {
    vorfuzz::Session::Get().Begin();
    vorfuzz::ScratchDrive::Get().Write("LISTS.DCL", kLists);
    return dialog_file_load("LISTS.DCL") == RTNORM;
  }();
  if (!loaded) vorfuzz::Broken("the list dialogs do not load");
}

ads_hdlg NewDialog(const char* name) {
  ads_hdlg dialog = nullptr;
  if (dialog_new(name, &dialog) != RTNORM) vorfuzz::Broken(std::string("no dialog ") + name);
  return dialog;
}

// Shows the dialog to no one: it ends as cancelled and is gone.
void Close(ads_hdlg dialog) {
  int status = 0;
  ads_start_dialog(dialog, &status);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LoadLists();
  vorfuzz::Session::Get().Begin();
  vorfuzz::ScratchDrive::Get().Write("VOR/ELINE.CAT", vorfuzz::Bytes(data, size));

  catalogue_load();
  for (const TextNode* node = Catalogue.head; node; node = node->next) CheckRoundTrip(node->text);

  ads_hdlg main = NewDialog("VOR_ELINE_0");
  catalogue_rows(main);
  if (Catalogue.head) {
    parse_record(Catalogue.head->text, 0);
    strcpy(CodePattern, RecordFields[0]);
    SearchOn = 1;
    catalogue_rows(main);
    SearchOn = 0;
    catalogue_rows(main);
  }
  ads_hdlg codes = NewDialog("VOR_ELINE_2");
  code_table_build(codes);
  Close(codes);

  // "add" on the first row: the copy goes in front, the rows are refilled
  // and the editor's OK rewrites the record below it; then the copy goes.
  if (Catalogue.count > 0) {
    SelectedRow = 0;
    catalogue_duplicate();
    catalogue_rows(main);
    SelectedRow = 1;
    TextNode *node, *prev;
    catalogue_selected(&node, &prev);
    if (node) parse_record(node->text, 1);
    catalogue_replace(main);
    SelectedRow = 0;
    catalogue_delete();
  }
  Close(main);

  Catalogue.modified = 1;
  textlist_save(&Catalogue);
  std::vector<std::string> saved = Lines(Catalogue);
  catalogue_load();
  if (Lines(Catalogue) != saved) vorfuzz::Broken("the saved catalogue reads back otherwise");
  textlist_free(&Catalogue);
  return 0;
}
