// ads_api.cpp - the host operations of host/ads.h that need no drawing and
// no dialog, acting on the current Host.
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "emulator/api/group_lists.h"
#include "emulator/core/alloc.h"
#include "emulator/core/resbuf.h"
#include "emulator/core/wcmatch.h"
#include "emulator/session/host.h"
#include "host/ads.h"

using vorhost::Host;
using vorhost::ModuleCall;
using vorhost::lisp::Value;

namespace {

ModuleCall* CurrentCall() {
  Host* host = Host::Current();
  return host ? host->module().call() : nullptr;
}

int SetResult(Value v) {
  ModuleCall* call = CurrentCall();
  if (!call) return RTERROR;
  call->result = std::move(v);
  return RTNORM;
}

}  // namespace

// ---- Registration and results -------------------------------------------------

extern "C" void acrxUnlockApplication(void* appId) {
  if (Host* host = Host::Current()) host->module().Unlock(appId);
}

extern "C" int ads_defun(const char* sname, short funcno) {
  Host* host = Host::Current();
  return host && sname ? host->module().Defun(sname, funcno) : RTERROR;
}

extern "C" int ads_undef(const char* sname, short funcno) {
  Host* host = Host::Current();
  return host && sname ? host->module().Undef(sname, funcno) : RTERROR;
}

extern "C" int ads_getfuncode(void) {
  ModuleCall* call = CurrentCall();
  return call ? call->code : RTERROR;
}

extern "C" resbuf* ads_getargs(void) {
  ModuleCall* call = CurrentCall();
  return call ? call->args.get() : nullptr;
}

extern "C" int ads_retvoid(void) { return SetResult(Value::Void()); }
extern "C" int ads_retnil(void) { return SetResult(Value::Nil()); }
extern "C" int ads_rett(void) { return SetResult(Value::T()); }
extern "C" int ads_retint(int ival) { return SetResult(Value::Int(ival)); }
extern "C" int ads_retreal(ads_real rval) { return SetResult(Value::Real(rval)); }

extern "C" int ads_retstr(const char* s) {
  return SetResult(s ? Value::String(s) : Value::Nil());
}

extern "C" int ads_retlist(const resbuf* rbuf) {
  std::vector<Value> items = vorhost::lisp::ValuesOf(rbuf);
  return SetResult(Value::List(std::move(items)));
}

extern "C" int ads_fail(const char* str) {
  ModuleCall* call = CurrentCall();
  if (!call) return RTERROR;
  call->failure = str ? str : "";
  return RTNORM;
}

// ---- Command line -------------------------------------------------------------

extern "C" int ads_printf(const char* format, ...) {
  Host* host = Host::Current();
  if (!host || !format) return RTERROR;
  va_list ap;
  va_start(ap, format);
  va_list again;
  va_copy(again, ap);
  int len = std::vsnprintf(nullptr, 0, format, ap);
  va_end(ap);
  if (len < 0) {
    va_end(again);
    return RTERROR;
  }
  std::string text(static_cast<size_t>(len) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, again);
  va_end(again);
  text.pop_back();
  host->transcript().Write(text);
  return len;
}

extern "C" int ads_alert(const char* str) {
  Host* host = Host::Current();
  if (!host || !str) return RTERROR;
  host->console().Alert(str);
  return RTNORM;
}

// ---- System variables and symbols -------------------------------------------------

extern "C" int ads_getvar(const char* sym, resbuf* result) {
  Host* host = Host::Current();
  vorhost::SysValue value;
  if (!host || !sym || !result || !host->document().sysvars().Get(sym, &value)) return RTERROR;
  if (auto* s = std::get_if<short>(&value)) {
    result->restype = RTSHORT;
    result->resval.rint = *s;
  } else if (auto* r = std::get_if<double>(&value)) {
    result->restype = RTREAL;
    result->resval.rreal = *r;
  } else if (auto* p = std::get_if<vorhost::Point3>(&value)) {
    result->restype = RT3DPOINT;
    std::memcpy(result->resval.rpoint, p->data(), sizeof(ads_point));
  } else {
    char* copy = vorhost::HostStrdup(std::get<std::string>(value).c_str());
    if (!copy) return RTERROR;
    result->restype = RTSTR;
    result->resval.rstring = copy;
  }
  return RTNORM;
}

