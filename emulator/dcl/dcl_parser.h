// dcl_parser.h - the syntax tree of one dialog definition file, and its parser.
#ifndef VORHOST_DCL_DCL_PARSER_H
#define VORHOST_DCL_DCL_PARSER_H

#include <string>
#include <string_view>
#include <vector>

#include "emulator/dcl/dcl_lexer.h"
#include "emulator/dcl/dcl_tree.h"

namespace vorhost::dcl {

// A name of a tile type where it is written.
struct TypeRef {
  std::string name;
  Place place;
};

struct AttrNode {
  std::string name;
  AttrValue value;
  Place place;
};

// A tile as written, before any name is looked up: an instance
// ": TYPE { body }", a reference "NAME;", or a definition's part after its
// name.
struct TileNode {
  std::vector<TypeRef> types;   // one, except in a definition "N : A : B"
  bool reference = false;       // written "NAME;", without a body
  std::vector<AttrNode> attrs;  // in source order
  std::vector<TileNode> children;
  Place place() const { return types.front().place; }
};

// "NAME : TYPE [: TYPE ...] { body }" at the top level of a file.
struct Definition {
  std::string name;
  Place place;
  TileNode tile;
};

struct Include {
  std::string name;  // as written in the directive
  Place place;
};

struct ParsedFile {
  std::vector<Include> includes;
  std::vector<Definition> definitions;  // in source order
};

// Parses a dialog definition file, given as its bytes, named file in
// messages. The grammar:
//
//   file       := { "@include" STRING | definition }
//   definition := NAME ":" NAME { ":" NAME } body
//   body       := "{" { NAME "=" value ";" | NAME ";" | ":" NAME body } "}"
//   value      := STRING | INTEGER | REAL | NAME
//
// A value true or false becomes a boolean, any other name a reserved word.
// Tiles may nest kMaxDepth deep. The parser knows no tile kinds: names are
// looked up by the Library.
//
// On success replaces *out and returns true. On the first fault returns
// false with *err as "file:line: message", the line and a caret, leaving
// *out untouched. Any input ends in one of the two.
bool Parse(std::string_view file, std::string_view text, ParsedFile* out, std::string* err);

}  // namespace vorhost::dcl

#endif
