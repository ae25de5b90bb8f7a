// interp.cpp - reader, evaluator and the few built-in functions.
#include "emulator/lisp/interp.h"

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace vorhost::lisp {
namespace {

constexpr long kInt32Max = 2147483647;
constexpr const char* kOverflow = "floating-point overflow";

bool IsDelimiter(char c) {
  return c == '(' || c == ')' || c == '\'' || c == '"' || c == ';' || c == ' ' || c == '\t' ||
         c == '\n' || c == '\r';
}

void SkipBlanks(std::string_view text, size_t* pos) {
  while (*pos < text.size()) {
    char c = text[*pos];
    if (c == ';') {
      while (*pos < text.size() && text[*pos] != '\n') ++*pos;
    } else if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
      ++*pos;
    } else {
      break;
    }
  }
}

bool ReadString(std::string_view text, size_t* pos, Value* out, std::string* err) {
  std::string s;
  for (++*pos; *pos < text.size(); ++*pos) {
    char c = text[*pos];
    if (Big5CharLength(text, *pos) == 2) {  // a trail byte may be a backslash
      s.append(text.substr((*pos)++, 2));
      continue;
    }
    if (c == '"') {
      ++*pos;
      *out = Value::String(std::move(s));
      return true;
    }
    if (c != '\\' || *pos + 1 >= text.size()) {
      s += c;
      continue;
    }
    c = text[++*pos];
    switch (c) {
      case 'n': s += '\n'; break;
      case 'r': s += '\r'; break;
      case 't': s += '\t'; break;
      case 'e': s += '\x1b'; break;
      default:
        if (c >= '0' && c <= '7') {  // \nnn, octal
          int code = 0;
          for (int i = 0; i < 3 && *pos < text.size() && text[*pos] >= '0' && text[*pos] <= '7';
               i++, ++*pos)
            code = code * 8 + (text[*pos] - '0');
          --*pos;
          s += static_cast<char>(code);
        } else {
          s += c;  // \\ and \" and any other character stand for themselves
        }
    }
  }
  *err = "malformed string on input";
  return false;
}

// A token as a number or a symbol. An integer of at most 2147483647 in
// size is an integer; a longer one is a real, as in the host, where even
// -2147483648 reads as a real. A number past the range of reals is refused.
bool Atom(std::string_view token, Value* out, std::string* err) {
  std::string t(token);
  char* end = nullptr;
  errno = 0;
  long i = std::strtol(t.c_str(), &end, 10);
  if (end && *end == '\0' && errno == 0 && i >= -kInt32Max && i <= kInt32Max) {
    *out = Value::Int(i);
    return true;
  }
  double d = std::strtod(t.c_str(), &end);
  bool numeric = t.find_first_not_of("+-.0123456789eE") == std::string::npos;
  if (numeric && end && end != t.c_str() && *end == '\0') {
    if (!std::isfinite(d)) {
      *err = "number out of range on input";
      return false;
    }
    *out = Value::Real(d);  // one too small for a real reads as (nearly) 0
    return true;
  }
  std::string name = UpperName(t);
  *out = name == "NIL" ? Value::Nil() : Value::Symbol(std::move(name));
  return true;
}

bool ReadAt(std::string_view text, size_t* pos, Value* out, std::string* err, int depth);

bool ReadList(std::string_view text, size_t* pos, Value* out, std::string* err, int depth) {
  std::vector<Value> items;
  bool dotted = false;
  ++*pos;
  for (;;) {
    SkipBlanks(text, pos);
    if (*pos >= text.size()) {
      *err = "malformed list on input";
      return false;
    }
    if (text[*pos] == ')') {
      ++*pos;
      *out = Value::List(std::move(items));
      out->dotted = dotted && out->items.size() >= 2;
      return true;
    }
    if (text[*pos] == '.' && *pos + 1 < text.size() && IsDelimiter(text[*pos + 1]) && !items.empty()) {
      ++*pos;
      dotted = true;
      continue;
    }
    Value item;
    if (!ReadAt(text, pos, &item, err, depth)) return false;
    items.push_back(std::move(item));
  }
}

bool ArgCount(const std::vector<Value>& args, size_t min, size_t max, std::string* err) {
  if (args.size() < min) *err = "too few arguments";
  else if (args.size() > max) *err = "too many arguments";
  else return true;
  return false;
}

// The language's integers are 32-bit and wrap around, as the host's do.
long Wrap32(long long v) { return static_cast<int32_t>(static_cast<uint32_t>(v)); }

bool Arithmetic(const std::vector<Value>& args, Value* result, std::string* err, char op) {
  bool real = false;
  for (const Value& a : args) {
    if (!a.IsNumber()) {
      *err = "bad argument type";
      return false;
    }
    real = real || a.kind == Value::Kind::kReal;
  }
  if (args.empty()) {
    *result = Value::Int(0);
    return true;
  }
  double acc = args[0].Number();
  long long iacc = args[0].integer;
  if (args.size() == 1 && op == '-') {
    *result = real ? Value::Real(-acc) : Value::Int(Wrap32(-iacc));
    return true;
  }
  for (size_t i = 1; i < args.size(); i++) {
    double x = args[i].Number();
    long long ix = args[i].integer;
    if (op == '/' && (real ? x == 0 : ix == 0)) {
      *err = "divide by zero";
      return false;
    }
    acc = op == '+' ? acc + x : op == '-' ? acc - x : op == '*' ? acc * x : acc / x;
    if (!real)
      iacc = Wrap32(op == '+' ? iacc + ix : op == '-' ? iacc - ix : op == '*' ? iacc * ix : iacc / ix);
  }
  if (real && !std::isfinite(acc)) {  // no infinity ever becomes a value
    *err = kOverflow;
    return false;
  }
  *result = real ? Value::Real(acc) : Value::Int(static_cast<long>(iacc));
  return true;
}

bool OneArgument(const std::vector<Value>& args, Value::Kind kind, std::string* err) {
  if (!ArgCount(args, 1, 1, err)) return false;
  if (args[0].kind == kind) return true;
  *err = "bad argument type";
  return false;
}

// C's atoi, held to the language's 32 bits: blanks, a sign and the digits
// that follow; no digits is 0, and a number past 32 bits stops at the
// largest integer of its sign rather than wrapping.
long TextToInt(std::string_view s) {
  size_t i = 0;
  while (i < s.size() && std::isspace(static_cast<unsigned char>(s[i]))) i++;
  bool negative = i < s.size() && s[i] == '-';
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) i++;
  long long v = 0;
  for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; i++)
    v = std::min<long long>(v * 10 + (s[i] - '0'), kInt32Max + 1LL);
  if (negative) return static_cast<long>(-v);
  return static_cast<long>(std::min<long long>(v, kInt32Max));
}

