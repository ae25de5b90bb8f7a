// sysvars_test.cpp - the variable table: names in any case found without
// folding Big5 trail bytes, the messages that name a variable, and the
// values read in place.
#include "emulator/core/sysvars.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace vorhost
