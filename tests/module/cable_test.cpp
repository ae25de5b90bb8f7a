// cable_test.cpp - the cable dialogs, opened from the run-type editor's
// button b4 and driven by the user's events, as the host runs them.
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "cable/cable.h"
#include "host/dialogs.h"
#include "linetool/catalogue.h"
#include "support/module_fixture.h"
#include "support/files.h"

namespace vorhost::testing {
namespace {

std::string g_t3, g_t4;  // the editor's tiles when its OK was pressed

void KeepEditorTiles(ads_callback_packet* packet) {
  char text[256];
  ads_get_tile(packet->dialog, "t3", text, sizeof text);
  g_t3 = text;
  ads_get_tile(packet->dialog, "t4", text, sizeof text);
  g_t4 = text;
  ads_done_dialog(packet->dialog, DLGOK);
}

class CableTest : public ModuleStateTest {
 protected:
  void SetUp() override {
    ModuleStateTest::SetUp();
    ASSERT_EQ(dialog_file_load("VORMIS.DCL"), RTNORM) << Output();
    g_t3 = g_t4 = "";
  }
  void TearDown() override {
    ads_unload_dialog(DialogFile);
    ModuleStateTest::TearDown();
  }

  // Opens the editor on a run type of kind whose list is items, presses b4
  // and plays events in the cable dialog (ending it), then OK in the editor.
  void Edit(const char* kind, const std::string& items, std::vector<std::string> events) {
    std::strcpy(KindName, kind);
    std::strcpy(RecordFields[5], items.c_str());
    std::strcpy(RecordFields[4], "old label");
    events.insert(events.begin(), "press b4");
    events.push_back("#dialog VOR_ELINE_1");
    events.push_back("ok");
    Answer(std::move(events));
    ads_hdlg editor;
    ASSERT_EQ(dialog_new("VOR_ELINE_1", &editor), RTNORM);
    ads_set_tile(editor, "t3", RecordFields[4]);
    ads_set_tile(editor, "t4", RecordFields[5]);
    ads_action_tile(editor, "b4", cable_dialog);
    ads_action_tile(editor, "accept", KeepEditorTiles);
    int status = -2;
    ads_start_dialog(editor, &status);
    EXPECT_EQ(status, DLGOK);
    EXPECT_FALSE(user_->failed()) << user_->failure() << "\n" << Output();
  }

  // Runs body inside a call of the module, so that ads_fail has a call to
  // fail; gives the failure message, or "" when the call did not fail.
  std::string InModuleCall(std::function<void()> body) {
    static std::function<void()>* current;
    current = &body;
    host_->module().Load(+[](int msg, void*) {
      if (msg == kInvkSubrMsg && current) (*current)();
      return 0;
    });
    lisp::Value result;
    std::string err;
    host_->module().Call(0, {}, &result, &err);
    current = nullptr;
    return err;
  }

  // Loads a copy of VORMIS.DCL in which the dialog name is missing.
  void LoadWithout(const std::string& name) {
    std::string dcl = FileBytes(std::string(VORMIS_FILES) + "/VORMIS.DCL");
    size_t at = dcl.find(name + " : dialog");
    ASSERT_NE(at, std::string::npos);
    dcl.replace(at, name.size(), name.substr(0, name.size() - 1) + "Z");
    WriteFile("TRIM.DCL", dcl);
    ads_unload_dialog(DialogFile);
    ASSERT_EQ(dialog_file_load("TRIM.DCL"), RTNORM) << Output();
  }

