// sysvars_test.cpp - the variable table: names in any case found without
// folding Big5 trail bytes, the messages that name a variable, the values
// read in place, and the versions that let a document keep what new
// records take from the variables.
#include "emulator/core/sysvars.h"

#include <gtest/gtest.h>

#include "emulator/drawing/document.h"

namespace vorhost {
namespace {

// 電 is B9 71: its trail byte is "q".
const std::string kDian = "\xB9\x71";

TEST(SysVarTableTest, NamesAreFoundInAnyCaseButBig5TrailBytesStayAsTheyAre) {
  SysVarTable vars;
  for (const char* name : {"CLAYER", "clayer", "cLaYeR"}) {
    ASSERT_NE(vars.Find(name), nullptr) << name;
    EXPECT_EQ(vars.Find(name), vars.Find("CLAYER")) << name;
  }
  EXPECT_EQ(vars.Find("CLAYERS"), nullptr);
  EXPECT_EQ(vars.Find(""), nullptr);

  // A name of the host's own bookkeeping, with a Big5 character whose
  // trail byte looks like a lower-case letter.
  vars.Force("user" + kDian, short{7});
  SysValue v;
  ASSERT_TRUE(vars.Get("USER" + kDian, &v));
  EXPECT_EQ(std::get<short>(v), 7);
  EXPECT_EQ(vars.Find("USER\xB9Q"), nullptr);  // 鄒, another character
  vars.Force("User" + kDian, short{8});          // the same variable, not a second one
  ASSERT_TRUE(vars.Get("user" + kDian, &v));
  EXPECT_EQ(std::get<short>(v), 8);
}

TEST(SysVarTableTest, SetNamesTheVariableInUpperCaseWhateverCaseItWasGiven) {
  SysVarTable vars;
  std::string why;
  EXPECT_FALSE(vars.Set("acadver", std::string("15"), &why));
  EXPECT_EQ(why, "Variable ACADVER is read only.");
  EXPECT_FALSE(vars.Set("cmdEcho", 2.5, &why));
  EXPECT_EQ(why, "Invalid value for CMDECHO.");
  EXPECT_FALSE(vars.Set("nosuch", short{1}, &why));
  EXPECT_EQ(why, "Unknown variable name.");
  // The check sees the upper-case name too.
  std::string checked;
  auto check = [&](std::string_view name, std::string*) {
    checked = name;
    return false;
  };
  EXPECT_FALSE(vars.Set("clayer", std::string("WALLS"), &why, check));
  EXPECT_EQ(checked, "CLAYER");
  EXPECT_EQ(why, "Cannot set CLAYER to \"WALLS\".");

  ASSERT_TRUE(vars.Set("ltscale", short{2}, &why)) << why;
  SysValue v;
  ASSERT_TRUE(vars.Get("LTSCALE", &v));
  EXPECT_EQ(std::get<double>(v), 2.0);
}

TEST(SysVarTableTest, TextIsReadInPlaceOnlyForTextVariables) {
  SysVarTable vars;
  const std::string* layer = vars.Text("clayer");
  ASSERT_NE(layer, nullptr);
  EXPECT_EQ(*layer, "0");
  vars.Force("CLAYER", std::string("WALLS"));
  EXPECT_EQ(*vars.Text("CLAYER"), "WALLS");
  EXPECT_EQ(vars.Text("LTSCALE"), nullptr);
  EXPECT_EQ(vars.Text("NOSUCH"), nullptr);
}

TEST(SysVarTableTest, EveryChangeMakesANewVersionAndNoOtherTableHasIt) {
  SysVarTable a, b;
  EXPECT_NE(a.version(), b.version());
  uint64_t before = a.version();
  a.Force("CLAYER", std::string("WALLS"));
  EXPECT_NE(a.version(), before);
  before = a.version();
  std::string why;
  EXPECT_FALSE(a.Set("ACADVER", std::string("15"), &why));
  EXPECT_EQ(a.version(), before) << "a refused change changes nothing";
  ASSERT_TRUE(a.Set("LTSCALE", 2.0, &why));
  EXPECT_NE(a.version(), before);

  SysVarTable copy = a;
  EXPECT_EQ(copy.version(), a.version()) << "the same values";
  SysVarTable moved = std::move(copy);
  EXPECT_EQ(moved.version(), a.version());
  EXPECT_NE(copy.version(), a.version()) << "what is left of a moved table is not what it held";  // NOLINT
  b = std::move(moved);
  EXPECT_EQ(b.version(), a.version());
}

// New records take the current layer, linetype and colour as they are at
// the moment, however the variables were changed or replaced.
TEST(DocumentTest, NewRecordsTakeTheCurrentPropertiesAsTheyAreNow) {
  auto properties = [](const Document& doc) {
    Entity e = doc.NewEntity("LINE");
    return e.layer + "|" + e.linetype + "|" + std::to_string(e.color);
  };
  Document doc;
  EXPECT_EQ(properties(doc), "0||256");
  doc.sysvars().Force("CLAYER", std::string("WALLS"));
  EXPECT_EQ(properties(doc), "WALLS||256");
  doc.sysvars().Force("CELTYPE", std::string("DASHED"));
  doc.sysvars().Force("CECOLOR", std::string("3"));
  EXPECT_EQ(properties(doc), "WALLS|DASHED|3");
  doc.sysvars().Force("CELTYPE", std::string("BYLAYER"));
  doc.sysvars().Force("CECOLOR", std::string("BYBLOCK"));
  EXPECT_EQ(properties(doc), "WALLS||0");

  doc.drawing().tables().layers().Put(LayerRecord{"PIPES"});
  std::string why;
  ASSERT_TRUE(doc.SetVariable("clayer", std::string("pipes"), &why)) << why;
  EXPECT_EQ(properties(doc), "PIPES||0");

  doc.sysvars() = SysVarTable();
  EXPECT_EQ(properties(doc), "0||256") << "a new table's defaults";
  doc.sysvars().Force("CLAYER", std::string("WALLS"));
  Document moved = std::move(doc);
  EXPECT_EQ(properties(moved), "WALLS||256");
  Document fresh{Drawing(), SysVarTable()};
  EXPECT_EQ(properties(fresh), "0||256");
}

}  // namespace
}  // namespace vorhost
