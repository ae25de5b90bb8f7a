// answer_test.cpp - keywords matched the host's way: the capitals of an
// option are the least that must be typed, in any case, and at most the
// whole option.
#include "emulator/core/answer.h"

#include <gtest/gtest.h>

namespace vorhost {
namespace {

TEST(AnswerTest, KeywordsMatchFromTheirCapitalsToTheirWholeName) {
  const std::initializer_list<std::string_view> text = {"Align", "Fit", "Center", "Middle", "Right", "TL", "TC",
                                                        "TR", "ML", "MC", "MR", "BL", "BC", "BR"};
  struct Case {
    const char* typed;
    const char* match;
  } cases[] = {
      {"a", "ALIGN"},       {"align", "ALIGN"}, {" Cen ", "CENTER"}, {"f", "FIT"},   {"BL", "BL"},
      {"bl", "BL"},         {"br", "BR"},       {"M", "MIDDLE"},     {"mc", "MC"},   {"b", ""},
      {"alignment", ""},    {"x", ""},          {"", ""},            {"t", ""},      {"TLX", ""},
      {"\xB9q", ""},  // a Big5 character whose trail byte is a letter
  };
  for (const Case& c : cases) EXPECT_EQ(MatchKeyword(c.typed, text), c.match) << c.typed;

  // Options with a Big5 character: the character is matched byte for byte.
  EXPECT_EQ(MatchKeyword("\xB9q", {"\xB9q"}), "\xB9q");
  EXPECT_EQ(MatchKeyword("\xB9Q", {"\xB9q"}), "");
  EXPECT_EQ(MatchKeyword("cL", {"Close", "CLose"}), "CLOSE");
}

}  // namespace
}  // namespace vorhost
