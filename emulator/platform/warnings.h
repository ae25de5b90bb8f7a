// warnings.h - what the emulated operating system tells the user about the
// files the module reads: shown on the host's command line, since the
// module itself says nothing of them.
#ifndef VORHOST_PLATFORM_WARNINGS_H
#define VORHOST_PLATFORM_WARNINGS_H

#include <functional>
#include <string_view>

namespace vorhost {

// Where warnings go (host text, Big5); none when empty. Setting it starts
// a new session: each file is warned about once per session.
void SetWarningSink(std::function<void(std::string_view)> sink);

}  // namespace vorhost

#endif
