// files.h - the bytes of a file a test reads back, through the host's own
// whole-file reader.
#ifndef VORMIS_TESTS_SUPPORT_FILES_H
#define VORMIS_TESTS_SUPPORT_FILES_H

#include <string>

#include "emulator/core/text.h"

namespace vorhost::testing {

// The bytes of the file at linux_path; "" when it cannot be read.
inline std::string FileBytes(const std::string& linux_path) {
  std::string bytes;
  ReadWholeFile(linux_path, &bytes);
  return bytes;
}

}  // namespace vorhost::testing

#endif
