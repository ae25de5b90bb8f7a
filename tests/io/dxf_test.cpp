// dxf_test.cpp - saving and opening DXF files: the sample drawing through a
// save and an open, what the file holds, newer files and code pages, broken
// files, and the text dump the comparisons rest on.
#include "emulator/io/dxf.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "emulator/io/dump.h"
#include "io/sample_drawing.h"
#include "support/files.h"

namespace vorhost {
namespace {

using Pairs = std::vector<std::pair<int, std::string>>;

class DxfTest : public ::testing::Test {
 protected:
  void SetUp() override {
    char tmpl[] = "/tmp/dxf_test.XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir_ = tmpl;
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string Path(const std::string& name) const { return dir_ + "/" + name; }

  std::string Save(const Drawing& d, const SysVarTable& vars, const std::string& name = "a.dxf") {
    std::string err;
    EXPECT_TRUE(SaveDxf(d, vars, Path(name), &err)) << err;
    return Read(name);
  }
  std::string Read(const std::string& name) const { return testing::FileBytes(Path(name)); }
  // Opens a file holding text; the error, or "" on success.
  std::string OpenText(const std::string& text, Drawing* d, SysVarTable* vars = nullptr) {
    std::ofstream(Path("in.dxf"), std::ios::binary) << text;
    std::string err;
    return OpenDxf(Path("in.dxf"), d, vars, &err) ? "" : err;
  }

  // The records of a file: each its group 0 value and its groups.
  static std::vector<std::pair<std::string, Pairs>> Records(const std::string& file) {
    std::istringstream in(file);
    std::vector<std::pair<std::string, Pairs>> out;
    std::string code, value;
    while (std::getline(in, code) && std::getline(in, value)) {
      int c = std::stoi(code);
      if (c == 0) out.push_back({value, {}});
      else if (!out.empty()) out.back().second.push_back({c, value});
    }
    return out;
  }
  static Pairs Find(const std::string& file, const std::string& type, int nth = 0) {
    for (const auto& [t, groups] : Records(file))
      if (t == type && nth-- == 0) return groups;
    return {};
  }
  static std::string Value(const Pairs& groups, int code) {
    for (const auto& [c, v] : groups)
      if (c == code) return v;
    return "<none>";
  }

  std::string dir_;
};

// What an R12 file can keep of the sample: complex linetypes lose their
// texts and shapes.
std::string DumpAsR12(const Drawing& d) {
  std::string dump = DumpDrawing(d);
  size_t at = dump.find(" 0[text ");
  while (at != std::string::npos) {
    dump.erase(at, dump.find(']', at) + 1 - at);
    at = dump.find(" 0[text ");
  }
  return dump;
}

TEST_F(DxfTest, SampleSurvivesSaveAndOpen) {
  Drawing original;
  SysVarTable vars;
  sample::Build(&original, &vars);
  std::string file = Save(original, vars);

  Drawing opened;
  SysVarTable opened_vars;
  ASSERT_EQ(OpenText(file, &opened, &opened_vars), "");
  EXPECT_EQ(DumpDrawing(opened), DumpAsR12(original));

  std::vector<std::pair<std::string, uint32_t>> want, got;
  for (const Entity& e : original.entities())
    if (!e.erased) want.push_back({e.type, e.handle});
  for (const Entity& e : opened.entities()) {
    got.push_back({e.type, e.handle});
    EXPECT_LT(e.handle, opened.handle_seed());
    if (e.type == "TEXT" && e.Text(7) == "ROMANSAEV") {
      EXPECT_EQ(e.Text(1), sample::kPowerBig5);
    }
  }
  EXPECT_EQ(got, want);

  for (const char* name : {"LTSCALE", "TEXTSIZE", "TEXTSTYLE", "CLAYER", "CELTYPE", "LIMMAX"}) {
    SysValue a, b;
    ASSERT_TRUE(vars.Get(name, &a) && opened_vars.Get(name, &b));
    EXPECT_EQ(FormatSysValue(a), FormatSysValue(b)) << name;
  }
  // A second save of what was read writes the same bytes.
  EXPECT_EQ(Save(opened, opened_vars, "b.dxf"), file);
}

TEST_F(DxfTest, FileHoldsR12WithBig5BytesAndDegrees) {
  Drawing d;
  SysVarTable vars;
  sample::Build(&d, &vars);
  std::string file = Save(d, vars);

  EXPECT_NE(file.find("$ACADVER\n  1\nAC1009\n"), std::string::npos);
  EXPECT_NE(file.find("$DWGCODEPAGE\n  3\nANSI_950\n"), std::string::npos);
  EXPECT_NE(file.find("\n  1\n" + sample::kPowerBig5 + "\n"), std::string::npos) << "Big5 bytes as they are";
  EXPECT_EQ(file.find("-500.0"), std::string::npos) << "the erased line";

  Pairs arc = Find(file, "ARC", 1);  // the first is in block TAG
  EXPECT_EQ(Value(arc, 50), "30.0");
  EXPECT_EQ(Value(arc, 51), "150.0");
  EXPECT_EQ(Value(arc, 6), "<none>") << "BYLAYER has no group 6";
  EXPECT_EQ(Value(arc, 62), "<none>");
  EXPECT_EQ(Value(Find(file, "CIRCLE", 1), 62), "4");
  EXPECT_EQ(Value(Find(file, "TEXT", 1), 50), "270.0");
  EXPECT_EQ(Value(Find(file, "INSERT", 2), 6), "CONTINUOUS");

  Pairs lwpolyline = Find(file, "LWPOLYLINE");
  EXPECT_EQ(Value(lwpolyline, 100), "AcDbEntity");
  EXPECT_EQ(Value(lwpolyline, 30), "<none>") << "2D vertices";
  EXPECT_EQ(Value(Find(file, "LINE"), 31), "0.0") << "R12 records keep z";

  Pairs gas;
  for (int i = 0; (gas = Find(file, "LTYPE", i)).size(); i++)
    if (Value(gas, 2) == "GAS_LINE") break;
  EXPECT_EQ(Value(gas, 73), "3") << "the text element is not an R12 element";
  Pairs style = Find(file, "STYLE", 2);
  EXPECT_EQ(Value(style, 2) + Value(style, 70) + Value(style, 4), "ROMANSAEV4ae");
}

TEST_F(DxfTest, BlockFlagAndHandlesAreMadeConsistent) {
  Drawing d;
  d.tables().blocks().Put({"WITH", {0, 0, 0}, 0, {sample::Text("ATTDEF", {0, 0, 0}, 2, "", "STANDARD", 0, "T", "P")}});
  Entity line("LINE");
  line.groups = {{10, Point3{0, 0, 0}}, {11, Point3{1, 0, 0}}};
  line.handle = 0x20;  // the same as the model's first record below
  d.tables().blocks().Put({"WITHOUT", {0, 0, 0}, 2, {line}});
  d.Append(line);
  std::string file = Save(d, SysVarTable());

  EXPECT_EQ(Value(Find(file, "BLOCK", 0), 70), "2");
  EXPECT_EQ(Value(Find(file, "BLOCK", 1), 70), "0");
  std::set<std::string> handles;
  for (const auto& [type, groups] : Records(file))
    if (Value(groups, 5) != "<none>") {
      EXPECT_TRUE(handles.insert(Value(groups, 5)).second) << type;
    }
  EXPECT_EQ(Value(Find(file, "LINE", 1), 5), "20") << "model space keeps its handles";

  // Handles far past the number of records, as a file may bring, are kept
  // apart the same way, and the seed goes above them.
  Drawing far;
  Entity high = line;
  high.handle = 0x7FFFFFF0;
  far.tables().blocks().Put({"HIGH", {0, 0, 0}, 0, {high}});
  far.Append(high);
  far.Append(line);
  ASSERT_NE(far.FindByHandle(0x7FFFFFF0), nullptr);
  EXPECT_EQ(far.FindByHandle(0x7FFFFFF0)->type, "LINE");
  std::string far_file = Save(far, SysVarTable(), "far.dxf");
  handles.clear();
  for (const auto& [type, groups] : Records(far_file))
    if (Value(groups, 5) != "<none>") {
      EXPECT_TRUE(handles.insert(Value(groups, 5)).second) << type;
    }
  EXPECT_EQ(Value(Find(far_file, "LINE", 0), 5), "7FFFFFF1") << "the block's record gives way";
  EXPECT_EQ(Value(Find(far_file, "LINE", 1), 5), "7FFFFFF0");
  EXPECT_NE(far_file.find("$HANDSEED\n  5\n7FFFFFF2\n"), std::string::npos);
}

TEST_F(DxfTest, AnglesComeBackExactlyWhereDegreesAllow) {
  Drawing d;
  for (double deg : {0.0, 30.0, 45.0, 90.0, 123.456, 270.0, 359.9}) {
    Entity arc("ARC");
    arc.groups = {{10, Point3{0, 0, 0}}, {40, 1.0}, {50, sample::Degrees(deg)}, {51, 0.1234567890123}};
    d.Append(arc);
  }
  std::string file = Save(d, SysVarTable());
  EXPECT_EQ(Value(Find(file, "ARC", 4), 50), "123.456");
  Drawing opened;
  ASSERT_EQ(OpenText(file, &opened), "");
  for (size_t i = 0; i < d.entities().size(); i++) {
    EXPECT_EQ(opened.entities()[i].Real(50), d.entities()[i].Real(50)) << i;
    EXPECT_NEAR(opened.entities()[i].Real(51), 0.1234567890123, 1e-15);
  }
}

TEST_F(DxfTest, ControlCharactersTravelAsCaretEscapes) {
  Drawing d;
  d.Append(sample::Text("TEXT", {0, 0, 0}, 1, "a\nb^Jc^ d^", "STANDARD"));
  d.Append(sample::Text("TEXT", {0, 0, 0}, 1, "\xA5\x5EJ", "STANDARD"));  // 0x5E, a trail byte here
  std::string file = Save(d, SysVarTable());
  EXPECT_EQ(Value(Find(file, "TEXT"), 1), "a^Jb^ Jc^  d^");
  EXPECT_EQ(Value(Find(file, "TEXT", 1), 1), "\xA5\x5EJ");
  Drawing opened;
  ASSERT_EQ(OpenText(file, &opened), "");
  EXPECT_EQ(opened.entities()[0].Text(1), "a\nb^Jc^ d^");
  EXPECT_EQ(opened.entities()[1].Text(1), "\xA5\x5EJ");
}

// Each real as the shortest text that reads back as it, with a point or an
// exponent; no "-0"; codes right-aligned in three columns.
TEST_F(DxfTest, RealsAreTheShortestTextThatReadsBack) {
  const std::pair<double, std::string> cases[] = {
      {0.0, "0.0"},
      {-0.0, "0.0"},
      {1.0, "1.0"},
      {-3.0, "-3.0"},
      {0.1, "0.1"},
      {0.1 + 0.2, "0.30000000000000004"},
      {1.0 / 3, "0.3333333333333333"},
      {-2.0 / 3, "-0.6666666666666666"},
      {std::nextafter(1.0, 2.0), "1.0000000000000002"},
      {1e-7, "1e-07"},
      {-1234.5, "-1234.5"},
      {123456789012345.0, "123456789012345.0"},
      {1e15, "1e+15"},
      {1e21, "1e+21"},
      {2.5e-300, "2.5e-300"},
      {5e-324, "5e-324"},
      {-1.7976931348623157e308, "-1.7976931348623157e+308"},
  };
  Drawing d;
  for (const auto& [x, text] : cases) {
    Entity line("LINE");
    line.groups = {{10, Point3{x, 0, 0}}, {11, Point3{0, 0, 0}}};
    d.Append(line);
  }
  std::string file = Save(d, SysVarTable());
  int nth = 0;
  for (const auto& [x, text] : cases) EXPECT_EQ(Value(Find(file, "LINE", nth++), 10), text) << x;
  EXPECT_NE(file.find("\n  0\nLINE\n  5\n"), std::string::npos);
  EXPECT_NE(file.find("\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"), std::string::npos);
}

// The file goes to the disk a block at a time: lines across the blocks'
// edges, and a text longer than a block, arrive whole and in order.
TEST_F(DxfTest, LinesCrossTheWritersBlocksWhole) {
  Drawing d;
  for (int i = 0; i < 5000; i++) {
    Entity line("LINE");
    line.groups = {{10, Point3{i + 0.5, -i / 3.0, 0}}, {11, Point3{i * 1e6, 0, 0}}};
    d.Append(line);
    if (i == 2500) d.Append(sample::Text("TEXT", {0, 0, 0}, 1, std::string(100000, 'x'), "STANDARD"));
  }
  std::string file = Save(d, SysVarTable());
  std::string made;
  ASSERT_TRUE(DrawingDxf(d, SysVarTable(), &made));
  EXPECT_EQ(file, made);
  EXPECT_EQ(Value(Find(file, "TEXT"), 1), std::string(100000, 'x'));
  EXPECT_EQ(Value(Find(file, "LINE", 4999), 10), "4999.5");
  EXPECT_EQ(Value(Find(file, "LINE", 4999), 11), "4.999e+09");
  size_t lines = 0;
  for (const auto& [type, groups] : Records(file)) lines += type == "LINE";
  EXPECT_EQ(lines, 5000u);
  EXPECT_EQ(file.substr(file.size() - 8), "  0\nEOF\n");
}

// The symbol blocks the panel diagrams insert: what INSERT finds in them.
TEST_F(DxfTest, ResourceBlocksHoldTheirAttributesInOrder) {
  struct Case {
    const char* file;
    std::vector<std::string> tags;
  } cases[] = {{"NFB--", {"AF", "AT", "P", "IC"}}, {"MS--", {"LABEL"}}, {"Y3--", {"LABEL"}},
               {"SP--", {"LABEL"}}, {"$RECT", {}}, {"$CIRCLE", {}}};
  for (const Case& c : cases) {
    Drawing d;
    SysVarTable vars;
    std::string err;
    ASSERT_TRUE(OpenDxf(std::string(VORHOST_RESOURCES) + "/" + c.file + ".DXF", &d, &vars, &err)) << err;
    std::vector<std::string> tags;
    for (const Entity& e : d.entities()) {
      if (e.type == "ATTDEF") tags.push_back(e.Text(2));
      EXPECT_EQ(e.layer, "0") << c.file;
    }
    EXPECT_EQ(tags, c.tags) << c.file;
    SysValue base;
    ASSERT_TRUE(vars.Get("INSBASE", &base));
    EXPECT_EQ(FormatSysValue(base), "0.0000,0.0000,0.0000");
  }
}

const char kR2000[] =
    "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n  9\n$DWGCODEPAGE\n  3\nANSI_950\n"
    "  9\n$HANDSEED\n  5\n100\n  9\n$CLAYER\n  8\nWALL\n  9\n$LTSCALE\n 40\n50.0\n  0\nENDSEC\n"
    "  0\nSECTION\n  2\nCLASSES\n  0\nCLASS\n  1\nX\n  0\nENDSEC\n"
    "  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n  5\n2\n330\n0\n100\nAcDbSymbolTable\n 70\n1\n"
    "  0\nLAYER\n  5\n10\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nWALL\n"
    " 70\n0\n 62\n-3\n  6\nCONTINUOUS\n370\n-3\n  0\nENDTAB\n"
    "  0\nTABLE\n  2\nLTYPE\n 70\n1\n  0\nLTYPE\n  5\n14\n  2\nGAS\n 70\n0\n  3\nGas\n 72\n65\n 73\n2\n"
    " 40\n1.0\n 49\n0.5\n 74\n0\n 49\n-0.5\n 74\n2\n 75\n0\n340\n11\n 46\n0.1\n 50\n1.5707963267948966\n"
    " 44\n-0.1\n 45\n-0.05\n  9\nGAS\n  0\nENDTAB\n"
    "  0\nTABLE\n  2\nSTYLE\n 70\n1\n  0\nSTYLE\n  5\n11\n  2\nSTANDARD\n 70\n0\n 40\n0.0\n 41\n1.0\n"
    " 50\n15.0\n 71\n0\n 42\n2.5\n  3\ntxt\n  4\n\n  0\nENDTAB\n  0\nENDSEC\n"
    "  0\nSECTION\n  2\nBLOCKS\n  0\nBLOCK\n  5\n20\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockBegin\n"
    "  2\n*Model_Space\n 70\n0\n 10\n0.0\n 20\n0.0\n 30\n0.0\n  3\n*Model_Space\n  1\n\n"
    "  0\nENDBLK\n  5\n21\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockEnd\n  0\nENDSEC\n"
    "  0\nSECTION\n  2\nENTITIES\n"
    "  0\nLINE\n  5\n2A\n102\n{ACAD_REACTORS\n330\n99\n102\n}\n330\n1F\n100\nAcDbEntity\n  8\nWALL\n"
    "100\nAcDbLine\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 11\n3.0\n 21\n4.0\n 31\n0.0\n"
    "  0\nLWPOLYLINE\n  5\n2B\n330\n1F\n100\nAcDbEntity\n  8\nWALL\n100\nAcDbPolyline\n 90\n2\n 70\n1\n"
    " 43\n0.0\n 10\n0.0\n 20\n0.0\n 10\n5.0\n 20\n0.0\n 42\n1.0\n"
    "  0\nTEXT\n  5\n2C\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
    " 40\n2.5\n  1\nA\\U+529F^J\n 50\n90.0\n100\nAcDbText\n"
    "  0\nWIPEOUT\n  5\n2D\n100\nAcDbEntity\n  8\n0\n100\nAcDbRasterImage\n 90\n0\n100\nAcDbWipeout\n"
    "  0\nENDSEC\n  0\nSECTION\n  2\nOBJECTS\n  0\nDICTIONARY\n  5\nC\n  0\nENDSEC\n  0\nEOF\n";

TEST_F(DxfTest, OpensNewerFilesIntoTheHostsRecords) {
  Drawing d;
  SysVarTable vars;
  ASSERT_EQ(OpenText(kR2000, &d, &vars), "");
  EXPECT_EQ(DumpDrawing(d).substr(DumpDrawing(d).find("ENTITIES\n")),
            "ENTITIES\n"
            "LINE layer=\"WALL\" linetype=BYLAYER color=256 10=(1,2,0) 11=(3,4,0)\n"
            "LWPOLYLINE layer=\"WALL\" linetype=BYLAYER color=256 90=2 70=1 43=0 10=(0,0,0) "
            "10=(5,0,0) 42=1\n"
            "TEXT layer=\"0\" linetype=BYLAYER color=256 10=(0,0,0) 40=2.5 1=\"A功\\x0A\" 50=1.570796 "
            "41=1 51=0 7=\"STANDARD\" 71=0 72=0 73=0\n"
            "WIPEOUT layer=\"0\" linetype=BYLAYER color=256 100=\"AcDbEntity\" "
            "100=\"AcDbRasterImage\" 90=0 100=\"AcDbWipeout\"\n");
  EXPECT_EQ(d.entities()[0].handle, 0x2Au);
  EXPECT_GE(d.handle_seed(), 0x100u);
  EXPECT_EQ(d.tables().blocks().records().size(), 0u) << "model space is no block";
  EXPECT_EQ(d.tables().layers().Find("WALL")->color, -3);
  EXPECT_DOUBLE_EQ(d.tables().styles().Find("STANDARD")->oblique, sample::Degrees(15));
  const LinetypeRecord* gas = d.tables().linetypes().Find("GAS");
  ASSERT_EQ(gas->elements.size(), 3u);
  const LinetypeElement& text = gas->elements[2];
  EXPECT_EQ(text.kind, LinetypeElement::Kind::kText);
  EXPECT_EQ(text.text + "/" + text.source, "GAS/STANDARD");
  EXPECT_DOUBLE_EQ(text.rotation, 90);
  SysValue v;
  ASSERT_TRUE(vars.Get("CLAYER", &v));
  EXPECT_EQ(std::get<std::string>(v), "WALL");
  ASSERT_TRUE(vars.Get("LTSCALE", &v));
  EXPECT_EQ(std::get<double>(v), 50.0);
}

TEST_F(DxfTest, R12RecordsGetTheHostsDefaults) {
  const char file[] =
      "0\nSECTION\n2\nENTITIES\n"
      "0\nPOLYLINE\n8\n0\n40\n2.0\n41\n3.0\n"
      "0\nVERTEX\n8\n0\n10\n1\n20\n1\n"
      "0\nSEQEND\n8\n0\n"
      "0\nINSERT\n8\n0\n2\nB\n10\n0\n20\n0\n"
      "0\nENDSEC\n0\nEOF\n";
  Drawing d;
  ASSERT_EQ(OpenText(file, &d), "");
  EXPECT_EQ(DumpDrawing(d).substr(DumpDrawing(d).find("ENTITIES\n") + 9),
            "POLYLINE layer=\"0\" linetype=BYLAYER color=256 66=1 10=(0,0,0) 70=0 40=2 41=3\n"
            "  VERTEX layer=\"0\" linetype=BYLAYER color=256 10=(1,1,0) 40=2 41=3 42=0 70=0\n"
            "  SEQEND layer=\"0\" linetype=BYLAYER color=256\n"
            "INSERT layer=\"0\" linetype=BYLAYER color=256 2=\"B\" 10=(0,0,0) 41=1 42=1 43=1 50=0\n");
}

TEST_F(DxfTest, TextsOfOtherEncodingsBecomeBig5) {
  struct Case {
    const char* version;
    const char* code_page;
    std::string raw, big5;
  } cases[] = {
      {"AC1021", "ANSI_1252", "功率", sample::kPowerBig5.substr(0, 4)},
      {"AC1021", "ANSI_950", "caf\xC3\xA9", "caf\\U+00E9"},  // no é in Big5: kept as an escape
      {"AC1015", "ANSI_1252", "90\xB0", "90\xA2\x58"},
      {"AC1009", "ANSI_950", "\\M+2A55C^ ^", "\xA5\x5C^^"},
      {"AC1009", "", "\xA5\x5CU+0041", "\xA5\x5CU+0041"},  // the trail byte starts no escape
      {"AC1009", "", "\xA5^J", "\xA5^J"},         // nor does a trail byte ^
  };
  for (const Case& c : cases) {
    std::string file = std::string("0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\n") + c.version +
                       "\n9\n$DWGCODEPAGE\n3\n" + c.code_page + "\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" +
                       "0\nTEXT\n8\n0\n10\n0\n20\n0\n40\n1\n1\n" + c.raw + "\n0\nENDSEC\n0\nEOF\n";
    Drawing d;
    ASSERT_EQ(OpenText(file, &d), "") << c.raw;
    EXPECT_EQ(d.entities()[0].Text(1), c.big5) << c.version << " " << c.code_page << " " << c.raw;
  }
}

TEST_F(DxfTest, BrokenFilesFailWithTheirLine) {
  struct Case {
    std::string text, error;
  } cases[] = {
      {"0\nSECTION\n2\nENTITIES\n0", ":5: group code 0 has no value"},
      {"0\nSECTION\nxx\nENTITIES\n0\nEOF\n", ":3: 'xx' is not a group code"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n10\n1,5\n20\n0\n0\nENDSEC\n0\nEOF\n",
       ":8: '1,5' is not a number (group 10)\n1,5\n^"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n10\n1\n30\n0\n0\nENDSEC\n0\nEOF\n",
       ":8: group 10 has no y (group 20) after it"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n70\nx\n0\nENDSEC\n0\nEOF\n", ":8: 'x' is not a number (group 70)"},
      // A coordinate without its x: once kept as a text, and then read as
      // the z of the point before it when the drawing was saved.
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n10\n0\n20\n0\n30\n0\n30\nOCKS\n0\nENDSEC\n0\nEOF\n",
       ":14: 'OCKS' is not a number (group 30)"},
      {"0\nSECTION\n2\nHEADER\n9\n$LTSCALE\n40\nbig\n0\nENDSEC\n0\nEOF\n", ":8: 'big' is not a number"},
      {"0\nSECTION\n2\nENTITIES\n0\nENDSEC\n", ":6: the file ends without EOF"},
      {"0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nB\n0\nLINE\n", ":10: the file ends without EOF"},
      {"0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nB\n0\nENDSEC\n0\nEOF\n", ":10: BLOCK without ENDBLK"},
      {"0\nSECTION\n2\nENTITIES\n0\nEOF\n", ":6: EOF inside a section (no ENDSEC)"},
      {"0\nSECTION\n2\nENTITIES\n\xB9\x71\nLINE\n", ":5: '\\xB9q' is not a group code\n\\xB9q\n^"},
      {"", ":1: the file ends without EOF"},
      {"999\nnote\n0\nEOF\n", ":2: expected SECTION or EOF"},
      {"0\nSECTION\n0\nEOF\n", ":2: SECTION without a name"},
      {"Binary DXF\r\n\x1a\0\x01", ":1: binary DXF files are not read"},
      // Numbers the host could not keep: not finite, past 1e99, past their
      // group's 16 or 32 bits; codes outside 0 to 1071.
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nnan\n20\n0\n0\nENDSEC\n0\nEOF\n",
       ":8: 'nan' is not a number (group 10)"},
      {"0\nSECTION\n2\nENTITIES\n0\nCIRCLE\n10\n0\n20\n0\n40\n-inf\n0\nENDSEC\n0\nEOF\n",
       ":12: '-inf' is not a number (group 40)"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n10\n0\n20\n1e308\n0\nENDSEC\n0\nEOF\n",
       ":10: '1e308' is out of range (group 20)"},
      {"0\nSECTION\n2\nENTITIES\n0\nARC\n50\n1e400\n0\nENDSEC\n0\nEOF\n", ":8: '1e400' is out of range (group 50)"},
      {"0\nSECTION\n2\nENTITIES\n0\nINSERT\n70\n32768\n0\nENDSEC\n0\nEOF\n",
       ":8: '32768' is out of range (group 70)"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n62\n-40000.0\n0\nENDSEC\n0\nEOF\n",
       ":8: '-40000.0' is out of range (group 62)"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n1070\n99999999999999999999\n0\nENDSEC\n0\nEOF\n",
       ":8: '99999999999999999999' is out of range (group 1070)"},
      {"0\nSECTION\n2\nENTITIES\n0\nLWPOLYLINE\n90\n4294967296\n0\nENDSEC\n0\nEOF\n",
       ":8: '4294967296' is out of range (group 90)"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n5000\n1.0\n0\nENDSEC\n0\nEOF\n", ":7: '5000' is not a group code"},
      {"0\nSECTION\n2\nENTITIES\n0\nLINE\n-1\nx\n0\nENDSEC\n0\nEOF\n", ":7: '-1' is not a group code"},
      {"0\nSECTION\n2\nHEADER\n9\n$LTSCALE\n40\n1e100\n0\nENDSEC\n0\nEOF\n",
       ":8: '1e100' is out of range (group 40)"},
      // Blocks that insert themselves, at the insert that closes the cycle.
      {"0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nA\n0\nINSERT\n2\nA\n0\nENDBLK\n0\nENDSEC\n0\nEOF\n",
       ":12: block A inserts itself\nA\n^"},
      {"0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nA\n0\nINSERT\n2\nB\n0\nENDBLK\n"
       "0\nBLOCK\n2\nB\n0\nINSERT\n2\na\n0\nENDBLK\n0\nENDSEC\n0\nEOF\n",
       ":22: block A inserts itself through B"},
  };
  for (const Case& c : cases) {
    Drawing d;
    d.Append(Entity("LINE"));
    SysVarTable vars;
    std::string err = OpenText(c.text, &d, &vars);
    EXPECT_EQ(err.substr(0, Path("in.dxf").size()), Path("in.dxf")) << c.text;
    EXPECT_EQ(err.substr(Path("in.dxf").size(), c.error.size()), c.error) << c.text;
    EXPECT_EQ(d.entities().size(), 1u) << "the drawing is left as it was";
  }
  std::string err;
  EXPECT_FALSE(OpenDxf(Path("missing.dxf"), nullptr, nullptr, &err));
  EXPECT_EQ(err, Path("missing.dxf") + ": cannot open");
}

// What the host does not keep (other tables, other header variables) is
// not read, so it may hold anything; handles it cannot number after are
// replaced, as taken ones are.
TEST_F(DxfTest, OnlyWhatTheHostKeepsMustBeInRange) {
  const char file[] =
      "0\nSECTION\n2\nHEADER\n9\n$EXTMIN\n10\n-1e300\n20\nnan\n9\n$HANDSEED\n5\nFFFFFFFFFF\n0\nENDSEC\n"
      "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nVPORT\n0\nVPORT\n2\n*ACTIVE\n40\n1e308\n0\nENDTAB\n0\nENDSEC\n"
      "0\nSECTION\n2\nENTITIES\n0\nLINE\n5\nFFFFFFFF\n8\n0\n10\n-1e99\n20\n0\n11\n1e99\n21\n0\n"
      "0\nENDSEC\n0\nEOF\n";
  Drawing d;
  ASSERT_EQ(OpenText(file, &d), "");
  const Entity& line = d.entities()[0];
  EXPECT_LT(line.handle, 0x100u) << "a new handle";
  EXPECT_LT(d.handle_seed(), 0x100u);
  EXPECT_EQ(DumpDrawing(d).substr(DumpDrawing(d).find("LINE ")),
            "LINE layer=\"0\" linetype=BYLAYER color=256 10=(-1e+99,0,0) 11=(1e+99,0,0)\n");

  std::string saved = Save(d, SysVarTable());
  EXPECT_EQ(Value(Find(saved, "LINE"), 11), "1e+99");
  Drawing again;
  ASSERT_EQ(OpenText(saved, &again), "") << "what the host saves it opens";
  EXPECT_EQ(DumpDrawing(again), DumpDrawing(d));
}

// Should a number that is not finite get into a drawing, the save is
// refused rather than written with a 0 in its place; extents wider than a
// double can measure keep the default view.
TEST_F(DxfTest, NothingNotFiniteIsWritten) {
  Drawing d;
  Entity line("LINE");
  line.groups = {{10, Point3{0, 0, 0}}, {11, Point3{NAN, 0, 0}}};
  d.Append(line);
  std::string err;
  EXPECT_FALSE(SaveDxf(d, SysVarTable(), Path("nan.dxf"), &err));
  EXPECT_EQ(err, "Cannot save " + Path("nan.dxf") + ": the drawing holds a number that is not finite.");
  EXPECT_FALSE(std::filesystem::exists(Path("nan.dxf")));

  // A line of +-1e99 at scales 1e99, 1e99 and 1e11: +-1e308 wide.
  Drawing wide;
  auto insert = [](const char* block, double scale) {
    return sample::Record("INSERT", "0", {{2, std::string(block)}, {10, Point3{0, 0, 0}}, {41, scale},
                                          {42, scale}, {43, 1.0}, {50, 0.0}});
  };
  wide.tables().blocks().Put({"FAR", {0, 0, 0}, 0, {sample::Record("LINE", "0", {{10, Point3{-1e99, 0, 0}},
                                                                                 {11, Point3{1e99, 0, 0}}})}});
  wide.tables().blocks().Put({"MID", {0, 0, 0}, 0, {insert("FAR", 1e99)}});
  wide.tables().blocks().Put({"TOP", {0, 0, 0}, 0, {insert("MID", 1e99)}});
  wide.Append(insert("TOP", 1e11));
  std::string file = Save(wide, SysVarTable());
  EXPECT_EQ(Value(Find(file, "LINE"), 10), "-1e+99");
  EXPECT_EQ(Value(Find(file, "VPORT"), 40), "297.0");
  EXPECT_EQ(file.find("nan"), std::string::npos);
  EXPECT_EQ(file.find("inf"), std::string::npos);
}

TEST_F(DxfTest, FailedSaveLeavesNothingBehind) {
  Drawing d;
  std::string err;
  EXPECT_FALSE(SaveDxf(d, SysVarTable(), Path("no/such/folder/a.dxf"), &err));
  EXPECT_EQ(err, "Cannot save " + Path("no/such/folder/a.dxf") + ": no such directory.");

  std::ofstream(Path("old.dxf")) << "old";
  std::filesystem::create_directory(Path("old.dxf.dir"));
  EXPECT_TRUE(SaveDxf(d, SysVarTable(), Path("old.dxf"), &err)) << err;
  EXPECT_FALSE(SaveDxf(d, SysVarTable(), Path("old.dxf.dir"), &err)) << "a folder cannot be replaced";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir_), {}), 2) << "no temporary file left";
}

