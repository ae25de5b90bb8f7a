// host_text.h - the module's data files (Big5, CR LF line ends, one 0x1A
// after the last line) to and from UTF-8 text with plain line ends, for
// designers who write them in a UTF-8 editor.
#ifndef VORHOST_IO_HOST_TEXT_H
#define VORHOST_IO_HOST_TEXT_H

#include <string>
#include <string_view>

namespace vorhost {

// The longest line the module reads as one line; a longer one comes back
// as several.
constexpr size_t kHostLineMax = 255;

// Why a conversion was refused: the line (from 1) and what is wrong with it.
struct TextFault {
  int line = 0;
  std::string why;
};

// UTF-8 text (LF or CR LF line ends, a byte order mark allowed, a 0x1A
// taken as the end) in the host's form: Big5, every line ended by CR LF,
// 0x1A after the last. Refused with the first faulty line when a line is
// not UTF-8, holds a character Big5 cannot hold, or passes kHostLineMax
// bytes in Big5. *lines is the number of lines written.
bool Utf8ToHostText(std::string_view utf8, std::string* host_text, int* lines, TextFault* fault);

// The host's form, read as its text mode reads (up to the first 0x1A, CR LF
// or LF ending a line), as UTF-8 with LF line ends. Refused with the first
// line that is not Big5 text.
bool HostTextToUtf8(std::string_view host_text, std::string* utf8, int* lines, TextFault* fault);

// What became of converting a file in place.
enum class ConvertResult {
  kDone,        // the file holds the conversion
  kRefused,     // a line could not be converted; the file is unchanged
  kUnreadable,  // the file could not be read
  kUnwritable,  // the conversion could not be written; the file is unchanged
};

// Converts the file at path in place, as the functions above do; the file is
// replaced whole or not at all. *message says what happened, in UTF-8:
// "path: 12 lines written as Big5 text", "path:3: ...".
ConvertResult ImportTextFile(const std::string& path, std::string* message);
ConvertResult ExportTextFile(const std::string& path, std::string* message);

}  // namespace vorhost

#endif
