// layer_test.cpp - the layer dialog over a memo, driven by a user's events.
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "emulator/core/alloc.h"
#include "host/dialogs.h"
#include "layer/layer.h"
#include "support/module_fixture.h"
#include "support/files.h"

namespace vorhost::testing {
namespace {

class LayerTest : public ModuleStateTest {
 protected:
  void SetUp() override {
    ModuleStateTest::SetUp();
    ASSERT_EQ(dialog_file_load("VORMIS.DCL"), RTNORM) << Output();
    SetSymbol("VORMIS", "C:/VOR");
    std::strcpy(ChosenLayer, "left over");
    blocks_ = LiveModuleBlocks();
  }
  void TearDown() override {
    ads_unload_dialog(DialogFile);
    ModuleStateTest::TearDown();
  }
  // The memo, lines given in UTF-8, written as the module's text files are.
  void Memo(const std::vector<std::string>& lines) {
    std::string bytes;
    for (const std::string& line : lines) bytes += Big5(line) + "\r\n";
    WriteFile("VOR/LAYER.MEO", bytes + "\x1A");
  }
  // The chosen layer after the user's events; the memo is released on
  // every path.
  std::string Run(std::vector<std::string> events) {
    Answer(std::move(events));
    EXPECT_EQ(layer_dialog(), RTNORM);
    EXPECT_EQ(LayerMemo.head, nullptr);
    EXPECT_EQ(LayerMemo.count, 0);
    EXPECT_EQ(LiveModuleBlocks(), blocks_);
    return ChosenLayer;
  }
  // The rows of the list as #show prints them (UTF-8, tabs as "|").
  std::vector<std::string> Rows() const {
    std::vector<std::string> rows;
    const std::string& out = Output();
    for (size_t at = out.find("\n    "); at != std::string::npos; at = out.find("\n    ", at + 1)) {
      size_t colon = out.find(": ", at);
      rows.push_back(out.substr(colon + 2, out.find('\n', colon) - colon - 2));
    }
    return rows;
  }
  long blocks_ = 0;
};

TEST_F(LayerTest, EachMemoLineWithAWordIsARowOfSevenColumns) {
  Memo({"E-LIGHT 照明 CONTINUOUS 1", "", "E-POWER", "   \t ",
        "S-TV  電視   DASHED\t5  ignored words"});
  Run({"#show", "cancel"});
  EXPECT_EQ(Rows(), (std::vector<std::string>{"E-LIGHT|照明|CONTINUOUS|1|.|.|.",
                                              "E-POWER|.|.|.|.|.|.",
                                              "S-TV|電視|DASHED|5|.|.|."}))
      << Output();
}

TEST_F(LayerTest, ColumnsAreCutToTheirWidthsButTheChosenNameIsWhole) {
  const std::string name20 = "P-DRAIN-BASEMENT-B3X";  // 20 bytes
  Memo({name20 + " 地下三樓排水管通氣管 CONTINUOUS1234 256", "E-AC"});
  EXPECT_EQ(Run({"#show", "select layer 0", "ok"}), name20);
  ASSERT_EQ(Rows().size(), 2u) << Output();
  EXPECT_EQ(Rows()[0], "P-DRAIN-BASEMENT|地下三樓排水管通|CONTINUOUS12|256|.|.|.");
}

TEST_F(LayerTest, AFirstWordOfTheFullLineWidthComesBackWhole) {
  // A line longer than 255 bytes reaches the list as a line of 255 and the
  // rest; the first line's word is the longest name there can be.
  const std::string long_name(300, 'L');
  Memo({long_name});
  EXPECT_EQ(Run({"select layer 0", "ok"}), std::string(255, 'L'));
  EXPECT_EQ(Run({"#show", "select layer 1", "ok"}), std::string(45, 'L'));
  EXPECT_EQ(Rows()[0], std::string(16, 'L') + "|.|.|.|.|.|.");
}

TEST_F(LayerTest, OkWaitsForARowAndGivesBackThePickedName) {
  Memo({"E-LIGHT 照明迴路 CONTINUOUS 2", "E-POWER 動力迴路 CONTINUOUS 1",
        "S-TEL 電話配管 CONTINUOUS 4"});
  Answer({"ok"});
  layer_dialog();
  EXPECT_NE(user_->failure().find("is disabled"), std::string::npos) << user_->failure();
  EXPECT_EQ(ChosenLayer, std::string());
  EXPECT_EQ(LayerMemo.count, 0);

  EXPECT_EQ(Run({"select layer 1", "#show", "ok"}), "E-POWER");
  EXPECT_FALSE(user_->failed()) << user_->failure();
  EXPECT_NE(Output().find("accept button \"OK\""), std::string::npos) << Output();
  EXPECT_EQ(Run({"select layer 0", "select layer 2", "ok"}), "S-TEL") << "a new pick moves the choice";
  EXPECT_EQ(Run({"double-click layer 0"}), "E-LIGHT");
  EXPECT_FALSE(user_->failed()) << user_->failure();
  EXPECT_NE(Output().find("[Dialog VOR_LAY_SET closed: 1]"), std::string::npos);
}

TEST_F(LayerTest, CancelGivesBackNothingEvenAfterAPick) {
  Memo({"E-LIGHT 照明迴路 CONTINUOUS 2", "E-POWER 動力迴路 CONTINUOUS 1"});
  EXPECT_EQ(Run({"select layer 1", "cancel"}), "");
  EXPECT_EQ(Run({"double-click layer 0"}), "E-LIGHT");
  EXPECT_EQ(Run({"cancel"}), "") << "the last answer does not stay";
}

TEST_F(LayerTest, WithoutAMemoTheListIsEmptyAndOnlyCancelEnds) {
  EXPECT_EQ(Run({"#show", "cancel"}), "");
  EXPECT_TRUE(Rows().empty()) << Output();
  EXPECT_NE(Output().find("accept button disabled"), std::string::npos);
  Answer({"select layer 0"});
  layer_dialog();
  EXPECT_TRUE(user_->failed());
  EXPECT_EQ(ChosenLayer, std::string());
}

TEST_F(LayerTest, TheCaptionNamesThePresentLayerWithoutPickingIt) {
  Memo({"E-POWER 動力迴路 CONTINUOUS 1", "E-LIGHT 照明迴路 CONTINUOUS 2"});
  std::strcpy(InitialLayer, "E-LIGHT");
  EXPECT_EQ(Run({"#show", "cancel"}), "");
  EXPECT_NE(Output().find("current_layer text = \"設定圖層: E-LIGHT\""), std::string::npos)
      << Output();
  EXPECT_NE(Output().find("layer list_box = \"\""), std::string::npos);
  EXPECT_NE(Output().find("accept button disabled"), std::string::npos);
}

TEST_F(LayerTest, TheSampleMemoNamesEveryLayerOfTheSampleCatalogues) {
  std::string bytes = FileBytes(std::string(VORMIS_FILES) + "/../examples/c/VOR/LAYER.MEO");
  ASSERT_FALSE(bytes.empty());
  EXPECT_EQ(bytes.back(), '\x1A');
  WriteFile("VOR/LAYER.MEO", bytes);
  Run({"#show", "cancel"});
  std::vector<std::string> rows = Rows();
  EXPECT_EQ(rows.size(), 16u) << Output();
  for (const char* layer : {"E-LIGHT", "E-POWER", "E-EMER", "E-AC", "E-FEED", "S-TEL", "S-TV",
                            "S-DATA", "S-FIRE", "S-BC", "P-CW", "P-HW", "P-DRAIN", "P-GAS",
                            "P-FIRE", "P-VENT"}) {
    size_t found = 0;
    for (const std::string& row : rows)
      if (row.rfind(std::string(layer) + "|", 0) == 0 && row.find("|.|.|.|.") == std::string::npos)
        found++;
    EXPECT_EQ(found, 1u) << layer << " needs one row with its note, linetype and colour";
  }
}

TEST_F(LayerTest, ADialogThatCannotBeMadeFailsWithTheHostMessage) {
  Memo({"E-LIGHT"});
  ads_unload_dialog(DialogFile);
  // ads_fail fails the module call in progress: run the dialog inside one.
  static int status;
  host_->module().Load([](int msg, void*) {
    if (msg == 5) status = layer_dialog();
    return RTNORM;
  });
  lisp::Value result;
  std::string err;
  EXPECT_FALSE(host_->module().Call(0, {}, &result, &err));
  EXPECT_EQ(status, RTERROR);
  EXPECT_EQ(err, "Unable to initialize dialog box: VOR_LAY_SET");
  EXPECT_EQ(ChosenLayer, std::string());
  EXPECT_EQ(LayerMemo.count, 0);
  EXPECT_EQ(LiveModuleBlocks(), blocks_);
}

}  // namespace
}  // namespace vorhost::testing
