// wcmatch.h - the host's wildcard matching of Big5 text against a pattern.
#ifndef VORHOST_CORE_WCMATCH_H
#define VORHOST_CORE_WCMATCH_H

#include <string_view>

namespace vorhost {

// True when text matches pattern, case-sensitively. The pattern is a list of
// alternatives separated by ',' and matches when any of them does; an
// alternative starting with '~' matches when the rest of it does not.
//
//   #  a digit            @  an ASCII letter      ?  any one character
//   .  one character that is neither digit nor ASCII letter
//   *  any run of characters, possibly empty
//   [abc] [a-z]  one of the listed characters; [~abc] one not listed
//   `x  the character x taken literally
//
// Inside brackets everything but a range's '-' is literal; a '-' at either
// end and a ']' just after '[' or '[~' are members. A '[' without a closing
// ']' is a literal '['. A '`' ending the pattern is a literal '`'. An empty
// alternative matches only the empty text.
//
// Both strings are Big5: a lead byte followed by a trail byte is one
// character, never a digit or letter. Only the first 500 bytes of each take
// part, cut before a pair that would straddle the limit. Matching takes time
// proportional at worst to the product of the two lengths.
bool WcMatch(std::string_view text, std::string_view pattern);

}  // namespace vorhost

#endif
