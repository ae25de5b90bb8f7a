// install_dirs.cpp - the program's own folder, from /proc/self/exe.
#include "emulator/platform/install_dirs.h"

#include <filesystem>
#include <system_error>

#ifndef VORHOST_DATA_RELATIVE
#define VORHOST_DATA_RELATIVE "../share/vormis"
#endif

namespace vorhost {

std::string DataDirectory() {
  std::error_code ec;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (ec || program.empty()) return "";
  return (program.parent_path() / VORHOST_DATA_RELATIVE).lexically_normal().string();
}

}  // namespace vorhost
