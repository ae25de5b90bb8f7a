// platform_api.cpp - the module's operating-system calls over the emulated drives.
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/platform/filesystem.h"
#include "emulator/platform/replace_file.h"
#include "emulator/platform/textfile.h"
#include "emulator/platform/warnings.h"
#include "host/platform.h"

namespace vorhost {
namespace {

namespace fs = std::filesystem;

// One directory search: everything plat_findfirst found, handed out in
// order by plat_findnext.
struct Search {
  std::vector<plat_finddata> entries;
  size_t next = 0;
};

// The open searches, each owned here until plat_findclose. A handle is a
// slot's index plus one; a closed slot is empty and may be reused.
class SearchTable {
 public:
  SearchTable() = default;
  SearchTable(const SearchTable&) = delete;
  SearchTable& operator=(const SearchTable&) = delete;

  intptr_t Open(std::vector<plat_finddata> entries, size_t next) {
    auto search = std::make_unique<Search>(Search{std::move(entries), next});
    auto slot = std::find(searches_.begin(), searches_.end(), nullptr);
    if (slot == searches_.end()) slot = searches_.insert(slot, nullptr);
    *slot = std::move(search);
    return static_cast<intptr_t>(slot - searches_.begin()) + 1;
  }

  Search* Find(intptr_t handle) {
    if (handle < 1 || static_cast<size_t>(handle) > searches_.size()) return nullptr;
    return searches_[static_cast<size_t>(handle) - 1].get();
  }

  bool Close(intptr_t handle) {
    if (!Find(handle)) return false;
    searches_[static_cast<size_t>(handle) - 1].reset();
    return true;
  }

 private:
  std::vector<std::unique_ptr<Search>> searches_;
};

SearchTable& Searches() {
  static SearchTable table;
  return table;
}

// Warnings about the files the module reads, and the files warned about in
// this session (by Linux path).
struct Warnings {
  std::function<void(std::string_view)> sink;
  std::set<std::string> warned;
};

Warnings& TheWarnings() {
  static Warnings warnings;
  return warnings;
}

// Says, once per file, that a file the module reads has a line that is not
// Big5 text: the module would take its bytes as they are and show garbled
// rows without a word.
void WarnNotBig5(const std::string& linux_path, const std::string& dos_path, int line,
                 std::string_view text) {
  Warnings& w = TheWarnings();
  if (!w.sink || !w.warned.insert(linux_path).second) return;
  std::string message = "\nWarning: line " + std::to_string(line) + " of " + dos_path + " is not Big5 text";
  if (LooksLikeUtf8(text)) message += "; it reads as UTF-8 (vorhost --import-text converts such a file)";
  w.sink(message + ".");
}

// Describes the file at linux_path under a Big5 name shorter than
// PLAT_NAME_MAX; false when it cannot be examined (a dangling link).
bool Describe(const std::string& linux_path, std::string_view name, plat_finddata* entry) {
  struct stat st;
  if (stat(linux_path.c_str(), &st) != 0) return false;
  *entry = plat_finddata{};
  bool is_dir = S_ISDIR(st.st_mode);
  entry->attrib = is_dir ? PLAT_A_SUBDIR : PLAT_A_ARCH;
  if (WriteRefusal(linux_path, st) != 0) entry->attrib |= PLAT_A_RDONLY;
  entry->time_write = st.st_mtime;
  entry->size = is_dir ? 0 : static_cast<long>(st.st_size);
  std::memcpy(entry->name, name.data(), name.size());
  entry->name[name.size()] = '\0';
  return true;
}

// Appends "." and ".." when they match the pattern.
void AddDotEntries(const std::string& dir, std::string_view pattern,
                   std::vector<plat_finddata>* entries) {
  plat_finddata entry;
  if (MatchWildcard(pattern, ".") && Describe(dir, ".", &entry)) entries->push_back(entry);
  if (MatchWildcard(pattern, "..") && Describe(dir + "/..", "..", &entry)) {
    entries->push_back(entry);
  }
}

// Appends the entries of dir whose Big5 names match the pattern, ordered by
// their names' bytes with ASCII case ignored. Names Big5 cannot hold, or too
// long for an entry, are left out. False when dir cannot be read.
bool AddMatches(const std::string& dir, std::string_view pattern,
                std::vector<plat_finddata>* entries) {
  struct Found {
    std::string key;
    plat_finddata entry;
  };
  std::vector<Found> found;
  std::error_code ec;
  fs::directory_iterator it(dir, ec);
  for (fs::directory_iterator end; !ec && it != end; it.increment(ec)) {
    std::string name;
    if (!Utf8ToBig5(it->path().filename().string(), &name)) continue;
    if (name.size() >= PLAT_NAME_MAX || !MatchWildcard(pattern, name)) continue;
    Found item{UpperName(name), {}};
    if (Describe(it->path().string(), name, &item.entry)) found.push_back(std::move(item));
  }
  if (ec) return false;
  std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) {
    int order = a.key.compare(b.key);
    return order != 0 ? order < 0 : std::strcmp(a.entry.name, b.entry.name) < 0;
  });
  for (const Found& item : found) entries->push_back(item.entry);
  return true;
}

