// commands_test.cpp - the host's commands driven as the module drives them
// (ads_command answer lists) and as a person types them.
#include <cmath>
#include <string>
#include <vector>

#include "emulator/drawing/textmetric.h"
#include "emulator/io/dxf.h"
#include "host/ads.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

class CommandTest : public HostTest {
 protected:
  // The entity data of the last main entity, released at teardown.
  resbuf* Last() {
    ads_name e;
    EXPECT_EQ(ads_entlast(e), RTNORM);
    return Keep(ads_entget(e));
  }
  resbuf* Keep(resbuf* list) {
    kept_.push_back(list);
    return list;
  }
  void TearDown() override {
    for (resbuf* rb : kept_) ads_relrb(rb);
    HostTest::TearDown();
  }
  static const resbuf* Group(const resbuf* list, int code) {
    for (; list; list = list->rbnext)
      if (list->restype == code) return list;
    return nullptr;
  }
  static std::string Text(const resbuf* list, int code) {
    const resbuf* g = Group(list, code);
    return g && g->resval.rstring ? g->resval.rstring : "<none>";
  }
  static double Real(const resbuf* list, int code) {
    const resbuf* g = Group(list, code);
    return g ? g->resval.rreal : NAN;
  }
  static std::vector<double> Point(const resbuf* list, int code) {
    const resbuf* g = Group(list, code);
    if (!g) return {};
    return {g->resval.rpoint[0], g->resval.rpoint[1], g->resval.rpoint[2]};
  }
  void Var(const char* name, short value) {
    resbuf rb{};
    rb.restype = RTSHORT;
    rb.resval.rint = value;
    ASSERT_EQ(ads_setvar(name, &rb), RTNORM);
  }
  std::vector<resbuf*> kept_;
};

TEST_F(CommandTest, LineAndItsEntityData) {
  ads_point a = {1, 2, 0}, b = {11, 2, 0}, c = {11, 12, 0};
  ASSERT_EQ(ads_command(RTSTR, "LINE", RT3DPOINT, a, RT3DPOINT, b, RT3DPOINT, c, RTSTR, "", 0), RTNORM);
  EXPECT_FALSE(host_->commands().pending());
  resbuf* line = Last();
  EXPECT_EQ(Text(line, 0), "LINE");
  EXPECT_EQ(Text(line, 8), "0");
  EXPECT_EQ(Group(line, 6), nullptr) << "linetype BYLAYER has no group 6";
  EXPECT_EQ(Group(line, 62), nullptr);
  EXPECT_EQ(Point(line, 10), (std::vector<double>{11, 2, 0}));
  EXPECT_EQ(Point(line, 11), (std::vector<double>{11, 12, 0}));
  EXPECT_EQ(host_->document().drawing().MainEntities().size(), 2u);
}

TEST_F(CommandTest, OldStylePolylineWithWidthsWalksIntoItsVertices) {
  ads_point a = {0, 0, 0}, b = {0, -100, 0};
  ASSERT_EQ(ads_command(RTSTR, "PLINE", RT3DPOINT, a, RTSTR, "W", RTSTR, "5", RTSTR, "5", RT3DPOINT, b,
                        RTSTR, "", 0),
            RTNORM);
  ads_name head, v1, v2, end;
  ASSERT_EQ(ads_entlast(head), RTNORM);
  EXPECT_EQ(Text(Keep(ads_entget(head)), 0), "POLYLINE");
  ASSERT_EQ(ads_entnext(head, v1), RTNORM);
  resbuf* first = Keep(ads_entget(v1));
  EXPECT_EQ(Text(first, 0), "VERTEX");
  EXPECT_EQ(Real(first, 40), 5);
  EXPECT_EQ(Real(first, 41), 5);
  EXPECT_EQ(Real(first, 42), 0);
  ASSERT_EQ(ads_entnext(v1, v2), RTNORM);
  EXPECT_EQ(Point(Keep(ads_entget(v2)), 10), (std::vector<double>{0, -100, 0}));
  ASSERT_EQ(ads_entnext(v2, end), RTNORM);
  resbuf* seqend = Keep(ads_entget(end));
  EXPECT_EQ(Text(seqend, 0), "SEQEND");
  EXPECT_EQ(Group(seqend, -2)->resval.rlname[0], head[0]);
  EXPECT_NE(ads_entnext(end, v1), RTNORM);

  Var("PLINETYPE", 2);
  ASSERT_EQ(ads_command(RTSTR, "PLINE", RT3DPOINT, a, RT3DPOINT, b, RTSTR, "", 0), RTNORM);
  EXPECT_EQ(Text(Last(), 0), "LWPOLYLINE");
}

