// dcl_lexer.cpp - tokens of dialog definition files, and located fault reports.
#include "emulator/dcl/dcl_lexer.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"

namespace vorhost::dcl {
namespace {

constexpr char kEndOfFile = '\x1A';

bool IsNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsNameChar(char c) { return IsNameStart(c) || IsDigit(c); }

// A character as it appears in a message: itself when printable ASCII,
// else its byte in hex.
std::string ShowChar(char c) {
  auto byte = static_cast<unsigned char>(c);
  if (byte >= 0x21 && byte < 0x7F) return std::string("'") + c + "'";
  static const char kHex[] = "0123456789ABCDEF";
  return std::string("byte 0x") + kHex[byte >> 4] + kHex[byte & 15];
}

}  // namespace

bool ReportError(std::string_view file, std::string_view text, Place place,
                 std::string_view message, std::string* err) {
  if (!err) return false;
  *err = FileLineMessage(file, static_cast<size_t>(place.line), message) + "\n" +
         SourceExcerpt(text, place.offset, "^ near here");
  return false;
}

std::string Describe(const Token& token) {
  switch (token.type) {
    case Token::Type::kName: return "'" + token.text + "'";
    case Token::Type::kString: return "a string";
    case Token::Type::kInteger:
    case Token::Type::kReal: return "a number";
    case Token::Type::kColon: return "':'";
    case Token::Type::kLeftBrace: return "'{'";
    case Token::Type::kRightBrace: return "'}'";
    case Token::Type::kSemicolon: return "';'";
    case Token::Type::kEquals: return "'='";
    case Token::Type::kInclude: return "@include";
    case Token::Type::kEnd: return "end of file";
  }
  return "?";
}

Lexer::Lexer(std::string_view file, std::string_view text) : file_(file), text_(text) {
  // 0x1A is neither a Big5 lead nor a trail byte, so cutting at the first
  // one never splits a character.
  size_t eof = text_.find(kEndOfFile);
  if (eof != std::string_view::npos) text_ = text_.substr(0, eof);
}

void Lexer::Advance(size_t count) {
  for (size_t i = 0; i < count && pos_ < text_.size(); ++i) {
    if (text_[pos_] == '\n') line_++;
    pos_++;
  }
}

bool Lexer::Next(Token* token, std::string* err) {
  if (!SkipSpaceAndComments(err)) return false;
  *token = Token();
  token->place = Here();
  if (AtEnd()) {
    token->place = after_last_;
    return true;
  }
  char c = Peek();
  bool ok = true;
  if (IsNameStart(c)) {
    ReadName(token);
  } else if (IsDigit(c) || (c == '.' && IsDigit(Peek(1))) ||
             (c == '-' && (IsDigit(Peek(1)) || (Peek(1) == '.' && IsDigit(Peek(2)))))) {
    ok = ReadNumber(token, err);
  } else if (c == '"') {
    ok = ReadString(token, err);
  } else if (c == '@') {
    ok = ReadInclude(token, err);
  } else {
    switch (c) {
      case ':': token->type = Token::Type::kColon; break;
      case '{': token->type = Token::Type::kLeftBrace; break;
      case '}': token->type = Token::Type::kRightBrace; break;
      case ';': token->type = Token::Type::kSemicolon; break;
      case '=': token->type = Token::Type::kEquals; break;
      default: return Error("unexpected " + ShowChar(c), Here(), err);
    }
    Advance(1);
  }
  after_last_ = Here();
  return ok;
}

bool Lexer::SkipSpaceAndComments(std::string* err) {
  while (!AtEnd()) {
    char c = Peek();
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      Advance(1);
    } else if (c == '/' && Peek(1) == '/') {
      while (!AtEnd() && Peek() != '\n') Advance(1);
    } else if (c == '/' && Peek(1) == '*') {
      Place start = Here();
      size_t close = text_.find("*/", pos_ + 2);
      if (close == std::string_view::npos) return Error("unterminated comment", start, err);
      Advance(close + 2 - pos_);
    } else {
      break;
    }
  }
  return true;
}

void Lexer::ReadName(Token* token) {
  size_t start = pos_;
  while (IsNameChar(Peek())) Advance(1);
  token->type = Token::Type::kName;
  token->text = std::string(text_.substr(start, pos_ - start));
}

bool Lexer::ReadNumber(Token* token, std::string* err) {
  size_t start = pos_;
  if (Peek() == '-') Advance(1);
  while (IsDigit(Peek())) Advance(1);
  bool real = Peek() == '.';
  if (real) {
    Advance(1);
    while (IsDigit(Peek())) Advance(1);
  }
  std::string_view spelling = text_.substr(start, pos_ - start);
  if (IsNameChar(Peek()) || Peek() == '.') {
    while (IsNameChar(Peek()) || Peek() == '.') Advance(1);
    return Error("bad number " + std::string(text_.substr(start, pos_ - start)), token->place, err);
  }
  const char* first = spelling.data();
  const char* last = first + spelling.size();
  std::from_chars_result result;
  if (real) {
    token->type = Token::Type::kReal;
    result = std::from_chars(first, last, token->real);
    if (result.ec == std::errc() && !std::isfinite(token->real))
      result.ec = std::errc::result_out_of_range;
  } else {
    token->type = Token::Type::kInteger;
    result = std::from_chars(first, last, token->integer);
  }
  if (result.ec != std::errc() || result.ptr != last) {
    return Error("number out of range: " + std::string(spelling), token->place, err);
  }
  return true;
}

bool Lexer::ReadString(Token* token, std::string* err) {
  token->type = Token::Type::kString;
  Advance(1);  // the opening quote
  while (true) {
    if (AtEnd() || Peek() == '\n') return Error("unterminated string", token->place, err);
    char c = Peek();
    if (c == '"') break;
    size_t length = Big5CharLength(text_, pos_);
    if (length == 2) {
      token->text += text_.substr(pos_, 2);
      Advance(2);
      continue;
    }
    if (c != '\\') {
      token->text += c;
      Advance(1);
      continue;
    }
    if (pos_ + 1 >= text_.size() || Peek(1) == '\n') {
      return Error("unterminated string", token->place, err);
    }
    switch (Peek(1)) {
      case '"': token->text += '"'; break;
      case '\\': token->text += '\\'; break;
      case 'n': token->text += '\n'; break;
      case 't': token->text += '\t'; break;
      default: return Error("unknown escape: backslash before " + ShowChar(Peek(1)), Here(), err);
    }
    Advance(2);
  }
  Advance(1);  // the closing quote
  return true;
}

bool Lexer::ReadInclude(Token* token, std::string* err) {
  Advance(1);  // '@'
  size_t start = pos_;
  while (IsNameChar(Peek())) Advance(1);
  if (text_.substr(start, pos_ - start) != "include") {
    return Error("unknown directive @" + std::string(text_.substr(start, pos_ - start)),
                 token->place, err);
  }
  token->type = Token::Type::kInclude;
  return true;
}

}  // namespace vorhost::dcl
