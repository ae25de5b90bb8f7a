// dxf.h - drawings as DXF files: the host saves R12 (AC1009) with code page
// ANSI_950 and opens R12 and newer files. dxf_format.md describes the file.
#ifndef VORHOST_IO_DXF_H
#define VORHOST_IO_DXF_H

#include <string>
#include <string_view>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"

namespace vorhost {

// The DXF file of drawing (tables, blocks, model space without erased
// records) with the header variables of vars, into *text; false (and
// *text untouched) when the drawing holds a number that is not finite,
// which no file may carry. kNotFiniteReason says so to the user.
bool DrawingDxf(const Drawing& drawing, const SysVarTable& vars, std::string* text);
// A fingerprint of DrawingDxf's text, made as the text is written and
// without keeping it (core/text.h); false as DrawingDxf.
bool DrawingDxfFingerprint(const Drawing& drawing, const SysVarTable& vars, uint64_t* fingerprint);
inline constexpr char kNotFiniteReason[] = "the drawing holds a number that is not finite";

// Saves DrawingDxf to linux_path through a FileReplacement, written as it
// is made, so a failed save leaves any old file as it was and no partial
// file behind. Returns false with *err set ("Cannot save NAME: reason.",
// NAME being shown_name, or the path as given when that is empty) when the
// drawing holds a number that is not finite or the file cannot be written;
// the first is said when both hold.
bool SaveDxf(const Drawing& drawing, const SysVarTable& vars, const std::string& linux_path,
             std::string* err, std::string_view shown_name = {});

// Reads linux_path into *drawing, which is replaced by a fresh drawing
// holding the file's tables, blocks and entities (handles kept where they
// are unique), texts converted to Big5. Header variables that vars knows
// are set in *vars (vars may be null). On failure, *drawing and *vars are
// left untouched and *err reads "path:line: message" followed by the
// offending line and a caret, the path being shown_name (the file as the
// user knows it) when given, else linux_path.
bool OpenDxf(const std::string& linux_path, Drawing* drawing, SysVarTable* vars, std::string* err,
             std::string_view shown_name = {});

// OpenDxf of a file's bytes, data; where names the file in messages.
bool ReadDxf(std::string where, std::string data, Drawing* drawing, SysVarTable* vars,
             std::string* err);

}  // namespace vorhost

#endif
