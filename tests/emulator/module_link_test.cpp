// module_link_test.cpp - the module's entry point as the host drives it:
// the messages in order, registrations per drawing, calls that open a new
// drawing while they run; modules loaded from their shared libraries and
// unloaded, or refused.
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

// Modules loaded from shared libraries: the module built for vorhost, and
// the small ones of tests/modules.
class ModuleFileTest : public HostTest {
 protected:
  static std::string Fixture(const std::string& name) { return std::string(VOR_TEST_MODULES) + "/" + name; }

  // The value of a command-language expression, as the command line prints it.
  std::string Eval(const std::string& expression) {
    host_->command_line().Execute(expression);
    return lisp::Print(host_->command_line().last_value());
  }
  bool Load(const std::string& path) { return host_->module().LoadFile(path, &why_); }
  bool Unload(const std::string& name) { return host_->module().UnloadApplication(name, &why_); }

  std::string why_;
};

TEST_F(ModuleFileTest, TheModuleRegistersItsFunctionsForEveryLoad) {
  const char* names[] = {"VOR_ELINE", "VOR_SLINE", "VOR_PLINE", "VOR_LT_LO", "VOR_ACF"};
  ASSERT_TRUE(Load(VORMIS_MODULE)) << why_;
  EXPECT_EQ(Eval("(arx)"), "(\"vormis.arx\")");
  ASSERT_TRUE(Unload("VORMIS")) << why_;  // the name without extension, in any case
  for (const char* name : names) EXPECT_FALSE(host_->lisp().IsDefined(name)) << name;
  Eval("(VOR_ELINE)");
  EXPECT_NE(Output().find("error: null function"), std::string::npos);
  EXPECT_EQ(Eval("(arx)"), "nil");

  // By name: the program's module folder, as the build lays it out.
  EXPECT_EQ(Eval("(arxload \"vormis\")"), "\"vormis\"");
  for (short code = 0; code < 5; code++) EXPECT_EQ(host_->module().RegisteredCode(names[code]), code);
  host_->NewDrawing();
  for (short code = 0; code < 5; code++) EXPECT_EQ(host_->module().RegisteredCode(names[code]), code);
}

TEST_F(ModuleFileTest, ModulesTheHostCannotTakeAreRefusedWithTheReason) {
  WriteFile("NOTMOD.ARX", "not a shared library");
  struct Case {
    std::string path;
    std::string reason;
  } cases[] = {
      {Fixture("wrong_version.arx"), "\"wrong_version.arx\" is built for interface version 0xF0000; "
                                     "this host offers 0xE0000."},
      {LinuxPath("NOTMOD.ARX"), "Cannot load \"" + LinuxPath("NOTMOD.ARX") + "\": "},
      {LinuxPath("NONE.ARX"), "Cannot load \"" + LinuxPath("NONE.ARX") + "\": "},
  };
  for (const Case& c : cases) {
    EXPECT_FALSE(Load(c.path)) << c.path;
    EXPECT_TRUE(why_.starts_with(c.reason)) << why_;
    EXPECT_FALSE(host_->module().loaded());
  }
  EXPECT_FALSE(host_->lisp().IsDefined("WRONG"));  // it was sent nothing

  EXPECT_FALSE(host_->module().LoadApplication("C:/ACF/NONE", &why_));
  EXPECT_EQ(why_, "Cannot find application \"C:/ACF/NONE\".");
  ASSERT_TRUE(Load(Fixture("probe.arx"))) << why_;
  EXPECT_FALSE(Load(Fixture("probe.arx")));
  EXPECT_EQ(why_, "Application \"probe.arx\" is already loaded.");
  EXPECT_FALSE(Load(VORMIS_MODULE));
  EXPECT_EQ(why_, "Another application is loaded: unload \"probe.arx\" first.");
  EXPECT_FALSE(Unload("vormis"));
  EXPECT_EQ(why_, "Application \"vormis\" is not loaded.");
}

TEST_F(ModuleFileTest, ALockedModuleStaysLoaded) {
  ASSERT_TRUE(Load(Fixture("locked.arx"))) << why_;
  EXPECT_EQ(Eval("(arxunload \"locked\" \"kept\")"), "\"kept\"");
  EXPECT_NE(Output().find("Application \"locked.arx\" is locked and cannot be unloaded."), std::string::npos);
  EXPECT_EQ(Eval("(probe)"), "1");
  Eval("(arxunload \"locked\")");
  EXPECT_NE(Output().find("error: ARXUNLOAD failed"), std::string::npos);
  EXPECT_EQ(Eval("(arx)"), "(\"locked.arx\")");
}

TEST_F(ModuleFileTest, AModuleIsNotUnloadedWhileItRuns) {
  ASSERT_TRUE(Load(Fixture("probe.arx"))) << why_;
  EXPECT_EQ(Eval("(probe \"probe\")"), "\"refused\"");
  EXPECT_NE(Output().find("Application \"probe.arx\" is running and cannot be unloaded."), std::string::npos);
  EXPECT_EQ(Eval("(arx)"), "(\"probe.arx\")");
}

TEST_F(ModuleFileTest, ArxloadAndArxunloadAskForTheName) {
  ASSERT_TRUE(Load(Fixture("probe.arx"))) << why_;
  // A name the host refuses is asked again; Enter ends the command.
  Answer({"probe", ""});
  host_->command_line().Execute("ARXLOAD");
  EXPECT_NE(Output().find("Application to load: probe\nApplication \"probe.arx\" is already loaded.\n"
                          "Application to load: "),
            std::string::npos)
      << Output();
  Answer({Fixture("probe.arx")});
  host_->command_line().Execute("ARXUNLOAD");
  EXPECT_FALSE(host_->module().loaded());
  EXPECT_FALSE(host_->lisp().IsDefined("PROBE"));
}

}  // namespace
}  // namespace vorhost::testing
