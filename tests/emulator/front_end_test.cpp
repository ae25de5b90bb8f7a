// front_end_test.cpp - a front end that hands the host values rather than
// lines of text (points and objects picked, a window drawn, dialog events
// from clicks), as a terminal or a window will: the commands, selections and
// dialogs take them as they take a script's lines, and the transcript shows
// them as the command line does.
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "emulator/io/dump.h"
#include "host/ads.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

// Hands over the values queued, and notes what kind of answer was asked for.
class HandingUser : public User {
 public:
  std::deque<Input> answers;
  std::deque<DialogInput> events;
  std::vector<Asking> asked;
  std::vector<std::string> missteps;
  const Console* console = nullptr;  // where the questions asked are read
  std::vector<Question> questions;
  std::vector<std::optional<Point3>> bases;
  std::vector<std::vector<uint64_t>> chosen;  // the host's set at each prompt
  std::vector<std::string> helps;  // "TOPIC: TEXT"

  Input Read(Asking asking, std::string_view) override {
    asked.push_back(asking);
    if (console) questions.push_back(console->question());
    if (console) bases.push_back(console->base_point());
    if (console) chosen.push_back(console->chosen());
    if (answers.empty()) return Input::End();
    Input in = answers.front();
    answers.pop_front();
    return in;
  }
  DialogInput ReadEvent(Dialog&, std::string_view) override {
    asked.push_back(Asking::kDialog);
    if (events.empty()) return DialogInput::End();
    DialogInput in = events.front();
    events.pop_front();
    return in;
  }
  EditOutcome EditText(std::string*, std::string*) override { return EditOutcome::kUnchanged; }
  void Misstep(const std::string& why) override { missteps.push_back(why); }
  void ShowHelp(std::string_view topic, std::string_view text) override {
    helps.push_back(std::string(topic) + ": " + std::string(text));
  }
};

class FrontEndTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    host_->console().set_user(&user_);
    user_.console = &host_->console();
  }
  void Hand(std::vector<Input> answers) { user_.answers.assign(answers.begin(), answers.end()); }
  std::string Dump() { return DumpDrawing(host_->document().drawing()); }

  HandingUser user_;
};

Input Point(double x, double y) { return Input::Of(Answer::OfPoint({x, y, 0})); }

TEST_F(FrontEndTest, PointsPickedAnswerPointPrompts) {
  Hand({Point(0, 0), Point(10, 0), Input::Line("")});
  host_->command_line().Execute("LINE");
  EXPECT_NE(Dump().find("LINE layer=\"0\" linetype=BYLAYER color=256 10=(0,0,0) 11=(10,0,0)"),
            std::string::npos)
      << Dump();
  EXPECT_NE(Output().find("From point: 0,0,0\nTo point: 10,0,0\nTo point: "), std::string::npos) << Output();
}

// LINE, PLINE, CIRCLE and ARC hand the console the point their next one is measured
// from; their first prompt has none.
TEST_F(FrontEndTest, DrawingCommandsGiveTheirBasePoint) {
  Hand({Point(0, 0), Point(10, 0), Point(10, 5), Input::Line("")});
  host_->command_line().Execute("LINE");
  ASSERT_EQ(user_.bases.size(), 4u);
  EXPECT_FALSE(user_.bases[0]);
  EXPECT_EQ(user_.bases[1], (Point3{0, 0, 0}));
  EXPECT_EQ(user_.bases[2], (Point3{10, 0, 0}));
  EXPECT_EQ(user_.bases[3], (Point3{10, 5, 0}));
  user_.bases.clear();
  Hand({Point(0, 0), Point(10, 0), Input::Line("")});
  host_->command_line().Execute("PLINE");
  ASSERT_EQ(user_.bases.size(), 3u);
  EXPECT_FALSE(user_.bases[0]);
  EXPECT_EQ(user_.bases[2], (Point3{10, 0, 0}));
  user_.bases.clear();
  Hand({Point(5, 5), Point(8, 9)});
  host_->command_line().Execute("CIRCLE");
  ASSERT_EQ(user_.bases.size(), 2u);
  EXPECT_FALSE(user_.bases[0]);
  EXPECT_EQ(user_.bases[1], (Point3{5, 5, 0}));
  EXPECT_NE(Dump().find("CIRCLE"), std::string::npos);
  EXPECT_FALSE(host_->console().base_point());

  // ARC through three points: the second from the start, the end from the
  // second. By its centre: the centre from the start given before it, the
  // end from the centre; the start, when the centre came first, from it.
  struct ArcCase {
    std::vector<Input> answers;
    std::vector<std::optional<Point3>> bases;
  };
  const ArcCase arcs[] = {
      {{Point(0, 0), Point(5, 5), Point(10, 0)}, {std::nullopt, Point3{0, 0, 0}, Point3{5, 5, 0}}},
      {{Point(0, 0), Input::Line("C"), Point(5, 0), Point(10, 0)},
       {std::nullopt, Point3{0, 0, 0}, Point3{0, 0, 0}, Point3{5, 0, 0}}},
      {{Input::Line("C"), Point(5, 0), Point(0, 0), Input::Line("A"), Input::Line("90")},
       {std::nullopt, std::nullopt, Point3{5, 0, 0}, Point3{5, 0, 0}, std::nullopt}},
  };
  for (const ArcCase& arc : arcs) {
    user_.bases.clear();
    Hand(arc.answers);
    host_->command_line().Execute("ARC");
    EXPECT_EQ(user_.bases, arc.bases) << Output();
  }
  std::string dump = Dump();
  size_t arcs_drawn = 0;
  for (size_t at = dump.find("ARC layer="); at != std::string::npos; at = dump.find("ARC layer=", at + 1)) arcs_drawn++;
  EXPECT_EQ(arcs_drawn, 3u) << dump;
}

