// runs_test.cpp - applying run types to drawn geometry and labelling runs.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "draw/runs.h"
#include "emulator/io/dxf.h"
#include "host/entry.h"
#include "linetool/catalogue.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

struct Placement {
  bool placed;
  double x, y, rotation;
};

Placement Place(resbuf* data, double offset) {
  ads_point at = {0, 0, 0};
  ads_real rotation = 0;
  Placement p{run_label_placement(data, offset, at, &rotation) == 1, at[0], at[1], rotation};
  ads_relrb(data);
  return p;
}

resbuf* Line(double x1, double y1, double x2, double y2) {
  ads_point a = {x1, y1, 0}, b = {x2, y2, 0};
  return ads_buildlist(RTDXF0, "LINE", 10, a, 11, b, 0);
}

resbuf* Arc(double from_deg, double to_deg) {
  ads_point o = {0, 0, 0};
  return ads_buildlist(RTDXF0, "ARC", 10, o, 40, 10.0, 50, from_deg * M_PI / 180, 51, to_deg * M_PI / 180, 0);
}

TEST(RunLabelPlacementTest, LinesReadLeftToRightWithTheLabelAbove) {
  struct Case {
    double x1, y1, x2, y2;
    double x, y, rotation;
  } cases[] = {
      {0, 0, 10, 0, 5, 2, 0},         // left to right
      {10, 0, 0, 0, 5, 2, 360},       // right to left: 2 pi, not more
      {0, 0, 0, 10, -2, 5, 90},       // up: label on the left
      {0, 10, 0, 0, 2, 5, 270},       // down: label on the right
      {10, 0, 0, 10, 5 + 2 * std::sqrt(0.5), 5 + 2 * std::sqrt(0.5), 315},  // at 3 pi/4
  };
  for (const Case& c : cases) {
    Placement p = Place(Line(c.x1, c.y1, c.x2, c.y2), 2);
    ASSERT_TRUE(p.placed);
    EXPECT_NEAR(p.x, c.x, 1e-9) << c.x1 << "," << c.y1 << " to " << c.x2 << "," << c.y2;
    EXPECT_NEAR(p.y, c.y, 1e-9);
    EXPECT_DOUBLE_EQ(p.rotation, c.rotation);
  }
}

TEST(RunLabelPlacementTest, ArcsAreLabelledOutsideTheirMiddle) {
  Placement top = Place(Arc(30, 150), 2);
  EXPECT_NEAR(top.x, 0, 1e-9);
  EXPECT_NEAR(top.y, 12, 1e-9);
  EXPECT_NEAR(top.rotation, 0, 1e-9);
  Placement through_zero = Place(Arc(330, 90), 2);  // middle angle 30 degrees
  EXPECT_NEAR(through_zero.x, 12 * std::cos(M_PI / 6), 1e-9);
  EXPECT_NEAR(through_zero.y, 12 * std::sin(M_PI / 6), 1e-9);
  EXPECT_NEAR(through_zero.rotation, -60, 1e-9);
  ads_point o = {0, 0, 0};
  EXPECT_FALSE(Place(ads_buildlist(RTDXF0, "CIRCLE", 10, o, 40, 1.0, 0), 2).placed);
  EXPECT_FALSE(Place(ads_buildlist(RTDXF0, "LWPOLYLINE", 0), 2).placed);
}

TEST(LabelGapTest, ReadsTheNumberTheTextBeginsWith) {
  struct Case {
    const char* text;
    double value;
  } cases[] = {{"2.5", 2.5}, {"3.5 mm", 3.5}, {"  4", 4}, {"mm", 0}, {"", 0}, {"0x10", 0},
               {"inf", 0}, {"nan", 0}, {"-1.5", -1.5}, {"1e1", 10}, {".5", .5}, {"2.", 2}};
  for (const Case& c : cases) EXPECT_DOUBLE_EQ(label_gap_value(c.text), c.value) << c.text;
}

