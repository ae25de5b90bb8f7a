// install_dirs.h - where the program's own files lie: the module itself,
// its dialog and help files and the host's resources, found from the
// program itself.
#ifndef VORHOST_PLATFORM_INSTALL_DIRS_H
#define VORHOST_PLATFORM_INSTALL_DIRS_H

#include <string>

namespace vorhost {

// The folder of the program's own files: the path the build gives
// (VORHOST_DATA_RELATIVE, "../share/vormis" for the usual layout), taken
// from the folder of the running program with its links resolved, so an
// installed tree keeps working wherever it is moved. Empty when the
// program's own location cannot be found.
std::string DataDirectory();

// The folder of the module the program was built with (vormis.arx), found
// the same way from VORHOST_MODULE_RELATIVE ("../lib/vormis"); empty when
// the program's own location cannot be found.
std::string LibraryDirectory();

}  // namespace vorhost

#endif
