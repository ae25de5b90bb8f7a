// textlist_test.cpp - loading, saving and editing text lists on the emulated host.
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "emulator/core/alloc.h"
#include "support/host_fixture.h"
#include "support/show_bytes.h"
#include "util/textlist.h"
#include "util/textutil.h"

namespace vorhost::testing {
namespace {

class TextListTest : public HostTest {
 protected:
  void TearDown() override {
    textlist_free(&list_);
    HostTest::TearDown();
  }

  // Loads C:\LIST.TXT holding bytes, keeping lines with at least n fields.
  void Load(std::string_view bytes, int n = 1) {
    WriteFile("LIST.TXT", bytes);
    textlist_load("C:\\LIST.TXT", &list_, n, 255, 255, 0, 0, 0, 0, 0);
  }

  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (TextNode* node = list_.head; node; node = node->next) lines.push_back(node->text);
    return lines;
  }

  // head, tail and count agree with the chain of nodes.
  void ExpectConsistent() const {
    int32_t n = 0;
    TextNode* last = nullptr;
    for (TextNode* node = list_.head; node; node = node->next, n++) last = node;
    EXPECT_EQ(n, list_.count);
    EXPECT_EQ(last, list_.tail);
    EXPECT_EQ(list_.head == nullptr, list_.count == 0);
  }

  TextList list_{};
};

TEST_F(TextListTest, LoadDropsBlankLinesAndKeepsLinesWhole) {
  Load("A1  B\r\n\r\n   \r\n");
  EXPECT_EQ(Lines(), std::vector<std::string>{"A1  B"});
  EXPECT_STREQ(list_.path, "C:\\LIST.TXT");
  EXPECT_EQ(list_.modified, 0);
  ExpectConsistent();
}

TEST_F(TextListTest, LoadReadsTextModeLineEnds) {
  Load("one\r\ntwo\nthree\r\n\x1A" "after the end mark\r\n");
  EXPECT_EQ(Lines(), (std::vector<std::string>{"one", "two", "three"}));
  Load("no final line end");
  EXPECT_EQ(Lines(), std::vector<std::string>{"no final line end"});
}

TEST_F(TextListTest, LoadSplitsLongLinesAt255Bytes) {
  Load(std::string(300, 'x') + "\r\n");
  std::vector<std::string> lines = Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].size(), 255u);
  EXPECT_EQ(lines[1].size(), 45u);
  // A line of exactly 255 bytes and its line end make one node.
  Load(std::string(255, 'y') + "\r\nz\r\n");
  EXPECT_EQ(Lines(), (std::vector<std::string>{std::string(255, 'y'), "z"}));
}

TEST_F(TextListTest, LoadFiltersByFieldCount) {
  Load("single\r\ntwo words\r\n", 2);
  EXPECT_EQ(Lines(), std::vector<std::string>{"two words"});
}

