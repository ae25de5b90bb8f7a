// host_test.cpp - the host operations that need no drawing: symbols,
// system variables, host functions called by name, messages, geometry.
#include <cmath>
#include <cstring>

#include "emulator/core/alloc.h"
#include "emulator/io/dump.h"
#include "emulator/platform/search_path.h"
#include "host/ads.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

using HostApiTest = HostTest;

// (ads_invoke name args...) as the module calls it; the result's printed
// form, or "failed".
std::string Invoke(resbuf* args) {
  resbuf* result = reinterpret_cast<resbuf*>(1);
  int rc = ads_invoke(args, &result);
  ads_relrb(args);
  if (rc != RTNORM) {
    EXPECT_EQ(result, nullptr);
    return "failed";
  }
  std::string printed = lisp::Print(lisp::FromResbuf(result));
  ads_relrb(result);
  return printed;
}

TEST_F(HostApiTest, SymbolsOfTheCommandLanguage) {
  resbuf* value = nullptr;
  ASSERT_EQ(ads_getsym("VORMIS", &value), RTNORM);
  EXPECT_EQ(value->restype, RTNIL);
  ads_relrb(value);

  host_->command_line().Execute("(setq vormis \"d:/vor\")");
  ASSERT_EQ(ads_getsym("VorMis", &value), RTNORM);
  ASSERT_EQ(value->restype, RTSTR);
  EXPECT_STREQ(value->resval.rstring, "d:/vor");
  ads_relrb(value);

  resbuf* put = ads_buildlist(RTSHORT, 5, 0);
  EXPECT_EQ(ads_putsym("N", put), RTNORM);
  ads_relrb(put);
  host_->command_line().Execute("!n");
  EXPECT_NE(Output().find("\n5"), std::string::npos);
}

TEST_F(HostApiTest, SystemVariablesKeepTheirTypesAndRanges) {
  resbuf* rb = ads_newrb(RTSTR);
  ASSERT_EQ(ads_getvar("textstyle", rb), RTNORM);
  EXPECT_STREQ(rb->resval.rstring, "STANDARD");
  ads_relrb(rb);

  resbuf value{};
  value.restype = RTSHORT;
  value.resval.rint = 3;
  EXPECT_EQ(ads_setvar("EXPERT", &value), RTNORM);
  value.resval.rint = 6;
  EXPECT_NE(ads_setvar("EXPERT", &value), RTNORM);
  EXPECT_NE(ads_setvar("ACADVER", &value), RTNORM);  // read only
  EXPECT_NE(ads_setvar("NOSUCHVAR", &value), RTNORM);
  value.restype = RTREAL;
  value.resval.rreal = 1.5;
  EXPECT_NE(ads_setvar("CMDECHO", &value), RTNORM);  // wrong type
  EXPECT_EQ(ads_setvar("TEXTSIZE", &value), RTNORM);
  value.restype = RTSTR;
  value.resval.rstring = const_cast<char*>("nosuchstyle");
  EXPECT_NE(ads_setvar("TEXTSTYLE", &value), RTNORM);
  value.resval.rstring = const_cast<char*>("standard");
  EXPECT_EQ(ads_setvar("TEXTSTYLE", &value), RTNORM);

  rb = ads_newrb(RTSHORT);
  EXPECT_NE(ads_getvar("NOSUCHVAR", rb), RTNORM);
  ASSERT_EQ(ads_getvar("EXPERT", rb), RTNORM);
  EXPECT_EQ(rb->resval.rint, 3);
  ASSERT_EQ(ads_getvar("TEXTSIZE", rb), RTNORM);
  EXPECT_EQ(rb->restype, RTREAL);
  EXPECT_EQ(rb->resval.rreal, 1.5);
  ads_relrb(rb);
}

// (setvar "CLAYER" "電力") once read back as "鄒力": the trail byte "q" of
// 電 was upper-cased, and the next LINE went on a layer the drawing lacks.
TEST_F(HostApiTest, ClayerKeepsTheTrailBytesOfABig5LayerName) {
  Answer({"N", "電力", "", "0,0", "10,0", ""});
  host_->command_line().Execute("LAYER");
  host_->command_line().Execute(Big5("(setvar \"CLAYER\" \"電力\")"));
  host_->command_line().Execute("(getvar \"CLAYER\")");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "\"" + Big5("電力") + "\"");
  host_->command_line().Execute("LINE");
  EXPECT_NE(DumpDrawing(host_->document().drawing()).find("LINE layer=\"電力\""), std::string::npos)
      << DumpDrawing(host_->document().drawing());
  EXPECT_EQ(host_->document().tables().layers().Find(Big5("鄒力")), nullptr);
}

