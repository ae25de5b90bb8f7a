// textfile.cpp - DOS text-mode streams: CR LF on disk, "\n" in memory, 0x1A ends the file.
#include "emulator/platform/textfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "emulator/core/encoding.h"
#include "emulator/platform/replace_file.h"

namespace vorhost {
namespace {

constexpr char kEndOfFile = 0x1A;
constexpr size_t kReadAhead = 4096;
// Lines longer than this are not checked for Big5: none of the module's
// files has them, and a file without line ends would be kept whole.
constexpr size_t kCheckedLineMax = 65536;

// Watches the text given out by a stream, line by line, for the first line
// that is not Big5 text.
class LineCheck {
 public:
  explicit LineCheck(NotBig5Handler handler) : handler_(std::move(handler)) {}

  void Take(const char* text, size_t size) {
    for (size_t i = 0; i < size && handler_; ++i) {
      if (text[i] == '\n') {
        EndLine();
      } else if (line_.size() < kCheckedLineMax) {
        line_ += text[i];
      } else {
        too_long_ = true;
      }
    }
  }

  // The text has ended: the last line need not end with a line feed.
  void End() {
    if (!line_.empty()) EndLine();
  }

  // The reader moved: line numbers would no longer be true.
  void Stop() { handler_ = nullptr; }

 private:
  void EndLine() {
    if (handler_ && !too_long_ && !IsBig5Text(line_)) {
      handler_(number_, line_);
      handler_ = nullptr;  // once per stream
    }
    line_.clear();
    too_long_ = false;
    ++number_;
  }

  NotBig5Handler handler_;
  std::string line_;
  bool too_long_ = false;
  int number_ = 1;
};

SaveReporter save_reporter = nullptr;

void Report(const std::string& message) {
  if (save_reporter) save_reporter(message);
}

// The file behind one stream. It owns the descriptor (or the replacement
// that a stream opened with "w" writes) and the raw bytes read ahead; the
// FILE owns it and deletes it when closed.
class TextFile {
 public:
  TextFile(int fd, bool binary, std::string_view shown_name, NotBig5Handler not_big5 = {})
      : fd_(fd), binary_(binary), shown_name_(shown_name), check_(std::move(not_big5)) {}
  TextFile(std::unique_ptr<FileReplacement> replacement, bool binary, std::string_view shown_name)
      : fd_(replacement->fd()), binary_(binary), shown_name_(shown_name),
        replacement_(std::move(replacement)), check_({}) {}
  ~TextFile() {
    if (fd_ >= 0 && !replacement_) ::close(fd_);
  }
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  ssize_t Read(char* out, size_t size);
  ssize_t Write(const char* data, size_t size);
  int Seek(off64_t* offset, int whence);
  int Close();

 private:
  // Reads more raw bytes: 1 when some came, 0 at the end, -1 on error.
  int Fill();
  // Moves the descriptor back over raw bytes read but not yet given out,
  // so that it stands where the reader does.
  bool DropReadAhead();