extern "C" int ads_setvar(const char* sym, const resbuf* val) {
  Host* host = Host::Current();
  if (!host || !sym || !val) return RTERROR;
  vorhost::SysValue value;
  switch (val->restype) {
    case RTSHORT: value = val->resval.rint; break;
    case RTLONG:
      if (val->resval.rlong < -32768 || val->resval.rlong > 32767) return RTERROR;
      value = static_cast<short>(val->resval.rlong);
      break;
    case RTREAL: case RTANG: value = val->resval.rreal; break;
    case RTSTR:
      if (!val->resval.rstring) return RTERROR;
      value = std::string(val->resval.rstring);
      break;
    case RTPOINT: case RT3DPOINT:
      value = vorhost::Point3{val->resval.rpoint[0], val->resval.rpoint[1],
                              val->restype == RT3DPOINT ? val->resval.rpoint[2] : 0.0};
      break;
    default: return RTERROR;
  }
  std::string why;
  return host->document().SetVariable(sym, value, &why) ? RTNORM : RTERROR;
}

extern "C" int ads_getsym(const char* sname, resbuf** value) {
  Host* host = Host::Current();
  if (!value) return RTERROR;
  *value = nullptr;
  if (!host || !sname) return RTERROR;
  *value = vorhost::lisp::ToResbuf(host->lisp().Symbol(sname));
  return *value ? RTNORM : RTERROR;
}

extern "C" int ads_putsym(const char* sname, resbuf* value) {
  Host* host = Host::Current();
  if (!host || !sname) return RTERROR;
  host->lisp().SetSymbol(sname, vorhost::lisp::FromResbuf(value));
  return RTNORM;
}

extern "C" int ads_invoke(const resbuf* args, resbuf** result) {
  Host* host = Host::Current();
  if (result) *result = nullptr;
  if (!host || !args || args->restype != RTSTR || !args->resval.rstring) return RTERROR;
  std::vector<Value> values = vorhost::lisp::ValuesOf(args->rbnext);
  Value value;
  std::string err;
  if (!host->lisp().Call(args->resval.rstring, values, &value, &err)) return RTERROR;
  if (result && value.kind != Value::Kind::kVoid) *result = vorhost::lisp::ToResbuf(value);
  return RTNORM;
}

// ---- Tables, matching, geometry -------------------------------------------------

extern "C" resbuf* ads_tblsearch(const char* tblname, const char* sym, int setnext) {
  (void)setnext;  // stepping a table (ads_tblnext) is not offered
  Host* host = Host::Current();
  if (!host || !tblname || !sym) return nullptr;
  return vorhost::TableRecordData(host->document().tables(), tblname, sym);
}

extern "C" int ads_wcmatch(const char* string, const char* pattern) {
  if (!string || !pattern) return RTERROR;
  return vorhost::WcMatch(string, pattern) ? RTNORM : RTERROR;
}

// Angles come out in [0, 2*pi): straight down is exactly 3*pi/2 and right to
// left exactly pi, as the labelling code relies on.
extern "C" ads_real ads_angle(const ads_point pt1, const ads_point pt2) {
  double dx = pt2[0] - pt1[0], dy = pt2[1] - pt1[1];
  if (dx == 0 && dy < 0) return 3 * M_PI / 2;
  double a = std::atan2(dy, dx);
  return a < 0 ? a + 2 * M_PI : a;
}

extern "C" ads_real ads_distance(const ads_point pt1, const ads_point pt2) {
  return std::hypot(pt2[0] - pt1[0], pt2[1] - pt1[1], pt2[2] - pt1[2]);
}

extern "C" void ads_polar(const ads_point pt, ads_real angle, ads_real dist, ads_point result) {
  result[0] = pt[0] + dist * std::cos(angle);
  result[1] = pt[1] + dist * std::sin(angle);
  result[2] = pt[2];
}
