// linetool_files_test.cpp - the line tool and its catalogue file: every
// text the user gives a field reads back as that field, what the user is
// told when a text cannot be held or the file has no path, and a catalogue
// read only in part that is said once and kept when saved.
#include <filesystem>
#include <string>
#include <vector>

#include "emulator/core/alloc.h"
#include "host/entry.h"
#include "linetool/catalogue.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

const char kRecord[] = "(\"E1\" \"LT\" \"L\" \"1\" \"x\" \"((S5.5 1))\" \"A,1\")";

class LineToolFileTest : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    WriteFile("VOR/ELINE.CAT", std::string(kRecord) + "\r\n\x1A");
  }
  // Runs (VOR_ELINE) with the user's events, all of which must apply.
  void Run(std::vector<std::string> events) {
    Answer(std::move(events));
    host_->command_line().Execute("(VOR_ELINE)");
    EXPECT_FALSE(user_->failed()) << user_->failure() << "\n" << Output();
  }
  // The seven fields of the first record of the saved catalogue, as the
  // next reading gives them.
  std::vector<std::string> SavedFields() {
    std::string text = ReadFile("VOR/ELINE.CAT");
    parse_record(text.substr(0, text.find("\r\n")).c_str(), 1);
    return {RecordFields, RecordFields + RECORD_FIELDS};
  }
  static std::vector<std::string> Fields(std::vector<std::string> changes) {
    std::vector<std::string> fields = {"E1", "LT", "L", "1", "x", "((S5.5 1))", "A,1"};
    for (size_t k = 0; k < changes.size(); k++)
      if (!changes[k].empty()) fields[k] = changes[k];
    return fields;
  }
};

TEST_F(LineToolFileTest, AQuoteGivenToAnyFieldReadsBackInThatField) {
  WriteFile("VOR/LAYER.MEO", "E\"L note\r\n");
  struct Case {
    const char* how;
    std::vector<std::string> events;
    std::vector<std::string> fields;  // "" where the field stays as it was
  } cases[] = {
      {"code", {"type e1 B\"1"}, {"B\\\"1"}},
      {"linetype", {"type e2 L\"T"}, {"", "L\\\"T"}},
      {"pattern", {"type e3 A,.5,[\"X\",STANDARD],-.25"}, {"", "", "", "", "", "", "A,.5,[\\\"X\\\",STANDARD],-.25"}},
      {"pattern as shown", {"type e3 A,[\\\"X\\\",ST]"}, {"", "", "", "", "", "", "A,[\\\"X\\\",ST]"}},
      {"layer", {"press b1", "select layer 0", "ok"}, {"", "", "E\\\"L"}},
      {"label", {"press b3", "2\"GIP"}, {"", "", "", "", "2\\\"GIP"}},
      {"item list", {"press b4", "type edit ((S\"5 2))", "ok"}, {"", "", "", "", "\\\"5x2", "((S\\\"5 2))"}},
  };
  for (const Case& c : cases) {
    WriteFile("VOR/ELINE.CAT", std::string(kRecord) + "\r\n\x1A");
    std::vector<std::string> events = {"select eline 0", "press editline"};
    events.insert(events.end(), c.events.begin(), c.events.end());
    events.insert(events.end(), {"ok", "ok"});
    Run(events);
    EXPECT_EQ(SavedFields(), Fields(c.fields)) << c.how << "\n" << Output();
  }
  EXPECT_EQ(Output().find("[Alert]"), std::string::npos) << Output();
}

TEST_F(LineToolFileTest, ATextAFieldCannotHoldIsRefusedAndTheFieldKept) {
  struct Case {
    std::vector<std::string> events;
    const char* alert;
    const char* shown;  // the tile showing the field as it was
  } cases[] = {
      {{"type e1 AB\\"},
       "The code ends in a backslash, which would run it into the next field; it was not taken.",
       ":\" = \"E1\"\n  e2"},
      {{"press b3", "x\\"},
       "The label ends in a backslash, which would run it into the next field; it was not taken.",
       "t3 text = \"x\""},
      {{"press b4", "type edit ((S5.5 1))\\", "ok"},
       "The item list ends in a backslash, which would run it into the next field; it was not taken.",
       "t4 text = \"((S5.5 1))\""},
  };
  for (const Case& c : cases) {
    WriteFile("VOR/ELINE.CAT", std::string(kRecord) + "\r\n\x1A");
    std::vector<std::string> events = {"select eline 0", "press editline"};
    events.insert(events.end(), c.events.begin(), c.events.end());
    events.insert(events.end(), {"#show", "ok", "ok"});
    size_t from = Output().size();
    Run(events);
    std::string out = Output().substr(from);
    EXPECT_NE(out.find(std::string("[Alert] ") + c.alert), std::string::npos) << out;
    EXPECT_NE(out.find(c.shown), std::string::npos) << out;
    EXPECT_EQ(SavedFields(), Fields({})) << c.alert;
  }
}

