// layer_fuzz.cpp - the layer memo LAYER.MEO as the layer dialog reads it
// from the home directory: the dialog VOR_LAY_SET of the module's own
// dialog file filled with the memo's rows and shown, and the last row
// double-clicked, which must give back that line's first word whole.
#include <cstring>
#include <string>

#include "host/ads.h"
#include "host/dialogs.h"
#include "layer/layer.h"
#include "support/fuzz_env.h"
#include "util/textlist.h"

namespace {

// VORMIS.DCL in DialogFile, loaded once; the layer dialog uses it as a
// dialog nested in the line tool's does.
void LoadDialogs() {
  static const bool loaded = [] {
    vorfuzz::Session::Get().Begin();
    return dialog_file_load("VORMIS.DCL") == RTNORM;
  }();
  if (!loaded) vorfuzz::Broken("VORMIS.DCL does not load");
}

// The first word of line, whole.
std::string FirstWord(const char* line) {
  const char* blanks = " \t\n\v\f\r";
  const char* start = line + std::strspn(line, blanks);
  return std::string(start, std::strcspn(start, blanks));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LoadDialogs();
  vorfuzz::Session& session = vorfuzz::Session::Get();
  session.Begin();
  vorfuzz::ScratchDrive::Get().Write("VOR/LAYER.MEO", vorfuzz::Bytes(data, size));

  // The rows the dialog will show, read as it reads them.
  TextList memo = {};
  textlist_load("C:\\VOR\\LAYER.MEO", &memo, 1, 16, 0, 0, 0, 0, 0, 0);
  std::string last = memo.tail ? FirstWord(memo.tail->text) : "";
  int rows = memo.count;
  textlist_free(&memo);

  std::strcpy(InitialLayer, "E-LIGHT");
  if (rows > 0) session.Answer({"#show", "double-click layer " + std::to_string(rows - 1)});
  else session.Answer({"#show", "cancel"});
  if (layer_dialog() != RTNORM) vorfuzz::Broken("the layer dialog does not open");
  if (ChosenLayer != last.substr(0, 255))
    vorfuzz::Broken("the chosen layer is not the row's first word: " + std::string(ChosenLayer));
  if (LayerMemo.head) vorfuzz::Broken("the memo outlives its dialog");
  return 0;
}
