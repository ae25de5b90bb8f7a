// encoding.h - conversion between the host's Big5 (code page 950) bytes and
// the UTF-8 of scripts, terminals and Linux file names.
//
// Inside the host everything is Big5, as on the original platform; these
// two functions are used only at its edges.
#ifndef VORHOST_CORE_ENCODING_H
#define VORHOST_CORE_ENCODING_H

#include <string>
#include <string_view>

namespace vorhost {

// Big5 to UTF-8. A byte that is not part of a valid character (a lone lead
// byte, an unassigned code) comes out as the escape "\xNN", so nothing is
// silently lost from a transcript.
std::string Big5ToUtf8(std::string_view big5);

// UTF-8 to Big5. Returns false, leaving *out holding what converted so far,
// when the text has a character Big5 cannot hold or is not valid UTF-8.
bool Utf8ToBig5(std::string_view utf8, std::string* out);

// The length of the character at text[pos]: 2 for a Big5 lead byte
// (0x81-0xFE) followed by a trail byte (0x40-0x7E or 0xA1-0xFE), else 1.
// Code that looks for ASCII bytes in Big5 text steps by this, so that a
// trail byte such as 0x5C is never taken for a backslash.
size_t Big5CharLength(std::string_view text, size_t pos);

}  // namespace vorhost

#endif
