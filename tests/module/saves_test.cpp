// saves_test.cpp - the module's files on a full disk and read-only ones: a
// catalogue after an edit, the file notes, the linetype files. The old file
// stays byte for byte, nothing else is left beside it, and the host (not
// the module) says why in one line.
#include <stdlib.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <vector>

#include "support/module_fixture.h"
#include "support/scratch_disk.h"

namespace vorhost::testing {
namespace {

const char kCatalogue[] =
    "(\"E1\" \"ELINE1\" \"E-POWER\" \"1\" \"\" \"\" \"A,.5,-.25\")\r\n"
    "(\"E2\" \"ELINE2\" \"E-POWER\" \"1\" \"\" \"\" \"A,1,-1\")\r\n\x1A";

class SavesTest : public ModuleTest {
 protected:
  void TearDown() override {
    disk_.reset();
    unsetenv("ACAD");
    ModuleTest::TearDown();
  }
  // A small disk mounted on the folder dir of C:.
  ScratchDisk& Disk(const std::string& dir) {
    disk_ = std::make_unique<ScratchDisk>(LinuxPath(dir));
    return *disk_;
  }
  // Plays the lines as the user; every one must apply.
  void Run(std::vector<std::string> lines) {
    Answer(std::move(lines));
    host_->command_line().Run();
    EXPECT_FALSE(user_->failed()) << user_->failure() << "\n" << Output();
  }
  // How often the transcript holds text.
  size_t Count(const std::string& text) const {
    size_t n = 0;
    for (size_t at = Output().find(text); at != std::string::npos; at = Output().find(text, at + 1)) ++n;
    return n;
  }

  std::unique_ptr<ScratchDisk> disk_;
};

TEST_F(SavesTest, ACatalogueEditedOnAFullDiskKeepsTheOldFile) {
  ScratchDisk& disk = Disk("VOR");
  SKIP_UNLESS_MOUNTED(disk);
  WriteFile("VOR/ELINE.CAT", kCatalogue);
  disk.Fill();
  Run({"(VOR_ELINE)", "select eline 0", "press del", "ok"});
  EXPECT_EQ(Count("\nCannot save C:\\VOR\\ELINE.CAT: the disk is full; the file is left as it was.\n"), 1u)
      << Output();
  EXPECT_EQ(ReadFile("VOR/ELINE.CAT"), kCatalogue);
  EXPECT_EQ(disk.Names(), (std::vector<std::string>{"ELINE.CAT", ScratchDisk::kFiller}));
}

TEST_F(SavesTest, NotesOnAFullDiskKeepTheOldFile) {
  ScratchDisk& disk = Disk("VOR");
  SKIP_UNLESS_MOUNTED(disk);
  const std::string notes = Big5("C:\\ACF\\P1.ACF 一樓\r\n\x1A");
  WriteFile("VOR/FILE_CON.DAT", notes);
  WriteFile("ACF/P1.ACF", "x");
  disk.Fill();
  Run({"(VOR_ACF \"C:/ACF\")", "select file 0", "press edit", "二樓", "select file 0", "ok"});
  EXPECT_EQ(Count("\nCannot save C:\\VOR\\FILE_CON.DAT: the disk is full; the file is left as it was.\n"), 1u)
      << Output();
  EXPECT_EQ(ReadFile("VOR/FILE_CON.DAT"), notes);
  EXPECT_EQ(disk.Names(), (std::vector<std::string>{"FILE_CON.DAT", ScratchDisk::kFiller}));
}

TEST_F(SavesTest, ALinetypeFileOnAFullDiskStaysLoadable) {
  ScratchDisk& disk = Disk("LT");
  SKIP_UNLESS_MOUNTED(disk);
  const std::string old_file = ";; old\r\n*OLD\r\nA,1,-1\r\n\x1A";
  WriteFile("VOR/ELINE.CAT", kCatalogue);
  WriteFile("LT/ELINE.LIN", old_file);
  disk.Fill();
  setenv("ACAD", "C:\\LT", 1);
  Run({"(VOR_LT_LO)"});
  EXPECT_EQ(Count("\nCannot save C:\\LT\\ELINE.LIN: the disk is full; the file is left as it was.\n"), 1u)
      << Output();
  EXPECT_EQ(ReadFile("LT/ELINE.LIN"), old_file);
  EXPECT_EQ(disk.Names(), (std::vector<std::string>{"ELINE.LIN", ScratchDisk::kFiller}));
  EXPECT_NE(host_->document().tables().linetypes().Find("OLD"), nullptr) << "the old file is loaded as it was";
  EXPECT_EQ(host_->document().tables().linetypes().Find("ELINE1"), nullptr);
}

TEST_F(SavesTest, AReadOnlyLinetypeFileIsNotWrittenWhoeverRunsTheHost) {
  const std::string old_file = ";; old\r\n*OLD\r\nA,1,-1\r\n\x1A";
  WriteFile("VOR/ELINE.CAT", kCatalogue);
  WriteFile("LT/ELINE.LIN", old_file);
  chmod(LinuxPath("LT/ELINE.LIN").c_str(), 0444);
  setenv("ACAD", "C:\\LT", 1);
  Run({"(VOR_LT_LO)"});
  EXPECT_EQ(Count("\nFile open failure : C:\\LT\\ELINE.LIN"), 1u) << Output();
  EXPECT_EQ(Count("Cannot save"), 0u) << "the module said it; the host adds nothing";
  EXPECT_EQ(ReadFile("LT/ELINE.LIN"), old_file);
  EXPECT_TRUE(FileExists("PLINE.LIN")) << "the other files still go";
}

}  // namespace
}  // namespace vorhost::testing
