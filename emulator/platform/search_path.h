// search_path.h - where the host looks for a file named without a folder
// (a help file, a linetype file, a drawing to insert, a dialog file): the
// current directory, the folders of ACAD, the module's files, then the
// host's own resources.
#ifndef VORHOST_PLATFORM_SEARCH_PATH_H
#define VORHOST_PLATFORM_SEARCH_PATH_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorhost {

// The host's own resources (BASE.DCL, ACAD.LIN, the symbol blocks) and
// the folder the module was installed with (its dialog and help files):
// $VORHOST_RESOURCES and $VORMIS_FILES when set, else resources/ and dcl/
// in the program's data folder (DataDirectory).
std::string ResourceDirectory();
std::string ModuleDirectory();

// The search path as Linux folders: the current directory, the DOS
// folders of the ACAD environment variable (separated by ";"), the
// module's folder, then the host's resources.
std::vector<std::string> SearchPath();

// The Linux path of the file name (DOS, Big5) stands for: found on the
// search path, letters in any case, or, when name has a drive or folder
// part, that file itself; none when there is no such regular file.
std::optional<std::string> FindFile(std::string_view name);

// The Linux path of the module file name stands for, as ARXLOAD finds it:
// ".arx" is added to a name without an extension; the file is looked for
// as FindFile does, then in the program's own module folder
// (LibraryDirectory). None when there is no such file.
std::optional<std::string> FindApplication(std::string_view name);

}  // namespace vorhost

#endif
