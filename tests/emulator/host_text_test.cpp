// host_text_test.cpp - data files between UTF-8 and the module's Big5 text,
// and the checks that tell the two apart.
#include "emulator/io/host_text.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "emulator/core/encoding.h"
#include "support/files.h"

namespace vorhost {
namespace {

// 照明 in UTF-8 and in Big5.
const std::string kLightUtf8 = "\xE7\x85\xA7\xE6\x98\x8E";
const std::string kLightBig5 = "\xB7\xD3\xA9\xFA";

TEST(TextEncodingTest, TellsBig5FromUtf8) {
  struct Case {
    std::string text;
    bool big5, utf8, looks_utf8;
  } cases[] = {
      {"", true, true, false},
      {"E-LIGHT 1", true, true, false},
      {kLightBig5, true, false, false},
      {kLightUtf8, false, true, true},
      {"\xA5\x5C", true, false, false},          // 功, whose trail byte is a backslash
      {"1\xED" "6", true, false, false},          // a schedule's diameter sign
      {"\xA6\xED", true, false, false},          // 住, whose trail byte is the same byte
      {"\xED", true, false, false},
      {"\xA4", false, false, false},              // a lead byte alone
      {"\xFF\xFE" "A", false, false, false},      // the mark of UTF-16
      {std::string("A\0B", 3), false, false, false},
      {"\xC0\xAF", true, false, false},           // an overlong "/", but a Big5 character
      {"\xED\xA0\x80", false, false, false},      // a surrogate
      {"\xF4\x90\x80\x80", false, false, false},  // past U+10FFFF
      {"\xE7\x85", false, false, false},          // a sequence cut short
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(IsBig5Text(c.text), c.big5);
    EXPECT_EQ(IsUtf8Text(c.text), c.utf8);
    EXPECT_EQ(LooksLikeUtf8(c.text), c.looks_utf8);
  }
}

TEST(HostTextTest, ImportWritesBig5WithCrLfAndEndMark) {
  struct Case {
    std::string utf8, host;
    int lines;
  } cases[] = {
      {"", "", 0},
      {"A\n", "A\r\n\x1A", 1},
      {"A", "A\r\n\x1A", 1},                                  // no final line end
      {"A\r\nB\r\n", "A\r\nB\r\n\x1A", 2},                    // CR LF already
      {"\xEF\xBB\xBF" "A\n", "A\r\n\x1A", 1},                 // a byte order mark
      {"A\n\nB\n", "A\r\n\r\nB\r\n\x1A", 3},                  // blank lines stay
      {"E-LIGHT " + kLightUtf8 + "\n", "E-LIGHT " + kLightBig5 + "\r\n\x1A", 1},
      {"A\r\n\x1A" "junk", "A\r\n\x1A", 1},                   // 0x1A ends the text
      {std::string(255, 'x'), std::string(255, 'x') + "\r\n\x1A", 1},
      // 257 bytes in UTF-8 but 255 in Big5, what the module reads
      {std::string(251, 'x') + kLightUtf8, std::string(251, 'x') + kLightBig5 + "\r\n\x1A", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.utf8);
    std::string host;
    int lines = -1;
    TextFault fault;
    ASSERT_TRUE(Utf8ToHostText(c.utf8, &host, &lines, &fault)) << fault.why;
    EXPECT_EQ(host, c.host);
    EXPECT_EQ(lines, c.lines);
  }
}

TEST(HostTextTest, ImportRefusesWhatTheModuleCouldNotRead) {
  struct Case {
    std::string utf8;
    int line;
    std::string why;
  } cases[] = {
      {"A\n\xE8\xBF\x99\n", 2, "the character \xE3\x80\x8C\xE8\xBF\x99\xE3\x80\x8D (U+8FD9) cannot be written in Big5"},
      {"A\nB\n\xF0\x9F\x98\x80\n", 3, "(U+1F600) cannot be written in Big5"},
      {"A\n" + kLightBig5 + "\n", 2, "not UTF-8 text (it reads as Big5: converted already?)"},
      {"\xFF\n", 1, "the line is not UTF-8 text"},
      {std::string(256, 'x'), 1, "the line is 256 bytes in Big5; the module reads at most 255"},
      {std::string(252, 'x') + kLightUtf8, 1, "the line is 256 bytes in Big5"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.utf8);
    std::string host;
    int lines = 0;
    TextFault fault;
    EXPECT_FALSE(Utf8ToHostText(c.utf8, &host, &lines, &fault));
    EXPECT_EQ(fault.line, c.line);
    EXPECT_NE(fault.why.find(c.why), std::string::npos) << fault.why;
  }
}

TEST(HostTextTest, ExportReadsAsTextModeAndRefusesUtf8) {
  std::string utf8;
  int lines = 0;
  TextFault fault;
  ASSERT_TRUE(HostTextToUtf8("A\r\n" + kLightBig5 + "\r\nlone\rCR\nB\r\n\x1A" "after", &utf8, &lines, &fault));
  EXPECT_EQ(utf8, "A\n" + kLightUtf8 + "\nlone\rCR\nB\n");
  EXPECT_EQ(lines, 4);

  // The schedules' diameter sign standing alone is "⌀" in UTF-8, and back.
  const std::string schedule = "\xA6\xED;1\xED" "6;\xED\r\n\x1A";
  ASSERT_TRUE(HostTextToUtf8(schedule, &utf8, &lines, &fault)) << fault.why;
  EXPECT_EQ(utf8, "\xE4\xBD\x8F;1\xE2\x8C\x80" "6;\xE2\x8C\x80\n");
  std::string back;
  ASSERT_TRUE(Utf8ToHostText(utf8, &back, &lines, &fault)) << fault.why;
  EXPECT_EQ(back, schedule);

  EXPECT_FALSE(HostTextToUtf8("A\r\n" + kLightUtf8 + "\r\n", &utf8, &lines, &fault));
  EXPECT_EQ(fault.line, 2);
  EXPECT_EQ(fault.why, "the line is not Big5 text (it reads as UTF-8: converted already?)");
}

// Files converted in place: whole or not at all.
class HostTextFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[] = "/tmp/vorhost_host_text_XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    dir_ = dir;
    path_ = dir_ + "/ELINE.CAT";
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  void Write(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }
  std::string Read() { return testing::FileBytes(path_); }