TEST_F(CommandTest, TypedPolylineArcsGetTheirBulges) {
  Answer({"0,0", "0,10", "A", "10,10", "L", "@0,-10", ""});
  host_->command_line().Execute("PLINE");
  std::vector<double> bulges;
  for (const Entity& e : host_->document().drawing().entities())
    if (e.type == "VERTEX") bulges.push_back(e.Real(42));
  ASSERT_EQ(bulges.size(), 4u);
  EXPECT_DOUBLE_EQ(bulges[0], 0);
  EXPECT_DOUBLE_EQ(bulges[1], -1);  // going up, then a clockwise half circle
  EXPECT_DOUBLE_EQ(bulges[2], 0);
}

TEST_F(CommandTest, TextAsksTheHeightOnlyWithoutAFixedHeight) {
  ads_point p = {10, 20, 0};
  ASSERT_EQ(ads_command(RTSTR, "TEXT", RTSTR, "M", RT3DPOINT, p, RTSTR, "", RTREAL, 315.0, RTSTR,
                        "2.0mm2x3", 0),
            RTNORM);
  resbuf* t = Last();
  EXPECT_EQ(Text(t, 1), "2.0mm2x3");
  EXPECT_EQ(Real(t, 40), 2.5);
  EXPECT_NEAR(Real(t, 50), 315 * M_PI / 180, 1e-12);
  EXPECT_EQ(Group(t, 72)->resval.rint, 4);
  EXPECT_EQ(Point(t, 11), (std::vector<double>{10, 20, 0}));

  host_->document().tables().styles().Put(StyleRecord{"FIXED", "romans", "", 3.5});
  host_->document().sysvars().Force("TEXTSTYLE", std::string("FIXED"));
  ASSERT_EQ(ads_command(RTSTR, "TEXT", RTSTR, "M", RT3DPOINT, p, RTREAL, 90.0, RTSTR, "x", 0), RTNORM);
  EXPECT_EQ(Real(Last(), 40), 3.5);
  // The long form against a fixed height shifts the answers: "" is taken as
  // the rotation, the real as the text, and the text is left over as a
  // command the host does not know.
  EXPECT_NE(ads_command(RTSTR, "TEXT", RTSTR, "M", RT3DPOINT, p, RTSTR, "", RTREAL, 90.0, RTSTR, "y", 0),
            RTNORM);
  EXPECT_EQ(Text(Last(), 1), "90");
}

TEST_F(CommandTest, TextJustificationsAndTheNextLine) {
  ads_point p = {0, 0, 0};
  ASSERT_EQ(ads_command(RTSTR, "TEXT", RT3DPOINT, p, RTREAL, 25.0, RTSTR, "0", RTSTR, "Total:100VA", 0), RTNORM);
  ASSERT_EQ(ads_command(RTSTR, "TEXT", RTSTR, "", RTSTR, "IC:25KA", 0), RTNORM);
  resbuf* second = Last();
  EXPECT_EQ(Text(second, 1), "IC:25KA");
  EXPECT_DOUBLE_EQ(Point(second, 10)[1], -25 * 5.0 / 3.0);
  EXPECT_EQ(Real(second, 40), 25);

  ads_point r = {600, -87.5, 0};
  ASSERT_EQ(ads_command(RTSTR, "TEXT", RTSTR, "R", RT3DPOINT, r, RTREAL, 25.0, RTSTR, "0", RTSTR, "ABCD", 0),
            RTNORM);
  resbuf* right = Last();
  EXPECT_EQ(Point(right, 11), (std::vector<double>{600, -87.5, 0}));
  EXPECT_DOUBLE_EQ(Point(right, 10)[0], 600 - 4 * 0.75 * 25);
  ASSERT_EQ(ads_command(RTSTR, "TEXT", RTSTR, "S", RTSTR, "STANDARD", RTSTR, "BC", RT3DPOINT, p, RTREAL,
                        50.0, RTSTR, "0", RTSTR, "A1", 0),
            RTNORM);
  EXPECT_EQ(Group(Last(), 73)->resval.rint, 1);
}

