// dcl_test.cpp - the dialog language: tokens, faults, inheritance, includes, base tiles, limits.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "emulator/dcl/dcl_lexer.h"
#include "emulator/dcl/dcl_parser.h"
#include "emulator/dcl/dcl_tree.h"
#include "support/show_bytes.h"
#include "support/files.h"

namespace vorhost::dcl {
namespace {

using vorhost::testing::Show;

std::string FirstLine(const std::string& s) { return s.substr(0, s.find('\n')); }

std::string ReadResource(const std::string& name) {
  return testing::FileBytes(std::string(VORHOST_RESOURCES) + "/" + name);
}

// The tokens of text, one word each (strings shown quoted, numbers with an i
// or r before them), or "error: " and the first line of the fault.
std::string Tokens(const std::string& text, int* last_line = nullptr) {
  Lexer lexer("t.dcl", text);
  std::string out;
  Token token;
  std::string err;
  while (true) {
    if (!lexer.Next(&token, &err)) return "error: " + FirstLine(err);
    if (token.type == Token::Type::kEnd) break;
    if (last_line) *last_line = token.place.line;
    if (!out.empty()) out += ' ';
    switch (token.type) {
      case Token::Type::kName: out += token.text; break;
      case Token::Type::kString: out += "\"" + Show(token.text) + "\""; break;
      case Token::Type::kInteger: out += "i" + std::to_string(token.integer); break;
      case Token::Type::kReal: out += "r" + AttrValue::Real(token.real).ToString(); break;
      case Token::Type::kInclude: out += "@include"; break;
      default: out += Describe(token).substr(1, 1); break;
    }
  }
  return out;
}

TEST(DclLexerTest, Tokens) {
  struct Case {
    std::string text;
    std::string tokens;
  };
  const Case kCases[] = {
      {"ok_cancel : column { key = \"accept\"; }", "ok_cancel : column { key = \"accept\" ; }"},
      {"a=-1 b=.5 c=12.75 d=0 e=-.5 f=3.", "a = i-1 b = r0.5 c = r12.75 d = i0 e = r-0.5 f = r3"},
      {"x = true; y = false; z = centered;", "x = true ; y = false ; z = centered ;"},
      {"\"q\\\"u\\\\o\\nt\\te\"", "\"q\"u\\o\\x0At\\x09e\""},
      {"@include \"lib.dcl\"", "@include \"lib.dcl\""},
      {"a // b { c\n/* d\n e */ f/**/g", "a f g"},
      {"a /* // */ b", "a b"},
      {"", ""},
      {" \t\r\n ", ""},
      {"a\x1A b } {", "a"},  // DOS end of file
      // Big5 characters whose trail byte is a backslash: 功 A5 5C, 許 B3 5C.
      {"\"\xA5\x5C\" ;", "\"\\xA5\\\" ;"},
      {"\"\xA5\x5C\xB3\x5C\"", "\"\\xA5\\\\xB3\\\""},
      {"\"\xA5\x5C\\\\\"", "\"\\xA5\\\\\""},  // 功 then an escaped backslash
      {"\"\xA5\"", "\"\\xA5\""},              // a lead byte before the quote is a byte alone
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(c.tokens, Tokens(c.text)) << Show(c.text);
  }
  int line = 0;
  EXPECT_EQ("a b", Tokens("a // x\n/* 1\n2\n3 */\n\nb", &line));
  EXPECT_EQ(6, line);
}

TEST(DclLexerTest, Errors) {
  struct Case {
    std::string text;
    std::string error;
  };
  const Case kCases[] = {
      {"\"abc", "t.dcl:1: unterminated string"},
      {"a\n\"ab\ncd\"", "t.dcl:2: unterminated string"},
      {"\"ab\\", "t.dcl:1: unterminated string"},
      {"\"ab\\q\"", "t.dcl:1: unknown escape: backslash before 'q'"},
      {"\"\xA5\x5C\\q\"", "t.dcl:1: unknown escape: backslash before 'q'"},  // after 功
      {"a\n/* b\n", "t.dcl:2: unterminated comment"},
      {"a # b", "t.dcl:1: unexpected '#'"},
      {"\xA5\x40", "t.dcl:1: unexpected byte 0xA5"},
      {std::string("a\0b", 3), "t.dcl:1: unexpected byte 0x00"},
      {"12ab", "t.dcl:1: bad number 12ab"},
      {"1.2.3", "t.dcl:1: bad number 1.2.3"},
      {"99999999999", "t.dcl:1: number out of range: 99999999999"},
      {"- 1", "t.dcl:1: unexpected '-'"},
      {"@import \"x\"", "t.dcl:1: unknown directive @import"},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ("error: " + c.error, Tokens(c.text)) << Show(c.text);
  }
}

// The whole report: message, the line, a caret under the place (tabs kept
// so that it lines up), and a long line clipped at a Big5 boundary.
TEST(DclLexerTest, ReportShowsLineAndCaret) {
  std::string err;
  ReportError("m.dcl", "a\n\t: buton { }\nb", {2, 5}, "unknown tile type buton", &err);
  EXPECT_EQ("m.dcl:2: unknown tile type buton\n\t: buton { }\n\t  ^ near here", err);

  ReportError("m.dcl", "x\r\n", {2, 3}, "expected '{', got end of file", &err);
  EXPECT_EQ("m.dcl:2: expected '{', got end of file\n\n^ near here", err);

  std::string big5_run;
  for (int i = 0; i < 30; ++i) big5_run += "\xA5\x5C";
  std::string line = "d : dialog {  label = \"" + big5_run + "\"; : nope { } }";
  size_t nope = line.find("nope");
  ReportError("m.dcl", line, {1, nope}, "unknown tile type nope", &err);
  std::istringstream lines(err);
  std::string message, shown, caret;
  std::getline(lines, message);
  std::getline(lines, shown);
  std::getline(lines, caret);
  EXPECT_EQ("...\xA5\x5C", shown.substr(0, 5)) << Show(shown);  // not cut inside 功
  EXPECT_EQ(shown.find("nope"), caret.find('^'));
}

TEST(DclParserTest, Errors) {
  struct Case {
    std::string text;
    std::string error;
  };
  const Case kCases[] = {
      {"d : dialog { label = ; }", "t.dcl:1: expected a value for label, got ';'"},
      {"d : dialog {\n label = \"x\"\n}",
       "t.dcl:3: expected ';' after the value of label, got '}'"},
      {"d dialog { }", "t.dcl:1: expected ':' after 'd', got 'dialog'"},
      {"d : { }", "t.dcl:1: expected a tile type after ':', got '{'"},
      {"d : dialog\n\n", "t.dcl:1: expected '{', got end of file"},
      {"d : dialog {\n : button {\n",
       "t.dcl:2: expected an attribute, a tile or '}', got end of file"},
      {"d : dialog { : { } }", "t.dcl:1: expected a tile type after ':', got '{'"},
      {"d : dialog { : button; }", "t.dcl:1: expected '{', got ';'"},
      {"d : dialog { x y; }", "t.dcl:1: expected '=' or ';' after 'x', got 'y'"},
      {"d : dialog { ; }", "t.dcl:1: expected an attribute, a tile or '}', got ';'"},
      {"d : dialog { } }", "t.dcl:1: expected a definition or @include, got '}'"},
      {"d : dialog { } extra", "t.dcl:1: expected ':' after 'extra', got end of file"},
      {"= 3;", "t.dcl:1: expected a definition or @include, got '='"},
      {"@include lib", "t.dcl:1: expected a file name in quotes after @include, got 'lib'"},
      {"d : dialog { key = \"a; }", "t.dcl:1: unterminated string"},
  };
  for (const Case& c : kCases) {
    ParsedFile parsed;
    std::string err;
    EXPECT_FALSE(Parse("t.dcl", c.text, &parsed, &err)) << c.text;
    EXPECT_EQ(c.error, FirstLine(err)) << c.text;
  }
}

// Serves files from a map, as the host's search path would, recording what
// it was asked for. BASE.DCL is the host's own.
class DclTest : public ::testing::Test {
 protected:
  DclTest() { files_[kBaseFileName] = ReadResource("BASE.DCL"); }

