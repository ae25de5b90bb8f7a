// spatial_test.cpp - picks, windows and extents found through the spatial
// index agree with a walk over every outline, after each kind of change a
// drawing goes through: records added, changed, erased, CHPROP, a style or
// block redefined, NEW and a drawing opened.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "emulator/commands/selection.h"
#include "emulator/drawing/geometry.h"
#include "emulator/drawing/spatial_index.h"
#include "emulator/io/dxf.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

Entity Line(Point3 a, Point3 b) {
  Entity e("LINE");
  e.groups = {{10, a}, {11, b}};
  return e;
}

Entity Circle(Point3 c, double r) {
  Entity e("CIRCLE");
  e.groups = {{10, c}, {40, r}};
  return e;
}

Entity Arc(Point3 c, double r, double a1, double a2) {
  Entity e("ARC");
  e.groups = {{10, c}, {40, r}, {50, a1}, {51, a2}};
  return e;
}

Entity Text(Point3 at, std::string text, std::string style = "STANDARD", double rotation = 0) {
  Entity e("TEXT");
  e.groups = {{10, at}, {40, 2.0}, {1, std::move(text)}, {50, rotation}, {7, std::move(style)}};
  return e;
}

Entity Insert(std::string block, Point3 at) {
  Entity e("INSERT");
  e.groups = {{2, std::move(block)}, {10, at}, {41, 1.0}, {42, 1.0}, {50, 0.0}};
  return e;
}

struct Window {
  Point3 a, b;
};

class SpatialTest : public HostTest {
 protected:
  Drawing& drawing() { return host_->document().drawing(); }
  uint64_t Add(Entity e) { return drawing().Append(std::move(e)); }

  // What "Select objects:" takes from these answers.
  std::vector<uint64_t> Select(const std::vector<vorhost::Answer>& answers) {
    ObjectSelector selector(host_->commands());
    for (const vorhost::Answer& a : answers) selector.Feed(a);
    return selector.selected();
  }
  std::vector<uint64_t> SelectWindow(const Window& w, bool crossing) {
    return Select({vorhost::Answer::OfWindow(w.a, w.b, crossing)});
  }
  uint64_t Pick(Point3 p) {
    std::vector<uint64_t> got = Select({vorhost::Answer::OfPoint(p)});
    return got.empty() ? 0 : got[0];
  }

  // The same selection by looking at every outline of the drawing.
  std::vector<uint64_t> Walk(const Window& w, bool crossing) {
    std::vector<uint64_t> found;
    for (uint64_t id : drawing().MainEntities()) {
      std::vector<Chain> outline = EntityOutline(drawing(), id);
      if (crossing ? CrossesWindow(outline, w.a, w.b) : InsideWindow(outline, w.a, w.b)) found.push_back(id);
    }
    return found;
  }
  Box WalkBox() {
    Box all;
    for (uint64_t id : drawing().MainEntities()) {
      Box one = EntityBox(drawing(), id);
      if (!one.empty) all.Add(one.lo), all.Add(one.hi);
    }
    return all;
  }

  // Every window of windows_, window and crossing, and the extents, agree
  // with the walk.
  void ExpectAgreement(const std::string& after) {
    for (const Window& w : windows_)
      for (bool crossing : {false, true})
        EXPECT_EQ(SelectWindow(w, crossing), Walk(w, crossing))
            << after << ": " << (crossing ? "crossing " : "window ") << w.a[0] << "," << w.a[1] << " "
            << w.b[0] << "," << w.b[1];
    Box index = DrawingBox(drawing()), walk = WalkBox();
    EXPECT_EQ(index.empty, walk.empty) << after;
    EXPECT_EQ(index.lo, walk.lo) << after;
    EXPECT_EQ(index.hi, walk.hi) << after;
  }

