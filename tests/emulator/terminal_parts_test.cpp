// terminal_parts_test.cpp - the pieces a person's front end is made of and
// a window shares: the history file, completion, dialogs drawn as text.
// The terminal itself is driven through a pseudo-terminal by
// tests/terminal/terminal_test.py.
#include <filesystem>
#include <sstream>

#include "emulator/core/encoding.h"
#include "emulator/ui/completer.h"
#include "emulator/ui/dialog_view.h"
#include "emulator/ui/history.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

// ---- History -----------------------------------------------------------------

TEST(HistoryTest, KeepsTypedLinesButNotBlanksRepeatsOrMoreThanItsLimit) {
  History history(3);
  for (const char* line : {"LINE", "", "   ", "LINE", "(VOR_ELINE)", "CIRCLE\nX", "TEXT", "LINE"}) history.Add(line);
  EXPECT_EQ(history.lines(), (std::vector<std::string>{"CIRCLE", "TEXT", "LINE"}));
}

TEST(HistoryTest, SurvivesBetweenSessionsAndAMissingFileIsEmpty) {
  std::string dir = ::testing::TempDir() + "/vor_history_test";
  std::filesystem::create_directories(dir);
  std::string file = dir + "/history", why;
  History first;
  ASSERT_TRUE(first.Load(file, &why)) << why;
  EXPECT_TRUE(first.lines().empty());
  first.Add("(setq VORMIS \"C:/VOR\")");
  first.Add("管線");
  ASSERT_TRUE(first.Save(file, &why)) << why;
  History second;
  ASSERT_TRUE(second.Load(file, &why)) << why;
  EXPECT_EQ(second.lines(), first.lines());
  // A history that cannot be read is said so, not taken as empty.
  EXPECT_FALSE(second.Load(dir, &why));
  EXPECT_NE(why.find(dir), std::string::npos);
  std::filesystem::remove_all(dir);
}

// ---- Completion, dialogs drawn and the session's commands ----------------------

class TerminalPartsTest : public HostTest {
 protected:
  Completion Complete(const std::string& line, Asking asking = Asking::kCommand) {
    return Completer(*host_).Complete(line, line.size(), asking);
  }

  // A dialog of a file written to C:, created but not started, for its
  // tiles to be set as a module sets them.
  Dialog& Open(const std::string& dcl_utf8, const std::string& name) {
    WriteFile("T.DCL", Big5(dcl_utf8));
    int id = 0;
    EXPECT_EQ(host_->dialogs().Load("C:/T.DCL", &id), RTNORM) << Output();
    ads_hdlg handle = nullptr;
    EXPECT_EQ(host_->dialogs().New(name, id, NULLCB, &handle), RTNORM) << Output();
    return *host_->dialogs().Find(handle);
  }

  static std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);) lines.push_back(l);
    return lines;
  }
};

TEST_F(TerminalPartsTest, CompletesCommandsFunctionsAndNothingInAnArgument) {
  Completion c = Complete("lin");
  EXPECT_EQ(c.start, 0u);
  EXPECT_EQ(c.candidates, (std::vector<std::string>{"LINE", "LINETYPE"}));
  EXPECT_EQ(c.CommonPrefix(), "LINE");
  EXPECT_EQ(Complete("qu").candidates, std::vector<std::string>{"QUIT"});
  c = Complete("(setq A (getv");
  EXPECT_EQ(c.start, 9u);
  EXPECT_EQ(c.candidates, std::vector<std::string>{"GETVAR"});
  EXPECT_TRUE(Complete("LINE 0").candidates.empty());
  EXPECT_TRUE(Complete("L", Asking::kPrompt).candidates.empty());
}

