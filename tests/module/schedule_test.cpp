// schedule_test.cpp - reading fields and lines of panel schedule files.
#include <cstring>
#include <string>
#include <vector>

#include "panel/schedule.h"
#include "support/host_fixture.h"
#include "util/textlist.h"
#include "util/textutil.h"

namespace vorhost::testing {
namespace {

std::string Field(const std::string& line, int index) {
  std::string text = line;
  TextNode node{nullptr, text.data()};
  char out[TEXT_SIZE];
  std::memset(out, 'z', sizeof out);
  acf_field(&node, index, out);
  EXPECT_EQ(text, line) << "the line must stay as it was";
  return out;
}

TEST(ScheduleFieldTest, ReadsTrimmedFieldsWithDiameterCodes) {
  struct Case {
    const char* line;
    int index;
    const char* field;
  } cases[] = {
      {"X;Y;Z", 0, "X"},
      {"X;Y;Z", 1, "Y"},
      {"X;Y;Z", 2, "Z"},
      {"X;Y;Z", 3, ""},                     // the line does not reach it
      {"X;Y;Z", 40, ""},
      {"a;  A B  ;c", 1, "A B"},            // inner space stays
      {"a;   ;c", 1, ""},                   // spaces only
      {"a;;c", 1, ""},
      {"a;\tA ;c", 1, "\tA"},               // tabs are not trimmed
      {"a;A\t;c", 1, "A\t"},
      {"1\xED" "6", 0, "1%%c6"},            // the diameter sign
      {"x; \xED" "16 \xED ;y", 1, "%%c16 %%c"},
      {"\xA4\xED;b", 0, "\xA4%%c"},         // bytewise, inside a Big5 character too
      {"  whole line  ", 0, "whole line"},  // no ';' at all
      {"  whole line  ", 1, ""},
      {"A;B;", 2, ""},                      // a trailing ';' makes an empty last field
      {"", 0, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(Field(c.line, c.index), c.field) << c.line << " #" << c.index;
}

TEST(ScheduleFieldTest, GrowthByDiameterCodesIsCutOnceBetweenWholeCodes) {
  // 100 diameter signs grow to 300 bytes; 85 whole codes fit in 255.
  std::string field = Field(std::string(100, '\xED'), 0);
  EXPECT_EQ(field.size(), 255u);
  EXPECT_EQ(field.substr(252), "%%c");
  // One byte earlier, a code no longer fits and none of it is kept.
  field = Field("A" + std::string(85, '\xED'), 0);
  EXPECT_EQ(field.size(), 253u);
  EXPECT_EQ(field.substr(0, 4), "A%%c");
  EXPECT_EQ(field.substr(250), "%%c");
}

TEST(ScheduleTextTest, CutsNeverSplitACodeOrABig5Character) {
  struct Case {
    const char* text;
    size_t limit;
    const char* cut;
  } cases[] = {
      {"ab%%c", 4, "ab"},
      {"ab%%c", 5, "ab%%c"},
      {"a\xA4\xA4", 2, "a"},
      {"a\xA4\xA4", 3, "a\xA4\xA4"},
      {"ab%%\xA4\xA4", 4, "ab%%"},  // "%%" before a Big5 character is no code
  };
  for (const Case& c : cases) {
    char text[TEXT_SIZE];
    std::strcpy(text, c.text);
    cut_text(text, c.limit);
    EXPECT_STREQ(text, c.cut) << c.text << " at " << c.limit;
  }
}

class ScheduleFileTest : public HostTest {
 protected:
  void TearDown() override {
    textlist_free(&list_);
    HostTest::TearDown();
  }
  void Load(std::string_view bytes) {
    WriteFile("P1.ACF", bytes);
    textlist_load("C:\\P1.ACF", &list_, 1, 255, 0, 0, 0, 0, 0, 0);
  }
  std::vector<std::string> Circuits() {
    std::vector<std::string> names;
    char out[TEXT_SIZE];
    for (int k = 0; k < schedule_circuit_count(&list_); k++) {
      acf_field(schedule_circuit(&list_, k), CIRCUIT_DESCRIPTION, out);
      names.push_back(out);
    }
    EXPECT_EQ(schedule_circuit(&list_, schedule_circuit_count(&list_)), nullptr);
    return names;
  }
  TextList list_{};
};

TEST_F(ScheduleFileTest, CircuitsAreTheLinesBetweenHeaderAndTotals) {
  Load("HEADERP1;title\r\nC1;x\r\n\r\n  \t \r\nC2;y\r\nC3\r\nT;100\r\n\x1A");
  EXPECT_EQ(Circuits(), (std::vector<std::string>{"C1", "C2", "C3"}));
  char out[TEXT_SIZE];
  acf_field(list_.tail, TOTALS_LOAD, out);
  EXPECT_STREQ(out, "100");

  Load("H;t\r\nT;1\r\n");  // header and totals only: nothing to draw
  EXPECT_EQ(schedule_circuit_count(&list_), 0);
  EXPECT_EQ(schedule_circuit(&list_, 0), nullptr);

  textlist_free(&list_);
  textlist_load("C:\\MISSING.ACF", &list_, 1, 255, 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(schedule_circuit_count(&list_), 0);
}

}  // namespace
}  // namespace vorhost::testing
