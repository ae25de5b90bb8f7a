// browser_test.cpp - FILE_CON driven by a user's events: the paths and
// lists it shows, the order in which files are chosen, notes edited and
// written only on OK, and the dialog's failures.
#include <stdlib.h>
#include <unistd.h>
#include <utime.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "browser/browser.h"
#include "browser/notes.h"
#include "host/entry.h"
#include "emulator/core/alloc.h"
#include "emulator/core/encoding.h"
#include "emulator/platform/filesystem.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

// Wed Jan 02 02:03:55 1980 in UTC (the tests run with TZ=UTC).
constexpr time_t kDate = 315626635;

class BrowserTest : public ModuleStateTest {
 protected:
  void SetUp() override {
    ModuleStateTest::SetUp();
    SetSymbol("VORMIS", "C:/VOR");
    std::filesystem::create_directories(LinuxPath("VOR"));
    std::filesystem::create_directories(LinuxPath("ACF"));
    std::strcpy(BrowserPath, "C:\\ACF\\");
    std::strcpy(BrowserPattern, "*.ACF");
    ScheduleMode = 1;
  }
  void TearDown() override {
    unsetenv("VORMIS_FILES");
    ModuleStateTest::TearDown();
    for (const std::string& dir : drives_) std::filesystem::remove_all(dir);
  }
  // Runs the browser through the user's events, all of which must apply.
  void Run(std::vector<std::string> events, int result = RTNORM) {
    Answer(std::move(events));
    EXPECT_EQ(file_browser(), result);
    EXPECT_FALSE(user_->failed()) << user_->failure() << "\n" << Output();
    EXPECT_EQ(FileNotes.count, 0);
    EXPECT_EQ(LiveModuleBlocks(), 0);
  }
  // A file on C: dated kDate.
  void File(const std::string& path, const std::string& bytes = "x") {
    WriteFile(path, bytes);
    struct utimbuf times = {kDate, kDate};
    utime(LinuxPath(path).c_str(), &times);
  }
  // Mounts a new empty folder as drive letter; its Linux path.
  std::string Drive(char letter) {
    char dir[] = "/tmp/vor_drive_XXXXXX";
    EXPECT_NE(mkdtemp(dir), nullptr);
    drives_.push_back(dir);
    std::string err;
    EXPECT_TRUE(Files().Mount(letter, dir, &err)) << err;
    return dir;
  }
  // The rows of a list as the last #show printed them (UTF-8, tabs as "|").
  std::vector<std::string> Rows(const std::string& key) const {
    const std::string& out = Output();
    size_t at = out.rfind("\n  " + key + " list_box");
    std::vector<std::string> rows;
    if (at == std::string::npos) return rows;
    for (at = out.find('\n', at + 1); out.compare(at, 5, "\n    ") == 0; at = out.find('\n', at + 1)) {
      size_t colon = out.find(": ", at);
      rows.push_back(out.substr(colon + 2, out.find('\n', colon) - colon - 2));
    }
    return rows;
  }
  // Every line the #shows printed for a tile, in order.
  std::vector<std::string> Shown(const std::string& key) const {
    const std::string& out = Output();
    std::vector<std::string> lines;
    for (size_t at = out.find("\n  " + key + " "); at != std::string::npos;
         at = out.find("\n  " + key + " ", at + 1))
      lines.push_back(out.substr(at + 3, out.find('\n', at + 1) - at - 3));
    return lines;
  }
  static std::vector<int32_t> Chosen() { return {Selection, Selection + SelectionCount}; }
  std::vector<std::string> drives_;
};

