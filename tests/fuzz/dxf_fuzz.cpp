// dxf_fuzz.cpp - DXF files as the host opens them (--open, INSERT of a
// drawing file): the reader, then what the host does with a drawing it
// read: the text dump and the SVG picture. A drawing that opens must also
// survive being saved: the host's own file must open again, and a second
// save and open must change nothing more.
#include <cmath>
#include <string>
#include <variant>
#include <vector>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"
#include "emulator/drawing/geometry.h"
#include "emulator/io/dump.h"
#include "emulator/io/dxf.h"
#include "emulator/io/svg.h"
#include "support/fuzz_env.h"

namespace {

// Saves and reopens a drawing; false (with the reader's message) when the
// saved bytes do not open.
bool SaveAndOpen(const vorhost::Drawing& drawing, const vorhost::SysVarTable& vars,
                 vorhost::Drawing* again, vorhost::SysVarTable* again_vars, std::string* err) {
  std::string text;
  if (!vorhost::DrawingDxf(drawing, vars, &text)) {
    *err = "a drawing read from a file holds a number that is not finite";
    return false;
  }
  return vorhost::ReadDxf("SAVED.DXF", std::move(text), again, again_vars, err);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vorhost::Drawing drawing;
  vorhost::SysVarTable vars;
  std::string err;
  if (!vorhost::ReadDxf("FUZZ.DXF", std::string(vorfuzz::Bytes(data, size)), &drawing, &vars, &err)) {
    if (err.empty()) vorfuzz::Broken("a refused file without a message");
    return 0;
  }
  (void)vorhost::DumpDrawing(drawing);
  (void)vorhost::DrawingSvg(drawing, vars);

  vorhost::Drawing once, twice;
  vorhost::SysVarTable once_vars, twice_vars;
  if (!SaveAndOpen(drawing, vars, &once, &once_vars, &err))
    vorfuzz::Broken("the saved drawing does not open: " + err);
  if (!SaveAndOpen(once, once_vars, &twice, &twice_vars, &err))
    vorfuzz::Broken("the drawing saved twice does not open: " + err);
  std::string first = vorhost::DumpDrawing(once), second = vorhost::DumpDrawing(twice);
  if (first != second)
    vorfuzz::Broken("saving and opening again changed the drawing:\n--- once\n" + first +
                    "--- twice\n" + second);
  return 0;
}
