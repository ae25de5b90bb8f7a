// value.h - values of the host's command language: nil, T, integers,
// reals, texts (Big5 bytes), symbols, lists and entity names.
#ifndef VORHOST_LISP_VALUE_H
#define VORHOST_LISP_VALUE_H

#include <algorithm>
#include <string>
#include <vector>

#include "host/ads.h"

namespace vorhost::lisp {

// How deep expressions and lists may nest: the reader, the evaluator and
// list making refuse anything deeper with kNestingError, so that no input
// can exhaust the stack (reading, evaluating, printing and releasing a
// value all recurse once per level).
constexpr int kMaxNesting = 1000;
constexpr const char* kNestingError = "nesting too deep";

struct Value {
  enum class Kind {
    kNil,
    kT,
    kInt,
    kReal,
    kString,
    kSymbol,
    kList,
    kEname,
    kVoid,  // what a function gives that returns nothing; nil to the language
  };
  Kind kind = Kind::kNil;
  long integer = 0;
  double real = 0;
  std::string text;          // a string's bytes or a symbol's upper-case name
  std::vector<Value> items;  // a list's elements
  bool dotted = false;       // a list (a b . c): the last item is the tail
  long ename[2] = {0, 0};
  int depth = 0;             // a list's levels of lists: 1 for (1 2), 2 for ((1))

  static Value Nil() { return {}; }
  static Value T() { return Of(Kind::kT); }
  static Value Void() { return Of(Kind::kVoid); }
  static Value Int(long v) { Value x = Of(Kind::kInt); x.integer = v; return x; }
  static Value Real(double v) { Value x = Of(Kind::kReal); x.real = v; return x; }
  static Value String(std::string s) { Value x = Of(Kind::kString); x.text = std::move(s); return x; }
  static Value Symbol(std::string s) { Value x = Of(Kind::kSymbol); x.text = std::move(s); return x; }
  static Value List(std::vector<Value> items) {
    if (items.empty()) return Nil();
    Value x = Of(Kind::kList);
    x.items = std::move(items);
    for (const Value& item : x.items) x.depth = std::max(x.depth, item.depth);
    x.depth++;
    return x;
  }

  bool IsNil() const { return kind == Kind::kNil || kind == Kind::kVoid; }
  bool IsNumber() const { return kind == Kind::kInt || kind == Kind::kReal; }
  double Number() const { return kind == Kind::kInt ? static_cast<double>(integer) : real; }

 private:
  static Value Of(Kind k) { Value x; x.kind = k; return x; }
};

// The printed form of v as the command line shows a result: strings quoted
// with their escapes, reals with six significant digits, (1 2 . 3).
std::string Print(const Value& v);

// A result-buffer list for v as a function argument or result: one item for
// an atom, RTLB ... RTLE for a list, a list of two or three numbers as a
// point. nullptr when memory is short.
resbuf* ToResbuf(const Value& v);

// The value of a result-buffer list as functions return it: a single item's
// value, or a list of items. A list with no items is nil.
Value FromResbuf(const resbuf* list);

// The values of a list's items one by one (an argument list): RTLB ... RTLE
// runs become list values; a run nested deeper than kMaxNesting becomes
// nil.
std::vector<Value> ValuesOf(const resbuf* list);

}  // namespace vorhost::lisp

#endif
