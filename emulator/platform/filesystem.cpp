// filesystem.cpp - drive letters over Linux folders, and Big5 DOS names.
#include "emulator/platform/filesystem.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"

namespace vorhost {
namespace {

namespace fs = std::filesystem;

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// 0 for A, 25 for Z, -1 for anything else.
int LetterIndex(char letter) { return IsAsciiLetter(letter) ? UpperAscii(letter) - 'A' : -1; }

bool Fail(std::string* err, std::string message) {
  if (err) *err = std::move(message);
  return false;
}

// Linux names are UTF-8, whose multibyte sequences hold no ASCII bytes, so
// folding single bytes is safe here (unlike in Big5).
bool SameIgnoringAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (UpperAscii(a[i]) != UpperAscii(b[i])) return false;
  }
  return true;
}

// dir is a Linux folder without a trailing "/" ("" for the file system root).
std::string JoinLinux(const std::string& dir, std::string_view name) {
  std::string path = dir;
  path += '/';
  path += name;
  return path;
}

bool IsDirectory(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The name in dir that utf8_name stands for: itself when it exists, else
// the first, in byte order, that differs from it only in ASCII case; empty
// when there is none.
std::string FindOnDisk(const std::string& dir, const std::string& utf8_name) {
  struct stat st;
  if (lstat(JoinLinux(dir, utf8_name).c_str(), &st) == 0) return utf8_name;
  std::string best;
  std::error_code ec;
  for (fs::directory_iterator it(dir.empty() ? "/" : dir, ec), end; !ec && it != end;
       it.increment(ec)) {
    std::string name = it->path().filename().string();
    if (SameIgnoringAsciiCase(name, utf8_name) && (best.empty() || name < best)) best = name;
  }
  return best;
}

// The UTF-8 form of one Big5 name. The converter writes a byte that is not
// Big5 as a "\xNN" escape, and a name never holds a real "\", so one in the
// result means the name cannot be given to Linux.
bool NameToUtf8(std::string_view big5, std::string* utf8) {
  *utf8 = Big5ToUtf8(big5);
  return utf8->find('\\') == std::string::npos;
}

// Applies the names of a DOS path in turn: "." stays put, ".." goes up but
// never above the drive's root.
void ApplyNames(std::string_view path, std::vector<std::string>* names) {
  size_t start = 0;
  size_t pos = 0;
  while (true) {
    if (pos < path.size() && !IsSeparator(path[pos])) {
      pos += Big5CharLength(path, pos);
      continue;
    }
    std::string_view name = path.substr(start, pos - start);
    if (name == "..") {
      if (!names->empty()) names->pop_back();
    } else if (!name.empty() && name != ".") {
      names->emplace_back(name);
    }
    if (pos >= path.size()) break;
    start = ++pos;
  }
}

// A name as a list of characters: single bytes folded to upper case, a
// two-byte character as lead * 256 + trail (never equal to a single byte).
std::vector<int> FoldedChars(std::string_view text) {
  std::vector<int> chars;
  for (size_t pos = 0; pos < text.size();) {
    size_t len = Big5CharLength(text, pos);
    auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    chars.push_back(len == 2 ? byte(pos) * 256 + byte(pos + 1)
                             : static_cast<unsigned char>(UpperAscii(text[pos])));
    pos += len;
  }
  return chars;
}

// Whether the rest of a pattern, from p, matches the end of a name: only
// "*"s, optionally after one "." (so "NAME.*" matches "NAME").
bool MatchesNothing(const std::vector<int>& pattern, size_t p) {
  if (p < pattern.size() && pattern[p] == '.') ++p;
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace

size_t FindLastSeparator(std::string_view dos_path) {
  size_t last = std::string_view::npos;
  for (size_t pos = 0; pos < dos_path.size(); pos += Big5CharLength(dos_path, pos)) {
    if (IsSeparator(dos_path[pos])) last = pos;
  }
  return last;
}

bool MatchWildcard(std::string_view pattern_text, std::string_view name_text) {
  const std::vector<int> pattern = FoldedChars(pattern_text);
  const std::vector<int> name = FoldedChars(name_text);
  size_t p = 0;
  size_t n = 0;
  size_t star = std::string_view::npos;  // the last "*" seen, to retry from
  size_t star_n = 0;                     // where the name stood at that "*"
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      star_n = n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++star_n;
    } else {
      return false;
    }
  }
  return MatchesNothing(pattern, p);
}

FileSystem::FileSystem() = default;

FileSystem& Files() {
  static FileSystem files;
  return files;
}

bool FileSystem::Mount(char letter, const std::string& linux_dir, std::string* err) {
  int index = LetterIndex(letter);
  if (index < 0) return Fail(err, std::string("not a drive letter: ") + letter);
  if (!IsDirectory(linux_dir)) return Fail(err, linux_dir + ": not a directory");
  std::error_code ec;
  std::string root = fs::absolute(linux_dir, ec).string();
  if (ec) return Fail(err, linux_dir + ": " + ec.message());
  while (!root.empty() && root.back() == '/') root.pop_back();
  drives_[index] = Drive{true, std::move(root), {}};
  return true;
}

