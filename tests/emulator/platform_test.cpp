// platform_test.cpp - the emulated drives, text-mode files and directory searches.
#include "host/platform.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utime.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "emulator/core/encoding.h"
#include "emulator/platform/filesystem.h"
#include "emulator/platform/textfile.h"
#include "emulator/platform/warnings.h"
#include "support/scratch_disk.h"

namespace vorhost {
namespace {

namespace fs = std::filesystem;
using testing::ScratchDisk;

std::string Big5(std::string_view utf8) {
  std::string big5;
  EXPECT_TRUE(Utf8ToBig5(utf8, &big5)) << utf8;
  return big5;
}

std::string ReadStream(FILE* file) {
  std::string text;
  for (int c; (c = std::fgetc(file)) != EOF;) text += static_cast<char>(c);
  return text;
}

// Drives C: and D: over a fresh folder tree:
//   c/VOR/ELINE.CAT  c/ACF/{b.ACF,notes.txt,P1.ACF,p2.acf,Readme,Sub/}
//   c/Mixed/{CASE.TXT,Case.txt,case.txt}  d/Work/
class PlatformTest : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[] = "/tmp/vorhost_platform_XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    root_ = dir;
    for (const char* sub : {"c/VOR", "c/ACF/Sub", "c/Mixed", "d/Work"}) {
      fs::create_directories(root_ + "/" + sub);
    }
    for (const char* file :
         {"c/VOR/ELINE.CAT", "c/ACF/b.ACF", "c/ACF/notes.txt", "c/ACF/P1.ACF", "c/ACF/p2.acf",
          "c/ACF/Readme", "c/Mixed/CASE.TXT", "c/Mixed/Case.txt", "c/Mixed/case.txt"}) {
      WriteRaw(file, "data\r\n");
    }
    std::string err;
    ASSERT_TRUE(Files().Mount('C', root_ + "/c", &err)) << err;
    ASSERT_TRUE(Files().Mount('d', root_ + "/d", &err)) << err;
  }

  void TearDown() override {
    Files().Reset();
    std::error_code ec;
    fs::remove_all(root_, ec);
  }

  void WriteRaw(const std::string& rel, const std::string& bytes) {
    std::ofstream(root_ + "/" + rel, std::ios::binary) << bytes;
  }

