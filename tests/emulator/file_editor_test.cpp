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
  // Edits *contents with the shell command as the editor.
  EditOutcome Edit(const char* editor, std::string* contents, std::string* why) {
    setenv("VISUAL", editor, 1);
    return EditInEditor(contents, why);
  }
};

TEST_F(FileEditorTest, TheEditComesBackInBig5WithCrLf) {
  const std::string gong = Big5("功");  // its trail byte is a backslash
  const std::string before = "(\"" + gong + "\")\r\n(\"B\")\r\n\x1A";
  std::string contents = before, why;
  EXPECT_EQ(Edit("sed -i 's/B/電/'", &contents, &why), EditOutcome::kSaved) << why;
  EXPECT_EQ(contents, "(\"" + gong + "\")\r\n(\"" + Big5("電") + "\")\r\n\x1A");
  contents = before;
  EXPECT_EQ(Edit("true", &contents, &why), EditOutcome::kUnchanged);
  EXPECT_EQ(contents, before);
}

TEST_F(FileEditorTest, AFailedEditLeavesTheContentsAsTheyWere) {
  const std::string before = "(\"A\")\r\n";
  std::string contents = before, why;
  EXPECT_EQ(Edit("false", &contents, &why), EditOutcome::kCancelled);
  EXPECT_EQ(Edit("sed -i 's/A/\xF0\x9F\x98\x80/'", &contents, &why), EditOutcome::kCancelled);  // an emoji
  EXPECT_NE(why.find("Big5 cannot hold"), std::string::npos);
  EXPECT_EQ(contents, before);
  contents = "\x80\xFF\r\n";  // not Big5 text: the round trip would change it
  EXPECT_EQ(Edit("true", &contents, &why), EditOutcome::kCancelled);
  EXPECT_EQ(contents, "\x80\xFF\r\n");
}

}  // namespace
}  // namespace vorhost::testing
