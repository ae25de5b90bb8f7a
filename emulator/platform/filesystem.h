// filesystem.h - the DOS view (drive letters, current directories) of Linux folders.
#ifndef VORHOST_PLATFORM_FILESYSTEM_H
#define VORHOST_PLATFORM_FILESYSTEM_H

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/encoding.h"

namespace vorhost {

// The drives the module sees. Each mounted letter stands for one Linux
// folder, and a DOS path on that drive can never name anything outside it
// (".." stops at the drive's root). Each drive keeps its own current
// directory, as DOS does, and one drive is current.
//
// DOS paths are the module's Big5 bytes; Linux paths are UTF-8. Names are
// matched without regard to ASCII case, so "c:\vor\eline.cat" finds
// "VOR/ELINE.CAT"; a name that does not exist keeps the case it was given.
//
// There is one instance per process (Files()); it owns only strings. It is
// not thread-safe: the module runs on one thread.
class FileSystem {
 public:
  static constexpr int kDriveCount = 26;

  FileSystem();
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;

  // Makes letter (A-Z, either case) stand for linux_dir, which must be an
  // existing directory. A remount replaces the old folder and returns the
  // drive's current directory to its root.
  bool Mount(char letter, const std::string& linux_dir, std::string* err);
  void Unmount(char letter);
  bool IsMounted(char letter) const;

  // Unmounts everything, makes C: current and every directory its root.
  void Reset();

  // Drives are numbered from 1 for A:. Only a mounted drive can be made
  // current.
  int CurrentDrive() const { return current_drive_; }
  bool SetCurrentDrive(int drive);

  // The current directory of a drive (0 for the current drive) as a full DOS
  // path: "C:\VOR", "C:\". Empty for a drive number out of range.
  std::string CurrentDirectory(int drive) const;

  // Sets the current directory of the drive the path names (not necessarily
  // the current drive). The directory must exist; the names are kept in the
  // case they have on disk.
  bool ChangeDirectory(std::string_view dos_path, std::string* err);

  // The Linux path a DOS path stands for; false for an empty path or one on
  // a drive that is not mounted. The path need not exist.
  bool Resolve(std::string_view dos_path, std::string* linux_path) const;

  // The full DOS form of a path ("C:\ACF\P1.ACF"): drive letter upper case,
  // "." and ".." removed, names as given. Empty for an empty path.
  std::string DosPath(std::string_view dos_path) const;

  // The name the user knows a Linux file by: its DOS path when it lies on
  // a mounted drive (the drive with the longest folder, if several hold
  // it), else the Linux path itself, as for the host's own files.
  std::string ShownName(const std::string& linux_path) const;

 private:
  struct Drive {
    bool mounted = false;
    std::string root;              // Linux folder, no trailing "/"
    std::vector<std::string> cwd;  // Big5 names below the root
  };

  // Splits a DOS path into its drive (1 = A) and the names from that
  // drive's root, with "." and ".." applied.
  bool Parse(std::string_view dos_path, int* drive, std::vector<std::string>* names) const;
  // Maps names below a drive's root to a Linux path; *on_disk (optional)
  // receives the names in the case found on disk, in Big5.
  bool MapNames(int drive, const std::vector<std::string>& names, std::string* linux_path,
                std::vector<std::string>* on_disk) const;
  static std::string Format(int drive, const std::vector<std::string>& names);

  const Drive* DriveAt(int drive) const;

  std::array<Drive, kDriveCount> drives_;
  int current_drive_ = 3;
};

// The process's drives.
FileSystem& Files();

// Helpers for DOS names in Big5, where the second byte of a two-byte
// character may look like "\" or an ASCII letter and must not be taken
// for one (see Big5CharLength).

// The position of the last "\" or "/" separator, or npos.
size_t FindLastSeparator(std::string_view dos_path);

// Whether a name matches a DOS pattern: "*" any run of characters, "?" one
// character, letters in any case; a trailing ".*" also matches a name
// without an extension, so "*.*" matches every name.
bool MatchWildcard(std::string_view pattern, std::string_view name);

}  // namespace vorhost

#endif
