// interp.cpp - reader, evaluator and the few built-in functions.
#include "emulator/lisp/interp.h"

#include "emulator/core/encoding.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>

namespace vorhost::lisp {
namespace {

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

Value Atom(std::string_view token) {
  std::string t(token);
  char* end = nullptr;
  errno = 0;
  long i = std::strtol(t.c_str(), &end, 10);
  if (end && *end == '\0' && errno == 0 && i >= -2147483648L && i <= 2147483647L) return Value::Int(i);
  errno = 0;
  double d = std::strtod(t.c_str(), &end);
  bool numeric = t.find_first_not_of("+-.0123456789eE") == std::string::npos;
  if (numeric && end && *end == '\0' && errno == 0) return Value::Real(d);
  std::string name = UpperName(t);
  if (name == "NIL") return Value::Nil();
  return Value::Symbol(std::move(name));
}

bool ReadList(std::string_view text, size_t* pos, Value* out, std::string* err) {
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
    if (!Read(text, pos, &item, err)) return false;
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
  *result = real ? Value::Real(acc) : Value::Int(static_cast<long>(iacc));
  return true;
}

}  // namespace

std::string UpperName(std::string_view name) {
  std::string out(name);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

bool Read(std::string_view text, size_t* pos, Value* out, std::string* err) {
  SkipBlanks(text, pos);
  if (*pos >= text.size()) {
    *err = "no expression";
    return false;
  }
  char c = text[*pos];
  if (c == '(') return ReadList(text, pos, out, err);
  if (c == ')') {
    *err = "extra right paren on input";
    ++*pos;
    return false;
  }
  if (c == '"') return ReadString(text, pos, out, err);
  if (c == '\'') {
    ++*pos;
    Value quoted;
    if (!Read(text, pos, &quoted, err)) return false;
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
  *out = Atom(token);
  return true;
}

Interpreter::Interpreter() {
  Define("LIST", [](const std::vector<Value>& args, Value* r, std::string*) {
    *r = Value::List(args);
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
    if (!ArgCount(args, 1, 1, err)) return false;
    if (args[0].kind != Value::Kind::kString) {
      *err = "bad argument type";
      return false;
    }
    *r = Value::Int(std::atol(args[0].text.c_str()));
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

bool Interpreter::EvalCall(const Value& form, Value* result, std::string* err) {
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
  return Call(head.text, args, result, err);
}

}  // namespace vorhost::lisp
