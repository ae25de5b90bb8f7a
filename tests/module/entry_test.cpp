// entry_test.cpp - the module's entry point: messages, registration per
// drawing, dispatch by function code, and the module's state put back as it
// starts.
#include <cstring>
#include <string>

#include "browser/browser.h"
#include "browser/notes.h"
#include "cable/cable.h"
#include "emulator/core/alloc.h"
#include "host/dialogs.h"
#include "host/entry.h"
#include "layer/layer.h"
#include "linetool/catalogue.h"
#include "numtool/numtool.h"
#include "support/module_fixture.h"
#include "util/textutil.h"

namespace vorhost::testing {
namespace {

class EntryTest : public HostTest {
 protected:
  void ExpectRegistered(bool registered) {
    for (short code = 0; code < FUNCTION_COUNT; code++) {
      std::optional<short> found = host_->module().RegisteredCode(FunctionTable[code].name);
      if (registered) {
        ASSERT_TRUE(found) << FunctionTable[code].name;
        EXPECT_EQ(*found, code);
      } else {
        EXPECT_FALSE(found) << FunctionTable[code].name;
      }
    }
  }
};

TEST_F(EntryTest, TheTableNamesTheFiveFunctionsInCodeOrder) {
  const char* names[] = {"VOR_ELINE", "VOR_SLINE", "VOR_PLINE", "VOR_LT_LO", "VOR_ACF"};
  for (int code = 0; code < FUNCTION_COUNT; code++) {
    EXPECT_STREQ(FunctionTable[code].name, names[code]);
    EXPECT_NE(FunctionTable[code].handler, nullptr);
  }
  EXPECT_EQ(acrxGetApiVersion(), 0xE0000L);
}

TEST_F(EntryTest, RegistersForEveryDrawingAndUnregistersWhenItCloses) {
  ExpectRegistered(false);
  host_->module().Load(acrxEntryPoint);
  EXPECT_TRUE(host_->module().unlocked());
  ExpectRegistered(true);

  host_->NewDrawing();
  ExpectRegistered(true);

  acrxEntryPoint(kUnloadDwgMsg, nullptr);
  ExpectRegistered(false);
  acrxEntryPoint(kLoadDwgMsg, nullptr);
  ExpectRegistered(true);

  host_->module().Unload();
  ExpectRegistered(false);
}

TEST_F(EntryTest, AnswersZeroToEveryMessage) {
  host_->module().Load(acrxEntryPoint);
  for (int msg : {int{kNullMsg}, 6, 42, -1, int{kLoadDwgMsg}}) EXPECT_EQ(acrxEntryPoint(msg, nullptr), 0);
}

TEST_F(EntryTest, DispatchRunsEachCodeWithAVoidResult) {
  host_->module().Load(acrxEntryPoint);
  for (int code = 0; code < FUNCTION_COUNT; code++) {
    lisp::Value result = lisp::Value::String("stale");
    std::string err;
    EXPECT_TRUE(host_->module().Call(code, {lisp::Value::String("E*")}, &result, &err)) << err;
    EXPECT_EQ(result.kind, lisp::Value::Kind::kVoid) << code;
    EXPECT_EQ(CurrentArgs, nullptr) << "the argument list outlived its call";
  }
}

TEST_F(EntryTest, AnUnknownCodeFailsWithoutRunningAHandler) {
  host_->module().Load(acrxEntryPoint);
  for (int code : {5, -1, 1000}) {
    lisp::Value result;
    std::string err;
    EXPECT_FALSE(host_->module().Call(code, {}, &result, &err)) << code;
    EXPECT_EQ(err, "Received nonexistent function code.");
  }
}

TEST_F(EntryTest, TheCommandLineReachesTheRegisteredFunctions) {
  host_->module().Load(acrxEntryPoint);
  host_->command_line().Execute("(VOR_ELINE \"E*\")");
  host_->command_line().Execute("(vor_acf)");
  EXPECT_EQ(Output().find("error"), std::string::npos) << Output();
  host_->command_line().Execute("(VOR_NONE)");
  EXPECT_NE(Output().find("error: null function"), std::string::npos);
}

class ModuleResetTest : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    WriteFile("VOR/SLINE.CAT", "(\"S1\" \"SLINE1\" \"S-TEL\" \"2\" \"x\" \"\" \"A,1,-1\")\r\n\x1A");
  }
};