// C's atof for decimal numbers: blanks, then the longest decimal number
// (sign, digits, fraction, exponent) that begins the text; none is 0.0.
// No hexadecimal, infinity or NaN. False for one past the range of reals.
bool TextToReal(std::string_view s, double* out) {
  size_t i = 0;
  while (i < s.size() && std::isspace(static_cast<unsigned char>(s[i]))) i++;
  size_t start = i;
  auto digits = [&](size_t k) {
    while (k < s.size() && s[k] >= '0' && s[k] <= '9') k++;
    return k;
  };
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) i++;
  size_t int_end = digits(i), end = int_end;
  bool any = int_end > i;
  if (end < s.size() && s[end] == '.') {
    size_t frac_end = digits(end + 1);
    any = any || frac_end > end + 1;
    end = frac_end;
  }
  *out = 0;
  if (!any) return true;
  if (end < s.size() && (s[end] == 'e' || s[end] == 'E')) {
    size_t k = end + 1;
    if (k < s.size() && (s[k] == '-' || s[k] == '+')) k++;
    if (digits(k) > k) end = digits(k);
  }
  std::string number(s.substr(start, end - start));
  *out = std::strtod(number.c_str(), nullptr);
  return std::isfinite(*out);
}

// Counts one level of evaluation for as long as it lasts.
class Nested {
 public:
  explicit Nested(int* depth) : depth_(depth) { ++*depth_; }
  ~Nested() { --*depth_; }
  Nested(const Nested&) = delete;
  Nested& operator=(const Nested&) = delete;

