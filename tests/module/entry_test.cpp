// entry_test.cpp - the module's entry point: messages, registration per
// drawing and dispatch by function code.
#include <string>

#include "host/entry.h"
#include "support/host_fixture.h"

namespace vorhost::testing {
namespace {

class EntryTest : public HostTest {
 protected:
  void ExpectRegistered(bool registered) {
    for (short code = 0; code < FUNCTION_COUNT; code++) {
      std::optional<short> found = host_->RegisteredCode(FunctionTable[code].name);
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
  host_->LoadModule(acrxEntryPoint);
  EXPECT_TRUE(host_->unlocked());
  ExpectRegistered(true);

  host_->NewDrawing();
  ExpectRegistered(true);

  acrxEntryPoint(kUnloadDwgMsg, nullptr);
  ExpectRegistered(false);
  acrxEntryPoint(kLoadDwgMsg, nullptr);
  ExpectRegistered(true);

  host_->UnloadModule();
  ExpectRegistered(false);
}

TEST_F(EntryTest, AnswersZeroToEveryMessage) {
  host_->LoadModule(acrxEntryPoint);
  for (int msg : {int{kNullMsg}, 6, 42, -1, int{kLoadDwgMsg}}) EXPECT_EQ(acrxEntryPoint(msg, nullptr), 0);
}

TEST_F(EntryTest, DispatchRunsEachCodeWithAVoidResult) {
  host_->LoadModule(acrxEntryPoint);
  for (int code = 0; code < FUNCTION_COUNT; code++) {
    lisp::Value result = lisp::Value::String("stale");
    std::string err;
    EXPECT_TRUE(host_->CallModule(code, {lisp::Value::String("E*")}, &result, &err)) << err;
    EXPECT_EQ(result.kind, lisp::Value::Kind::kVoid) << code;
    EXPECT_EQ(CurrentArgs, nullptr) << "the argument list outlived its call";
  }
}

TEST_F(EntryTest, AnUnknownCodeFailsWithoutRunningAHandler) {
  host_->LoadModule(acrxEntryPoint);
  for (int code : {5, -1, 1000}) {
    lisp::Value result;
    std::string err;
    EXPECT_FALSE(host_->CallModule(code, {}, &result, &err)) << code;
    EXPECT_EQ(err, "Received nonexistent function code.");
  }
}

TEST_F(EntryTest, TheCommandLineReachesTheRegisteredFunctions) {
  host_->LoadModule(acrxEntryPoint);
  host_->Execute("(VOR_ELINE \"E*\")");
  host_->Execute("(vor_acf)");
  EXPECT_EQ(Output().find("error"), std::string::npos) << Output();
  host_->Execute("(VOR_NONE)");
  EXPECT_NE(Output().find("error: null function"), std::string::npos);
}

}  // namespace
}  // namespace vorhost::testing
