// value.cpp - printing values and converting them to and from resbuf lists.
#include "emulator/lisp/value.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "emulator/core/alloc.h"
#include "emulator/core/encoding.h"
#include "emulator/core/resbuf.h"
#include "emulator/core/text.h"

namespace vorhost::lisp {
namespace {

std::string PrintReal(double r) {
  std::string s = SignificantText(r, 6);
  if (s.find_first_of(".eEn") == std::string::npos) s += ".0";
  return s;
}

std::string PrintString(const std::string& s) {
  std::string out = "\"";
  for (size_t i = 0; i < s.size(); i++) {
    char c = s[i];
    if (Big5CharLength(s, i) == 2) {  // a trail byte may be a backslash
      out += s.substr(i++, 2);
      continue;
    }
    if (static_cast<unsigned char>(c) >= 0x81 && static_cast<unsigned char>(c) <= 0xFE) {
      // A lead byte without its trail, written as it is, would be read back
      // with the backslash of the escape after it as one character.
      char octal[8];
      std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned char>(c));
      out += octal;
      continue;
    }
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      case '\x1b': out += "\\e"; break;
      default: out += c;
    }
  }
  return out + "\"";
}

bool IsPointList(const Value& v) {
  if (v.kind != Value::Kind::kList || v.dotted) return false;
  if (v.items.size() != 2 && v.items.size() != 3) return false;
  for (const Value& item : v.items)
    if (!item.IsNumber()) return false;
  return true;
}

// Links rb at *link and moves *link past it; false for a null rb.
bool Link(resbuf* rb, resbuf*** link) {
  if (!rb) return false;
  **link = rb;
  *link = &rb->rbnext;
  return true;
}

// One item for an atom; nullptr when memory ran out.
resbuf* Atom(const Value& v) {
  using K = Value::Kind;
  resbuf* rb = nullptr;
  switch (v.kind) {
    case K::kNil: return NewRb(RTNIL);
    case K::kVoid: return NewRb(RTVOID);
    case K::kT: return NewRb(RTT);
    case K::kInt:
      if (v.integer >= -32768 && v.integer <= 32767) {
        if ((rb = NewRb(RTSHORT))) rb->resval.rint = static_cast<short>(v.integer);
      } else if ((rb = NewRb(RTLONG))) {
        rb->resval.rlong = v.integer;
      }
      return rb;
    case K::kReal:
      if ((rb = NewRb(RTREAL))) rb->resval.rreal = v.real;
      return rb;
    case K::kString:
    case K::kSymbol:
      if ((rb = NewRb(RTSTR)) && !(rb->resval.rstring = HostStrdup(v.text.c_str()))) {
        std::free(rb);
        rb = nullptr;
      }
      return rb;
    case K::kEname:
      if ((rb = NewRb(RTENAME))) std::memcpy(rb->resval.rlname, v.ename, sizeof v.ename);
      return rb;
    case K::kList:
      if ((rb = NewRb(v.items.size() == 3 ? RT3DPOINT : RTPOINT)))
        for (size_t i = 0; i < v.items.size(); i++) rb->resval.rpoint[i] = v.items[i].Number();
      return rb;
  }
  return nullptr;
}

// Appends the items for v at *link; false when memory ran out. A dotted
// list ends with RTDOTE in place of RTLE.
bool Append(const Value& v, resbuf*** link) {
  if (v.kind != Value::Kind::kList || IsPointList(v)) return Link(Atom(v), link);
  if (!Link(NewRb(RTLB), link)) return false;
  for (const Value& item : v.items)
    if (!Append(item, link)) return false;
  return Link(NewRb(v.dotted ? RTDOTE : RTLE), link);
}

// Moves *rb past the rest of a list whose RTLB was just taken.
void SkipList(const resbuf** rb) {
  for (int open = 1; *rb && open > 0; *rb = (*rb)->rbnext) {
    if ((*rb)->restype == RTLB) open++;
    else if ((*rb)->restype == RTLE || (*rb)->restype == RTDOTE) open--;
  }
}

// Reads one value starting at *rb, depth lists down, and moves *rb past it.
Value Take(const resbuf** rb, int depth) {
  const resbuf* item = *rb;
  *rb = item->rbnext;
  switch (item->restype) {
    case RTNIL: case RTNONE: return Value::Nil();
    case RTVOID: return Value::Void();
    case RTT: return Value::T();
    case RTSHORT: return Value::Int(item->resval.rint);
    case RTLONG: return Value::Int(item->resval.rlong);
    case RTREAL: case RTANG: return Value::Real(item->resval.rreal);
    case RTSTR: return Value::String(item->resval.rstring ? item->resval.rstring : "");
    case RTPOINT: case RT3DPOINT: {
      std::vector<Value> coords;
      for (int i = 0; i < (item->restype == RTPOINT ? 2 : 3); i++)
        coords.push_back(Value::Real(item->resval.rpoint[i]));
      return Value::List(std::move(coords));
    }
    case RTENAME: case RTPICKS: {
      Value v = Value::Nil();
      v.kind = Value::Kind::kEname;
      std::memcpy(v.ename, item->resval.rlname, sizeof v.ename);
      return v;
    }
    case RTLB: {
      if (depth >= kMaxNesting) {
        SkipList(rb);
        return Value::Nil();
      }
      std::vector<Value> items;
      while (*rb && (*rb)->restype != RTLE && (*rb)->restype != RTDOTE)
        items.push_back(Take(rb, depth + 1));
      bool dotted = *rb && (*rb)->restype == RTDOTE && items.size() >= 2;
      if (*rb) *rb = (*rb)->rbnext;
      Value list = Value::List(std::move(items));
      list.dotted = dotted && list.kind == Value::Kind::kList;
      return list;
    }
    default:
      return Value::Nil();
  }
}

}  // namespace

std::string Print(const Value& v) {
  using K = Value::Kind;
  switch (v.kind) {
    case K::kNil: return "nil";
    case K::kVoid: return "";
    case K::kT: return "T";
    case K::kInt: return std::to_string(v.integer);
    case K::kReal: return PrintReal(v.real);
    case K::kString: return PrintString(v.text);
    case K::kSymbol: return v.text;
    case K::kEname: {
      char buf[40];
      std::snprintf(buf, sizeof buf, "<Entity name: %lx>", static_cast<unsigned long>(v.ename[0]));
      return buf;
    }
    case K::kList: {
      std::string out = "(";
      for (size_t i = 0; i < v.items.size(); i++) {
        if (i) out += v.dotted && i + 1 == v.items.size() ? " . " : " ";
        out += Print(v.items[i]);
      }
      return out + ")";
    }
  }
  return "";
}

resbuf* ToResbuf(const Value& v) {
  resbuf* head = nullptr;
  resbuf** link = &head;
  if (!Append(v, &link)) {
    ReleaseList(head);
    return nullptr;
  }
  return head;
}

std::vector<Value> ValuesOf(const resbuf* list) {
  std::vector<Value> values;
  for (const resbuf* rb = list; rb;) values.push_back(Take(&rb, 0));
  return values;
}

Value FromResbuf(const resbuf* list) {
  std::vector<Value> values = ValuesOf(list);
  if (values.empty()) return Value::Nil();
  if (values.size() == 1) return values[0];
  return Value::List(std::move(values));
}

}  // namespace vorhost::lisp
