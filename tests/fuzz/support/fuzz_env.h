// fuzz_env.h - what the fuzz targets share: a scratch drive C: in a folder
// of its own, and an emulated host with the module loaded, put back before
// each input so that nothing of one input reaches the next. fuzz_env.cpp
// also gives libFuzzer its LLVMFuzzerInitialize: the host's own files and
// the module's dialog files are found in the sources.
#ifndef VORMIS_TESTS_FUZZ_SUPPORT_FUZZ_ENV_H
#define VORMIS_TESTS_FUZZ_SUPPORT_FUZZ_ENV_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/session/host.h"
#include "emulator/ui/script.h"

namespace vorfuzz {

// The drive C: of the process: a new folder vor_fuzz.PID under /dev/shm
// when that exists (so inputs never reach a disk), else under $TMPDIR or
// /tmp, mounted as C: and made current. The folder is removed at exit, and
// those of processes that are gone (crashed, killed) when the next one
// starts. Every write of a fuzz target, the module's and the host's
// included, lands in it, since the host resolves every path through its
// drives.
class ScratchDrive {
 public:
  // The drive, mounted at first use.
  static ScratchDrive& Get();

  // Removes everything below the root and mounts C: afresh on it (current
  // directories back at the root, C: current).
  void Reset();
  // A file at path (relative, "/" separated) holding exactly bytes.
  void Write(const std::string& path, std::string_view bytes);
  // The bytes of a file; "" when it cannot be read.
  std::string Read(const std::string& path) const;

  const std::string& root() const { return root_; }

 private:
  ScratchDrive();
  std::string root_;
};

// The emulated host of a fuzz target, with the module loaded (messages 1
// and 3): one per process, since loading dialog files anew for every
// input would cost more than the input. Begin puts it back before each
// input; what stays is only what the module would also find in a host that
// runs on: dialog files loaded by the target itself.
class Session {
 public:
  static Session& Get();

  // A new drawing (messages 4 and 3; the command language afresh, VORMIS
  // set to C:/VOR), the transcript forgotten, no command pending, the drive
  // emptied, the catalogue's state put back as the module starts, no
  // allocation failure pending, and no user: every question is cancelled.
  void Begin();
  // The user answers with these script lines (UTF-8) from now on.
  void Answer(std::vector<std::string> lines);

  vorhost::Host& host() { return host_; }

 private:
  Session();
  vorhost::Host host_;
  std::unique_ptr<vorhost::ScriptUser> user_;
};

// The input as a text (the bytes as they are).
inline std::string_view Bytes(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Whether the fault named is to be stepped around: it is listed in the
// comma-separated VOR_FUZZ_SKIP, as tools/run-fuzz sets it from
// tests/fuzz/known-faults for faults being fixed elsewhere.
bool Skipping(std::string_view fault);

// Stops the fuzzer with message when a property that must hold does not:
// libFuzzer keeps the input that broke it.
[[noreturn]] void Broken(const std::string& message);

}  // namespace vorfuzz

#endif
