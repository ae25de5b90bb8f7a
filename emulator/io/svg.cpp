// svg.cpp - model space drawn as SVG.
//
// World y points up and SVG y down, so every point is written with y
// negated; texts get one matrix that carries their rotation, width factor,
// obliquing and block transform together with that flip, which keeps them
// upright instead of mirrored. The frame is the box of what was drawn,
// gathered while drawing.
#include "emulator/io/svg.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

#include "emulator/core/encoding.h"
#include "emulator/core/numbers.h"
#include "emulator/core/text.h"
#include "emulator/drawing/geometry.h"
#include "emulator/drawing/textmetric.h"
#include "emulator/io/aci.h"
#include "emulator/platform/replace_file.h"
#include "emulator/io/scene.h"

namespace vorhost {
namespace {

constexpr double kPageSize = 1600;       // pixels along the longer side
constexpr double kMargin = 0.05;         // of the longer side
constexpr double kFontPerHeight = 1.2;   // font size per text height (cap height)
constexpr double kVerticalBaseline = 0.88;  // of a cell, for a vertical column
// Points further out than this are not drawn (their record is left out):
// the frame's size, margin and scale are computed from them and must stay
// finite. Only a block's points at scales multiplied through several
// levels of blocks come near it.
constexpr double kMaxPage = 1e150;
constexpr char kFonts[] = "'Noto Sans CJK TC', 'WenQuanYi Micro Hei', sans-serif";

std::string Xml(std::string_view utf8) {
  std::string out;
  for (char c : utf8) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default:
        if (static_cast<unsigned char>(c) >= 0x20 || c == '\t') out += c;
    }
  }
  return out;
}

// One character as shown, with the over- and underline switches in force.
struct Cell {
  std::string utf8;
  bool over = false, under = false;
};

// The control codes %%c, %%d, %%p, %%% and %%nnn become their characters;
// %%o and %%u switch over- and underlining.
std::vector<Cell> Cells(std::string_view big5) {
  std::vector<Cell> cells;
  bool over = false, under = false;
  for (size_t i = 0; i < big5.size();) {
    if (big5.compare(i, 2, "%%") == 0 && i + 2 < big5.size()) {
      char c = static_cast<char>(std::tolower(static_cast<unsigned char>(big5[i + 2])));
      size_t used = 3;
      std::string shown;
      if (c == 'o' || c == 'u') {
        (c == 'o' ? over : under) = !(c == 'o' ? over : under);
      } else if (c == 'c') {
        shown = "\u2300";
      } else if (c == 'd') {
        shown = "\u00B0";
      } else if (c == 'p') {
        shown = "\u00B1";
      } else if (c >= '0' && c <= '9') {
        int code = 0;
        for (used = 2; used < 5 && i + used < big5.size() && std::isdigit(static_cast<unsigned char>(big5[i + used])); used++)
          code = code * 10 + (big5[i + used] - '0');
        shown = code >= 32 && code < 127 ? std::string(1, static_cast<char>(code)) : "?";
      } else {
        shown = std::string(1, big5[i + 2]);  // %%% and unknown codes: the character
      }
      if (!shown.empty()) cells.push_back({shown, over, under});
      i += used;
      continue;
    }
    size_t len = Big5CharLength(big5, i);
    cells.push_back({Big5ToUtf8(big5.substr(i, len)), over, under});
    i += len;
  }
  return cells;
}

struct Vertex {
  Point3 at;
  double w1 = 0, w2 = 0, bulge = 0;
};

std::vector<Vertex> LwpolylineVertices(const Entity& e) {
  std::vector<Vertex> out;
  double width = e.Real(43);
  for (const Group& g : e.groups) {
    if (g.code == 10 && std::holds_alternative<Point3>(g.value)) {
      out.push_back({std::get<Point3>(g.value), width, width, 0});
    } else if (!out.empty() && std::holds_alternative<double>(g.value)) {
      double v = std::get<double>(g.value);
      if (g.code == 40) out.back().w1 = v;
      else if (g.code == 41) out.back().w2 = v;
      else if (g.code == 42) out.back().bulge = v;
    }
  }
  return out;
}

