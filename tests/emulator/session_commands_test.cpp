// session_commands_test.cpp - the commands that act on the whole session:
// QUIT and EXIT asking to save only what is not saved, SAVE and QSAVE
// writing the drawing under its name (the one SAVEAS gave it too), NEW
// asking as QUIT does, Enter repeating a command for a person, HELP.
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

using SessionCommandsTest = HostTest;

TEST_F(SessionCommandsTest, QuitAsksOnlyForUnsavedChangesAndSavesOnYes) {
  host_->command_line().Execute("QUIT");
  EXPECT_EQ(Output().find("Save changes"), std::string::npos);

  Answer({"0,0", "10,0", "", "maybe", "#cancel"});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("QUIT");
  EXPECT_NE(Output().find("Save changes to C:\\DRAWING.DXF? <Y>: maybe"), std::string::npos) << Output();
  EXPECT_NE(Output().find("Answer Y or N."), std::string::npos);
  EXPECT_FALSE(FileExists("DRAWING.DXF"));  // Escape: still working

  Answer({"y"});
  host_->command_line().Execute("EXIT");
  EXPECT_NE(Output().find("Saved C:\\DRAWING.DXF."), std::string::npos) << Output();
  EXPECT_NE(ReadFile("DRAWING.DXF").find("LINE"), std::string::npos);
  EXPECT_FALSE(host_->DrawingModified());
}

TEST_F(SessionCommandsTest, SaveAndSaveAsLeaveNothingToAskAbout) {
  Answer({"0,0", "10,0", ""});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("QSAVE");
  EXPECT_NE(Output().find("Saved C:\\DRAWING.DXF."), std::string::npos) << Output();
  EXPECT_FALSE(host_->DrawingModified());

  Answer({"0,5", "10,5", "", "C:\\PLAN.DXF"});
  host_->command_line().Execute("LINE");
  EXPECT_TRUE(host_->DrawingModified());
  host_->command_line().Execute("SAVEAS");
  EXPECT_FALSE(host_->DrawingModified());
  EXPECT_EQ(host_->drawing_name(), "C:\\PLAN.DXF");
  host_->command_line().Execute("SAVE");
  EXPECT_NE(Output().find("Saved C:\\PLAN.DXF."), std::string::npos) << Output();

  // A file that cannot be written is refused, and QUIT stays.
  host_->NameDrawing("C:\\NO\\SUCH\\DIR.DXF", "");
  Answer({"0,9", "1,9", "", "y"});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("QUIT");
  EXPECT_NE(Output().find("Cannot save C:\\NO\\SUCH\\DIR.DXF"), std::string::npos) << Output();
  EXPECT_TRUE(host_->DrawingModified());
}

TEST_F(SessionCommandsTest, NewAsksBeforeLeavingUnsavedChanges) {
  auto lines = [this] { return host_->document().drawing().MainEntities().size(); };
  Answer({"0,0", "10,0", "", "#cancel"});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("NEW");
  EXPECT_NE(Output().find("Save changes to C:\\DRAWING.DXF? <Y>: "), std::string::npos) << Output();
  EXPECT_EQ(lines(), 1u);  // Escape: the drawing stays

  Answer({"n"});
  host_->command_line().Execute("NEW");
  EXPECT_EQ(lines(), 0u);
  EXPECT_FALSE(FileExists("DRAWING.DXF"));
  EXPECT_FALSE(host_->DrawingModified());

  Answer({"0,0", "10,0", "", "y"});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("NEW");
  EXPECT_EQ(lines(), 0u);
  EXPECT_NE(ReadFile("DRAWING.DXF").find("LINE"), std::string::npos);
}

TEST_F(SessionCommandsTest, EnterRepeatsTheLastCommandForAPersonOnly) {
  auto lines = [this] { return host_->document().drawing().MainEntities().size(); };
  host_->command_line().Execute("");  // nothing to repeat yet
  Answer({"0,0", "10,0", ""});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("");  // a script's blank line
  EXPECT_EQ(lines(), 1u);

  host_->command_line().set_repeat_on_enter(true);
  Answer({"0,5", "10,5", ""});
  host_->command_line().Execute("  ");
  EXPECT_EQ(lines(), 2u);
  // Neither an expression nor an unknown name takes the place of LINE.
  host_->command_line().Execute("(+ 1 2)");
  host_->command_line().Execute("NOSUCH");
  Answer({"0,9", "10,9", ""});
  host_->command_line().Execute("");
  EXPECT_EQ(lines(), 3u);
}

TEST_F(SessionCommandsTest, HelpListsCommandsFunctionsAndTheSessionsOwn) {
  host_->command_line().Execute("?");
  for (const char* text : {"Commands:", "  LINE  ", "  QUIT  ", "  HELP  ", "Functions of the module",
                           "Functions of the host:", "  W1  "})
    EXPECT_NE(Output().find(text), std::string::npos) << text << "\n" << Output();
}

}  // namespace
}  // namespace vorhost::testing
