// host_fixture.h - a fresh emulated host per test: drive C: over a temporary
// folder, the transcript kept for assertions, the user played by a script.
#ifndef VORMIS_TESTS_SUPPORT_HOST_FIXTURE_H
#define VORMIS_TESTS_SUPPORT_HOST_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/session/host.h"
#include "emulator/ui/script.h"

namespace vorhost::testing {

class HostTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // The user's next answers, as script lines (UTF-8).
  void Answer(std::vector<std::string> lines);

  // A file on drive C: (path relative to its folder, "/" separated) with
  // exactly these bytes, and the bytes of one.
  void WriteFile(const std::string& path, std::string_view bytes);
  std::string ReadFile(const std::string& path) const;
  bool FileExists(const std::string& path) const;
  std::string LinuxPath(const std::string& path) const { return root_ + "/" + path; }

  // The transcript so far, in UTF-8.
  const std::string& Output() const { return host_->transcript().text(); }
  // Sets a command-language symbol to a text.
  void SetSymbol(const std::string& name, const std::string& text);

  // Big5 bytes of a UTF-8 text.
  static std::string Big5(std::string_view utf8);

  std::string root_;
  std::unique_ptr<Host> host_;
  std::unique_ptr<ScriptUser> user_;
};

}  // namespace vorhost::testing

#endif
