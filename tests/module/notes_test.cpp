// notes_test.cpp - FILE_CON.DAT: which keys name a file, which line holds
// its note, and what adding, replacing and removing notes write back.
#include <filesystem>
#include <string>
#include <vector>

#include "browser/notes.h"
#include "emulator/core/alloc.h"
#include "emulator/core/encoding.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

class NotesTest : public ModuleStateTest {
 protected:
  void SetUp() override {
    ModuleStateTest::SetUp();
    SetSymbol("VORMIS", "C:/VOR");
  }
  void TearDown() override {
    ModuleStateTest::TearDown();
    EXPECT_EQ(LiveModuleBlocks(), 0) << "the store's lines outlived it";
  }
  // Writes the store from UTF-8 lines, as the module writes its files, and
  // loads it.
  void Store(const std::vector<std::string>& lines) {
    std::string bytes;
    for (const std::string& line : lines) bytes += Big5(line) + "\r\n";
    WriteFile("VOR/FILE_CON.DAT", bytes + "\x1A");
    notes_load();
  }
  // The note FILE_CON.DAT gives name in dir, in UTF-8; index through *index.
  std::string Note(const char* dir, const std::string& name, int32_t* index = nullptr) {
    char note[256];
    int32_t at;
    find_note(dir, Big5(name).c_str(), note, &at);
    if (index) *index = at;
    return Big5ToUtf8(note);
  }
  // Sets the note of name in dir as the browser does (find first), gives
  // whether the store changed.
  bool Set(const char* dir, const std::string& name, const std::string& note) {
    char old[256];
    int32_t index;
    std::string big5_name = Big5(name);
    TextNode* prev = find_note(dir, big5_name.c_str(), old, &index);
    return set_note(dir, big5_name.c_str(), old, index, prev, Big5(note).c_str());
  }
  // The store as saved, in UTF-8 lines.
  std::vector<std::string> Saved() {
    textlist_save(&FileNotes);
    std::string utf8 = Big5ToUtf8(ReadFile("VOR/FILE_CON.DAT"));
    std::vector<std::string> lines;
    for (size_t at = 0, end; (end = utf8.find("\r\n", at)) != std::string::npos; at = end + 2)
      lines.push_back(utf8.substr(at, end - at));
    return lines;
  }
};

