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

struct Vertex {
  vorhost::Point3 at;
  double bulge;
};

// Whether a run of vertices has a bulged segment (the closing one counted)
// whose arc has no finite centre, radius or angles: its ends are one point,
// or they lie so far apart that the arithmetic overflows.
bool BulgeArcNotFinite(const std::vector<Vertex>& vs) {
  for (size_t k = 0; k < vs.size(); k++) {
    const Vertex& a = vs[k];
    const Vertex& b = vs[(k + 1) % vs.size()];
    if (a.bulge == 0) continue;
    vorhost::Point3 centre;
    double radius, a1, a2;
    vorhost::BulgeArc(a.at, b.at, a.bulge, &centre, &radius, &a1, &a2);
    for (double v : {centre[0], centre[1], radius, a1, a2})
      if (!std::isfinite(v)) return true;
  }
  return false;
}

bool BulgeArcNotFinite(const std::vector<vorhost::Entity>& records) {
  for (size_t i = 0; i < records.size(); i++) {
    std::vector<Vertex> vs;
    if (records[i].type == "POLYLINE") {
      for (size_t j = i + 1; j < records.size() && records[j].type == "VERTEX"; j++)
        vs.push_back({records[j].Point(10), records[j].Real(42)});
    } else if (records[i].type == "LWPOLYLINE") {
      for (const vorhost::Group& g : records[i].groups) {
        if (auto* p = std::get_if<vorhost::Point3>(&g.value); p && g.code == 10) vs.push_back({*p, 0});
        if (auto* b = std::get_if<double>(&g.value); b && g.code == 42 && !vs.empty()) vs.back().bulge = *b;
      }
    }
    if (BulgeArcNotFinite(vs)) return true;
  }
  return false;
}

// The known fault bulge-arc-not-finite (tests/fuzz/known-faults), which
// the drawing's box, its SVG and its save all reach.
bool StepAround(const vorhost::Drawing& drawing) {
  if (!vorfuzz::Skipping("bulge-arc-not-finite")) return false;
  if (BulgeArcNotFinite(drawing.entities())) return true;
  for (const vorhost::BlockRecord& b : drawing.tables().blocks().records())
    if (BulgeArcNotFinite(b.entities)) return true;
  return false;
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
  if (StepAround(drawing)) return 0;
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