TEST_F(CommandTest, StyleMakesBigFontAndVerticalStylesAndTextBoxesMeasureThem) {
  for (const char* vertical : {"N", "Y"}) {
    const char* name = vertical[0] == 'N' ? "ROMANSAEH" : "ROMANSAEV";
    ASSERT_EQ(ads_command(RTSTR, "STYLE", RTSTR, name, RTSTR, "ROMANS,AE", RTSTR, "", RTSTR, "", RTSTR, "",
                          RTSTR, "", RTSTR, "", RTSTR, vertical, 0),
              RTNORM);
  }
  const StyleRecord* h = host_->document().tables().styles().Find("ROMANSAEH");
  const StyleRecord* v = host_->document().tables().styles().Find("ROMANSAEV");
  ASSERT_TRUE(h && v);
  EXPECT_EQ(h->font, "ROMANS");
  EXPECT_EQ(h->big_font, "AE");
  EXPECT_EQ(h->flags & 4, 0);
  EXPECT_EQ(v->flags & 4, 4);
  EXPECT_EQ(v->fixed_height, 0);
  SysValue style;
  host_->document().sysvars().Get("TEXTSTYLE", &style);
  EXPECT_EQ(std::get<std::string>(style), "ROMANSAEV");

  ads_point p = {0, 0, 0}, lo, hi;
  std::string two = Big5("配電");
  ASSERT_EQ(ads_command(RTSTR, "TEXT", RTSTR, "S", RTSTR, "ROMANSAEV", RT3DPOINT, p, RTREAL, 50.0, RTSTR,
                        "270", RTSTR, two.c_str(), 0),
            RTNORM);
  resbuf* t = Last();
  ASSERT_EQ(ads_textbox(t, lo, hi), RTNORM);
  EXPECT_DOUBLE_EQ(std::fabs(hi[1] - lo[1]), 100);  // two characters of height 50, stacked
  resbuf* plain = Keep(ads_buildlist(1, "A1", 40, 10.0, 7, "ROMANSAEH", 0));
  ASSERT_EQ(ads_textbox(plain, lo, hi), RTNORM);
  EXPECT_DOUBLE_EQ(hi[0] - lo[0], 2 * kAsciiAdvance * 10);
  EXPECT_DOUBLE_EQ(hi[1] - lo[1], 10);
}

TEST_F(CommandTest, LayerThenChpropFedOverSeveralCalls) {
  ads_point a = {0, 0, 0}, b = {10, 0, 0}, c = {20, 5, 0};
  ads_command(RTSTR, "LINE", RT3DPOINT, a, RT3DPOINT, b, RTSTR, "", 0);
  ads_name first;
  ads_entlast(first);
  ads_command(RTSTR, "LINE", RT3DPOINT, b, RT3DPOINT, c, RTSTR, "", 0);
  ads_name second;
  ads_entlast(second);
  WriteFile("RUNS.LIN", "*ELINE1,power\r\nA,.5,-.25\r\n");
  ASSERT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "L", RTSTR, "*", RTSTR, "RUNS.LIN", RTSTR, "", 0), RTNORM);

  ASSERT_EQ(ads_command(RTSTR, "LAYER", RTSTR, "N", RTSTR, "E-POWER", RTSTR, "", 0), RTNORM);
  ASSERT_EQ(ads_command(RTSTR, "CHPROP", RTENAME, first, 0), RTNORM);
  EXPECT_TRUE(host_->commands().pending());
  ASSERT_EQ(ads_command(RTENAME, second, 0), RTNORM);
  ASSERT_EQ(ads_command(RTSTR, "", RTSTR, "LT", RTSTR, "eline1", RTSTR, "LA", RTSTR, "E-POWER", RTSTR, "C",
                        RTSTR, "3", RTSTR, "", 0),
            RTNORM);
  EXPECT_FALSE(host_->commands().pending());
  for (const long* name : {first, second}) {
    resbuf* data = Keep(ads_entget(name));
    EXPECT_EQ(Text(data, 6), "ELINE1");
    EXPECT_EQ(Text(data, 8), "E-POWER");
    EXPECT_EQ(Group(data, 62)->resval.rint, 3);
  }
  const LayerRecord* layer = host_->document().tables().layers().Find("E-POWER");
  ASSERT_NE(layer, nullptr);
  EXPECT_EQ(layer->color, 7);
  EXPECT_EQ(layer->linetype, "CONTINUOUS");
}

