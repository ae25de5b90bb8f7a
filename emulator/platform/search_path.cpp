// search_path.cpp - finding the host's files by name.
#include "emulator/platform/search_path.h"

#include <cstdlib>
#include <filesystem>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/platform/filesystem.h"
#include "emulator/platform/install_dirs.h"

namespace vorhost {
namespace {

// A file named name (Big5) in the Linux folder dir, letters in any case.
std::optional<std::string> FindInFolder(const std::string& dir, std::string_view name) {
  std::error_code ec;
  std::filesystem::path exact = std::filesystem::path(dir) / Big5ToUtf8(name);
  if (std::filesystem::is_regular_file(exact, ec)) return exact.string();
  for (std::filesystem::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
    std::string entry;
    std::error_code unreadable;
    if (Utf8ToBig5(it->path().filename().string(), &entry) && SameName(entry, name) &&
        it->is_regular_file(unreadable))
      return it->path().string();
  }
  return std::nullopt;
}

}  // namespace

std::string ResourceDirectory() {
  if (const char* dir = std::getenv("VORHOST_RESOURCES"); dir && *dir) return dir;
  return DataDirectory() + "/resources";
}

std::string ModuleDirectory() {
  if (const char* dir = std::getenv("VORMIS_FILES"); dir && *dir) return dir;
  return DataDirectory() + "/dcl";
}

std::vector<std::string> SearchPath() {
  std::vector<std::string> dirs;
  std::string linux_path;
  if (Files().Resolve(Files().CurrentDirectory(0), &linux_path)) dirs.push_back(linux_path);
  if (const char* acad = std::getenv("ACAD")) {
    std::string_view rest = acad;
    while (!rest.empty()) {
      size_t semi = rest.find(';');
      std::string_view dir = Trim(rest.substr(0, semi), " \t\r");
      rest = semi == std::string_view::npos ? std::string_view() : rest.substr(semi + 1);
      if (!dir.empty() && Files().Resolve(dir, &linux_path)) dirs.push_back(linux_path);
    }
  }
  dirs.push_back(ModuleDirectory());
  dirs.push_back(ResourceDirectory());
  return dirs;
}

std::optional<std::string> FindFile(std::string_view name) {
  if (name.find_first_of("\\/:") != std::string_view::npos) {
    std::string linux_path;
    std::error_code ec;
    if (Files().Resolve(name, &linux_path) && std::filesystem::is_regular_file(linux_path, ec))
      return linux_path;
    return std::nullopt;
  }
  for (const std::string& dir : SearchPath())
    if (auto found = FindInFolder(dir, name)) return found;
  return std::nullopt;
}

std::optional<std::string> FindApplication(std::string_view name) {
  std::string file(name);
  size_t base = file.find_last_of("\\/:");
  base = base == std::string::npos ? 0 : base + 1;
  if (file.find('.', base) == std::string::npos) file += ".arx";
  if (auto found = FindFile(file)) return found;
  if (base != 0) return std::nullopt;
  std::string dir = LibraryDirectory();
  if (dir.empty()) return std::nullopt;
  return FindInFolder(dir, file);
}

}  // namespace vorhost