  Loader MakeLoader() {
    return [this](const std::string& name, std::string* contents, std::string* where) {
      asked_.push_back(name);
      auto it = files_.find(name);
      if (it == files_.end()) return false;
      *contents = it->second;
      *where = name;
      return true;
    };
  }

  bool Load(const std::string& text, std::string* err) {
    files_["main.dcl"] = text;
    return library_.Load("main.dcl", MakeLoader(), err);
  }

  // Loads text, which must succeed, and gives the tree of its dialog name.
  Tile LoadDialog(const std::string& text, const std::string& name = "d") {
    std::string err;
    EXPECT_TRUE(Load(text, &err)) << err;
    Tile tile;
    EXPECT_TRUE(library_.Dialog(name, &tile, &err)) << err;
    return tile;
  }

  std::map<std::string, std::string> files_;
  std::vector<std::string> asked_;
  Library library_;
};

// The tile of key in root; a failure and an empty tile when there is none.
const Tile& ByKey(const Tile& root, std::string_view key) {
  static const Tile kNone;
  const Tile* tile = root.Find(key);
  if (tile) return *tile;
  ADD_FAILURE() << "no tile " << key;
  return kNone;
}

// The kinds of a tree and the keys of its tiles: "dialog(row(button:a))".
std::string Shape(const Tile& tile) {
  std::string out = KindName(tile.kind);
  if (!tile.Key().empty()) out += ":" + tile.Key();
  if (tile.children.empty()) return out;
  out += "(";
  for (size_t i = 0; i < tile.children.size(); ++i) {
    out += (i ? " " : "") + Shape(tile.children[i]);
  }
  return out + ")";
}

TEST_F(DclTest, Errors) {
  struct Case {
    std::string text;
    std::string error;
  };
  const Case kCases[] = {
      {"d : dialog { : buton { } }", "main.dcl:1: unknown tile type buton"},
      {"p : row { : nothing { } }", "main.dcl:1: unknown tile type nothing"},  // never used
      {"d : dialog {\n : row {\n  : radio_button { key = \"a\"; }\n }\n}",
       "main.dcl:3: radio_button outside a radio cluster"},
      {"rb : radio_button { }\nd : dialog { : boxed_row { rb; } }",
       "main.dcl:2: radio_button outside a radio cluster"},
      {"a : b { }\nb : a { }", "main.dcl:2: a refers to itself: a -> b -> a"},
      {"a : a { }", "main.dcl:1: a refers to itself: a -> a"},
      {"a : row { b; }\nb : column { : a { } }", "main.dcl:2: a refers to itself: a -> b -> a"},
      {"d : dialog { : ok_cancel { label = \"x\"; } }",
       "main.dcl:1: ok_cancel holds tiles of its own and cannot be changed; use it as "
       "\"ok_cancel;\""},
      {"x : row : ok_cancel { }",
       "main.dcl:1: ok_cancel holds tiles of its own and cannot be changed; use it as "
       "\"ok_cancel;\""},
      {"d : dialog {\n : button { : text { } } }", "main.dcl:2: button cannot hold tiles"},
      {"b : edit12_box { }\nd : dialog { : b { spacer; } }",
       "main.dcl:2: edit_box cannot hold tiles"},
      {"e : dialog { }\nd : dialog { e; }", "main.dcl:2: a dialog cannot be placed inside a tile"},
      {"button : text { }", "main.dcl:1: cannot redefine the built-in tile button"},
      {"d : dialog { }\n\nd : dialog { }", "main.dcl:3: d is already defined at line 1"},
      {"@include \"nope.dcl\"\nd : dialog { }",
       "main.dcl:1: cannot find included file \"nope.dcl\""},
  };
  for (const Case& c : kCases) {
    std::string err;
    EXPECT_FALSE(Load(c.text, &err)) << c.text;
    EXPECT_EQ(c.error, FirstLine(err)) << c.text;
  }
}

TEST_F(DclTest, MissingDialogAndFiles) {
  std::string err;
  ASSERT_TRUE(Load("d : dialog { ok_only; }\nd2 : d { }\np : row { }", &err)) << err;
  EXPECT_EQ((std::vector<std::string>{"d", "d2"}), library_.DialogNames());
  Tile tile;
  EXPECT_FALSE(library_.Dialog("D", &tile, &err));  // names keep their case
  EXPECT_EQ("main.dcl: no dialog named D", err);
  EXPECT_FALSE(library_.Dialog("p", &tile, &err));  // a prototype is no dialog

  EXPECT_FALSE(Load("d : dialog { : nope { } }", &err));  // keeps what it had
  EXPECT_EQ((std::vector<std::string>{"d", "d2"}), library_.DialogNames());
  EXPECT_TRUE(library_.Dialog("d", &tile, &err));

  EXPECT_FALSE(library_.Load("none.dcl", MakeLoader(), &err));
  EXPECT_EQ("cannot find dialog file none.dcl", err);
  files_.erase(kBaseFileName);
  EXPECT_FALSE(Load("d : dialog { }", &err));
  EXPECT_EQ("cannot find the base definitions BASE.DCL", err);
}

TEST_F(DclTest, AttributeValues) {
  Tile d = LoadDialog(
      "d : dialog { a = 1; b = -1; c = .5; e = 12.75; f = true; g = false;\n"
      "  h = centered; i = \"x\\ty\"; j = \"\xA5\x5C\xB3\x5C\"; a = 2; }");
  struct Case {
    const char* name;
    std::string text;
    bool is_number;
  };
  const Case kCases[] = {
      {"a", "2", true},  // the later of two assignments
      {"b", "-1", true},     {"c", "0.5", true},
      {"e", "12.75", true},  {"f", "true", false},
      {"g", "false", false}, {"h", "centered", false},
      {"i", "x\ty", false},  {"j", "\xA5\x5C\xB3\x5C", false},
  };
  for (const Case& c : kCases) {
    ASSERT_NE(nullptr, d.Attr(c.name)) << c.name;
    EXPECT_EQ(c.text, d.AttrString(c.name)) << c.name;
    EXPECT_EQ(c.is_number, d.Attr(c.name)->is_number()) << c.name;
  }
  EXPECT_TRUE(d.Attr("a")->is_integer());
  EXPECT_DOUBLE_EQ(12.75, d.Attr("e")->number());
  EXPECT_TRUE(d.IsTrue("f"));
  EXPECT_FALSE(d.IsTrue("g"));
  EXPECT_FALSE(d.IsTrue("h"));
  EXPECT_TRUE(d.Attr("h")->is_reserved());
  EXPECT_TRUE(d.Attr("i")->is_text());
  EXPECT_EQ(nullptr, d.Attr("missing"));
  EXPECT_EQ("", d.AttrString("missing"));
}

TEST_F(DclTest, PrototypesPassOnAttributes) {
  Tile d = LoadDialog(
      "my_button : button { width = 10; label = \"P\"; }\n"
      "wide : my_button { width = 20; }\n"
      "tall : edit_box { width = 99; height = 3; }\n"
      "left : wide : tall { edit_width = 5; }\n"
      "group : boxed_column { label = \"Group\"; }\n"
      "d : dialog {\n"
      "  : wide { key = \"w\"; label = \"W\"; }\n"
      "  : wide { key = \"w2\"; }\n"
      "  : group { : my_button { key = \"inner\"; } }\n"
      "  : left { key = \"l\"; }\n"
      "  spacer_1;\n"
      "}\n");
  EXPECT_EQ("dialog(button:w button:w2 boxed_column(button:inner) button:l spacer)", Shape(d));
  const Tile& w = ByKey(d, "w");
  EXPECT_EQ("wide", w.type);
  EXPECT_EQ("20", w.AttrString("width"));
  EXPECT_EQ("W", w.AttrString("label"));
  EXPECT_EQ("main.dcl", w.file);
  EXPECT_EQ(7, w.line);
  EXPECT_EQ("P", ByKey(d, "w2").AttrString("label"));  // the prototype is unchanged
  EXPECT_EQ("Group", d.children.at(2).AttrString("label"));
  const Tile& l = ByKey(d, "l");
  EXPECT_EQ(TileKind::kButton, l.kind);    // the leftmost type's kind
  EXPECT_EQ("20", l.AttrString("width"));  // the leftmost type's value
  EXPECT_EQ("3", l.AttrString("height"));
  EXPECT_EQ("5", l.AttrString("edit_width"));
  EXPECT_EQ("spacer_1", d.children.at(4).type);
  EXPECT_EQ("1", d.children.at(4).AttrString("width"));
  EXPECT_EQ("d", d.type);
  EXPECT_EQ(6, d.line);
}

TEST_F(DclTest, SubassembliesPassOnChildren) {
  Tile d = LoadDialog(
      "pair : row {\n"
      "  label = \"pair\";\n"
      "  : button { key = \"x\"; }\n"
      "  : radio_column { : radio_button { key = \"r\"; } }\n"
      "}\n"
      "same : pair { }\n"
      "d : dialog {\n"
      "  pair;\n"
      "  : same { }\n"
      "}\n");
  EXPECT_EQ(
      "dialog(row(button:x radio_column(radio_button:r)) row(button:x "
      "radio_column(radio_button:r)))",
      Shape(d));
  EXPECT_EQ("pair", d.children.at(0).type);
  EXPECT_EQ(8, d.children.at(0).line);  // where it is placed
  EXPECT_EQ("pair", d.children.at(0).AttrString("label"));
  EXPECT_EQ("same", d.children.at(1).type);
  EXPECT_EQ(9, d.children.at(1).line);
  EXPECT_EQ(3, d.children.at(1).children.at(0).line);  // where the prototype defines it
}

TEST_F(DclTest, BaseDefinitions) {
  struct Case {
    std::string tile;
    std::string shape;
  };
  const Case kCases[] = {
      {"ok_only", "column(button:accept)"},
      {"ok_cancel", "column(row(button:accept button:cancel))"},
      {"ok_cancel_help", "column(row(button:accept button:cancel button:help))"},
      {"ok_cancel_help_info", "column(row(button:accept button:cancel button:help button:info))"},
      {"ok_cancel_err", "column(row(button:accept button:cancel) text:error)"},
      {"ok_cancel_help_errtile", "column(row(button:accept button:cancel button:help) text:error)"},
      {"errtile", "text:error"},
      {": default_button { key = \"k\"; }", "button:k"},
  };
  for (const Case& c : kCases) {
    std::string use = c.tile[0] == ':' ? c.tile : c.tile + ";";
    Tile d = LoadDialog("d : dialog { " + use + " }");
    EXPECT_EQ("dialog(" + c.shape + ")", Shape(d)) << c.tile;
  }

  Tile d = LoadDialog("d : dialog { ok_cancel_err; : retirement_button { key = \"r\"; } }");
  const Tile& accept = ByKey(d, "accept");
  const Tile& cancel = ByKey(d, "cancel");
  EXPECT_TRUE(accept.IsTrue("is_default"));
  EXPECT_FALSE(accept.IsTrue("is_cancel"));
  EXPECT_TRUE(cancel.IsTrue("is_cancel"));
  EXPECT_FALSE(cancel.IsTrue("is_default"));
  EXPECT_EQ("BASE.DCL", accept.file);
  EXPECT_EQ("35", ByKey(d, "error").AttrString("width"));
  EXPECT_EQ("8", ByKey(d, "r").AttrString("width"));

  // OK alone answers Esc as well.
  d = LoadDialog("d : dialog { ok_only; }");
  EXPECT_TRUE(ByKey(d, "accept").IsTrue("is_default"));
  EXPECT_TRUE(ByKey(d, "accept").IsTrue("is_cancel"));
  EXPECT_TRUE(LoadDialog("d : dialog { default_button; }").children.at(0).IsTrue("is_default"));
}

TEST_F(DclTest, Includes) {
  files_["lib.dcl"] =
      "@include \"main.dcl\"\n"  // a cycle, read once
      "lib_button : button { label = \"Lib\"; width = 5; }\n"
      "shared : text { label = \"from lib\"; }\n"
      "lib_dialog : dialog { lib_button; }\n";
  Tile d = LoadDialog(
      "d : dialog { : lib_button { key = \"b\"; } : shared { key = \"s\"; } }\n"
      "@include \"lib.dcl\"\n"
      "shared : text { label = \"from main\"; }\n");
  EXPECT_EQ("Lib", ByKey(d, "b").AttrString("label"));
  EXPECT_EQ("from main", ByKey(d, "s").AttrString("label"));  // own beats included
  EXPECT_EQ((std::vector<std::string>{"lib_dialog", "d"}), library_.DialogNames());
  EXPECT_EQ((std::vector<std::string>{"BASE.DCL", "main.dcl", "lib.dcl", "main.dcl"}), asked_);

  // A file may redefine a base prototype; the base's subassemblies then use it.
  files_["lib.dcl"] = "ok_button : button { key = \"accept\"; label = \"Yes\"; }\n";
  d = LoadDialog("@include \"lib.dcl\"\nd : dialog { ok_cancel; }");
  EXPECT_EQ("Yes", ByKey(d, "accept").AttrString("label"));

  // A fault in an included file is reported in that file.
  files_["lib.dcl"] = "p : row {\n  : nothing { }\n}\n";
  std::string err;
  EXPECT_FALSE(Load("@include \"lib.dcl\"\nd : dialog { p; }", &err));
  EXPECT_EQ("lib.dcl:2: unknown tile type nothing", FirstLine(err));
  files_["lib.dcl"] = "p : row {";
  EXPECT_FALSE(Load("@include \"lib.dcl\"\nd : dialog { p; }", &err));
  EXPECT_EQ("lib.dcl:1: expected an attribute, a tile or '}', got end of file", FirstLine(err));
}

// Tiles of n rows nested in a dialog: ": row { : row { ... } }".
std::string NestedRows(int n) {
  std::string text = "d : dialog {";
  for (int i = 0; i < n; ++i) text += " : row {";
  return text + std::string(n + 1, '}');
}

// t0 of three tiles, then levels that each hold two of the level before.
std::string DoublingLevels(int levels) {
  std::string text = "t0 : row { : button { } : button { } }\n";
  for (int i = 1; i <= levels; ++i) {
    std::string before = "t" + std::to_string(i - 1) + "; ";
    text += "t" + std::to_string(i) + " : row { " + before + before + "}\n";
  }
  return text;
}

TEST_F(DclTest, Limits) {
  std::string err;
  EXPECT_TRUE(Load(NestedRows(kMaxDepth - 1), &err)) << err;
  EXPECT_FALSE(Load(NestedRows(kMaxDepth), &err));
  EXPECT_EQ("main.dcl:1: tiles nested more than 64 deep", FirstLine(err));
  EXPECT_FALSE(Load(NestedRows(100000), &err));  // nothing recurses that far
  EXPECT_EQ("main.dcl:1: tiles nested more than 64 deep", FirstLine(err));

  // Depth made of prototypes, each 10 deep in the file.
  std::string text = "p0 : row { }\n";
  for (int i = 1; i <= 8; ++i) {
    text += "p" + std::to_string(i) + " : row {";
    for (int j = 0; j < 9; ++j) text += " : row {";
    text += " p" + std::to_string(i - 1) + "; " + std::string(10, '}') + "\n";
  }
  EXPECT_FALSE(Load(text, &err));
  EXPECT_EQ("main.dcl:8: tiles nested more than 64 deep", FirstLine(err));

  // Prototypes through prototypes, in either order of definition.
  std::string forward = "a0 : button { }\n", backward = forward;
  for (int i = 1; i <= 100; ++i) {
    std::string def = "a" + std::to_string(i) + " : a" + std::to_string(i - 1) + " { }\n";
    forward += def;
    backward = def + backward;
  }
  EXPECT_FALSE(Load(forward, &err));
  EXPECT_EQ("main.dcl:65: prototypes nested more than 64 deep", FirstLine(err));
  EXPECT_FALSE(Load(backward, &err));
  EXPECT_NE(std::string::npos, FirstLine(err).find(": prototypes nested more than 64 deep"));

  EXPECT_FALSE(Load(DoublingLevels(30), &err));
  EXPECT_EQ("main.dcl:13: more than 10000 tiles", FirstLine(err));
  text = DoublingLevels(11);  // t11 holds 8191 tiles
  for (int i = 0; i < 20; ++i) text += "c" + std::to_string(i) + " : t11 { }\n";
  EXPECT_FALSE(Load(text, &err));
  EXPECT_NE(std::string::npos,
            FirstLine(err).find(": the definitions hold more than 100000 tiles in all"));
}

// Every prefix of a good file, and bytes scrambled into it, end in a tree or
// a located fault, never a crash or a hang.
TEST_F(DclTest, DamagedFilesFailCleanly) {
  const std::string good =
      "// a dialog\n"
      "@include \"lib.dcl\"\n"
      "pick : dialog {\n"
      "  label = \"\xA5\x5C\xAF\xE0 /* not a comment */\";\n"
      "  : boxed_radio_column { key = \"r\"; : radio_button { key = \"a\"; value = \"1\"; } }\n"
      "  : list_box { key = \"l\"; multiple_select = true; tabs = \"8 16\"; width = 12.5; }\n"
      "  lib_row;\n"
      "  ok_cancel_help_errtile;\n"
      "}\n";
  files_["lib.dcl"] = "lib_row : row { : toggle { key = \"t\"; } }\n";
  std::string err;
  ASSERT_TRUE(Load(good, &err)) << err;
  for (size_t n = 0; n < good.size(); ++n) {
    if (!Load(good.substr(0, n), &err)) {
      EXPECT_EQ("main.dcl:", err.substr(0, 9)) << n;
    }
  }
  unsigned seed = 12345;
  const char kBytes[] = "{}:;=\"\\/*@-.\n\xA5\x5C\x1A";
  for (int round = 0; round < 2000; ++round) {
    std::string text = good;
    for (int k = 0; k < 3; ++k) {
      seed = seed * 1103515245 + 12345;
      text[(seed >> 8) % text.size()] = kBytes[(seed >> 20) % (sizeof kBytes - 1)];
    }
    if (!Load(text, &err)) {
      EXPECT_EQ("main.dcl:", err.substr(0, 9)) << Show(text) << "\n" << err;
    }
  }
}

}  // namespace
}  // namespace vorhost::dcl
