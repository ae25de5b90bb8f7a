// dcl_parser.cpp - the recursive-descent parser of dialog definition files.
#include "emulator/dcl/dcl_parser.h"

#include <utility>

namespace vorhost::dcl {
namespace {

using Type = Token::Type;

class Parser {
 public:
  Parser(std::string_view file, std::string_view text) : lexer_(file, text) {}

  bool ParseFile(ParsedFile* out, std::string* err);

 private:
  bool ParseInclude(ParsedFile* out, std::string* err);
  bool ParseDefinition(ParsedFile* out, std::string* err);
  bool ParseBody(TileNode* tile, int depth, std::string* err);
  bool ParseNamedItem(TileNode* tile, int depth, std::string* err);
  bool ParseInstance(TileNode* parent, int depth, std::string* err);
  bool ParseValue(AttrNode* attr, std::string* err);

  // Reads the next token into token_.
  bool Advance(std::string* err) { return lexer_.Next(&token_, err); }
  // The fault "expected <what>, got <the current token>".
  bool Expected(const std::string& what, std::string* err) const {
    return lexer_.Error("expected " + what + ", got " + Describe(token_), token_.place, err);
  }
  // Steps over a token of the given type, or reports Expected(what).
  bool Expect(Type type, const std::string& what, std::string* err) {
    if (token_.type != type) return Expected(what, err);
    return Advance(err);
  }
  bool CheckDepth(int depth, Place place, std::string* err) const {
    if (depth <= kMaxDepth) return true;
    return lexer_.Error("tiles nested more than " + std::to_string(kMaxDepth) + " deep", place,
                        err);
  }

  Lexer lexer_;
  Token token_;
};

bool Parser::ParseFile(ParsedFile* out, std::string* err) {
  if (!Advance(err)) return false;
  while (token_.type != Type::kEnd) {
    bool ok = false;
    switch (token_.type) {
      case Type::kInclude: ok = ParseInclude(out, err); break;
      case Type::kName: ok = ParseDefinition(out, err); break;
      default: return Expected("a definition or @include", err);
    }
    if (!ok) return false;
  }
  return true;
}

bool Parser::ParseInclude(ParsedFile* out, std::string* err) {
  if (!Advance(err)) return false;
  if (token_.type != Type::kString) return Expected("a file name in quotes after @include", err);
  out->includes.push_back({token_.text, token_.place});
  return Advance(err);
}

bool Parser::ParseDefinition(ParsedFile* out, std::string* err) {
  Definition def;
  def.name = token_.text;
  def.place = token_.place;
  if (!Advance(err)) return false;
  if (!Expect(Type::kColon, "':' after '" + def.name + "'", err)) return false;
  while (true) {
    if (token_.type != Type::kName) return Expected("a tile type after ':'", err);
    def.tile.types.push_back({token_.text, token_.place});
    if (!Advance(err)) return false;
    if (token_.type != Type::kColon) break;
    if (!Advance(err)) return false;
  }
  if (!ParseBody(&def.tile, 1, err)) return false;
  out->definitions.push_back(std::move(def));
  return true;
}

bool Parser::ParseBody(TileNode* tile, int depth, std::string* err) {
  if (!CheckDepth(depth, tile->place(), err)) return false;
  if (!Expect(Type::kLeftBrace, "'{'", err)) return false;
  while (token_.type != Type::kRightBrace) {
    bool ok = false;
    switch (token_.type) {
      case Type::kName: ok = ParseNamedItem(tile, depth, err); break;
      case Type::kColon: ok = ParseInstance(tile, depth, err); break;
      default: return Expected("an attribute, a tile or '}'", err);
    }
    if (!ok) return false;
  }
  return Advance(err);
}

// "name = value;" or "name;", told apart by the token after the name.
bool Parser::ParseNamedItem(TileNode* tile, int depth, std::string* err) {
  std::string name = token_.text;
  Place place = token_.place;
  if (!Advance(err)) return false;
  if (token_.type == Type::kSemicolon) {
    if (!CheckDepth(depth + 1, place, err)) return false;
    TileNode child;
    child.types.push_back({std::move(name), place});
    child.reference = true;
    tile->children.push_back(std::move(child));
    return Advance(err);
  }
  if (token_.type != Type::kEquals) return Expected("'=' or ';' after '" + name + "'", err);
  if (!Advance(err)) return false;
  AttrNode attr{std::move(name), AttrValue(), place};
  if (!ParseValue(&attr, err)) return false;
  if (!Expect(Type::kSemicolon, "';' after the value of " + attr.name, err)) return false;
  tile->attrs.push_back(std::move(attr));
  return true;
}

bool Parser::ParseInstance(TileNode* parent, int depth, std::string* err) {
  if (!Advance(err)) return false;  // ':'
  if (token_.type != Type::kName) return Expected("a tile type after ':'", err);
  TileNode child;
  child.types.push_back({token_.text, token_.place});
  if (!Advance(err)) return false;
  if (!ParseBody(&child, depth + 1, err)) return false;
  parent->children.push_back(std::move(child));
  return true;
}

bool Parser::ParseValue(AttrNode* attr, std::string* err) {
  switch (token_.type) {
    case Type::kString: attr->value = AttrValue::Text(token_.text); break;
    case Type::kInteger: attr->value = AttrValue::Integer(token_.integer); break;
    case Type::kReal: attr->value = AttrValue::Real(token_.real); break;
    case Type::kName:
      if (token_.text == "true" || token_.text == "false") {
        attr->value = AttrValue::Boolean(token_.text == "true");
      } else {
        attr->value = AttrValue::Reserved(token_.text);
      }
      break;
    default: return Expected("a value for " + attr->name, err);
  }
  return Advance(err);
}

}  // namespace

bool Parse(std::string_view file, std::string_view text, ParsedFile* out, std::string* err) {
  ParsedFile parsed;
  Parser parser(file, text);
  if (!parser.ParseFile(&parsed, err)) return false;
  *out = std::move(parsed);
  return true;
}

}  // namespace vorhost::dcl