TEST_F(LineToolFileTest, AHomeDirectoryWithNoRoomForTheCatalogueIsSaid) {
  SetSymbol("VORMIS", "C:/" + std::string(250, 'H'));
  Run({"#show", "press editfile", "cancel"});
  const std::string alert =
      "[Alert] ELINE.CAT cannot be opened: its path in the home directory is longer than 255 characters.";
  size_t first = Output().find(alert);
  ASSERT_NE(first, std::string::npos) << Output();
  EXPECT_NE(Output().find(alert, first + 1), std::string::npos) << "editfile says it again\n" << Output();
  EXPECT_EQ(Output().find("Can not invoke"), std::string::npos) << "W2 is not called with no path";
}

TEST_F(LineToolFileTest, ACatalogueNotReadWholeIsSaidOnceAndKeptWhenSaved) {
  const std::string first = std::string(kRecord) + "\r\n";
  struct Case {
    std::string file;
    const char* why;
  } cases[] = {
      {first + "\x1A(\"E2\")\r\n", "an end mark (byte 1A) in line 2 hides the text after it"},
      {first + std::string("(\"E2\" \"L\0\0T\")\r\n", 15), "line 2 holds a NUL byte, and the rest of that line is not read"},
      {first + "\r\n(\"E2\" \"" + std::string(300, 'x') + "\")\r\n\x1A",
       "line 3 is longer than 255 characters and is taken in as several lines"},
  };
  for (const Case& c : cases) {
    WriteFile("VOR/ELINE.CAT", c.file);
    std::filesystem::remove(LinuxPath("VOR/ELINE.BAK"));
    const std::string alert = std::string("[Alert] C:\\VOR\\ELINE.CAT could not be read whole: ") + c.why +
                              ". If it is saved, the file as it is now is kept as C:\\VOR\\ELINE.BAK.";
    size_t from = Output().size();
    // Cancel writes nothing, so nothing needs keeping.
    Run({"select eline 0", "press del", "cancel"});
    EXPECT_NE(Output().find(alert, from), std::string::npos) << Output().substr(from);
    EXPECT_EQ(ReadFile("VOR/ELINE.CAT"), c.file);
    EXPECT_FALSE(FileExists("VOR/ELINE.BAK"));

    // Told once, also when the dialog opens again after a drawing operation.
    from = Output().size();
    Run({"press dimoldline", "", "select eline 0", "press del", "ok"});
    std::string out = Output().substr(from);
    size_t at = out.find(alert);
    ASSERT_NE(at, std::string::npos) << out;
    EXPECT_EQ(out.find(alert, at + 1), std::string::npos) << out;
    EXPECT_EQ(ReadFile("VOR/ELINE.BAK"), c.file) << c.why;
    EXPECT_EQ(ReadFile("VOR/ELINE.CAT").find("E1"), std::string::npos) << "the edit is saved";
  }
}

TEST_F(LineToolFileTest, ACatalogueCutShortByMemoryIsKeptWhenSaved) {
  const std::string file = std::string(kRecord) + "\r\n(\"E2\")\r\n(\"E3\")\r\n\x1A";
  WriteFile("VOR/ELINE.CAT", file);
  FailAllocation(Heap::kModule, 1);  // the second record finds no memory
  Run({"#show", "select eline 0", "press del", "ok"});
  EXPECT_NE(Output().find("[Alert] Memory Fault !\n[Alert] C:\\VOR\\ELINE.CAT could not be read whole: memory "
                          "ran out at line 2, and the lines from there on are not read. If it is saved, the "
                          "file as it is now is kept as C:\\VOR\\ELINE.BAK."),
            std::string::npos)
      << Output();
  EXPECT_EQ(ReadFile("VOR/ELINE.BAK"), file);
  EXPECT_EQ(ReadFile("VOR/ELINE.CAT"), "");
}

TEST(FieldStoredFormTest, OnlyQuotesNoBackslashEscapesGetOne) {
  struct Case {
    std::string given, held;
  } cases[] = {
      {"a\"b", "a\\\"b"},
      {"a\\\"b", "a\\\"b"},                            // already escaped
      {"\xA5\x5C\"", "\xA5\x5C\\\""},                  // 功 then a quote: its trail byte escapes nothing
      {"\xA5\x5C", "\xA5\x5C"},                        // ends in 功, not in a backslash
      {std::string(254, 'q') + "\"", ""},              // 256 bytes once escaped
      {"line\nbreak", ""},
  };
  for (const Case& c : cases) {
    char out[256] = "junk";
    int taken = field_stored_form(0, c.given.c_str(), out);
    EXPECT_EQ(taken, !c.held.empty()) << c.given;
    EXPECT_EQ(std::string(out), c.held) << c.given;
    if (!taken) continue;
    std::string record = "(\"" + std::string(out) + "\" \"next\")";
    parse_record(record.c_str(), 1);
    EXPECT_EQ(std::string(RecordFields[0]), c.held) << "reads back: " << c.given;
    EXPECT_STREQ(RecordFields[1], "next");
  }
}

}  // namespace
}  // namespace vorhost::testing