TEST_F(BrowserTest, TheStartingPathIsMadeFull) {
  std::filesystem::create_directories(LinuxPath("Vor"));
  std::filesystem::remove(LinuxPath("VOR"));
  std::string d = Drive('D'), err;
  struct Case {
    const char* given;
    int drive;
    const char* cwd;
    const char* full;
  } cases[] = {
      {"C:/acf", 3, "C:\\", "C:\\ACF\\"},
      {"\\acf", 4, "C:\\", "D:\\ACF\\"},
      {"", 3, "C:\\Vor", "C:\\VOR\\"},
      {".", 3, "C:\\Vor", "C:\\VOR\\"},
      {"acf/old", 3, "C:\\Vor", "C:\\Vor\\ACF\\OLD\\"},  // the current directory keeps its case
      {"acf", 3, "C:\\", "C:\\ACF\\"},                   // no doubled "\" at the root
      {"C:\\ACF\\OLD\\..\\.\\\\NEW", 3, "C:\\", "C:\\ACF\\NEW\\"},
      {"c:\\..\\..\\acf\\", 3, "C:\\", "C:\\ACF\\"},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(Files().ChangeDirectory(c.cwd, &err)) << err;
    Files().SetCurrentDrive(c.drive);
    std::strcpy(BrowserPath, c.given);
    std::strcpy(BrowserPattern, "");
    Run({"#show", "cancel"});
    EXPECT_EQ(BrowserPath, std::string(c.full)) << c.given;
    EXPECT_EQ(BrowserPattern, std::string("*.*"));
    EXPECT_EQ(Shown("current_path").back(), "current_path text = \"目前目錄: " + Big5ToUtf8(c.full) + "\"");
    EXPECT_EQ(Files().CurrentDrive(), c.drive) << "the listing of drives puts the current one back";
  }

  // A current directory of 255 characters leaves no room for the final "\".
  const std::string a(120, 'A'), b(131, 'B');
  std::filesystem::create_directories(LinuxPath(a + "/" + b));
  ASSERT_TRUE(Files().ChangeDirectory("C:\\" + a + "\\" + b, &err)) << err;
  Files().SetCurrentDrive(3);
  for (const char* given : {"", "acf"}) {
    std::strcpy(BrowserPath, given);
    Run({"cancel"});
    EXPECT_EQ(BrowserPath, std::string(given[0] ? "C:\\ACF\\" : "C:\\")) << "from the root: " << given;
  }
}

TEST_F(BrowserTest, DirectoriesAreSortedBetweenTheirHeadAndTheDrives) {
  for (const char* dir : {"ACF/zeta", "ACF/OLD/A", "ACF/B", "ACF/.hidden"})
    std::filesystem::create_directories(LinuxPath(dir));
  Drive('D');
  Run({"#show", "double-click path 0", "#show", "cancel"});
  EXPECT_EQ(Rows("path"), (std::vector<std::string>{"ACF", "VOR", "<C:>", "<D:>"}));
  // The root has no "." and "..": the second #show was of C:\ and its rows
  // are all sorted. The first, of C:\ACF\, kept "\" and ".." at its head.
  size_t first = Output().find("  path list_box");
  std::string listing = Output().substr(first, Output().find("  type ", first) - first);
  EXPECT_EQ(listing,
            "  path list_box = \"\"\n    0: \\\n    1: ..\n    2: .hidden\n    3: B\n    4: OLD\n"
            "    5: zeta\n    6: <C:>\n    7: <D:>\n");
}

TEST_F(BrowserTest, DoubleClicksWalkTheTreeAndSingleClicksDoNothing) {
  std::filesystem::create_directories(LinuxPath("ACF/OLD/V1"));
  File("ACF/OLD/P1.ACF");
  File("ACF/P2.ACF");
  std::strcpy(BrowserPath, "C:\\ACF\\OLD\\");
  Run({"select path 1", "#show", "select file 0", "double-click path 1", "#show",  // ..
       "double-click path 2", "#show",                                            // OLD
       "double-click path 2", "#show",                                            // V1
       "double-click path 0", "#show", "ok"});                                    // \ .
  std::vector<std::string> paths = Shown("current_path");
  ASSERT_EQ(paths.size(), 5u);
  const char* want[] = {"C:\\ACF\\OLD\\", "C:\\ACF\\", "C:\\ACF\\OLD\\", "C:\\ACF\\OLD\\V1\\", "C:\\"};
  for (int i = 0; i < 5; i++) EXPECT_EQ(paths[i], std::string("current_path text = \"目前目錄: ") + want[i] + "\"");
  EXPECT_EQ(BrowserPath, std::string("C:\\"));
  EXPECT_EQ(SelectionCount, 0) << "entering a directory empties the choice";
}

TEST_F(BrowserTest, ADriveRowOpensTheDrivesCurrentDirectoryWhenItHoldsAnything) {
  std::string d = Drive('D'), err;
  std::filesystem::create_directories(d + "/WORK/SUB");
  std::ofstream(d + "/WORK/P9.ACF") << "x";
  ASSERT_TRUE(Files().ChangeDirectory("D:\\WORK", &err)) << err;
  Drive('E');  // empty: not usable
  // Rows of C:\ACF\: \ .. <C:> <D:> <E:>.
  Run({"double-click path 4", "#show", "double-click path 3", "#show", "ok"});
  EXPECT_EQ(BrowserPath, std::string("D:\\WORK\\"));
  std::vector<std::string> paths = Shown("current_path");
  EXPECT_EQ(paths[0], "current_path text = \"目前目錄: C:\\ACF\\\"") << "E: changed nothing";
  EXPECT_EQ(paths[1], "current_path text = \"目前目錄: D:\\WORK\\\"");
  ASSERT_EQ(Rows("file").size(), 1u);
  EXPECT_EQ(Rows("file")[0].substr(0, 7), "P9.ACF|");
  EXPECT_EQ(Rows("path")[2], "SUB");
  EXPECT_EQ(Files().CurrentDrive(), 3);
}