TEST_F(FrontEndTest, ObjectsPickedAndWindowsDrawnSelect) {
  Hand({Point(0, 0), Point(10, 0), Input::Line(""), Point(50, 0), Point(60, 0), Input::Line("")});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("LINE");
  std::vector<uint64_t> lines = host_->document().drawing().MainEntities();
  ASSERT_EQ(lines.size(), 2u);

  // CHPROP on the first line, picked; ERASE by a window round the second.
  Hand({Input::Of(Answer::OfEntities(Answer::Kind::kSet, {lines[0]})), Input::Line(""),
        Input::Line("C"), Input::Line("1"), Input::Line("")});
  user_.asked.clear();
  host_->command_line().Execute("CHPROP");
  EXPECT_EQ(user_.asked.front(), Asking::kSelection);
  EXPECT_EQ(user_.asked[2], Asking::kPrompt);
  Hand({Input::Of(Answer::OfWindow({40, -5, 0}, {70, 5, 0}, false)), Input::Line("")});
  host_->command_line().Execute("ERASE");
  std::vector<uint64_t> left = host_->document().drawing().MainEntities();
  ASSERT_EQ(left, (std::vector<uint64_t>{lines[0]}));
  EXPECT_EQ(host_->document().drawing().Find(lines[0])->color, 1);
  EXPECT_NE(Output().find("Select objects: W 40,-5,0 70,5,0\n1 found"), std::string::npos) << Output();
}

// While objects are selected, the console holds the set as the host has it
// after each answer, whatever chose them: ALL, Remove and a pick, Previous,
// a window's corners; none once the selection has ended. ads_ssget's user
// selection hands it over too.
TEST_F(FrontEndTest, SelectionsShowTheSetBeingBuilt) {
  Hand({Point(0, 0), Point(10, 0), Input::Line(""), Point(50, 0), Point(60, 0), Input::Line("")});
  host_->command_line().Execute("LINE");
  host_->command_line().Execute("LINE");
  std::vector<uint64_t> lines = host_->document().drawing().MainEntities();
  ASSERT_EQ(lines.size(), 2u);
  using Ids = std::vector<uint64_t>;

  Hand({Input::Line("ALL"), Input::Line("R"), Point(5, 0), Input::Line(""), Input::Cancel()});
  user_.chosen.clear();
  host_->command_line().Execute("CHPROP");
  EXPECT_EQ(user_.chosen, (std::vector<Ids>{{}, lines, lines, {lines[1]}, {}}));

  Hand({Input::Line("P"), Input::Line("W"), Point(-5, -5), Point(15, 5), Input::Line("")});
  user_.chosen.clear();
  ads_name ss;
  ASSERT_EQ(ads_ssget(nullptr, nullptr, nullptr, nullptr, ss), RTNORM);
  EXPECT_EQ(user_.chosen, (std::vector<Ids>{{}, {lines[1]}, {lines[1]}, {lines[1]}, {lines[1], lines[0]}}));
  long length = 0;
  EXPECT_EQ(ads_sslength(ss, &length), RTNORM);
  EXPECT_EQ(length, 2);
  EXPECT_TRUE(host_->console().chosen().empty());

  Hand({Input::Line("L"), Input::Line("")});
  user_.chosen.clear();
  host_->command_line().Execute("ERASE");
  EXPECT_EQ(user_.chosen, (std::vector<Ids>{{}, {lines[1]}}));
  EXPECT_EQ(host_->document().drawing().MainEntities(), Ids{lines[0]});
}

