// host_fixture.cpp - the per-test host.
#include "support/host_fixture.h"
#include "support/files.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "emulator/core/alloc.h"
#include "emulator/core/encoding.h"
#include "emulator/platform/filesystem.h"

namespace vorhost::testing {

void HostTest::SetUp() {
  char dir[] = "/tmp/vor_test_XXXXXX";
  ASSERT_NE(mkdtemp(dir), nullptr);
  root_ = dir;
  std::string err;
  ASSERT_TRUE(Files().Mount('C', root_, &err)) << err;
  Files().SetCurrentDrive(3);
  host_ = std::make_unique<Host>();
  Answer({});
}

void HostTest::TearDown() {
  host_.reset();
  user_.reset();
  ClearAllocationFailures();
  Files().Reset();
  std::error_code ec;
  std::filesystem::remove_all(root_, ec);
}

void HostTest::Answer(std::vector<std::string> lines) {
  user_ = std::make_unique<ScriptUser>(*host_, "answers", std::move(lines));
  host_->console().set_user(user_.get());
}

void HostTest::WriteFile(const std::string& path, std::string_view bytes) {
  std::filesystem::path full = LinuxPath(path);
  std::filesystem::create_directories(full.parent_path());
  std::ofstream out(full, std::ios::binary | std::ios::trunc);
  out << bytes;
}

std::string HostTest::ReadFile(const std::string& path) const {
  return FileBytes(LinuxPath(path));
}

bool HostTest::FileExists(const std::string& path) const {
  return std::filesystem::exists(LinuxPath(path));
}

void HostTest::SetSymbol(const std::string& name, const std::string& text) {
  host_->lisp().SetSymbol(name, lisp::Value::String(text));
}

std::string HostTest::Big5(std::string_view utf8) {
  std::string big5;
  EXPECT_TRUE(Utf8ToBig5(utf8, &big5)) << utf8;
  return big5;
}

}  // namespace vorhost::testing
