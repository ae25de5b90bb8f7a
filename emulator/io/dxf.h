// dxf.h - drawings as DXF files: the host saves R12 (AC1009) with code page
// ANSI_950 and opens R12 and newer files. dxf_format.md describes the file.
#ifndef VORHOST_IO_DXF_H
#define VORHOST_IO_DXF_H

#include <string>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"

namespace vorhost {

// Writes drawing (tables, blocks, model space without erased records) and
// the header variables of vars to linux_path. The file is written beside
// its destination under a temporary name and renamed over it, so a failed
// save leaves any old file as it was and no partial file behind. Returns
// false with *err set ("path: reason") when the file cannot be written.
bool SaveDxf(const Drawing& drawing, const SysVarTable& vars, const std::string& linux_path,
             std::string* err);

// The bytes SaveDxf writes.
std::string DxfText(const Drawing& drawing, const SysVarTable& vars);

// Reads linux_path into *drawing, which is replaced by a fresh drawing
// holding the file's tables, blocks and entities (handles kept where they
// are unique), texts converted to Big5. Header variables that vars knows
// are set in *vars (vars may be null). On failure, *drawing and *vars are
// left untouched and *err reads "path:line: message" followed by the
// offending line and a caret.
bool OpenDxf(const std::string& linux_path, Drawing* drawing, SysVarTable* vars, std::string* err);

// OpenDxf of a file's bytes, data; where names the file in messages.
bool ReadDxf(std::string where, std::string data, Drawing* drawing, SysVarTable* vars,
             std::string* err);

}  // namespace vorhost

#endif