TEST_F(BrowserTest, APatternIsTheFirstWordTypedInUpperCase) {
  for (const char* f : {"ACF/P1.ACF", "ACF/P2.DWG", "ACF/x.dwg"}) File(f);
  Run({"#show", "select file 0", "type type *.dwg  extra", "#show", "type type  ", "#show", "ok"});
  std::vector<std::string> types = Shown("type");
  ASSERT_EQ(types.size(), 3u);
  EXPECT_EQ(types[1], "type edit_box \"檔案類型:\" = \"*.DWG\"");
  EXPECT_EQ(types[2], "type edit_box \"檔案類型:\" = \"*.*\"");
  EXPECT_EQ(Rows("file"), (std::vector<std::string>{"P1.ACF|Wed Jan 02 02:03:55 1980|",
                                                    "P2.DWG|Wed Jan 02 02:03:55 1980|",
                                                    "x.dwg|Wed Jan 02 02:03:55 1980|"}));
  EXPECT_EQ(BrowserPattern, std::string("*.*"));
  EXPECT_EQ(SelectionCount, 0) << "a new pattern empties the choice";
}

TEST_F(BrowserTest, FilesAreSortedByTheirBytesWithTheirDatesAndNotes) {
  for (const char* f : {"ACF/B.ACF", "ACF/a.acf", "ACF/A.ACF", "ACF/SUB.ACF/X"}) File(f);
  WriteFile("VOR/FILE_CON.DAT", Big5("c:/acf/a.acf 小寫 更多\r\nB.ACF 乙\r\n\x1A"));
  Run({"#show", "cancel"});
  EXPECT_EQ(Rows("file"), (std::vector<std::string>{"A.ACF|Wed Jan 02 02:03:55 1980|小寫",
                                                    "B.ACF|Wed Jan 02 02:03:55 1980|乙",
                                                    "a.acf|Wed Jan 02 02:03:55 1980|小寫"}))
      << "a directory matching the pattern is not a file";
  EXPECT_EQ(FileCount, 3);
}

TEST_F(BrowserTest, EachFileShowsTheNoteOfTheFirstLineThatNamesIt) {
  // Big5 trail bytes: 功 A5 5C and 蓋 BB 5C end in "\", 乙 A4 41 in "A";
  // 兀 A4 61 upper-cased bytewise is 乙.
  for (const char* f : {"P1.ACF", "p2.acf", "Q1.ACF", "X1.ACF", "P3.ACF", "BA.ACF", "成功.ACF", "蓋.ACF",
                        "乙.ACF", "兀.ACF", "1.ACF/Z1.ACF", "1.ACF/P1.ACF"})
    File(std::string("ACF/") + f);
  WriteFile("VOR/FILE_CON.DAT", Big5("D:\\ACF\\P1.ACF 地下\r\n"    // another drive
                                     "c:/acf/p1.acf 一樓 二樓\r\n"  // a full path in any case
                                     "P1.ACF 重複\r\n"              // a bare name, in any directory
                                     "\\ACF\\P2.ACF 二樓\r\n"       // no drive
                                     "q1.acf 三樓\r\n"
                                     "1.ACF 尾\r\n"                 // the end of names
                                     "功.ACF 功\r\n"
                                     "C:\\ACF\\蓋.ACF 蓋\r\n"
                                     "A.ACF 甲\r\n"                 // not inside a character
                                     "乙.ACF 乙\r\n"
                                     "C:\\ACF\\SUB\\P3.ACF 子\r\n"  // another directory
                                     "ACF\\P3.ACF 相對\r\n"         // relative: no form
                                     "\x1A"));
  // Name -> note as the file list shows them.
  auto notes = [this] {
    std::map<std::string, std::string> shown;
    for (const std::string& row : Rows("file")) {
      size_t bar = row.find('|'), last = row.rfind('|');
      shown[row.substr(0, bar)] = row.substr(last + 1);
    }
    return shown;
  };
  Run({"#show", "cancel"});
  EXPECT_EQ(notes(), (std::map<std::string, std::string>{{"P1.ACF", "一樓"},
                                                         {"p2.acf", "二樓"},
                                                         {"Q1.ACF", "三樓"},
                                                         {"X1.ACF", "尾"},
                                                         {"P3.ACF", ""},
                                                         {"BA.ACF", "甲"},
                                                         {"成功.ACF", "功"},
                                                         {"蓋.ACF", "蓋"},
                                                         {"乙.ACF", "乙"},
                                                         {"兀.ACF", "乙"}}));
  // In C:\ACF\1.ACF\ the key 1.ACF is first found in the directory.
  std::strcpy(BrowserPath, "C:\\ACF\\1.ACF\\");
  Run({"#show", "cancel"});
  EXPECT_EQ(notes(), (std::map<std::string, std::string>{{"P1.ACF", "重複"}, {"Z1.ACF", ""}}));
}

