// dump.h - a drawing as stable text, for tests that compare drawings.
#ifndef VORHOST_IO_DUMP_H
#define VORHOST_IO_DUMP_H

#include <string>

#include "emulator/drawing/drawing.h"

namespace vorhost {

// The drawing's tables (LTYPE, LAYER, STYLE, BLOCK, each sorted by name)
// and then its entities in drawing order, one line per record. A record
// line is its type, layer, linetype and colour, then its groups as
// code=value: reals with up to six decimals and no trailing zeros, points
// as (x,y,z), texts in UTF-8 within quotes with control bytes escaped.
// Sub-entities and a block's records are indented under their owner.
// Handles, entity names and erased records are left out, so two drawings
// with the same content dump the same whatever their history.
std::string DumpDrawing(const Drawing& drawing);

}  // namespace vorhost

#endif