TEST_F(CommandTest, LinetypeReloadsAskUnlessExpert) {
  WriteFile("SUPPORT/RUNS.LIN", ";; runs\r\n*ELINE1\r\nA,.5,-.25\r\n*ELINE2\r\nA,1,-.5\r\n\x1A");
  setenv("ACAD", "C:\\SUPPORT", 1);
  ASSERT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "L", RTSTR, "*", RTSTR, "runs", RTSTR, "", 0), RTNORM);
  EXPECT_NE(host_->document().tables().linetypes().Find("ELINE2"), nullptr);
  // EXPERT 0: the question comes, and "N" keeps the old definition.
  ASSERT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "L", RTSTR, "ELINE1", RTSTR, "RUNS.LIN", RTSTR, "N",
                        RTSTR, "", 0),
            RTNORM);
  EXPECT_NE(Output().find("Linetype ELINE1 is already loaded.  Reload it? <Y> N"), std::string::npos);
  // EXPERT 3: no question; the same answer list would now be wrong.
  Var("EXPERT", 3);
  ASSERT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "L", RTSTR, "*", RTSTR, "RUNS.LIN", RTSTR, "", 0), RTNORM);
  EXPECT_FALSE(host_->commands().pending());
  ASSERT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "S", RTSTR, "ELINE2", RTSTR, "", 0), RTNORM);
  SysValue celtype;
  host_->document().sysvars().Get("CELTYPE", &celtype);
  EXPECT_EQ(std::get<std::string>(celtype), "ELINE2");
  EXPECT_NE(ads_command(RTSTR, "LINETYPE", RTSTR, "L", RTSTR, "*", RTSTR, "NOFILE.LIN", 0), RTNORM);
  EXPECT_FALSE(host_->commands().pending());
  unsetenv("ACAD");
}

TEST_F(CommandTest, ThePanelBoxIsDrawnDashedFromTheHostsOwnLinetypes) {
  ASSERT_EQ(ads_command(RTSTR, "LTSCALE", RTSTR, "100", 0), RTNORM);
  ASSERT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "S", RTSTR, "DASHED", RTSTR, "", 0), RTNORM);
  ads_point c[4] = {{-525, -715, 0}, {625, -715, 0}, {625, -50, 0}, {-525, -50, 0}};
  ASSERT_EQ(ads_command(RTSTR, "LINE", RT3DPOINT, c[0], RT3DPOINT, c[1], RT3DPOINT, c[2], RT3DPOINT, c[3],
                        RTSTR, "C", 0),
            RTNORM);
  EXPECT_FALSE(host_->commands().pending());
  ASSERT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "S", RTSTR, "BYLAYER", RTSTR, "", 0), RTNORM);
  std::vector<uint64_t> lines = host_->document().drawing().MainEntities();
  ASSERT_EQ(lines.size(), 4u);
  for (uint64_t id : lines) EXPECT_EQ(host_->document().drawing().Find(id)->linetype, "DASHED");
  EXPECT_EQ(host_->document().drawing().Find(lines.back())->Point(11), (Point3{-525, -715, 0}));
  SysValue v;
  host_->document().sysvars().Get("LTSCALE", &v);
  EXPECT_EQ(std::get<double>(v), 100);
  host_->document().sysvars().Get("CELTYPE", &v);
  EXPECT_EQ(std::get<std::string>(v), "BYLAYER");
}

TEST_F(CommandTest, ARejectedAnswerCancelsTheCommandAndFailsTheCall) {
  EXPECT_NE(ads_command(RTSTR, "LINE", RTSTR, "not a point", 0), RTNORM);
  EXPECT_FALSE(host_->commands().pending());
  EXPECT_NE(Output().find("Invalid point."), std::string::npos);
  EXPECT_NE(ads_command(RTSTR, "NOSUCHCOMMAND", 0), RTNORM);
  EXPECT_NE(ads_command(RTSTR, "TEXTSTYLE", RTSTR, "NOSUCHSTYLE", 0), RTNORM);
  ads_point p = {0, 0, 0};
  EXPECT_NE(ads_command(RTSTR, "CHPROP", RT3DPOINT, p, RTSTR, "", RTSTR, "LA", RTSTR, "NOLAYER", 0), RTNORM);
}