TEST_F(BrowserTest, FilesAreTakenInTheOrderTheyWereChosen) {
  for (const char* f : {"ACF/P0.ACF", "ACF/P1.ACF", "ACF/P2.ACF", "ACF/P3.ACF"}) File(f);
  Run({"select file 3", "#show", "select file 1", "#show", "select file 2", "select file 1", "ok"});
  EXPECT_EQ(Chosen(), (std::vector<int32_t>{3, 2}));
  std::vector<std::string> edits = Shown("edit");
  EXPECT_EQ(edits[0], "edit button \"編輯備註...\"");
  EXPECT_EQ(edits[1], "edit button disabled \"編輯備註...\"");
  EXPECT_EQ(CurrentFile, -1);
  Run({"select file 2", "select file 0", "select file 2", "ok"});
  EXPECT_EQ(Chosen(), (std::vector<int32_t>{0}));
  EXPECT_EQ(CurrentFile, 0);
  EXPECT_EQ(std::string(FileEntries[Selection[0]]).substr(0, 7), "P0.ACF\t");
}

TEST_F(BrowserTest, AllAndNoneChooseEveryFileOrNone) {
  for (const char* f : {"ACF/P0.ACF", "ACF/P1.ACF", "ACF/P2.ACF"}) File(f);
  Run({"press all", "#show", "select file 1", "ok"});
  EXPECT_NE(Output().find("file list_box = \"0 1 2\""), std::string::npos) << Output();
  EXPECT_EQ(Shown("edit").back(), "edit button disabled \"編輯備註...\"");
  EXPECT_EQ(Chosen(), (std::vector<int32_t>{0, 2}));
  Run({"press all", "press none", "#show", "ok"});
  EXPECT_EQ(SelectionCount, 0);
  EXPECT_EQ(Shown("file").back(), "file list_box = \"\"");

  std::filesystem::remove(LinuxPath("ACF/P1.ACF"));
  std::filesystem::remove(LinuxPath("ACF/P2.ACF"));
  Run({"press all", "press edit", "一樓", "ok"});  // one file: edit is enabled
  EXPECT_EQ(Chosen(), (std::vector<int32_t>{0}));
  EXPECT_EQ(CurrentFile, 0);
}

TEST_F(BrowserTest, ANoteEditedShowsAtOnceAndIsWrittenOnlyOnOk) {
  File("ACF/P1.ACF");
  File("ACF/P2.ACF");
  const std::string store = Big5("C:\\ACF\\P1.ACF 一樓 舊\r\n\x1A");
  WriteFile("VOR/FILE_CON.DAT", store);
  const std::vector<std::string> events = {"select file 0", "press edit", "二樓 新", "select file 0",
                                           "select file 1", "press edit", "三樓",  "#show"};
  std::vector<std::string> cancelled = events;
  cancelled.push_back("cancel");
  Run(cancelled);
  EXPECT_EQ(Rows("file"), (std::vector<std::string>{"P1.ACF|Wed Jan 02 02:03:55 1980|二樓 新",
                                                    "P2.ACF|Wed Jan 02 02:03:55 1980|三樓"}));
  EXPECT_NE(Output().find("請輸入:中文備註"), std::string::npos) << Output();
  EXPECT_NE(Output().find("<一樓>"), std::string::npos) << "the old note is the default";
  EXPECT_EQ(ReadFile("VOR/FILE_CON.DAT"), store);
  EXPECT_EQ(SelectionCount, 0);

  std::vector<std::string> accepted = events;
  accepted.push_back("ok");
  Run(accepted);
  EXPECT_EQ(Big5ToUtf8(ReadFile("VOR/FILE_CON.DAT")),
            "P1.ACF 二樓 新\r\nC:\\ACF\\P2.ACF 三樓\r\n\x1A");
  EXPECT_EQ(Chosen(), (std::vector<int32_t>{1}));
}

