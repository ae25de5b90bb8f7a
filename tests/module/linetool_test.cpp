// linetool_test.cpp - the line tool's failures: dialogs that cannot be had
// and host functions that cannot be called, each with its exact message.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/entry.h"
#include "linetool/catalogue.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

class LineToolFailureTest : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    WriteFile("VOR/ELINE.CAT", "(\"E1\" \"ELINE1\" \"E-POWER\" \"1\" \"x\" \"\" \"A,1,-1\")\r\n\x1A");
  }
  void TearDown() override {
    unsetenv("VORMIS_FILES");
    ModuleTest::TearDown();
  }
  // Runs (VOR_ELINE) with the user's events; the transcript afterwards.
  std::string Run(std::vector<std::string> events) {
    Answer(std::move(events));
    host_->command_line().Execute("(VOR_ELINE)");
    return Output();
  }
  // A dialog file in the current directory (searched first) holding the
  // module's dialogs less the one named.
  void DclWithout(const std::string& dialog) {
    std::string text = ReadWhole(std::string(VORMIS_FILES) + "/VORMIS.DCL");
    size_t at = text.find("\n" + dialog + " : dialog");
    ASSERT_NE(at, std::string::npos);
    text.replace(at + 1, dialog.size(), dialog + "_GONE");
    WriteFile("VORMIS.DCL", text);
  }
  static std::string ReadWhole(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "rb");
    std::string s;
    for (int c; f && (c = std::fgetc(f)) != EOF;) s += static_cast<char>(c);
    if (f) std::fclose(f);
    return s;
  }
};

TEST_F(LineToolFailureTest, TheDialogFileCannotBeLoaded) {
  char dir[] = "/tmp/vor_nodcl_XXXXXX";
  setenv("VORMIS_FILES", mkdtemp(dir), 1);
  EXPECT_NE(Run({}).find("error: Unable to load dialog box: VORMIS.DCL"), std::string::npos) << Output();
  rmdir(dir);
}

TEST_F(LineToolFailureTest, EachDialogThatCannotBeInitializedSaysSo) {
  struct Case {
    const char* dialog;
    std::vector<std::string> events;
  } cases[] = {
      {"VOR_ELINE_0", {}},
      {"VOR_ELINE_1", {"select eline 0", "press editline", "cancel"}},
      {"VOR_ELINE_2", {"press edit_code", "cancel"}},
  };
  for (const Case& c : cases) {
    DclWithout(c.dialog);
    std::string out = Run(c.events);
    EXPECT_NE(out.find(std::string("Unable to initialize dialog box: ") + c.dialog), std::string::npos)
        << c.dialog << "\n" << out;
    EXPECT_FALSE(user_->failed()) << user_->failure();
  }
}

TEST_F(LineToolFailureTest, HostFunctionsThatCannotBeCalledAreAlerted) {
  for (const char* name : {"W1", "W2", "ADS_HELP", "ACAD_COLORDLG"}) host_->lisp().Undefine(name);
  std::string out = Run({"press editfile", "press help", "select eline 0", "press editline", "press b2",
                         "press b3", "cancel", "cancel"});
  for (const char* name : {"W2", "ADS_HELP", "ACAD_COLORDLG", "W1"})
    EXPECT_NE(out.find(std::string("[Alert] Can not invoke function : ") + name), std::string::npos)
        << name << "\n" << out;
  EXPECT_FALSE(user_->failed()) << user_->failure();
}

TEST_F(LineToolFailureTest, AColourOutsideOneTo255ChangesNothing) {
  host_->lisp().Define("ACAD_COLORDLG", [](const std::vector<lisp::Value>&, lisp::Value* r, std::string*) {
    *r = lisp::Value::Int(256);
    return true;
  });
  Run({"select eline 0", "press editline", "press b2", "#show", "cancel", "cancel"});
  EXPECT_NE(Output().find("t2 text = \"1\""), std::string::npos) << Output();
}

}  // namespace
}  // namespace vorhost::testing