TEST_F(TerminalPartsTest, CompletesEventsTheTilesTheyFitAndRows) {
  Dialog& d = Open(R"(T : dialog { label = "試驗";
      : list_box { key = "runs"; }
      : edit_box { key = "gap"; label = "間距"; }
      : button { key = "go"; label = "Go"; }
      : button { key = "gone"; label = "Gone"; is_enabled = false; }
      ok_cancel; })", "T");
  d.Find("runs")->rows = {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"};
  // Completion offers the tiles of the dialog on top: ask from inside it.
  struct Asker : User {
    Host* host = nullptr;
    std::vector<Completion> got;
    Input Read(Asking, std::string_view) override { return Input::End(); }
    DialogInput ReadEvent(Dialog&, std::string_view) override {
      Completer c(*host);
      for (const char* line : {"pr", "press g", "select runs 1", "type ", "toggle "})
        got.push_back(c.Complete(line, std::string(line).size(), Asking::kDialog));
      return DialogInput::Escape();
    }
    EditOutcome EditText(std::string*, std::string*) override { return EditOutcome::kUnchanged; }
  } asker;
  asker.host = host_.get();
  host_->console().set_user(&asker);
  int status = 0;
  host_->dialogs().Start(&d, &status);
  ASSERT_EQ(asker.got.size(), 5u);
  EXPECT_EQ(asker.got[0].candidates, std::vector<std::string>{"press"});
  EXPECT_EQ(asker.got[1].candidates, std::vector<std::string>{"go"});  // "gone" is disabled
  EXPECT_EQ(asker.got[2].candidates, (std::vector<std::string>{"1", "10", "11"}));
  EXPECT_FALSE(asker.got[2].then_blank);
  EXPECT_EQ(asker.got[3].candidates, std::vector<std::string>{"gap"});
  EXPECT_TRUE(asker.got[4].candidates.empty());
}

TEST_F(TerminalPartsTest, DisplayWidthCountsChineseTwiceAndColoursNot) {
  struct Case {
    const char* text;
    size_t width;
  } cases[] = {{"", 0}, {"abc", 3}, {"管線定義", 8}, {"E-管1", 5}, {"\x1b[7mOK\x1b[0m", 2}, {"ｱ", 1}};
  for (const Case& c : cases) EXPECT_EQ(DisplayWidth(c.text), c.width) << c.text;
}

TEST_F(TerminalPartsTest, DrawsListsOnTabStopsWithTheChosenRowAndDisabledTilesMarked) {
  Dialog& d = Open(R"(T : dialog { label = "管線定義";
      : concatenation {
        : text_part { label = "代號"; width = 8; }
        : text_part { label = "線型"; width = 10; }
      }
      : list_box { key = "runs"; tabs = "8 18"; height = 5; }
      : boxed_row { label = "動作";
        : toggle { key = "dim"; label = "標註"; }
        : button { key = "del"; label = "刪除"; is_enabled = false; }
      }
      : edit_box { key = "gap"; label = "間距:"; edit_width = 6; }
      ok_cancel; })", "T");
  LiveTile& runs = *d.Find("runs");
  for (int i = 0; i < 30; i++) runs.rows.push_back(Big5("E" + std::to_string(i) + "\t實線\t照明"));
  runs.value = "20";
  d.Find("dim")->value = "1";
  d.Find("gap")->value = "2.5";
  std::string drawn = DrawDialog(d, DialogViewStyle{});
  std::vector<std::string> lines = Lines(drawn);
  for (const std::string& l : lines) EXPECT_LE(DisplayWidth(l), 80u) << l;
  EXPECT_NE(lines[0].find("管線定義 (T)"), std::string::npos) << drawn;
  // The headers stand over the columns of the rows, the chosen row shown
  // among its neighbours and marked, the rest of the list counted.
  size_t header = drawn.find("代號    線型");
  size_t row = drawn.find(">  20 E20     實線      照明");
  ASSERT_NE(header, std::string::npos) << drawn;
  ASSERT_NE(row, std::string::npos) << drawn;
  auto column = [&](size_t at) { return DisplayWidth(drawn.substr(drawn.rfind('\n', at) + 1, at - drawn.rfind('\n', at) - 1)); };
  EXPECT_EQ(column(header), column(drawn.find("E20", row)));
  EXPECT_NE(drawn.find("... 18 above"), std::string::npos) << drawn;
  EXPECT_NE(drawn.find("... 7 below"), std::string::npos) << drawn;
  EXPECT_EQ(drawn.find("E0 "), std::string::npos);
  EXPECT_NE(drawn.find("+- 動作 "), std::string::npos) << drawn;
  EXPECT_NE(drawn.find("[x] 標註(dim)"), std::string::npos) << drawn;
  EXPECT_NE(drawn.find("-[刪除](del)"), std::string::npos) << drawn;
  EXPECT_NE(drawn.find("間距: [2.5   ](gap)"), std::string::npos) << drawn;
  // Narrow terminals get a drawing that fits them.
  DialogViewStyle narrow;
  narrow.width = 40;
  for (const std::string& l : Lines(DrawDialog(d, narrow))) EXPECT_LE(DisplayWidth(l), 40u) << l;
}

}  // namespace
}  // namespace vorhost::testing
