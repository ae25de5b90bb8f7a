// drawing_api.cpp - the host operations of host/ads.h on the drawing:
// commands, entity data, selection sets, points and text boxes.
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <utility>

#include "emulator/api/group_lists.h"
#include "emulator/commands/selection.h"
#include "emulator/core/alloc.h"
#include "emulator/core/resbuf.h"
#include "emulator/drawing/textmetric.h"
#include "emulator/session/host.h"
#include "host/ads.h"

using vorhost::Answer;
using vorhost::Entity;
using vorhost::Host;

namespace {

// The members of the selection set a name stands for, or null.
const std::vector<uint64_t>* SetOf(Host& host, const long name[2]) {
  return host.document().selection_sets().Find(vorhost::SetNumber(name));
}

// The answer an item of a command list stands for; false for a type that
// cannot answer a prompt.
bool ItemAnswer(int type, const ads_u_val& v, Answer* out) {
  switch (type) {
    case RTSTR: *out = Answer::Text(v.rstring ? v.rstring : ""); return true;
    case RTREAL: *out = Answer::OfReal(v.rreal); return true;
    case RTANG: *out = Answer::OfReal(v.rreal * 180 / M_PI); return true;  // radians in
    case RTSHORT: *out = Answer::OfInt(v.rint); return true;
    case RTLONG: *out = Answer::OfInt(v.rlong); return true;
    case RT3DPOINT: *out = Answer::OfPoint({v.rpoint[0], v.rpoint[1], v.rpoint[2]}); return true;
    case RTPOINT: *out = Answer::OfPoint({v.rpoint[0], v.rpoint[1], 0}); return true;
    case RTENAME: *out = Answer::OfEntities(Answer::Kind::kName, {vorhost::EntityId(v.rlname)}); return true;
    case RTPICKS: {
      const std::vector<uint64_t>* set = SetOf(*Host::Current(), v.rlname);
      if (!set) return false;
      *out = Answer::OfEntities(Answer::Kind::kSet, *set);
      return true;
    }
    default: return false;
  }
}

int RunItems(const std::vector<Answer>& items, bool ok) {
  Host* host = Host::Current();
  if (!host || !ok) return RTERROR;
  return host->commands().Feed(items);
}

// Lets the user select objects; false when the user cancelled.
bool UserSelection(Host& host, std::vector<uint64_t>* out) {
  vorhost::ObjectSelector selector(host.commands());
  for (;;) {
    vorhost::Input in = host.console().Ask(selector.Prompt(), selector.asking(), std::nullopt, &selector.selected());
    if (!in.IsAnswer()) return false;
    vorhost::Step s = selector.Feed(in.answer);
    if (s == vorhost::Step::kReject) host.transcript().WriteLine(selector.refusal());
    if (s == vorhost::Step::kDone) break;
  }
  *out = selector.selected();
  return true;
}

}  // namespace

// ---- Commands -----------------------------------------------------------------

extern "C" int ads_command(int rtype, ...) {
  std::vector<Answer> items;
  items.reserve(8);  // a command and its answers: programs call this for every record they draw
  bool ok = true;
  va_list ap;
  va_start(ap, rtype);
  for (int t = rtype; ok && t != 0 && t != RTNONE; t = va_arg(ap, int)) {
    ads_u_val v{};
    switch (t) {
      case RTSTR: v.rstring = const_cast<char*>(va_arg(ap, const char*)); break;
      case RTREAL: case RTANG: v.rreal = va_arg(ap, double); break;
      case RTSHORT: v.rint = static_cast<short>(va_arg(ap, int)); break;
      case RTLONG: v.rlong = va_arg(ap, long); break;
      case RT3DPOINT: case RTPOINT: {
        const ads_real* p = va_arg(ap, const ads_real*);
        std::memcpy(v.rpoint, p, (t == RTPOINT ? 2 : 3) * sizeof(ads_real));
        break;
      }
      case RTENAME: case RTPICKS: {
        const long* n = va_arg(ap, const long*);
        v.rlname[0] = n[0];
        v.rlname[1] = n[1];
        break;
      }
      default: ok = false; continue;
    }
    ok = ItemAnswer(t, v, &items.emplace_back());
  }
  va_end(ap);
  return RunItems(items, ok);
}

extern "C" int ads_cmd(const resbuf* rbp) {
  std::vector<Answer> items;
  bool ok = true;
  for (const resbuf* rb = rbp; ok && rb; rb = rb->rbnext) {
    ok = ItemAnswer(rb->restype, rb->resval, &items.emplace_back());
  }
  return RunItems(items, ok);
}

// ---- Entities ---------------------------------------------------------------------

extern "C" resbuf* ads_entget(const ads_name ent) {
  Host* host = Host::Current();
  if (!host || !ent) return nullptr;
  const Entity* e = std::as_const(host->document().drawing()).Find(vorhost::EntityId(ent));
  return e && !e->erased ? vorhost::EntityData(*e) : nullptr;
}

extern "C" int ads_entnext(const ads_name ent, ads_name result) {
  Host* host = Host::Current();
  if (!host || !result) return RTERROR;
  uint64_t from = ent && (ent[0] || ent[1]) ? vorhost::EntityId(ent) : 0;
  if (ent && (ent[0] || ent[1]) && !from) return RTERROR;
  uint64_t next = host->document().drawing().Next(from);
  if (!next) return RTERROR;
  vorhost::EntityName(next, result);
  return RTNORM;
}

