// module_link_test.cpp - the module's entry point as the host drives it:
// the messages in order, registrations per drawing, calls that open a new
// drawing while they run.
#include <string>

#include "host/ads.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

// A module that records its messages and registers PROBE (code 7) for
// every drawing, and LATE as a drawing closes; PROBE starts a new drawing
// when given an argument.
std::string g_messages;

int RecordingModule(int msg, void*) {
  g_messages += std::to_string(msg);
  if (msg == kLoadDwgMsg) ads_defun("probe", 7);
  if (msg == kUnloadDwgMsg) ads_defun("LATE", 8);
  if (msg == kInvkSubrMsg) {
    resbuf* args = ads_getargs();
    if (args && args->restype == RTSTR) ads_command(RTSTR, "NEW", 0);
    ads_retint(ads_getfuncode());
  }
  return RTNORM;
}

class ModuleLinkTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    g_messages.clear();
    host_->module().Load(RecordingModule);
  }
};

TEST_F(ModuleLinkTest, MessagesComeInTheHostsOrder) {
  host_->NewDrawing();
  host_->module().Unload();
  host_->module().Unload();  // nothing to unload twice
  EXPECT_EQ(g_messages, "13" "43" "42");
  EXPECT_FALSE(host_->module().loaded());
  EXPECT_FALSE(host_->lisp().IsDefined("PROBE"));
}

TEST_F(ModuleLinkTest, RegistrationsBelongToTheDrawingThatIsOpen) {
  ASSERT_EQ(host_->module().RegisteredCode("Probe"), 7);
  host_->NewDrawing();
  // Registered while the drawing closed: gone with it.
  EXPECT_EQ(host_->module().RegisteredCode("LATE"), std::nullopt);
  EXPECT_EQ(host_->module().RegisteredCode("PROBE"), 7);
  EXPECT_EQ(host_->module().Undef("PROBE", 6), RTERROR);  // the code must match
  EXPECT_EQ(host_->module().Undef("PROBE", 7), RTNORM);
  EXPECT_FALSE(host_->lisp().IsDefined("PROBE"));
}

TEST_F(ModuleLinkTest, ACallThatOpensANewDrawingEndsSafely) {
  host_->command_line().Execute("(setq kept 1)");
  host_->command_line().Execute("(probe \"new\")");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "7");
  EXPECT_EQ(g_messages, "13" "5" "43");
  EXPECT_FALSE(host_->lisp().IsBound("KEPT"));  // the language started afresh
  EXPECT_EQ(host_->module().call(), nullptr);
}

}  // namespace
}  // namespace vorhost::testing