// Vertices that draw: spline frame points (flag 16) are only controls.
std::vector<Vertex> PolylineVertices(const RecordRun& records) {
  std::vector<Vertex> out;
  for (const Entity& v : records)
    if (!v.erased && !(v.Short(70) & 16))
      out.push_back({v.Point(10), v.Real(40), v.Real(41), v.Real(42)});
  return out;
}

// The page the drawing is painted on: its numbers, written with y negated,
// and its frame, the box of the points written so far. A number that is
// not finite, or a point past kMaxPage, spoils the record being painted.
class PageFrame {
 public:
  // A number of the page.
  std::string Num(double v) const {
    if (!std::isfinite(v)) spoiled_ = true;
    return DecimalText(v, 4);
  }
  // World to page: y negated; the frame grows to hold the point.
  std::string At(const Point3& world);
  std::string Matrix(const double m[6]) const;

  // A new record is painted; whether something spoiled it since.
  void BeginRecord() { spoiled_ = false; }
  bool spoiled() const { return spoiled_; }

  bool empty() const { return empty_; }
  double x1() const { return x1_; }
  double y1() const { return y1_; }
  double x2() const { return x2_; }
  double y2() const { return y2_; }

 private:
  double x1_ = 0, y1_ = 0, x2_ = 0, y2_ = 0;
  bool empty_ = true;
  mutable bool spoiled_ = false;
};

std::string PageFrame::At(const Point3& world) {
  double x = world[0], y = -world[1];
  if (!(std::fabs(x) <= kMaxPage && std::fabs(y) <= kMaxPage)) {
    spoiled_ = true;
    return "0,0";
  }
  if (empty_) {
    x1_ = x2_ = x;
    y1_ = y2_ = y;
    empty_ = false;
  }
  x1_ = std::min(x1_, x);
  x2_ = std::max(x2_, x);
  y1_ = std::min(y1_, y);
  y2_ = std::max(y2_, y);
  return Num(x) + "," + Num(y);
}

std::string PageFrame::Matrix(const double m[6]) const {
  std::string s = "matrix(";
  for (int k = 0; k < 6; k++) s += (k ? " " : "") + Num(m[k]);
  return s + ")";
}

class SvgPainter {
 public:
  SvgPainter(const Drawing& drawing, const SysVarTable& vars);
  // Paints the drawing, then hands the document to write in three pieces:
  // the head, which needs the frame of all that was painted, the body and
  // the tail, so that no second copy of the body is made.
  template <typename Write>
  void Document(Write write);

 private:
  void Paint(const PlacedRecord& p);
  void PaintRecord(const PlacedRecord& p);
  void PaintCircle(const PlacedRecord& p);
  void PaintArc(const PlacedRecord& p);
  void PaintPolyline(const PlacedRecord& p, const std::vector<Vertex>& vertices, bool closed);
  void PaintFace(const PlacedRecord& p, bool filled);
  void PaintText(const PlacedRecord& p);
  void PaintColumn(const std::vector<Cell>& cells, double height, const std::string& head);
  void PaintLine(const std::vector<Cell>& cells, double height, const std::string& head);

  std::string Num(double v) const { return page_.Num(v); }
  std::string At(const Point3& world) { return page_.At(world); }
  std::string Stroke(const PlacedRecord& p, double width) const;
  std::string DashArray(const PlacedRecord& p) const;
  void Sampled(const PlacedRecord& p, const Chain& chain);
  void LinetypeTexts(const PlacedRecord& p, const Point3& from, const Point3& to);
  std::string Segment(const PlacedRecord& p, const Vertex& from, const Vertex& to);

  const Drawing& drawing_;
  double ltscale_ = 1;
  double thin_ = 1;  // stroke width of lines without one, set once the frame is known
  std::string body_;
  PageFrame page_;
  Point3 limmin_{0, 0, 0}, limmax_{420, 297, 0};
};