TEST_F(ModuleResetTest, UnloadForgetsWhatLivesFromCallToCallButANewDrawingDoesNot) {
  Answer({"toggle dimline", "type dimlinegap 3.5", "cancel"});
  host_->command_line().Execute("(VOR_SLINE \"S*\")");
  ASSERT_FALSE(user_->failed()) << user_->failure() << "\n" << Output();
  auto expect_session = [&](const char* when) {
    EXPECT_STREQ(KindName, "SLINE") << when;
    EXPECT_STREQ(CodePattern, "S*") << when;
    EXPECT_EQ(SearchOn, 1) << when;
    EXPECT_EQ(LabelOn, 1) << when;
    EXPECT_STREQ(LabelGap, "3.5") << when;
  };
  expect_session("after the call");
  host_->NewDrawing();
  expect_session("in a new drawing");

  host_->module().Unload();
  EXPECT_STREQ(KindName, "ELINE");
  EXPECT_STREQ(CodePattern, "");
  EXPECT_EQ(SearchOn, 0);
  EXPECT_EQ(LabelOn, 0);
  EXPECT_STREQ(LabelGap, "");
}

TEST_F(ModuleResetTest, ResetEmptiesEveryTextAndFreesEveryList) {
  long blocks = LiveModuleBlocks();
  std::strcpy(KindName, "SLINE");
  catalogue_load();
  WriteFile("VOR/FILE_CON.DAT", "P1.ACF note\r\n\x1A");
  notes_load();
  WriteFile("VOR/LAYER.MEO", "E-LIGHT note\r\n\x1A");
  textlist_load("C:\\VOR\\LAYER.MEO", &LayerMemo, 1, 16, 0, 0, 0, 0, 0, 0);
  ASSERT_EQ(Catalogue.count + FileNotes.count + LayerMemo.count, 3);

  struct Text {
    const char* name;
    char* text;
    const char* initial;
  } texts[] = {
      {"KindName", KindName, "ELINE"},       {"RecordFields", RecordFields[6], ""},
      {"SpecDisplay", SpecDisplay, ""},      {"LabelGap", LabelGap, ""},
      {"CodePattern", CodePattern, ""},      {"CodeTable", CodeTable[0], ""},
      {"SpecWork", SpecWork, ""},            {"ChosenKey", ChosenKey, ""},
      {"PipeMaterial", PipeMaterial, ""},    {"CableChoice", CableChoice, ""},
      {"NumberValue", NumberValue, ""},      {"NumberCaption", NumberCaption, ""},
      {"InitialLayer", InitialLayer, ""},    {"ChosenLayer", ChosenLayer, ""},
      {"BrowserPath", BrowserPath, ""},      {"BrowserPattern", BrowserPattern, ""},
      {"DirEntries", DirEntries[0], ""},     {"FileEntries", FileEntries[0], ""},
      {"MatchLine", MatchLine, ""},
  };
  struct Number {
    const char* name;
    int32_t* value;
  } numbers[] = {
      {"RowMap", &RowMap[0]},   {"SelectedRow", &SelectedRow},   {"LabelOn", &LabelOn},
      {"SearchOn", &SearchOn},  {"DirCount", &DirCount},         {"DirNameCount", &DirNameCount},
      {"FileCount", &FileCount}, {"Selection", &Selection[0]},   {"SelectionCount", &SelectionCount},
      {"CurrentFile", &CurrentFile}, {"ScheduleMode", &ScheduleMode}, {"LayerRow", &LayerRow},
      {"DialogFile", &DialogFile},
  };
  for (const Text& t : texts) std::strcpy(t.text, "left");
  for (const Number& n : numbers) *n.value = 7;
  resbuf args{};
  CurrentArgs = &args;

  module_reset();
  for (const Text& t : texts) EXPECT_STREQ(t.text, t.initial) << t.name;
  for (const Number& n : numbers) EXPECT_EQ(*n.value, 0) << n.name;
  EXPECT_EQ(CurrentArgs, nullptr);
  for (const TextList* list : {&Catalogue, &FileNotes, &LayerMemo}) {
    EXPECT_EQ(list->head, nullptr);
    EXPECT_EQ(list->count, 0);
    EXPECT_STREQ(list->path, "");
  }
  EXPECT_EQ(LiveModuleBlocks(), blocks);
}

}  // namespace
}  // namespace vorhost::testing
