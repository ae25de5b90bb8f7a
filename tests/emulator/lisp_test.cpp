// lisp_test.cpp - reading, printing and evaluating the command language, and
// values crossing into result-buffer lists and back.
#include <gtest/gtest.h>

#include "emulator/core/resbuf.h"
#include "emulator/lisp/interp.h"

namespace vorhost::lisp {
namespace {

std::string ReadPrint(std::string_view text) {
  size_t pos = 0;
  Value v;
  std::string err;
  if (!Read(text, &pos, &v, &err)) return "error: " + err;
  return Print(v);
}

TEST(LispReadTest, ReadsAndPrintsEachKindOfValue) {
  struct Case {
    const char* text;
    const char* printed;
  } cases[] = {
      {"42", "42"},
      {"-7", "-7"},
      {"2.5", "2.5"},
      {".5", "0.5"},
      {"1e3", "1000.0"},
      {"vor_eline", "VOR_ELINE"},
      {"nil", "nil"},
      {"\"C:/VOR\"", "\"C:/VOR\""},
      {"\"a\\\"b\\\\c\\nd\"", "\"a\\\"b\\\\c\\nd\""},
      {"\"\\101\\102\"", "\"AB\""},
      {"(1 \"x\" (2 3.0))", "(1 \"x\" (2 3.0))"},
      {"(1 . 2)", "(1 . 2)"},
      {"'abc", "(QUOTE ABC)"},
      {"()", "nil"},
      {"  ; a comment\n  x", "X"},
      {"(1 2", "error: malformed list on input"},
      {"\"open", "error: malformed string on input"},
      // Big5 whose trail byte is a backslash: no escape, printed as read.
      {"\"\xA5\x5C\"", "\"\xA5\x5C\""},
      {"\"\xA5\x5C\\\\\"", "\"\xA5\x5C\\\\\""},
      {")", "error: extra right paren on input"},
      {"   ", "error: no expression"},
  };
  for (const Case& c : cases) EXPECT_EQ(ReadPrint(c.text), c.printed) << c.text;
}

// A lead byte without its trail was printed as it is, so that reading the
// printed text paired it with the backslash of the escape that followed.
TEST(LispReadTest, LoneLeadByteBeforeAnEscapeReadsBack) {
  for (std::string text : {"\xA5\t", "\xA5\"", "x\xA5", "\xA5\xA5\xA5\n"}) {
    std::string printed = Print(Value::String(text));
    size_t pos = 0;
    Value back;
    std::string err;
    ASSERT_TRUE(Read(printed, &pos, &back, &err)) << printed << ": " << err;
    EXPECT_EQ(back.text, text) << printed;
  }
  EXPECT_EQ(Print(Value::String("\xA5\t")), "\"\\245\\t\"");
}

// A lone dot was read as a symbol, which printed as "." and read back as
// the dot of a dotted list: '. came back as (QUOTE).
TEST(LispReadTest, LoneDotIsMisplaced) {
  for (const char* text : {"'.", "(. a)", ".", "(list 'a '.)"})
    EXPECT_EQ(ReadPrint(text), "error: misplaced dot on input") << text;
  EXPECT_EQ(ReadPrint("(a . b)"), "(A . B)");
  EXPECT_EQ(ReadPrint("'.."), "(QUOTE ..)");
}

TEST(LispEvalTest, SetqFunctionsAndErrors) {
  Interpreter in;
  auto eval = [&](std::string_view text) {
    size_t pos = 0;
    Value expr, v;
    std::string err;
    if (!Read(text, &pos, &expr, &err) || !in.Eval(expr, &v, &err)) return "error: " + err;
    return Print(v);
  };
  EXPECT_EQ(eval("(setq a 1 b \"two\")"), "\"two\"");
  EXPECT_EQ(eval("a"), "1");
  EXPECT_EQ(eval("(strcat b \"!\")"), "\"two!\"");
  EXPECT_EQ(eval("(+ a 2.5)"), "3.5");
  EXPECT_EQ(eval("(list a 'b)"), "(1 B)");
  EXPECT_EQ(eval("unbound"), "nil");
  EXPECT_EQ(eval("(nosuch 1)"), "error: null function");
  EXPECT_EQ(eval("(setq a)"), "error: too few arguments");
  EXPECT_EQ(eval("(setq \"a\" 1)"), "error: bad argument type");
  EXPECT_EQ(eval("(strcat 1)"), "error: bad argument type");
  EXPECT_EQ(eval("(/ 1 0)"), "error: divide by zero");

  in.Define("twice", [](const std::vector<Value>& args, Value* r, std::string*) {
    *r = Value::Int(args.at(0).integer * 2);
    return true;
  });
  EXPECT_EQ(eval("(TWICE 21)"), "42");
  in.Undefine("Twice");
  EXPECT_EQ(eval("(twice 1)"), "error: null function");
}

// Evaluates each expression of text in turn; the printed value of the
// last, or "error: " and the first error.
std::string EvalPrint(Interpreter& in, std::string_view text) {
  size_t pos = 0;
  Value expr, v;
  std::string err;
  while (Read(text, &pos, &expr, &err)) {
    if (!in.Eval(expr, &v, &err)) return "error: " + err;
    if (text.find_first_not_of(" ", pos) == std::string_view::npos) return Print(v);
  }
  return "error: " + err;
}

// Integers are 32-bit as in the host: literals past that read as reals,
// arithmetic wraps, atoi stops at the largest integer; reals never become
// infinite.
TEST(LispNumbersTest, IntegersStay32BitAndRealsFinite) {
  struct Case {
    const char* text;
    const char* result;
  } cases[] = {
      {"2147483647", "2147483647"},
      {"2147483648", "2.14748e+09"},
      {"-2147483648", "-2.14748e+09"},
      {"99999999999999999999", "1e+20"},
      {"1e400", "error: number out of range on input"},
      {"(+ 2147483647 1)", "-2147483648"},
      {"(* 65536 65536)", "0"},
      {"(- (- 2147483647) 2)", "2147483647"},
      {"(* 1e200 1e200)", "error: floating-point overflow"},
      {"(- -1e308 1e308)", "error: floating-point overflow"},
      {"(atoi \"99999999999999999999\")", "2147483647"},
      {"(atoi \"-99999999999999999999\")", "-2147483648"},
      {"(atoi \"2147483648\")", "2147483647"},
      {"(atoi \" -12abc\")", "-12"},
      {"(atoi \"abc\")", "0"},
      {"(atof \" 2.5e3x\")", "2500.0"},
      {"(atof \"-.5\")", "-0.5"},
      {"(atof \"1e\")", "1.0"},
      {"(atof \"inf\")", "0.0"},
      {"(atof \"0x10\")", "0.0"},
      {"(atof \"1e400\")", "error: floating-point overflow"},
      {"(itoa (- -2147483647 1))", "\"-2147483648\""},
      {"(itoa 2.5)", "error: bad argument type"},
      {"(itoa)", "error: too few arguments"},
  };
  Interpreter in;
  for (const Case& c : cases) EXPECT_EQ(EvalPrint(in, c.text), c.result) << c.text;
}

// Reading, evaluating and making lists stop at kMaxNesting levels with an
// error, however deep the input (a 100 KB line of parentheses included).
TEST(LispNestingTest, DeepInputIsAnErrorNotACrash) {
  auto nested = [](int levels, const std::string& head) {
    std::string text;
    for (int i = 0; i < levels; i++) text += "(" + head;
    return text + std::string(levels, ')');
  };
  Interpreter in;
  const std::string kTooDeep = "error: nesting too deep on input";
  EXPECT_EQ(EvalPrint(in, nested(kMaxNesting, "list ")).substr(0, 6), "((((((");
  EXPECT_EQ(EvalPrint(in, nested(kMaxNesting + 1, "list ")), kTooDeep);
  EXPECT_EQ(EvalPrint(in, nested(50000, "")), kTooDeep);
  EXPECT_EQ(EvalPrint(in, std::string(kMaxNesting, '\'') + "a").substr(0, 7), "(QUOTE ");
  EXPECT_EQ(EvalPrint(in, std::string(kMaxNesting + 1, '\'') + "a"), kTooDeep);

  // A list grown one level per evaluation stops at the same depth.
  std::string err;
  int grown = 0;
  while (grown <= kMaxNesting && EvalPrint(in, "(setq a (list a))").rfind("error", 0) != 0) grown++;
  EXPECT_EQ(grown, kMaxNesting);
  EXPECT_EQ(EvalPrint(in, "(setq a (list a))"), "error: nesting too deep");

  // So does a list handed over as result buffers: the part too deep is nil.
  std::vector<resbuf*> items;
  for (int i = 0; i < kMaxNesting + 1; i++) items.push_back(NewRb(RTLB));
  for (int i = 0; i < kMaxNesting + 1; i++) items.push_back(NewRb(RTLE));
  items.push_back(NewRb(RTT));
  for (size_t i = 0; i + 1 < items.size(); i++) items[i]->rbnext = items[i + 1];
  std::vector<Value> values = ValuesOf(items[0]);
  ASSERT_EQ(values.size(), 2u) << "the items after the list are still read";
  EXPECT_EQ(values[0].depth, kMaxNesting);
  EXPECT_EQ(values[1].kind, Value::Kind::kT);
  ReleaseList(items[0]);
}

TEST(LispResbufTest, ValuesCrossIntoResultBuffersAndBack) {
  const char* texts[] = {"\"text\"", "7",     "100000", "2.5",         "nil",
                         "T",        "(1.0 2.0 3.0)", "(1.0 2.0)", "(\"a\" (1 2 \"b\") 3)",
                         "(\"k\" . 5)"};
  for (const char* text : texts) {
    size_t pos = 0;
    Value v;
    std::string err;
    ASSERT_TRUE(Read(text, &pos, &v, &err)) << text;
    if (v.kind == Value::Kind::kSymbol) v = Value::T();
    resbuf* rb = ToResbuf(v);
    ASSERT_NE(rb, nullptr) << text;
    EXPECT_EQ(Print(FromResbuf(rb)), Print(v)) << text << " went as " << DescribeList(rb);
    ReleaseList(rb);
  }
  // A text argument is one RTSTR item; a point is one RT3DPOINT item.
  resbuf* rb = ToResbuf(Value::String("E*"));
  EXPECT_EQ(rb->restype, RTSTR);
  EXPECT_EQ(rb->rbnext, nullptr);
  ReleaseList(rb);
  rb = ToResbuf(Value::List({Value::Real(1), Value::Int(2), Value::Real(3)}));
  EXPECT_EQ(rb->restype, RT3DPOINT);
  EXPECT_EQ(rb->resval.rpoint[1], 2.0);
  ReleaseList(rb);
}

}  // namespace
}  // namespace vorhost::lisp
