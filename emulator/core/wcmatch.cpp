// wcmatch.cpp - the host's wildcard matcher: each alternative is compiled to
// one token per character and matched greedily with one backtrack point.
#include "emulator/core/wcmatch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace vorhost {
namespace {

// The host compares no further than this many bytes of text or pattern.
constexpr size_t kMaxBytes = 500;

// One character. A single byte keeps its value; a Big5 pair is
// lead << 8 | trail, always above 0xFF, so a byte range can never take in a
// pair and a pair equals only the same pair.
using Char = uint16_t;
constexpr Char kMaxByte = 0xFF;

bool IsLead(uint8_t b) { return b >= 0x81 && b <= 0xFE; }
bool IsTrail(uint8_t b) { return (b >= 0x40 && b <= 0x7E) || (b >= 0xA1 && b <= 0xFE); }
bool IsDigit(Char c) { return c >= '0' && c <= '9'; }
bool IsLetter(Char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// A string split into characters. Nothing longer than kMaxBytes is kept, so
// fixed storage suffices and matching allocates nothing.
struct Chars {
  std::array<Char, kMaxBytes> at;
  size_t size = 0;
};

// Splits s into characters, stopping at kMaxBytes and before a pair whose
// trail byte lies beyond it. A lead byte without a trail is a character.
void Decode(std::string_view s, Chars* out) {
  const size_t end = std::min(s.size(), kMaxBytes);
  size_t i = 0;
  out->size = 0;
  while (i < end) {
    const auto lead = static_cast<uint8_t>(s[i]);
    const bool pair = IsLead(lead) && i + 1 < s.size() && IsTrail(static_cast<uint8_t>(s[i + 1]));
    if (!pair) {
      out->at[out->size++] = lead;
      i += 1;
      continue;
    }
    if (i + 2 > end) break;
    out->at[out->size++] = static_cast<Char>(lead << 8 | static_cast<uint8_t>(s[i + 1]));
    i += 2;
  }
}

enum class Kind : uint8_t { kLiteral, kDigit, kLetter, kOther, kAny, kStar, kSet, kNotSet };

// Every token but kStar consumes exactly one text character. A set's members
// are ranges[first, last) of the alternative holding it.
struct Token {
  Kind kind;
  Char ch;
  uint16_t first;
  uint16_t last;
};

// An inclusive range of characters; a single member has lo == hi.
struct Range {
  Char lo;
  Char hi;
};

// One compiled alternative. A pattern of n characters never yields more than
// n tokens or n set members.
struct Alternative {
  bool negated = false;
  std::array<Token, kMaxBytes> tokens;
  size_t size = 0;
  std::array<Range, kMaxBytes> ranges;
  size_t range_count = 0;

  void Add(Kind kind, Char ch = 0) { tokens[size++] = Token{kind, ch, 0, 0}; }
};

// Returns the index of the ']' closing the set opened at p.at[open], or 0
// when there is none, in which case the '[' stands for itself.
size_t FindSetEnd(const Chars& p, size_t open) {
  size_t i = open + 1;
  if (i < p.size && p.at[i] == '~') ++i;
  if (i < p.size && p.at[i] == ']') ++i;
  while (i < p.size && p.at[i] != ']') ++i;
  return i < p.size ? i : 0;
}

// Compiles the set whose members are p.at[begin, end). A '-' between two
// single-byte characters makes a range; any other '-' is a member, and so is
// one beside a pair, whose order means nothing here.
void AddSet(const Chars& p, size_t begin, size_t end, bool negated, Alternative* alt) {
  Token token{negated ? Kind::kNotSet : Kind::kSet, 0, static_cast<uint16_t>(alt->range_count), 0};
  for (size_t i = begin; i < end;) {
    const Char lo = p.at[i];
    if (i + 2 < end && p.at[i + 1] == '-' && lo <= kMaxByte && p.at[i + 2] <= kMaxByte) {
      alt->ranges[alt->range_count++] = Range{lo, p.at[i + 2]};
      i += 3;
    } else {
      alt->ranges[alt->range_count++] = Range{lo, lo};
      i += 1;
    }
  }
  token.last = static_cast<uint16_t>(alt->range_count);
  alt->tokens[alt->size++] = token;
}

// Compiles the construct starting at p.at[i]; returns the index after it.
size_t CompileOne(const Chars& p, size_t i, Alternative* alt) {
  const Char c = p.at[i];
  switch (c) {
    case '#': alt->Add(Kind::kDigit); return i + 1;
    case '@': alt->Add(Kind::kLetter); return i + 1;
    case '.': alt->Add(Kind::kOther); return i + 1;
    case '?': alt->Add(Kind::kAny); return i + 1;
    case '*':
      // A run of stars matches what one does; keeping one saves backtracking.
      if (alt->size == 0 || alt->tokens[alt->size - 1].kind != Kind::kStar) alt->Add(Kind::kStar);
      return i + 1;
    case '`':
      if (i + 1 == p.size) {
        alt->Add(Kind::kLiteral, c);
        return i + 1;
      }
      alt->Add(Kind::kLiteral, p.at[i + 1]);
      return i + 2;
    case '[': {
      const size_t close = FindSetEnd(p, i);
      if (close == 0) break;
      const bool negated = p.at[i + 1] == '~';
      AddSet(p, i + (negated ? 2 : 1), close, negated, alt);
      return close + 1;
    }
    default: break;
  }
  alt->Add(Kind::kLiteral, c);
  return i + 1;
}

// Compiles the alternative starting at p.at[*pos] into *alt and moves *pos
// past it and its ','. Returns false when it was the pattern's last.
bool CompileAlternative(const Chars& p, size_t* pos, Alternative* alt) {
  size_t i = *pos;
  alt->size = 0;
  alt->range_count = 0;
  alt->negated = i < p.size && p.at[i] == '~';
  if (alt->negated) ++i;
  while (i < p.size) {
    if (p.at[i] == ',') {
      *pos = i + 1;
      return true;
    }
    i = CompileOne(p, i, alt);
  }
  *pos = i;
  return false;
}

bool InSet(const Alternative& alt, const Token& token, Char c) {
  for (size_t r = token.first; r < token.last; ++r) {
    if (c >= alt.ranges[r].lo && c <= alt.ranges[r].hi) return true;
  }
  return false;
}

// Whether a token other than kStar accepts the text character c.
bool Accepts(const Alternative& alt, const Token& token, Char c) {
  switch (token.kind) {
    case Kind::kLiteral: return c == token.ch;
    case Kind::kDigit: return IsDigit(c);
    case Kind::kLetter: return IsLetter(c);
    case Kind::kOther: return !IsDigit(c) && !IsLetter(c);
    case Kind::kAny: return true;
    case Kind::kSet: return InSet(alt, token, c);
    case Kind::kNotSet: return !InSet(alt, token, c);
    case Kind::kStar: return false;
  }
  return false;
}

// Whether the whole text matches the alternative, ignoring its negation.
// On a mismatch only the most recent star gives up one more character:
// whatever an earlier star could absorb instead, the later one can too, so
// no other choice needs revisiting.
bool MatchTokens(const Alternative& alt, const Chars& text) {
  size_t t = 0;
  size_t k = 0;
  size_t star = alt.size;  // none yet
  size_t star_text = 0;
  while (t < text.size) {
    if (k < alt.size && alt.tokens[k].kind == Kind::kStar) {
      star = k++;
      star_text = t;
    } else if (k < alt.size && Accepts(alt, alt.tokens[k], text.at[t])) {
      ++k;
      ++t;
    } else if (star < alt.size) {
      k = star + 1;
      t = ++star_text;
    } else {
      return false;
    }
  }
  while (k < alt.size && alt.tokens[k].kind == Kind::kStar) ++k;
  return k == alt.size;
}

}  // namespace

bool WcMatch(std::string_view text, std::string_view pattern) {
  Chars t;
  Chars p;
  Decode(text, &t);
  Decode(pattern, &p);
  Alternative alt;
  size_t pos = 0;
  for (;;) {
    const bool more = CompileAlternative(p, &pos, &alt);
    if (MatchTokens(alt, t) != alt.negated) return true;
    if (!more) return false;
  }
}

}  // namespace vorhost
