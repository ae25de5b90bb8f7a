// registry.cpp - the host's command table: names, what they do, makers.
#include "emulator/commands/registry.h"

#include "emulator/host.h"

namespace vorhost {
namespace {

struct CommandEntry {
  const char* name;
  const char* help;
  std::unique_ptr<Command> (*make)(Host&);
};

const CommandEntry kCommands[] = {
    {"ARC", "an arc through three points, or from its centre", MakeArc},
    {"CHPROP", "change colour, layer, linetype, linetype scale or thickness of objects", MakeChprop},
    {"CIRCLE", "a circle by centre and radius or diameter, or through two or three points", MakeCircle},
    {"ERASE", "erase objects", MakeErase},
    {"INSERT", "insert a block, from the drawing or a drawing file on the search path", MakeInsert},
    {"LAYER", "make, set and change layers", MakeLayer},
    {"LINE", "line segments", MakeLine},
    {"LINETYPE", "load linetypes from a file, set the current one", MakeLinetype},
    {"LTSCALE", "the scale of all linetypes", MakeLtscale},
    {"PLINE", "a polyline of lines and arcs, with widths", MakePline},
    {"SAVEAS", "save the drawing as a DXF file", MakeSaveAs},
    {"STYLE", "make or change a text style", MakeStyle},
    {"TEXT", "a line of text", MakeText},
};

}  // namespace

std::unique_ptr<Command> MakeCommand(Host& host, std::string_view name) {
  for (const CommandEntry& c : kCommands)
    if (name == c.name) return c.make(host);
  if (name == "DTEXT") return MakeText(host);
  if (name == "DXFOUT" || name == "SAVE") return MakeSaveAs(host);
  return MakeSysvarCommand(host, name);
}

std::string CommandSummary() {
  std::string out;
  for (const CommandEntry& c : kCommands) out += std::string(c.name) + "  " + c.help + "\n";
  out += "NEW  a new, empty drawing\n";
  out += "(any system variable)  show or set it\n";
  return out;
}

}  // namespace vorhost
