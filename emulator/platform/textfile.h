// textfile.h - DOS text-mode streams over Linux files.
#ifndef VORHOST_PLATFORM_TEXTFILE_H
#define VORHOST_PLATFORM_TEXTFILE_H

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

namespace vorhost {

// Told, once per stream, of the first line read from it that is not Big5
// text (IsBig5Text): its number, from 1, and its bytes without the line end.
using NotBig5Handler = std::function<void(int line, std::string_view text)>;

// Opens a file with fopen's modes ("r", "w", "a", with "+", "b" and "t").
// Without "b" the stream is in DOS text mode: each "\n" written reaches the
// disk as CR LF; reading gives CR LF as "\n", keeps a lone CR, and stops at
// the first 0x1A byte. Opening "a+" in text mode drops a 0x1A that ends the
// file, so what is appended can be read back. With "b" the bytes pass
// unchanged.
//
// A stream opened with "w" writes a temporary file beside the file (see
// FileReplacement), which takes the file's place when the stream is closed
// and every write, the flush and the close succeeded. Otherwise fclose
// fails, the old file stays as it was, and the save reporter is told
// "Cannot save NAME: why" with shown_name (the file as the user named it).
// A write that fails while appending is reported in the same words. Every
// mode that writes refuses a read-only file with EACCES, also to root.
//
// The caller owns the stream and closes it with fclose. Positions are byte
// offsets in the file: rewind and fseek to the start or the end are exact,
// but in text mode ftell while reading runs ahead by the CRs still in the
// stream's buffer, so its value is no place to fseek back to. Returns NULL
// with errno set on failure, and for a directory.
//
// A text-mode stream given not_big5 checks each line as it is read, up to
// the 0x1A or the end, and calls it for the first that is not Big5 text.
FILE* OpenTextMode(const std::string& linux_path, const char* mode, std::string_view shown_name,
                   NotBig5Handler not_big5 = {});

// Where the messages of failed saves through OpenTextMode go (the host
// shows them on its command line); null drops them.
using SaveReporter = void (*)(std::string_view message);
void SetSaveReporter(SaveReporter reporter);

}  // namespace vorhost

#endif
