// numtool_test.cpp - the keypad dialog driven by a user's events.
#include <cstring>
#include <string>

#include "host/dialogs.h"
#include "numtool/numtool.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

class NumberToolTest : public ModuleStateTest {
 protected:
  void SetUp() override {
    ModuleStateTest::SetUp();
    ASSERT_EQ(dialog_file_load("VORMIS.DCL"), RTNORM) << Output();
    std::strcpy(NumberCaption, Big5("數量:").c_str());
  }
  void TearDown() override {
    ads_unload_dialog(DialogFile);
    ModuleStateTest::TearDown();
  }
  // The value after the user's events, starting from start.
  std::string Run(const std::string& start, std::vector<std::string> events) {
    std::strcpy(NumberValue, start.c_str());
    Answer(std::move(events));
    EXPECT_EQ(number_tool(), RTNORM);
    EXPECT_FALSE(user_->failed()) << user_->failure();
    return NumberValue;
  }
};

TEST_F(NumberToolTest, ButtonsBuildTheValue) {
  EXPECT_EQ(Run("", {"press 0", "press 0", "press 7", "ok"}), "007");
  EXPECT_EQ(Run("", {"press 1", "press .", "press 2", "press .", "press 3", "ok"}), "1.2.3");
  EXPECT_EQ(Run("", {"press sign", "ok"}), "-");
  EXPECT_EQ(Run("", {"press sign", "press sign", "ok"}), "");
  EXPECT_EQ(Run("", {"type edit   5", "press sign", "ok"}), "-5");
  EXPECT_EQ(Run("-5", {"press sign", "ok"}), "5");
  EXPECT_EQ(Run("-", {"press backspace", "press backspace", "ok"}), "");
  EXPECT_EQ(Run("", {"type edit 12", "press 3", "ok"}), "123");
  EXPECT_EQ(Run("9", {"press clear", "press 4", "ok"}), "4");
  EXPECT_EQ(Run("", {"enter edit 25"}), "25") << "Enter in the box presses OK";
}

TEST_F(NumberToolTest, CancelPutsTheValueBack) {
  EXPECT_EQ(Run("3", {"press 4", "press 2", "cancel"}), "3");
}

TEST_F(NumberToolTest, AFullValueTakesNoMoreCharacters) {
  std::string full(255, '1');
  EXPECT_EQ(Run(full, {"press 2", "press sign", "ok"}), full);
  EXPECT_EQ(Run("-" + full.substr(1), {"press sign", "ok"}), full.substr(1));
  EXPECT_EQ(Run(full, {"press backspace", "ok"}), full.substr(1));
}

TEST_F(NumberToolTest, TheCaptionShowsAndThePickButtonsAreDisabled) {
  Run("", {"#show", "ok"});
  EXPECT_NE(Output().find("type text = \"數量:\""), std::string::npos) << Output();
  EXPECT_NE(Output().find("2p button disabled"), std::string::npos);
  Answer({"press entity"});
  std::strcpy(NumberValue, "");
  number_tool();
  EXPECT_NE(user_->failure().find("is disabled"), std::string::npos);
}

TEST_F(NumberToolTest, ADialogThatCannotBeMadeFailsWithTheHostMessage) {
  ads_unload_dialog(DialogFile);
  host_->module().Load([](int, void*) { return 0; });
  std::strcpy(NumberValue, "7");
  lisp::Value result;
  std::string err;
  // Run inside a module call so that ads_fail has a call to fail.
  host_->lisp().Define("PROBE", [](const std::vector<lisp::Value>&, lisp::Value* r, std::string*) {
    *r = lisp::Value::Int(number_tool());
    return true;
  });
  host_->command_line().Execute("(probe)");
  EXPECT_EQ(NumberValue, std::string("7"));
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), std::to_string(RTERROR));
}

}  // namespace
}  // namespace vorhost::testing