  std::string ReadRaw(const std::string& rel) {
    std::ifstream in(root_ + "/" + rel, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }

  // The Linux path, below the tree, that a DOS path names.
  std::string Resolved(std::string_view dos_path) {
    std::string path;
    if (!Files().Resolve(dos_path, &path)) return "<unresolved>";
    return path.rfind(root_ + "/", 0) == 0 ? path.substr(root_.size() + 1) : "<outside>" + path;
  }

  // Every name a search gives, closing it; empty when it finds nothing.
  static std::vector<std::string> Find(const std::string& pattern) {
    std::vector<std::string> names;
    plat_finddata entry;
    intptr_t handle = plat_findfirst(pattern.c_str(), &entry);
    if (handle == -1) return names;
    do names.push_back(entry.name);
    while (plat_findnext(handle, &entry) == 0);
    EXPECT_EQ(plat_findclose(handle), 0);
    return names;
  }

  std::string root_;
};

TEST_F(PlatformTest, TextModeWritesCrLfAndReadsNewlines) {
  FILE* out = plat_fopen("C:\\VOR\\OUT.TXT", "w");
  ASSERT_NE(out, nullptr);
  std::fputs("one\n", out);
  std::fprintf(out, "%s\n", "two");
  std::fputc('\n', out);
  ASSERT_EQ(std::fclose(out), 0);
  EXPECT_EQ(ReadRaw("c/VOR/OUT.TXT"), "one\r\ntwo\r\n\r\n");

  out = plat_fopen("C:\\VOR\\OUT.TXT", "a");
  ASSERT_NE(out, nullptr);
  std::fputs("three\n", out);
  std::fclose(out);
  EXPECT_EQ(ReadRaw("c/VOR/OUT.TXT"), "one\r\ntwo\r\n\r\nthree\r\n");

  FILE* in = plat_fopen("C:\\VOR\\OUT.TXT", "r");
  ASSERT_NE(in, nullptr);
  std::string joined;
  char piece[3];  // fgets hands the lines over in pieces of two
  while (std::fgets(piece, sizeof piece, in)) joined += piece;
  std::fclose(in);
  EXPECT_EQ(joined, "one\ntwo\n\nthree\n");
}

TEST_F(PlatformTest, TextModeReadingRules) {
  const struct {
    std::string raw;
    std::string text;
  } kCases[] = {
      {"a\r\nb", "a\nb"},  {"a\rb", "a\rb"},        // a lone CR stays
      {"a\r", "a\r"},                               // also at the very end
      {"\r\r\n", "\r\n"},  {"ab\032cd\r\n", "ab"},  // 0x1A ends the file
      {"x\r\032y", "x\r"}, {"\032\032", ""},
  };
  for (const auto& c : kCases) {
    WriteRaw("c/VOR/T.TXT", c.raw);
    FILE* in = plat_fopen("C:\\VOR\\T.TXT", "r");
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(ReadStream(in), c.text) << ::testing::PrintToString(c.raw);
    EXPECT_EQ(std::fgetc(in), EOF) << "nothing after the end";
    std::fclose(in);
    in = plat_fopen("C:\\VOR\\T.TXT", "rb");
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(ReadStream(in), c.raw);
    std::fclose(in);
  }
}

TEST_F(PlatformTest, TextModeCrLfAcrossBufferBoundaries) {
  // CRs at 4095 and 8191 with their LFs after the 4 KiB marks, then lines
  // of every length up to 300 so pairs straddle other buffer sizes too.
  std::string raw = std::string(4095, 'x') + "\r\n" + std::string(4094, 'y') + "\r\n";
  for (int len = 0; len <= 300; ++len) raw += std::string(len, 'a' + len % 26) + "\r\n";
  std::string text;
  for (char c : raw) {
    if (c != '\r') text += c;
  }
  WriteRaw("c/VOR/BIG.TXT", raw);
  for (size_t stdio_buffer : {0, 1, 2, 5, 4096}) {
    FILE* in = plat_fopen("C:\\VOR\\BIG.TXT", "r");
    ASSERT_NE(in, nullptr);
    std::vector<char> buffer(stdio_buffer + 1);
    if (stdio_buffer > 0) setvbuf(in, buffer.data(), _IOFBF, stdio_buffer);
    std::string got;
    char piece[7];
    while (std::fgets(piece, sizeof piece, in)) got += piece;
    std::fclose(in);
    EXPECT_EQ(got, text) << "stdio buffer " << stdio_buffer;
  }
}

// What the module would see of a file that a UTF-8 editor wrote: the first
// such line is named on the command line, once per file and session.
TEST_F(PlatformTest, ReadingTextThatIsNotBig5IsWarnedAboutOnce) {
  std::vector<std::string> warnings;
  SetWarningSink([&](std::string_view text) { warnings.emplace_back(text); });
  const std::string utf8 = "\xE7\x85\xA7\xE6\x98\x8E";  // 照明
  const std::string big5 = "\xB7\xD3\xA9\xFA";
  const std::string ascii_lines(5000, 'x');
  const struct {
    std::string raw;
    std::string warning;  // empty for none
  } kCases[] = {
      {"A\r\n" + big5 + "\r\n\x1A", ""},
      {"H;P1\r\nX;1\xED" "6\r\n", ""},  // a schedule's diameter sign is no fault
      {"A\r\n\r\n" + utf8 + " B\r\n",
       "\nWarning: line 3 of NAME is not Big5 text; it reads as UTF-8"
       " (vorhost --import-text converts such a file)."},
      {"A\n" + utf8, "\nWarning: line 2 of NAME is not Big5 text; it reads as UTF-8"
                      " (vorhost --import-text converts such a file)."},  // no final line end
      {"A\r\n\xFF\r\n" + utf8 + "\r\n", "\nWarning: line 2 of NAME is not Big5 text."},
      {"A\r\n\x1A" + utf8, ""},  // the module never reads past 0x1A
      {ascii_lines + "\r\n" + ascii_lines + "\r\n" + utf8 + "\r\n",
       "\nWarning: line 3 of NAME is not Big5 text; it reads as UTF-8"
       " (vorhost --import-text converts such a file)."},  // across the read-ahead
  };
  for (size_t i = 0; i < std::size(kCases); ++i) {
    std::string name = "T" + std::to_string(i) + ".TXT";
    WriteRaw("c/VOR/" + name, kCases[i].raw);
    for (int pass = 0; pass < 2; ++pass) {  // the second reading says nothing more
      FILE* in = plat_fopen(("C:\\VOR\\" + name).c_str(), "r");
      ASSERT_NE(in, nullptr);
      ReadStream(in);
      std::fclose(in);
    }
    std::vector<std::string> expected;
    if (std::string w = kCases[i].warning; !w.empty()) {
      expected.push_back(w.replace(w.find("NAME"), 4, "C:\\VOR\\" + name));
    }
    EXPECT_EQ(warnings, expected) << name;
    warnings.clear();
  }

  // Only what the module reads as text counts: not a file opened and closed
  // unread, nor bytes read as they are.
  WriteRaw("c/VOR/U.TXT", utf8 + "\r\n");
  SetWarningSink([&](std::string_view text) { warnings.emplace_back(text); });
  std::fclose(plat_fopen("C:\\VOR\\U.TXT", "r"));
  FILE* raw = plat_fopen("C:\\VOR\\U.TXT", "rb");
  ReadStream(raw);
  std::fclose(raw);
  EXPECT_TRUE(warnings.empty());
  FILE* in = plat_fopen("C:\\VOR\\U.TXT", "r");
  EXPECT_EQ(ReadStream(in), utf8 + "\n") << "the text itself is given as it is";
  std::fclose(in);
  EXPECT_EQ(warnings.size(), 1u);
  SetWarningSink(nullptr);
}

TEST_F(PlatformTest, TextModeAppendUpdateDropsEndMark) {
  WriteRaw("c/VOR/LOG.TXT", "a\r\n\x1A");
  FILE* file = plat_fopen("C:\\VOR\\LOG.TXT", "a+");
  ASSERT_NE(file, nullptr);
  std::fputs("b\n", file);
  std::rewind(file);
  EXPECT_EQ(ReadStream(file), "a\nb\n");
  std::fclose(file);
  EXPECT_EQ(ReadRaw("c/VOR/LOG.TXT"), "a\r\nb\r\n");
}

TEST_F(PlatformTest, EveryWriterRefusesAReadOnlyFileEvenToRoot) {
  WriteRaw("c/VOR/RO.CAT", "kept\r\n");
  chmod((root_ + "/c/VOR/RO.CAT").c_str(), 0444);
  for (const char* mode : {"w", "w+", "wb", "a", "a+", "ab", "r+", "r+b"}) {
    errno = 0;
    EXPECT_EQ(plat_fopen("C:\\VOR\\RO.CAT", mode), nullptr) << mode;
    EXPECT_EQ(errno, EACCES) << mode;
  }
  FILE* in = plat_fopen("C:\\VOR\\RO.CAT", "r");
  ASSERT_NE(in, nullptr) << "reading is allowed";
  EXPECT_EQ(ReadStream(in), "kept\n");
  std::fclose(in);
  EXPECT_EQ(ReadRaw("c/VOR/RO.CAT"), "kept\r\n");
}

// The messages of failed saves, as the host would show them.
std::vector<std::string> reported;
void Record(std::string_view message) { reported.emplace_back(message); }

TEST_F(PlatformTest, AFileWrittenWithWTakesItsPlaceOnlyWhenClosedWhole) {
  WriteRaw("c/VOR/ELINE.CAT", "old\r\n\x1A");
  FILE* out = plat_fopen("c:\\vor\\eline.cat", "w");
  ASSERT_NE(out, nullptr);
  std::fputs("new\n", out);
  std::fflush(out);
  EXPECT_EQ(ReadRaw("c/VOR/ELINE.CAT"), "old\r\n\x1A") << "readers see the old file until the close";
  ASSERT_EQ(std::fclose(out), 0);
  EXPECT_EQ(ReadRaw("c/VOR/ELINE.CAT"), "new\r\n");

  ScratchDisk disk(root_ + "/c/FULL");
  SKIP_UNLESS_MOUNTED(disk);
  WriteRaw("c/FULL/OLD.LIN", "old\r\n");
  disk.Fill();
  SetSaveReporter(&Record);
  reported.clear();
  for (const char* mode : {"w", "wb"}) {
    out = plat_fopen("C:/Full/old.lin", mode);
    ASSERT_NE(out, nullptr) << mode;
    std::fputs("new\n", out);
    errno = 0;
    EXPECT_EQ(std::fclose(out), EOF) << mode;
    EXPECT_EQ(errno, ENOSPC) << mode;
  }
  SetSaveReporter(nullptr);
  const std::string message = "Cannot save C:\\Full\\old.lin: the disk is full; the file is left as it was.";
  EXPECT_EQ(reported, std::vector<std::string>(2, message));
  EXPECT_EQ(ReadRaw("c/FULL/OLD.LIN"), "old\r\n");
  EXPECT_EQ(disk.Names(), (std::vector<std::string>{ScratchDisk::kFiller, "OLD.LIN"}));
}

TEST_F(PlatformTest, ResolvesNamesInAnyCaseWithinTheDrive) {
  const struct {
    const char* dos;
    const char* linux_rel;
  } kCases[] = {
      {"c:\\vor\\eline.cat", "c/VOR/ELINE.CAT"},
      {"C:/Vor/Eline.Cat", "c/VOR/ELINE.CAT"},
      {"C:\\VOR\\new.LIN", "c/VOR/new.LIN"},  // new names keep their case
      {"C:\\NewDir\\vor\\X", "c/NewDir/vor/X"},
      {"C:\\Mixed\\Case.txt", "c/Mixed/Case.txt"},  // an exact match wins
      {"C:\\Mixed\\cASE.tXT", "c/Mixed/CASE.TXT"},  // else the first in byte order
      {"C:\\..\\..\\VOR", "c/VOR"},
      {"C:\\ACF\\..\\..\\..\\etc\\passwd", "c/etc/passwd"},
      {"C:\\ACF\\.\\sub\\", "c/ACF/Sub"},
      {"C:\\", "c"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Resolved(c.dos), c.linux_rel) << c.dos;

  EXPECT_EQ(Files().DosPath("c:\\acf\\..\\p1.acf"), "C:\\p1.acf");
  EXPECT_EQ(Files().DosPath("d:/x/./y/"), "D:\\x\\y");

  FILE* out = plat_fopen("c:\\vor\\ELINE.LIN", "w");
  ASSERT_NE(out, nullptr);
  std::fclose(out);
  EXPECT_TRUE(fs::exists(root_ + "/c/VOR/ELINE.LIN"));
}

TEST_F(PlatformTest, LinuxFilesAreShownByTheirDosPaths) {
  const struct {
    std::string linux_rel;  // below the tree, or a path outside it
    std::string shown;      // "" for the Linux path itself
  } kCases[] = {
      {"c/VOR/ELINE.CAT", "C:\\VOR\\ELINE.CAT"},
      {"c", "C:\\"},
      {"d/Work/x.txt", "D:\\Work\\x.txt"},
      {"c/ACF/配電盤.ACF", Big5("C:\\ACF\\配電盤.ACF")},
      {"c/ACF/\xF0\x9F\x98\x80.ACF", ""},  // no Big5 name
      {"c/a\\b", ""},                      // a "\\" would read as a separator
      {"c/../d/x", ""},
      {"cx/file", ""},  // beside the drive's folder, not in it
      {"/etc/passwd", ""},
  };
  for (const auto& c : kCases) {
    std::string linux_path = c.linux_rel[0] == '/' ? c.linux_rel : root_ + "/" + c.linux_rel;
    EXPECT_EQ(Files().ShownName(linux_path), c.shown.empty() ? linux_path : c.shown) << c.linux_rel;
  }
  std::string err;
  ASSERT_TRUE(Files().Mount('E', root_ + "/c/VOR", &err)) << err;
  EXPECT_EQ(Files().ShownName(root_ + "/c/VOR/ELINE.CAT"), "E:\\ELINE.CAT") << "the nearest drive";
}

TEST_F(PlatformTest, EachDriveHasItsCurrentDirectory) {
  std::string err;
  EXPECT_EQ(plat_getdrive(), 3);
  ASSERT_TRUE(Files().ChangeDirectory("c:\\vor", &err)) << err;
  ASSERT_TRUE(Files().ChangeDirectory("D:work", &err)) << err;
  EXPECT_EQ(Files().CurrentDirectory(0), "C:\\VOR");
  EXPECT_EQ(Files().CurrentDirectory(4), "D:\\Work");
  EXPECT_EQ(plat_getdrive(), 3) << "changing D:'s directory leaves C: current";

  EXPECT_EQ(Resolved("ELINE.CAT"), "c/VOR/ELINE.CAT");
  EXPECT_EQ(Resolved("D:FILE"), "d/Work/FILE");
  EXPECT_EQ(Resolved("D:\\FILE"), "d/FILE");
  ASSERT_EQ(plat_chdrive(4), 0);
  EXPECT_EQ(Resolved("X"), "d/Work/X");
  EXPECT_EQ(Resolved("\\X"), "d/X");
  EXPECT_EQ(Resolved("C:ELINE.CAT"), "c/VOR/ELINE.CAT");

  char buf[16];
  EXPECT_STREQ(plat_getdcwd(0, buf, sizeof buf), "D:\\Work");
  EXPECT_EQ(plat_getdcwd(3, buf, 6), nullptr) << "\"C:\\VOR\" needs 7 bytes";
  EXPECT_STREQ(plat_getdcwd(3, buf, 7), "C:\\VOR");

  EXPECT_FALSE(Files().ChangeDirectory("\\NOPE", &err));
  EXPECT_FALSE(Files().ChangeDirectory("C:\\VOR\\ELINE.CAT", &err)) << "a file";
  EXPECT_FALSE(err.empty());
  EXPECT_EQ(Files().CurrentDirectory(0), "D:\\Work");
  ASSERT_TRUE(Files().ChangeDirectory("..", &err));
  EXPECT_EQ(Files().CurrentDirectory(0), "D:\\");
}

TEST_F(PlatformTest, UnmountedDrivesAndBadPathsFail) {
  std::string err;
  char buf[16];
  plat_finddata entry;
  EXPECT_EQ(Resolved("E:\\X"), "<unresolved>");
  EXPECT_EQ(Resolved(""), "<unresolved>");
  EXPECT_FALSE(Files().SetCurrentDrive(5));
  EXPECT_EQ(plat_chdrive(5), -1);
  EXPECT_EQ(plat_getdcwd(5, buf, sizeof buf), nullptr);
  EXPECT_EQ(plat_fopen("E:\\X", "w"), nullptr);
  EXPECT_EQ(plat_findfirst("E:\\*.*", &entry), -1);
  EXPECT_EQ(plat_fopen("C:\\VOR", "r"), nullptr) << "a directory is not a file";
  EXPECT_EQ(plat_fopen("C:\\VOR\\MISSING", "r"), nullptr);

  EXPECT_FALSE(Files().Mount('e', root_ + "/missing", &err));
  EXPECT_FALSE(err.empty());
  EXPECT_FALSE(Files().Mount('1', root_ + "/c", &err));

  Files().Unmount('c');
  EXPECT_FALSE(Files().IsMounted('C'));
  EXPECT_EQ(Resolved("ELINE.CAT"), "<unresolved>") << "the current drive is gone";
  EXPECT_EQ(plat_getdcwd(0, buf, sizeof buf), nullptr);
}

TEST_F(PlatformTest, FindListsDotsThenMatchesInCaseInsensitiveOrder) {
  using Names = std::vector<std::string>;
  const Names kAcf = {".", "..", "b.ACF", "notes.txt", "P1.ACF", "p2.acf", "Readme", "Sub"};
  const struct {
    const char* pattern;
    Names names;
  } kCases[] = {
      {"C:\\ACF\\*.*", kAcf},
      {"c:/acf/*", kAcf},
      {"C:\\*.*", {"ACF", "Mixed", "VOR"}},  // no dots at a root
      {"C:\\ACF\\*.acf", {"b.ACF", "P1.ACF", "p2.acf"}},
      {"C:\\ACF\\?1.*", {"P1.ACF"}},
      {"C:\\ACF\\readme.*", {"Readme"}},
      {"C:\\ACF\\SUB", {"Sub"}},
      {"C:\\ACF\\*.XYZ", {}},
      {"C:\\NOPE\\*.*", {}},
  };
  for (const auto& c : kCases) EXPECT_EQ(Find(c.pattern), c.names) << c.pattern;

  std::string err;
  ASSERT_TRUE(Files().ChangeDirectory("C:\\ACF", &err)) << err;
  EXPECT_EQ(Find("*.ACF"), (Names{"b.ACF", "P1.ACF", "p2.acf"}));
  EXPECT_EQ(Find("C:p*.*"), (Names{"P1.ACF", "p2.acf"}));
}

TEST_F(PlatformTest, FindReportsAttributesAndChecksHandles) {
  WriteRaw("c/ACF/P1.ACF", "123456");
  chmod((root_ + "/c/ACF/P1.ACF").c_str(), 0444);
  utimbuf times{1000000000, 1000000000};
  utime((root_ + "/c/ACF/P1.ACF").c_str(), &times);

  plat_finddata entry;
  intptr_t handle = plat_findfirst("C:\\ACF\\P1.ACF", &entry);
  ASSERT_NE(handle, -1);
  EXPECT_EQ(entry.attrib, unsigned{PLAT_A_ARCH | PLAT_A_RDONLY});
  EXPECT_EQ(entry.time_write, 1000000000);
  EXPECT_EQ(entry.size, 6);

  plat_finddata dirs;
  intptr_t second = plat_findfirst("C:\\ACF\\*", &dirs);
  ASSERT_NE(second, -1);
  EXPECT_NE(second, handle);
  EXPECT_STREQ(dirs.name, ".");
  EXPECT_EQ(dirs.attrib, unsigned{PLAT_A_SUBDIR});
  EXPECT_EQ(plat_findnext(handle, &entry), -1) << "the first search had one entry";
  ASSERT_EQ(plat_findnext(second, &dirs), 0) << "the second is unaffected";
  EXPECT_STREQ(dirs.name, "..");
  ASSERT_EQ(plat_findnext(second, &dirs), 0);
  EXPECT_EQ(dirs.attrib, unsigned{PLAT_A_ARCH}) << dirs.name;

  EXPECT_EQ(plat_findclose(handle), 0);
  EXPECT_EQ(plat_findclose(handle), -1);
  EXPECT_EQ(plat_findnext(handle, &entry), -1);
  EXPECT_EQ(plat_findclose(second), 0);
  for (intptr_t bad : {intptr_t{-1}, intptr_t{0}, intptr_t{12345}}) {
    EXPECT_EQ(plat_findclose(bad), -1);
    EXPECT_EQ(plat_findnext(bad, &entry), -1);
  }
}

TEST_F(PlatformTest, Big5NamesMapToUtf8OnDisk) {
  WriteRaw("c/ACF/配電盤.ACF", "panel\r\n");
  WriteRaw("c/ACF/\xF0\x9F\x98\x80.ACF", "");  // no Big5 form: never listed
  EXPECT_EQ(Find(Big5("C:\\ACF\\配電盤.*")), std::vector<std::string>{Big5("配電盤.ACF")});
  EXPECT_EQ(Find("C:\\ACF\\*.ACF").size(), 4u);

  FILE* in = plat_fopen(Big5("c:\\acf\\配電盤.acf").c_str(), "r");
  ASSERT_NE(in, nullptr);
  EXPECT_EQ(ReadStream(in), "panel\n");
  std::fclose(in);

  // The second byte of these is "\": it must not split the name.
  ASSERT_EQ(Big5("功")[1], '\\');
  std::string err;
  fs::create_directory(root_ + "/c/許可");
  ASSERT_TRUE(Files().ChangeDirectory(Big5("C:\\許可"), &err)) << err;
  EXPECT_EQ(Files().CurrentDirectory(0), Big5("C:\\許可"));
  FILE* out = plat_fopen(Big5("功能.TXT").c_str(), "w");
  ASSERT_NE(out, nullptr);
  std::fclose(out);
  EXPECT_TRUE(fs::exists(root_ + "/c/許可/功能.TXT"));
  EXPECT_EQ(Find(Big5("C:\\許可\\功*")), std::vector<std::string>{Big5("功能.TXT")});
}

TEST(WildcardTest, MatchesLikeDos) {
  const struct {
    std::string pattern;
    std::string name;
    bool match;
  } kCases[] = {
      {"*.*", "README", true},
      {"*.*", "A.B.C", true},
      {"*", "X.Y", true},
      {"*.ACF", "p1.acf", true},
      {"*.ACF", "P1.ACFX", false},
      {"?1.*", "P1", true},
      {"?1.*", "PP1.A", false},
      {"A*B*C", "AxxBxxBxC", true},
      {"ELINE.*", "ELINE", true},
      // A two-byte character is one "?" and its trail byte is no letter.
      {Big5("?盤"), Big5("配盤"), true},
      {Big5("乙"), Big5("兀"), false},  // trail bytes 'A' and 'a'
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(MatchWildcard(c.pattern, c.name), c.match) << c.pattern << " vs " << c.name;
  }
}

}  // namespace
}  // namespace vorhost