  // A field of lines, circles and texts over 1000 x 1000, one across all
  // of them, one far away and, unless the drawing is to be saved, one
  // reaching out to infinity.
  std::vector<uint64_t> Field(bool unbounded = true) {
    std::vector<uint64_t> ids;
    unsigned seed = 7;
    auto next = [&seed](double range) {
      seed = seed * 1103515245 + 12345;
      return range * ((seed >> 8) % 100000) / 100000.0;
    };
    for (int k = 0; k < 600; k++) {
      Point3 p{next(1000), next(1000), 0};
      switch (k % 3) {
        case 0: ids.push_back(Add(Line(p, {p[0] + next(30), p[1] + next(30), 0}))); break;
        case 1: ids.push_back(Add(Circle(p, 1 + next(10)))); break;
        default: ids.push_back(Add(Text(p, "AB" + std::to_string(k)))); break;
      }
    }
    ids.push_back(Add(Line({-500, 500, 0}, {1500, 510, 0})));       // across every cell
    ids.push_back(Add(Line({1e15, 1e15, 0}, {1e15 + 1, 1e15, 0})));  // far away
    if (unbounded) ids.push_back(Add(Line({300, 300, 0}, {INFINITY, 300, 0})));
    return ids;
  }

  std::vector<Window> windows_ = {
      {{0, 0, 0}, {1000, 1000, 0}},   {{100, 100, 0}, {250, 180, 0}}, {{990, 10, 0}, {400, 420, 0}},
      {{-1e9, -1e9, 0}, {1e9, 1e9, 0}}, {{500, 290, 0}, {520, 310, 0}}, {{-600, 495, 0}, {-400, 505, 0}},
      {{1e15 - 1, 1e15 - 1, 0}, {1e15 + 2, 1e15 + 1, 0}},               {{2000, 2000, 0}, {2100, 2100, 0}},
  };
};

TEST_F(SpatialTest, WindowsAndExtentsFollowEveryChange) {
  std::vector<uint64_t> ids = Field();
  ExpectAgreement("drawn");

  for (size_t k = 0; k < ids.size(); k += 5) drawing().Erase(ids[k]);
  ExpectAgreement("erased");

  // Records changed in place, as a command edits them.
  for (size_t k = 1; k < ids.size(); k += 7)
    if (Entity* e = drawing().Find(ids[k]); e && !e->erased)
      e->Set(10, Point3{e->Point(10)[0] + 200, e->Point(10)[1] - 150, 0});
  ExpectAgreement("moved");

  // A style made vertical turns every text standing on it.
  drawing().tables().styles().Find("STANDARD")->flags = 4;
  ExpectAgreement("vertical style");

  // Many more records: the grid is made again for the larger drawing.
  for (int k = 0; k < 3000; k++) Add(Circle({k % 60 * 40.0, k / 60 * 40.0, 0}, 3));
  ExpectAgreement("grown");
}

TEST_F(SpatialTest, ExtentsOfArcsInsertsAndVerticalTexts) {
  drawing().tables().styles().Put(StyleRecord{"UPRIGHT", "txt", "", 0, 1, 0, 2.5, 4});
  drawing().tables().blocks().Put(BlockRecord{"QUARTER", {0, 0, 0}, 0, {Arc({0, 0, 0}, 10, 0, M_PI / 2)}});
  // The quarter arc of radius 10 inserted at (100,0) reaches from (100,0)
  // to (110,10); the upright text, at its style's rotation, hangs down
  // from its point.
  Add(Arc({0, 0, 0}, 10, M_PI, 3 * M_PI / 2));
  Box box = DrawingBox(drawing());
  EXPECT_NEAR(box.lo[0], -10, 1e-9);
  EXPECT_NEAR(box.lo[1], -10, 1e-9);
  EXPECT_NEAR(box.hi[0], 0, 1e-9);
  EXPECT_NEAR(box.hi[1], 0, 1e-9);
  Add(Insert("QUARTER", {100, 0, 0}));
  box = DrawingBox(drawing());
  EXPECT_NEAR(box.hi[0], 110, 1e-9);
  EXPECT_NEAR(box.hi[1], 10, 1e-9);
  uint64_t upright = Add(Text({50, -20, 0}, "ABCD", "UPRIGHT", 3 * M_PI / 2));
  Box text = EntityBox(drawing(), upright);
  EXPECT_NEAR(text.lo[1], -20 - 4 * 2, 1e-9) << "four characters stand below their point";
  EXPECT_EQ(DrawingBox(drawing()).lo[1], text.lo[1]);

  // The block redefined larger moves the drawing's corner with it.
  drawing().tables().blocks().Put(BlockRecord{"QUARTER", {0, 0, 0}, 0, {Arc({0, 0, 0}, 50, 0, M_PI / 2)}});
  EXPECT_NEAR(DrawingBox(drawing()).hi[0], 150, 1e-9);
  EXPECT_NEAR(DrawingBox(drawing()).hi[1], 50, 1e-9);

  // Erasing the record at an edge shrinks the extents back.
  drawing().Erase(upright);
  EXPECT_NEAR(DrawingBox(drawing()).lo[1], -10, 1e-9);
  drawing().Erase(drawing().MainEntities().front());
  drawing().Erase(drawing().MainEntities().front());
  EXPECT_TRUE(DrawingBox(drawing()).empty);
}

