// geometry.cpp - outlines of entities.
#include "emulator/drawing/geometry.h"

#include <algorithm>
#include <cmath>

#include "emulator/drawing/blocks.h"
#include "emulator/drawing/spatial_index.h"
#include "emulator/drawing/textmetric.h"

namespace vorhost {
namespace {

constexpr int kArcSteps = 32;  // samples of a full circle
constexpr double kTwoPi = 2 * M_PI;

// Applies an insert's transform (scale, rotate, move) to a point of its
// block. The rotation's cosine and sine are taken once, not per point.
class Transform {
 public:
  Transform(const Point3& base, const Point3& at, double sx, double sy, double rotation)
      : base_(base), at_(at), sx_(sx), sy_(sy), cos_(std::cos(rotation)), sin_(std::sin(rotation)) {}
  Point3 Apply(const Point3& p) const {
    double x = (p[0] - base_[0]) * sx_, y = (p[1] - base_[1]) * sy_;
    return {at_[0] + x * cos_ - y * sin_, at_[1] + x * sin_ + y * cos_, at_[2] + p[2] - base_[2]};
  }

 private:
  Point3 base_, at_;
  double sx_, sy_, cos_, sin_;
};

// Transforms applied to a block's points, innermost first.
using Transforms = std::vector<Transform>;

void AddRecords(const Drawing& drawing, const EntityList& records, const Transforms& ts,
                int depth, InsertBudget* budget, std::vector<Chain>* out, BlockOutlines* blocks);

Chain TextChain(const Drawing& drawing, const Entity& e) {
  const StyleRecord* style = drawing.tables().styles().Find(e.Text(7, "STANDARD"));
  bool vertical = style && (style->flags & 4);
  TextBox box = MeasureText(e.Text(1), e.Real(40, 1), e.Real(41, 1), vertical);
  Point3 o = e.Point(10);
  // A vertical column stands upright at rotation 270: its box is measured
  // in that frame.
  double r = e.Real(50) - (vertical ? 3 * M_PI / 2 : 0), c = std::cos(r), s = std::sin(r);
  auto at = [&](double x, double y) { return Point3{o[0] + x * c - y * s, o[1] + x * s + y * c, o[2]}; };
  return {at(box.x1, box.y1), at(box.x2, box.y1), at(box.x2, box.y2), at(box.x1, box.y2),
          at(box.x1, box.y1)};
}

// The chain of a polyline from its vertices (records after index first).
Chain PolylineChain(const EntityList& records, size_t first, bool closed) {
  std::vector<const Entity*> vertices;
  for (size_t i = first + 1; i < records.size() && records[i].type == "VERTEX"; i++)
    vertices.push_back(&records[i]);
  Chain chain;
  size_t n = vertices.size();
  for (size_t k = 0; k < n; k++) {
    Point3 p = vertices[k]->Point(10);
    chain.push_back(p);
    if (k + 1 == n && !closed) break;
    double b = vertices[k]->Real(42);
    if (b == 0) continue;
    Point3 q = vertices[(k + 1) % n]->Point(10), centre;
    double radius, a1, a2;
    if (!BulgeArc(p, q, b, &centre, &radius, &a1, &a2)) continue;
    Chain arc = ArcPoints(centre, radius, a1, a2);
    if (arc.size() < 2) continue;
    if (b < 0) std::reverse(arc.begin(), arc.end());
    chain.insert(chain.end(), arc.begin() + 1, arc.end() - 1);
  }
  if (closed && n > 0) chain.push_back(vertices[0]->Point(10));
  return chain;
}

// Every point group of a record of a foreign type.
Chain PointsOf(const Entity& e) {
  Chain chain;
  for (const Group& g : e.groups)
    if (auto* p = std::get_if<Point3>(&g.value); p && g.code == 10) chain.push_back(*p);
  return chain;
}

// An insert's block once per cell of its columns and rows (one for a plain
// insert), each cell moved along the insert's rotated axes, as long as the
// budget lasts.
void AddInsertCells(const Drawing& drawing, const Entity& e, const BlockRecord& block,
                    const Transforms& ts, int depth, InsertBudget* budget, std::vector<Chain>* out,
                    BlockOutlines* blocks) {
  const BlockOutlines::Traced* traced = blocks ? blocks->Of(drawing, block) : nullptr;
  double r = e.Real(50), c = std::cos(r), s = std::sin(r);
  Point3 at = e.Point(10);
  int columns = std::max<int>(1, e.Short(70, 1)), rows = std::max<int>(1, e.Short(71, 1));
  for (int row = 0; row < rows; row++)
    for (int col = 0; col < columns; col++) {
      if (!budget->Spend()) return;
      double ox = col * e.Real(44), oy = row * e.Real(45);
      Transforms inner = ts;
      inner.insert(inner.begin(), Transform{block.base, {at[0] + ox * c - oy * s, at[1] + ox * s + oy * c, at[2]},
                                            e.Real(41, 1), e.Real(42, 1), r});
      if (traced && budget->SpendAll(traced->spent)) {
        for (Chain chain : traced->chains) {
          for (Point3& p : chain)
            for (const Transform& t : inner) p = t.Apply(p);
          out->push_back(std::move(chain));
        }
      } else {
        AddRecords(drawing, block.entities, inner, depth + 1, budget, out, blocks);
      }
    }
}

void AddRecord(const Drawing& drawing, const EntityList& records, size_t i,
               const Transforms& ts, int depth, InsertBudget* budget, std::vector<Chain>* out,
               BlockOutlines* blocks) {
  const Entity& e = records[i];
  if (depth > 0 && !budget->Spend()) return;
  Chain chain;
  if (e.type == "LINE") {
    chain = {e.Point(10), e.Point(11)};
  } else if (e.type == "CIRCLE") {
    chain = ArcPoints(e.Point(10), e.Real(40), 0, kTwoPi);
  } else if (e.type == "ARC") {
    chain = ArcPoints(e.Point(10), e.Real(40), e.Real(50), e.Real(51));
  } else if (e.type == "POLYLINE") {
    chain = PolylineChain(records, i, e.Short(70) & 1);
  } else if (e.type == "TEXT" || e.type == "ATTRIB" || (e.type == "ATTDEF" && depth == 0)) {
    chain = TextChain(drawing, e);
  } else if (e.type == "INSERT") {
    const BlockRecord* block = drawing.tables().blocks().Find(e.Text(2));
    if (block && depth < kMaxBlockDepth) AddInsertCells(drawing, e, *block, ts, depth, budget, out, blocks);
    chain = {e.Point(10)};
    for (size_t k = i + 1; k < records.size() && records[k].type == "ATTRIB"; k++)
      AddRecord(drawing, records, k, ts, depth, budget, out, blocks);
  } else if (!e.IsSubEntity() && e.type != "ATTDEF") {
    chain = PointsOf(e);
  }
  if (chain.empty()) return;
  for (Point3& p : chain)
    for (const Transform& t : ts) p = t.Apply(p);
  out->push_back(std::move(chain));
}

void AddRecords(const Drawing& drawing, const EntityList& records, const Transforms& ts,
                int depth, InsertBudget* budget, std::vector<Chain>* out, BlockOutlines* blocks) {
  for (size_t i = 0; i < records.size() && !budget->spent(); i++)
    if (!records[i].erased && !records[i].IsSubEntity())
      AddRecord(drawing, records, i, ts, depth, budget, out, blocks);
}

bool PointInside(const Point3& p, double x1, double y1, double x2, double y2) {
  return p[0] >= x1 && p[0] <= x2 && p[1] >= y1 && p[1] <= y2;
}

// Whether the segment from p to q meets the rectangle (Liang-Barsky).
bool SegmentMeetsRect(const Point3& p, const Point3& q, double x1, double y1, double x2, double y2) {
  double t0 = 0, t1 = 1, dx = q[0] - p[0], dy = q[1] - p[1];
  const double pk[4] = {-dx, dx, -dy, dy};
  const double qk[4] = {p[0] - x1, x2 - p[0], p[1] - y1, y2 - p[1]};
  for (int k = 0; k < 4; k++) {
    if (pk[k] == 0) {
      if (qk[k] < 0) return false;
      continue;
    }
    double r = qk[k] / pk[k];
    if (pk[k] < 0) t0 = std::max(t0, r);
    else t1 = std::min(t1, r);
    if (t0 > t1) return false;
  }
  return true;
}

}  // namespace

double ArcSweep(double a1, double a2) {
  if (!std::isfinite(a1) || !std::isfinite(a2)) return 0;
  double sweep = std::fmod(std::fmod(a2, kTwoPi) - std::fmod(a1, kTwoPi), kTwoPi);
  return sweep <= 0 ? sweep + kTwoPi : sweep;
}

Chain ArcPoints(const Point3& c, double r, double a1, double a2) {
  double sweep = ArcSweep(a1, a2);
  if (sweep == 0 || !std::isfinite(r)) return {};
  a1 = std::fmod(a1, kTwoPi);
  int steps = std::max(2, static_cast<int>(std::ceil(sweep / kTwoPi * kArcSteps)));
  Chain chain;
  for (int k = 0; k <= steps; k++) {
    double a = a1 + sweep * k / steps;
    chain.push_back({c[0] + r * std::cos(a), c[1] + r * std::sin(a), c[2]});
  }
  return chain;
}

bool BulgeArc(const Point3& p, const Point3& q, double b, Point3* centre, double* radius,
              double* a1, double* a2) {
  // Work with the counter-clockwise arc from s to e.
  const Point3& s = b > 0 ? p : q;
  const Point3& e = b > 0 ? q : p;
  double bulge = std::fabs(b);
  double d = std::hypot(e[0] - s[0], e[1] - s[1]);
  double a = std::atan2(e[1] - s[1], e[0] - s[0]);
  double h = d * bulge * 0.5;  // the arc's height over its chord
  *radius = (h * h + d * d * 0.25) / (2 * h);
  double off = *radius - h;
  *centre = {(s[0] + e[0]) * 0.5 - std::sin(a) * off, (s[1] + e[1]) * 0.5 + std::cos(a) * off,
             (s[2] + e[2]) * 0.5};
  *a1 = std::atan2(s[1] - (*centre)[1], s[0] - (*centre)[0]);
  *a2 = std::atan2(e[1] - (*centre)[1], e[0] - (*centre)[0]);
  return d > 0 && std::isfinite(*radius) && *radius > 0 && std::isfinite((*centre)[0]) &&
         std::isfinite((*centre)[1]);
}

// A block that inserts no other traces the same at any depth below the
// top: each of its records spends one of the budget, and no transform
// enters a chain until it is made. Its chains untransformed, with what
// they spent, stand for it wherever it is inserted.
const BlockOutlines::Traced* BlockOutlines::Of(const Drawing& drawing, const BlockRecord& block) {
  auto [it, added] = traced_.try_emplace(&block);
  if (!added) return it->second ? &*it->second : nullptr;
  bool inserts = std::any_of(block.entities.begin(), block.entities.end(),
                             [](const Entity& e) { return !e.erased && e.type == "INSERT"; });
  if (inserts) return nullptr;
  Traced traced;
  InsertBudget budget;
  AddRecords(drawing, block.entities, {}, 1, &budget, &traced.chains, nullptr);
  if (budget.spent()) return nullptr;  // at the limit: traced in place each time
  traced.spent = kInsertBudget - budget.left();
  it->second = std::move(traced);
  return &*it->second;
}

std::vector<Chain> EntityOutline(const Drawing& drawing, uint64_t id, BlockOutlines* blocks) {
  std::vector<Chain> out;
  size_t i = drawing.PositionOf(id);
  if (i == Drawing::kNoPosition || drawing.entities()[i].erased) return out;
  InsertBudget budget;
  AddRecord(drawing, drawing.entities(), i, {}, 0, &budget, &out, blocks);
  return out;
}

void Box::Add(const Point3& p) {
  if (!std::isfinite(p[0]) || !std::isfinite(p[1]) || !std::isfinite(p[2])) return;
  if (empty) {
    lo = hi = p;
    empty = false;
    return;
  }
  for (int k = 0; k < 3; k++) {
    lo[k] = std::min(lo[k], p[k]);
    hi[k] = std::max(hi[k], p[k]);
  }
}

Box EntityBox(const Drawing& drawing, uint64_t id) {
  Box box;
  for (const Chain& c : EntityOutline(drawing, id))
    for (const Point3& p : c) box.Add(p);
  return box;
}

Box DrawingBox(const Drawing& drawing) { return drawing.spatial().Extents(); }

bool InsideWindow(const std::vector<Chain>& outline, const Point3& a, const Point3& b) {
  double x1 = std::min(a[0], b[0]), x2 = std::max(a[0], b[0]);
  double y1 = std::min(a[1], b[1]), y2 = std::max(a[1], b[1]);
  bool any = false;
  for (const Chain& c : outline)
    for (const Point3& p : c) {
      if (!PointInside(p, x1, y1, x2, y2)) return false;
      any = true;
    }
  return any;
}

bool CrossesWindow(const std::vector<Chain>& outline, const Point3& a, const Point3& b) {
  double x1 = std::min(a[0], b[0]), x2 = std::max(a[0], b[0]);
  double y1 = std::min(a[1], b[1]), y2 = std::max(a[1], b[1]);
  for (const Chain& c : outline) {
    if (c.size() == 1 && PointInside(c[0], x1, y1, x2, y2)) return true;
    for (size_t k = 0; k + 1 < c.size(); k++)
      if (SegmentMeetsRect(c[k], c[k + 1], x1, y1, x2, y2)) return true;
  }
  return false;
}

}  // namespace vorhost
