// replace_file.h - writing a whole file so that readers see the old one or
// the new one, never a part.
#ifndef VORHOST_IO_REPLACE_FILE_H
#define VORHOST_IO_REPLACE_FILE_H

#include <string>

namespace vorhost {

// Writes data to a temporary file beside path and renames it over path.
// On failure nothing is left of the temporary file, an existing file at
// path is untouched, and *err reads "path: what failed: why".
bool ReplaceFile(const std::string& path, const std::string& data, std::string* err);

}  // namespace vorhost

#endif
