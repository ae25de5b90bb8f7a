// dcl_lexer.h - the tokens of dialog definition files, and how faults in them are reported.
#ifndef VORHOST_DCL_DCL_LEXER_H
#define VORHOST_DCL_DCL_LEXER_H

#include <cstddef>
#include <string>
#include <string_view>

namespace vorhost::dcl {

// A place in a source text: its line, counted from 1, and its byte offset.
struct Place {
  int line = 1;
  size_t offset = 0;
};

// Fills *err (when err is not null) with "file:line: message", then the
// source line holding place and a caret under it, and returns false, so that
// a caller that finds a fault can just return its result. Long lines are
// clipped around the caret at a character boundary.
bool ReportError(std::string_view file, std::string_view text, Place place,
                 std::string_view message, std::string* err);

struct Token {
  enum class Type {
    kName,     // a tile, attribute or prototype name, or a reserved word
    kString,   // text holds the bytes with escapes removed
    kInteger,  // integer holds the value
    kReal,     // real holds the value
    kColon,
    kLeftBrace,
    kRightBrace,
    kSemicolon,
    kEquals,
    kInclude,  // the directive @include; its file name is the next token
    kEnd,      // the end of the text
  };
  Type type = Type::kEnd;
  std::string text;  // a name or a string's bytes
  int integer = 0;
  double real = 0;
  Place place;  // where the token starts
};

// Splits a dialog definition file, given as its bytes, into tokens.
//
// Names are [A-Za-z_][A-Za-z0-9_]*. Numbers are an optional '-', then
// digits with an optional fraction, or a fraction alone (".5"); one with a
// point is real. Strings are double-quoted on one line; \" \\ \n \t are
// their escapes, any other backslash is a fault. Strings are Big5 bytes: a
// two-byte character is taken whole, so its trail byte (0x5C in many) never
// starts an escape or ends the string. Space, tab, CR, LF, // line comments
// and /* */ block comments separate tokens. A 0x1A byte ends the text, as in
// the host's text files.
//
// The lexer keeps views of file and text: both must outlive it.
class Lexer {
 public:
  Lexer(std::string_view file, std::string_view text);

  // Reads the next token into *token. Returns false with *err on a lexical
  // fault. At the end of the text gives kEnd, placed just after the last
  // token so that a report points at what came before, and keeps giving it.
  bool Next(Token* token, std::string* err);

  // ReportError for this lexer's file and text.
  bool Error(std::string_view message, Place place, std::string* err) const {
    return ReportError(file_, text_, place, message, err);
  }

  std::string_view file() const { return file_; }
  std::string_view text() const { return text_; }

 private:
  bool SkipSpaceAndComments(std::string* err);
  void ReadName(Token* token);
  bool ReadNumber(Token* token, std::string* err);
  bool ReadString(Token* token, std::string* err);
  bool ReadInclude(Token* token, std::string* err);

  bool AtEnd() const { return pos_ >= text_.size(); }
  char Peek(size_t ahead = 0) const {
    return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0';
  }
  Place Here() const { return {line_, pos_}; }
  void Advance(size_t count);

  std::string_view file_;
  std::string_view text_;
  size_t pos_ = 0;
  int line_ = 1;
  Place after_last_;  // just after the last token read
};

// How a token is named in a message: 'name', ';', a string, end of file.
std::string Describe(const Token& token);

}  // namespace vorhost::dcl

#endif
