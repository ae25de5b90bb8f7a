// hostval_test.cpp - integer system variables, group lookup and the text
// height settings.
#include "emulator/core/alloc.h"
#include "host/hostval.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

using HostValueTest = HostTest;

short ShortVar(Host& host, const char* name) {
  SysValue v;
  EXPECT_TRUE(host.document().sysvars().Get(name, &v));
  return std::get<short>(v);
}

TEST_F(HostValueTest, SetIntSysvarSavesAndRestores) {
  EXPECT_EQ(ShortVar(*host_, "CMDECHO"), 1);
  short saved = set_int_sysvar("CMDECHO", 0);
  EXPECT_EQ(saved, 1);
  EXPECT_EQ(ShortVar(*host_, "CMDECHO"), 0);
  EXPECT_EQ(set_int_sysvar("CMDECHO", saved), 0);
  EXPECT_EQ(ShortVar(*host_, "CMDECHO"), 1);
}

TEST_F(HostValueTest, SetIntSysvarOnWhatItCannotReadGivesTheNewValueBack) {
  EXPECT_EQ(set_int_sysvar("NOSUCHVAR", 7), 7);
  // A text variable is not an integer to save: it stays as it was.
  EXPECT_EQ(set_int_sysvar("TEXTSTYLE", 3), 3);
  SysValue style;
  host_->document().sysvars().Get("TEXTSTYLE", &style);
  EXPECT_EQ(std::get<std::string>(style), "STANDARD");
  // No buffer to read into: nothing is read or written.
  FailAllocation(Heap::kHost);
  EXPECT_EQ(set_int_sysvar("CMDECHO", 0), 0);
  EXPECT_EQ(ShortVar(*host_, "CMDECHO"), 1);
}

TEST_F(HostValueTest, FindGroupWalksTheList) {
  resbuf* style = ads_tblsearch("STYLE", "standard", 0);
  ASSERT_NE(style, nullptr);
  resbuf* type = find_group(style, 0);
  ASSERT_NE(type, nullptr);
  EXPECT_STREQ(type->resval.rstring, "STYLE");
  EXPECT_EQ(find_group(style, 40)->resval.rreal, 0.0);
  EXPECT_EQ(find_group(style, 1071), nullptr);
  EXPECT_EQ(find_group(nullptr, 0), nullptr);
  ads_relrb(style);
}

TEST_F(HostValueTest, TextSizeSettingsReadTheStyleAndTextsize) {
  ads_real fixed = -1, size = -1;
  text_size_settings(&fixed, &size);
  EXPECT_EQ(fixed, 0.0);
  EXPECT_EQ(size, 2.5);

  host_->document().tables().styles().Put(StyleRecord{"ROMANSAEH", "romans", "ae", 3.5});
  host_->document().sysvars().Force("TEXTSTYLE", std::string("ROMANSAEH"));
  text_size_settings(&fixed, &size);
  EXPECT_EQ(fixed, 3.5);

  // A current style that is not in the table leaves the fixed height alone.
  host_->document().sysvars().Force("TEXTSTYLE", std::string("GONE"));
  fixed = 9;
  text_size_settings(&fixed, &size);
  EXPECT_EQ(fixed, 9.0);
  EXPECT_EQ(size, 2.5);
}

}  // namespace
}  // namespace vorhost::testing