SvgPainter::SvgPainter(const Drawing& drawing, const SysVarTable& vars) : drawing_(drawing) {
  SysValue v;
  if (vars.Get("LTSCALE", &v) && std::holds_alternative<double>(v)) ltscale_ = std::get<double>(v);
  if (vars.Get("LIMMIN", &v) && std::holds_alternative<Point3>(v)) limmin_ = std::get<Point3>(v);
  if (vars.Get("LIMMAX", &v) && std::holds_alternative<Point3>(v)) limmax_ = std::get<Point3>(v);
}

// The linetype's elements as SVG dashes: alternating dash and gap from a
// dash, runs of the same kind joined, a dot as a short dash; the texts
// and shapes of complex linetypes are left out.
std::string SvgPainter::DashArray(const PlacedRecord& p) const {
  if (!p.linetype) return "";
  double scale = ltscale_ * p.linetype_scale;
  std::vector<double> runs;  // even index: dash, odd: gap
  for (const LinetypeElement& el : p.linetype->elements) {
    if (el.kind != LinetypeElement::Kind::kPlain) continue;  // texts and shapes are not drawn
    bool dash = el.length >= 0;
    double len = el.length == 0 ? 2 * thin_ : std::fabs(el.length) * scale;
    if (runs.empty() && !dash) runs.push_back(0);
    if (!runs.empty() && (runs.size() % 2 == 1) == dash) runs.back() += len;
    else runs.push_back(len);
  }
  if (runs.size() % 2) runs.push_back(0);
  double total = 0;
  for (double r : runs) total += r;
  if (total <= 0) return "";
  std::string out;
  for (double r : runs) out += (out.empty() ? "" : ",") + Num(r);
  return out;
}

// The texts of a complex linetype along a straight run, repeated with its
// pattern: each where the element before it ends, moved by its X and Y,
// turned with the run unless its rotation is absolute.
void SvgPainter::LinetypeTexts(const PlacedRecord& p, const Point3& from, const Point3& to) {
  if (!p.linetype) return;
  double scale = ltscale_ * p.linetype_scale;
  double period = p.linetype->PatternLength() * scale;
  double length = std::hypot(to[0] - from[0], to[1] - from[1]);
  if (period <= 0 || length <= 0 || length / period > 10000) return;
  double angle = std::atan2(to[1] - from[1], to[0] - from[0]);
  double ux = std::cos(angle), uy = std::sin(angle);
  int color = p.color == 7 ? 0 : p.color;
  std::string fill = color == 0 ? "#000000" : HexColor(AciRgb(color));
  for (double start = 0; start < length; start += period) {
    double s = start;
    for (const LinetypeElement& el : p.linetype->elements) {
      if (el.kind == LinetypeElement::Kind::kPlain) {
        s += std::fabs(el.length) * scale;
        continue;
      }
      if (el.kind != LinetypeElement::Kind::kText || s > length) continue;
      double along = s + el.x * scale, across = el.y * scale;
      Point3 at{from[0] + ux * along - uy * across, from[1] + uy * along + ux * across, from[2]};
      double degrees = el.absolute_rotation ? el.rotation : angle * 180 / M_PI + el.rotation;
      At(at);
      body_ += "<text x=\"" + Num(at[0]) + "\" y=\"" + Num(-at[1]) + "\" font-size=\"" +
               Num(el.scale * scale * kFontPerHeight) + "\" fill=\"" + fill + "\" transform=\"rotate(" +
               Num(-degrees) + " " + Num(at[0]) + " " + Num(-at[1]) + ")\">" + Xml(Big5ToUtf8(el.text)) +
               "</text>\n";
    }
  }
}