TEST_F(SpatialTest, PicksTakeTheNearestAndForgetWhatIsErased) {
  uint64_t low = Add(Line({0, 0, 0}, {100, 0, 0}));
  uint64_t high = Add(Line({0, 2, 0}, {100, 2, 0}));
  uint64_t ring = Add(Circle({50, 50, 0}, 10));
  EXPECT_EQ(Pick({50, 0.5, 0}), low);
  EXPECT_EQ(Pick({50, 1.5, 0}), high);
  EXPECT_EQ(Pick({50, 1, 0}), high) << "on a tie, the later record";
  EXPECT_EQ(Pick({60, 50, 0}), ring);
  EXPECT_EQ(Pick({50, 30, 0}), 0u) << "out of every pick box";
  drawing().Erase(high);
  EXPECT_EQ(Pick({50, 1, 0}), low);
  drawing().Find(ring)->Set(10, Point3{50, 80, 0});
  EXPECT_EQ(Pick({60, 50, 0}), 0u);
  EXPECT_EQ(Pick({60, 80, 0}), ring);
  EXPECT_EQ(drawing().Find(ring)->handle, 0x22u) << "handles stay as they were given";
}

// CHPROP changes the records it takes through the command line; they stay
// where they were, and are found there again.
TEST_F(SpatialTest, ChpropKeepsWhatItChangesFindable) {
  Field();
  Window all = windows_[0];
  std::vector<uint64_t> before = SelectWindow(all, false);
  ASSERT_FALSE(before.empty());
  Answer({"W", "0,0", "1000,1000", "", "C", "1", ""});
  host_->command_line().Execute("CHPROP");
  EXPECT_EQ(drawing().Find(before[0])->color, 1) << Output();
  EXPECT_EQ(SelectWindow(all, false), before);
  ExpectAgreement("chprop");
}

// NEW and opening a file replace the drawing and its index with it: the
// names of the old drawing find nothing, those of the opened one are its
// records at their places, with their handles.
TEST_F(SpatialTest, NewAndOpenReplaceTheIndex) {
  Field(false);
  std::vector<uint64_t> old_found = SelectWindow(windows_[1], true);
  ASSERT_FALSE(old_found.empty());
  std::vector<uint32_t> handles;
  for (uint64_t id : old_found) handles.push_back(drawing().Find(id)->handle);
  std::string err;
  ASSERT_TRUE(SaveDxf(drawing(), host_->document().sysvars(), LinuxPath("FIELD.DXF"), &err)) << err;

  host_->NewDrawing();
  EXPECT_TRUE(SelectWindow(windows_[0], true).empty());
  EXPECT_TRUE(DrawingBox(drawing()).empty);
  EXPECT_EQ(drawing().Find(old_found[0]), nullptr);

  ASSERT_TRUE(host_->OpenDrawing(LinuxPath("FIELD.DXF"), &err)) << err;
  std::vector<uint64_t> found = SelectWindow(windows_[1], true);
  ASSERT_EQ(found.size(), old_found.size());
  for (size_t k = 0; k < found.size(); k++) {
    EXPECT_NE(found[k], old_found[k]) << "names are never given twice";
    EXPECT_EQ(drawing().Find(found[k])->handle, handles[k]);
  }
  ExpectAgreement("opened");
}

}  // namespace
}  // namespace vorhost::testing
