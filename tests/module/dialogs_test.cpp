// dialogs_test.cpp - what the module's dialogs share: help, and host
// functions called by name.
#include <string>
#include <vector>

#include "emulator/core/alloc.h"
#include "host/dialogs.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

class HelpTest : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    WriteFile("VOR/ELINE.CAT", "(\"E1\" \"ELINE1\" \"E-POWER\" \"1\" \"x\" \"\" \"A,1,-1\")\r\n\x1A");
    WriteFile("ACF/P1.ACF", "x");
  }
  static size_t Count(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) n++;
    return n;
  }

  // The help button of each dialog that has one, pressed once; every
  // dialog is then left by Cancel.
  struct Case {
    const char* dialog;
    const char* call;
    std::vector<std::string> events;
    const char* topic;
  };
  const std::vector<Case> cases_ = {
      {"VOR_ELINE_0", "(VOR_ELINE)", {"press help", "cancel"}, "VOR_ELINE"},
      {"VOR_ELINE_CABLE",
       "(VOR_ELINE)",
       {"select eline 0", "press editline", "press b4", "press help", "cancel", "cancel", "cancel"},
       "VOR_ELINE_CABLE"},
      {"FILE_CON", "(VOR_ACF)", {"press help", "cancel"}, "FILE_CON"},
  };
  // The transcript of one case.
  std::string Press(const Case& c) {
    Answer(c.events);
    size_t from = Output().size();
    host_->command_line().Execute(c.call);
    EXPECT_FALSE(user_->failed()) << c.dialog << ": " << user_->failure();
    return Output().substr(from);
  }
};

TEST_F(HelpTest, EveryDialogShowsItsTopic) {
  for (const Case& c : cases_) {
    std::string out = Press(c);
    EXPECT_NE(out.find(std::string("---- Help: ") + c.topic + " ----"), std::string::npos) << c.dialog << "\n" << out;
    EXPECT_EQ(out.find("[Alert]"), std::string::npos) << c.dialog << "\n" << out;
  }
}

TEST_F(HelpTest, EveryDialogGivesTheSameAlertOnceWhenHelpCannotBeCalled) {
  host_->lisp().Undefine("ADS_HELP");
  for (const Case& c : cases_) {
    std::string out = Press(c);
    EXPECT_EQ(Count(out, "[Alert]"), 1u) << c.dialog << "\n" << out;
    EXPECT_EQ(Count(out, "[Alert] Can not invoke function : ADS_HELP\n"), 1u) << c.dialog << "\n" << out;
  }
}

// A list the host cannot build is no call that failed: nothing is shown
// and nothing is said, in every dialog alike.
TEST_F(HelpTest, NoWordWhenTheHostCannotBuildTheList) {
  for (int skip : {0, 1, 2}) {
    size_t from = Output().size();
    FailAllocation(Heap::kHost, skip);
    show_help("VOR_ELINE");
    ClearAllocationFailures();
    EXPECT_EQ(Output().find("[Alert]", from), std::string::npos) << skip << "\n" << Output();
  }
  resbuf* result = nullptr;
  EXPECT_EQ(host_function("W1", nullptr, &result), RTERROR);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(Output().find("[Alert]"), std::string::npos) << Output();
}

}  // namespace
}  // namespace vorhost::testing
