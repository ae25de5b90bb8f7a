// interp.h - just enough of the host's command language for the command
// line and scripts: reading expressions, symbols, setq and function calls.
#ifndef VORHOST_LISP_INTERP_H
#define VORHOST_LISP_INTERP_H

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/lisp/value.h"

namespace vorhost::lisp {

// Reads the expression that starts at text[*pos] (after blanks) and moves
// *pos past it. False with *err on a syntax error, an expression nested
// more than kMaxNesting deep (lists and quotes), or when text holds no
// expression. Symbols are upper-cased; strings keep their bytes. An
// integer literal past 32 bits reads as a real, as the host's reader does;
// one past the range of reals is an error.
bool Read(std::string_view text, size_t* pos, Value* out, std::string* err);

// The symbols and functions of one command-language session. Functions are
// called with evaluated arguments; a function reports failure by returning
// false with the error text (as the host shows it after "error: ").
class Interpreter {
 public:
  using Function =
      std::function<bool(const std::vector<Value>& args, Value* result, std::string* err)>;

  Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  // Forgets every symbol and every function but the language's own, as a
  // new session starts. A call under way (one that opened a new drawing)
  // goes on safely: it holds its own copy of its function.
  void Reset();

  void Define(std::string_view name, Function fn);
  void Undefine(std::string_view name);
  bool IsDefined(std::string_view name) const;

  // Calls a function by name; an undefined name is the error "null function".
  // Calls nested (a function that calls back into the language) more than
  // kMaxNesting deep fail with kNestingError.
  bool Call(std::string_view name, const std::vector<Value>& args, Value* result,
            std::string* err);

  void SetSymbol(std::string_view name, Value value);
  // The symbol's value, or nil when it is not bound.
  Value Symbol(std::string_view name) const;
  bool IsBound(std::string_view name) const;

  bool Eval(const Value& expr, Value* result, std::string* err);

 private:
  bool EvalCall(const Value& form, Value* result, std::string* err);
  // Call without counting a level (EvalCall has counted it).
  bool CallFunction(std::string_view name, const std::vector<Value>& args, Value* result,
                    std::string* err);
  bool EvalSetq(const Value& form, Value* result, std::string* err);
  void DefineBuiltins();

  std::map<std::string, Function> functions_;
  std::map<std::string, Value> symbols_;
  int depth_ = 0;  // evaluations and calls under way, nested
};

}  // namespace vorhost::lisp

#endif
