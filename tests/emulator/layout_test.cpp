// layout_test.cpp - the host's record layouts: groups put in order, what a
// record lacks filled in, what does not apply left out.
#include "emulator/drawing/layout.h"

#include <gtest/gtest.h>

#include <string>

namespace vorhost {
namespace {

std::string Codes(const std::vector<Group>& groups) {
  std::string out;
  for (const Group& g : groups) out += (out.empty() ? "" : " ") + std::to_string(g.code);
  return out;
}

TEST(LayoutTest, GroupsComeInTheLayoutsOrderWithWhatIsMissingFilledIn) {
  const Point3 p{1, 2, 3};
  struct Case {
    const char* type;
    std::vector<Group> given;
    const char* codes;
  } cases[] = {
      {"LINE", {{11, p}, {10, p}}, "10 11"},
      {"ARC", {{51, 1.0}}, "10 40 50 51"},
      {"TEXT", {{1, std::string("A")}}, "10 40 1 50 41 51 7 71 72 73"},
      {"TEXT", {{73, short{2}}, {11, p}}, "10 40 1 50 41 51 7 71 72 11 73"},
      {"TEXT", {{11, p}}, "10 40 1 50 41 51 7 71 72 73"},  // not justified: no 11
      {"ATTDEF", {{72, short{1}}}, "10 40 1 2 3 70 73 50 41 51 7 71 72 11 74"},
      {"INSERT", {{2, std::string("B")}}, "2 10 41 42 43 50"},
      {"INSERT", {{66, short{1}}}, "66 2 10 41 42 43 50"},
      {"LINE", {{39, 2.0}, {10, p}, {48, 1.0}}, "10 11 39 48"},  // others keep their order
      {"LINE", {{11, p}, {10, p}, {10, p}, {39, 2.0}}, "10 11 10 39"},  // a second 10 is another's
      {"TEXT", {{11, p}, {72, short{2}}, {10, p}}, "10 40 1 50 41 51 7 71 72 11 73"},
      {"LWPOLYLINE", {{90, 2L}, {10, p}, {10, p}}, "90 10 10"},   // no layout: as given
  };
  for (const Case& c : cases) EXPECT_EQ(Codes(LayOut(c.type, c.given).ToVector()), c.codes) << c.type;
}

TEST(LayoutTest, FilledGroupsTakeTheirValuesFromTheRecordOrItsPolyline) {
  Entity polyline("POLYLINE");
  polyline.groups = {{40, 2.0}, {41, 3.0}};
  std::vector<Group> vertex = LayOut("VERTEX", {{10, Point3{5, 0, 0}}}, &polyline).ToVector();
  EXPECT_EQ(std::get<double>(vertex[1].value), 2.0);
  EXPECT_EQ(std::get<double>(vertex[2].value), 3.0);

  std::vector<Group> text = LayOut("TEXT", {{10, Point3{4, 5, 0}}, {72, short{1}}}).ToVector();
  EXPECT_EQ(text[9].code, 11);
  EXPECT_EQ(std::get<Point3>(text[9].value), (Point3{4, 5, 0}));  // the insertion point
  EXPECT_EQ(std::get<std::string>(text[6].value), "STANDARD");
}

TEST(LayoutTest, TheDumpOrderPutsLayoutGroupsFirstAndAddsNothing) {
  Entity e("LINE");
  e.groups = {{39, 1.0}, {11, Point3{}}, {10, Point3{}}};
  std::string codes;
  for (const Group& g : GroupsInOrder(e)) codes += std::to_string(g.code) + " ";
  EXPECT_EQ(codes, "10 11 39 ");
}

}  // namespace
}  // namespace vorhost
