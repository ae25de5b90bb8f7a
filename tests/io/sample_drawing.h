// sample_drawing.h - one drawing holding every kind of record the host makes
// and a foreign one, with Big5 names and texts, for the DXF and SVG tests and
// for the sample that ezdxf checks.
#ifndef VORHOST_TESTS_IO_SAMPLE_DRAWING_H
#define VORHOST_TESTS_IO_SAMPLE_DRAWING_H

#include <cmath>
#include <string>
#include <vector>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"

namespace vorhost::sample {

// Big5 texts, each with its UTF-8 form beside it. Two have the trail byte
// 0x5C that a careless writer takes for a backslash.
inline const std::string kPowerBig5 = "\xA5\x5C\xB2\x76\xB3\x5C\xA5\x69";  // 功率許可
inline const std::string kPowerUtf8 = "功率許可";
inline const std::string kLayerBig5 = "\xB9\x71\xA4\x4F";  // 電力
inline const std::string kLayerUtf8 = "電力";
inline const std::string kWorkBig5 = "\xA5\x5C";  // 功
inline const std::string kWorkUtf8 = "功";

inline Entity Record(std::string type, std::string layer, std::vector<Group> groups) {
  Entity e(std::move(type));
  e.layer = std::move(layer);
  e.groups = std::move(groups);
  return e;
}

inline double Degrees(double d) { return d * M_PI / 180; }

// A text-like record (TEXT, ATTRIB, ATTDEF) in the host's group order.
inline Entity Text(std::string type, Point3 at, double height, std::string text, std::string style,
                   double rotation = 0, std::string tag = "", std::string prompt = "") {
  Entity e(type);
  std::vector<Group> groups = {{10, at}, {40, height}, {1, std::move(text)}};
  if (type != "TEXT") {
    groups.push_back({2, std::move(tag)});
    if (type == "ATTDEF") groups.push_back({3, std::move(prompt)});
    groups.push_back({70, short{0}});
    groups.push_back({73, short{0}});
  }
  groups.insert(groups.end(), {{50, rotation}, {41, 1.0}, {51, 0.0}, {7, std::move(style)},
                               {71, short{0}}, {72, short{0}}});
  groups.push_back({type == "TEXT" ? 73 : 74, short{0}});
  e.groups = groups;
  return e;
}

inline Entity Vertex(Point3 at, double w1, double w2, double bulge) {
  return Record("VERTEX", "0", {{10, at}, {40, w1}, {41, w2}, {42, bulge}, {70, short{0}}});
}

inline void AddTables(Drawing* d) {
  Tables& t = d->tables();
  t.linetypes().Put({"DASHED", "__ __ __ __", {{12.7}, {-6.35}}});
  t.linetypes().Put({"DASHDOT", "__ . __ .", {{12.7}, {-6.35}, {0}, {-6.35}}});
  LinetypeElement gas{0, LinetypeElement::Kind::kText, "GAS", "STANDARD", 2.54, 0, -2.54, -1.27};
  t.linetypes().Put({"GAS_LINE", "Gas line ----GAS----", {{12.7}, {-5.08}, gas, {-5.08}}});
  t.layers().Put({"E-POWER", 1, "DASHED", 0});
  t.layers().Put({"E-TEXT", 3, "CONTINUOUS", 0});
  t.layers().Put({kLayerBig5, 5, "DASHDOT", 0});
  t.layers().Put({"FROZEN", 2, "CONTINUOUS", 1});
  t.layers().Put({"OFF", -4, "CONTINUOUS", 0});
  t.styles().Put({"ROMANSAEH", "romans", "ae", 0, 1, 0, 25, 0, 0});
  t.styles().Put({"ROMANSAEV", "romans", "ae", 0, 1, 0, 25, 4, 0});
}

// TAG: a breaker-like mark with two attribute definitions. MARK: a cross
// drawn in BYBLOCK colour; NEST: MARK inserted inside another block.
inline void AddBlocks(Drawing* d) {
  BlockRecord tag{"TAG", {0, 0, 0}, 2, {}};
  tag.entities.push_back(Record("LINE", "0", {{10, Point3{0, 0, 0}}, {11, Point3{0, -30, 0}}}));
  tag.entities.push_back(Record("ARC", "0", {{10, Point3{0, -50, 0}}, {40, 20.0}, {50, Degrees(270)},
                                              {51, Degrees(90)}}));
  tag.entities.push_back(Record("LINE", "0", {{10, Point3{0, -70, 0}}, {11, Point3{0, -100, 0}}}));
  tag.entities.push_back(Text("ATTDEF", {30, -30, 0}, 20, "100AF", "STANDARD", 0, "AF", "Frame size (AF)"));
  tag.entities.push_back(Text("ATTDEF", {30, -60, 0}, 20, "", "STANDARD", 0, "NAME", "Name"));
  d->tables().blocks().Put(std::move(tag));

  BlockRecord mark{"MARK", {5, 5, 0}, 0, {}};
  Entity a = Record("LINE", "0", {{10, Point3{0, 0, 0}}, {11, Point3{10, 10, 0}}});
  a.color = kColorByBlock;
  Entity b = Record("LINE", "0", {{10, Point3{0, 10, 0}}, {11, Point3{10, 0, 0}}});
  b.color = kColorByBlock;
  b.linetype = "BYBLOCK";
  mark.entities = {a, b};
  d->tables().blocks().Put(std::move(mark));

  BlockRecord nest{"NEST", {0, 0, 0}, 0, {}};
  Entity inner = Record("INSERT", "0", {{2, std::string("MARK")}, {10, Point3{20, 0, 0}},
                                        {41, 1.0}, {42, 1.0}, {43, 1.0}, {50, 0.0}});
  inner.color = kColorByBlock;  // MARK's BYBLOCK lines take NEST's reference's colour
  nest.entities.push_back(inner);
  nest.entities.push_back(Record("CIRCLE", "E-TEXT", {{10, Point3{0, 0, 0}}, {40, 5.0}}));
  d->tables().blocks().Put(std::move(nest));
}

inline void AddPolylines(Drawing* d) {
  d->Append(Record("POLYLINE", "0", {{66, short{1}}, {10, Point3{0, 0, 0}}, {70, short{0}}, {40, 0.0}, {41, 0.0}}));
  d->Append(Vertex({0, 100, 0}, 0, 6, 0));
  d->Append(Vertex({60, 100, 0}, 3, 3, 1));
  d->Append(Vertex({120, 100, 0}, 2, 0, 0));
  d->Append(Vertex({160, 140, 0}, 0, 0, 0));
  d->Append(Record("SEQEND", "0", {}));
  d->Append(Record("POLYLINE", "E-POWER", {{66, short{1}}, {10, Point3{0, 0, 0}}, {70, short{1}}, {40, 4.0}, {41, 4.0}}));
  for (Point3 p : {Point3{200, 100, 0}, Point3{260, 100, 0}, Point3{260, 150, 0}}) d->Append(Vertex(p, 4, 4, 0));
  d->Append(Record("SEQEND", "E-POWER", {}));
  d->Append(Record("LWPOLYLINE", "E-TEXT",
                   {{90, 3L}, {70, short{0}}, {10, Point3{0, -200, 0}}, {40, 0.0}, {41, 0.0}, {42, 0.5},
                    {10, Point3{80, -200, 0}}, {40, 0.0}, {41, 0.0}, {42, 0.0},
                    {10, Point3{80, -260, 0}}, {40, 0.0}, {41, 0.0}, {42, 0.0}}));
}

inline void AddTexts(Drawing* d) {
  Entity h = Text("TEXT", {0, -60, 0}, 25, "Total: 100VA %%c25 %%d %%p", "ROMANSAEH");
  h.layer = "E-TEXT";
  d->Append(h);
  Entity v = Text("TEXT", {320, 150, 0}, 25, kPowerBig5, "ROMANSAEV", Degrees(270));
  v.layer = kLayerBig5;
  d->Append(v);
  // Middle-justified: the host keeps the given point in 11, before 73.
  Entity m = Text("TEXT", {187, -136, 0}, 25, "M", "ROMANSAEH");
  m.Set(72, short{4});
  std::vector<Group> groups = m.groups.ToVector();
  groups.insert(groups.end() - 1, Group{11, Point3{200, -130, 0}});
  m.groups = groups;
  d->Append(m);
}

inline void AddInserts(Drawing* d) {
  d->Append(Record("INSERT", "0", {{66, short{1}}, {2, std::string("TAG")}, {10, Point3{400, 100, 0}},
                                   {41, 1.0}, {42, 1.0}, {43, 1.0}, {50, 0.0}}));
  d->Append(Text("ATTRIB", {430, 70, 0}, 20, "100AF", "STANDARD", 0, "AF"));
  d->Append(Text("ATTRIB", {430, 40, 0}, 20, kWorkBig5, "STANDARD", 0, "NAME"));
  d->Append(Record("SEQEND", "0", {}));
  Entity nest = Record("INSERT", "E-POWER", {{2, std::string("NEST")}, {10, Point3{400, -100, 0}},
                                             {41, 2.0}, {42, 2.0}, {43, 1.0}, {50, Degrees(90)}});
  nest.color = 6;
  nest.linetype = "CONTINUOUS";
  d->Append(nest);
}

// The whole sample: model space from (0,-260) to about (480,150).
inline void Build(Drawing* d, SysVarTable* vars) {
  AddTables(d);
  AddBlocks(d);
  d->Append(Record("LINE", "0", {{10, Point3{0, 0, 0}}, {11, Point3{150, 0, 0}}}));
  d->Append(Record("LINE", "E-POWER", {{10, Point3{0, 20, 0}}, {11, Point3{150, 20, 0}}}));
  Entity circle = Record("CIRCLE", "0", {{10, Point3{200, 30, 0}}, {40, 20.0}});
  circle.color = 4;
  d->Append(circle);
  d->Append(Record("ARC", kLayerBig5, {{10, Point3{300, 30, 0}}, {40, 30.0}, {50, Degrees(30)}, {51, Degrees(150)}}));
  AddPolylines(d);
  AddTexts(d);
  AddInserts(d);
  d->Append(Record("LINE", "FROZEN", {{10, Point3{0, -300, 0}}, {11, Point3{900, -300, 0}}}));
  d->Append(Record("LINE", "OFF", {{10, Point3{0, -310, 0}}, {11, Point3{900, -310, 0}}}));
  uint64_t gone = d->Append(Record("LINE", "0", {{10, Point3{-500, 0, 0}}, {11, Point3{-400, 0, 0}}}));
  d->Erase(gone);
  vars->Force("LTSCALE", 2.0);
  vars->Force("TEXTSIZE", 25.0);
  vars->Force("TEXTSTYLE", std::string("ROMANSAEH"));
  vars->Force("CLAYER", std::string("E-POWER"));
  vars->Force("CELTYPE", std::string("DASHED"));
  vars->Force("LIMMAX", Point3{840, 594, 0});
}

}  // namespace vorhost::sample

#endif
