// replace_file.h - saving a file whole: what is written goes to a temporary
// file beside it, which takes the file's place only once all of it is on
// the disk. Every save of the host and every file the module writes from
// the start goes through here.
#ifndef VORHOST_PLATFORM_REPLACE_FILE_H
#define VORHOST_PLATFORM_REPLACE_FILE_H

#include <sys/stat.h>
#include <sys/types.h>

#include <string>
#include <string_view>

namespace vorhost {

// Why the file at linux_path (described by st, links followed) may not be
// written: 0 when it may; EACCES when it is read-only, that is when it has
// no write permission bit at all (the DOS read-only attribute, which binds
// root too) or the process may not write it; EROFS when its file system is
// mounted read-only.
int WriteRefusal(const std::string& linux_path, const struct stat& st);

// Why a save failed.
struct SaveFailure {
  int code = 0;            // the errno of the step that failed
  bool read_only = false;  // refused by the file's read-only attribute
  bool kept_file = false;  // a file was there, and is left as it was
};

// The line the host shows for a failed save of the file the user calls
// name: "Cannot save NAME: REASON." and, when a file was there before and
// was not refused as read-only, "; the file is left as it was" before the
// full stop.
std::string SaveFailureMessage(std::string_view name, const SaveFailure& failure);

// One save of one file. Begin makes the temporary file; the caller writes
// it (Write, or through fd()); Commit puts it in the file's place. A
// replacement that is not committed is discarded: the temporary file is
// removed and the file is left as it was.
//
// A symbolic link is written through: the file it names is replaced and
// the link stays. The replaced file keeps its permission bits (and, where
// the process may set them, its owner and group). An existing target that
// is neither a regular file nor a directory (a device, a pipe) cannot be
// replaced and is written in place.
class FileReplacement {
 public:
  FileReplacement() = default;
  ~FileReplacement() { Discard(); }
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  // Starts the save of the file at linux_path, which need not exist. False,
  // with failure() set, for a directory (EISDIR), a file that may not be
  // written (see WriteRefusal), or when the temporary file cannot be made.
  bool Begin(const std::string& linux_path);

  // The temporary file, open for reading and writing; -1 before Begin.
  int fd() const { return fd_; }

  // Writes all of data at the descriptor's position; false, with failure()
  // set, when not all of it went.
  bool Write(std::string_view data);

  // Records that a write the caller made through fd() failed with code;
  // Commit will then discard.
  void Fail(int code);

  // Flushes the temporary file to the disk, gives it the file's permissions,
  // closes it and renames it over the file. On any failure, or after Fail,
  // the temporary file is removed and false returned with failure() set.
  bool Commit();

  // Closes and removes the temporary file, if any.
  void Discard();

  const SaveFailure& failure() const { return failure_; }

 private:
  bool Failed(int code);
  bool MakeTemporary();

  std::string target_;  // the file replaced: linux_path with links followed
  std::string temp_;    // the temporary file; empty once renamed or removed
  int fd_ = -1;
  bool in_place_ = false;  // the target is a device or pipe, written directly
  bool existed_ = false;
  struct stat old_ = {};   // the target as it was, when it existed
  SaveFailure failure_;
};

// Saves data as the whole of the file at linux_path. On failure *err is the
// message for the file the user calls shown_name.
bool ReplaceFile(const std::string& linux_path, std::string_view data, std::string_view shown_name,
                 std::string* err);

}  // namespace vorhost

#endif
