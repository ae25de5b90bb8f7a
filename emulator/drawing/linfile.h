// linfile.h - reading and writing linetype definition files (.LIN).
#ifndef VORHOST_DRAWING_LINFILE_H
#define VORHOST_DRAWING_LINFILE_H

#include <string>
#include <string_view>
#include <vector>

#include "emulator/drawing/tables.h"

namespace vorhost {

// Parses the definitions of a .LIN file, given as its Big5 bytes.
//
// The file is lines ended by LF or CR LF; a 0x1A byte ends it. Blank lines
// and lines starting with ';' are skipped, and spaces and tabs around items
// are ignored. Each definition is two lines:
//
//   *NAME[,description]
//   A,element,element,...
//
// The name is upper-cased (ASCII letters only, so Big5 characters are kept
// whole) and may hold anything but ','; it must not be empty or longer than
// 255 bytes. The pattern line must be the next line that is neither blank
// nor a comment, and its alignment must be A (either case).
//
// Elements are numbers (a dash > 0, a gap < 0, a dot 0), or a text
// ["TEXT",STYLE,options] or a shape [NAME,FILE,options] in brackets. The
// quoted text may hold commas, brackets and Big5 characters; \" stands for a
// quote and \\ for a backslash, and a Big5 trail byte 0x5C escapes nothing.
// Options are S= scale, R= rotation relative to the line, A= absolute
// rotation, X= and Y= offsets, in any order and case; a rotation may end in
// D (degrees, the default), R (radians) or G (grads) and is stored in
// degrees. When an option is given twice the last one counts, and R= and A=
// replace each other.
//
// A text or shape becomes an element of its own, of length 0 and kind
// kText or kShape, in its place in the sequence: it is drawn where the
// element before it ends, and it takes no length of the pattern. Consumers
// must tell it from a dot by its kind. A pattern needs at least one number.
//
// A name defined twice in the file keeps its first position and the later
// definition, as a table's Put does.
//
// On success *out is replaced by the definitions in file order. On the
// first fault (a header without a pattern line, a pattern line without a
// header, a bad number, an unclosed bracket or quote, an unknown option...)
// returns false with *err (when err is not null) as "file:line: message",
// and leaves *out untouched. Any input, binary bytes included, ends in one
// of the two.
bool ParseLinetypes(std::string_view contents, std::string_view file_name,
                    std::vector<LinetypeRecord>* out, std::string* err);

// The two lines of the record's definition, each ended by CR LF, which
// ParseLinetypes reads back to the same record. Numbers are written in their
// shortest exact form (".5", "-.25"). The record must be one a .LIN file can
// hold: at least one element, and no line breaks in its strings.
std::string FormatLinetype(const LinetypeRecord& record);

}  // namespace vorhost

#endif