// A number that is not finite or lies out of the drawing's range, typed
// or sent by a program, and a point or record computed from answers that
// would fall out of it, are refused with the prompt's message: the person
// is asked again, the program's call fails, and nothing is drawn.
TEST_F(CommandTest, NumbersOutOfRangeAreRefused) {
  struct Typed {
    const char* command;
    std::vector<std::string> answers;  // the last is refused
    const char* refusal;
  } typed[] = {
      {"LINE", {"1e100,0"}, "Invalid point."},
      {"LINE", {"1e99,1e99", "@1e308,1e308"}, "Invalid point."},
      {"LINE", {"-1e99,0", "@1e99<180"}, "Invalid point."},
      {"CIRCLE", {"0,0", "1e100"}, "Requires a positive distance."},
      {"CIRCLE", {"3P", "0,0", "1e98,0", "2e98,1e-90"}, "Value out of range."},
      {"ARC", {"C", "1e99,0", "-1e99,0", "0,0"}, "Value out of range."},
      {"PLINE", {"1e99,0", "L", "1e99"}, "Value out of range."},
      {"PLINE", {"0,0", "H", "1e99"}, "Value out of range."},
      {"TEXT", {"0,0", "1e100"}, "Requires a positive height."},
      {"LTSCALE", {"1e100"}, "Requires a positive number."},
      {"TEXTSIZE", {"1e100"}, "Invalid value."},
  };
  for (const Typed& t : typed) {
    std::vector<std::string> lines = t.answers;
    lines.push_back("#cancel");
    Answer(lines);
    host_->command_line().Execute(t.command);
    EXPECT_NE(Output().find(t.answers.back() + "\n" + t.refusal), std::string::npos)
        << t.command << " " << t.answers.back() << "\n" << Output();
  }
  SysValue size;
  ASSERT_TRUE(host_->document().sysvars().Get("TEXTSIZE", &size));
  EXPECT_EQ(std::get<double>(size), 2.5);

  ads_point o = {0, 0, 0}, far = {1e99, 0, 0}, other_side = {-1e99, 0, 0}, inf = {INFINITY, 0, 0};
  EXPECT_EQ(ads_command(RTSTR, "LINE", RT3DPOINT, inf, 0), RTREJ);
  EXPECT_EQ(ads_command(RTSTR, "LINE", RT3DPOINT, o, RTREAL, NAN, 0), RTREJ);
  EXPECT_EQ(ads_command(RTSTR, "CIRCLE", RT3DPOINT, o, RTREAL, 1e300, 0), RTREJ);
  EXPECT_EQ(ads_command(RTSTR, "ARC", RTSTR, "C", RT3DPOINT, far, RT3DPOINT, other_side, RT3DPOINT, o, 0), RTREJ);
  EXPECT_EQ(ads_command(RTSTR, "TEXT", RT3DPOINT, o, RTREAL, 2.5, RTANG, INFINITY, 0), RTREJ);
  EXPECT_FALSE(host_->commands().pending());
  EXPECT_TRUE(host_->document().drawing().MainEntities().empty()) << Output();
}

// setvar and ads_setvar refuse what a variable cannot hold: no 16-bit
// integer wraps, no real or point leaves the range.
TEST_F(CommandTest, SystemVariablesRefuseNumbersOutOfRange) {
  for (const char* set : {"(setvar \"CMDECHO\" 65536)", "(setvar \"LTSCALE\" 1e200)",
                          "(setvar \"INSBASE\" '(0 1e100))", "(setvar \"INSBASE\" '(0 \"1\"))",
                          "(setvar \"CMDECHO\" T)", "(setvar \"CECOLOR\" \"70000\")"}) {
    size_t before = Output().size();
    host_->command_line().Execute(set);
    EXPECT_NE(Output().find("error: the host rejected the value\n", before), std::string::npos) << set;
  }
  resbuf rb{};
  rb.restype = RTREAL;
  rb.resval.rreal = INFINITY;
  EXPECT_EQ(ads_setvar("LTSCALE", &rb), RTERROR);
  rb.restype = RT3DPOINT;
  rb.resval.rpoint[0] = NAN;
  EXPECT_EQ(ads_setvar("INSBASE", &rb), RTERROR);
  SysValue v;
  ASSERT_TRUE(host_->document().sysvars().Get("CMDECHO", &v));
  EXPECT_EQ(std::get<short>(v), 1);
  ASSERT_TRUE(host_->document().sysvars().Get("LTSCALE", &v));
  EXPECT_EQ(std::get<double>(v), 1.0);
  ASSERT_TRUE(host_->document().sysvars().Get("INSBASE", &v));
  EXPECT_EQ(std::get<Point3>(v), (Point3{0, 0, 0}));
  // The current colour is kept as new records read it: a number, BYLAYER
  // or BYBLOCK.
  host_->command_line().Execute("(setvar \"CECOLOR\" \"red\")");
  ASSERT_TRUE(host_->document().sysvars().Get("CECOLOR", &v));
  EXPECT_EQ(std::get<std::string>(v), "1");
  EXPECT_EQ(host_->document().NewEntity("LINE").color, 1);
}