void FileSystem::Unmount(char letter) {
  int index = LetterIndex(letter);
  if (index >= 0) drives_[index] = Drive{};
}

bool FileSystem::IsMounted(char letter) const {
  int index = LetterIndex(letter);
  return index >= 0 && drives_[index].mounted;
}

void FileSystem::Reset() {
  drives_ = {};
  current_drive_ = 3;
}

bool FileSystem::SetCurrentDrive(int drive) {
  const Drive* d = DriveAt(drive);
  if (!d || !d->mounted) return false;
  current_drive_ = drive;
  return true;
}

std::string FileSystem::CurrentDirectory(int drive) const {
  if (drive == 0) drive = current_drive_;
  const Drive* d = DriveAt(drive);
  return d ? Format(drive, d->cwd) : std::string();
}

bool FileSystem::ChangeDirectory(std::string_view dos_path, std::string* err) {
  int drive = 0;
  std::vector<std::string> names;
  if (!Parse(dos_path, &drive, &names)) return Fail(err, "empty path");
  std::string linux_path;
  std::vector<std::string> on_disk;
  if (!MapNames(drive, names, &linux_path, &on_disk)) {
    return Fail(err, DosPath(dos_path) + ": drive not ready");
  }
  if (!IsDirectory(linux_path)) return Fail(err, DosPath(dos_path) + ": no such directory");
  drives_[drive - 1].cwd = std::move(on_disk);
  return true;
}

bool FileSystem::Resolve(std::string_view dos_path, std::string* linux_path) const {
  int drive = 0;
  std::vector<std::string> names;
  return Parse(dos_path, &drive, &names) && MapNames(drive, names, linux_path, nullptr);
}

std::string FileSystem::DosPath(std::string_view dos_path) const {
  int drive = 0;
  std::vector<std::string> names;
  return Parse(dos_path, &drive, &names) ? Format(drive, names) : std::string();
}

std::string FileSystem::ShownName(const std::string& linux_path) const {
  int drive = 0;
  for (int d = 1; d <= kDriveCount; ++d) {
    const std::string& root = drives_[d - 1].root;
    bool inside = linux_path.compare(0, root.size(), root) == 0 &&
                  (linux_path.size() == root.size() || linux_path[root.size()] == '/');
    if (drives_[d - 1].mounted && inside && (drive == 0 || root.size() > drives_[drive - 1].root.size()))
      drive = d;
  }
  if (drive == 0) return linux_path;
  std::vector<std::string> names;
  std::string_view rest = std::string_view(linux_path).substr(drives_[drive - 1].root.size());
  while (!rest.empty()) {
    size_t slash = rest.find('/', 1);
    std::string_view utf8 = rest.substr(1, slash == std::string_view::npos ? rest.npos : slash - 1);
    rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash);
    std::string big5;
    if (utf8.empty() || utf8 == ".") continue;
    // ".." could leave the drive, and a "\" in a Linux name would read as a
    // separator: such a file has no DOS name.
    if (utf8 == ".." || utf8.find('\\') != std::string_view::npos || !Utf8ToBig5(utf8, &big5))
      return linux_path;
    names.push_back(std::move(big5));
  }
  return Format(drive, names);
}

bool FileSystem::Parse(std::string_view dos_path, int* drive,
                       std::vector<std::string>* names) const {
  if (dos_path.empty()) return false;
  *drive = current_drive_;
  if (dos_path.size() >= 2 && dos_path[1] == ':' && LetterIndex(dos_path[0]) >= 0) {
    *drive = LetterIndex(dos_path[0]) + 1;
    dos_path.remove_prefix(2);
  }
  names->clear();
  if (dos_path.empty() || !IsSeparator(dos_path[0])) *names = drives_[*drive - 1].cwd;
  ApplyNames(dos_path, names);
  return true;
}

bool FileSystem::MapNames(int drive, const std::vector<std::string>& names, std::string* linux_path,
                          std::vector<std::string>* on_disk) const {
  const Drive* d = DriveAt(drive);
  if (!d || !d->mounted) return false;
  std::string path = d->root;
  bool exists = true;  // whether every name so far was found on disk
  for (const std::string& name : names) {
    std::string utf8;
    if (!NameToUtf8(name, &utf8)) return false;
    std::string found = exists ? FindOnDisk(path, utf8) : std::string();
    exists = !found.empty();
    path = JoinLinux(path, exists ? found : utf8);
    if (!on_disk) continue;
    std::string big5;
    on_disk->push_back(exists && Utf8ToBig5(found, &big5) ? big5 : name);
  }
  *linux_path = path.empty() ? "/" : path;
  return true;
}

std::string FileSystem::Format(int drive, const std::vector<std::string>& names) {
  std::string text(1, static_cast<char>('A' + drive - 1));
  text += ":\\";
  for (size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += '\\';
    text += names[i];
  }
  return text;
}

const FileSystem::Drive* FileSystem::DriveAt(int drive) const {
  return drive >= 1 && drive <= kDriveCount ? &drives_[drive - 1] : nullptr;
}

}  // namespace vorhost
