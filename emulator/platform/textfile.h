// textfile.h - DOS text-mode streams over Linux files.
#ifndef VORHOST_PLATFORM_TEXTFILE_H
#define VORHOST_PLATFORM_TEXTFILE_H

#include <cstdio>
#include <string>

namespace vorhost {

// Opens a file with fopen's modes ("r", "w", "a", with "+", "b" and "t").
// Without "b" the stream is in DOS text mode: each "\n" written reaches the
// disk as CR LF; reading gives CR LF as "\n", keeps a lone CR, and stops at
// the first 0x1A byte. Opening "a+" in text mode drops a 0x1A that ends the
// file, so what is appended can be read back. With "b" it is plain fopen.
//
// The caller owns the stream and closes it with fclose. Positions are byte
// offsets in the file: rewind and fseek to the start or the end are exact,
// but in text mode ftell while reading runs ahead by the CRs still in the
// stream's buffer, so its value is no place to fseek back to. Returns NULL
// with errno set on failure, and for a directory.
FILE* OpenTextMode(const std::string& linux_path, const char* mode);

}  // namespace vorhost

#endif