// The selected run type ELINE1 on layer E-POWER in colour 1, its label
// with a diameter sign; the selection is answered by the user.
class RunDrawingTest : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    WriteFile("VOR/ELINE.CAT",
              "(\"E1\" \"ELINE1\" \"E-POWER\" \"1\" \"5.5x2,\xA3\x70" "28PVC\" \"((S5.5 2) (PVC28 1))\" \"A,.5,-.25\")\r\n"
              "(\"E2\" \"ELINE2\" \"E-LIGHT\" \"2\" \"2.0x2\" \"((S2.0 2))\" \"A,.5,-.25\")\r\n\x1A");
    WriteFile("RUNS.LIN", "*ELINE1\r\nA,.5,-.25\r\n*ELINE2\r\nA,.5,-.25\r\n");
    ads_command(RTSTR, "LINETYPE", RTSTR, "L", RTSTR, "*", RTSTR, "RUNS.LIN", RTSTR, "", 0);
    catalogue_load();
    RowMap[0] = 0;
    RowMap[1] = 1;
    SelectedRow = 0;
    LabelOn = 1;
    std::strcpy(LabelGap, "2.5");
  }
  void Draw(const char* command, std::vector<std::string> answers) {
    Answer(std::move(answers));
    host_->command_line().Execute(command);
  }
  std::vector<const Entity*> All(const char* type) {
    std::vector<const Entity*> out;
    for (uint64_t id : host_->document().drawing().MainEntities())
      if (host_->document().drawing().Find(id)->type == type) out.push_back(host_->document().drawing().Find(id));
    return out;
  }
  short Echo() {
    SysValue v;
    host_->document().sysvars().Get("CMDECHO", &v);
    return std::get<short>(v);
  }
};

TEST_F(RunDrawingTest, RunsTakeTheRunTypeAndItsLabel) {
  Draw("LINE", {"0,0", "100,0", ""});
  Draw("ARC", {"C", "0,0", "10,0", "A", "120"});
  Draw("PLINE", {"200,0", "200,10", "A", "210,10", ""});
  Draw("CIRCLE", {"50,50", "5"});
  Answer({"ALL", ""});
  apply_run_type();
  for (const char* type : {"LINE", "ARC", "POLYLINE"})
    for (const Entity* e : All(type)) {
      EXPECT_EQ(e->layer, "E-POWER") << type;
      EXPECT_EQ(e->linetype, "ELINE1") << type;
      EXPECT_EQ(e->color, 1) << type;
    }
  EXPECT_EQ(All("CIRCLE")[0]->layer, "0");
  std::vector<const Entity*> labels = All("TEXT");
  ASSERT_EQ(labels.size(), 3u);
  EXPECT_EQ(labels[0]->Text(1), "5.5x2,%%c28PVC");
  EXPECT_EQ(labels[0]->Point(11), (Point3{50, 3.75, 0})) << "half the height 2.5 plus the gap 2.5";
  EXPECT_EQ(labels[0]->Short(72), 4);
  EXPECT_EQ(Echo(), 1);
  EXPECT_EQ(host_->document().tables().layers().Find("E-POWER")->color, 7);
}

TEST_F(RunDrawingTest, APolylineWhoseFirstSegmentIsAClockwiseHalfCircle) {
  Draw("PLINE", {"0,0", "0,10", "A", "10,10", ""});  // the arc follows the first segment
  Draw("PLINE", {"0,-50", "A", "20,-50", ""});       // tangent east: bulge 0, a line
  Entity* second = host_->document().drawing().Find(host_->document().drawing().Next(host_->document().drawing().MainEntities()[1]));
  second->Set(42, -1.0);  // make its first segment a clockwise half circle
  Answer({"L", ""});
  apply_run_type();
  const Entity* label = All("TEXT").back();
  // Clockwise from (0,-50) to (20,-50), labelled as the same half circle
  // counter-clockwise from (20,-50) to (0,-50): the middle is at the top.
  EXPECT_NEAR(label->Point(11)[0], 10, 1e-9);
  EXPECT_NEAR(label->Point(11)[1], -50 + 10 + 3.75, 1e-9);
  EXPECT_NEAR(label->Real(50), 0, 1e-9);
}