TEST_F(TextListTest, LoadOfAMissingFileGivesAnEmptyListWithItsPath) {
  textlist_load("C:\\NOWHERE\\X.CAT", &list_, 1, 255, 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(list_.count, 0);
  EXPECT_STREQ(list_.path, "C:\\NOWHERE\\X.CAT");
  ExpectConsistent();

  std::string long_path = "C:\\" + std::string(300, 'A');
  textlist_load(long_path.c_str(), &list_, 1, 255, 0, 0, 0, 0, 0, 0);
  EXPECT_STREQ(list_.path, "");
}

TEST_F(TextListTest, SaveWritesCrLfAndOneEndMark) {
  Load("first\r\nsecond\r\nthird\r\n");
  textlist_delete(&list_, 1);
  textlist_save(&list_);
  EXPECT_EQ(ReadFile("LIST.TXT"), "first\r\nthird\r\n\x1A");

  textlist_delete(&list_, 0);
  textlist_delete(&list_, 0);
  textlist_save(&list_);
  EXPECT_EQ(ReadFile("LIST.TXT"), "");
}

TEST_F(TextListTest, SaveWritesNothingUnlessModified) {
  Load("kept as it is\n");
  textlist_append(&list_, list_.tail, "appended but not marked");
  textlist_save(&list_);
  EXPECT_EQ(ReadFile("LIST.TXT"), "kept as it is\n");

  // An unwritable path leaves the list as it was.
  list_.modified = 1;
  std::strcpy(list_.path, "C:\\NO\\SUCH\\DIR\\LIST.TXT");
  textlist_save(&list_);
  EXPECT_EQ(list_.count, 2);
}

TEST_F(TextListTest, AppendFindAndDeleteKeepTheListConsistent) {
  TextNode *node, *prev;
  textlist_find(&list_, 0, &node, &prev);
  EXPECT_EQ(node, nullptr);
  EXPECT_EQ(prev, nullptr);

  for (const char* text : {"a", "b", "c", "d"}) textlist_append(&list_, list_.tail, text);
  ExpectConsistent();
  textlist_find(&list_, 2, &node, &prev);
  EXPECT_STREQ(node->text, "c");
  EXPECT_STREQ(prev->text, "b");
  textlist_find(&list_, -3, &node, &prev);
  EXPECT_EQ(node, list_.head);
  EXPECT_EQ(prev, nullptr);
  textlist_find(&list_, 9, &node, &prev);
  EXPECT_EQ(node, nullptr);
  EXPECT_EQ(prev, list_.tail);

  textlist_delete(&list_, 3);  // the tail
  EXPECT_STREQ(list_.tail->text, "c");
  textlist_delete(&list_, 0);  // the head
  EXPECT_STREQ(list_.head->text, "b");
  textlist_delete(&list_, 7);  // out of range: nothing
  EXPECT_EQ(Lines(), (std::vector<std::string>{"b", "c"}));
  ExpectConsistent();
  EXPECT_EQ(list_.modified, 1);

  textlist_delete(&list_, 1);
  textlist_delete(&list_, 0);
  EXPECT_EQ(list_.head, nullptr);
  EXPECT_EQ(list_.tail, nullptr);
  EXPECT_EQ(list_.count, 0);
  ExpectConsistent();
}

TEST_F(TextListTest, FreeReleasesEveryNodeAndClearsTheList) {
  long before = LiveModuleBlocks();
  Load("1\n2\n3\n");
  EXPECT_EQ(LiveModuleBlocks(), before + 3);
  list_.cursor = list_.head;
  textlist_free(&list_);
  EXPECT_EQ(LiveModuleBlocks(), before);
  TextList cleared{};
  EXPECT_EQ(std::memcmp(&list_, &cleared, sizeof list_), 0);
}

TEST_F(TextListTest, OutOfMemoryAlertsAndStopsLoading) {
  FailAllocation(Heap::kModule, 1);
  Load("first\nsecond\nthird\n");
  EXPECT_EQ(Lines(), std::vector<std::string>{"first"});
  EXPECT_NE(Output().find("Memory Fault !"), std::string::npos);
  ExpectConsistent();

  FailAllocation(Heap::kModule);
  EXPECT_EQ(textlist_append(&list_, list_.tail, "lost"), nullptr);
  EXPECT_EQ(Lines(), std::vector<std::string>{"first"});
}

TEST_F(TextListTest, AFileNotReadWholeIsNotedAtItsFirstLineConcerned) {
  struct Case {
    std::string bytes;
    int32_t line, why;
  } cases[] = {
      {"one\r\ntwo\r\n\x1A", 0, UNREAD_NONE},
      {"one\r\n\x1A\r\n \x1A", 0, UNREAD_NONE},  // only blanks and end marks after the mark
      {std::string(255, 'y') + "\r\n", 0, UNREAD_NONE},
      {"one\r\n\r\nthree\x1A" "four\r\n", 3, UNREAD_END_MARK},
      {std::string("one\r\ntw\0o\r\nthree\r\n", 16), 2, UNREAD_NUL},
      {"one\r\n" + std::string(256, 'x') + "\r\n", 2, UNREAD_LONG_LINE},
      {"a\rb\r\n" + std::string(255, 'x') + "\r\r\n", 2, UNREAD_LONG_LINE},  // a lone CR is a byte of its line
      {"one\nlong " + std::string(300, 'x') + "\n\x1A" "more", 2, UNREAD_LONG_LINE},  // the first fault counts
  };
  for (const Case& c : cases) {
    Load(c.bytes);
    EXPECT_EQ(list_.unread_line, c.line) << Show(c.bytes);
    EXPECT_EQ(list_.unread_why, c.why) << Show(c.bytes);
  }
  FailAllocation(Heap::kModule, 2);
  Load("first\n\nsecond\nthird\nfourth\n");
  EXPECT_EQ(list_.unread_line, 4);
  EXPECT_EQ(list_.unread_why, UNREAD_MEMORY);

  char text[512];
  Load("one\r\n\x1A" "two\r\n");
  ASSERT_EQ(textlist_unread_text(&list_, text, sizeof text), 1);
  EXPECT_STREQ(text, "C:\\LIST.TXT could not be read whole: an end mark (byte 1A) in line 2 hides the text after it.");
}

TEST_F(TextListTest, SavingAListNotReadWholeKeepsTheFileAsItWas) {
  const std::string original = "one\r\n" + std::string(300, 'x') + "\r\n\x1A" "lost\r\n";
  Load(original);
  textlist_delete(&list_, 0);
  textlist_save(&list_);
  EXPECT_EQ(ReadFile("LIST.BAK"), original) << "byte for byte";
  EXPECT_EQ(ReadFile("LIST.TXT"), std::string(255, 'x') + "\r\n" + std::string(45, 'x') + "\r\n\x1A");
  EXPECT_EQ(list_.unread_line, 0);
  textlist_delete(&list_, 0);
  textlist_save(&list_);
  EXPECT_EQ(ReadFile("LIST.BAK"), original) << "a second save keeps the first backup";

  // A list read whole makes no backup.
  std::filesystem::remove(LinuxPath("LIST.BAK"));
  Load("a\r\nb\r\n\x1A");
  textlist_delete(&list_, 0);
  textlist_save(&list_);
  EXPECT_FALSE(FileExists("LIST.BAK"));

  // No backup, no save: the file stays as it was, and the user is told.
  Load(original);
  std::filesystem::create_directory(LinuxPath("LIST.BAK"));  // a folder where the backup would go
  textlist_delete(&list_, 0);
  textlist_save(&list_);
  EXPECT_EQ(ReadFile("LIST.TXT"), original);
  EXPECT_NE(Output().find("[Alert] C:\\LIST.TXT is left as it was and the changes are not saved: no "
                          "backup of it could be written beside it."),
            std::string::npos)
      << Output();
}

TEST_F(TextListTest, TheBackupReplacesTheExtensionOfTheName) {
  struct Case {
    const char* path;
    const char* backup;
  } cases[] = {
      {"C:\\V.1\\NOTES", "C:\\V.1\\NOTES.BAK"},              // a dot in a folder is no extension
      {"C:\\\xA5\x5C.D\\X", "C:\\\xA5\x5C.D\\X.BAK"},    // 功's trail byte is no separator
      {"C:\\OLD.BAK", ""},                                 // the backup would be the file itself
  };
  for (const Case& c : cases) {
    std::strcpy(list_.path, c.path);
    char out[256] = "junk";
    EXPECT_EQ(textlist_backup_path(&list_, out), c.backup[0] != '\0') << c.path;
    EXPECT_STREQ(out, c.backup) << c.path;
  }
  list_.path[0] = '\0';
}

}  // namespace
}  // namespace vorhost::testing
