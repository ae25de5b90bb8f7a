// scratch_disk.h - a small tmpfs mounted on a test's folder, to arrange a
// full or a read-only disk. Mounting needs root (CAP_SYS_ADMIN); where the
// machine refuses, the tests that need one skip and say why.
#ifndef VORMIS_TESTS_SUPPORT_SCRATCH_DISK_H
#define VORMIS_TESTS_SUPPORT_SCRATCH_DISK_H

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace vorhost::testing {

class ScratchDisk {
 public:
  // The name of the file that Fill writes.
  static constexpr const char* kFiller = "FILLER";

  // Mounts a tmpfs of 64 KiB on dir, made if missing.
  explicit ScratchDisk(std::string dir) : dir_(std::move(dir)) {
    std::error_code ec;
    std::filesystem::create_directories(dir_, ec);
    mounted_ = mount("tmpfs", dir_.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=64k") == 0;
    if (!mounted_) why_ = std::strerror(errno);
  }
  ~ScratchDisk() {
    if (mounted_) umount2(dir_.c_str(), MNT_DETACH);
  }
  ScratchDisk(const ScratchDisk&) = delete;
  ScratchDisk& operator=(const ScratchDisk&) = delete;

  bool mounted() const { return mounted_; }
  const std::string& why() const { return why_; }

  // Takes every byte left on the disk with the file kFiller.
  void Fill() {
    int fd = open((dir_ + "/" + kFiller).c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    ASSERT_GE(fd, 0) << std::strerror(errno);
    std::vector<char> block(4096, 'f');
    while (write(fd, block.data(), block.size()) > 0) {
    }
    close(fd);
  }

  // Remounts the disk read-only.
  void MakeReadOnly() {
    ASSERT_EQ(mount(nullptr, dir_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0)
        << std::strerror(errno);
  }

  // The names in the disk's root, sorted: what is left after a save.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    std::error_code ec;
    for (std::filesystem::directory_iterator it(dir_, ec), end; !ec && it != end; it.increment(ec))
      names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::string dir_;
  bool mounted_ = false;
  std::string why_;
};

// Skips the test unless the disk is mounted.
#define SKIP_UNLESS_MOUNTED(disk) \
  if (!(disk).mounted())          \
  GTEST_SKIP() << "cannot mount a small tmpfs here (it needs root): " << (disk).why()

}  // namespace vorhost::testing

#endif