std::string SvgPainter::Stroke(const PlacedRecord& p, double width) const {
  int color = p.color == 7 ? 0 : p.color;
  std::string s = " stroke=\"" + (color == 0 ? std::string("#000000") : HexColor(AciRgb(color))) + "\"";
  if (width > 0) s += " stroke-width=\"" + Num(width) + "\"";
  std::string dashes = DashArray(p);
  if (!dashes.empty()) s += " stroke-dasharray=\"" + dashes + "\"";
  return s;
}

std::string Fill(const PlacedRecord& p) {
  return " fill=\"" + (p.color == 7 ? std::string("#000000") : HexColor(AciRgb(p.color))) + "\"";
}

void SvgPainter::Sampled(const PlacedRecord& p, const Chain& chain) {
  std::string d;
  for (const Point3& q : chain) d += (d.empty() ? "M" : " L") + At(p.transform.Apply(q));
  body_ += "<path d=\"" + d + "\"" + Stroke(p, 0) + "/>\n";
}

void SvgPainter::PaintCircle(const PlacedRecord& p) {
  const Entity& e = *p.record;
  Point3 c = e.Point(10);
  double r = e.Real(40);
  if (!p.transform.Conformal()) return Sampled(p, ArcPoints(c, r, 0, 2 * M_PI));
  Point3 centre = p.transform.Apply(c);
  double radius = r * p.transform.Scale();
  At({centre[0] - radius, centre[1] - radius, 0});
  At({centre[0] + radius, centre[1] + radius, 0});
  body_ += "<circle cx=\"" + Num(centre[0]) + "\" cy=\"" + Num(-centre[1]) + "\" r=\"" + Num(radius) +
           "\"" + Stroke(p, 0) + "/>\n";
}

// An arc runs counter-clockwise from 50 to 51; on the page (y down) that
// is SVG's negative direction, unless the transform mirrors.
void SvgPainter::PaintArc(const PlacedRecord& p) {
  const Entity& e = *p.record;
  Point3 c = e.Point(10);
  double r = e.Real(40), a1 = e.Real(50), a2 = e.Real(51);
  double sweep = std::fmod(std::fmod(a2, 2 * M_PI) - std::fmod(a1, 2 * M_PI), 2 * M_PI);
  if (sweep <= 1e-12) sweep += 2 * M_PI;
  if (!p.transform.Conformal() || sweep >= 2 * M_PI - 1e-9) return Sampled(p, ArcPoints(c, r, a1, a2));
  for (const Point3& q : ArcPoints(c, r, a1, a2)) At(p.transform.Apply(q));  // the frame
  Point3 from = p.transform.Apply({c[0] + r * std::cos(a1), c[1] + r * std::sin(a1), 0});
  Point3 to = p.transform.Apply({c[0] + r * std::cos(a2), c[1] + r * std::sin(a2), 0});
  double radius = r * p.transform.Scale();
  int flag = p.transform.Det() > 0 ? 0 : 1;
  body_ += "<path d=\"M" + At(from) + " A" + Num(radius) + "," + Num(radius) + " 0 " +
           (sweep > M_PI ? "1" : "0") + "," + std::to_string(flag) + " " + At(to) + "\"" +
           Stroke(p, 0) + "/>\n";
}

// The path step from one vertex to the next: a line, or an arc for a
// bulge (tan of a quarter of the included angle, positive counter-clockwise).
std::string SvgPainter::Segment(const PlacedRecord& p, const Vertex& from, const Vertex& to) {
  Point3 q = p.transform.Apply(to.at);
  if (from.bulge == 0 || !p.transform.Conformal()) return " L" + At(q);
  Point3 centre;
  double r, a1, a2;
  if (!BulgeArc(from.at, to.at, from.bulge, &centre, &r, &a1, &a2)) return " L" + At(q);
  for (const Point3& s : ArcPoints(centre, r, a1, a2)) At(p.transform.Apply(s));
  bool ccw = (from.bulge > 0) == (p.transform.Det() > 0);
  return " A" + Num(r * p.transform.Scale()) + "," + Num(r * p.transform.Scale()) + " 0 " +
         (std::fabs(from.bulge) > 1 ? "1" : "0") + "," + (ccw ? "0" : "1") + " " + At(q);
}

