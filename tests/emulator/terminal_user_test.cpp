// terminal_user_test.cpp - the person at the terminal with the keyboard
// replaced by lines handed over in turn: what is asked again, what ends
// the session and what only cancels, alerts held until Enter, and what
// goes to the screen but not into the transcript.
#include <sys/mman.h>
#include <unistd.h>

#include <deque>

#include "emulator/ui/terminal.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

// Hands over the lines queued; notes the prompts it was shown.
class QueuedReader : public LineReader {
 public:
  std::deque<LineInput> lines;
  std::vector<std::string> prompts;

  LineInput Read(const std::string& prompt, const CompleteFn&) override {
    prompts.push_back(prompt);
    if (lines.empty()) return {LineInput::Kind::kClosed, ""};
    LineInput in = lines.front();
    lines.pop_front();
    return in;
  }
};

LineInput Typed(std::string text) { return {LineInput::Kind::kLine, std::move(text)}; }
LineInput Key(LineInput::Kind kind) { return {kind, ""}; }

class TerminalUserTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    screen_fd_ = memfd_create("screen", 0);
    ASSERT_GE(screen_fd_, 0);
    screen_ = std::make_unique<TerminalScreen>(screen_fd_);
    // A host whose transcript goes to the screen, as vorhost's does.
    HostTest::user_.reset();
    host_.reset();
    host_ = std::make_unique<Host>(&screen_->stream());
    user_ = std::make_unique<TerminalUser>(*host_, *screen_, reader_, 80, false);
    host_->console().set_user(user_.get());
    host_->console().set_echo_answers(false);
  }
  void TearDown() override {
    host_->console().set_user(nullptr);
    host_.reset();
    user_.reset();
    screen_.reset();
    close(screen_fd_);
    HostTest::TearDown();
  }
  void Type(std::vector<LineInput> lines) { reader_.lines.assign(lines.begin(), lines.end()); }
  // What the screen shows beside the transcript: dialogs drawn, help.
  std::string Screen() {
    std::string out(static_cast<size_t>(lseek(screen_fd_, 0, SEEK_END)), '\0');
    pread(screen_fd_, out.data(), out.size(), 0);
    return out;
  }

  int screen_fd_ = -1;
  QueuedReader reader_;
  std::unique_ptr<TerminalScreen> screen_;
  std::unique_ptr<TerminalUser> user_;
};

TEST_F(TerminalUserTest, SlipsAreAskedAgainAndOnlyCtrlDAtTheCommandPromptQuits) {
  Type({Typed("LINE"), Typed("0,0"), Key(LineInput::Kind::kEnd),  // Ctrl-D in LINE: cancel
        Typed("(W1 \"x\" \"Note\")"), Typed("\U0001F600"), Key(LineInput::Kind::kHelp), Typed("ok"),
        Key(LineInput::Kind::kEnd)});  // Ctrl-D at Command: QUIT, nothing to save
  host_->command_line().Run();
  EXPECT_NE(Output().find("To point: *Cancel*"), std::string::npos) << Output();
  EXPECT_NE(Output().find("\"ok\""), std::string::npos) << Output();
  EXPECT_NE(Screen().find("Big5 cannot hold"), std::string::npos) << Screen();
  EXPECT_NE(Screen().find("Answer the prompt"), std::string::npos) << Screen();
  // The prompt is shown again after each slip, and the session ended at QUIT.
  EXPECT_EQ(std::count(reader_.prompts.begin(), reader_.prompts.end(), "Note <x>: "), 3);
  EXPECT_TRUE(reader_.lines.empty());
  EXPECT_NE(Screen().find("QUIT\n"), std::string::npos);
}

TEST_F(TerminalUserTest, InputThatOnlyEndsEndsTheSessionUnsaved) {
  Type({Typed("LINE"), Typed("0,0"), Typed("5,5"), Typed("")});
  for (int i = 0; i < 30; i++) reader_.lines.push_back(Key(LineInput::Kind::kEnd));
  host_->command_line().Run();  // returns: no one is there to answer
  EXPECT_NE(Output().find("Save changes to C:\\DRAWING.DXF?"), std::string::npos) << Output();
  EXPECT_FALSE(FileExists("DRAWING.DXF"));
}

TEST_F(TerminalUserTest, DialogsAreDrawnWhenTheyChangeAndShowStaysOffTheTranscript) {
  Type({Typed("(dcl_preview \"VORMIS.DCL\" \"NUMBER_TOOL\")"), Typed("type edit 12"), Typed("slect"),
        Typed("#show"), Typed("help"), Key(LineInput::Kind::kCancel), Key(LineInput::Kind::kEnd)});
  host_->command_line().Run();
  std::string screen = Screen();
  // Opened, after the event, once more for #show; not again after the slip.
  size_t drawn = 0;
  for (size_t at = screen.find("(NUMBER_TOOL) ="); at != std::string::npos; at = screen.find("(NUMBER_TOOL) =", at + 1))
    drawn++;
  EXPECT_EQ(drawn, 3u) << screen;
  EXPECT_NE(screen.find("[12"), std::string::npos) << screen;
  EXPECT_NE(screen.find("Tiles of NUMBER_TOOL"), std::string::npos) << screen;
  EXPECT_NE(Output().find("not a dialog event: \"slect\""), std::string::npos) << Output();
  EXPECT_NE(Output().find("[Dialog NUMBER_TOOL closed: 0]"), std::string::npos) << Output();
  EXPECT_EQ(Output().find("(NUMBER_TOOL) ="), std::string::npos);
}

TEST_F(TerminalUserTest, AnAlertWaitsForEnterOnItsOwnLine) {
  Type({Typed("")});
  host_->console().Alert("No file chosen.");
  ASSERT_EQ(reader_.prompts.size(), 1u);
  EXPECT_EQ(reader_.prompts[0], "[Alert] No file chosen.  (Enter closes it) ");
  host_->transcript().WriteLine("next");
  host_->transcript().Write("\n");
  EXPECT_EQ(Screen(), "next\n");  // no blank line before it
}

}  // namespace
}  // namespace vorhost::testing