TEST_F(BrowserTest, AThousandAndTwoHundredFilesAreListedAs999) {
  for (int i = 0; i < 1200; i++) {
    char name[32];
    std::snprintf(name, sizeof name, "ACF/F%04d.ACF", i);
    std::ofstream(LinuxPath(name)) << "x";
  }
  Run({"press all", "ok"});
  EXPECT_EQ(FileCount, 999);
  ASSERT_EQ(SelectionCount, 999);
  EXPECT_EQ(Selection[998], 998);
  EXPECT_EQ(std::string(FileEntries[998]).substr(0, 10), "F0998.ACF\t");
}

TEST_F(BrowserTest, NamesThatDoNotFitARowAreLeftOutAndLongPathsRefused) {
  const std::string dir(250, 'D'), file(230, 'F');
  std::filesystem::create_directories(LinuxPath("ACF/" + dir));
  File("ACF/" + file + ".ACF");
  File("ACF/P1.ACF");
  File("ACF/P1\tX.ACF");  // its row would give back the name P1
  Run({"#show", "double-click path 2", "ok"});
  EXPECT_EQ(Rows("file"), (std::vector<std::string>{"P1.ACF|Wed Jan 02 02:03:55 1980|"}));
  EXPECT_EQ(Rows("path")[2], dir);
  EXPECT_EQ(BrowserPath, std::string("C:\\ACF\\"));
  EXPECT_NE(Output().find("[Alert] The path of this directory is longer than 255 characters"),
            std::string::npos)
      << Output();
}

TEST_F(BrowserTest, ANotesStoreNotReadWholeIsSaidAndKeptWhenWritten) {
  File("ACF/P1.ACF");
  const std::string store = "C:\\ACF\\P1.ACF A\r\n\x1A" "C:\\ACF\\P2.ACF B\r\n";
  WriteFile("VOR/FILE_CON.DAT", store);
  Run({"select file 0", "press edit", "C", "ok"});
  EXPECT_NE(Output().find("[Alert] C:\\VOR\\FILE_CON.DAT could not be read whole: an end mark (byte 1A) in "
                          "line 2 hides the text after it. If it is saved, the file as it is now is kept as "
                          "C:\\VOR\\FILE_CON.BAK."),
            std::string::npos)
      << Output();
  EXPECT_EQ(ReadFile("VOR/FILE_CON.BAK"), store);
  EXPECT_EQ(ReadFile("VOR/FILE_CON.DAT"), "P1.ACF C\r\n\x1A");
}

TEST_F(BrowserTest, ADialogThatCannotBeHadChoosesNothing) {
  // The failure is reported to the host through the function that opened
  // the browser: (VOR_ACF) here.
  host_->module().Load(acrxEntryPoint);
  File("ACF/P1.ACF");
  Run({"select file 0", "ok"});
  ASSERT_EQ(SelectionCount, 1);
  char dir[] = "/tmp/vor_nodcl_XXXXXX";
  setenv("VORMIS_FILES", mkdtemp(dir), 1);
  Answer({});
  host_->command_line().Execute("(VOR_ACF)");
  EXPECT_NE(Output().find("error: Unable to load dialog box: BLK.DCL"), std::string::npos) << Output();
  EXPECT_EQ(SelectionCount, 0);
  EXPECT_EQ(file_browser(), RTERROR);
  rmdir(dir);
  unsetenv("VORMIS_FILES");

  std::ifstream in(std::string(VORMIS_FILES) + "/BLK.DCL", std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  size_t at = text.find("\nFILE_CON : dialog");
  ASSERT_NE(at, std::string::npos);
  text.replace(at + 1, 8, "FILE_GONE");
  WriteFile("BLK.DCL", text);  // the current directory is searched first
  host_->command_line().Execute("(VOR_ACF)");
  EXPECT_NE(Output().find("error: Unable to initialize dialog box: FILE_CON"), std::string::npos) << Output();
  EXPECT_EQ(file_browser(), RTERROR);
  EXPECT_EQ(LiveModuleBlocks(), 0);
}

TEST_F(BrowserTest, MissingHostFunctionsAreAlertedAndChangeNothing) {
  File("ACF/P1.ACF");
  Run({"press help", "cancel"});
  EXPECT_EQ(Output().find("[Alert]"), std::string::npos) << Output();
  host_->lisp().Undefine("W1");
  host_->lisp().Undefine("ADS_HELP");
  Run({"select file 0", "press edit", "press help", "ok"});
  EXPECT_NE(Output().find("[Alert] Can not invoke function : W1"), std::string::npos) << Output();
  EXPECT_NE(Output().find("[Alert] Can not invoke function : ADS_HELP"), std::string::npos);
  EXPECT_FALSE(FileExists("VOR/FILE_CON.DAT"));
}

}  // namespace
}  // namespace vorhost::testing
