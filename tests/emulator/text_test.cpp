// text_test.cpp - the text kit: names with Big5 trail bytes that look like
// letters, trimming, numbers as text, fault messages and their excerpts.
#include "emulator/core/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vorhost {
namespace {

// 電 is B9 71 and 鄒 is B9 51: their trail bytes are "q" and "Q".
constexpr std::string_view kDian = "\xB9\x71";
constexpr std::string_view kZou = "\xB9\x51";

TEST(TextTest, NamesFoldOnlyTheLettersOfSingleByteCharacters) {
  EXPECT_EQ(UpperName("e-power_2"), "E-POWER_2");
  EXPECT_EQ(UpperName(std::string(kDian) + "a"), std::string(kDian) + "A");
  EXPECT_EQ(UpperName("\xB9"), "\xB9");  // a lone lead byte at the end
  EXPECT_EQ(UpperName(""), "");

  EXPECT_TRUE(SameName("Standard", "STANDARD"));
  EXPECT_TRUE(SameName(std::string(kDian) + "x", std::string(kDian) + "X"));
  EXPECT_FALSE(SameName(kDian, kZou));
  EXPECT_FALSE(SameName("a\xB9q", "A\xB9Q"));  // "\xB9q" is one character there
  EXPECT_FALSE(SameName("AB", "ABC"));
}

TEST(TextTest, TrimTakesOnlyTheCharactersAsked) {
  EXPECT_EQ(Trim("  a b \t"), "a b");
  EXPECT_EQ(Trim("\r a \n"), "\r a \n");
  EXPECT_EQ(Trim("\r a \n", kBlanksAndLineEnds), "a");
  EXPECT_EQ(Trim(" \t "), "");
  EXPECT_EQ(Trim(""), "");
}

TEST(TextTest, NumbersAsText) {
  struct Case {
    std::string got, want;
  } cases[] = {
      {DecimalText(2.5, 6), "2.5"},
      {DecimalText(100, 6), "100"},
      {DecimalText(-0.0000001, 6), "0"},
      {DecimalText(1e15, 6), "1e+15"},
      {DecimalText(999999999999999, 0), "999999999999999"},
      {DecimalText(std::nan(""), 6), "0"},
      {FixedText(2.5, 4), "2.5000"},
      {FixedText(-1e99, 4), "-1e+99"},
      {FixedText(std::numeric_limits<double>::infinity(), 4), "0"},
      {ShortestText(0.1), "0.1"},
      {ShortestText(1e99), "1e+99"},
      {SignificantText(1234567, 6), "1.23457e+06"},
  };
  for (const Case& c : cases) EXPECT_EQ(c.got, c.want);
}

TEST(TextTest, FaultsNameTheFileAndLineAndShowWhereOnTheLine) {
  EXPECT_EQ(FileLineMessage("C:\\A.LIN", 3, "bad"), "C:\\A.LIN:3: bad");
  EXPECT_EQ(SourceExcerpt("ab\n\tcd\r\nef", 5, "^"), "\tcd\n\t ^");

  // A long line is clipped around the caret without cutting a character:
  // 50 two-byte characters, the caret on the 30th.
  std::string line;
  for (int i = 0; i < 50; i++) line += kDian;
  std::string excerpt = SourceExcerpt(line, 60, "^");
  std::string shown = excerpt.substr(0, excerpt.find('\n'));
  ASSERT_TRUE(shown.starts_with("...") && shown.ends_with("...")) << shown;
  EXPECT_EQ((shown.size() - 6) % 2, 0u);
  EXPECT_EQ(excerpt.substr(excerpt.find('\n') + 1).find('^'), 3u + 40u);
}

TEST(TextTest, AFileThatCannotBeReadLeavesTheContents) {
  std::string contents = "kept";
  EXPECT_FALSE(ReadWholeFile("/nonexistent/file", &contents));
  EXPECT_EQ(contents, "kept");
}

}  // namespace
}  // namespace vorhost
