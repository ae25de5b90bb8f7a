// ltgen_test.cpp - VOR_LT_LO: the three linetype files and their loading.
#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/entry.h"
#include "linetool/catalogue.h"
#include "support/module_fixture.h"

namespace vorhost::testing {
namespace {

const char kHeader[] = ";;\r\n;;  VORMIS LineType file for (VOR_%cLINE) function\r\n;;\r\n";

std::string Header(char kind) {
  char buf[80];
  std::snprintf(buf, sizeof buf, kHeader, kind);
  return buf;
}

class LinetypeGeneratorTest : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    WriteFile("VOR/ELINE.CAT",
              "(\"E1\" \"  eline1\" \"E-POWER\" \"1\" \"\" \"\" \"a,.5,-.25\")\r\n"
              "(\"E2\" \"ELINE2\" \"E-POWER\" \"1\" \"\" \"\" \".5,-.25\")\r\n"
              "(\"E3\" \"Gas_run\" \"P\" \"2\" \"\" \"\" \"A,.5,-.2,[\\\"gas\\\",STANDARD,S=.1,R=0.0,X=-0.1,Y=-.05],-.25\")\r\n"
              "(\"E4\" \"\" \"P\" \"2\" \"\" \"\" \"A,1,-1\")\r\n\x1A");
    WriteFile("VOR/PLINE.CAT", "(\"P1\" \"PLINE1\" \"P-CW\" \"4\" \"\" \"\" \"A,1,-.5,0,-.5\")\r\n\x1A");
  }
  void TearDown() override {
    unsetenv("ACAD");
    ModuleTest::TearDown();
  }
  void Generate() {
    lisp::Value result;
    std::string err;
    ASSERT_TRUE(host_->module().Call(3, {}, &result, &err)) << err;
  }
  short Var(const char* name) {
    SysValue v;
    host_->document().sysvars().Get(name, &v);
    return std::get<short>(v);
  }
};

TEST_F(LinetypeGeneratorTest, WritesTheFilesByteForByteAndLoadsThem) {
  Generate();
  EXPECT_EQ(ReadFile("ELINE.LIN"), Header('E') +
                                       "*ELINE1\r\nA,.5,-.25\r\n"
                                       "*ELINE2\r\nA,.5,-.25\r\n"
                                       "*GAS_RUN\r\nA,.5,-.2,[\"GAS\",STANDARD,S=.1,R=0.0,X=-0.1,Y=-.05],-.25\r\n"
                                       "\x1A");
  EXPECT_EQ(ReadFile("SLINE.LIN"), Header('S') + "\x1A") << "a missing catalogue gives the header only";
  EXPECT_EQ(ReadFile("PLINE.LIN"), Header('P') + "*PLINE1\r\nA,1,-.5,0,-.5\r\n\x1A");
  EXPECT_NE(Output().find("run type \"E4\" left out"), std::string::npos) << Output();
  for (const char* name : {"ELINE1", "ELINE2", "GAS_RUN", "PLINE1"})
    EXPECT_NE(host_->document().tables().linetypes().Find(name), nullptr) << name;
  EXPECT_EQ(host_->document().tables().linetypes().Find("GAS_RUN")->elements.size(), 4u);
  EXPECT_EQ(Var("CMDECHO"), 1);
  EXPECT_EQ(Var("EXPERT"), 0);
  EXPECT_EQ(Var("FILEDIA"), 1);
  EXPECT_STREQ(KindName, "PLINE");

  Generate();  // again: already loaded linetypes are reloaded without a question
  EXPECT_FALSE(host_->commands().pending());
  EXPECT_EQ(ads_command(RTSTR, "LINETYPE", RTSTR, "S", RTSTR, "eline1", RTSTR, "", 0), RTNORM);
}

TEST_F(LinetypeGeneratorTest, FilesGoWhereTheyLieElseBesideAcadLin) {
  WriteFile("SUPPORT/ACAD.LIN", ";; host\r\n");
  WriteFile("OTHER/SLINE.LIN", "old\r\n");
  setenv("ACAD", "C:\\OTHER;C:\\SUPPORT", 1);
  Generate();
  EXPECT_TRUE(FileExists("SUPPORT/ELINE.LIN"));
  EXPECT_TRUE(FileExists("SUPPORT/PLINE.LIN"));
  EXPECT_EQ(ReadFile("OTHER/SLINE.LIN"), Header('S') + "\x1A");
  EXPECT_FALSE(FileExists("ELINE.LIN"));
  EXPECT_NE(host_->document().tables().linetypes().Find("ELINE1"), nullptr);
}

TEST_F(LinetypeGeneratorTest, AFileThatCannotBeOpenedIsReportedAndSkipped) {
  std::filesystem::create_directories(LinuxPath("ELINE.LIN"));  // a folder in the file's place
  host_->document().sysvars().Force("EXPERT", short{1});
  Generate();
  EXPECT_NE(Output().find("\nFile open failure : C:\\ELINE.LIN"), std::string::npos) << Output();
  EXPECT_EQ(host_->document().tables().linetypes().Find("ELINE1"), nullptr);
  EXPECT_NE(host_->document().tables().linetypes().Find("PLINE1"), nullptr);
  EXPECT_EQ(Var("EXPERT"), 1);
  EXPECT_EQ(Var("CMDECHO"), 1);
}

TEST_F(LinetypeGeneratorTest, PathsThatDoNotFitAreNeverCutIntoAnotherFilesName) {
  {
    // A cut path would take ACA for ACAD.LIN and ELI for ELINE.LIN.
    const std::string folder(248, 'L');  // C:\ and 248 letters: 251 characters
    WriteFile(folder + "/ACA", "not the host's file");
    WriteFile(folder + "/ELI", "someone's data");
    WriteFile(folder + "/ACAD.LIN", ";; host\r\n");
    setenv("ACAD", ("C:\\" + folder).c_str(), 1);
    Generate();
    EXPECT_EQ(ReadFile(folder + "/ACA"), "not the host's file");
    EXPECT_EQ(ReadFile(folder + "/ELI"), "someone's data");
    EXPECT_EQ(ReadFile("ELINE.LIN").substr(0, 4), ";;\r\n") << "written in the current directory";
    std::filesystem::remove(LinuxPath("ELINE.LIN"));
  }
  {
    // ACAD.LIN fits in 255 characters, ELINE.LIN beside it would not.
    const std::string folder(243, 'M');
    WriteFile(folder + "/ACAD.LIN", ";; host\r\n");
    setenv("ACAD", ("C:\\" + folder).c_str(), 1);
    Generate();
    EXPECT_NE(Output().find("\nELINE.LIN not written: its path would be longer than 255 characters"),
              std::string::npos)
        << Output();
    EXPECT_FALSE(FileExists("ELINE.LIN"));
    EXPECT_NE(host_->document().tables().linetypes().Find("PLINE1"), nullptr) << "the other families go on";
    unsetenv("ACAD");
  }
  {
    // A home directory too long for the catalogue's path leaves the old file.
    WriteFile("ELINE.LIN", "kept");
    SetSymbol("VORMIS", "C:/" + std::string(250, 'H'));
    Generate();
    EXPECT_EQ(ReadFile("ELINE.LIN"), "kept");
    EXPECT_NE(Output().find("\nELINE.LIN not written: the path of ELINE.CAT in the home directory is "
                            "longer than 255 characters"),
              std::string::npos)
        << Output();
  }
}

}  // namespace
}  // namespace vorhost::testing
