// linfile_fuzz.cpp - linetype files (.LIN) as LINETYPE loads them: the
// reader, the writer reading back what it wrote, and a line drawn in each
// linetype read, pictured as SVG (dash patterns along the line, the texts
// of complex linetypes) and saved as DXF.
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"
#include "emulator/drawing/linfile.h"
#include "emulator/io/dxf.h"
#include "emulator/io/svg.h"
#include "support/fuzz_env.h"

namespace {

// Numbers agree when they are the same double (NaN included).
bool Same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0 || a == b; }

bool SameElement(const vorhost::LinetypeElement& a, const vorhost::LinetypeElement& b) {
  return Same(a.length, b.length) && a.kind == b.kind && a.text == b.text && a.source == b.source &&
         Same(a.scale, b.scale) && Same(a.rotation, b.rotation) && Same(a.x, b.x) && Same(a.y, b.y) &&
         a.absolute_rotation == b.absolute_rotation;
}

bool SameRecord(const vorhost::LinetypeRecord& a, const vorhost::LinetypeRecord& b) {
  if (a.name != b.name || a.description != b.description || a.elements.size() != b.elements.size())
    return false;
  for (size_t k = 0; k < a.elements.size(); k++)
    if (!SameElement(a.elements[k], b.elements[k])) return false;
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<vorhost::LinetypeRecord> records;
  std::string err;
  if (!vorhost::ParseLinetypes(vorfuzz::Bytes(data, size), "FUZZ.LIN", &records, &err)) {
    if (err.empty()) vorfuzz::Broken("a refused file without a message");
    return 0;
  }

  vorhost::Drawing drawing;
  for (const vorhost::LinetypeRecord& record : records) {
    std::string written = vorhost::FormatLinetype(record);
    std::vector<vorhost::LinetypeRecord> again;
    if (!vorhost::ParseLinetypes(written, "WRITTEN.LIN", &again, &err))
      vorfuzz::Broken("a written definition does not read back: " + err + "\n" + written);
    if (again.size() != 1 || !SameRecord(again[0], record))
      vorfuzz::Broken("a written definition reads back otherwise:\n" + written);
    (void)record.PatternLength();

    drawing.tables().linetypes().Put(record);
    vorhost::Entity line("LINE");
    line.linetype = record.name;
    line.Set(10, vorhost::Point3{0, 0, 0});
    line.Set(11, vorhost::Point3{100, 30, 0});
    drawing.Append(line);
  }
  vorhost::SysVarTable vars;
  (void)vorhost::DrawingSvg(drawing, vars);
  std::string text;
  (void)vorhost::DrawingDxf(drawing, vars, &text);
  return 0;
}
