// dcl_fuzz.cpp - dialog definition files: the lexer, the parser and the
// resolving of tile trees, as ads_load_dialog reads a file with the host's
// base definitions; then every dialog of a file that loads is built as a
// live dialog and described, as ads_new_dialog and #show do.
#include <fstream>
#include <sstream>
#include <string>

#include "emulator/dcl/dcl_tree.h"
#include "emulator/dialogs/dialog.h"
#include "emulator/session/host.h"
#include "emulator/platform/search_path.h"
#include "support/fuzz_env.h"
#include "emulator/core/text.h"

namespace {

std::string BaseDefinitions() {
  std::string base;
  if (!vorhost::ReadWholeFile(vorhost::ResourceDirectory() + "/" + vorhost::dcl::kBaseFileName, &base) ||
      base.empty())
    vorfuzz::Broken("cannot read the base definitions");
  return base;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string base = BaseDefinitions();
  const std::string input(vorfuzz::Bytes(data, size));

  // The file includes nothing but itself and the base: an @include of any
  // other name is a missing file.
  vorhost::dcl::Loader loader = [&](const std::string& name, std::string* contents,
                                    std::string* where) {
    if (name == vorhost::dcl::kBaseFileName) *contents = base;
    else if (name == "FUZZ.DCL") *contents = input;
    else return false;
    *where = name;
    return true;
  };
  vorhost::dcl::Library library;
  std::string err;
  if (!library.Load("FUZZ.DCL", loader, &err)) {
    if (err.empty()) vorfuzz::Broken("a refused file without a message");
    return 0;
  }
  for (const std::string& name : library.DialogNames()) {
    vorhost::dcl::Tile tree;
    if (!library.Dialog(name, &tree, &err)) vorfuzz::Broken("listed dialog " + name + " is missing");
    vorhost::Dialog dialog(name, std::move(tree), 1, nullptr);
    (void)dialog.Describe();
  }
  return 0;
}
