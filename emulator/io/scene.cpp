// scene.cpp - walking model space through block references.
#include "emulator/io/scene.h"

#include <cmath>

#include "emulator/drawing/blocks.h"

namespace vorhost {
namespace {

// What a block reference hands down to the records of its block.
struct Context {
  Affine transform;
  std::string layer = "0";  // for records on layer 0
  short color = 7;          // for BYBLOCK (model space: white)
  std::string linetype = "CONTINUOUS";  // for BYBLOCK
  int depth = 0;
};

class Walker {
 public:
  Walker(const Drawing& drawing, const std::function<void(const PlacedRecord&)>& visit)
      : tables_(drawing.tables()), visit_(visit) {}

  void Walk(const EntityList& records, const Context& ctx);

 private:
  const LayerRecord* Layer(const Entity& e, const Context& ctx) const {
    return tables_.layers().Find(EffectiveLayer(e, ctx));
  }
  std::string EffectiveLayer(const Entity& e, const Context& ctx) const {
    return e.layer == "0" && ctx.depth > 0 ? ctx.layer : e.layer.str();
  }
  short Color(const Entity& e, const Context& ctx) const;
  std::string LinetypeName(const Entity& e, const Context& ctx) const;
  void Insert(const EntityList& records, size_t i, const Context& ctx);
  void Visit(const Entity& e, RecordRun vertices, const Context& ctx);

  const Tables& tables_;
  const std::function<void(const PlacedRecord&)>& visit_;
  InsertBudget budget_;  // of the model-space insert being expanded
};

bool Hidden(const LayerRecord* layer) { return layer && (layer->color < 0 || (layer->flags & 1)); }

short Walker::Color(const Entity& e, const Context& ctx) const {
  if (e.color == kColorByBlock) return ctx.color;
  if (e.color == kColorByLayer) {
    const LayerRecord* layer = Layer(e, ctx);
    return layer ? static_cast<short>(std::abs(layer->color)) : 7;
  }
  return e.color;
}

std::string Walker::LinetypeName(const Entity& e, const Context& ctx) const {
  if (e.linetype.empty()) {
    const LayerRecord* layer = Layer(e, ctx);
    return layer ? layer->linetype : "CONTINUOUS";
  }
  if (SameName(e.linetype, "BYBLOCK")) return ctx.linetype;
  return e.linetype;
}

// From a record's own coordinates to those of its container: a record
// with extrusion 0,0,-1 (mirrored arcs and texts from some programs) has
// its x axis reversed; the host's own records are already there.
Affine ObjectFrame(const Entity& e) {
  std::optional<Group> g = e.Find(210);
  if (e.type == "LINE" || !g || !std::holds_alternative<Point3>(g->value)) return {};
  return std::get<Point3>(g->value)[2] < 0 ? Affine{-1, 0, 0, 1, 0, 0} : Affine{};
}

void Walker::Visit(const Entity& e, RecordRun vertices, const Context& ctx) {
  if (Hidden(Layer(e, ctx)) || e.Short(67) == 1) return;
  if (ctx.depth > 0 && !budget_.Spend()) return;
  PlacedRecord placed;
  placed.record = &e;
  placed.vertices = vertices;
  placed.transform = ObjectFrame(e).Then(ctx.transform);
  placed.color = Color(e, ctx);
  const LinetypeRecord* lt = tables_.linetypes().Find(LinetypeName(e, ctx));
  placed.linetype = lt && !lt->elements.empty() ? lt : nullptr;
  placed.linetype_scale = e.Real(48, 1);
  visit_(placed);
}

// The block's records once per cell of the reference's rows and columns
// (a plain reference has one), then the attributes after the reference.
// A reference in model space starts a budget of its own; the cells and
// records past it are left out.
void Walker::Insert(const EntityList& records, size_t i, const Context& ctx) {
  const Entity& e = records[i];
  const LayerRecord* layer = Layer(e, ctx);
  if ((layer && (layer->flags & 1)) || e.Short(67) == 1) return;
  if (ctx.depth == 0) budget_ = InsertBudget();
  const BlockRecord* block = tables_.blocks().Find(e.Text(2));
  if (block && ctx.depth < kMaxBlockDepth) {
    Context inner;
    inner.layer = EffectiveLayer(e, ctx);
    inner.color = Color(e, ctx);
    inner.linetype = LinetypeName(e, ctx);
    inner.depth = ctx.depth + 1;
    double sx = e.Real(41, 1), sy = e.Real(42, 1), r = e.Real(50);
    double cs = std::cos(r), sn = std::sin(r);
    Point3 at = e.Point(10), base = block->base;
    int columns = std::max<int>(1, e.Short(70, 1)), rows = std::max<int>(1, e.Short(71, 1));
    for (int row = 0; row < rows && !budget_.spent(); row++)
      for (int col = 0; col < columns && budget_.Spend(); col++) {
        double ox = col * e.Real(44), oy = row * e.Real(45);
        Affine place{sx * cs, sx * sn, -sy * sn, sy * cs, 0, 0};
        Point3 shift = place.Apply(base);
        place.e = at[0] + ox * cs - oy * sn - shift[0];
        place.f = at[1] + ox * sn + oy * cs - shift[1];
        inner.transform = place.Then(ObjectFrame(e)).Then(ctx.transform);
        Walk(block->entities, inner);
      }
  }
  for (size_t k = i + 1; k < records.size() && records[k].type == "ATTRIB"; k++)
    if (!records[k].erased && !(records[k].Short(70) & 1)) Visit(records[k], {}, ctx);
}

void Walker::Walk(const EntityList& records, const Context& ctx) {
  for (size_t i = 0; i < records.size() && !(ctx.depth > 0 && budget_.spent()); i++) {
    const Entity& e = records[i];
    if (e.erased || e.IsSubEntity()) continue;
    if (e.type == "INSERT") {
      Insert(records, i, ctx);
    } else if (e.type == "POLYLINE") {
      size_t end = i + 1;
      while (end < records.size() && records[end].type == "VERTEX") end++;
      Visit(e, RecordRun{records.begin() + i + 1, records.begin() + end}, ctx);
    } else if (e.type != "ATTDEF" || ctx.depth == 0) {
      Visit(e, {}, ctx);
    }
  }
}

}  // namespace

Affine Affine::Then(const Affine& o) const {
  return {o.a * a + o.c * b, o.b * a + o.d * b, o.a * c + o.c * d,
          o.b * c + o.d * d, o.a * e + o.c * f + o.e, o.b * e + o.d * f + o.f};
}

bool Affine::Conformal() const {
  double tolerance = 1e-9 * (std::fabs(a) + std::fabs(b) + std::fabs(c) + std::fabs(d));
  bool rotation = std::fabs(a - d) <= tolerance && std::fabs(b + c) <= tolerance;
  bool mirrored = std::fabs(a + d) <= tolerance && std::fabs(b - c) <= tolerance;
  return rotation || mirrored;
}

double Affine::Scale() const { return std::sqrt(std::fabs(Det())); }

void WalkModelSpace(const Drawing& drawing, const std::function<void(const PlacedRecord&)>& visit) {
  Walker walker(drawing, visit);
  walker.Walk(drawing.entities(), Context{});
}

}  // namespace vorhost
