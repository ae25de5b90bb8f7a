// replace_file_test.cpp - saving files whole: permissions and links kept,
// failed or abandoned saves that leave the old file and nothing else, and
// devices written in place. Full disks and read-only files are arranged by
// the tests of the saves that use this (platform, SAVEAS, W2, the module).
#include "emulator/platform/replace_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>


namespace vorhost {
namespace {

namespace fs = std::filesystem;

class ReplaceFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[] = "/tmp/vor_replace_XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    root_ = dir;
  }
  void TearDown() override {
    std::error_code ec;
    fs::remove_all(root_, ec);
  }

  std::string Path(const std::string& name) const { return root_ + "/" + name; }
  void Write(const std::string& name, const std::string& bytes) {
    std::ofstream(Path(name), std::ios::binary) << bytes;
  }
  std::string Read(const std::string& name) const {
    std::ifstream in(Path(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  mode_t Mode(const std::string& name) const {
    struct stat st;
    return stat(Path(name).c_str(), &st) == 0 ? st.st_mode & 07777 : 0;
  }
  // What is in the folder (or a folder below it), sorted.
  std::vector<std::string> Names(const std::string& sub = "") const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sub.empty() ? root_ : Path(sub)))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  // Saves bytes as the file; the message, or "" when it was saved.
  std::string Save(const std::string& name, const std::string& bytes) {
    std::string err;
    return ReplaceFile(Path(name), bytes, "C:\\" + name, &err) ? "" : err;
  }

  std::string root_;
};

TEST_F(ReplaceFileTest, ReplacesTheFileKeepingItsPermissionsAndLinks) {
  Write("A.CAT", "old");
  chmod(Path("A.CAT").c_str(), 0640);
  EXPECT_EQ(Save("A.CAT", "new"), "");
  EXPECT_EQ(Read("A.CAT"), "new");
  EXPECT_EQ(Mode("A.CAT"), 0640u);

  fs::create_directory(Path("REAL"));
  Write("REAL/B.CAT", "old");
  fs::create_symlink("REAL/B.CAT", Path("B.CAT"));
  fs::create_symlink("NOWHERE.CAT", Path("C.CAT"));  // a link to nothing yet
  EXPECT_EQ(Save("B.CAT", "through the link"), "");
  EXPECT_EQ(Save("C.CAT", "made"), "");
  EXPECT_TRUE(fs::is_symlink(Path("B.CAT"))) << "the link stays a link";
  EXPECT_EQ(Read("REAL/B.CAT"), "through the link");
  EXPECT_TRUE(fs::is_symlink(Path("C.CAT")));
  EXPECT_EQ(Read("NOWHERE.CAT"), "made");
  EXPECT_EQ(Names(), (std::vector<std::string>{"A.CAT", "B.CAT", "C.CAT", "NOWHERE.CAT", "REAL"}));
  EXPECT_EQ(Names("REAL"), std::vector<std::string>{"B.CAT"});

  chmod(Path("REAL/B.CAT").c_str(), 0444);
  EXPECT_EQ(Save("B.CAT", "new"), "Cannot save C:\\B.CAT: the file is read-only.") << "also through a link";
  EXPECT_EQ(Read("REAL/B.CAT"), "through the link");
}

TEST_F(ReplaceFileTest, AnUncommittedOrFailedReplacementLeavesTheFileAsItWas) {
  Write("A.CAT", "old");
  {
    FileReplacement file;
    ASSERT_TRUE(file.Begin(Path("A.CAT")));
    EXPECT_TRUE(file.Write("half of it"));
  }
  FileReplacement file;
  ASSERT_TRUE(file.Begin(Path("A.CAT")));
  EXPECT_EQ(Names().size(), 2u) << "the temporary file lies beside the file";
  file.Fail(EIO);
  EXPECT_FALSE(file.Commit());
  EXPECT_EQ(SaveFailureMessage("C:\\A.CAT", file.failure()),
            "Cannot save C:\\A.CAT: input/output error; the file is left as it was.");
  EXPECT_EQ(Read("A.CAT"), "old");
  EXPECT_EQ(Names(), std::vector<std::string>{"A.CAT"});
}

TEST_F(ReplaceFileTest, ADeviceIsWrittenInPlaceNeverReplaced) {
  std::string err;
  EXPECT_TRUE(ReplaceFile("/dev/null", "nothing", "/dev/null", &err)) << err;
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace vorhost
