// replace_file.cpp - whole-file replacement through a temporary file.
#include "emulator/io/replace_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace vorhost {
namespace {

std::string SystemError(const std::string& path, const char* what) {
  return path + ": " + what + ": " + std::strerror(errno);
}

}  // namespace

bool ReplaceFile(const std::string& path, const std::string& data, std::string* err) {
  std::string tmp = path + ".XXXXXX";
  int fd = mkstemp(tmp.data());
  if (fd < 0) {
    *err = SystemError(path, "cannot create");
    return false;
  }
  bool ok = fchmod(fd, 0644) == 0;
  for (size_t done = 0; ok && done < data.size();) {
    ssize_t n = write(fd, data.data() + done, data.size() - done);
    if (n < 0 && errno == EINTR) continue;
    ok = n > 0;
    if (ok) done += static_cast<size_t>(n);
  }
  if (!ok) *err = SystemError(path, "cannot write");
  if (close(fd) != 0 && ok) {
    *err = SystemError(path, "cannot write");
    ok = false;
  }
  if (ok && rename(tmp.c_str(), path.c_str()) != 0) {
    *err = SystemError(path, "cannot replace");
    ok = false;
  }
  if (!ok) unlink(tmp.c_str());
  return ok;
}

}  // namespace vorhost
