// file_commands_test.cpp - SAVEAS: names that are no file, saves that fail
// on a full disk or over a read-only file, and host messages that name files
// by their DOS paths.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/ads.h"
#include "support/host_fixture.h"
#include "support/scratch_disk.h"

namespace vorhost::testing {
namespace {

class SaveAsTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    ads_point a = {0, 0, 0}, b = {10, 0, 0};
    ASSERT_EQ(ads_command(RTSTR, "LINE", RT3DPOINT, a, RT3DPOINT, b, RTSTR, "", 0), RTNORM);
  }
  void TearDown() override {
    disk_.reset();
    HostTest::TearDown();
  }
  // SAVEAS from a program; its result code.
  int SaveAs(const std::string& name) { return ads_command(RTSTR, "SAVEAS", RTSTR, name.c_str(), 0); }
  // What the host said last, on its own line before "*Cancel*".
  std::string Refusal() const {
    size_t end = Output().rfind("\n*Cancel*");
    size_t start = Output().rfind('\n', end - 1);
    return end == std::string::npos ? "" : Output().substr(start + 1, end - start - 1);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(root_))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  std::unique_ptr<ScratchDisk> disk_;
};

TEST_F(SaveAsTest, NamesThatAreNoFileAreRefused) {
  std::filesystem::create_directories(LinuxPath("VOR"));
  std::filesystem::create_directories(LinuxPath("OLD.DXF"));
  const struct {
    const char* name;
    const char* refusal;
  } kCases[] = {
      {"C:/", "Invalid file name C:/."},
      {"C:", "Invalid file name C:."},
      {"C:\\VOR\\", "Invalid file name C:\\VOR\\."},
      {"..", "Invalid file name ..."},
      {".DXF", "Invalid file name .DXF."},
      {"C:/VOR", "Invalid file name C:/VOR: it is a directory."},
      {"C:/OLD", "Cannot save C:\\OLD.DXF: it is a directory."},
      {"Q:/A", "Invalid file name Q:/A."},
      {"C:/NONE/A", "Cannot save C:\\NONE\\A.DXF: no such directory."},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(SaveAs(c.name), RTREJ) << c.name;
    EXPECT_EQ(Refusal(), c.refusal) << c.name;
  }
  EXPECT_EQ(Names(), (std::vector<std::string>{"OLD.DXF", "VOR"}));

  // A person is asked again.
  Answer({"SAVEAS", "C:/", "c:/vor/plan"});
  host_->command_line().Run();
  EXPECT_NE(Output().find("\nInvalid file name C:/.\nSave drawing as"), std::string::npos) << Output();
  EXPECT_TRUE(FileExists("VOR/plan.DXF"));
}

TEST_F(SaveAsTest, AFailedSaveKeepsTheOldDrawing) {
  WriteFile("RO.DXF", "old");
  chmod(LinuxPath("RO.DXF").c_str(), 0444);
  EXPECT_EQ(SaveAs("C:/RO"), RTREJ);
  EXPECT_EQ(Refusal(), "Cannot save C:\\RO.DXF: the file is read-only.");
  EXPECT_EQ(ReadFile("RO.DXF"), "old");

  disk_ = std::make_unique<ScratchDisk>(LinuxPath("FULL"));
  SKIP_UNLESS_MOUNTED(*disk_);
  WriteFile("FULL/OLD.DXF", "old");
  disk_->Fill();
  EXPECT_EQ(SaveAs("C:/full/old.dxf"), RTREJ);
  EXPECT_EQ(Refusal(), "Cannot save C:\\full\\old.dxf: the disk is full; the file is left as it was.");
  EXPECT_EQ(ReadFile("FULL/OLD.DXF"), "old");
  EXPECT_EQ(disk_->Names(), (std::vector<std::string>{ScratchDisk::kFiller, "OLD.DXF"}));
}

TEST_F(SaveAsTest, FilesOnDrivesAreNamedByTheirDosPaths) {
  WriteFile("功/BROKEN.DXF", "0\nSECTION\n2\nENTITIES\n0\nLINE\n70\nx\n0\nENDSEC\n0\nEOF\n");
  ads_point at = {0, 0, 0};
  EXPECT_EQ(ads_command(RTSTR, "INSERT", RTSTR, Big5("B=C:/功/BROKEN").c_str(), RT3DPOINT, at, 0), RTREJ);
  EXPECT_EQ(Output().find(root_), std::string::npos) << Output();
  EXPECT_NE(Output().find("C:\\功\\BROKEN.DXF:8: 'x' is not a number (group 70)"), std::string::npos)
      << Output();
}

}  // namespace
}  // namespace vorhost::testing
