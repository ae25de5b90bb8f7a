// svg_test.cpp - the SVG picture of model space: what is drawn and how,
// arcs' directions, colours, dash patterns and vertical texts.
#include "emulator/io/svg.h"

#include <gtest/gtest.h>

#include "emulator/io/aci.h"
#include "io/sample_drawing.h"

namespace vorhost {
namespace {

using sample::Record;

size_t Count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) n++;
  return n;
}

// The first element of the picture that contains needle, whole.
std::string Element(const std::string& svg, const std::string& needle) {
  size_t at = svg.find(needle);
  if (at == std::string::npos) return "<none>";
  size_t start = svg.rfind('<', at);
  while (svg.compare(start, 2, "</") == 0 || svg.compare(start, 6, "<tspan") == 0) start = svg.rfind('<', start - 1);
  return svg.substr(start, svg.find('\n', at) - start);
}

Entity Line(Point3 a, Point3 b, std::string layer = "0") {
  return Record("LINE", std::move(layer), {{10, a}, {11, b}});
}

TEST(SvgTest, SampleShowsWhatIsVisible) {
  Drawing d;
  SysVarTable vars;
  sample::Build(&d, &vars);
  std::string svg = DrawingSvg(d, vars);

  EXPECT_EQ(svg.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg ", 0), 0u);
  EXPECT_EQ(svg.substr(svg.size() - 12), "</g>\n</svg>\n");
  EXPECT_EQ(Count(svg, "<text"), Count(svg, "</text>"));
  EXPECT_NE(svg.find(">Total: 100VA \u2300" "25 \u00B0 \u00B1</text>"), std::string::npos);
  for (const char* shown : {">功</tspan>", ">率</tspan>", ">100AF<", ">功<"}) EXPECT_NE(svg.find(shown), std::string::npos) << shown;
  EXPECT_EQ(svg.find("Frame size"), std::string::npos) << "definitions inside blocks are not drawn";
  EXPECT_EQ(svg.find("900"), std::string::npos) << "lines on frozen and off layers";

  // y is negated; the layer's DASHED at LTSCALE 2, in the layer's red.
  EXPECT_EQ(Element(svg, "M0,-20 L150,-20"), "<path d=\"M0,-20 L150,-20\" stroke=\"#FF0000\" stroke-dasharray=\"25.4,12.7\"/>");
  EXPECT_NE(Element(svg, "M0,-20 L150,-20"), "<none>");
  // MARK's BYBLOCK lines through NEST (scaled 2, turned 90 degrees), whose
  // reference is magenta; as they are on layer 0, their BYLAYER linetype is
  // that of the reference's layer. NEST's circle keeps its own layer's green.
  EXPECT_EQ(Element(svg, "M410,70 L390,50"),
            "<path d=\"M410,70 L390,50\" stroke=\"#FF00FF\" stroke-dasharray=\"25.4,12.7\"/>");
  EXPECT_EQ(Element(svg, "<circle cx=\"400\" cy=\"100\""), "<circle cx=\"400\" cy=\"100\" r=\"10\" stroke=\"#00FF00\"/>");
  // Constant width as a stroke, a tapering segment as a filled outline.
  EXPECT_NE(svg.find("Z\" stroke=\"#FF0000\" stroke-width=\"4\""), std::string::npos);
  EXPECT_EQ(Element(svg, "M0,-100 L60,-103"), "<path d=\"M0,-100 L60,-103 L60,-97 L0,-100 Z\" fill=\"#000000\" stroke=\"none\"/>");
  EXPECT_NE(Element(svg, ">M<").find("text-anchor=\"middle\""), std::string::npos);
  EXPECT_NE(Element(svg, ">M<").find("matrix(1 0 0 1 200 130)"), std::string::npos) << "hung on point 11";
}

TEST(SvgTest, ArcsTurnCounterClockwiseUnlessMirrored) {
  Drawing d;
  d.Append(Record("ARC", "0", {{10, Point3{0, 0, 0}}, {40, 10.0}, {50, 0.0}, {51, M_PI / 2}}));
  d.tables().blocks().Put({"QUARTER", {0, 0, 0}, 0, {d.entities()[0]}});
  d.Append(Record("INSERT", "0", {{2, std::string("QUARTER")}, {10, Point3{100, 0, 0}}, {41, -1.0},
                                  {42, 1.0}, {43, 1.0}, {50, 0.0}}));
  d.Append(Record("POLYLINE", "0", {{66, short{1}}, {10, Point3{0, 0, 0}}, {70, short{0}}, {40, 0.0}, {41, 0.0}}));
  d.Append(sample::Vertex({0, -20, 0}, 0, 0, -1));
  d.Append(sample::Vertex({20, -20, 0}, 0, 0, 0));
  d.Append(Record("SEQEND", "0", {}));
  std::string svg = DrawingSvg(d, SysVarTable());
  EXPECT_NE(svg.find("d=\"M10,0 A10,10 0 0,0 0,-10\""), std::string::npos) << svg;
  EXPECT_NE(svg.find("d=\"M90,0 A10,10 0 0,1 100,-10\""), std::string::npos) << "mirrored by the reference";
  EXPECT_NE(svg.find("d=\"M0,20 A10,10 0 0,1 20,20\""), std::string::npos) << "a clockwise bulge";
}

TEST(SvgTest, ColoursFollowTheIndex) {
  struct Case {
    int index;
    const char* rgb;
  } cases[] = {{1, "#FF0000"},  {2, "#FFFF00"},  {5, "#0000FF"},  {7, "#FFFFFF"},  {8, "#808080"},
               {10, "#FF0000"}, {11, "#FF7F7F"}, {12, "#A50000"}, {19, "#261313"}, {21, "#FF9F7F"},
               {50, "#FFFF00"}, {90, "#00FF00"}, {170, "#0000FF"}, {249, "#261317"}, {250, "#333333"},
               {255, "#FFFFFF"}, {0, "#FFFFFF"}, {256, "#FFFFFF"}};
  for (const Case& c : cases) EXPECT_EQ(HexColor(AciRgb(c.index)), c.rgb) << c.index;
}

TEST(SvgTest, DashesStartWithADashAndAlternate) {
  Drawing d;
  d.tables().linetypes().Put({"ODD", "", {{-2}, {0}, {-2}, {5}, {3}}});
  d.tables().linetypes().Put({"TEXTED", "", {{4}, {0, LinetypeElement::Kind::kText, "G"}, {-1}}});
  Entity odd = Line({0, 0, 0}, {1600, 0, 0});  // the frame makes the thin width 1
  odd.linetype = "ODD";
  d.Append(odd);
  Entity texted = Line({0, 10, 0}, {100, 10, 0});
  texted.linetype = "TEXTED";
  d.Append(texted);
  SysVarTable vars;
  vars.Force("LTSCALE", 1.0);
  std::string svg = DrawingSvg(d, vars);
  EXPECT_NE(svg.find("stroke-dasharray=\"0,2,2,2,8,0\""), std::string::npos) << "a dot is a short dash";
  EXPECT_NE(svg.find("stroke-dasharray=\"4,1\""), std::string::npos) << "the text takes no length";
  // The text is written where its dash ends, once per pattern: 20 times
  // along 100 units of a pattern 5 long.
  size_t texts = 0;
  for (size_t at = svg.find(">G</text>"); at != std::string::npos; at = svg.find(">G</text>", at + 1)) texts++;
  EXPECT_EQ(texts, 20u);
  EXPECT_NE(svg.find("<text x=\"4\" y=\"-10\""), std::string::npos);
}

TEST(SvgTest, VerticalTextIsAColumnGoingDown) {
  Drawing d;
  d.tables().styles().Put({"V", "romans", "ae", 0, 1, 0, 2.5, 4, 0});
  d.Append(sample::Text("TEXT", {10, 20, 0}, 5, "A" + sample::kWorkBig5, "V", M_PI * 1.5));
  std::string svg = DrawingSvg(d, SysVarTable());
  EXPECT_NE(svg.find("<text transform=\"matrix(1 0 0 1 10 -20)\" fill=\"#000000\" font-size=\"5\" "
                     "text-anchor=\"middle\"><tspan x=\"0\" y=\"4.4\">A</tspan><tspan x=\"0\" "
                     "y=\"9.4\">功</tspan></text>"),
            std::string::npos)
      << svg;
}

TEST(SvgTest, HiddenLayersHideWhatIsOnThem) {
  Drawing d;
  d.tables().layers().Put({"OFF", -1, "CONTINUOUS", 0});
  d.tables().layers().Put({"ICE", 1, "CONTINUOUS", 1});
  d.tables().blocks().Put({"B", {0, 0, 0}, 0, {Line({0, 0, 0}, {1, 0, 0}), Line({0, 5, 0}, {1, 5, 0}, "SHOWN")}});
  auto insert = [&](const char* layer, double y) {
    d.Append(Record("INSERT", layer, {{2, std::string("B")}, {10, Point3{0, y, 0}}, {41, 1.0}, {42, 1.0},
                                      {43, 1.0}, {50, 0.0}}));
  };
  insert("OFF", 100);  // its layer-0 line is hidden, the other shows
  insert("ICE", 200);  // frozen: nothing
  Entity paper = Line({0, 300, 0}, {1, 300, 0});
  paper.groups.push_back({67, short{1}});
  d.Append(paper);
  std::string svg = DrawingSvg(d, SysVarTable());
  EXPECT_EQ(Count(svg, "<path"), 1u) << svg;
  EXPECT_NE(svg.find("M0,-105 L1,-105"), std::string::npos);
}

// Far points print in exponent form; a block whose points a stack of huge
// scales carries past any double is left out of the picture, which keeps
// a finite frame and never shows "nan" or "inf".
TEST(SvgTest, HugeNumbersStayReadableAndFinite) {
  Drawing d;
  d.Append(Line({-1e99, 0, 0}, {1e99, 1, 0}));
  d.tables().blocks().Put({"DOT", {0, 0, 0}, 0, {Line({1e99, 1e99, 0}, {-1e99, 0, 0})}});
  std::string previous = "DOT";
  for (int level = 0; level < 4; level++) {
    std::string name = "UP" + std::to_string(level);
    d.tables().blocks().Put({name, {0, 0, 0}, 0,
                             {Record("INSERT", "0", {{2, previous}, {10, Point3{0, 0, 0}}, {41, 1e99},
                                                     {42, 1e99}, {43, 1.0}, {50, 0.0}})}});
    previous = name;
  }
  d.Append(Record("INSERT", "0", {{2, previous}, {10, Point3{0, 0, 0}}, {41, 1.0}, {42, 1.0}, {43, 1.0}, {50, 0.0}}));
  d.Append(Record("ARC", "0", {{10, Point3{0, 0, 0}}, {40, 1.0}, {50, 1e20}, {51, -1e20}}));
  std::string svg = DrawingSvg(d, SysVarTable());
  EXPECT_EQ(Count(svg, "<path"), 2u) << "the line and the arc, not the block" << svg;
  EXPECT_NE(svg.find("<path d=\"M-1e+99,0 L1e+99,-1\""), std::string::npos) << svg;
  for (const char* word : {"nan", "inf", "0000000000"}) EXPECT_EQ(svg.find(word), std::string::npos) << word;
  EXPECT_NE(svg.find("viewBox=\"-1.1e+99 "), std::string::npos) << svg.substr(0, 300);
}

}  // namespace
}  // namespace vorhost
