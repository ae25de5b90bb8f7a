// file_editor_test.cpp - a person's edit of a host text file in an editor
// (the editor is a shell command here, through $VISUAL).
#include <cstdlib>

#include "emulator/ui/file_editor.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

class FileEditorTest : public HostTest {
 protected:
  void TearDown() override {
    unsetenv("VISUAL");
    HostTest::TearDown();
  }
  EditOutcome Edit(const char* editor, std::string* why) {
    setenv("VISUAL", editor, 1);
    return EditInEditor(LinuxPath("F.CAT"), why);
  }
};

TEST_F(FileEditorTest, TheEditComesBackInBig5WithCrLf) {
  const std::string gong = Big5("功");  // its trail byte is a backslash
  WriteFile("F.CAT", "(\"" + gong + "\")\r\n(\"B\")\r\n\x1A");
  std::string why;
  EXPECT_EQ(Edit("sed -i 's/B/電/'", &why), EditOutcome::kSaved) << why;
  EXPECT_EQ(ReadFile("F.CAT"), "(\"" + gong + "\")\r\n(\"" + Big5("電") + "\")\r\n\x1A");
  EXPECT_EQ(Edit("true", &why), EditOutcome::kUnchanged);
}

TEST_F(FileEditorTest, AFailedEditLeavesTheFileAsItWas) {
  const std::string before = "(\"A\")\r\n";
  WriteFile("F.CAT", before);
  std::string why;
  EXPECT_EQ(Edit("false", &why), EditOutcome::kCancelled);
  EXPECT_EQ(Edit("sed -i 's/A/\xF0\x9F\x98\x80/'", &why), EditOutcome::kCancelled);  // an emoji
  EXPECT_NE(why.find("Big5 cannot hold"), std::string::npos);
  EXPECT_EQ(ReadFile("F.CAT"), before);
  WriteFile("F.CAT", "\x80\xFF\r\n");  // not Big5 text: the round trip would change it
  EXPECT_EQ(Edit("true", &why), EditOutcome::kCancelled);
  EXPECT_EQ(ReadFile("F.CAT"), "\x80\xFF\r\n");
}

}  // namespace
}  // namespace vorhost::testing
