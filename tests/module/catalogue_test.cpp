// catalogue_test.cpp - records, the line tool's rows, the code filter and
// the record edits, against dialogs of the emulated host.
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cable/spec_label.h"
#include "linetool/catalogue.h"
#include "support/module_fixture.h"
#include "emulator/core/text.h"

namespace vorhost::testing {
namespace {

const char kListDcl[] =
    "rows : dialog { : list_box { key = \"eline\"; } : list_box { key = \"codelist\"; } ok_only; }\n";

class CatalogueTest : public ModuleStateTest {
 protected:
  void SetUp() override {
    ModuleStateTest::SetUp();
    SetSymbol("VORMIS", "C:/VOR");
    WriteFile("ROWS.DCL", kListDcl);
    ASSERT_EQ(ads_load_dialog("ROWS.DCL", &file_), RTNORM);
    ASSERT_EQ(ads_new_dialog("rows", file_, NULLCB, &dialog_), RTNORM);
  }

  void Load(const std::vector<std::string>& records) {
    std::string text;
    for (const std::string& r : records) text += r + "\r\n";
    WriteFile("VOR/ELINE.CAT", text + "\x1A");
    catalogue_load();
  }
  std::vector<std::string> Rows(const char* key = "eline") {
    return host_->dialogs().Find(dialog_)->Find(key)->rows;
  }
  std::vector<std::string> Records() {
    std::vector<std::string> out;
    for (TextNode* n = Catalogue.head; n; n = n->next) out.push_back(n->text);
    return out;
  }
  std::string Field(int k) { return RecordFields[k - 1]; }