TEST_F(NotesTest, KeysNameAFileInFourFormsWhateverTheirCase) {
  struct Case {
    const char* key;
    const char* dir;
    const char* name;
    bool names;
  } cases[] = {
      {"C:\\ACF\\P1.ACF", "C:\\ACF\\", "P1.ACF", true},
      {"P1.ACF", "C:\\ACF\\", "P1.ACF", true},
      {"c:/acf/p1.acf", "C:\\ACF\\", "P1.ACF", true},
      {"\\ACF\\P1.ACF", "C:\\ACF\\", "P1.ACF", true},
      {"C:\\ACF\\P1.ACF", "C:\\ACF\\", "p1.acf", true},
      {"D:\\ACF\\P1.ACF", "C:\\ACF\\", "P1.ACF", false},
      {"ACF\\P1.ACF", "C:\\ACF\\", "P1.ACF", false},      // relative: no form
      {"\\P1.ACF", "C:\\ACF\\", "P1.ACF", false},         // another directory
      {"1.ACF", "C:\\ACF\\", "P1.ACF", true},             // the end of a name
      {"1.ACF", "D:\\X\\", "Q1.ACF", true},
      {"1.ACF", "C:\\1.ACF\\", "P1.ACF", false},          // first found in the directory
      {"P1.AC", "C:\\ACF\\", "P1.ACF", false},
      {"P1.ACF.BAK", "C:\\ACF\\", "P1.ACF", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(note_key_matches(c.key, c.dir, c.name) != 0, c.names) << c.key << " / " << c.dir << c.name;
}

TEST_F(NotesTest, ABig5TrailByteIsNotAPathSeparator) {
  // 功 is A5 5C: the key is a bare name ending the file's name, not a path.
  std::string key = Big5("功.ACF"), name = Big5("成功.ACF");
  EXPECT_TRUE(note_key_matches(key.c_str(), "C:\\ACF\\", name.c_str()));
  // Nor does a bare key match from the middle of a character: 乙 is A4 41,
  // whose second byte is the letter A.
  std::string other = Big5("乙.ACF");
  EXPECT_FALSE(note_key_matches("A.ACF", "C:\\ACF\\", other.c_str()));
  EXPECT_TRUE(note_key_matches("A.ACF", "C:\\ACF\\", "BA.ACF"));
}

TEST_F(NotesTest, TheFirstLineNamingAFileHoldsItsFirstWordAsTheNote) {
  Store({"ONEWORD", "D:\\ACF\\P1.ACF 地下", "C:\\ACF\\P1.ACF 一樓 二樓", "P1.ACF 三樓", "1.ACF X"});
  int32_t index;
  EXPECT_EQ(Note("C:\\ACF\\", "P1.ACF", &index), "一樓");
  EXPECT_EQ(index, 1);  // the one-word line was dropped on reading
  EXPECT_EQ(Note("C:\\ACF\\", "Q1.ACF"), "X");
  EXPECT_EQ(Note("C:\\ACF\\", "Q2.ACF", &index), "");
  EXPECT_EQ(index, -1);
}

TEST_F(NotesTest, AListingFindsTheSameNotesWhenTheStoreOutgrowsItsRoom) {
  struct Case {
    int lines;   // lines before the one that names P1.ACF
    int length;  // of their keys
  } cases[] = {
      {NOTES_LISTING_KEYS + 5, 10},                  // more lines than keys made ready
      {NOTES_LISTING_TEXT / 250 + 5, 249},           // more bytes of keys
  };
  for (const Case& c : cases) {
    std::vector<std::string> lines = {"Q1.ACF 乙"};
    for (int i = 1; i < c.lines; i++) {
      std::string key = "K" + std::to_string(i);
      lines.push_back(key + std::string(c.length - key.size(), 'X') + " n");
    }
    lines.push_back("c:/acf/p1.acf 一樓");
    lines.push_back("P1.ACF 重複");
    Store(lines);
    notes_begin_listing();
    int32_t index;
    EXPECT_EQ(Note("C:\\ACF\\", "Q1.ACF", &index), "乙");
    EXPECT_EQ(index, 0);
    EXPECT_EQ(Note("C:\\ACF\\", "P1.ACF", &index), "一樓") << c.lines;
    EXPECT_EQ(index, c.lines);
    EXPECT_EQ(Note("C:\\ACF\\", "P2.ACF", &index), "");
    EXPECT_EQ(index, -1);
    // A change to the store ends the listing: the lines have moved up.
    EXPECT_TRUE(Set("C:\\ACF\\", "Q1.ACF", ""));
    EXPECT_EQ(Note("C:\\ACF\\", "P1.ACF", &index), "一樓");
    EXPECT_EQ(index, c.lines - 1);
    notes_end_listing();
    textlist_free(&FileNotes);
  }
}

TEST_F(NotesTest, AddingReplacingAndRemovingANoteRewriteOnlyItsLine) {
  Store({"ONEWORD", "C:\\ACF\\P1.ACF 一樓 二樓"});
  EXPECT_TRUE(Set("C:\\ACF\\", "P2.ACF", "三樓"));
  EXPECT_EQ(Saved(), (std::vector<std::string>{"C:\\ACF\\P1.ACF 一樓 二樓", "C:\\ACF\\P2.ACF 三樓"}));
  EXPECT_TRUE(Set("C:\\ACF\\", "P2.ACF", "四樓 五"));  // the last line: the tail moves
  EXPECT_TRUE(Set("C:\\ACF\\", "P3.ACF", "六"));       // appended after the moved tail
  EXPECT_TRUE(Set("C:\\ACF\\", "P1.ACF", "七"));        // the first line: the head moves
  EXPECT_EQ(Saved(), (std::vector<std::string>{"P1.ACF 七", "P2.ACF 四樓 五", "C:\\ACF\\P3.ACF 六"}));
  EXPECT_EQ(Note("C:\\ACF\\", "P2.ACF"), "四樓");
  EXPECT_TRUE(Set("C:\\ACF\\", "P2.ACF", ""));
  EXPECT_EQ(Saved(), (std::vector<std::string>{"P1.ACF 七", "C:\\ACF\\P3.ACF 六"}));
  EXPECT_EQ(FileNotes.count, 2);
}

TEST_F(NotesTest, ANoteLikeTheOldOneOrBlankWhereNoneWasChangesNothing) {
  Store({"C:\\ACF\\P1.ACF 一樓 二樓"});
  EXPECT_FALSE(Set("C:\\ACF\\", "P1.ACF", "一樓"));
  EXPECT_FALSE(Set("C:\\ACF\\", "P2.ACF", ""));
  EXPECT_FALSE(Set("C:\\ACF\\", "P2.ACF", "   "));
  EXPECT_EQ(FileNotes.modified, 0);
  EXPECT_TRUE(Set("C:\\ACF\\", "P1.ACF", " \t"));  // blanks only: the note goes
  EXPECT_EQ(FileNotes.count, 0);
}

TEST_F(NotesTest, OnlyTheFirstOfTwoLinesForAFileIsReplacedOrRemoved) {
  Store({"c:/acf/p1.acf A", "P1.ACF B"});
  EXPECT_TRUE(Set("C:\\ACF\\", "P1.ACF", "C"));
  EXPECT_EQ(Saved(), (std::vector<std::string>{"P1.ACF C", "P1.ACF B"}));
  EXPECT_TRUE(Set("C:\\ACF\\", "P1.ACF", ""));
  EXPECT_EQ(Note("C:\\ACF\\", "P1.ACF"), "B");
}

TEST_F(NotesTest, ALineThatCouldNotBeReadBackIsRefusedWithAnAlert) {
  Store({"C:\\ACF\\P1.ACF A"});
  const std::string dir = "C:\\" + std::string(200, 'D') + "\\";  // 204 bytes
  // Added with the full path: 204 + 6 + 1 + 44 = 255 fits, one more does not.
  EXPECT_TRUE(Set(dir.c_str(), "P2.ACF", std::string(44, 'n')));
  EXPECT_FALSE(Set(dir.c_str(), "P3.ACF", std::string(45, 'n')));
  // Replaced with the bare name: 6 + 1 + 248 = 255.
  EXPECT_TRUE(Set("C:\\ACF\\", "P1.ACF", std::string(248, 'r')));
  EXPECT_FALSE(Set("C:\\ACF\\", "P1.ACF", std::string(249, 'r')));
  EXPECT_FALSE(Set("C:\\MY DOCS\\", "P4.ACF", "x"));
  EXPECT_FALSE(Set("C:\\ACF\\", "P5.ACF", "two\nlines"));
  for (const std::string& line : Saved()) EXPECT_LE(line.size(), 255u) << line;
  EXPECT_EQ(FileNotes.count, 2);
  EXPECT_EQ(Note("C:\\ACF\\", "P1.ACF").size(), 248u);
  EXPECT_NE(Output().find("[Alert] This note does not fit in a line of FILE_CON.DAT"), std::string::npos)
      << Output();
  EXPECT_NE(Output().find("[Alert] This file's path holds a blank"), std::string::npos);
  EXPECT_NE(Output().find("[Alert] A note must be one line"), std::string::npos);

  // No path for the store: no change could be written, so none is taken.
  textlist_free(&FileNotes);
  SetSymbol("VORMIS", "C:/" + std::string(250, 'H'));
  notes_load();
  EXPECT_FALSE(Set("C:\\ACF\\", "P1.ACF", "x"));
  EXPECT_EQ(FileNotes.count, 0);
  EXPECT_NE(Output().find("[Alert] FILE_CON.DAT cannot be written: its path in the home directory is "
                          "longer than 255 characters. The note is unchanged."),
            std::string::npos)
      << Output();
}

TEST_F(NotesTest, OutOfMemoryLeavesTheLineAsItWas) {
  Store({"C:\\ACF\\P1.ACF A"});
  FailAllocation(Heap::kModule);
  EXPECT_FALSE(Set("C:\\ACF\\", "P1.ACF", "B"));
  FailAllocation(Heap::kModule);
  EXPECT_FALSE(Set("C:\\ACF\\", "P2.ACF", "B"));
  EXPECT_EQ(FileNotes.modified, 0);
  EXPECT_EQ(Note("C:\\ACF\\", "P1.ACF"), "A");
  EXPECT_NE(Output().find("[Alert] Memory Fault !"), std::string::npos) << Output();
}

TEST_F(NotesTest, AMissingStoreIsEmptyAndTheFirstNoteCreatesIt) {
  std::filesystem::create_directory(LinuxPath("VOR"));
  notes_load();
  EXPECT_EQ(FileNotes.count, 0);
  EXPECT_EQ(Note("C:\\ACF\\", "P1.ACF"), "");
  EXPECT_TRUE(Set("C:\\ACF\\", "P1.ACF", "一樓"));
  EXPECT_EQ(Saved(), (std::vector<std::string>{"C:\\ACF\\P1.ACF 一樓"}));
  EXPECT_EQ(ReadFile("VOR/FILE_CON.DAT"), Big5("C:\\ACF\\P1.ACF 一樓\r\n\x1A"));
}

}  // namespace
}  // namespace vorhost::testing
