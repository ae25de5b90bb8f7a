// wcmatch_test.cpp - the host's wildcard matcher, construct by construct.
#include "emulator/core/wcmatch.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "support/show_bytes.h"

namespace vorhost {
namespace {

struct WcCase {
  std::string text;
  std::string pattern;
  bool expected;
};

using vorhost::testing::Show;

TEST(WcMatchTest, MatchesTable) {
  // Big5 pairs, chosen so that their trail bytes are pattern metacharacters
  // wherever possible: a matcher working byte by byte gets these wrong.
  const std::string kZhong = "\xA4\xA4";
  const std::string kWen = "\xA4\xE5";
  const std::string kAtTrail = "\xA4\x40";       // trail byte '@'
  const std::string kBracketTrail = "\xA5\x5D";  // trail byte ']'
  const std::string kOpenTrail = "\xA4\x5B";     // trail byte '['
  const std::string kQuoteTrail = "\xA4\x60";    // trail byte '`'
  const std::string kTildeTrail = "\xA4\x7E";    // trail byte '~'
  const std::string kLoneLead = "\xA4";
  const std::string kLong(500, 'a');

  const std::vector<WcCase> cases = {
      // Literals, case and anchoring.
      {"abc", "abc", true},
      {"abc", "ABC", false},
      {"ABC", "abc", false},
      {"abc", "ab", false},
      {"ab", "abc", false},
      // Empty pattern, empty text, empty alternatives.
      {"", "", true},
      {"a", "", false},
      {"", "a", false},
      {"", "a,", true},
      {"", ",a", true},
      {"a", "a,", true},
      {"b", "a,", false},
      {"", "*", true},
      // Single-character classes.
      {"a1", "a#", true},
      {"ab", "a#", false},
      {"1a", "#@", true},
      {"1Z", "#@", true},
      {"12", "#@", false},
      {"a-b", "a.b", true},
      {"a b", "a.b", true},
      {"a1b", "a.b", false},
      {"aXb", "a.b", false},
      {"", ".", false},
      {"ab", "?", false},
      {"ab", "??", true},
      {"", "?", false},
      // Stars.
      {"abc", "*", true},
      {"abc", "a*", true},
      {"abc", "*c", true},
      {"ac", "a*c", true},
      {"abcbd", "a*b*d", true},
      {"abcbc", "a*bd", false},
      {"mississippi", "m*iss*ppi", true},
      {"mississippi", "m*iss*ppx", false},
      {"abc", "a**c", true},
      {"E-3.5-22", "E-#.#-##", true},
      {"E-3.5-22", "*-##", true},
      {"E-3.5-2", "*-##", false},
      // Negation: only at the start of an alternative.
      {"abc", "~abc", false},
      {"abd", "~abc", true},
      {"x", "~", true},
      {"", "~", false},
      {"abc", "~a*", false},
      {"xbc", "~a*", true},
      {"a~b", "a~b", true},
      {"~a", "~~a", false},
      {"b", "~~a", true},
      // Alternatives, with and without negation.
      {"b", "a,b,c", true},
      {"d", "a,b,c", false},
      {"x.dwg", "*.dxf,*.dwg", true},
      {"x.dxf", "*.dxf,*.dwg", true},
      {"x.bak", "*.dxf,*.dwg", false},
      {"abc", "~a*,abc", true},
      {"abc", "~a*,~*c", false},
      {"xyz", "~a*,~*c", true},
      {"abc", "x,~abc", false},
      {"abd", "x,~abc", true},
      // Escapes.
      {"#", "`#", true},
      {"1", "`#", false},
      {",", "`,", true},
      {"", "`,", false},
      {"a,b", "a`,b", true},
      {"a", "a`,b", false},
      {"*", "`*", true},
      {"ab", "`*", false},
      {"~a", "`~a", true},
      {"b", "`~a", false},
      {"[a]", "`[a]", true},
      {"`", "`", true},
      {"a`", "a`", true},
      {"a`b", "a``b", true},
      // Brackets.
      {"b", "[abc]", true},
      {"d", "[abc]", false},
      {"", "[abc]", false},
      {"ab", "[abc]", false},
      {"m", "[a-z]", true},
      {"M", "[a-z]", false},
      {"z", "[z-a]", false},
      {"d", "[~abc]", true},
      {"a", "[~abc]", false},
      {"", "[~abc]", false},
      {"*", "[*#]", true},
      {"1", "[*#]", false},
      {"?", "[?]", true},
      {"a", "[?]", false},
      {",", "[a,b]", true},
      {"a", "[a,b]", true},
      {"`", "[`]", true},
      {"-", "[-a]", true},
      {"-", "[a-]", true},
      {"b", "[a-]", false},
      {"-", "[a-c-e]", true},
      {"e", "[a-c-e]", true},
      {"d", "[a-c-e]", false},
      {"]", "[]a]", true},
      {"b", "[]a]", false},
      {"]", "[~]a]", false},
      {"b", "[~]a]", true},
      {"[]1", "[]#", true},  // the only ']' is a member, so '[' is literal
      {"1", "[]#", false},
      {"[a", "[a", true},
      {"a", "[a", false},
      {"[", "[", true},
      {"b", "x[a,b", true},  // unclosed: the ',' still separates
      {"x[a", "x[a,b", true},
      // Big5 pairs are single characters, never digits or letters.
      {kZhong, "?", true},
      {kZhong, "??", false},
      {kZhong, ".", true},
      {kZhong, "@", false},
      {kZhong, "#", false},
      {kZhong + kWen, "?" + kWen, true},
      {kZhong + kWen, "*" + kWen, true},
      {kZhong, "*" + kLoneLead, false},
      {kAtTrail, "?@", false},
      {kAtTrail, "*@", false},
      {kAtTrail, kAtTrail, true},
      {"\xA4\x41", kAtTrail, false},
      {kOpenTrail, kOpenTrail, true},
      {kQuoteTrail + "1", kQuoteTrail + "#", true},
      {kQuoteTrail + "#", kQuoteTrail + "#", false},
      {kTildeTrail, kTildeTrail, true},
      {kAtTrail, "`" + kAtTrail, true},
      {"a" + kZhong + "b", "a.b", true},
      {kZhong, "[" + kZhong + "x]", true},
      {kWen, "[" + kZhong + "x]", false},
      {kWen, "[~" + kZhong + "x]", true},
      {kZhong, "[~" + kZhong + "x]", false},
      {kBracketTrail, "[" + kBracketTrail + "]", true},
      {kZhong, "[\x01-\x7F]", false},
      {kZhong, "[~a-z]", true},
      {kZhong, "[~\x01-\x7F]", true},
      // A lead byte without a trail is a character of its own.
      {kLoneLead, "?", true},
      {kLoneLead + "1", "?", false},
      {kLoneLead + "1", ".#", true},
      // Only the first 500 bytes of either side take part.
      {kLong + "b", "*b", false},
      {kLong + "b", "*a", true},
      {kLong, kLong + "b", true},
      {kLong.substr(1) + kZhong, "*a", true},
      {kLong.substr(1) + kZhong, "*" + kZhong, false},
      // Many stars against a long text that cannot match: must be quick.
      {kLong, "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b", false},
      {kLong, "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a", true},
      {kLong, "~*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b", true},
  };

  for (const WcCase& c : cases) {
    EXPECT_EQ(WcMatch(c.text, c.pattern), c.expected)
        << "text \"" << Show(c.text) << "\" pattern \"" << Show(c.pattern) << "\"";
  }
}

}  // namespace
}  // namespace vorhost