  // The line #show printed last for the tile key.
  std::string Shown(const std::string& key) const {
    size_t at = Output().rfind("\n  " + key + " ");
    if (at == std::string::npos) return "";
    return Output().substr(at + 1, Output().find('\n', at + 1) - at - 1);
  }
  // Whether the texts appear in the transcript in this order.
  bool InOrder(std::vector<std::string> texts) const {
    size_t from = 0;
    for (const std::string& t : texts) {
      from = Output().find(t, from);
      if (from == std::string::npos) return false;
      from += t.size();
    }
    return true;
  }
};

// ---- ELINE ------------------------------------------------------------------

TEST_F(CableTest, ElineItemsBecomeTheListAndTheLabelOnOk) {
  Edit("ELINE", "", {"#dialog VOR_ELINE_CABLE", "choose S5.5", "#dialog NUMBER_TOOL", "#show",
                     "press 2", "ok", "choose E5.5", "press 1", "ok", "ok"});
  EXPECT_STREQ(RecordFields[5], "((S5.5 2) (E5.5 1))");
  EXPECT_STREQ(RecordFields[4], "5.5x2,5.5E");
  EXPECT_EQ(g_t3, "5.5x2,5.5E");
  EXPECT_EQ(g_t4, "((S5.5 2) (E5.5 1))");
  EXPECT_NE(Output().find("type text = \"數量:\""), std::string::npos) << Output();
}

TEST_F(CableTest, ACountReplacesRemovesOrLeavesTheGroup) {
  Edit("ELINE", "((S5.5 2) (E5.5 1))", {"choose S5.5", "press 3", "ok", "ok"});
  EXPECT_STREQ(RecordFields[5], "((S5.5 3) (E5.5 1))");
  Edit("ELINE", RecordFields[5], {"choose S5.5", "press 0", "ok", "ok"});
  EXPECT_STREQ(RecordFields[5], "((E5.5 1))");
  EXPECT_EQ(g_t3, "5.5E");
  // A negative count, an empty one and a cancelled number tool change
  // nothing; the button chosen last stays on, the one before is switched
  // off though it sits in another cluster.
  Edit("ELINE", "((E5.5 1))",
       {"choose E5.5", "press 2", "press sign", "ok", "choose PVC28", "ok", "choose EMT25",
        "press 4", "cancel", "#show", "ok"});
  EXPECT_STREQ(RecordFields[5], "((E5.5 1))");
  EXPECT_NE(Shown("EMT25").find("= \"1\""), std::string::npos);
  EXPECT_NE(Shown("E5.5").find("= \"0\""), std::string::npos);
  EXPECT_NE(Shown("PVC28").find("= \"0\""), std::string::npos);
}

TEST_F(CableTest, CancelLeavesTheRunTypeAsItWas) {
  Edit("ELINE", "((s5.5 2))", {"#show", "choose S14", "press 1", "ok", "cancel"});
  EXPECT_NE(Shown("edit").find("= \"((S5.5 2))\""), std::string::npos) << "shown in upper case";
  EXPECT_STREQ(RecordFields[5], "((s5.5 2))");
  EXPECT_STREQ(RecordFields[4], "old label");
  EXPECT_EQ(g_t3, "old label");
  EXPECT_EQ(g_t4, "((s5.5 2))");
}

// ---- Hand editing -------------------------------------------------------------

TEST_F(CableTest, HandEditedListsAreUpperCasedExceptPiping) {
  // 量 is B6 71 in Big5: its trail byte is a "q" that must stay as it is.
  Edit("ELINE", "", {"type edit ((s5.5 3) (e2.0 1)) 量", "#show", "ok"});
  EXPECT_EQ(RecordFields[5], "((S5.5 3) (E2.0 1)) " + Big5("量"));
  EXPECT_STREQ(RecordFields[4], "5.5x3,2.0E");
  EXPECT_TRUE(InOrder({"edit edit_box", "((S5.5 3) (E2.0 1)) 量"})) << "the conversion is shown";

  Edit("SLINE", "", {"enter edit ((vcat6 2))", "ok"});
  EXPECT_STREQ(RecordFields[5], "((VCAT6 2))");
  EXPECT_STREQ(RecordFields[4], "CAT6x2");

  Edit("PLINE", "", {"type edit ((mm_pvc_20 1) (In_GIP_2 3))", "ok"});
  EXPECT_STREQ(RecordFields[5], "((mm_pvc_20 1) (In_GIP_2 3))");
  EXPECT_STREQ(RecordFields[4], "20mmpvc,2\\\"GIPx3");
  EXPECT_EQ(g_t3, "20mmpvc,2\"GIPx3");
}

// ---- SLINE --------------------------------------------------------------------

TEST_F(CableTest, SlineCaptionsFollowTheItemAndTelephoneCablesTakeAPairCount) {
  Edit("SLINE", "",
       {"#dialog VOR_SLINE_CABLE", "choose T0.5", "#dialog VOR_SLINE_CABLE_1", "#show",
        "choose 10P", "choose 20P", "#show", "ok", "#dialog NUMBER_TOOL", "#show", "press 2", "ok",
        "choose S0.5", "#show", "press 1", "ok", "choose PVC20", "#show", "press 1", "ok",
        "choose VCAT6", "#show", "press 3", "ok", "ok"});
  EXPECT_STREQ(RecordFields[5], "((T0.5-20P 2) (S0.5 1) (PVC20 1) (VCAT6 3))");
  EXPECT_EQ(RecordFields[4], "0.5-20P-PE-PVCx2,0.5," + Big5("φ") + "20PVC,CAT6x3");
  EXPECT_TRUE(InOrder({"accept button disabled", "10P radio_button \"10P\" = \"0\"",
                       "type text = \"組數:\"", "type text = \"條數:\"", "type text = \"支數:\"",
                       "type text = \"條數:\""}))
      << Output();
}

TEST_F(CableTest, CancelledPairCountAddsNothingAndAsksNoNumber) {
  Edit("SLINE", "((S0.5 1))",
       {"choose T0.4", "choose 2P", "cancel", "#dialog VOR_SLINE_CABLE", "choose T0.9", "#show",
        "cancel", "#dialog VOR_SLINE_CABLE", "ok"});
  EXPECT_STREQ(RecordFields[5], "((S0.5 1))");
  EXPECT_NE(Shown("accept").find("disabled"), std::string::npos) << "no choice carried over";
  EXPECT_EQ(CableChoice, std::string());
}

// ---- PLINE --------------------------------------------------------------------

TEST_F(CableTest, PipesTakeTheMaterialTypedBeforeThemAndKeepTheirOwn) {
  Edit("PLINE", "",
       {"#dialog VOR_PLINE_CABLE", "choose 20", "press 1", "ok", "type pipe PVC", "choose A1/2",
        "press 3", "ok", "choose 20", "press 2", "ok", "enter pipe GIP", "choose A1-1/4",
        "press 1", "ok", "type pipe sp", "choose 100", "press 1", "ok", "ok"});
  EXPECT_STREQ(RecordFields[5], "((mm__20 2) (in_PVC_1/2 3) (in_PVC_1-1/4 1) (mm_sp_100 1))");
  EXPECT_STREQ(RecordFields[4], "20mmx2,1/2\\\"PVCx3,1-1/4\\\"PVC,100mmsp");
  EXPECT_EQ(g_t3, "20mmx2,1/2\"PVCx3,1-1/4\"PVC,100mmsp");
  EXPECT_EQ(g_t4, RecordFields[5]);

  // The material is emptied when the dialog opens again; 0 removes by size.
  Edit("PLINE", RecordFields[5], {"#show", "choose 32", "press 1", "ok", "choose A1/2", "press 0", "ok", "ok"});
  EXPECT_NE(Shown("pipe").find("= \"\""), std::string::npos);
  EXPECT_STREQ(RecordFields[5], "((mm__20 2) (in_PVC_1-1/4 1) (mm_sp_100 1) (mm__32 1))");
}

// ---- Help and failures ----------------------------------------------------------

TEST_F(CableTest, HelpShowsTheFamilysTopicOrSaysWhyNot) {
  // A help file in the current directory comes first on the search path.
  WriteFile("VORMIS.HLP", "[VOR_ELINE_CABLE]\r\nElectrical.\r\n[VOR_SLINE_CABLE]\r\nSignal.\r\n");
  Edit("SLINE", "", {"press help", "ok"});
  EXPECT_TRUE(InOrder({"---- Help: VOR_SLINE_CABLE ----", "Signal."})) << Output();
  Edit("PLINE", "", {"press help", "ok"});
  EXPECT_NE(Output().find("No help topic VOR_PLINE_CABLE in VORMIS.HLP."), std::string::npos);
  EXPECT_EQ(Output().find("[Alert]"), std::string::npos);

  host_->lisp().Undefine("ADS_HELP");
  Edit("ELINE", "", {"press help", "ok"});
  EXPECT_NE(Output().find("[Alert] Can not invoke function : ADS_HELP"), std::string::npos);
}

TEST_F(CableTest, AMissingCableDialogFailsWithTheHostMessage) {
  LoadWithout("VOR_ELINE_CABLE");
  std::string failure = InModuleCall([&] { Edit("ELINE", "((S5.5 2))", {}); });
  EXPECT_EQ(failure, "Unable to initialize dialog box: VOR_ELINE_CABLE");
  EXPECT_STREQ(RecordFields[5], "((S5.5 2))");
  EXPECT_STREQ(RecordFields[4], "old label");
}

TEST_F(CableTest, AMissingPairCountDialogAddsNoTelephoneCable) {
  LoadWithout("VOR_SLINE_CABLE_1");
  std::strcpy(CableChoice, "10P");  // left by an earlier choice
  std::string failure = InModuleCall([&] {
    Edit("SLINE", "", {"choose T0.5", "choose S0.5", "press 1", "ok", "ok"});
  });
  EXPECT_EQ(failure, "Unable to initialize dialog box: VOR_SLINE_CABLE_1");
  EXPECT_STREQ(RecordFields[5], "((S0.5 1))");
}

}  // namespace
}  // namespace vorhost::testing
