// panel_test.cpp - VOR_ACF: panels drawn from schedules chosen in the file
// browser, with the geometry a designer would check.
#include <cmath>
#include <string>
#include <vector>

#include "host/entry.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

class PanelTest : public ModuleTest {
 protected:
  // A schedule of n circuits, each circuit line as given or a plain one.
  void Schedule(const std::string& name, std::vector<std::string> circuits) {
    std::string text = "PN01: corner;TITLE\r\n";
    for (const std::string& c : circuits) text += c + "\r\n";
    text += "TOTAL;1000;;100AF;60AT;3P;10KA\r\n";
    WriteFile("ACF/" + name, text);
  }
  static std::string Plain() { return "DESC;1;R;50AF;20AT;1P;5KA;2.0 mm;2;PVC;16;2.0 mm;;;;;;;;"; }
  void Run(std::vector<std::string> events) {
    Answer(std::move(events));
    host_->command_line().Execute("(VOR_ACF)");
    ASSERT_FALSE(user_->failed()) << user_->failure() << "\n" << Output();
  }
  std::vector<const Entity*> Of(const char* type, const char* block = nullptr) {
    std::vector<const Entity*> out;
    for (uint64_t id : host_->document().drawing().MainEntities()) {
      const Entity* e = host_->document().drawing().Find(id);
      if (e->type == type && (!block || e->Text(2) == block)) out.push_back(e);
    }
    return out;
  }
  const Entity* TextOf(const std::string& text) {
    for (const Entity* e : Of("TEXT"))
      if (e->Text(1) == text) return e;
    return nullptr;
  }
  double Var(const char* name) {
    SysValue v;
    host_->document().sysvars().Get(name, &v);
    if (auto* s = std::get_if<short>(&v)) return *s;
    return std::get<double>(v);
  }
};

TEST_F(PanelTest, OneCircuitHangsBelowTheFeederWithoutABus) {
  Schedule("ONE.ACF", {Plain()});
  Run({"select file 0", "ok", "0,0"});
  EXPECT_EQ(Of("POLYLINE").size(), 2u) << "feeder top and bottom, no bus";
  const Entity* box = Of("LINE").front();  // the box's first side comes first
  EXPECT_EQ(box->Point(10), (Point3{-150, -715, 0}));
  EXPECT_EQ(box->linetype, "DASHED");
  EXPECT_EQ(Of("LINE")[1]->Point(11), (Point3{250, -50, 0}));
  EXPECT_EQ(Of("INSERT", "NFB--").size(), 2u);
  EXPECT_EQ(Of("INSERT", "NFB--")[1]->Point(10), (Point3{0, -500, 0}));
}

TEST_F(PanelTest, FourCircuitsAtTheOrigin) {
  Schedule("FOUR.ACF", {Plain(), Plain(), Plain(), Plain()});
  Run({"select file 0", "ok", "0,0"});
  std::vector<const Entity*> plines = Of("POLYLINE");
  ASSERT_EQ(plines.size(), 3u);
  const Entity* bus_start = host_->document().drawing().Find(host_->document().drawing().Next(plines[2]->id));
  EXPECT_EQ(bus_start->Point(10), (Point3{-375, -400, 0}));
  EXPECT_EQ(bus_start->Real(40), 5);
  std::vector<const Entity*> breakers = Of("INSERT", "NFB--");
  ASSERT_EQ(breakers.size(), 5u);
  double xs[] = {-375, -125, 125, 375};
  for (int k = 0; k < 4; k++) EXPECT_EQ(breakers[k + 1]->Point(10), (Point3{xs[k], -500, 0}));
  const Entity* total = TextOf("Total:1000VA");
  ASSERT_NE(total, nullptr);
  EXPECT_EQ(total->Point(10), (Point3{-500, -87.5, 0}));
  const Entity* corner = TextOf("corner");
  ASSERT_NE(corner, nullptr) << "the header's corner text after its six-character prefix";
  EXPECT_EQ(corner->Point(11), (Point3{600, -87.5, 0}));
  EXPECT_EQ(corner->Short(72), 2);
  ASSERT_NE(TextOf("IC:10KA"), nullptr);
  ASSERT_NE(TextOf("TITLE"), nullptr);
  EXPECT_EQ(TextOf("TITLE")->Point(10), (Point3{25, 0, 0}));
  EXPECT_EQ(Of("LINE")[0]->Point(10), (Point3{-525, -715, 0}));
  EXPECT_EQ(Of("LINE")[1]->Point(11), (Point3{625, -50, 0}));
  const Entity* label = TextOf("(%%o2.0%%ox2,E%%o2.0%%o,%%c16PVC)");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->Point(10), (Point3{-350, -1080, 0}));
  EXPECT_DOUBLE_EQ(label->Real(50), -M_PI / 2);
}