TEST_F(HostApiTest, SystemVariablesTypedAsCommands) {
  Answer({"7", "2", "", "x"});
  host_->command_line().Execute("expert");  // 7 is refused, 2 taken
  host_->command_line().Execute("CMDECHO");  // Enter keeps it
  SysValue v;
  host_->document().sysvars().Get("EXPERT", &v);
  EXPECT_EQ(std::get<short>(v), 2);
  EXPECT_NE(Output().find("New value for EXPERT <0>: 7\nValue must be between 0 and 5."),
            std::string::npos)
      << Output();
  host_->command_line().Execute("FROBNICATE");
  EXPECT_NE(Output().find("Unknown command \"FROBNICATE\"."), std::string::npos);
}

TEST_F(HostApiTest, InvokeCallsHostFunctionsAndReportsUnknownOnes) {
  Answer({"新的備註", "", "#cancel", "blue", "0", "255"});
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "W1", RTSTR, "old", RTSTR, "note", 0)),
            "\"" + Big5("新的備註") + "\"");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "W1", RTSTR, "old", RTSTR, "note", 0)), "\"old\"");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "W1", RTSTR, "old", RTSTR, "note", 0)), "nil");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "ACAD_COLORDLG", RTSHORT, 1, RTNIL, 0)), "5");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "ACAD_COLORDLG", RTSHORT, 1, RTNIL, 0)), "255");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "W1", RTSHORT, 1, 0)), "failed");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "NO_SUCH_FUNCTION", RTSTR, "x", 0)), "failed");
  EXPECT_EQ(ads_invoke(nullptr, nullptr), RTERROR);
}

TEST_F(HostApiTest, HelpTopicsAreShownFromTheSearchPath) {
  WriteFile("VORMIS.HLP", "; help\r\n[VOR_ELINE]\r\nPick a run type.\r\n\r\n[OTHER]\r\nno\r\n");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "ADS_HELP", RTSTR, "VORMIS.HLP", RTSTR, "vor_eline", 0)),
            "T");
  EXPECT_NE(Output().find("Pick a run type."), std::string::npos);
  EXPECT_EQ(Output().find("no\n"), std::string::npos);
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "ADS_HELP", RTSTR, "VORMIS.HLP", RTSTR, "NONE", 0)),
            "nil");
  EXPECT_EQ(Invoke(ads_buildlist(RTSTR, "ADS_HELP", RTSTR, "MISSING.HLP", RTSTR, "X", 0)), "nil");
  EXPECT_NE(Output().find("Help file MISSING.HLP not found."), std::string::npos);
}

TEST_F(HostApiTest, TheSearchPathIsTheCurrentDirectoryAcadThenResources) {
  WriteFile("SUPPORT/Found.Lin", "*X\r\n");
  WriteFile("OTHER/FOUND.LIN", "*Y\r\n");
  WriteFile("OTHER/ONLY.LIN", "*Z\r\n");
  setenv("ACAD", "Q:\\NOTMOUNTED; c:/support ;C:\\OTHER", 1);
  EXPECT_EQ(FindFile("FOUND.LIN"), LinuxPath("SUPPORT/Found.Lin"));
  EXPECT_EQ(FindFile("only.lin"), LinuxPath("OTHER/ONLY.LIN"));
  WriteFile("only.lin", "*here\r\n");
  EXPECT_EQ(FindFile("ONLY.LIN"), LinuxPath("only.lin"));
  EXPECT_EQ(FindFile("C:\\OTHER\\only.lin"), LinuxPath("OTHER/ONLY.LIN"));
  EXPECT_EQ(FindFile("NOWHERE.LIN"), std::nullopt);
  std::vector<std::string> path = SearchPath();
  ASSERT_EQ(path.size(), 5u);
  EXPECT_EQ(path.back(), ResourceDirectory());
  EXPECT_EQ(path[3], ModuleDirectory());
  unsetenv("ACAD");
}

