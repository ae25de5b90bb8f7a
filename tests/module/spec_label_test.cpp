// spec_label_test.cpp - item lists, the three label rules and the drawing form.
#include <cstring>
#include <string>

#include "cable/spec_label.h"
#include "linetool/catalogue.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

std::string Label(const char* kind, const std::string& list) {
  char out[256];
  spec_format_label(kind, list.c_str(), out);
  return out;
}

std::string SetCount(std::string list, const char* key, const char* count, const char* size = nullptr) {
  char buf[256] = "";
  std::strcpy(buf, list.c_str());
  spec_set_count(buf, key, size, count);
  return buf;
}

const std::string kPhi = "\xA3\x70";

TEST(SpecLabelTest, TheRulesOfTheThreeFamilies) {
  struct Case {
    const char* kind;
    std::string list, label;
  } cases[] = {
      {"ELINE", "((S5.5 2) (E5.5 1) (PVC28 1))", "5.5x2,5.5E," + kPhi + "28PVC"},
      {"SLINE", "((T0.5-10P 2) (EMT25 1))", "0.5-10P-PE-PVCx2," + kPhi + "25EMT"},
      {"PLINE", "((mm_PVC_20 1) (in_GIP_2 3))", "20mmPVC,2\\\"GIPx3"},
      {"ELINE", "", ""},
      {"ELINE", "(S5.5 2)", ""},                          // no outer parentheses: no group
      {"ELINE", "((S5.5 1))", "5.5"},
      {"ELINE", "((S5.5 01))", "5.5x01"},
      {"ELINE", "((V5 2) (S2.0 2))", "2.0x2"},              // nothing, not even a separator
      {"ELINE", "((EMT25 1) (E 2) (T1 1))", kPhi + "25EMT,Ex2"},
      {"ELINE", "((S 3))", "x3"},                           // a key contributing the empty text
      {"SLINE", "((E5.5 1) (V5C-FB 1) (S1.2 2))", "5C-FB,1.2x2"},
      {"PLINE", "((IN_GIP_1 1) (mm__20 2) (bad 1) (a_b 1))", "1\\\"GIP,20mmx2"},
      {"PLINE", "((mm_PVC_25))", ""},
      {"ELINE", "((S5.5 2) (E5.5", "5.5x2"},               // an unclosed group is skipped
  };
  for (const Case& c : cases) EXPECT_EQ(Label(c.kind, c.list), c.label) << c.kind << " " << c.list;
}

TEST(SpecLabelTest, SetCountFromTheEmptyListAndBack) {
  std::string list;
  const char* steps[][3] = {{"S5.5", "2", "((S5.5 2))"},
                            {"E5.5", "1", "((S5.5 2) (E5.5 1))"},
                            {"S5.5", "3", "((S5.5 3) (E5.5 1))"},
                            {"S5.5", "0", "((E5.5 1))"},
                            {"E5.5", "0", "()"},
                            {"E5.5", "1", "((E5.5 1))"},
                            {"E5.5", "-4", "((E5.5 1))"},
                            {"E5.5", "  007", "((E5.5 7))"},
                            {"PVC28", "abc", "((E5.5 7))"}};
  for (auto& s : steps) {
    list = SetCount(list, s[0], s[1]);
    EXPECT_EQ(list, s[2]) << s[0] << " " << s[1];
  }
  EXPECT_EQ(SetCount("((S5.5 2) (E5.5 1))", "E5.5", "0"), "((S5.5 2) )");
  EXPECT_EQ(Label("ELINE", "((S5.5 2) )"), "5.5x2");
  EXPECT_EQ(SetCount("garbage", "S2.0", "1"), "((S2.0 1))");
  EXPECT_EQ(SetCount("((S2.0 1", "S2.0", "4"), "((S2.0 4))");
  EXPECT_EQ(SetCount("((S2.0 1", "S2.0", "0"), "(");
  // A key that begins another key is not its group.
  EXPECT_EQ(SetCount("((S2.0 1))", "S2", "3"), "((S2.0 1) (S2 3))");
}

TEST(SpecLabelTest, PipeGroupsAreFoundBySize) {
  std::string list = SetCount("", "mm_PVC_20", "1", "20");
  EXPECT_EQ(list, "((mm_PVC_20 1))");
  list = SetCount(list, "in_GIP_20", "2", "20");  // same size: the group's count changes
  EXPECT_EQ(list, "((mm_PVC_20 2))");
  list = SetCount(list, "in_GIP_2-1/2", "1", "2-1/2");
  EXPECT_EQ(list, "((mm_PVC_20 2) (in_GIP_2-1/2 1))");
  EXPECT_EQ(SetCount(list, "mm__20", "0", "20"), "((in_GIP_2-1/2 1))");
}

TEST(SpecLabelTest, ABig5TrailByte5FIsNoUnderscoreInAPipeKey) {
  // 北 is A5 5F: a byte search would take its trail byte for the "_"
  // between unit and material, or before the size.
  const std::string north = "\xA5\x5F";
  EXPECT_EQ(Label("PLINE", "((mm_" + north + "_20 1))"), "20mm" + north);
  EXPECT_EQ(Label("PLINE", "((mm_PVC_" + north + " 1))"), north + "mmPVC");
  std::string list = SetCount("", ("mm_PVC_" + north).c_str(), "2", north.c_str());
  EXPECT_EQ(list, "((mm_PVC_" + north + " 2))");
  EXPECT_EQ(SetCount(list, ("in_GIP_" + north).c_str(), "3", north.c_str()), "((mm_PVC_" + north + " 3))")
      << "the group is found again by its size";
}

class DrawingFormTest : public ::testing::Test {
 protected:
  std::string Form(const std::string& label) {
    std::memset(RecordFields[4], 0, sizeof RecordFields[4]);
    std::strncpy(RecordFields[4], label.c_str(), 255);
    label_drawing_form();
    return RecordFields[4];
  }
};

TEST_F(DrawingFormTest, EscapesGoAndDiameterSignsBecomeHostCodes) {
  EXPECT_EQ(Form("5.5x2,5.5E," + kPhi + "28PVC"), "5.5x2,5.5E,%%c28PVC");
  EXPECT_EQ(Form(kPhi + "16PVC," + kPhi + "28EMT"), "%%c16PVC,%%c28EMT");
  EXPECT_EQ(Form("2\\\"GIP,1\\\\\\\"x"), "2\"GIP,1\"x");
  // A3 70 inside other characters is not a diameter sign: a trail byte A3
  // followed by the letter p.
  EXPECT_EQ(Form("\xA4\xA3p"), "\xA4\xA3p");
  // 功 (A5 5C) before an escaped quote keeps its trail byte.
  EXPECT_EQ(Form("2\\\"\xA5\x5C\\\""), "2\"\xA5\x5C\"");
}

TEST_F(DrawingFormTest, CutAt255AfterReplacingNeverInsideACharacterOrCode) {
  std::string label = std::string(252, 'a') + kPhi + "b";  // 255 bytes; grows to 256
  EXPECT_EQ(Form(label), std::string(252, 'a') + "%%c");
  label = std::string(253, 'a') + kPhi;  // the code would straddle the cut
  EXPECT_EQ(Form(label), std::string(253, 'a'));
  label = std::string(251, 'a') + kPhi + "\xB9\x71";  // the character pushed past 255 stays out
  EXPECT_EQ(Form(label), std::string(251, 'a') + "%%c");
}

}  // namespace
}  // namespace vorhost::testing