  std::string dir_, path_;
};

TEST_F(HostTextFileTest, RoundTripKeepsTheFileAndItsPermissions) {
  const std::string host = "(\"E1\" \"" + kLightBig5 + "\")\r\n\x1A";
  Write(host);
  chmod(path_.c_str(), 0600);
  std::string message;
  ASSERT_EQ(ExportTextFile(path_, &message), ConvertResult::kDone) << message;
  EXPECT_EQ(message, path_ + ": 1 line written as UTF-8 text");
  EXPECT_EQ(Read(), "(\"E1\" \"" + kLightUtf8 + "\")\n");
  ASSERT_EQ(ImportTextFile(path_, &message), ConvertResult::kDone) << message;
  EXPECT_EQ(Read(), host);
  struct stat st;
  ASSERT_EQ(stat(path_.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST_F(HostTextFileTest, RefusalsLeaveTheFileAsItWas) {
  const std::string utf8 = "A\n\xE8\xBF\x99\n";
  Write(utf8);
  std::string message;
  EXPECT_EQ(ImportTextFile(path_, &message), ConvertResult::kRefused);
  EXPECT_EQ(message.find(path_ + ":2: the character"), 0u) << message;
  EXPECT_NE(message.find("; the file is unchanged"), std::string::npos) << message;
  EXPECT_EQ(Read(), utf8);

  Write("A\n");
  chmod(path_.c_str(), 0444);  // root could write it all the same; the converter does not
  EXPECT_EQ(ImportTextFile(path_, &message), ConvertResult::kUnwritable);
  EXPECT_EQ(message, path_ + ": the file is read-only; it is unchanged");
  EXPECT_EQ(Read(), "A\n");

  EXPECT_EQ(ImportTextFile(dir_ + "/NONE.CAT", &message), ConvertResult::kUnreadable);
  EXPECT_EQ(ExportTextFile(dir_, &message), ConvertResult::kUnreadable);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir_), {}), 1) << "no temporary left";
}

}  // namespace
}  // namespace vorhost
