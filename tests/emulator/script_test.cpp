// script_test.cpp - scripts playing the user: answers, directives,
// expectations and file edits.
#include <sys/stat.h>

#include "emulator/core/alloc.h"
#include "support/host_fixture.h"
#include "support/scratch_disk.h"

namespace vorhost::testing {
namespace {

class ScriptTest : public HostTest {
 protected:
  // Runs lines as a whole script; the failure text, or "" when it passed.
  std::string Run(std::vector<std::string> lines) {
    Answer(std::move(lines));
    host_->command_line().Run();
    return user_->failure();
  }
};

TEST_F(ScriptTest, ExpectationsPassAndFailWithTheirLineNumbers) {
  EXPECT_EQ(Run({"(setq a \"x\")", "#expect-result \"x\"", "#expect-output \"x\"",
                 "#expect-no-output error", "CMDECHO", "0", "#expect-sysvar CMDECHO 0",
                 "#expect-sysvar TEXTSIZE 2.5000", "#expect-no-file C:\\NONE.TXT"}),
            "");
  EXPECT_EQ(Run({"(setq a 1)", "", "#expect-result 2", "(setq a 3)"}),
            "answers:3: expected result 2, got 1");
  EXPECT_EQ(lisp::Print(host_->command_line().last_value()), "1") << "the script went on after a failure";
  EXPECT_EQ(Run({"#expect-sysvar NOSUCH 1"}), "answers:1: no system variable NOSUCH");
  EXPECT_EQ(Run({"#frobnicate"}), "answers:1: unknown directive #frobnicate");
}

TEST_F(ScriptTest, OutputExpectationsMatchInOrder) {
  EXPECT_EQ(Run({"(strcat \"first\")", "(strcat \"second\")", "#expect-output second",
                 "#expect-no-output first"}),
            "");
  std::string failure = Run({"(strcat \"third\")", "#expect-output fourth"});
  EXPECT_NE(failure.find("expected output not seen: \"fourth\""), std::string::npos) << failure;
}

TEST_F(ScriptTest, AnswersThatLookLikeDirectives) {
  EXPECT_EQ(Run({"(W1 \"\" \"pattern\")", "#*", "#expect-result \"#*\"", "(W1 \"\" \"p\")",
                 "#answer #edit  two blanks", "#expect-result \"#edit  two blanks\""}),
            "");
}

TEST_F(ScriptTest, InputEndingWhileTheHostAsksFailsTheScript) {
  EXPECT_EQ(Run({"(W1 \"a\" \"Your note\")"}),
            "answers:1: the script ended while the host was asking: Your note <a>:");
  EXPECT_EQ(Run({"(W1 \"a\" \"b\")", "#cancel", "#expect-result nil"}), "");
}

TEST_F(ScriptTest, FileEditsReplaceKeepOrAbandon) {
  WriteFile("VOR/ELINE.CAT", "\"old\"\r\n\x1A");
  EXPECT_EQ(Run({"(W2 \"c:/vor/eline.cat\")", "#edit", "\"E-1\" \"電力\"", "#cancel", "#end",
                 "#expect-result T"}),
            "");
  EXPECT_EQ(ReadFile("VOR/ELINE.CAT"), "\"E-1\" \"" + Big5("電力") + "\"\r\n#cancel\r\n");

  EXPECT_EQ(Run({"(W2 \"C:\\\\VOR\\\\ELINE.CAT\")", "#keep", "#expect-result T",
                 "(W2 \"C:/VOR/ELINE.CAT\")", "#cancel", "#expect-result nil"}),
            "");
  EXPECT_EQ(ReadFile("VOR/ELINE.CAT"), "\"E-1\" \"" + Big5("電力") + "\"\r\n#cancel\r\n");

  // Lines Big5 cannot hold, or a missing #end, leave the file alone.
  EXPECT_NE(Run({"(W2 \"C:/VOR/ELINE.CAT\")", "#edit", "emoji 😀", "#end"}), "");
  EXPECT_NE(Run({"(W2 \"C:/VOR/ELINE.CAT\")", "#edit", "unfinished"}), "");
  EXPECT_EQ(ReadFile("VOR/ELINE.CAT"), "\"E-1\" \"" + Big5("電力") + "\"\r\n#cancel\r\n");

  // A file that is not there makes the function fail.
  EXPECT_EQ(Run({"(W2 \"C:/VOR/NONE.CAT\")", "#expect-output error: file not found"}), "");
}

TEST_F(ScriptTest, AnEditThatCannotBeSavedLeavesTheFileAsItWas) {
  const std::string before = "\"old\"\r\n\x1A";
  WriteFile("F.CAT", before);
  chmod(LinuxPath("F.CAT").c_str(), 0444);
  EXPECT_EQ(Run({"(W2 \"C:/F.CAT\")", "#edit", "new", "#end", "#expect-result nil"}), "");
  EXPECT_NE(Output().find("\nCannot save C:\\F.CAT: the file is read-only."), std::string::npos) << Output();
  EXPECT_EQ(ReadFile("F.CAT"), before);

  ScratchDisk disk(LinuxPath("RO"));
  SKIP_UNLESS_MOUNTED(disk);
  WriteFile("RO/G.CAT", before);
  disk.MakeReadOnly();
  EXPECT_EQ(Run({"(W2 \"C:/RO/G.CAT\")", "#edit", "new", "#end", "#expect-result nil",
                 "(W2 \"C:/RO/G.CAT\")", "#keep", "#expect-result T"}),
            "");
  EXPECT_NE(Output().find("\nCannot save C:\\RO\\G.CAT: the disk is read-only; the file is left as it was."),
            std::string::npos)
      << Output();
  EXPECT_EQ(ReadFile("RO/G.CAT"), before);
  EXPECT_EQ(disk.Names(), std::vector<std::string>{"G.CAT"});
}

TEST_F(ScriptTest, AllocationFailuresCanBeArranged) {
  EXPECT_EQ(Run({"#fail-alloc 1"}), "");
  EXPECT_TRUE(AllocationAllowed(Heap::kModule));
  EXPECT_FALSE(AllocationAllowed(Heap::kModule));
  EXPECT_TRUE(AllocationAllowed(Heap::kModule));
}

}  // namespace
}  // namespace vorhost::testing
