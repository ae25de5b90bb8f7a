// text.h - the emulator's one kit of small text helpers: names compared
// without regard to case, trimming, numbers written as text, whole files
// read, and the "file:line: message" form of a fault in a user's file.
//
// Texts inside the host are Big5 bytes, where the second byte of a
// two-byte character may be an ASCII letter (電 is B9 71, "q"): every helper
// here that looks at letters steps over whole characters, so that such a
// byte is never changed or taken for a letter.
#ifndef VORHOST_CORE_TEXT_H
#define VORHOST_CORE_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>

namespace vorhost {

// ---- Names ------------------------------------------------------------------

inline char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// The name with the ASCII letters of its single-byte characters in upper
// case; Big5 characters stay as they are. Names of the host (layers,
// styles, commands, variables, symbols, files) are kept and compared so.
std::string UpperName(std::string_view big5);

// Whether two names are the same but for the case of their ASCII letters.
bool SameName(std::string_view a, std::string_view b);

// ---- Trimming -----------------------------------------------------------------

constexpr std::string_view kBlanks = " \t";            // blanks inside a line
constexpr std::string_view kBlanksAndLineEnds = " \t\r\n";

// s without the characters of `chars` at either end. None of them is a
// byte of a Big5 character, so a character is never cut.
std::string_view Trim(std::string_view s, std::string_view chars = kBlanks);

// ---- Numbers as text --------------------------------------------------------------

// v with `decimals` places, trailing zeros (and a bare point) dropped and
// no "-0": "2.5", "100", "-90". From 1e15 on, where the fixed form would
// run to dozens of digits, the exponent form every reader takes
// ("1e+99", "-2.5e+20"). A value that is not finite, which the host never
// keeps, is written "0" rather than a word no reader takes.
std::string DecimalText(double v, int decimals);

// v with exactly `decimals` places ("2.5000"), as the host shows the
// values of variables; from 1e15 on, and for a value that is not finite,
// as DecimalText writes it.
std::string FixedText(double v, int decimals);

// The shortest text that reads back as exactly v ("0.1", "1e+99", "2").
std::string ShortestText(double v);

// v with `digits` significant digits, as printf's %g writes it ("2.5",
// "1e+06", "nan").
std::string SignificantText(double v, int digits);

// Each line of lines (separated by '\n', the last one ended or not) with
// two blanks before it and '\n' after it: a block shown under a heading.
std::string Indented(std::string_view lines);

// ---- Fingerprints ----------------------------------------------------------------

// A 64-bit fingerprint of a run of bytes (FNV-1a) that can be made piece
// by piece: Add the pieces in order, whatever their sizes, and the value
// is that of the whole. For telling whether a text changed without
// keeping it; two texts that differ share one by chance once in 2^64.
class Fingerprint {
 public:
  void Add(std::string_view bytes) {
    for (unsigned char c : bytes) value_ = (value_ ^ c) * 0x100000001B3ULL;
  }
  uint64_t value() const { return value_; }

 private:
  uint64_t value_ = 0xCBF29CE484222325ULL;
};

// ---- Files ------------------------------------------------------------------------

// The bytes of the file at linux_path; false (and *contents untouched)
// when it cannot be opened or read to its end.
bool ReadWholeFile(const std::string& linux_path, std::string* contents);

// ---- Faults in a user's file ----------------------------------------------------

// "FILE:LINE: MESSAGE", the form every reader of a user's file (scripts,
// dialog files, DXF, linetype files, data files) reports a fault in.
std::string FileLineMessage(std::string_view file, size_t line, std::string_view message);

// The line of text that holds offset, shown under such a message: the line
// (clipped around offset at character boundaries, "..." marking a cut)
// and below it a caret under offset followed by `mark`.
std::string SourceExcerpt(std::string_view text, size_t offset, std::string_view mark);

}  // namespace vorhost

#endif