TEST_F(PanelTest, TheMiddleOfABranchFollowsItsSwitches) {
  Schedule("MID.ACF",
           {"A;1;R;50AF;20AT;1P;5KA;;;;;;;;;;;;;",      // neither
            "B;1;R;50AF;20AT;1P;5KA;;;;;;;;Y;SHT;;;;",  // second breaker
            "C;1;R;50AF;20AT;1P;5KA;;;;;;M;MS-1;;;;;;",  // device
            "D;1;R;50AF;20AT;1P;5KA;;;;;;Y;YD-1;Y;SHT;R;;T1;T2",  // both, and a symbol
            "E;1;R;50AF;20AT;1P;5KA;;;;;;m;x;y;x;c;;;"});  // lower case: nothing
  Run({"select file 0", "ok", "0,0"});
  EXPECT_EQ(Of("INSERT", "NFB--").size(), 1u + 5u + 2u);
  EXPECT_EQ(Of("INSERT", "MS--").size(), 1u);
  ASSERT_EQ(Of("INSERT", "Y3--").size(), 1u);
  EXPECT_EQ(Of("INSERT", "Y3--")[0]->Point(10), (Point3{250, -627.5, 0}));
  ASSERT_EQ(Of("INSERT", "SP--").size(), 2u);
  EXPECT_NEAR(Of("INSERT", "SP--")[0]->Point(10)[1], -400 - 424.35, 1e-9);
  EXPECT_EQ(Of("INSERT", "$RECT").size(), 1u);
  ASSERT_NE(TextOf("T2"), nullptr);
  EXPECT_EQ(TextOf("T2")->Point(11), (Point3{250, -1490, 0}));
}

TEST_F(PanelTest, LtscaleIsRaisedOnlyBelowThirty) {
  Schedule("ONE.ACF", {Plain()});
  host_->document().sysvars().Force("LTSCALE", 50.0);
  Run({"select file 0", "ok", "0,0"});
  EXPECT_EQ(Var("LTSCALE"), 50);
  host_->document().sysvars().Force("LTSCALE", 1.0);
  Run({"select file 0", "ok", "0,0"});
  EXPECT_EQ(Var("LTSCALE"), 100);
  EXPECT_EQ(Var("CMDECHO"), 1);
  SysValue style;
  host_->document().sysvars().Get("TEXTSTYLE", &style);
  EXPECT_EQ(std::get<std::string>(style), "STANDARD");
}

TEST_F(PanelTest, AllStartPointsComeFirstAndAFailedPanelDoesNotStopTheNext) {
  Schedule("A.ACF", {"DESC;1;R;50AF;20AT;1P;5KA;;;;;;M;MS-1;;;;;;"});
  Schedule("B.ACF", {Plain()});
  // A starter block asking two attributes: the panel's one answer leaves
  // INSERT waiting, and the next command of panel A is refused.
  BlockRecord starter{"MS--"};
  for (const char* tag : {"A", "B"}) {
    Entity def("ATTDEF");
    def.groups = {{10, Point3{0, 0, 0}}, {40, 10.0}, {1, std::string("")}, {3, std::string(tag)},
                  {2, std::string(tag)}, {70, short{0}}};
    starter.entities.push_back(def);
  }
  starter.flags = 2;
  host_->document().tables().blocks().Put(starter);
  Run({"select file 0", "select file 1", "ok", "0,0", "#expect-no-drawing TITLE", "2000,0"});
  EXPECT_NE(Output().find("start point 1:0,0\nstart point 2:2000,0"), std::string::npos) << Output();
  std::vector<const Entity*> breakers = Of("INSERT", "NFB--");
  ASSERT_EQ(breakers.size(), 4u);
  EXPECT_EQ(breakers[3]->Point(10), (Point3{2000, -500, 0})) << "panel B drawn whole";
  EXPECT_FALSE(host_->commands().pending());
  for (const Entity* l : Of("LINE"))
    EXPECT_FALSE(l->Point(10)[0] == 0 && l->Point(10)[1] == -400 - 287.5) << "A's branch went on";
}

TEST_F(PanelTest, AScheduleWhosePathDoesNotFitIsSkippedWithAWord) {
  // C:\ACF\, 233 letters and "\": 241 characters, so LONGNAME_PANEL.ACF
  // makes 259 and, cut at 255, would be LONGNAME_PANEL.
  const std::string dir = "ACF/" + std::string(233, 'D');
  const std::string body = ";1;R;50AF;20AT;1P;5KA;;;;;;;;;;;;;\r\nTOTAL;1;;100AF;60AT;3P;10KA\r\n";
  WriteFile(dir + "/LONGNAME_PANEL.ACF", "PN01: ;LONG\r\n" + body);
  WriteFile(dir + "/LONGNAME_PANEL", "PN01: ;CUT\r\n" + body);
  WriteFile(dir + "/P1.ACF", "PN01: ;SHORT\r\n" + body);
  Answer({"select file 0", "select file 1", "ok", "0,0"});
  host_->command_line().Execute("(VOR_ACF \"C:/" + dir + "\")");
  ASSERT_FALSE(user_->failed()) << user_->failure() << "\n" << Output();
  EXPECT_NE(Output().find("\nSchedule LONGNAME_PANEL.ACF skipped: its path is longer than 255 characters\n"
                          "start point 1:0,0"),
            std::string::npos)
      << Output();
  EXPECT_EQ(Output().find("start point 2"), std::string::npos);
  EXPECT_NE(TextOf("SHORT"), nullptr);
  EXPECT_EQ(TextOf("CUT"), nullptr);
  EXPECT_EQ(TextOf("LONG"), nullptr);
}

TEST_F(PanelTest, NothingIsDrawnWhenTheUserCancels) {
  Schedule("ONE.ACF", {Plain()});
  Run({"select file 0", "ok", "#cancel"});
  EXPECT_TRUE(host_->document().drawing().MainEntities().empty());
  Run({"cancel"});
  EXPECT_TRUE(host_->document().drawing().MainEntities().empty());
  EXPECT_EQ(host_->document().tables().styles().Find("ROMANSAEH"), nullptr);
}

}  // namespace
}  // namespace vorhost::testing