TEST(DumpTest, ShowsContentWithoutHandlesOrErasedRecords) {
  Drawing d;
  d.tables().layers().Put({"B", 1, "CONTINUOUS", 0});
  d.tables().layers().Put({"a", 2, "CONTINUOUS", 1});
  Entity text = sample::Text("TEXT", {1, 2.0000001, 0}, 2.5, "x\"\t" + sample::kWorkBig5, "STANDARD");
  text.handle = 0x99;
  d.Append(text);
  d.Erase(d.Append(Entity("CIRCLE")));
  Entity polyline("POLYLINE");
  polyline.color = 1;
  polyline.linetype = "DASHED";
  d.Append(polyline);
  d.Append(sample::Vertex({-0.0000001, 1.5, 0}, 0, 0, -1));
  d.Append(Entity("SEQEND"));
  std::string dump = DumpDrawing(d);
  EXPECT_EQ(dump.substr(dump.find("\nLAYER") + 1),
            "LAYER \"0\" color=7 linetype=\"CONTINUOUS\" flags=0\n"
            "LAYER \"a\" color=2 linetype=\"CONTINUOUS\" flags=1\n"
            "LAYER \"B\" color=1 linetype=\"CONTINUOUS\" flags=0\n"
            "STYLE \"STANDARD\" font=\"txt\" big_font=\"\" height=0 width=1 oblique=0 last_height=2.5 "
            "flags=0 generation=0\n"
            "ENTITIES\n"
            "TEXT layer=\"0\" linetype=BYLAYER color=256 10=(1,2,0) 40=2.5 1=\"x\\\"\\x09功\" 50=0 41=1 "
            "51=0 7=\"STANDARD\" 71=0 72=0 73=0\n"
            "POLYLINE layer=\"0\" linetype=\"DASHED\" color=1\n"
            "  VERTEX layer=\"0\" linetype=BYLAYER color=256 10=(0,1.5,0) 40=0 41=0 42=-1 70=0\n"
            "  SEQEND layer=\"0\" linetype=BYLAYER color=256\n");
}

}  // namespace
}  // namespace vorhost