TEST_F(CommandTest, CmdechoDecidesWhetherProgramCommandsAreShown) {
  ads_point a = {0, 0, 0}, b = {5, 5, 0};
  ads_command(RTSTR, "LINE", RT3DPOINT, a, RT3DPOINT, b, RTSTR, "", 0);
  EXPECT_NE(Output().find("Command: LINE\nFrom point: 0,0,0\nTo point: 5,5,0\nTo point: "), std::string::npos)
      << Output();
  Var("CMDECHO", 0);
  size_t before = Output().size();
  ads_command(RTSTR, "LINE", RT3DPOINT, a, RT3DPOINT, b, RTSTR, "", 0);
  EXPECT_EQ(Output().size(), before);
}

TEST_F(CommandTest, APendingCommandGoesOnWithTheUser) {
  Answer({"(command \"LINE\" '(0 0) '(3 4))", "@3,0", ""});
  host_->command_line().Run();
  EXPECT_EQ(host_->document().drawing().MainEntities().size(), 2u);
  EXPECT_EQ(host_->document().drawing().Find(host_->document().drawing().Last())->Point(11), (Point3{6, 4, 0}));
}

TEST_F(CommandTest, SelectionByTheUser) {
  ads_point o = {0, 0, 0}, x = {10, 0, 0}, far = {100, 100, 0};
  ads_command(RTSTR, "LINE", RT3DPOINT, o, RT3DPOINT, x, RTSTR, "", 0);
  ads_command(RTSTR, "CIRCLE", RT3DPOINT, far, RTSTR, "5", 0);
  std::string handle = Text(Last(), 5);
  Answer({"ALL", "", "L", "", "W", "-1,-1", "11,1", "", "C", "94,96", "97,104", "", "H", handle, "",
          "nothing", "#cancel"});
  struct Case {
    int rc;
    long count;
  } expected[] = {{RTNORM, 2}, {RTNORM, 1}, {RTNORM, 1}, {RTNORM, 1}, {RTNORM, 1}, {RTCAN, 0}};
  for (const Case& c : expected) {
    ads_name ss;
    ASSERT_EQ(ads_ssget(nullptr, nullptr, nullptr, nullptr, ss), c.rc) << Output();
    if (c.rc != RTNORM) break;
    long n = 0;
    EXPECT_EQ(ads_sslength(ss, &n), RTNORM);
    EXPECT_EQ(n, c.count);
    ads_name member;
    EXPECT_EQ(ads_ssname(ss, n - 1, member), RTNORM);
    EXPECT_NE(ads_ssname(ss, n, member), RTNORM);
    EXPECT_EQ(ads_ssfree(ss), RTNORM);
    EXPECT_NE(ads_ssfree(ss), RTNORM);
  }
  Answer({""});
  ads_name none;
  EXPECT_EQ(ads_ssget(nullptr, nullptr, nullptr, nullptr, none), RTERROR);
}

// A program's command run with CMDECHO 0 hides its own messages only: the
// user's selection after it still says what it found.
TEST_F(CommandTest, SelectionAfterAQuietCommandSaysWhatItFound) {
  ads_point o = {0, 0, 0}, x = {10, 0, 0};
  resbuf off{};
  off.restype = RTSHORT;
  ASSERT_EQ(ads_setvar("CMDECHO", &off), RTNORM);
  ads_command(RTSTR, "LINE", RT3DPOINT, o, RT3DPOINT, x, RTSTR, "", 0);
  Answer({"5,0", ""});
  ads_name ss;
  ASSERT_EQ(ads_ssget(nullptr, nullptr, nullptr, nullptr, ss), RTNORM);
  ads_ssfree(ss);
  EXPECT_EQ(Output(), "\nSelect objects: 5,0\n1 found\nSelect objects: ");
}

TEST_F(CommandTest, PointsAskedByTheModule) {
  Answer({"10,20", "@5,0", "oops", "", "#cancel"});
  ads_point p, base = {100, 100, 0};
  ASSERT_EQ(ads_getpoint(nullptr, "\nstart point 1:", p), RTNORM);
  EXPECT_EQ(p[0], 10);
  EXPECT_EQ(p[1], 20);
  ASSERT_EQ(ads_getpoint(base, "\nstart point 2:", p), RTNORM);
  EXPECT_EQ(p[0], 105);
  EXPECT_EQ(ads_getpoint(nullptr, "\nstart point 3:", p), RTNONE);  // "oops" refused, then Enter
  EXPECT_NE(Output().find("start point 3:oops\nInvalid point."), std::string::npos) << Output();
  EXPECT_EQ(ads_getpoint(nullptr, "\nstart point 4:", p), RTCAN);
}

