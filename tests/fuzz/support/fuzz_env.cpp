// fuzz_env.cpp - the scratch drive and the per-input host.
#include "support/fuzz_env.h"
#include "emulator/core/text.h"

#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "emulator/core/alloc.h"
#include "emulator/platform/filesystem.h"
#include "host/ads.h"
#include "linetool/catalogue.h"

namespace vorfuzz {
namespace {

constexpr char kPrefix[] = "vor_fuzz.";

// Removes the scratch folders of fuzz processes that are gone: one that
// crashes, times out or is killed never reaches its exit handlers.
void RemoveStale(const std::string& base) {
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(base, ec)) {
    std::string name = entry.path().filename().string();
    if (!name.starts_with(kPrefix)) continue;
    char* end = nullptr;
    long pid = std::strtol(name.c_str() + sizeof kPrefix - 1, &end, 10);
    if (*end || pid <= 0 || (kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH))
      std::filesystem::remove_all(entry.path(), ec);
  }
}

// base/vor_fuzz.PID, made afresh.
std::string MakeRoot() {
  std::string base = "/dev/shm";
  std::error_code ec;
  if (!std::filesystem::is_directory(base, ec) || access(base.c_str(), W_OK) != 0) {
    const char* tmp = getenv("TMPDIR");
    base = tmp && *tmp ? tmp : "/tmp";
  }
  RemoveStale(base);
  std::string dir = base + "/" + kPrefix + std::to_string(getpid());
  std::filesystem::remove_all(dir, ec);
  if (!std::filesystem::create_directory(dir, ec)) {
    std::fprintf(stderr, "vor fuzz: cannot make a scratch folder %s\n", dir.c_str());
    std::abort();
  }
  return dir;
}

// The host finds its resources and the module's dialog files beside the
// program (DataDirectory); a fuzz target lies elsewhere in the build, so it
// names the source tree's folders, unless its caller named others.
[[maybe_unused]] const bool kOwnFilesNamed = [] {
  setenv("VORHOST_RESOURCES", VOR_SOURCE_DIR "/resources", 0);
  setenv("VORMIS_FILES", VOR_SOURCE_DIR "/dcl", 0);
  return true;
}();

void RemoveRoot() {
  std::error_code ec;
  std::filesystem::remove_all(ScratchDrive::Get().root(), ec);
}

}  // namespace

ScratchDrive::ScratchDrive() : root_(MakeRoot()) { std::atexit(RemoveRoot); }

ScratchDrive& ScratchDrive::Get() {
  static ScratchDrive* drive = [] {
    auto* d = new ScratchDrive();
    d->Reset();
    return d;
  }();
  return *drive;
}

void ScratchDrive::Reset() {
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(root_, ec))
    std::filesystem::remove_all(entry.path(), ec);
  vorhost::Files().Reset();
  std::string err;
  if (!vorhost::Files().Mount('C', root_, &err)) Broken("cannot mount C: " + err);
  vorhost::Files().SetCurrentDrive(3);
}

void ScratchDrive::Write(const std::string& path, std::string_view bytes) {
  std::filesystem::path full = std::filesystem::path(root_) / path;
  std::error_code ec;
  std::filesystem::create_directories(full.parent_path(), ec);
  std::ofstream out(full, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) Broken("cannot write " + full.string());
}

std::string ScratchDrive::Read(const std::string& path) const {
  std::string bytes;
  vorhost::ReadWholeFile((std::filesystem::path(root_) / path).string(), &bytes);
  return bytes;
}

Session::Session() {
  ScratchDrive::Get();
  host_.module().Load(acrxEntryPoint);
}

Session& Session::Get() {
  static Session* session = new Session();
  return *session;
}

void Session::Begin() {
  ScratchDrive::Get().Reset();
  vorhost::ClearAllocationFailures();
  catalogue_reset();
  host_.console().set_user(nullptr);
  user_.reset();
  host_.NewDrawing();
  host_.transcript().Clear();
  host_.lisp().SetSymbol("VORMIS", vorhost::lisp::Value::String("C:/VOR"));
}

void Session::Answer(std::vector<std::string> lines) {
  user_ = std::make_unique<vorhost::ScriptUser>(host_, "input", std::move(lines));
  host_.console().set_user(user_.get());
}

bool Skipping(std::string_view fault) {
  const char* list = getenv("VOR_FUZZ_SKIP");
  std::string_view rest = list ? list : "";
  while (!rest.empty()) {
    size_t comma = rest.find(',');
    if (rest.substr(0, comma) == fault) return true;
    rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
  }
  return false;
}

void Broken(const std::string& message) {
  std::fprintf(stderr, "vor fuzz: %s\n", message.c_str());
  std::fflush(stderr);
  std::abort();
}

}  // namespace vorfuzz

// libFuzzer calls this once, before the first input. The host's resources
// and the module's dialog and help files are taken from the sources,
// wherever the target lies; ACAD names no folder, so the module's linetype
// files go to the current directory of the scratch drive.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("VORHOST_RESOURCES", VOR_SOURCE_DIR "/resources", 0);
  setenv("VORMIS_FILES", VOR_SOURCE_DIR "/dcl", 0);
  unsetenv("ACAD");
  return 0;
}