 private:
  int* depth_;
};

// One expression at nesting level depth: each list and each quote goes one
// level deeper.
bool ReadAt(std::string_view text, size_t* pos, Value* out, std::string* err, int depth) {
  SkipBlanks(text, pos);
  if (*pos >= text.size()) {
    *err = "no expression";
    return false;
  }
  char c = text[*pos];
  if ((c == '(' || c == '\'') && depth >= kMaxNesting) {
    *err = std::string(kNestingError) + " on input";
    return false;
  }
  if (c == '(') return ReadList(text, pos, out, err, depth + 1);
  if (c == ')') {
    *err = "extra right paren on input";
    ++*pos;
    return false;
  }
  if (c == '"') return ReadString(text, pos, out, err);
  if (c == '\'') {
    ++*pos;
    Value quoted;
    if (!ReadAt(text, pos, &quoted, err, depth + 1)) return false;
    *out = Value::List({Value::Symbol("QUOTE"), std::move(quoted)});
    return true;
  }
  size_t start = *pos;
  while (*pos < text.size() && !IsDelimiter(text[*pos])) ++*pos;
  std::string_view token = text.substr(start, *pos - start);
  // A dot stands only between a list's items and its tail; as a value of
  // its own it would print as that dot and read back as something else.
  if (token == ".") {
    *err = "misplaced dot on input";
    return false;
  }
  return Atom(token, out, err);
}

}  // namespace

bool Read(std::string_view text, size_t* pos, Value* out, std::string* err) {
  return ReadAt(text, pos, out, err, 0);
}

Interpreter::Interpreter() { DefineBuiltins(); }

void Interpreter::Reset() {
  functions_.clear();
  symbols_.clear();
  DefineBuiltins();
}

void Interpreter::DefineBuiltins() {
  Define("LIST", [](const std::vector<Value>& args, Value* r, std::string* err) {
    Value list = Value::List(args);
    if (list.depth > kMaxNesting) {
      *err = kNestingError;
      return false;
    }
    *r = std::move(list);
    return true;
  });
  Define("STRCAT", [](const std::vector<Value>& args, Value* r, std::string* err) {
    std::string s;
    for (const Value& a : args) {
      if (a.kind != Value::Kind::kString) {
        *err = "bad argument type";
        return false;
      }
      s += a.text;
    }
    *r = Value::String(std::move(s));
    return true;
  });
  for (char op : std::string("+-*/"))
    Define(std::string(1, op), [op](const std::vector<Value>& args, Value* r, std::string* err) {
      return Arithmetic(args, r, err, op);
    });
  Define("ATOI", [](const std::vector<Value>& args, Value* r, std::string* err) {
    if (!OneArgument(args, Value::Kind::kString, err)) return false;
    *r = Value::Int(TextToInt(args[0].text));
    return true;
  });
  Define("ATOF", [](const std::vector<Value>& args, Value* r, std::string* err) {
    double v = 0;
    if (!OneArgument(args, Value::Kind::kString, err)) return false;
    if (!TextToReal(args[0].text, &v)) {
      *err = kOverflow;
      return false;
    }
    *r = Value::Real(v);
    return true;
  });
  Define("ITOA", [](const std::vector<Value>& args, Value* r, std::string* err) {
    if (!OneArgument(args, Value::Kind::kInt, err)) return false;
    *r = Value::String(std::to_string(args[0].integer));
    return true;
  });
}