TEST_F(CommandTest, ArcsCirclesAndErase) {
  Answer({"0,0", "10,10", "20,0", "C", "0,0", "10,0", "A", "90"});
  host_->command_line().Execute("ARC");
  resbuf* arc = Last();
  EXPECT_EQ(Point(arc, 10), (std::vector<double>{10, 0, 0}));
  EXPECT_NEAR(Real(arc, 40), 10, 1e-12);
  EXPECT_NEAR(Real(arc, 50), 0, 1e-12);  // clockwise points: from the third point
  EXPECT_NEAR(Real(arc, 51), M_PI, 1e-12);
  host_->command_line().Execute("ARC");
  resbuf* quarter = Last();
  EXPECT_NEAR(Real(quarter, 51), M_PI / 2, 1e-12);
  Answer({"5,5", "D", "4", "L", ""});
  host_->command_line().Execute("CIRCLE");
  EXPECT_EQ(Real(Last(), 40), 2);
  host_->command_line().Execute("ERASE");
  EXPECT_EQ(host_->document().drawing().MainEntities().size(), 2u);
}

}  // namespace
}  // namespace vorhost::testing

namespace vorhost::testing {
namespace {

// C:\NFB.DXF, a breaker-like block: a line, two attribute definitions that
// INSERT asks for in this order, and a constant one it never asks.
class InsertTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    Drawing block;
    Entity line("LINE");
    line.groups = {{10, Point3{0, 0, 0}}, {11, Point3{0, -100, 0}}};
    block.Append(line);
    block.Append(Attdef("AF", "Frame size (AF)", "100AF", {10, -30, 0}, 0));
    block.Append(Attdef("IC", "Interrupting capacity", "", {10, -60, 0}, 0));
    block.Append(Attdef("MAKER", "Maker", "VOR", {10, -90, 0}, 2));  // constant: never asked
    SysVarTable vars;
    std::string err;
    ASSERT_TRUE(SaveDxf(block, vars, LinuxPath("NFB.DXF"), &err)) << err;
  }

  static Entity Attdef(const char* tag, const char* prompt, const char* fallback, Point3 at, short flags) {
    Entity e("ATTDEF");
    e.groups = {{10, at}, {40, 20.0}, {1, std::string(fallback)}, {3, std::string(prompt)},
                {2, std::string(tag)}, {70, flags}, {73, short{0}}, {50, 0.0}, {41, 1.0},
                {51, 0.0}, {7, std::string("STANDARD")}, {71, short{0}}, {72, short{0}}, {74, short{0}}};
    return e;
  }
};

TEST_F(InsertTest, AsksAttributesInBlockOrderAndWalksIntoThem) {
  ads_point at = {1000, 500, 0};
  ASSERT_EQ(ads_command(RTSTR, "INSERT", RTSTR, "NFB", RT3DPOINT, at, RTSTR, "1", RTSTR, "1", RTSTR, "0",
                        RTSTR, "225AF", RTSTR, "25KA", 0),
            RTNORM)
      << Output();
  EXPECT_FALSE(host_->commands().pending());
  EXPECT_NE(Output().find("Frame size (AF) <100AF>: 225AF"), std::string::npos) << Output();
  ads_name insert, first, second, end;
  ASSERT_EQ(ads_entlast(insert), RTNORM);
  resbuf* data = Keep(ads_entget(insert));
  EXPECT_EQ(Text(data, 2), "NFB");
  EXPECT_EQ(Group(data, 66)->resval.rint, 1);
  ASSERT_EQ(ads_entnext(insert, first), RTNORM);
  resbuf* af = Keep(ads_entget(first));
  EXPECT_EQ(Text(af, 0), "ATTRIB");
  EXPECT_EQ(Text(af, 1), "225AF");
  EXPECT_EQ(Point(af, 10), (std::vector<double>{1010, 470, 0}));
  ASSERT_EQ(ads_entnext(first, second), RTNORM);
  EXPECT_EQ(Text(Keep(ads_entget(second)), 1), "25KA");
  ASSERT_EQ(ads_entnext(second, end), RTNORM);
  EXPECT_EQ(Text(Keep(ads_entget(end)), 0), "SEQEND");
  EXPECT_NE(host_->document().tables().blocks().Find("NFB"), nullptr);

  // Defined now: no file needed; ATTREQ 0 takes every default.
  Var("ATTREQ", 0);
  ASSERT_EQ(ads_command(RTSTR, "INSERT", RTSTR, "nfb", RT3DPOINT, at, RTSTR, "2", RTSTR, "", RTSTR, "90", 0),
            RTNORM);
  ads_entlast(insert);
  ads_entnext(insert, first);
  resbuf* defaulted = Keep(ads_entget(first));
  EXPECT_EQ(Text(defaulted, 1), "100AF");
  EXPECT_NEAR(Point(defaulted, 10)[0], 1000 + 60, 1e-9);  // (20,-60) scaled and turned a quarter
  EXPECT_NEAR(Point(defaulted, 10)[1], 500 + 20, 1e-9);
  EXPECT_NEAR(Real(defaulted, 40), 40, 1e-12);

  EXPECT_NE(ads_command(RTSTR, "INSERT", RTSTR, "NOBLOCK", 0), RTNORM);
}

