// install_dirs.cpp - the program's own folder, from /proc/self/exe.
#include "emulator/platform/install_dirs.h"

#include <sys/auxv.h>

#include <filesystem>
#include <system_error>

#ifndef VORHOST_DATA_RELATIVE
#define VORHOST_DATA_RELATIVE "../share/vormis"
#endif
#ifndef VORHOST_MODULE_RELATIVE
#define VORHOST_MODULE_RELATIVE "../lib/vormis"
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

// The folder at relative from the program's own folder; empty when the
// program's location is unknown.
std::string BesideProgram(const char* relative) {
  fs::path program = ProgramFile();
  if (program.empty()) return "";
  return (program.parent_path() / relative).lexically_normal().string();
}

}  // namespace

std::string DataDirectory() { return BesideProgram(VORHOST_DATA_RELATIVE); }

std::string LibraryDirectory() { return BesideProgram(VORHOST_MODULE_RELATIVE); }

}  // namespace vorhost
