// circuit_text_test.cpp - cable labels and column descriptions of circuits.
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "emulator/drawing/entity.h"
#include "panel/circuit_text.h"
#include "support/host_fixture.h"
#include "util/textutil.h"

namespace vorhost::testing {
namespace {

std::string Label(const char* size, const char* count, const char* earth, const char* conduit,
                  const char* suffix) {
  char label[TEXT_SIZE];
  std::memset(label, 'z', sizeof label);
  compose_cable_label(size, count, earth, conduit, suffix, label);
  return label;
}

TEST(CableLabelTest, PartsInOrderWithUnitsAndCodes) {
  struct Case {
    const char *size, *count, *earth, *conduit, *suffix, *label;
  } cases[] = {
      {"2.0 mm", "3", "2.0 mm", "16", "mm", "(%%o2.0%%ox3,E%%o2.0%%o,%%c16mm)"},
      {"5.5", "1", "", "", "PVC", "(5.5)"},
      {"8 sq", "2", "", "", "x", "(8x2)"},
      {"", "3", "2.0", "22", "", "(E2.0,%%c22)"},
      {"", "9", "", "", "mm", ""},
      {"", "", "", "28", "PVC", "(%%c28PVC)"},      // conduit alone: no leading ","
      {"3.5", "", "", "", "", "(3.5x)"},            // an empty count is not "1"
      {"3.5", "1 ", "", "", "", "(3.5x1 )"},        // only exactly "1" is left out
      {"2.0 mm ", "1", "", "", "", "(2.0)"},        // "mm " is another unit: dropped
      {"2.0  mm", "1", "", "", "", "(2.0)"},        // so is " mm"
      {"2.0 MM", "1", "5.5 mm", "", "", "(2.0,E%%o5.5%%o)"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(Label(c.size, c.count, c.earth, c.conduit, c.suffix), c.label)
        << c.size << "|" << c.count << "|" << c.earth << "|" << c.conduit << "|" << c.suffix;
}

TEST(CableLabelTest, LongLabelsAreCutBetweenWholeCodes) {
  std::string size(200, '1'), conduit(52, '2');
  // "(" 200 "x1" "," "%%c" 52 ... passes 255 inside the conduit: cut there.
  std::string label = Label(size.c_str(), "9", "", conduit.c_str(), "SUFFIX");
  EXPECT_EQ(label.size(), 255u);
  EXPECT_EQ(label, "(" + size + "x9,%%c" + conduit.substr(0, 255 - 207));
  // A code that would straddle the limit is left out whole.
  std::string near(251, '1');
  label = Label(near.c_str(), "1", "", "4", "");
  EXPECT_EQ(label, "(" + near + ",");
}

// One TEXT entity as the column writer leaves it: the point it was placed
// by (the alignment point of a justified text, else the insertion point).
struct Written {
  std::string style;
  double x, y;
  double rotation_deg;
  std::string text;
  bool operator==(const Written& o) const {
    return style == o.style && std::fabs(x - o.x) < 1e-9 && std::fabs(y - o.y) < 1e-9 &&
           std::fabs(rotation_deg - o.rotation_deg) < 1e-9 && text == o.text;
  }
};

void PrintTo(const Written& w, std::ostream* os) {
  *os << w.style << " (" << w.x << "," << w.y << ") " << w.rotation_deg << " [" << w.text << "]";
}

class CircuitTextTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    MakeStyle("ROMANSAEH", "N");
  }

  static void MakeStyle(const char* name, const char* vertical) {
    ASSERT_EQ(ads_command(RTSTR, "STYLE", RTSTR, name, RTSTR, "ROMANS,AE", RTSTR, "", RTSTR, "", RTSTR,
                          "", RTSTR, "", RTSTR, "", RTSTR, vertical, 0),
              RTNORM);
  }

  std::vector<Written> Texts() const {
    std::vector<Written> out;
    for (uint64_t id : host_->document().drawing().MainEntities()) {
      const Entity* e = host_->document().drawing().Find(id);
      if (e->type != "TEXT") continue;
      bool justified = e->Short(72) != 0 || e->Short(73) != 0;
      if (justified) {
        EXPECT_EQ(e->Short(72), 1) << "bottom centre";
        EXPECT_EQ(e->Short(73), 1) << "bottom centre";
      }
      EXPECT_DOUBLE_EQ(e->Real(40), 50);
      Point3 at = e->Point(justified ? 11 : 10);
      out.push_back({e->Text(7), at[0], at[1], e->Real(50) * 180 / M_PI, e->Text(1)});
    }
    return out;
  }
};

TEST_F(CircuitTextTest, RunsStackDownwardByKind) {
  MakeStyle("ROMANSAEV", "Y");
  const std::string zhong = "\xA4\xA4", wen = "\xA4\xE5";  // two Big5 characters
  const std::string two = zhong + wen;
  struct Case {
    std::string text;
    std::vector<Written> texts;
  } cases[] = {
      {"", {}},
      {"A1 B", {{"ROMANSAEH", 100, 150, 0, "A1 B"}}},
      {"A1  ", {{"ROMANSAEH", 100, 150, 0, "A1  "}}},  // trailing spaces stay at the end
      {two, {{"ROMANSAEV", 100, 200, 270, two}}},
      // The vertical run is two heights deep, the gap 20, the text 50.
      {two + "A1", {{"ROMANSAEV", 100, 200, 270, two}, {"ROMANSAEH", 100, 30, 0, "A1"}}},
      {"A1 " + two, {{"ROMANSAEH", 100, 150, 0, "A1"}, {"ROMANSAEV", 100, 130, 270, " " + two}}},
      // A trail byte in the ASCII range is never read on its own.
      {"\xA4\x40" "A", {{"ROMANSAEV", 100, 200, 270, "\xA4\x40"}, {"ROMANSAEH", 100, 80, 0, "A"}}},
      {two + " " + two, {{"ROMANSAEV", 100, 200, 270, two + " " + two}}},
      {"  " + zhong, {{"ROMANSAEV", 100, 200, 270, "  " + zhong}}},
      // A space inside a vertical run deepens it by one height.
      {zhong + " A", {{"ROMANSAEV", 100, 200, 270, zhong + " "}, {"ROMANSAEH", 100, 30, 0, "A"}}},
      {"A1\xA4", {{"ROMANSAEH", 100, 150, 0, "A1"}, {"ROMANSAEV", 100, 130, 270, "\xA4"}}},
      {zhong + "\xA4", {{"ROMANSAEV", 100, 200, 270, zhong + "\xA4"}}},
      {"A" + zhong + "B" + wen,
       {{"ROMANSAEH", 100, 150, 0, "A"},
        {"ROMANSAEV", 100, 130, 270, zhong},
        {"ROMANSAEH", 100, 10, 0, "B"},
        {"ROMANSAEV", 100, -10, 270, wen}}},
  };
  for (const Case& c : cases) {
    ads_command(RTSTR, "ERASE", RTSTR, "ALL", RTSTR, "", 0);
    const ads_point at = {100, 200, 7};
    EXPECT_EQ(write_column_text(at, c.text.c_str()), 0) << c.text;
    EXPECT_EQ(Texts(), c.texts) << c.text;
    for (uint64_t id : host_->document().drawing().MainEntities())
      EXPECT_DOUBLE_EQ(host_->document().drawing().Find(id)->Point(10)[2], 7) << "z stays the start point's";
  }
}

TEST_F(CircuitTextTest, AFailedTextStopsTheColumnAndKeepsWhatWasWritten) {
  // ROMANSAEV is missing, so every vertical run is refused.
  const ads_point at = {0, 0, 0};
  EXPECT_EQ(write_column_text(at, "\xA4\xA4" "A"), 1);
  EXPECT_TRUE(Texts().empty());
  EXPECT_EQ(write_column_text(at, "A\xA4\xA4" "B"), 1);
  EXPECT_EQ(Texts(), (std::vector<Written>{{"ROMANSAEH", 0, -50, 0, "A"}}));
  // The refused command leaves nothing pending: the host takes the next one.
  EXPECT_EQ(write_column_text(at, "C"), 0);
  EXPECT_EQ(Texts().size(), 2u);
}

}  // namespace
}  // namespace vorhost::testing
