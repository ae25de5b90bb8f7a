// textutil_test.cpp - strcatv, filter_fields, home_path and the Big5 rules.
#include <cstring>
#include <string>

#include "support/host_fixture.h"
#include "util/textutil.h"

namespace vorhost::testing {
namespace {

TEST(StrcatvTest, AppendsInOrderAndNeverPassesItsBound) {
  char buf[TEXT_SIZE] = "ab";
  strcatv(TEXT_MAX, buf, "cd", "", "ef", nullptr);
  EXPECT_STREQ(buf, "abcdef");

  struct Case {
    size_t existing, added;
    int size;
    size_t expected;
  } cases[] = {
      {0, 255, 255, 255}, {0, 256, 255, 255}, {100, 200, 255, 255},
      {254, 1, 255, 255}, {255, 10, 255, 255}, {10, 10, 15, 15},
      {20, 5, 15, 20},  // already over the bound: left as it is
      {0, 5, 0, 0},
  };
  for (const Case& c : cases) {
    char dest[512];
    std::memset(dest, '#', sizeof dest);
    std::string existing(c.existing, 'e'), added(c.added, 'a');
    std::strcpy(dest, existing.c_str());
    strcatv(c.size, dest, added.c_str(), "tail", nullptr);
    EXPECT_EQ(std::strlen(dest), c.expected) << c.existing << "+" << c.added << " in " << c.size;
    EXPECT_EQ(dest[c.expected + 1], '#') << "wrote past the terminator";
  }
}

TEST(FilterFieldsTest, CutsAndCountsFields) {
  filter_fields("  E-1  DASHED\tlayer", 1, 255, 0, 0, 0, 0, 0, 0);
  EXPECT_STREQ(MatchLine, "E-1");
  filter_fields("one", 2, 255, 255, 0, 0, 0, 0, 0);
  EXPECT_STREQ(MatchLine, "");
  filter_fields("", 1, 255, 0, 0, 0, 0, 0, 0);
  EXPECT_STREQ(MatchLine, "");
  filter_fields(" \t\v\f\r\n", 1, 255, 0, 0, 0, 0, 0, 0);
  EXPECT_STREQ(MatchLine, "");

  const std::string a16(20, 'a'), b16(17, 'b'), c12(13, 'c'), d12(12, 'd');
  std::string five = a16 + " " + b16 + " " + c12 + " " + d12 + " fifth";
  filter_fields(five.c_str(), 4, 16, 16, 12, 12, 0, 0, 0);
  EXPECT_EQ(std::string(MatchLine), std::string(16, 'a') + "\t" + std::string(16, 'b') + "\t" +
                                        std::string(12, 'c') + "\t" + d12);

  // Eight fields: the eighth is ignored, the seventh counted.
  filter_fields("1 2 3 4 5 6 7 8", 7, 1, 1, 1, 1, 1, 1, 1);
  EXPECT_STREQ(MatchLine, "1\t2\t3\t4\t5\t6\t7");

  // Big5 bytes are not white space, and a cut may split a character.
  filter_fields("\xB9\x71\xBD\x75 x", 1, 3, 0, 0, 0, 0, 0, 0);
  EXPECT_STREQ(MatchLine, "\xB9\x71\xBD");

  // A field longer than 255 bytes is taken as its first 255.
  std::string huge(600, 'h');
  filter_fields((huge + " next").c_str(), 2, 255, 255, 0, 0, 0, 0, 0);
  EXPECT_EQ(std::string(MatchLine), std::string(255, 'h') + "\tnext");
}

TEST(Big5Test, LastCharacterIsJudgedByWholeCharacters) {
  EXPECT_TRUE(ends_with_char("C:\\VOR\\", '\\'));
  EXPECT_FALSE(ends_with_char("C:\\VOR", '\\'));
  EXPECT_FALSE(ends_with_char("", '\\'));
  // The trail byte of this character is 0x5C, a backslash in ASCII.
  EXPECT_FALSE(ends_with_char("C:\\\xA5\x5C", '\\'));
  EXPECT_TRUE(ends_with_char("C:\\\xA5\x5C\\", '\\'));
}

class HomePathTest : public HostTest {
 protected:
  std::string Path(const char* name) {
    char out[TEXT_SIZE];
    std::memset(out, 'x', sizeof out);
    home_path(name, out);
    return out;
  }
};

TEST_F(HomePathTest, DefaultsToTheRootOfC) {
  EXPECT_EQ(Path("ELINE.CAT"), "C:\\ELINE.CAT");
  host_->lisp().SetSymbol("VORMIS", lisp::Value::Int(3));  // not a text
  EXPECT_EQ(Path("ELINE.CAT"), "C:\\ELINE.CAT");
  SetSymbol("VORMIS", "");
  EXPECT_EQ(Path("layer.meo"), "C:\\LAYER.MEO");
}

TEST_F(HomePathTest, TakesTheHomeDirectoryInEitherForm) {
  SetSymbol("VORMIS", "d:/vor");
  EXPECT_EQ(Path("ELINE.CAT"), "D:\\VOR\\ELINE.CAT");
  SetSymbol("VORMIS", "D:\\VOR\\");
  EXPECT_EQ(Path("ELINE.CAT"), "D:\\VOR\\ELINE.CAT");
  SetSymbol("VORMIS", "c:/a/b/");
  EXPECT_EQ(Path("file_con.dat"), "C:\\A\\B\\FILE_CON.DAT");
}

TEST_F(HomePathTest, Big5DirectoriesAndOverlongPaths) {
  // A directory whose last character ends in the byte 0x5C still gets its
  // separator.
  SetSymbol("VORMIS", "C:\\\xA5\x5C");
  EXPECT_EQ(Path("X"), "C:\\\xA5\x5C\\X");

  SetSymbol("VORMIS", "C:\\" + std::string(240, 'd'));
  EXPECT_EQ(Path("ELINE.CAT"), "C:\\" + std::string(240, 'D') + "\\ELINE.CAT");
  SetSymbol("VORMIS", "C:\\" + std::string(250, 'd'));
  EXPECT_EQ(Path("ELINE.CAT"), "");
  SetSymbol("VORMIS", std::string(400, 'd'));
  EXPECT_EQ(Path("ELINE.CAT"), "");
}

}  // namespace
}  // namespace vorhost::testing
