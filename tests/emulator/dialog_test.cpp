// dialog_test.cpp - the dialog runtime driven as the module drives it, with
// the user's events coming from a script.
#include <string>
#include <vector>

#include "host/ads.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

const char kTestDcl[] = R"(// dialogs for the runtime's tests
test : dialog {
  label = "Test";
  : list_box { key = "single"; }
  : list_box { key = "many"; multiple_select = true; }
  : edit_box { key = "gap"; }
  : edit_box { key = "quick"; allow_accept = true; }
  : toggle { key = "flag"; }
  : radio_row { key = "units";
    : radio_button { key = "mm"; value = "1"; }
    : radio_button { key = "inch"; }
  }
  : button { key = "nested"; label = "More"; }
  : button { key = "finish"; }
  : text { key = "caption"; label = "hello"; }
  ok_cancel;
}
inner : dialog { : button { key = "x"; } ok_only; }
)";

// What the actions saw: "key value reason" per call.
std::vector<std::string> calls;

void Record(ads_callback_packet* p) {
  char key[32];
  ads_get_attr_string(p->tile, "key", key, sizeof key);
  calls.push_back(std::string(key) + " " + p->value + " " + std::to_string(p->reason));
}

void Finish(ads_callback_packet* p) { ads_done_dialog(p->dialog, 3); }

int file_id;
int inner_status;

void OpenInner(ads_callback_packet*) {
  ads_hdlg inner;
  ASSERT_EQ(ads_new_dialog("inner", file_id, NULLCB, &inner), RTNORM);
  ads_start_dialog(inner, &inner_status);
}

void TryCommand(ads_callback_packet*) {
  ads_point p = {0, 0, 0};
  calls.push_back(ads_command(RTSTR, "LINE", RT3DPOINT, p, 0) == RTNORM ? "command ran" : "command refused");
}

class DialogTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    calls.clear();
    WriteFile("TEST.DCL", kTestDcl);
    ASSERT_EQ(ads_load_dialog("TEST.DCL", &file_id), RTNORM) << Output();
  }

  // Opens "test" with every keyed tile recording its calls, lets the
  // script's events work on it, and gives the status it ended with.
  int Run(std::vector<std::string> events, void (*prepare)(ads_hdlg) = nullptr) {
    Answer(std::move(events));
    ads_hdlg dialog;
    EXPECT_EQ(ads_new_dialog("test", file_id, NULLCB, &dialog), RTNORM);
    for (const char* key : {"single", "many", "gap", "flag", "units"}) ads_action_tile(dialog, key, Record);
    ads_start_list(dialog, "single", LIST_NEW, 0);
    for (const char* row : {"E-1\tELINE1", "E-2\tELINE2", "E-3\tELINE3"}) ads_add_list(row);
    ads_end_list();
    ads_start_list(dialog, "many", LIST_NEW, 0);
    for (const char* row : {"a", "b", "c", "d"}) ads_add_list(row);
    ads_end_list();
    if (prepare) prepare(dialog);
    int status = -99;
    EXPECT_EQ(ads_start_dialog(dialog, &status), RTNORM);
    return status;
  }
};

TEST_F(DialogTest, AcceptAndCancelEndWithOneAndZeroUnlessBound) {
  EXPECT_EQ(Run({"ok"}), DLGOK);
  EXPECT_EQ(Run({"cancel"}), DLGCANCEL);
  EXPECT_EQ(Run({"press cancel"}), DLGCANCEL);
  EXPECT_EQ(Run({"press finish", "ok"}), DLGOK) << "a button without an action does nothing";
  EXPECT_EQ(Run({"press finish"}, [](ads_hdlg d) { ads_action_tile(d, "finish", Finish); }), 3);
  // An action on accept replaces the built-in ending: the dialog stays open.
  EXPECT_EQ(Run({"ok", "press finish"},
                [](ads_hdlg d) {
                  ads_action_tile(d, "accept", Record);
                  ads_action_tile(d, "finish", Finish);
                }),
            3);
  EXPECT_EQ(calls.back(), "accept  1");
  EXPECT_NE(Output().find("[Dialog test closed: 3]"), std::string::npos);
}

TEST_F(DialogTest, EventsGiveTheirValuesAndReasons) {
  Run({"select single 2", "double-click single 0", "type gap 3.5 mm", "enter gap 4", "toggle flag",
       "toggle flag", "ok"});
  EXPECT_EQ(calls, (std::vector<std::string>{"single 2 1", "single 0 1", "single 0 4", "gap 3.5 mm 2",
                                             "gap 4 1", "flag 1 1", "flag 0 1"}));
}

TEST_F(DialogTest, EnterInAnEditBoxThatAllowsItPressesOk) {
  EXPECT_EQ(Run({"type quick 5", "enter gap 6", "enter quick 7"}, [](ads_hdlg d) { ads_action_tile(d, "quick", Record); }),
            DLGOK);
  EXPECT_EQ(calls, (std::vector<std::string>{"quick 5 2", "gap 6 1", "quick 7 1"}));
}

