// linfile_test.cpp - the .LIN parser on good and bad files, the writer, and the host's ACAD.LIN.
#include "emulator/drawing/linfile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/show_bytes.h"
#include "support/files.h"

namespace vorhost {
namespace {

using Kind = LinetypeElement::Kind;

using vorhost::testing::Show;

std::string Num(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.10g", v);
  return buf;
}

// A record as one line of text, numbers to 10 digits (a rotation given in
// radians comes out a hair off 90), so expectations read like the file.
std::string Describe(const LinetypeRecord& r) {
  std::string out = Show(r.name) + "|" + Show(r.description) + "|";
  for (const LinetypeElement& e : r.elements) {
    if (e.kind == Kind::kPlain) {
      out += Num(e.length) + " ";
      continue;
    }
    out += e.kind == Kind::kText ? "text(" : "shape(";
    out += Show(e.text) + "," + Show(e.source) + ",S" + Num(e.scale) +
           (e.absolute_rotation ? ",A" : ",R") + Num(e.rotation) + ",X" + Num(e.x) + ",Y" +
           Num(e.y) + "," + Num(e.length) + ") ";
  }
  return out;
}

std::string Describe(const std::vector<LinetypeRecord>& records) {
  std::string out;
  for (const LinetypeRecord& r : records) out += Describe(r) + "\n";
  return out;
}

struct GoodCase {
  const char* what;
  std::string file;
  std::string expected;  // Describe() of the records
};

TEST(LinFileTest, ParsesGoodFiles) {
  const std::string kGongText = "\xA5\x5C";  // a Big5 character with trail byte '\'
  const GoodCase kCases[] = {
      {"plain", "*DASHDOT,Dash dot __ . __\nA,.5,-.25,0,-.25\n",
       "DASHDOT|Dash dot __ . __|0.5 -0.25 0 -0.25 \n"},
      {"no description, no final line end", "*DOT\nA,0,-.25", "DOT||0 -0.25 \n"},
      {"CR LF, comments, blanks, spaces, lowercase",
       " ; ours\r\n\r\n  *dashed , Dashed __ \r\n ;between\r\n\r\n a , .5 ,\t-.25 \r\n",
       "DASHED|Dashed __|0.5 -0.25 \n"},
      {"number forms", "*N\nA,.5,-.25,0.0,1e-1,-2.5E+1,+3,-0\n",
       "N||0.5 -0.25 0 0.1 -25 3 0 \n"},
      {"0x1A ends the file", "*A1\nA,1\n\x1A*B2\nA,garbage\n", "A1||1 \n"},
      {"comments only", ";; nothing\r\n;\r\n", ""},
      {"text with its options",
       "*GAS,Gas\nA,.5,-.2,[\"GAS\",STANDARD,S=.1,R=0.0,X=-0.1,Y=-.05],-.25\n",
       "GAS|Gas|0.5 -0.2 text(GAS,STANDARD,S0.1,R0,X-0.1,Y-0.05,0) -0.25 \n"},
      {"commas, brackets and escaped quotes inside the text",
       "*Q\nA,1,[\"a,b]\\\"c\\\\\", STANDARD ],-1\n",
       "Q||1 text(a,b]\"c\\,STANDARD,S1,R0,X0,Y0,0) -1 \n"},
      {"Big5 text whose trail byte is a backslash",
       "*B\nA,1,[\"" + kGongText + "\",STANDARD],-1\n",
       "B||1 text(\\xA5\\,STANDARD,S1,R0,X0,Y0,0) -1 \n"},
      {"Big5 name keeps a lowercase trail byte", "*\xA4\x61x,\xA4\xA4\n\nA,1\n",
       "\\xA4aX|\\xA4\\xA4|1 \n"},
      {"lone lead byte ends the description", "*L,\xA4\nA,1\n", "L|\\xA4|1 \n"},
      {"shape with defaults", "*CON1LINE,shape\nA,1.0,-0.25,[CON1,ep.shx],-1.0\n",
       "CON1LINE|shape|1 -0.25 shape(CON1,ep.shx,S1,R0,X0,Y0,0) -1 \n"},
      {"options in any order and case, degrees suffix",
       "*O\nA,1,[BOX,ep.shx,y=.5, x = -1 ,s=2,a=90d],-1\n",
       "O||1 shape(BOX,ep.shx,S2,A90,X-1,Y0.5,0) -1 \n"},
      {"radians, grads, the last rotation counts",
       "*R\nA,1,[B,e.shx,R=1.5707963267948966r],[B,e.shx,A=10,r=100G]\n",
       "R||1 shape(B,e.shx,S1,R90,X0,Y0,0) shape(B,e.shx,S1,R90,X0,Y0,0) \n"},
      {"a later definition wins in the first one's place",
       "*X,first\nA,1\n*Y\nA,2\n*x,second\nA,3\n", "X|second|3 \nY||2 \n"},
      {"a name of 255 bytes", "*" + std::string(255, 'N') + "\nA,1\n",
       std::string(255, 'N') + "||1 \n"},
  };
  for (const GoodCase& c : kCases) {
    std::vector<LinetypeRecord> records;
    std::string err;
    ASSERT_TRUE(ParseLinetypes(c.file, "t.lin", &records, &err)) << c.what << ": " << err;
    EXPECT_EQ(Describe(records), c.expected) << c.what;
  }
}

struct BadCase {
  std::string file;
  int line;
  const char* message;  // part of the message
};

TEST(LinFileTest, RejectsBadFilesWithTheLine) {
  const BadCase kCases[] = {
      {"*DASHED,no pattern\n", 1, "has no pattern line"},
      {"*DASHED\n;c\n*HIDDEN\nA,1\n", 1, "has no pattern line"},
      {"A,.5,-.25\n", 1, "without a '*NAME'"},
      {"*X\nA,1\nA,2\n", 3, "without a '*NAME'"},
      {";c\r\n\r\n*X\r\nA,.5,abc\r\n", 4, "bad number 'abc'"},
      {"*X\nA,1..5\n", 2, "bad number"},
      {"*X\nA,0x10\n", 2, "bad number"},
      {"*X\nA,inf\n", 2, "bad number"},
      {"*X\nA,1e999\n", 2, "bad number"},
      {"*X\nA,.\n", 2, "bad number"},
      {"*X\nA\n", 2, "empty pattern"},
      {"*X\nA,.5,,-.25\n", 2, "empty element"},
      {"*X\nA,.5,\n", 2, "empty element"},
      {"*X\nA,.5,[\"GAS\",STANDARD\n", 2, "unclosed '['"},
      {"*X\nA,.5,[\"GAS,STANDARD],-1\n", 2, "unclosed quote"},
      {"*X\nA,1,[\"\xA4", 2, "unclosed quote"},
      {"*X\nA,1,[\"GAS\",STANDARD,U=0]\n", 2, "unknown option 'U=0'"},
      {"*X\nA,1,[\"GAS\",STANDARD,S]\n", 2, "has no '='"},
      {"*X\nA,1,[\"GAS\",STANDARD,S=big]\n", 2, "bad value"},
      {"*X\nA,1,[\"GAS\",STANDARD,R=90q]\n", 2, "bad value"},
      {"*X\nA,1,[\"GAS\",STANDARD,,S=1]\n", 2, "empty option"},
      {"*X\nA,1,[\"GAS\"]\n", 2, "without a text style"},
      {"*X\nA,1,[CON1]\n", 2, "without a shape file"},
      {"*X\nA,1,[,ep.shx]\n", 2, "without a shape name"},
      {"*X\nA,1,[\"GAS\"x,STANDARD]\n", 2, "expected ','"},
      {"*X\nA,1,[\"GAS\",STANDARD]x\n", 2, "expected ','"},
      {"*X\nA,[\"GAS\",STANDARD]\n", 2, "without a dash"},
      {"*\nA,1\n", 1, "without a name"},
      {"*" + std::string(256, 'N') + "\nA,1\n", 1, "longer than 255"},
      {"*X\nA,1\nhello\n", 3, "expected '*NAME'"},
      {std::string("\x01\x02\xFF\x00z", 5), 1, "expected '*NAME'"},
      {"*X\nAB,1\n", 2, "expected '*NAME'"},
  };
  for (const BadCase& c : kCases) {
    std::vector<LinetypeRecord> records(1);
    records[0].name = "KEPT";
    std::string err;
    EXPECT_FALSE(ParseLinetypes(c.file, "t.lin", &records, &err)) << Show(c.file);
    std::string where = "t.lin:" + std::to_string(c.line) + ": ";
    EXPECT_EQ(err.substr(0, where.size()), where) << Show(c.file) << " -> " << Show(err);
    EXPECT_NE(err.find(c.message), std::string::npos) << Show(c.file) << " -> " << Show(err);
    ASSERT_EQ(records.size(), 1u) << Show(c.file);
    EXPECT_EQ(records[0].name, "KEPT") << Show(c.file);
  }
}

// Truncations and single-byte damage of a file using every construct: the
// parser must return (the sanitizers check the rest) and any fault must be
// reported in the file:line: form.
TEST(LinFileTest, SurvivesDamagedInput) {
  const std::string kSample =
      ";c\r\n*GAS,Gas \xA4\xA4\r\nA,.5,-.2,[\"G\\\"\xA5\x5C,]\",STANDARD,S=.1,R=1r,X=-0.1,Y=-.05],"
      "-.25\n*SH\nA,1,[CON1,ep.shx,a=90g],-1e-1\n";
  const char kDamage[] = {'\0', '"', '[', ']', ',', '\\', '\xA4', '\n', '\x1A', '=', 'e'};
  auto check = [](const std::string& file) {
    std::vector<LinetypeRecord> records;
    std::string err;
    if (!ParseLinetypes(file, "t.lin", &records, &err)) {
      EXPECT_EQ(err.rfind("t.lin:", 0), 0u) << Show(file) << " -> " << Show(err);
    }
  };
  for (size_t n = 0; n <= kSample.size(); n++) check(kSample.substr(0, n));
  for (size_t i = 0; i < kSample.size(); i++) {
    for (char d : kDamage) {
      std::string file = kSample;
      file[i] = d;
      check(file);
    }
  }
  check("*X\nA,1,[\"" + std::string(100000, '\xA4') + "\"," + std::string(100000, ',') + "\n");
}

// Parses a file expected to be good.
std::vector<LinetypeRecord> Parse(const std::string& file) {
  std::vector<LinetypeRecord> records;
  std::string err;
  EXPECT_TRUE(ParseLinetypes(file, "f.lin", &records, &err)) << Show(file) << ": " << err;
  return records;
}

TEST(LinFileTest, FormatReadsBackToTheSameRecord) {
  // Lengths without a short decimal form, a text of every character that
  // needs care, an absolute rotation given in grads, no description.
  std::vector<LinetypeRecord> records = Parse(
      "*GAS,Gas ---- GAS ----\nA,0.5,-0.2,[\"GAS\",STANDARD,S=0.1,X=-0.1,Y=-0.05],-0.25\n"
      "*\xA4\x61x\nA,0.3333333333333333,-1e-7,0,[\"q\\\"b\\\\,]\xA5\x5C\",S],"
      "[BOX,ep.shx,S=2,A=-37g],0.30000000000000004\n");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(FormatLinetype(records[0]),
            "*GAS,Gas ---- GAS ----\r\nA,.5,-.2,[\"GAS\",STANDARD,S=.1,R=0,X=-.1,Y=-.05],-.25\r\n");
  for (const LinetypeRecord& record : records) {
    std::vector<LinetypeRecord> back = Parse(FormatLinetype(record));
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(Describe(back[0]), Describe(record));
    for (size_t i = 0; i < record.elements.size(); i++) {
      EXPECT_EQ(back[0].elements[i].length, record.elements[i].length) << "exactly, " << i;
      EXPECT_EQ(back[0].elements[i].rotation, record.elements[i].rotation) << "exactly, " << i;
    }
  }
}

std::string ReadResource(const std::string& name) {
  return testing::FileBytes(std::string(VORHOST_RESOURCES) + "/" + name);
}

TEST(LinFileTest, HostLinetypeFileIsComplete) {
  std::string contents = ReadResource("ACAD.LIN");
  ASSERT_FALSE(contents.empty());
  std::vector<LinetypeRecord> records;
  std::string err;
  ASSERT_TRUE(ParseLinetypes(contents, "ACAD.LIN", &records, &err)) << err;
  auto find = [&](const std::string& name) -> const LinetypeRecord* {
    for (const LinetypeRecord& r : records)
      if (r.name == name) return &r;
    return nullptr;
  };

  const LinetypeRecord* dashed = find("DASHED");
  ASSERT_NE(dashed, nullptr);
  EXPECT_EQ(Describe(*dashed).substr(Describe(*dashed).rfind('|')), "|0.5 -0.25 ");

  // Each family's half and double sizes scale every element of the normal one.
  for (const char* family :
       {"BORDER", "CENTER", "DASHDOT", "DASHED", "DIVIDE", "DOT", "HIDDEN", "PHANTOM"}) {
    const LinetypeRecord* normal = find(family);
    ASSERT_NE(normal, nullptr) << family;
    for (auto [suffix, factor] : {std::pair{"2", 0.5}, std::pair{"X2", 2.0}}) {
      const LinetypeRecord* sized = find(std::string(family) + suffix);
      ASSERT_NE(sized, nullptr) << family << suffix;
      ASSERT_EQ(sized->elements.size(), normal->elements.size()) << family << suffix;
      for (size_t i = 0; i < normal->elements.size(); i++) {
        EXPECT_EQ(sized->elements[i].length, normal->elements[i].length * factor)
            << family << suffix << " element " << i;
      }
    }
  }

  for (const char* label : {"GAS", "HW"}) {
    bool found = false;
    for (const LinetypeRecord& r : records)
      for (const LinetypeElement& e : r.elements)
        found = found || (e.kind == Kind::kText && e.text == label && e.source == "STANDARD");
    EXPECT_TRUE(found) << "a linetype labelled " << label;
  }

  // What older readers of the file accept: short names of a fixed alphabet,
  // short descriptions, CR LF line ends.
  for (const LinetypeRecord& r : records) {
    EXPECT_LE(r.name.size(), 31u) << r.name;
    EXPECT_EQ(r.name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789$-_"),
              std::string::npos)
        << r.name;
    EXPECT_LE(r.description.size(), 47u) << r.name;
  }
  for (size_t i = 0; i < contents.size(); i++) {
    if (contents[i] == '\n') {
      ASSERT_TRUE(i > 0 && contents[i - 1] == '\r') << "offset " << i;
    }
  }
}

}  // namespace
}  // namespace vorhost