TEST_F(RunDrawingTest, ASelectionWithoutRunsIssuesNoCommand) {
  Draw("CIRCLE", {"0,0", "5"});
  Answer({"ALL", ""});
  size_t before = host_->document().drawing().entities().size();
  apply_run_type();
  EXPECT_EQ(host_->document().tables().layers().Find("E-POWER"), nullptr);
  EXPECT_EQ(host_->document().drawing().entities().size(), before);
  EXPECT_EQ(Echo(), 1);
  Answer({"#cancel"});
  apply_run_type();  // a cancelled selection: nothing at all
  EXPECT_EQ(host_->document().drawing().entities().size(), before);
}

TEST_F(RunDrawingTest, LabelOffLeavesTheTextOut) {
  LabelOn = 0;
  Draw("LINE", {"0,0", "10,0", ""});
  Answer({"ALL", ""});
  apply_run_type();
  EXPECT_TRUE(All("TEXT").empty());
  EXPECT_EQ(All("LINE")[0]->linetype, "ELINE1");
}

TEST_F(RunDrawingTest, AFixedHeightStyleTakesTheShorterTextForm) {
  host_->document().tables().styles().Put(StyleRecord{"FIXED", "romans", "", 4.0});
  host_->document().sysvars().Force("TEXTSTYLE", std::string("FIXED"));
  Draw("LINE", {"0,0", "10,0", ""});
  Answer({"ALL", ""});
  apply_run_type();
  const Entity* label = All("TEXT")[0];
  EXPECT_EQ(label->Real(40), 4);
  EXPECT_EQ(label->Point(11), (Point3{5, 4.5, 0}));
  EXPECT_EQ(label->Text(1), "5.5x2,%%c28PVC");
}

TEST_F(RunDrawingTest, ExistingRunsGetTheLabelOfTheirOwnRunType) {
  Draw("LINE", {"0,0", "10,0", ""});
  Draw("LINE", {"0,20", "10,20", ""});
  Draw("LINE", {"0,40", "10,40", ""});
  std::vector<uint64_t> lines = host_->document().drawing().MainEntities();
  host_->document().drawing().Find(lines[0])->linetype = "eline2";  // the catalogue's case differs
  host_->document().drawing().Find(lines[1])->linetype = "ELINE1";
  // the third carries its layer's linetype: no label
  LabelOn = 0;  // the label switch does not matter here
  Answer({"ALL", ""});
  label_existing_runs();
  std::vector<const Entity*> labels = All("TEXT");
  ASSERT_EQ(labels.size(), 2u);
  EXPECT_EQ(labels[0]->Text(1), "2.0x2");
  EXPECT_EQ(labels[1]->Text(1), "5.5x2,%%c28PVC");
  EXPECT_EQ(labels[1]->Point(11), (Point3{5, 23.75, 0}));
  EXPECT_EQ(find_run_type_by_linetype("SLINE1"), 0);
}

// Writes the drawing of labelled runs where $VOR_RUNS_DXF says, for the
// independent reader's check (tests/draw/check_runs.py).
TEST_F(RunDrawingTest, SavesADrawingOfLabelledRuns) {
  const char* path = std::getenv("VOR_RUNS_DXF");
  if (!path) GTEST_SKIP() << "VOR_RUNS_DXF names no file to write";
  Draw("LINE", {"0,0", "100,0", ""});
  Draw("PLINE", {"0,-30", "100,-30", "A", "100,-80", ""});
  Draw("ARC", {"C", "150,0", "170,0", "A", "90"});
  Answer({"ALL", ""});
  apply_run_type();
  SelectedRow = 1;
  Draw("LINE", {"0,-100", "100,-100", ""});
  Answer({"L", ""});
  apply_run_type();
  std::string err;
  ASSERT_TRUE(SaveDxf(host_->document().drawing(), host_->document().sysvars(), path, &err)) << err;
}

}  // namespace
}  // namespace vorhost::testing
