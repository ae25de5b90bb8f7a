// svg.h - a picture of model space as a standalone SVG file.
#ifndef VORHOST_IO_SVG_H
#define VORHOST_IO_SVG_H

#include <string>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"

namespace vorhost {

// Draws model space on a white page, y up, framed by what is drawn plus a
// margin (the limits for an empty drawing): lines, circles, arcs, old- and
// new-style polylines with their widths, texts and attributes in UTF-8
// (vertical styles as a downward column), block references with their
// blocks and attributes; colours from the colour index (7 as black),
// linetypes as dash patterns scaled by LTSCALE, with the texts of complex
// linetypes along straight lines; hidden layers left out.
// Other records are not drawn. Returns false with *err ("Cannot save PATH:
// reason.") when the file cannot be written; the file is replaced whole, as
// SaveDxf does.
bool SaveSvg(const Drawing& drawing, const SysVarTable& vars, const std::string& linux_path,
             std::string* err);

// The same picture as text.
std::string DrawingSvg(const Drawing& drawing, const SysVarTable& vars);

}  // namespace vorhost

#endif
