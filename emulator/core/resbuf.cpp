// resbuf.cpp - result-buffer lists, and ads_newrb, ads_relrb, ads_buildlist.
#include "emulator/core/resbuf.h"

#include <cstdio>
#include <cstring>

#include "emulator/core/alloc.h"

namespace vorhost {

RbValue ValueOf(int t) {
  switch (t) {
    case RTREAL: case RTANG: return RbValue::kReal;
    case RTPOINT: case RT3DPOINT: return RbValue::kPoint;
    case RTSHORT: return RbValue::kShort;
    case RTLONG: return RbValue::kLong;
    case RTSTR: case RTDXF0: return RbValue::kString;
    case RTENAME: case RTPICKS: return RbValue::kName;
    case RTNONE: case RTLB: case RTLE: case RTDOTE: case RTNIL: case RTT: case RTVOID:
      return RbValue::kNone;
    default: break;
  }
  // Group codes of entity and table data.
  if (t == -1 || t == -2) return RbValue::kName;
  if ((t >= 0 && t <= 9) || (t >= 100 && t <= 102) || (t >= 300 && t <= 309) ||
      (t >= 410 && t <= 419) || (t >= 999 && t <= 1003))
    return RbValue::kString;
  if ((t >= 10 && t <= 18) || t == 210 || (t >= 1010 && t <= 1013)) return RbValue::kPoint;
  if ((t >= 38 && t <= 59) || (t >= 140 && t <= 149) || (t >= 1040 && t <= 1042))
    return RbValue::kReal;
  if ((t >= 60 && t <= 79) || (t >= 170 && t <= 179) || t == 1070) return RbValue::kShort;
  if ((t >= 90 && t <= 99) || t == 1071) return RbValue::kLong;
  return RbValue::kNone;
}

resbuf* NewRb(int restype) {
  auto* rb = static_cast<resbuf*>(HostAlloc(sizeof(resbuf)));
  if (rb) rb->restype = static_cast<short>(restype);
  return rb;
}

void ReleaseList(resbuf* list) {
  while (list) {
    resbuf* next = list->rbnext;
    if (ValueOf(list->restype) == RbValue::kString) std::free(list->resval.rstring);
    std::free(list);
    list = next;
  }
}

// Fills item's value from its source, copying a text onto the host heap.
static bool CopyValue(resbuf* item, const resbuf* source) {
  item->resval = source->resval;
  if (ValueOf(source->restype) != RbValue::kString || !source->resval.rstring) return true;
  item->resval.rstring = HostStrdup(source->resval.rstring);
  return item->resval.rstring != nullptr;
}

resbuf* CopyList(const resbuf* list) {
  resbuf* head = nullptr;
  resbuf** link = &head;
  for (; list; list = list->rbnext) {
    resbuf* item = NewRb(list->restype);
    if (!item || !CopyValue(item, list)) {
      std::free(item);
      ReleaseList(head);
      return nullptr;
    }
    *link = item;
    link = &item->rbnext;
  }
  return head;
}

// Takes the value of one item of type t from the argument list.
static bool TakeValue(resbuf* item, int t, va_list* values) {
  switch (ValueOf(t)) {
    case RbValue::kReal: item->resval.rreal = va_arg(*values, double); break;
    case RbValue::kShort: item->resval.rint = static_cast<short>(va_arg(*values, int)); break;
    case RbValue::kLong: item->resval.rlong = va_arg(*values, long); break;
    case RbValue::kPoint: {
      const ads_real* p = va_arg(*values, const ads_real*);
      std::memcpy(item->resval.rpoint, p, sizeof(ads_point));
      break;
    }
    case RbValue::kName: {
      const long* n = va_arg(*values, const long*);
      item->resval.rlname[0] = n[0];
      item->resval.rlname[1] = n[1];
      break;
    }
    case RbValue::kString: {
      const char* s = va_arg(*values, const char*);
      item->resval.rstring = HostStrdup(s ? s : "");
      return item->resval.rstring != nullptr;
    }
    case RbValue::kNone: break;
  }
  return true;
}

resbuf* BuildList(int first_type, va_list values) {
  va_list ap;
  va_copy(ap, values);
  resbuf* head = nullptr;
  resbuf** link = &head;
  for (int t = first_type; t != 0 && t != RTNONE; t = va_arg(ap, int)) {
    // RTDXF0 stands for group 0, which the list's terminator cannot.
    resbuf* item = NewRb(t == RTDXF0 ? 0 : t);
    if (!item || !TakeValue(item, t == RTDXF0 ? RTSTR : t, &ap)) {
      std::free(item);
      ReleaseList(head);
      head = nullptr;
      break;
    }
    *link = item;
    link = &item->rbnext;
  }
  va_end(ap);
  return head;
}

std::string DescribeList(const resbuf* list) {
  std::string out = "(";
  char num[64];
  for (const resbuf* rb = list; rb; rb = rb->rbnext) {
    if (rb != list) out += ' ';
    std::snprintf(num, sizeof num, "(%d", rb->restype);
    out += num;
    switch (ValueOf(rb->restype)) {
      case RbValue::kReal: std::snprintf(num, sizeof num, " . %g)", rb->resval.rreal); break;
      case RbValue::kShort: std::snprintf(num, sizeof num, " . %d)", rb->resval.rint); break;
      case RbValue::kLong: std::snprintf(num, sizeof num, " . %ld)", rb->resval.rlong); break;
      case RbValue::kPoint:
        std::snprintf(num, sizeof num, " %g %g %g)", rb->resval.rpoint[0], rb->resval.rpoint[1],
                      rb->resval.rpoint[2]);
        break;
      case RbValue::kName:
        std::snprintf(num, sizeof num, " . <%lx>)", static_cast<unsigned long>(rb->resval.rlname[0]));
        break;
      case RbValue::kString:
        out += " . \"";
        out += rb->resval.rstring ? rb->resval.rstring : "";
        std::snprintf(num, sizeof num, "\")");
        break;
      case RbValue::kNone: std::snprintf(num, sizeof num, ")"); break;
    }
    out += num;
  }
  return out + ")";
}

namespace {
constexpr long kEntityTag = 0x454E54;  // "ENT"
constexpr long kSetTag = 0x534554;     // "SET"
}  // namespace

void EntityName(uint64_t id, long name[2]) {
  name[0] = static_cast<long>(id);
  name[1] = kEntityTag;
}

uint64_t EntityId(const long name[2]) {
  return name && name[1] == kEntityTag && name[0] > 0 ? static_cast<uint64_t>(name[0]) : 0;
}

void SetName(long number, long name[2]) {
  name[0] = number;
  name[1] = kSetTag;
}

long SetNumber(const long name[2]) { return name && name[1] == kSetTag && name[0] > 0 ? name[0] : 0; }

}  // namespace vorhost

extern "C" resbuf* ads_newrb(int v) { return vorhost::NewRb(v); }

extern "C" int ads_relrb(resbuf* rb) {
  vorhost::ReleaseList(rb);
  return RTNORM;
}

extern "C" resbuf* ads_buildlist(int rtype, ...) {
  va_list ap;
  va_start(ap, rtype);
  resbuf* list = vorhost::BuildList(rtype, ap);
  va_end(ap);
  return list;
}
