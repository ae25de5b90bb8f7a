// replace_file.cpp - saving a file whole through a temporary file beside it.
#include "emulator/platform/replace_file.h"

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <vector>

namespace vorhost {
namespace {

// The temporary file is the file's name, this mark and six random letters
// or digits: "ELINE.CAT.vorhost-k3x9qa". A name too long to take the mark
// is left out, so the temporary name stays within the system's limit.
constexpr char kTemporaryMark[] = ".vorhost-";
constexpr size_t kLongestNameKept = 200;
constexpr int kMaxLinks = 40;  // as the kernel follows at most

std::string RandomSuffix() {
  static uint64_t state = 0;
  if (state == 0) {
    state = (static_cast<uint64_t>(getpid()) << 32) ^ static_cast<uint64_t>(std::time(nullptr)) ^
            reinterpret_cast<uintptr_t>(&state);
  }
  static const char kChars[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::string suffix;
  for (int i = 0; i < 6; ++i) {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    suffix += kChars[(state >> 33) % (sizeof kChars - 1)];
  }
  return suffix;
}

// The file that writing to path reaches: symbolic links followed to their
// end; a link to nothing reaches the file it names. False (errno set) for a
// loop of links or a link that cannot be read.
bool FollowLinks(const std::string& path, std::string* target) {
  std::string current = path;
  std::vector<char> buf(PATH_MAX);
  for (int hops = 0; hops <= kMaxLinks; ++hops) {
    struct stat st;
    if (lstat(current.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) {
      *target = std::move(current);
      return true;
    }
    ssize_t n = readlink(current.c_str(), buf.data(), buf.size());
    if (n < 0) return false;
    if (static_cast<size_t>(n) >= buf.size()) {
      errno = ENAMETOOLONG;
      return false;
    }
    std::string to(buf.data(), static_cast<size_t>(n));
    size_t slash = current.rfind('/');
    current = to[0] == '/' || slash == std::string::npos ? to : current.substr(0, slash + 1) + to;
  }
  errno = ELOOP;
  return false;
}

std::string Reason(const SaveFailure& failure) {
  if (failure.read_only) return "the file is read-only";
  switch (failure.code) {
    case ENOSPC:
    case EDQUOT:
      return "the disk is full";
    case EROFS:
      return "the disk is read-only";
    case EISDIR:
      return "it is a directory";
    case ENOENT:
    case ENOTDIR:
      return "no such directory";
    case EACCES:
    case EPERM:
      return "access denied";
    case ENAMETOOLONG:
      return "the name is too long";
    case ELOOP:
      return "too many symbolic links";
  }
  std::string text = std::strerror(failure.code);
  if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z') text[0] = static_cast<char>(text[0] - 'A' + 'a');
  return text;
}

}  // namespace

int WriteRefusal(const std::string& linux_path, const struct stat& st) {
  if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return EACCES;
  if (access(linux_path.c_str(), W_OK) == 0) return 0;
  return errno == EROFS ? EROFS : EACCES;
}

std::string SaveFailureMessage(std::string_view name, const SaveFailure& failure) {
  std::string message = "Cannot save ";
  message += name;
  message += ": " + Reason(failure);
  if (failure.kept_file && !failure.read_only) message += "; the file is left as it was";
  return message + ".";
}

bool FileReplacement::Begin(const std::string& linux_path) {
  Discard();
  failure_ = {};
  existed_ = in_place_ = false;
  struct stat st;
  if (stat(linux_path.c_str(), &st) == 0 && !S_ISREG(st.st_mode) && !S_ISDIR(st.st_mode)) {
    if (int refusal = WriteRefusal(linux_path, st)) return Failed(refusal);
    target_ = linux_path;
    in_place_ = true;
    fd_ = open(linux_path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    return fd_ >= 0 || Failed(errno);
  }
  if (!FollowLinks(linux_path, &target_)) return Failed(errno);
  existed_ = stat(target_.c_str(), &old_) == 0;
  if (existed_ && S_ISDIR(old_.st_mode)) {
    existed_ = false;  // nothing of a file to keep
    return Failed(EISDIR);
  }
  if (existed_) {
    int refusal = WriteRefusal(target_, old_);
    failure_.read_only = refusal == EACCES;
    if (refusal) return Failed(refusal);
  }
  return MakeTemporary();
}

bool FileReplacement::MakeTemporary() {
  size_t slash = target_.rfind('/');
  std::string dir = slash == std::string::npos ? "" : target_.substr(0, slash + 1);
  std::string name = slash == std::string::npos ? target_ : target_.substr(slash + 1);
  if (name.size() > kLongestNameKept) name.clear();
  for (int tries = 0; tries < 100; ++tries) {
    std::string temp = dir + name + kTemporaryMark + RandomSuffix();
    // A new file gets the usual permissions (the umask applies); a
    // replaced one gets its own at the end.
    fd_ = open(temp.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, existed_ ? 0600 : 0666);
    if (fd_ >= 0) {
      temp_ = std::move(temp);
      return true;
    }
    if (errno != EEXIST) return Failed(errno);
  }
  return Failed(EEXIST);
}

bool FileReplacement::Write(std::string_view data) {
  if (fd_ < 0 || failure_.code != 0) return false;
  while (!data.empty()) {
    ssize_t n = ::write(fd_, data.data(), data.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      Fail(n < 0 ? errno : EIO);
      return false;
    }
    data.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

void FileReplacement::Fail(int code) {
  if (failure_.code != 0) return;
  failure_.code = code;
  failure_.kept_file = existed_ && !in_place_;
}

bool FileReplacement::Commit() {
  if (failure_.code != 0) {
    Discard();
    return false;
  }
  if (fd_ < 0) return Failed(EBADF);
  if (in_place_) {
    int closed = close(fd_);
    fd_ = -1;
    return closed == 0 || Failed(errno);
  }
  if (fsync(fd_) != 0) return Failed(errno);
  if (existed_) {
    // Only root (or an owner changing the group to one of its own) may
    // keep the owner; the permission bits are kept in any case.
    if (fchown(fd_, old_.st_uid, old_.st_gid) != 0) {
    }
    if (fchmod(fd_, old_.st_mode & 07777) != 0) return Failed(errno);
  }
  int closed = close(fd_);
  fd_ = -1;
  if (closed != 0) return Failed(errno);
  if (rename(temp_.c_str(), target_.c_str()) != 0) return Failed(errno);
  temp_.clear();
  return true;
}

void FileReplacement::Discard() {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
  if (!temp_.empty()) unlink(temp_.c_str());
  temp_.clear();
}

bool FileReplacement::Failed(int code) {
  Fail(code);
  Discard();
  return false;
}

bool ReplaceFile(const std::string& linux_path, std::string_view data, std::string_view shown_name,
                 std::string* err) {
  FileReplacement file;
  if (file.Begin(linux_path) && file.Write(data) && file.Commit()) return true;
  if (err) *err = SaveFailureMessage(shown_name, file.failure());
  return false;
}

}  // namespace vorhost
