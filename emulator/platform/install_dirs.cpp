// install_dirs.cpp - the program's own folder, from /proc/self/exe.
#include "emulator/platform/install_dirs.h"

#include <sys/auxv.h>

#include <filesystem>
#include <system_error>

#ifndef VORHOST_DATA_RELATIVE
#define VORHOST_DATA_RELATIVE "../share/vormis"
#endif

namespace vorhost {
namespace {

namespace fs = std::filesystem;

// The running program's file with its links resolved: from /proc, or, where
// /proc is not mounted (a bare chroot), from the path it was started by.
fs::path ProgramFile() {
  std::error_code ec;
  fs::path program = fs::read_symlink("/proc/self/exe", ec);
  if (!ec && !program.empty()) return program;
  auto started_as = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
  if (!started_as) return {};
  program = fs::canonical(started_as, ec);
  return ec ? fs::path() : program;
}

}  // namespace

std::string DataDirectory() {
  fs::path program = ProgramFile();
  if (program.empty()) return "";
  return (program.parent_path() / VORHOST_DATA_RELATIVE).lexically_normal().string();
}

}  // namespace vorhost