// A polyline of one width is one path of that stroke width; otherwise each
// segment is drawn alone, a straight tapering one as its outline filled, a
// curved one with the mean of its widths.
void SvgPainter::PaintPolyline(const PlacedRecord& p, const std::vector<Vertex>& vs, bool closed) {
  size_t n = vs.size();
  if (n == 0) return;
  size_t segments = closed ? n : n - 1;
  bool uniform = true;
  for (size_t k = 0; k < segments; k++)
    uniform &= vs[k].w1 == vs[0].w1 && vs[k].w2 == vs[0].w1;
  double scale = p.transform.Scale();
  if (uniform || segments == 0) {
    std::string d = "M" + At(p.transform.Apply(vs[0].at));
    for (size_t k = 0; k < segments; k++) d += Segment(p, vs[k], vs[(k + 1) % n]);
    body_ += "<path d=\"" + d + (closed ? " Z" : "") + "\"" + Stroke(p, vs[0].w1 * scale) + "/>\n";
    return;
  }
  for (size_t k = 0; k < segments; k++) {
    const Vertex& a = vs[k];
    const Vertex& b = vs[(k + 1) % n];
    double dx = b.at[0] - a.at[0], dy = b.at[1] - a.at[1], len = std::hypot(dx, dy);
    if (a.bulge == 0 && a.w1 != a.w2 && len > 0) {
      double nx = -dy / len, ny = dx / len;
      auto side = [&](const Point3& q, double w) {
        return std::pair{Point3{q[0] + nx * w / 2, q[1] + ny * w / 2, 0}, Point3{q[0] - nx * w / 2, q[1] - ny * w / 2, 0}};
      };
      auto [a1, a2] = side(a.at, a.w1);
      auto [b1, b2] = side(b.at, a.w2);
      body_ += "<path d=\"M" + At(p.transform.Apply(a1)) + " L" + At(p.transform.Apply(b1)) + " L" +
               At(p.transform.Apply(b2)) + " L" + At(p.transform.Apply(a2)) + " Z\"" + Fill(p) +
               " stroke=\"none\"/>\n";
      continue;
    }
    std::string d = "M" + At(p.transform.Apply(a.at)) + Segment(p, a, b);
    body_ += "<path d=\"" + d + "\"" + Stroke(p, (a.w1 + a.w2) / 2 * scale) + "/>\n";
  }
}

// SOLID and TRACE (corners 10, 11, 13, 12 in that order round) filled;
// 3DFACE as its outline.
void SvgPainter::PaintFace(const PlacedRecord& p, bool filled) {
  const Entity& e = *p.record;
  std::vector<int> order = filled ? std::vector<int>{10, 11, 13, 12} : std::vector<int>{10, 11, 12, 13};
  std::string d;
  for (int code : order) d += (d.empty() ? "M" : " L") + At(p.transform.Apply(e.Point(code)));
  body_ += "<path d=\"" + d + " Z\"" + (filled ? Fill(p) + " stroke=\"none\"" : Stroke(p, 0)) + "/>\n";
}

void SvgPainter::PaintLine(const std::vector<Cell>& cells, double height, const std::string& head) {
  std::string spans;
  for (size_t i = 0; i < cells.size();) {
    size_t j = i;
    std::string text;
    while (j < cells.size() && cells[j].over == cells[i].over && cells[j].under == cells[i].under)
      text += cells[j++].utf8;
    std::string decoration = cells[i].over && cells[i].under ? "overline underline"
                             : cells[i].over                 ? "overline"
                             : cells[i].under                ? "underline"
                                                             : "";
    spans += decoration.empty() ? Xml(text)
                                : "<tspan text-decoration=\"" + decoration + "\">" + Xml(text) + "</tspan>";
    i = j;
  }
  body_ += head + " font-size=\"" + Num(height * kFontPerHeight) + "\">" + spans + "</text>\n";
}