// Splits a search pattern into the DOS path of its directory and the name
// pattern after it.
void SplitPattern(std::string_view pattern, std::string* dir, std::string_view* name) {
  size_t cut = FindLastSeparator(pattern);
  char first = pattern.empty() ? '\0' : static_cast<char>(pattern[0] | 0x20);
  if (cut == std::string_view::npos && pattern.size() >= 2 && pattern[1] == ':' && first >= 'a' &&
      first <= 'z') {
    cut = 1;  // "C:*.ACF": the current directory of C:
  }
  size_t name_start = cut == std::string_view::npos ? 0 : cut + 1;
  *dir = std::string(pattern.substr(0, name_start)) + ".";
  *name = pattern.substr(name_start);
}

intptr_t FindFirst(std::string_view pattern, plat_finddata* entry) {
  std::string dos_dir;
  std::string_view name_pattern;
  SplitPattern(pattern, &dos_dir, &name_pattern);
  std::string dir;
  if (name_pattern.empty() || !Files().Resolve(dos_dir, &dir)) return -1;
  std::vector<plat_finddata> entries;
  bool at_root = Files().DosPath(dos_dir).size() == 3;  // "C:\"
  if (!at_root) AddDotEntries(dir, name_pattern, &entries);
  if (!AddMatches(dir, name_pattern, &entries) || entries.empty()) return -1;
  *entry = entries.front();
  return Searches().Open(std::move(entries), 1);
}

}  // namespace

void SetWarningSink(std::function<void(std::string_view)> sink) {
  TheWarnings().sink = std::move(sink);
  TheWarnings().warned.clear();
}

}  // namespace vorhost

using vorhost::Files;

extern "C" {

FILE* plat_fopen(const char* dos_path, const char* mode) {
  std::string linux_path;
  if (!dos_path || !mode || !Files().Resolve(dos_path, &linux_path)) {
    errno = ENOENT;
    return nullptr;
  }
  vorhost::NotBig5Handler not_big5;
  bool reads_text = mode[0] == 'r' && !std::strchr(mode, '+') && !std::strchr(mode, 'b');
  if (reads_text) {
    not_big5 = [linux_path, dos = Files().DosPath(dos_path)](int line, std::string_view text) {
      vorhost::WarnNotBig5(linux_path, dos, line, text);
    };
  }
  return vorhost::OpenTextMode(linux_path, mode, Files().DosPath(dos_path), std::move(not_big5));
}

intptr_t plat_findfirst(const char* dos_pattern, struct plat_finddata* entry) {
  if (!dos_pattern || !entry) return -1;
  intptr_t handle = vorhost::FindFirst(dos_pattern, entry);
  if (handle == -1) errno = ENOENT;
  return handle;
}

int plat_findnext(intptr_t handle, struct plat_finddata* entry) {
  vorhost::Search* search = vorhost::Searches().Find(handle);
  if (!search || !entry || search->next >= search->entries.size()) return -1;
  *entry = search->entries[search->next++];
  return 0;
}

int plat_findclose(intptr_t handle) { return vorhost::Searches().Close(handle) ? 0 : -1; }

int plat_localtime(time_t t, struct tm* out) { return out && localtime_r(&t, out) ? 0 : -1; }

int plat_getdrive(void) { return Files().CurrentDrive(); }

int plat_chdrive(int drive) { return Files().SetCurrentDrive(drive) ? 0 : -1; }

char* plat_getdcwd(int drive, char* buf, int size) {
  if (drive == 0) drive = Files().CurrentDrive();
  if (!buf || drive < 1 || drive > vorhost::FileSystem::kDriveCount ||
      !Files().IsMounted(static_cast<char>('A' + drive - 1))) {
    return nullptr;
  }
  std::string cwd = Files().CurrentDirectory(drive);
  if (size < 0 || cwd.size() >= static_cast<size_t>(size)) return nullptr;
  std::memcpy(buf, cwd.c_str(), cwd.size() + 1);
  return buf;
}

const char* plat_getenv(const char* name) { return name ? std::getenv(name) : nullptr; }

}  // extern "C"
