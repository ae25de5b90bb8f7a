// make_blocks.cpp - writes the host's symbol blocks (resources/*.DXF): the
// breaker, starters, shunt trip and load symbols that panel diagrams insert.
//
// usage: make_blocks DIR
//
// Each symbol is a drawing whose model space is the block, drawn on layer 0
// in BYLAYER colour and linetype (so it takes the reference's), hanging
// down from its insertion point at the origin ($INSBASE 0,0,0) by the depth
// the panel diagram leaves for it. Attribute definitions come in the order
// the host asks for them; their texts are 20 high, beside the symbol.
#include <cmath>
#include <iostream>
#include <string>
#include <vector>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"
#include "emulator/drawing/layout.h"
#include "emulator/drawing/textmetric.h"
#include "emulator/io/dxf.h"

namespace vorhost {
namespace {

constexpr double kTextHeight = 20;

double Radians(double degrees) { return degrees * M_PI / 180; }

// Model space of one symbol under construction.
class Symbol {
 public:
  void Line(Point3 a, Point3 b) { Add("LINE", {{10, a}, {11, b}}); }
  void Arc(Point3 c, double r, double from, double to) {
    Add("ARC", {{10, c}, {40, r}, {50, Radians(from)}, {51, Radians(to)}});
  }
  void Circle(Point3 c, double r) { Add("CIRCLE", {{10, c}, {40, r}}); }
  void Polyline(const std::vector<Point3>& points, bool closed) {
    Add("POLYLINE", {{66, short{1}}, {10, Point3{0, 0, 0}}, {70, short(closed ? 1 : 0)}, {40, 0.0}, {41, 0.0}});
    for (const Point3& p : points) Add("VERTEX", {{10, p}, {40, 0.0}, {41, 0.0}, {42, 0.0}, {70, short{0}}});
    Add("SEQEND", {});
  }
  // An attribute definition whose text reads from at (h = 0) or ends there
  // (h = 2, right-justified), on the baseline.
  void Attdef(Point3 at, const std::string& tag, const std::string& prompt, const std::string& value,
              short h = 0) {
    Point3 insertion = at;
    if (h != 0) insertion = JustifiedInsertion(MeasureText(value, kTextHeight, 1, false), at, h, 0, 0);
    Add("ATTDEF", LayOut("ATTDEF", {{10, insertion}, {40, kTextHeight}, {1, value}, {2, tag},
                                    {3, prompt}, {72, h}, {11, at}}));
  }
  Drawing& drawing() { return drawing_; }

 private:
  void Add(const char* type, GroupList groups) {
    Entity e(type);
    e.groups = std::move(groups);
    drawing_.Append(std::move(e));
  }
  Drawing drawing_;
};

// Molded-case circuit breaker, 100 high: lead-in, the contact arc with the
// breaker's cross on its fixed contact, lead-out; frame, trip, poles and
// interrupting capacity to the right.
void Breaker(Symbol* s) {
  s->Line({0, 0, 0}, {0, -30, 0});
  s->Arc({0, -50, 0}, 20, 270, 90);
  s->Line({-6, -64, 0}, {6, -76, 0});
  s->Line({-6, -76, 0}, {6, -64, 0});
  s->Line({0, -70, 0}, {0, -100, 0});
  s->Attdef({25, -20, 0}, "AF", "Frame size (AF)", "100AF");
  s->Attdef({25, -45, 0}, "AT", "Trip rating (AT)", "50AT");
  s->Attdef({25, -70, 0}, "P", "Number of poles (P)", "3P");
  s->Attdef({25, -95, 0}, "IC", "Interrupting capacity (IC)", "25KA");
}

// Magnetic starter, 60 high: the contactor's open contact with its arc,
// then the thermal overload relay as a box with its heater bend.
void MagneticStarter(Symbol* s) {
  s->Line({0, 0, 0}, {0, -10, 0});
  s->Arc({0, -14, 0}, 4, 90, 270);
  s->Line({0, -32, 0}, {-14, -12, 0});
  s->Line({0, -32, 0}, {0, -36, 0});
  s->Polyline({{-10, -36, 0}, {10, -36, 0}, {10, -52, 0}, {-10, -52, 0}}, true);
  s->Polyline({{0, -36, 0}, {0, -40, 0}, {-5, -40, 0}, {-5, -48, 0}, {0, -48, 0}, {0, -52, 0}}, false);
  s->Line({0, -52, 0}, {0, -60, 0});
  s->Attdef({20, -40, 0}, "LABEL", "Magnetic starter label", "MS");
}

// Star-delta starter, 60 high: a box holding a star and a delta.
void StarDeltaStarter(Symbol* s) {
  s->Line({0, 0, 0}, {0, -10, 0});
  s->Polyline({{-22, -10, 0}, {22, -10, 0}, {22, -50, 0}, {-22, -50, 0}}, true);
  for (double a : {90.0, 210.0, 330.0})
    s->Line({-10, -30, 0}, {-10 + 8 * std::cos(Radians(a)), -30 + 8 * std::sin(Radians(a)), 0});
  s->Polyline({{10, -22, 0}, {3, -35, 0}, {17, -35, 0}}, true);
  s->Line({0, -50, 0}, {0, -60, 0});
  s->Attdef({32, -40, 0}, "LABEL", "Star-delta starter label", "Y-D");
}

// Shunt trip, 30 high, beside the branch above a breaker: its coil to the
// left, tapped from the branch, with its label further left.
void ShuntTrip(Symbol* s) {
  s->Polyline({{-50, 0, 0}, {-28, 0, 0}, {-28, -30, 0}, {-50, -30, 0}}, true);
  s->Line({-28, -15, 0}, {0, -15, 0});
  s->Attdef({-56, -25, 0}, "LABEL", "Shunt trip label", "SHT", 2);
}

void RectangularLoad(Symbol* s) {
  s->Polyline({{-40, 0, 0}, {40, 0, 0}, {40, -60, 0}, {-40, -60, 0}}, true);
}

void RoundLoad(Symbol* s) { s->Circle({0, -30, 0}, 30); }

struct Definition {
  const char* file;
  void (*draw)(Symbol*);
};

constexpr Definition kSymbols[] = {
    {"NFB--.DXF", Breaker},       {"MS--.DXF", MagneticStarter}, {"Y3--.DXF", StarDeltaStarter},
    {"SP--.DXF", ShuntTrip},      {"$RECT.DXF", RectangularLoad}, {"$CIRCLE.DXF", RoundLoad},
};

}  // namespace
}  // namespace vorhost

int main(int argc, char** argv) {
  using namespace vorhost;
  if (argc != 2) {
    std::cerr << "usage: make_blocks DIR\n";
    return 2;
  }
  for (const Definition& d : kSymbols) {
    Symbol symbol;
    d.draw(&symbol);
    SysVarTable vars;
    vars.Force("INSBASE", Point3{0, 0, 0});
    vars.Force("TEXTSIZE", kTextHeight);
    std::string err;
    if (!SaveDxf(symbol.drawing(), vars, std::string(argv[1]) + "/" + d.file, &err)) {
      std::cerr << err << "\n";
      return 1;
    }
  }
  return 0;
}