  int file_ = 0;
  ads_hdlg dialog_ = nullptr;
};

TEST_F(CatalogueTest, EscapedQuotesSurviveParseAndCompose) {
  const std::string line = "(\"E1\" \"ELINE1\" \"E-POWER\" \"1\" \"2\\\"GIP\" \"((in_GIP_2 1))\" \"A,.5,-.25\")";
  parse_record(line.c_str(), 1);
  EXPECT_EQ(Field(5), "2\\\"GIP");
  unescape_spec();
  EXPECT_STREQ(SpecDisplay, "2\"GIP");
  char out[256];
  ASSERT_EQ(compose_record(out), 1);
  EXPECT_EQ(out, line);
  parse_record(line.c_str(), 0);
  EXPECT_EQ(Field(6), "");  // fields 6 and 7 are read only when asked for
}

TEST_F(CatalogueTest, AnUnescapedQuoteShiftsTheFollowingFields) {
  parse_record("(\"E1\" \"ELINE1\" \"E\"X\" \"1\" \"label\")", 1);
  EXPECT_EQ(Field(3), "E");
  EXPECT_EQ(Field(4), " ");
  EXPECT_EQ(Field(5), " ");
  EXPECT_EQ(Field(6), "") << "the quote after label opens a field that never closes";
  parse_record("no quotes at all", 1);
  EXPECT_EQ(Field(1), "");
  parse_record("(\"only one", 1);
  EXPECT_EQ(Field(1), "");
}

TEST_F(CatalogueTest, ABig5TrailByte5CIsNoBackslashBeforeAQuote) {
  // 功 A5 5C, 許 B3 5C, 蓋 BB 5C: at the end of a field their trail byte
  // stands right before the closing quote.
  const std::string work = "\xA5\x5C", allow = "\xB3\x5C", cover = "\xBB\x5C";
  const std::string success = "\xA6\xA8" + work;  // 成功
  parse_record(("(\"" + work + "\" \"LT\" \"" + success + "\" \"1\" \"" + allow + "\\\"x" + cover +
                "\" \"((S5.5 1))\" \"A,1\")")
                   .c_str(),
               1);
  EXPECT_EQ(Field(1), work);
  EXPECT_EQ(Field(2), "LT");
  EXPECT_EQ(Field(3), success);
  EXPECT_EQ(Field(4), "1");
  EXPECT_EQ(Field(5), allow + "\\\"x" + cover);
  EXPECT_EQ(Field(6), "((S5.5 1))");
  EXPECT_EQ(Field(7), "A,1");
  unescape_spec();
  EXPECT_EQ(std::string(SpecDisplay), allow + "\"x" + cover);

  Load({"(\"" + work + "\" \"A\")", "(\"" + work + "\" \"B\")", "(\"" + allow + "\")"});
  code_table_build(dialog_);
  EXPECT_EQ(Rows("codelist"), (std::vector<std::string>{work, allow}));
}

TEST_F(CatalogueTest, ARecordTooLongForALineIsRefused) {
  parse_record("(\"E1\")", 1);
  std::memset(RecordFields[6], 'x', 240);
  char out[256] = "junk";
  EXPECT_EQ(compose_record(out), 0);
  EXPECT_STREQ(out, "");
  RecordFields[6][255 - 22 - 2] = '\0';  // 22 bytes of parentheses, quotes and blanks, "E1"
  EXPECT_EQ(compose_record(out), 1);
  EXPECT_EQ(std::strlen(out), 255u);
}

TEST_F(CatalogueTest, RowsAreCutAndFilteredByCode) {
  Load({"(\"E-POWER1\" \"ELINE-LONG-NAME\" \"E-POWER-X\" \"1234\" \"5.5x2\" \"\" \"\")",
        "(\"S1\" \"SL\" \"S\" \"4\" \"2\\\"GIP\" \"\" \"\")"});
  catalogue_rows(dialog_);
  EXPECT_EQ(Rows(), (std::vector<std::string>{"E-POWE\tELINE-LONG\tE-POWER-\t123\t5.5x2", "S1\tSL\tS\t4\t2\"GIP"}));
  SearchOn = 1;
  std::strcpy(CodePattern, "S*");
  catalogue_rows(dialog_);
  EXPECT_EQ(Rows().size(), 1u);
  EXPECT_EQ(RowMap[0], 1);
  CodePattern[0] = '\0';
  catalogue_rows(dialog_);
  EXPECT_TRUE(Rows().empty());
}

TEST_F(CatalogueTest, TheListShowsAtMost500Rows) {
  std::vector<std::string> records;
  for (int i = 0; i < 600; i++) records.push_back("(\"C" + std::to_string(i) + "\")");
  Load(records);
  catalogue_rows(dialog_);
  EXPECT_EQ(Rows().size(), 500u);
  EXPECT_EQ(RowMap[499], 499);
}

TEST_F(CatalogueTest, DuplicateAtTheHeadAndAtTheTail) {
  Load({"(\"A\")", "(\"B\")", "(\"C\")"});
  catalogue_rows(dialog_);
  SelectedRow = 0;
  catalogue_duplicate();
  EXPECT_EQ(Records(), (std::vector<std::string>{"(\"A\")", "(\"A\")", "(\"B\")", "(\"C\")"}));
  EXPECT_STREQ(Catalogue.head->text, "(\"A\")");
  EXPECT_EQ(Catalogue.modified, 1);
  catalogue_rows(dialog_);
  SelectedRow = 3;
  TextNode* tail = Catalogue.tail;
  catalogue_duplicate();
  EXPECT_EQ(Catalogue.tail, tail);
  EXPECT_EQ(Catalogue.count, 5);
  EXPECT_STREQ(Catalogue.tail->text, "(\"C\")");
}

TEST_F(CatalogueTest, ReplaceRewritesTheRecordAndItsRow) {
  Load({"(\"A\" \"L1\")", "(\"B\" \"L2\")"});
  catalogue_rows(dialog_);
  SelectedRow = 1;
  parse_record(Catalogue.tail->text, 1);
  std::strcpy(RecordFields[4], "2\\\"GIP");
  catalogue_replace(dialog_);
  EXPECT_STREQ(Catalogue.tail->text, "(\"B\" \"L2\" \"\" \"\" \"2\\\"GIP\" \"\" \"\")");
  EXPECT_EQ(Rows()[1], "B\tL2\t\t\t2\"GIP");
  std::memset(RecordFields[6], 'x', 250);
  catalogue_replace(dialog_);
  EXPECT_NE(Output().find("longer than a catalogue line can hold"), std::string::npos);
  EXPECT_STREQ(Catalogue.tail->text, "(\"B\" \"L2\" \"\" \"\" \"2\\\"GIP\" \"\" \"\")");
}

TEST_F(CatalogueTest, TheCodeListCutsCodesAt20BytesAndShowsEachOnce) {
  std::string twenty(20, 'K');
  Load({"(\"" + twenty + "A\")", "(\"B\")", "(\"" + twenty + "B\")", "no code", "(\"B\" \"x\")"});
  code_table_build(dialog_);
  EXPECT_EQ(Rows("codelist"), (std::vector<std::string>{twenty, "B"}));
  EXPECT_STREQ(CodeTable[0], twenty.c_str());
}

TEST_F(CatalogueTest, DeleteAndSaveKeepTheFileFormat) {
  Load({"(\"A\")", "", "(\"B\")"});
  catalogue_rows(dialog_);
  SelectedRow = 0;
  catalogue_delete();
  textlist_save(&Catalogue);
  EXPECT_EQ(ReadFile("VOR/ELINE.CAT"), "(\"B\")\r\n\x1A");
  char path[256];
  catalogue_path(path);
  EXPECT_STREQ(path, "C:\\VOR\\ELINE.CAT");
}

// The catalogues shipped with the examples: each label is what its item
// list makes by its family's rule (hand-typed labels have no list).
TEST(SampleCatalogueTest, LabelsFollowFromTheirItemLists) {
  for (const char* kind : {"ELINE", "SLINE", "PLINE"}) {
    std::string text;
    ASSERT_TRUE(ReadWholeFile(std::string(VORMIS_FILES) + "/../examples/c/VOR/" + kind + ".CAT", &text)) << kind;
    std::istringstream lines(text);
    int records = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.empty() || line[0] == '\x1A') continue;
      ASSERT_EQ(line.back(), '\r') << kind << ": lines end with CR LF";
      line.pop_back();
      ASSERT_LE(line.size(), 255u);
      parse_record(line.c_str(), 1);
      char composed[256];
      ASSERT_EQ(compose_record(composed), 1);
      EXPECT_EQ(composed, line) << "does not read back";
      records++;
      if (RecordFields[5][0] == '\0') continue;
      char label[256];
      spec_format_label(kind, RecordFields[5], label);
      EXPECT_STREQ(label, RecordFields[4]) << kind << " " << RecordFields[0];
    }
    EXPECT_GE(records, 5) << kind;
  }
}

}  // namespace
}  // namespace vorhost::testing