TEST_F(DialogTest, RadioClustersAndMultipleChoice) {
  Run({"choose inch", "select many 2", "select many 0", "select many 2", "ok"}, [](ads_hdlg d) {
    ads_action_tile(d, "accept", [](ads_callback_packet* p) {
      char units[32], mm[4], many[32];
      ads_get_tile(p->dialog, "units", units, sizeof units);
      ads_get_tile(p->dialog, "mm", mm, sizeof mm);
      ads_get_tile(p->dialog, "many", many, sizeof many);
      calls.push_back(std::string(units) + "/" + mm + "/" + many);
      ads_set_tile(p->dialog, "inch", "0");
      ads_get_tile(p->dialog, "units", units, sizeof units);
      calls.push_back("after: [" + std::string(units) + "]");
      ads_done_dialog(p->dialog, 1);
    });
  });
  EXPECT_EQ(calls, (std::vector<std::string>{"units inch 1", "many 2 1", "many 0 2 1", "many 0 1",
                                             "inch/0/0", "after: []"}));
}

TEST_F(DialogTest, ListsAreFilledChangedAndAppended) {
  Run({"ok"}, [](ads_hdlg d) {
    ads_start_list(d, "single", LIST_CHANGE, 1);
    ads_add_list("changed");
    ads_end_list();
    ads_start_list(d, "single", LIST_APPEND, 0);
    ads_add_list("appended");
    ads_end_list();
    EXPECT_NE(ads_start_list(d, "single", LIST_CHANGE, 9), RTNORM);
    EXPECT_NE(ads_start_list(d, "gap", LIST_NEW, 0), RTNORM);
    for (const std::string& row : Host::Current()->dialogs().Find(d)->Find("single")->rows)
      calls.push_back(row);
    char value[8];
    ads_get_tile(d, "caption", value, 3);  // the caller's limit cuts the text
    calls.push_back(value);
  });
  EXPECT_EQ(calls, (std::vector<std::string>{"E-1\tELINE1", "changed", "E-3\tELINE3", "appended", "he"}));
}

TEST_F(DialogTest, TheDialogStateCanBeShown) {
  Run({"select single 1", "#show", "ok"}, [](ads_hdlg d) { ads_mode_tile(d, "finish", MODE_DISABLE); });
  EXPECT_NE(Output().find("single list_box = \"1\"\n    0: E-1|ELINE1\n"), std::string::npos) << Output();
  EXPECT_NE(Output().find("finish button disabled"), std::string::npos);
  EXPECT_NE(Output().find("units radio_row = \"mm\""), std::string::npos);
}

TEST_F(DialogTest, NestedDialogsTakeTheEventsWhileTheyAreOpen) {
  int status = Run({"press nested", "#dialog inner", "ok", "#dialog test", "cancel"},
                   [](ads_hdlg d) { ads_action_tile(d, "nested", OpenInner); });
  EXPECT_EQ(status, DLGCANCEL);
  EXPECT_EQ(inner_status, DLGOK);
  EXPECT_FALSE(user_->failed()) << user_->failure();
}

TEST_F(DialogTest, CommandsAreRefusedWhileADialogIsOpen) {
  Run({"press finish", "ok"}, [](ads_hdlg d) { ads_action_tile(d, "finish", TryCommand); });
  EXPECT_EQ(calls, std::vector<std::string>{"command refused"});
  EXPECT_FALSE(host_->commands().pending());
}

TEST_F(DialogTest, OutOfStepScriptsFailAtOnce) {
  struct Case {
    std::vector<std::string> events;
    std::string failure;
  } cases[] = {
      {{"press nowhere"}, "answers:1: dialog test has no tile \"nowhere\""},
      {{"select gap 1"}, "answers:1: tile \"gap\" is a edit_box, not a list"},
      {{"select single 7"}, "answers:1: list \"single\" has no row 7 (it has 3)"},
      {{"toggle flag", "press finish"}, "answers:2: tile \"finish\" of dialog test is disabled"},
      {{"jump"}, "answers:1: not a dialog event"},
      {{"#dialog inner"}, "answers:1: expected dialog inner to be open, but the dialog test is"},
      {{"toggle flag"}, "answers:1: the script has no event left for the dialog test"},
  };
  for (const Case& c : cases) {
    int status = Run(c.events, [](ads_hdlg d) { ads_mode_tile(d, "finish", MODE_DISABLE); });
    EXPECT_EQ(user_->failure().substr(0, c.failure.size()), c.failure) << c.events[0];
    EXPECT_EQ(status, DLGALLDONE);
  }
}

TEST_F(DialogTest, FilesAndDialogsThatCannotBeHad) {
  int id;
  EXPECT_NE(ads_load_dialog("NOWHERE.DCL", &id), RTNORM);
  WriteFile("BAD.DCL", "bad : dialog {\n  : button { key = \"a\" }\n}\n");
  EXPECT_NE(ads_load_dialog("BAD.DCL", &id), RTNORM);
  EXPECT_NE(Output().find("Dialog file error: C:\\BAD.DCL:2:"), std::string::npos) << "named as the user knows it\n" << Output();
  ads_hdlg dialog;
  EXPECT_NE(ads_new_dialog("missing", file_id, NULLCB, &dialog), RTNORM);
  EXPECT_EQ(ads_unload_dialog(file_id), RTNORM);
  EXPECT_NE(ads_new_dialog("test", file_id, NULLCB, &dialog), RTNORM);
}

}  // namespace
}  // namespace vorhost::testing