extern "C" int ads_entlast(ads_name result) {
  Host* host = Host::Current();
  if (!host || !result) return RTERROR;
  uint64_t last = host->document().drawing().Last();
  if (!last) return RTERROR;
  vorhost::EntityName(last, result);
  return RTNORM;
}

extern "C" int ads_textbox(const resbuf* args, ads_point pt1, ads_point pt2) {
  Host* host = Host::Current();
  if (!host || !pt1 || !pt2) return RTERROR;
  const Entity* e = nullptr;
  std::string text, style_name;
  vorhost::SysValue v;
  host->document().sysvars().Get("TEXTSTYLE", &v);
  style_name = std::get<std::string>(v);
  host->document().sysvars().Get("TEXTSIZE", &v);
  double height = std::get<double>(v), width = -1;
  bool have_text = false;
  for (const resbuf* rb = args; rb; rb = rb->rbnext) {
    if (rb->restype == -1)
      e = std::as_const(host->document().drawing()).Find(vorhost::EntityId(rb->resval.rlname));
    else if (rb->restype == 1 && rb->resval.rstring) text = rb->resval.rstring, have_text = true;
    else if (rb->restype == 7 && rb->resval.rstring) style_name = rb->resval.rstring;
    else if (rb->restype == 40) height = rb->resval.rreal;
    else if (rb->restype == 41) width = rb->resval.rreal;
  }
  if (e) {
    if (e->erased || (e->type != "TEXT" && e->type != "ATTRIB" && e->type != "ATTDEF")) return RTERROR;
    text = e->Text(1), style_name = e->Text(7, "STANDARD"), height = e->Real(40, height);
    width = e->Real(41, 1), have_text = true;
  }
  if (!have_text) return RTERROR;
  const vorhost::StyleRecord* style = std::as_const(host->document().tables()).styles().Find(style_name);
  if (width < 0) width = style ? style->width : 1;
  vorhost::TextBox box = vorhost::MeasureText(text, height, width, style && (style->flags & 4));
  pt1[0] = box.x1, pt1[1] = box.y1, pt1[2] = 0;
  pt2[0] = box.x2, pt2[1] = box.y2, pt2[2] = 0;
  return RTNORM;
}

// ---- Selection sets -----------------------------------------------------------------

extern "C" int ads_ssget(const char* str, const void* pt1, const void* pt2, const resbuf* filter,
                         ads_name ss) {
  (void)filter;  // selection filters are not offered
  Host* host = Host::Current();
  if (!host || !ss || host->commands().pending() || host->dialogs().any_open()) return RTERROR;
  std::string mode = str ? str : "";
  std::vector<uint64_t> found;
  const vorhost::Drawing& d = host->document().drawing();
  if (mode.empty()) {
    if (!UserSelection(*host, &found)) return RTCAN;
  } else if (mode == "X") {
    found = d.MainEntities();
  } else if (mode == "L") {
    if (d.Last()) found = {d.Last()};
  } else if (mode == "P") {
    found = host->document().selection_sets().previous();
  } else if ((mode == "W" || mode == "C") && pt1 && pt2) {
    vorhost::ObjectSelector selector(host->commands());
    const ads_real* a = static_cast<const ads_real*>(pt1);
    const ads_real* b = static_cast<const ads_real*>(pt2);
    selector.Feed(Answer::Text(mode));
    selector.Feed(Answer::OfPoint({a[0], a[1], a[2]}));
    selector.Feed(Answer::OfPoint({b[0], b[1], b[2]}));
    found = selector.selected();
  } else {
    return RTERROR;
  }
  if (found.empty()) return RTERROR;
  long number = host->document().selection_sets().Add(std::move(found));
  if (!number) return RTERROR;
  vorhost::SetName(number, ss);
  return RTNORM;
}

extern "C" int ads_sslength(const ads_name ss, long* len) {
  Host* host = Host::Current();
  const std::vector<uint64_t>* set = host ? SetOf(*host, ss) : nullptr;
  if (!set || !len) return RTERROR;
  *len = static_cast<long>(set->size());
  return RTNORM;
}

extern "C" int ads_ssname(const ads_name ss, long i, ads_name entres) {
  Host* host = Host::Current();
  const std::vector<uint64_t>* set = host ? SetOf(*host, ss) : nullptr;
  if (!set || !entres || i < 0 || static_cast<size_t>(i) >= set->size()) return RTERROR;
  vorhost::EntityName((*set)[static_cast<size_t>(i)], entres);
  return RTNORM;
}

extern "C" int ads_ssfree(const ads_name sname) {
  Host* host = Host::Current();
  return host && host->document().selection_sets().Free(vorhost::SetNumber(sname)) ? RTNORM : RTERROR;
}

// ---- Points -------------------------------------------------------------------------

extern "C" int ads_getpoint(const ads_point pt, const char* prompt, ads_point result) {
  Host* host = Host::Current();
  if (!host || !result || host->commands().pending() || host->dialogs().any_open()) return RTERROR;
  vorhost::Point3 base = pt ? vorhost::Point3{pt[0], pt[1], pt[2]} : host->document().LastPoint();
  for (;;) {
    vorhost::Input in = host->console().Ask(prompt ? prompt : "", vorhost::Asking::kPoint,
                                            pt ? std::optional<vorhost::Point3>(base) : std::nullopt);
    if (!in.IsAnswer()) return RTCAN;
    if (in.answer.IsEnter()) return RTNONE;
    if (std::optional<vorhost::Point3> p = vorhost::AnswerPoint(in.answer, base)) {
      std::memcpy(result, p->data(), sizeof(ads_point));
      return RTNORM;
    }
    host->transcript().WriteLine("Invalid point.");
  }
}