// One character per cell of one height, downward from the insertion point
// and centred on it, as the host measures vertical text.
void SvgPainter::PaintColumn(const std::vector<Cell>& cells, double height, const std::string& head) {
  std::string spans;
  for (size_t i = 0; i < cells.size(); i++)
    spans += "<tspan x=\"0\" y=\"" + Num((i + kVerticalBaseline) * height) + "\">" + Xml(cells[i].utf8) + "</tspan>";
  body_ += head + " font-size=\"" + Num(height) + "\" text-anchor=\"middle\">" + spans + "</text>\n";
}

// Texts, attributes, and attribute definitions (which show their tag). The
// text's own frame (x along the baseline, y down the page) goes to the page
// through one matrix. Justified texts hang on their alignment point with
// SVG's anchors, so the real font's widths do not shift them; aligned and
// fitted texts are stretched between their two points.
void SvgPainter::PaintText(const PlacedRecord& p) {
  const Entity& e = *p.record;
  const StyleRecord* style = drawing_.tables().styles().Find(e.Text(7, "STANDARD"));
  bool vertical = style && (style->flags & 4);
  std::string text = e.type == "ATTDEF" ? e.Text(2) : e.Text(1);
  double height = e.Real(40, 1), width = e.Real(41, 1), rotation = e.Real(50), oblique = e.Real(51);
  short generation = e.Short(71);
  int h = e.Short(72), v = e.Short(e.type == "TEXT" ? 73 : 74);
  bool justified = !vertical && (h != 0 || v != 0);
  Point3 origin = justified && h != 3 && h != 5 ? e.Point(11) : e.Point(10);
  if (vertical) rotation += M_PI / 2;  // the host's vertical texts run at 270 degrees
  double ux = std::cos(rotation), uy = std::sin(rotation);
  Point3 col1 = p.transform.Turn(ux * width * (generation & 2 ? -1 : 1), uy * width * (generation & 2 ? -1 : 1));
  double t = std::tan(oblique), flip = generation & 4 ? -1 : 1;
  Point3 col2 = p.transform.Turn((uy - t * ux) * flip, (-ux - t * uy) * flip);
  Point3 o = p.transform.Apply(origin);
  double m[6] = {col1[0], -col1[1], col2[0], -col2[1], o[0], -o[1]};

  TextBox box = MeasureText(text, height, 1, vertical);  // the frame: the host's metric
  for (double bx : {box.x1, box.x2})
    for (double by : {box.y1, box.y2}) {
      double sx = vertical ? bx : bx - (h == 1 || h == 4 ? box.x2 / 2 : h == 2 ? box.x2 : 0);
      At({m[0] * sx - m[2] * by + m[4], -(m[1] * sx - m[3] * by + m[5]), 0});
    }

  std::string head = "<text transform=\"" + page_.Matrix(m) + "\"" + Fill(p);
  std::vector<Cell> cells = Cells(text);
  if (vertical) return PaintColumn(cells, height, head);
  double dy = h == 4 || v == 2 ? height / 2 : v == 3 ? height : 0;
  if (dy != 0) head += " y=\"" + Num(dy) + "\"";
  if (h == 3 || h == 5) {
    Point3 a = e.Point(10), b = e.Point(11);
    head += " textLength=\"" + Num(std::hypot(b[0] - a[0], b[1] - a[1]) / width) +
            "\" lengthAdjust=\"spacingAndGlyphs\"";
  } else if (h == 1 || h == 4 || h == 2) {
    head += std::string(" text-anchor=\"") + (h == 2 ? "end" : "middle") + "\"";
  }
  PaintLine(cells, height, head);
}

// A record that would need a number that is not finite (a block's points
// at a scale too large for a double) is left out whole, frame included:
// the picture never holds "nan" or "inf".
void SvgPainter::Paint(const PlacedRecord& p) {
  size_t mark = body_.size();
  PageFrame before = page_;
  page_.BeginRecord();
  PaintRecord(p);
  if (!page_.spoiled()) return;
  body_.resize(mark);
  page_ = before;
}

