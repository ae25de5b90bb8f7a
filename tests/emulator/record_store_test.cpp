// How records are kept: their packed groups (every kind of value comes back
// as it went in, in its order, through changes that keep, grow or shrink a
// group) and their shared names.
#include "emulator/drawing/group_list.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "emulator/drawing/entity.h"

namespace vorhost {
namespace {

bool Same(const Group& a, const Group& b) { return a.code == b.code && a.value == b.value; }

void ExpectGroups(const GroupList& list, const std::vector<Group>& want) {
  std::vector<Group> got = list.ToVector();
  ASSERT_EQ(got.size(), want.size());
  EXPECT_EQ(list.size(), want.size());
  for (size_t i = 0; i < want.size(); i++) EXPECT_TRUE(Same(got[i], want[i])) << "group " << i << " code " << want[i].code;
}

// Values at the edges of each kind: empty and long texts (past any small
// string buffer), Big5 bytes with a 0x5C trail and a NUL inside, negative
// zero, the largest and smallest numbers, codes from files outside the
// host's own range.
const std::vector<Group> kAwkward = {
    {1, std::string()},
    {1, std::string(300, 'x')},
    {2, std::string("\xA5\x5C\xB1\x60\0z", 6)},
    {40, -0.0},
    {41, 1e308},
    {10, Point3{-1e-300, 5e-324, 12345.678}},
    {70, short{SHRT_MIN}},
    {71, short{SHRT_MAX}},
    {90, long{LONG_MAX}},
    {91, long{LONG_MIN}},
    {-3, std::string("{")},
    {100000, 0.5},
};

TEST(GroupListTest, EveryKindComesBackAsItWentIn) {
  GroupList list = kAwkward;
  ExpectGroups(list, kAwkward);
  GroupList copy = list;
  GroupList moved = std::move(list);
  ExpectGroups(copy, kAwkward);
  ExpectGroups(moved, kAwkward);

  GroupList built;
  for (const Group& g : kAwkward) built.push_back(g);
  built.shrink_to_fit();
  ExpectGroups(built, kAwkward);
  EXPECT_EQ(built.bytes(), copy.bytes());

  GroupList empty;
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(empty.begin(), empty.end());
  EXPECT_FALSE(empty.Find(1));
  empty.Remove(1);
  empty.shrink_to_fit();
  ExpectGroups(empty, {});
}

TEST(GroupListTest, ViewsReadInPlaceAndFindTheFirstOfACode) {
  GroupList list = {{1, std::string("first")}, {10, Point3{1, 2, 3}}, {1, std::string("second")}};
  GroupList::Ref g = list.Find(1);
  ASSERT_TRUE(g);
  EXPECT_TRUE(g.is_text());
  EXPECT_EQ(g.text(), "first");
  EXPECT_EQ(list.Find(10).point(), (Point3{1, 2, 3}));
  EXPECT_FALSE(list.Find(11));
}

TEST(GroupListTest, SetAndRemoveKeepTheOtherGroupsInTheirPlaces) {
  std::vector<Group> want = {{10, Point3{0, 0, 0}}, {1, std::string("abc")}, {40, 2.5}, {7, std::string("STANDARD")}};
  GroupList list = want;

  list.Set(1, std::string("xyz"));  // same size: in place
  want[1].value = std::string("xyz");
  ExpectGroups(list, want);

  list.Set(1, std::string(40, 'L'));  // grows in the middle
  want[1].value = std::string(40, 'L');
  ExpectGroups(list, want);

  list.Set(40, short{3});  // another kind, smaller
  want[2].value = short{3};
  ExpectGroups(list, want);

  list.Set(62, short{1});  // not there: appended
  want.push_back({62, short{1}});
  ExpectGroups(list, want);

  list.Remove(1);
  want.erase(want.begin() + 1);
  ExpectGroups(list, want);
  list.push_back({1, std::string("back")});
  want.push_back({1, std::string("back")});
  ExpectGroups(list, want);
}

TEST(GroupListTest, ManyAppendedGroupsStayInOrder) {
  // A long polyline from a file: each push must not copy the whole list.
  GroupList list;
  std::vector<Group> want;
  for (int i = 0; i < 20000; i++) {
    want.push_back({10, Point3{double(i), -double(i), 0}});
    want.push_back({42, i * 0.001});
  }
  for (const Group& g : want) list.push_back(g);
  ExpectGroups(list, want);
}

TEST(GroupListTest, EntityAccessorsReadThePackedGroups) {
  Entity e("TEXT");
  e.groups = {{10, Point3{1, 2, 0}}, {40, 2.5}, {1, std::string("\xA4\xA4")}, {71, short{2}}, {90, long{7}}};
  EXPECT_EQ(e.Point(10), (Point3{1, 2, 0}));
  EXPECT_EQ(e.Real(40), 2.5);
  EXPECT_EQ(e.Real(71), 2);  // a short reads as a real
  EXPECT_EQ(e.Real(1, -1), -1);  // a text does not
  EXPECT_EQ(e.Text(1), "\xA4\xA4");
  EXPECT_EQ(e.Text(40, "none"), "none");
  EXPECT_EQ(e.Long(90), 7);
  EXPECT_EQ(e.Long(71), 2);
  EXPECT_EQ(e.Short(90, -1), -1);
  ASSERT_TRUE(e.Find(1));
  EXPECT_EQ(std::get<std::string>(e.Find(1)->value), "\xA4\xA4");
  EXPECT_FALSE(e.Find(11));
}

TEST(RecordNameTest, NamesReadAndCompareAsTheirTexts) {
  RecordName empty, layer("E-POWER"), same(std::string("E-POWER")), big5("\xB9\x71\xA4\x4F");
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(empty, "");
  EXPECT_EQ(layer, same);
  EXPECT_EQ(&layer.str(), &same.str());  // one copy of each text
  EXPECT_FALSE(layer == RecordName("e-power"));  // exact bytes: case is the callers' business
  EXPECT_EQ(big5.str(), "\xB9\x71\xA4\x4F");
  EXPECT_EQ("layer " + layer + ".", "layer E-POWER.");
  std::string_view view = layer;
  EXPECT_EQ(view, "E-POWER");
  Entity e("LINE");
  EXPECT_EQ(e.layer, "0");
  EXPECT_TRUE(e.linetype.empty());
  e.layer = big5;
  EXPECT_EQ(e.layer, big5);
}

}  // namespace
}  // namespace vorhost
