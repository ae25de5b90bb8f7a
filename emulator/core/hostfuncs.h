// hostfuncs.h - the command-language functions the installation provides
// beside the module: W1 (ask for a text), W2 (edit a text file), ADS_HELP
// (show a help topic) and the host's colour dialog ACAD_COLORDLG. Each asks
// whoever plays the user.
#ifndef VORHOST_CORE_HOSTFUNCS_H
#define VORHOST_CORE_HOSTFUNCS_H

#include <string>
#include <string_view>

namespace vorhost {

class Host;

// Defines the four functions in host's command language.
void DefineHostFunctions(Host& host);

// The text of topic in a help file's contents (Big5), without its heading;
// false when the file has no such topic. A help file is a series of topics,
// each headed by a line "[NAME]"; lines starting with ";" are comments.
bool HelpTopic(std::string_view contents, std::string_view topic, std::string* text);

}  // namespace vorhost

#endif