// A program may change the current layer between the answers: the insert
// and its attributes are made at the last answer, on the layer current then.
TEST_F(InsertTest, AttributesTakeThePropertiesCurrentWhenTheyAreMade) {
  ASSERT_EQ(ads_command(RTSTR, "LAYER", RTSTR, "N", RTSTR, "TAGS", RTSTR, "", 0), RTNORM);
  ads_point at = {0, 0, 0};
  ASSERT_EQ(ads_command(RTSTR, "INSERT", RTSTR, "NFB", RT3DPOINT, at, RTSTR, "1", RTSTR, "1", RTSTR, "0",
                        RTSTR, "225AF", 0),
            RTNORM);
  ASSERT_TRUE(host_->commands().pending());
  resbuf layer{};
  layer.restype = RTSTR;
  layer.resval.rstring = const_cast<char*>("TAGS");
  ASSERT_EQ(ads_setvar("CLAYER", &layer), RTNORM);
  ASSERT_EQ(ads_command(RTSTR, "25KA", 0), RTNORM);
  EXPECT_FALSE(host_->commands().pending());

  const EntityList& records = host_->document().drawing().entities();
  ASSERT_EQ(records.size(), 4u);  // INSERT, two ATTRIBs (MAKER is constant), SEQEND
  EXPECT_EQ(records[1].Text(1), "225AF");
  EXPECT_EQ(records[2].Text(1), "25KA");
  for (size_t i = 0; i <= 2; i++) EXPECT_EQ(records[i].layer, "TAGS") << i;
  EXPECT_EQ(records[1].Point(10), (Point3{10, -30, 0}));
  EXPECT_EQ(records[2].Text(2), "IC");
}

// A drawing file whose model space inserts the block it defines, itself or
// through the drawing's blocks, is refused; the drawing keeps its blocks.
TEST_F(InsertTest, ABlockFileThatInsertsItselfIsRefused) {
  auto write = [&](const char* name, const char* inserts) {
    Drawing file;
    Entity insert("INSERT");
    insert.groups = {{2, std::string(inserts)}, {10, Point3{0, 0, 0}}};
    file.Append(insert);
    std::string err;
    ASSERT_TRUE(SaveDxf(file, SysVarTable(), LinuxPath(name), &err)) << err;
  };
  write("SELF.DXF", "SELF");
  write("INNER.DXF", "OUTER");
  Entity inner("INSERT");
  inner.groups = {{2, std::string("INNER")}, {10, Point3{0, 0, 0}}};
  host_->document().tables().blocks().Put({"OUTER", {0, 0, 0}, 0, {inner}});
  ads_point at = {0, 0, 0};
  EXPECT_EQ(ads_command(RTSTR, "INSERT", RTSTR, "SELF", RT3DPOINT, at, 0), RTREJ);
  EXPECT_NE(Output().find("Block SELF inserts itself.\n*Cancel*"), std::string::npos) << Output();
  EXPECT_EQ(ads_command(RTSTR, "INSERT", RTSTR, "INNER", RT3DPOINT, at, 0), RTREJ);
  EXPECT_NE(Output().find("Block INNER inserts itself through OUTER.\n*Cancel*"), std::string::npos);
  EXPECT_EQ(host_->document().tables().blocks().records().size(), 1u);
  EXPECT_TRUE(host_->document().drawing().entities().empty());
}

TEST_F(InsertTest, AttributesScaledOutOfRangeRefuseTheInsert) {
  ads_point at = {0, 0, 0};
  size_t before = host_->document().drawing().entities().size();
  EXPECT_EQ(ads_command(RTSTR, "INSERT", RTSTR, "NFB", RT3DPOINT, at, RTSTR, "1e99", RTSTR, "", RTSTR, "0", 0),
            RTREJ);
  EXPECT_NE(Output().find("Rotation angle <0>: 0\nValue out of range.\n*Cancel*"), std::string::npos)
      << Output();
  EXPECT_EQ(host_->document().drawing().entities().size(), before);
}

}  // namespace
}  // namespace vorhost::testing