TEST_F(FrontEndTest, GetpointAsksForAPoint) {
  Hand({Point(3, 4)});
  ads_point p;
  ASSERT_EQ(ads_getpoint(nullptr, "\nstart point 1:", p), RTNORM);
  EXPECT_EQ(p[0], 3);
  EXPECT_EQ(user_.asked.back(), Asking::kPoint);
}

// W1 and ACAD_COLORDLG tell the front end what they ask, for a window of
// its own; the answer comes back as a typed one. A colour dialog called
// with nil refuses BYLAYER, one called without takes it.
TEST_F(FrontEndTest, HostFunctionsTellWhatTheyAsk) {
  Hand({Input::Line(""), Input::Line("BYLAYER"), Input::Line("BYLAYER"), Input::Line("")});
  host_->command_line().Execute("(w1 \"old\" \"note\")");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "\"old\"");
  host_->command_line().Execute("(acad_colordlg 3)");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "256");
  host_->command_line().Execute("(acad_colordlg 3 nil)");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "3");
  ASSERT_EQ(user_.questions.size(), 4u);
  EXPECT_EQ(user_.questions[0].kind, Question::Kind::kText);
  EXPECT_EQ(user_.questions[0].label, "note");
  EXPECT_EQ(user_.questions[0].current, "old");
  EXPECT_EQ(user_.questions[1].kind, Question::Kind::kColour);
  EXPECT_EQ(user_.questions[1].colour, 3);
  EXPECT_TRUE(user_.questions[1].logical);
  EXPECT_FALSE(user_.questions[2].logical);
  EXPECT_FALSE(user_.questions[3].logical);
  EXPECT_NE(Output().find("BYLAYER\nInvalid color"), std::string::npos) << Output();

  // Asked by anything else, there is no question.
  Hand({Point(3, 4)});
  ads_point p;
  ads_getpoint(nullptr, "\nstart point 1:", p);
  EXPECT_EQ(user_.questions.back().kind, Question::Kind::kNone);
  EXPECT_EQ(host_->console().question().kind, Question::Kind::kNone);

  WriteFile("H.HLP", "[TOPIC]\r\nRead me.\r\n");
  host_->command_line().Execute("(ads_help \"H.HLP\" \"topic\")");
  ASSERT_EQ(user_.helps.size(), 1u);
  EXPECT_NE(user_.helps[0].find("topic: Read me."), std::string::npos) << user_.helps[0];
}

TEST_F(FrontEndTest, DialogEventsAsValues) {
  WriteFile("T.DCL", "t : dialog { : edit_box { key = \"gap\"; } ok_cancel; }\n");
  using Action = DialogEvent::Action;
  user_.events = {DialogInput::Event(DialogEvent::Of(Action::kType, "gap", "3.5")),
                  DialogInput::Event(DialogEvent::Of(Action::kPress, "nosuch")),
                  DialogInput::Event(DialogEvent::Ok())};
  host_->command_line().Execute("(dcl_preview \"T.DCL\" \"t\")");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "1");
  EXPECT_EQ(user_.missteps, (std::vector<std::string>{"dialog t has no tile \"nosuch\""}));
  EXPECT_NE(Output().find("t> type gap 3.5\nt> press nosuch\ndialog t has no tile \"nosuch\"\nt> ok\n"),
            std::string::npos)
      << Output();
}

TEST(DialogEventTest, TheTextFormReadsAndWritesEveryEvent) {
  for (const char* line : {"select eline 1", "double-click file 0", "type gap 3.5 mm", "enter edit 12",
                           "press loadline", "toggle dimline", "choose mm", "ok", "cancel"}) {
    DialogEvent event;
    std::string why;
    ASSERT_TRUE(ParseDialogEvent(line, &event, &why)) << line;
    EXPECT_EQ(EventText(event), line);
  }
  DialogEvent event;
  std::string why;
  EXPECT_TRUE(ParseDialogEvent("enter gap   two  blanks", &event, &why));
  EXPECT_EQ(event.value, "  two  blanks");  // kept as typed after the key
  EXPECT_FALSE(ParseDialogEvent("click ok", &event, &why));
  EXPECT_EQ(why,
            "not a dialog event: \"click ok\" (select, double-click, type, enter, press, toggle, choose, ok, cancel)");
}

}  // namespace
}  // namespace vorhost::testing