  int fd_;
  bool binary_;  // bytes pass unchanged
  std::string shown_name_;  // the file as the user named it, for messages
  std::unique_ptr<FileReplacement> replacement_;
  int write_error_ = 0;  // the errno of the first write that failed
  LineCheck check_;      // told the text read, when the opener asked for it
  char raw_[kReadAhead];
  size_t begin_ = 0;  // raw_[begin_, end_) is read but not given out
  size_t end_ = 0;
  bool pending_cr_ = false;  // a CR was read; what follows decides its fate
  bool ended_ = false;       // a 0x1A was read: nothing more to give
};

int TextFile::Fill() {
  ssize_t got;
  do {
    got = ::read(fd_, raw_, sizeof raw_);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) return got < 0 ? -1 : 0;
  begin_ = 0;
  end_ = static_cast<size_t>(got);
  return 1;
}

ssize_t TextFile::Read(char* out, size_t size) {
  size_t count = 0;
  bool at_end = ended_;
  while (count < size && !ended_) {
    if (begin_ == end_) {
      int filled = Fill();
      if (filled < 0) {
        check_.Take(out, count);
        return count > 0 ? static_cast<ssize_t>(count) : -1;
      }
      if (filled == 0) {
        if (pending_cr_) out[count++] = '\r';  // a CR that ends the file stays
        pending_cr_ = false;
        at_end = true;
        break;
      }
    }
    if (binary_) {
      size_t n = std::min(size - count, end_ - begin_);
      std::memcpy(out + count, raw_ + begin_, n);
      begin_ += n;
      count += n;
      continue;
    }
    char c = raw_[begin_];
    if (pending_cr_) {
      pending_cr_ = false;
      out[count++] = c == '\n' ? '\n' : '\r';
      if (c == '\n') ++begin_;  // else c is looked at afresh next time round
      continue;
    }
    ++begin_;
    if (c == kEndOfFile) {
      ended_ = at_end = true;
    } else if (c == '\r') {
      pending_cr_ = true;
    } else {
      out[count++] = c;
    }
  }
  check_.Take(out, count);
  if (at_end) check_.End();
  return static_cast<ssize_t>(count);
}

// After a failed write nothing more is written, so that the file never
// holds what came after a gap. The stream reports an error on 0.
ssize_t TextFile::Write(const char* data, size_t size) {
  if (write_error_ != 0) return 0;
  if (!DropReadAhead()) {
    write_error_ = errno;
    return 0;
  }
  std::string raw;
  raw.reserve(size + size / 8 + 1);
  for (size_t i = 0; i < size; ++i) {
    if (data[i] == '\n' && !binary_) raw += '\r';
    raw += data[i];
  }
  for (size_t done = 0; done < raw.size();) {
    ssize_t put = ::write(fd_, raw.data() + done, raw.size() - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) {
      write_error_ = put < 0 ? errno : EIO;
      return 0;
    }
    done += static_cast<size_t>(put);
  }
  return static_cast<ssize_t>(size);
}

bool TextFile::DropReadAhead() {
  off64_t unread = static_cast<off64_t>(end_ - begin_) + (pending_cr_ ? 1 : 0);
  begin_ = end_ = 0;
  pending_cr_ = false;
  ended_ = false;
  return unread == 0 || lseek64(fd_, -unread, SEEK_CUR) >= 0;
}

int TextFile::Seek(off64_t* offset, int whence) {
  check_.Stop();
  if (!DropReadAhead()) return -1;
  off64_t position = lseek64(fd_, *offset, whence);
  if (position < 0) return -1;
  *offset = position;
  return 0;
}

// A stream opened with "w" puts its file in place only when every write
// and the close succeeded; otherwise the old file stays and the host says
// why. An append that failed has changed the file, and says so too.
int TextFile::Close() {
  int fd = fd_;
  fd_ = -1;
  SaveFailure failure;
  if (replacement_) {
    if (write_error_ != 0) replacement_->Fail(write_error_);
    if (replacement_->Commit()) return 0;
    failure = replacement_->failure();
  } else {
    int closed = ::close(fd);
    if (write_error_ == 0) return closed;
    failure.code = write_error_;
  }
  Report(SaveFailureMessage(shown_name_, failure));
  errno = failure.code;
  return -1;
}

ssize_t ReadHook(void* cookie, char* buf, size_t size) {
  return static_cast<TextFile*>(cookie)->Read(buf, size);
}

ssize_t WriteHook(void* cookie, const char* buf, size_t size) {
  return static_cast<TextFile*>(cookie)->Write(buf, size);
}

int SeekHook(void* cookie, off64_t* offset, int whence) {
  return static_cast<TextFile*>(cookie)->Seek(offset, whence);
}

int CloseHook(void* cookie) {
  std::unique_ptr<TextFile> file(static_cast<TextFile*>(cookie));
  return file->Close();
}

// An fopen mode taken apart.
struct Mode {
  int flags = 0;       // for open(2), except for "w", which replaces the file
  char stdio[3] = {};  // "r", "w+", ...: what fopencookie understands
  bool binary = false;
  bool replace = false;  // "w": the file is written whole and replaced at the close
};

bool ParseMode(const char* text, Mode* mode) {
  if (!text) return false;
  bool update = std::strchr(text, '+') != nullptr;
  mode->binary = std::strchr(text, 'b') != nullptr;
  switch (text[0]) {
    case 'r':
      mode->flags = update ? O_RDWR : O_RDONLY;
      break;
    case 'w':
      mode->replace = true;
      break;
    case 'a':
      mode->flags = (update ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
      break;
    default:
      return false;
  }
  mode->stdio[0] = text[0];
  mode->stdio[1] = update ? '+' : '\0';
  return true;
}

bool IsDirectory(int fd) {
  struct stat st;
  return fstat(fd, &st) == 0 && S_ISDIR(st.st_mode);
}

// Drops a 0x1A that ends the file, as DOS does when a text file is opened
// for reading and appending.
bool DropEndMark(int fd) {
  off64_t size = lseek64(fd, 0, SEEK_END);
  char last = 0;
  if (size <= 0 || pread64(fd, &last, 1, size - 1) != 1 || last != kEndOfFile) return true;
  return ftruncate64(fd, size - 1) == 0;
}

// The file behind a stream that is not opened with "w": opened in place,
// a read-only file refused for writing (EACCES) even to root.
std::unique_ptr<TextFile> OpenInPlace(const std::string& linux_path, const Mode& mode,
                                      std::string_view shown_name, NotBig5Handler not_big5) {
  struct stat st;
  if ((mode.flags & O_ACCMODE) != O_RDONLY && stat(linux_path.c_str(), &st) == 0) {
    if (int refusal = WriteRefusal(linux_path, st); refusal != 0 && !S_ISDIR(st.st_mode)) {
      errno = refusal;
      return nullptr;
    }
  }
  int fd = ::open(linux_path.c_str(), mode.flags | O_CLOEXEC, 0666);
  if (fd < 0) return nullptr;
  if (mode.binary) not_big5 = nullptr;  // only text is checked
  auto file = std::make_unique<TextFile>(fd, mode.binary, shown_name, std::move(not_big5));
  if (IsDirectory(fd)) {
    errno = EISDIR;
    return nullptr;
  }
  if (!mode.binary && mode.stdio[0] == 'a' && mode.stdio[1] == '+' && !DropEndMark(fd)) return nullptr;
  return file;
}

std::unique_ptr<TextFile> OpenReplacement(const std::string& linux_path, const Mode& mode,
                                          std::string_view shown_name) {
  auto replacement = std::make_unique<FileReplacement>();
  if (!replacement->Begin(linux_path)) {
    errno = replacement->failure().code;
    return nullptr;
  }
  return std::make_unique<TextFile>(std::move(replacement), mode.binary, shown_name);
}

}  // namespace

void SetSaveReporter(SaveReporter reporter) { save_reporter = reporter; }

FILE* OpenTextMode(const std::string& linux_path, const char* mode_text, std::string_view shown_name,
                   NotBig5Handler not_big5) {
  Mode mode;
  if (!ParseMode(mode_text, &mode)) {
    errno = EINVAL;
    return nullptr;
  }
  std::unique_ptr<TextFile> file = mode.replace ? OpenReplacement(linux_path, mode, shown_name)
                                                : OpenInPlace(linux_path, mode, shown_name, std::move(not_big5));
  if (!file) return nullptr;
  cookie_io_functions_t hooks = {ReadHook, WriteHook, SeekHook, CloseHook};
  FILE* stream = fopencookie(file.get(), mode.stdio, hooks);
  if (stream) file.release();
  return stream;
}

}  // namespace vorhost
