// geometry_test.cpp - outlines of records: arcs whatever their angles,
// blocks that would insert themselves, and what one insert may cost.
#include "emulator/drawing/geometry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "emulator/drawing/blocks.h"
#include "emulator/io/scene.h"

namespace vorhost {
namespace {

Entity Insert(const std::string& block, short columns = 1, short rows = 1) {
  Entity e("INSERT");
  e.groups = {{2, block}, {10, Point3{0, 0, 0}}, {70, columns}, {71, rows}, {44, 1.0}, {45, 1.0}};
  return e;
}

Entity Line() {
  Entity e("LINE");
  e.groups = {{10, Point3{0, 0, 0}}, {11, Point3{1, 0, 0}}};
  return e;
}

// Blocks named as "A>B,C": block A inserts B and C (and holds a line).
SymbolTable<BlockRecord> Blocks(std::initializer_list<std::string> definitions) {
  SymbolTable<BlockRecord> blocks;
  for (const std::string& d : definitions) {
    BlockRecord b{d.substr(0, d.find('>')), {0, 0, 0}, 0, {Line()}};
    for (size_t at = d.find('>'); at != std::string::npos;) {
      size_t end = d.find(',', at + 1);
      b.entities.push_back(Insert(d.substr(at + 1, end - at - 1)));
      at = end;
    }
    blocks.Put(b);
  }
  return blocks;
}

// Sweeps come out in (0, 2 pi] in one step, angles of any size included:
// an arc read with an angle of 1e20 must not be walked round 1e19 times.
TEST(GeometryTest, ArcSweepsInConstantTime) {
  struct Case {
    double a1, a2, sweep;
  } cases[] = {
      {0, M_PI / 2, M_PI / 2},
      {M_PI / 2, 0, 1.5 * M_PI},
      {1, 1, 2 * M_PI},
      {-M_PI, M_PI, 2 * M_PI},
      {5 * M_PI, M_PI / 2, 1.5 * M_PI},
      {INFINITY, 0, 0},
      {0, NAN, 0},
  };
  for (const Case& c : cases) EXPECT_NEAR(ArcSweep(c.a1, c.a2), c.sweep, 1e-12) << c.a1 << " " << c.a2;
  for (double huge : {1e20, 1e99, 1e308}) {
    double sweep = ArcSweep(huge, -huge);
    EXPECT_TRUE(sweep > 0 && sweep <= 2 * M_PI) << huge;
    EXPECT_LE(ArcPoints({0, 0, 0}, 1, huge, -huge).size(), 33u) << huge;
  }
  EXPECT_TRUE(ArcPoints({0, 0, 0}, INFINITY, 0, 1).empty());

  Box box;
  box.Add({1, 2, 0});
  box.Add({NAN, 5, 0});
  box.Add({-INFINITY, 0, 0});
  EXPECT_EQ(box.lo, (Point3{1, 2, 0}));
  EXPECT_EQ(box.hi, (Point3{1, 2, 0}));
}

// A bulged segment whose ends are one point, or whose arc overflows, has
// no arc; it is taken as straight instead of giving a NaN radius (which
// was cast to a step count) or an empty arc to cut the ends from. The
// fuzzer found both through the drawing's box.
TEST(GeometryTest, BulgeArcNotFiniteIsAStraightSegment) {
  Point3 centre;
  double radius, a1, a2;
  EXPECT_TRUE(BulgeArc({0, 0, 0}, {2, 0, 0}, 1, &centre, &radius, &a1, &a2));
  EXPECT_NEAR(radius, 1, 1e-12);
  EXPECT_FALSE(BulgeArc({5, 5, 0}, {5, 5, 0}, 1, &centre, &radius, &a1, &a2));
  EXPECT_FALSE(BulgeArc({-1e99, 0, 0}, {1e99, 0, 0}, 1e300, &centre, &radius, &a1, &a2));

  for (Point3 far : {Point3{5, 5, 0}, Point3{1e99, 1e99, 0}}) {
    Drawing d;
    Entity polyline("POLYLINE"), v1("VERTEX"), v2("VERTEX"), end("SEQEND");
    polyline.groups = {{70, short{1}}};
    v1.groups = {{10, Point3{5, 5, 0}}, {42, 1e300}};
    v2.groups = {{10, far}, {42, 1e300}};
    for (const Entity& e : {polyline, v1, v2, end}) d.Append(e);
    Box box = DrawingBox(d);
    ASSERT_FALSE(box.empty);
    EXPECT_EQ(box.lo, (Point3{5, 5, 0}));
    EXPECT_EQ(box.hi, far);
  }
}

TEST(BlocksTest, CyclesAreFoundThroughAnyNumberOfBlocks) {
  struct Case {
    std::initializer_list<std::string> blocks;
    const char* start;
    std::string cycle;
  } cases[] = {
      {{"A>B", "B>C", "C"}, "", ""},
      {{"A>B,B", "B"}, "", ""},
      {{"A>MISSING"}, "", ""},
      {{"A>a"}, "", "block A inserts itself"},
      {{"A>B", "B>C", "C>A"}, "", "block A inserts itself through B, C"},
      {{"X>A", "A>B", "B>A"}, "", "block A inserts itself through B"},
      {{"A>B", "B>A"}, "b", "block B inserts itself through A"},
  };
  for (const Case& c : cases) {
    SymbolTable<BlockRecord> blocks = Blocks(c.blocks);
    EXPECT_EQ(DescribeCycle(BlockCycle(blocks, c.start)), c.cycle) << *c.blocks.begin();
  }
}

// A multiple insert of 32767 x 32767 cells, and blocks that insert four of
// the next, as deep as blocks are expanded (4^15 copies), each cost one
// budget of records and cells, for the outline (saves, picks) and the
// picture alike.
TEST(BlocksTest, OneInsertCostsAtMostItsBudget) {
  Drawing d;
  d.tables().blocks().Put({"ONE", {0, 0, 0}, 0, {Line()}});
  for (int level = 0; level + 1 < kMaxBlockDepth; level++) {
    std::string next = level + 2 < kMaxBlockDepth ? "L" + std::to_string(level + 1) : "ONE";
    d.tables().blocks().Put({"L" + std::to_string(level), {0, 0, 0}, 0,
                             {Insert(next), Insert(next), Insert(next), Insert(next)}});
  }
  uint64_t grid = d.Append(Insert("ONE", 32767, 32767));
  uint64_t tree = d.Append(Insert("L0"));
  uint64_t small = d.Append(Insert("ONE", 2, 3));
  EXPECT_EQ(EntityOutline(d, small).size(), 6u + 1) << "six cells and the insertion point";
  for (uint64_t id : {grid, tree}) {
    size_t chains = EntityOutline(d, id).size();
    EXPECT_GT(chains, kInsertBudget / 4);
    EXPECT_LE(chains, kInsertBudget + 1);
  }
  size_t visited = 0;
  WalkModelSpace(d, [&](const PlacedRecord&) { visited++; });
  EXPECT_GT(visited, kInsertBudget / 2) << "a budget for each insert";
  EXPECT_LE(visited, 2 * kInsertBudget + 6);
}

// Blocks traced once and moved into place give every insert the outline
// tracing it afresh gives, point for point: turned, scaled and arrayed
// inserts, a block inserting another, and an array whose budget runs out
// part of the way through a cell.
TEST(BlocksTest, BlocksTracedOnceOutlineInsertsAsTracingThemAgain) {
  Drawing d;
  Entity circle("CIRCLE");
  circle.groups = {{10, Point3{2, 1, 0}}, {40, 0.75}};
  Entity text("TEXT");
  text.groups = {{10, Point3{0, -1, 0}}, {40, 2.5}, {1, std::string("N1\xB9\x71")}, {50, 0.3}};
  Entity attdef("ATTDEF");
  attdef.groups = {{10, Point3{5, 5, 0}}, {40, 2.0}, {1, std::string("X")}, {2, std::string("TAG")}};
  d.tables().blocks().Put({"FLAT", {1, 1, 0}, 0, {Line(), circle, text, attdef}});
  d.tables().blocks().Put({"OUTER", {0, 0, 0}, 0, {Line(), Insert("FLAT", 2, 1)}});
  BlockRecord many{"MANY", {0, 0, 0}, 0, {}};
  for (int i = 0; i < 1000; i++) many.entities.push_back(Line());
  d.tables().blocks().Put(many);

  std::vector<uint64_t> inserts;
  for (double angle : {0.0, 0.5, M_PI / 2}) {
    Entity e = Insert("FLAT", 3, 2);
    e.Set(10, Point3{100.125, -7, 0.5});
    e.Set(41, 2.5);
    e.Set(42, -0.4);
    e.Set(50, angle);
    inserts.push_back(d.Append(e));
  }
  inserts.push_back(d.Append(Insert("OUTER", 2, 2)));
  inserts.push_back(d.Append(Insert("MANY", 200, 1)));  // 200 cells of 1001: cut in cell 100

  BlockOutlines blocks;
  for (int pass = 0; pass < 2; pass++)  // the second pass finds every block traced
    for (uint64_t id : inserts) {
      std::vector<Chain> fresh = EntityOutline(d, id);
      std::vector<Chain> reused = EntityOutline(d, id, &blocks);
      ASSERT_FALSE(fresh.empty());
      EXPECT_EQ(reused, fresh) << "insert " << id << ", pass " << pass;
    }
  EXPECT_EQ(blocks.Of(d, *d.tables().blocks().Find("OUTER")), nullptr) << "it inserts another";
  ASSERT_NE(blocks.Of(d, *d.tables().blocks().Find("FLAT")), nullptr);
  EXPECT_EQ(blocks.Of(d, *d.tables().blocks().Find("FLAT"))->spent, 4u) << "the ATTDEF costs but shows nothing";
  EXPECT_EQ(blocks.Of(d, *d.tables().blocks().Find("FLAT"))->chains.size(), 3u);
}

}  // namespace
}  // namespace vorhost