void Interpreter::Define(std::string_view name, Function fn) {
  functions_[UpperName(name)] = std::move(fn);
}

void Interpreter::Undefine(std::string_view name) { functions_.erase(UpperName(name)); }

bool Interpreter::IsDefined(std::string_view name) const {
  return functions_.count(UpperName(name)) > 0;
}

bool Interpreter::Call(std::string_view name, const std::vector<Value>& args, Value* result,
                       std::string* err) {
  Nested nested(&depth_);
  if (depth_ > kMaxNesting) {
    *err = kNestingError;
    return false;
  }
  return CallFunction(name, args, result, err);
}

bool Interpreter::CallFunction(std::string_view name, const std::vector<Value>& args,
                               Value* result, std::string* err) {
  auto it = functions_.find(UpperName(name));
  if (it == functions_.end()) {
    *err = "null function";
    return false;
  }
  Function fn = it->second;  // the call may redefine its own name
  *result = Value::Nil();
  return fn(args, result, err);
}

void Interpreter::SetSymbol(std::string_view name, Value value) {
  symbols_[UpperName(name)] = std::move(value);
}

Value Interpreter::Symbol(std::string_view name) const {
  auto it = symbols_.find(UpperName(name));
  return it == symbols_.end() ? Value::Nil() : it->second;
}

bool Interpreter::IsBound(std::string_view name) const {
  auto it = symbols_.find(UpperName(name));
  return it != symbols_.end() && !it->second.IsNil();
}

bool Interpreter::Eval(const Value& expr, Value* result, std::string* err) {
  switch (expr.kind) {
    case Value::Kind::kSymbol:
      *result = expr.text == "T" ? Value::T() : Symbol(expr.text);
      return true;
    case Value::Kind::kList:
      return EvalCall(expr, result, err);
    default:
      *result = expr;
      return true;
  }
}

bool Interpreter::EvalSetq(const Value& form, Value* result, std::string* err) {
  const std::vector<Value>& items = form.items;
  if (items.size() < 3 || items.size() % 2 == 0) {
    *err = items.size() < 3 ? "too few arguments" : "too many arguments";
    return false;
  }
  for (size_t i = 1; i + 1 < items.size(); i += 2) {
    if (items[i].kind != Value::Kind::kSymbol || items[i].text == "T") {
      *err = "bad argument type";
      return false;
    }
    Value value;
    if (!Eval(items[i + 1], &value, err)) return false;
    if (value.kind == Value::Kind::kVoid) value = Value::Nil();
    SetSymbol(items[i].text, value);
    *result = value;
  }
  return true;
}

// Each list evaluated is one level of nesting: its arguments are evaluated
// inside it.
bool Interpreter::EvalCall(const Value& form, Value* result, std::string* err) {
  Nested nested(&depth_);
  if (depth_ > kMaxNesting) {
    *err = kNestingError;
    return false;
  }
  if (form.dotted) {
    *err = "bad function";
    return false;
  }
  const Value& head = form.items[0];
  if (head.kind != Value::Kind::kSymbol) {
    *err = "bad function";
    return false;
  }
  if (head.text == "QUOTE") {
    if (form.items.size() != 2) {
      *err = form.items.size() < 2 ? "too few arguments" : "too many arguments";
      return false;
    }
    *result = form.items[1];
    return true;
  }
  if (head.text == "SETQ") return EvalSetq(form, result, err);
  if (!IsDefined(head.text)) {
    *err = "null function";
    return false;
  }
  std::vector<Value> args;
  for (size_t i = 1; i < form.items.size(); i++) {
    Value arg;
    if (!Eval(form.items[i], &arg, err)) return false;
    if (arg.kind == Value::Kind::kVoid) arg = Value::Nil();
    args.push_back(std::move(arg));
  }
  return CallFunction(head.text, args, result, err);
}

}  // namespace vorhost::lisp