TEST_F(HostApiTest, CallStateExistsOnlyDuringAModuleCall) {
  EXPECT_EQ(ads_getargs(), nullptr);
  EXPECT_EQ(ads_getfuncode(), RTERROR);
  EXPECT_EQ(ads_retstr("x"), RTERROR);
  EXPECT_EQ(ads_fail("x"), RTERROR);

  static resbuf* seen_args;
  static int seen_code;
  host_->module().Load([](int msg, void*) {
    if (msg == kLoadDwgMsg) ads_defun("PROBE", 9);
    if (msg == kInvkSubrMsg) {
      seen_code = ads_getfuncode();
      seen_args = ads_getargs();
      if (seen_args && seen_args->restype == RTSTR) ads_retstr(seen_args->resval.rstring);
    }
    return 0;
  });
  host_->command_line().Execute("(probe)");
  EXPECT_EQ(seen_code, 9);
  EXPECT_EQ(seen_args, nullptr);
  host_->command_line().Execute("(probe \"E*\")");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "\"E*\"");
}

TEST_F(HostApiTest, MessagesGoToTheTranscript) {
  ads_printf("\nFile open failure : %s", "C:\\ELINE.LIN");
  ads_alert("Memory Fault !");
  EXPECT_EQ(Output(), "\nFile open failure : C:\\ELINE.LIN\n[Alert] Memory Fault !");
}

TEST_F(HostApiTest, APersonAtATerminalSeesNoBlankLines) {
  host_->console().set_echo_answers(false);  // the terminal shows what is typed
  Answer({"LINE", "0,0", "10,0", ""});
  host_->command_line().Run();
  EXPECT_EQ(Output(), "Command: LINE\nFrom point: 0,0\nTo point: 10,0\nTo point: \nCommand: \n");
}

TEST_F(HostApiTest, NewDrawingForgetsTheCommandLanguage) {
  SetSymbol("VORMIS", "C:/VOR");
  host_->NewDrawing();
  EXPECT_FALSE(host_->lisp().IsBound("VORMIS"));
  EXPECT_TRUE(host_->lisp().IsDefined("W1"));
}

// NEW replaces the whole document: the drawing, its variables, the sets a
// program holds, and the point and text that commands continue from.
TEST_F(HostApiTest, NewDrawingReplacesTheWholeDocument) {
  Answer({"0,0", "10,5", "", "1,1", "2.5", "0", "A"});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("TEXT");
  ads_name set;
  ASSERT_EQ(ads_ssget("X", nullptr, nullptr, nullptr, set), RTNORM);
  host_->NewDrawing();
  Document& doc = host_->document();
  EXPECT_TRUE(doc.drawing().MainEntities().empty());
  EXPECT_EQ(doc.LastPoint(), (Point3{0, 0, 0}));
  EXPECT_EQ(doc.last_text(), 0u);
  long length = 0;
  EXPECT_NE(ads_sslength(set, &length), RTNORM);
}

TEST(SelectionSetsTest, AtMost128AreHeldAndFreedNumbersAreNotReused) {
  SelectionSets sets;
  for (size_t i = 0; i < SelectionSets::kMaxSets; i++) ASSERT_NE(sets.Add({1}), 0);
  EXPECT_EQ(sets.Add({1}), 0);
  EXPECT_TRUE(sets.Free(5));
  EXPECT_FALSE(sets.Free(5));
  EXPECT_EQ(sets.Add({2}), 129);
  EXPECT_EQ(sets.Find(5), nullptr);
}

TEST(GeometryTest, AnglesOfTheMainDirectionsAreExact) {
  ads_point o = {0, 0, 0}, right = {5, 0, 0}, up = {0, 5, 0}, left = {-5, 0, 0},
            down = {0, -5, 0};
  EXPECT_EQ(ads_angle(o, right), 0.0);
  EXPECT_EQ(ads_angle(o, up), M_PI / 2);
  EXPECT_EQ(ads_angle(o, left), M_PI);
  EXPECT_EQ(ads_angle(o, down), 3 * M_PI / 2);
  ads_point diag = {-1, 1, 0};
  EXPECT_DOUBLE_EQ(ads_angle(o, diag), 3 * M_PI / 4);
  ads_point back = {-1, -1, 7};
  EXPECT_DOUBLE_EQ(ads_angle(o, back), 5 * M_PI / 4);
  EXPECT_DOUBLE_EQ(ads_distance(o, back), std::sqrt(51.0));
  ads_point p;
  ads_polar(right, M_PI / 2, 2, p);
  EXPECT_DOUBLE_EQ(p[0], 5);
  EXPECT_DOUBLE_EQ(p[1], 2);
}

}  // namespace
}  // namespace vorhost::testing
