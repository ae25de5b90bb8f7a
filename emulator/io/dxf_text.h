// dxf_text.h - texts between a DXF file and the host's Big5: the caret
// escapes of control characters, the \U+XXXX and \M+2XXXX escapes, and the
// code page or UTF-8 of the file.
#ifndef VORHOST_IO_DXF_TEXT_H
#define VORHOST_IO_DXF_TEXT_H

#include <memory>
#include <string>
#include <string_view>

#include "emulator/core/encoding.h"

namespace vorhost::dxf {

// A Big5 text as one line of a file: a control character c becomes ^ and
// c + 0x40 (^J for a line feed), and a caret that would read as such an
// escape becomes "^ ". Everything else, trail bytes included, is kept byte
// for byte.
std::string EscapeText(std::string_view big5);

// The inverse of EscapeText, also decoding \U+XXXX to the Big5 character
// (kept as written when Big5 has none) and \M+2XXXX to its two Big5 bytes.
// Steps through the text by Big5 character, so a trail byte 0x5C or 0x5E
// never starts an escape.
std::string UnescapeText(std::string_view big5);

// UTF-8 to Big5 for texts from files: a character Big5 cannot hold becomes
// \U+XXXX (which the host keeps and writes back), an invalid byte "?".
std::string Utf8ToBig5Escaped(std::string_view utf8);

// Turns the texts of one file into the host's Big5. Chosen once from the
// header: files of AC1021 and later are UTF-8; ANSI_950, or no code page,
// is Big5 already; another ANSI_xxxx or DOSxxx page goes through iconv's
// CPxxx. An unknown page is taken as Big5.
class TextDecoder {
 public:
  TextDecoder() = default;
  TextDecoder(const TextDecoder&) = delete;
  TextDecoder& operator=(const TextDecoder&) = delete;

  void Choose(std::string_view version, std::string_view code_page);
  // A text of the file, escapes decoded, as Big5.
  std::string Decode(std::string_view raw);

 private:
  enum class Mode { kBig5, kUtf8, kIconv };
  std::string ToUtf8(std::string_view raw);

  Mode mode_ = Mode::kBig5;
  std::unique_ptr<IconvConverter> converter_;  // for kIconv: CPxxx to UTF-8
};

}  // namespace vorhost::dxf

#endif
