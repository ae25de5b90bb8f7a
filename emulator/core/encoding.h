// encoding.h - conversion between the host's Big5 (code page 950) bytes and
// the UTF-8 of scripts, terminals and Linux file names.
//
// Inside the host everything is Big5, as on the original platform; these
// two functions are used only at its edges.
#ifndef VORHOST_CORE_ENCODING_H
#define VORHOST_CORE_ENCODING_H

#include <iconv.h>

#include <string>
#include <string_view>

namespace vorhost {

// One iconv conversion (code page names as iconv knows them), opened once
// and reset before each use; copying is refused, as the descriptor is owned.
class IconvConverter {
 public:
  IconvConverter(const char* to, const char* from);
  ~IconvConverter();
  IconvConverter(const IconvConverter&) = delete;
  IconvConverter& operator=(const IconvConverter&) = delete;

  // Whether iconv knows both code pages.
  bool ok() const { return cd_ != reinterpret_cast<iconv_t>(-1); }
  // Appends the conversion of in to *out as far as it goes; returns the
  // number of bytes of in consumed before the first that cannot be converted.
  size_t Convert(std::string_view in, std::string* out);

 private:
  iconv_t cd_;
};

// Big5 to UTF-8. A byte that is not part of a valid character (a lone lead
// byte, an unassigned code) comes out as the escape "\xNN", so nothing is
// silently lost from a transcript.
std::string Big5ToUtf8(std::string_view big5);

// UTF-8 to Big5. Returns false, leaving *out holding what converted so far,
// when the text has a character Big5 cannot hold or is not valid UTF-8;
// *consumed (when given) is then where in utf8 that character starts.
bool Utf8ToBig5(std::string_view utf8, std::string* out, size_t* consumed = nullptr);

// The diameter sign of the panel schedules: the single byte 0xED (φ in code
// page 437), which the module turns into the host's "%%c". Standing where
// it is no part of a Big5 character, it counts as Big5 text below, and
// comes out as U+2300 "⌀" in UTF-8.
constexpr char kDiameterByte = '\xED';
constexpr std::string_view kDiameterUtf8 = "\xE2\x8C\x80";

// Whether text is Big5 text as the module keeps it: every byte part of an
// ASCII or code page 950 character, or a diameter byte standing alone, and
// no NUL (which a file in UTF-16 would be full of).
bool IsBig5Text(std::string_view text);

// Big5 text (IsBig5Text) to UTF-8 and back, the diameter byte standing
// alone as "⌀". False, with *out holding what converted so far, for text
// that is not Big5 text or holds a character Big5 cannot hold; *consumed
// (when given) is then where in utf8 that character starts.
bool Big5TextToUtf8(std::string_view big5, std::string* out);
bool Utf8ToBig5Text(std::string_view utf8, std::string* out, size_t* consumed = nullptr);

// Whether text is well-formed UTF-8 (no overlong forms, surrogates or
// values past U+10FFFF) without a NUL.
bool IsUtf8Text(std::string_view text);

// Whether text is UTF-8 and not plain ASCII: text that a UTF-8 editor
// wrote, where Big5 was wanted.
bool LooksLikeUtf8(std::string_view text);

// The length of the character at text[pos]: 2 for a Big5 lead byte
// (0x81-0xFE) followed by a trail byte (0x40-0x7E or 0xA1-0xFE), else 1.
// Code that looks for ASCII bytes in Big5 text steps by this, so that a
// trail byte such as 0x5C is never taken for a backslash. Inline: every
// walk over a text calls it once a character.
inline size_t Big5CharLength(std::string_view text, size_t pos) {
  if (pos + 1 >= text.size()) return 1;
  auto lead = static_cast<unsigned char>(text[pos]);
  auto trail = static_cast<unsigned char>(text[pos + 1]);
  bool is_lead = lead >= 0x81 && lead <= 0xFE;
  bool is_trail = (trail >= 0x40 && trail <= 0x7E) || (trail >= 0xA1 && trail <= 0xFE);
  return is_lead && is_trail ? 2 : 1;
}

}  // namespace vorhost

#endif