void SvgPainter::PaintRecord(const PlacedRecord& p) {
  const std::string& type = p.record->type;
  if (type == "LINE") {
    Point3 from = p.transform.Apply(p.record->Point(10)), to = p.transform.Apply(p.record->Point(11));
    body_ += "<path d=\"M" + At(from) + " L" + At(to) + "\"" + Stroke(p, 0) + "/>\n";
    LinetypeTexts(p, from, to);
  } else if (type == "CIRCLE") {
    PaintCircle(p);
  } else if (type == "ARC") {
    PaintArc(p);
  } else if (type == "POLYLINE") {
    if (!(p.record->Short(70) & (16 | 64)))  // meshes and polyface meshes are not drawn
      PaintPolyline(p, PolylineVertices(p.vertices), p.record->Short(70) & 1);
  } else if (type == "LWPOLYLINE") {
    PaintPolyline(p, LwpolylineVertices(*p.record), p.record->Short(70) & 1);
  } else if (type == "TEXT" || type == "ATTRIB" || type == "ATTDEF") {
    PaintText(p);
  } else if (type == "SOLID" || type == "TRACE" || type == "3DFACE") {
    PaintFace(p, type != "3DFACE");
  }
}

template <typename Write>
void SvgPainter::Document(Write write) {
  // The thin width depends on the frame, the frame on what is drawn: take
  // it from the entities' boxes first.
  Box box = DrawingBox(drawing_);
  if (box.empty) box = {limmin_, limmax_, false};
  thin_ = std::max(box.hi[0] - box.lo[0], box.hi[1] - box.lo[1]) / kPageSize;
  if (!(thin_ > 0) || !std::isfinite(thin_)) thin_ = 0.1;

  WalkModelSpace(drawing_, [this](const PlacedRecord& p) { Paint(p); });
  if (page_.empty()) {
    At(limmin_);
    At(limmax_);
  }
  double x1 = page_.x1(), y1 = page_.y1(), x2 = page_.x2(), y2 = page_.y2();
  double size = std::max({x2 - x1, y2 - y1, 1e-6});
  double margin = size * kMargin;
  double vx = x1 - margin, vy = y1 - margin, vw = x2 - x1 + 2 * margin, vh = y2 - y1 + 2 * margin;
  double px = kPageSize / std::max(vw, vh);
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out += "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" + Num(std::round(vw * px)) +
         "\" height=\"" + Num(std::round(vh * px)) + "\" viewBox=\"" + Num(vx) + " " + Num(vy) + " " +
         Num(vw) + " " + Num(vh) + "\">\n";
  out += "<rect x=\"" + Num(vx) + "\" y=\"" + Num(vy) + "\" width=\"" + Num(vw) + "\" height=\"" +
         Num(vh) + "\" fill=\"#FFFFFF\"/>\n";
  out += "<g fill=\"none\" stroke-width=\"" + Num(thin_) +
         "\" stroke-linecap=\"butt\" stroke-linejoin=\"miter\" font-family=\"" + kFonts + "\">\n";
  write(std::string_view(out));
  write(std::string_view(body_));
  write(std::string_view("</g>\n</svg>\n"));
}

}  // namespace

std::string DrawingSvg(const Drawing& drawing, const SysVarTable& vars) {
  SvgPainter painter(drawing, vars);
  std::string out;
  painter.Document([&out](std::string_view piece) { out.append(piece); });
  return out;
}

bool SaveSvg(const Drawing& drawing, const SysVarTable& vars, const std::string& linux_path,
             std::string* err) {
  SvgPainter painter(drawing, vars);
  FileReplacement file;
  bool ok = file.Begin(linux_path);
  painter.Document([&](std::string_view piece) { ok = ok && file.Write(piece); });
  if (ok && file.Commit()) return true;
  *err = SaveFailureMessage(linux_path, file.failure());
  return false;
}

}  // namespace vorhost
