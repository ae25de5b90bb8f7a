// floor.cpp - the least work any program does that turns the panel
// schedules into vorhost's DXF file, for bench/acf_peer/run.py:
//
//   acf_floor SCHEDULE_DIR REFERENCE.dxf OUT.dxf
//
// It finds the schedules (*.ACF in SCHEDULE_DIR, by name), reads each whole
// and splits it into lines and fields, and writes the bytes of
// REFERENCE.dxf (the file vorhost wrote for the same schedules) to OUT.dxf
// as vorhost saves: a temporary file beside it, flushed to the disk, then
// renamed over it. The bytes are loaded before the clock starts: they
// stand for output that costs nothing to compute. What is left is reading
// the input and writing the output, the floor under any implementation.
//
// Prints "wall SECONDS cpu SECONDS fields N" for the timed part; the
// field count keeps the reading from being optimised away.
#include <dirent.h>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

double Clock(clockid_t id) {
  timespec t;
  clock_gettime(id, &t);
  return static_cast<double>(t.tv_sec) + t.tv_nsec * 1e-9;
}

bool ReadWhole(const std::string& path, std::string* out) {
  int fd = open(path.c_str(), O_RDONLY);
  if (fd < 0) return false;
  out->clear();
  char buf[1 << 16];
  ssize_t n;
  while ((n = read(fd, buf, sizeof buf)) > 0) out->append(buf, static_cast<size_t>(n));
  close(fd);
  return n == 0;
}

bool IsSchedule(const char* name) {
  size_t len = std::strlen(name);
  return len > 4 && strcasecmp(name + len - 4, ".ACF") == 0;
}

// Lines (CR LF, up to the end mark 0x1A) and their ";" fields: the number
// of fields, which a drawing program would go on to use.
long CountFields(const std::string& text) {
  long fields = 0;
  size_t end = text.find('\x1A');
  if (end == std::string::npos) end = text.size();
  for (size_t at = 0; at < end;) {
    size_t eol = text.find('\n', at);
    if (eol == std::string::npos || eol > end) eol = end;
    fields += 1 + std::count(text.begin() + static_cast<long>(at), text.begin() + static_cast<long>(eol), ';');
    at = eol + 1;
  }
  return fields;
}

bool WriteReplacing(const std::string& path, const std::string& bytes) {
  std::string temp = path + ".tmp";
  int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (fd < 0) return false;
  for (size_t at = 0; at < bytes.size();) {
    ssize_t n = write(fd, bytes.data() + at, bytes.size() - at);
    if (n <= 0) {
      close(fd);
      return false;
    }
    at += static_cast<size_t>(n);
  }
  bool ok = fsync(fd) == 0;
  ok = close(fd) == 0 && ok;
  return ok && rename(temp.c_str(), path.c_str()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: acf_floor SCHEDULE_DIR REFERENCE.dxf OUT.dxf\n");
    return 2;
  }
  std::string dir = argv[1], dxf;
  if (!ReadWhole(argv[2], &dxf)) {
    std::fprintf(stderr, "acf_floor: cannot read %s\n", argv[2]);
    return 1;
  }
  double wall = Clock(CLOCK_MONOTONIC), cpu = Clock(CLOCK_PROCESS_CPUTIME_ID);

  std::vector<std::string> names;
  if (DIR* d = opendir(dir.c_str())) {
    while (dirent* e = readdir(d))
      if (IsSchedule(e->d_name)) names.push_back(e->d_name);
    closedir(d);
  }
  std::sort(names.begin(), names.end());
  long fields = 0;
  std::string text;
  for (const std::string& name : names) {
    if (!ReadWhole(dir + "/" + name, &text)) {
      std::fprintf(stderr, "acf_floor: cannot read %s/%s\n", dir.c_str(), name.c_str());
      return 1;
    }
    fields += CountFields(text);
  }
  if (!WriteReplacing(argv[3], dxf)) {
    std::fprintf(stderr, "acf_floor: cannot write %s\n", argv[3]);
    return 1;
  }

  std::printf("wall %.6f cpu %.6f fields %ld\n", Clock(CLOCK_MONOTONIC) - wall,
              Clock(CLOCK_PROCESS_CPUTIME_ID) - cpu, fields);
  return 0;
}
