// tables.cpp - default tables and their records as group-code lists.
#include "emulator/drawing/tables.h"

#include <cmath>

#include "emulator/core/alloc.h"
#include "emulator/core/resbuf.h"

namespace vorhost {
namespace {

// Appends group items to a list under construction; remembers a failure so
// that the caller checks once at the end.
class GroupWriter {
 public:
  void Text(int code, const std::string& s) {
    if (resbuf* rb = Add(code)) ok_ = (rb->resval.rstring = HostStrdup(s.c_str())) != nullptr;
  }
  void Short(int code, short v) {
    if (resbuf* rb = Add(code)) rb->resval.rint = v;
  }
  void Real(int code, double v) {
    if (resbuf* rb = Add(code)) rb->resval.rreal = v;
  }
  void Point(int code, const Point3& p) {
    if (resbuf* rb = Add(code))
      for (int i = 0; i < 3; i++) rb->resval.rpoint[i] = p[i];
  }
  // The list, or nullptr (and nothing leaked) if any step failed.
  resbuf* Finish() {
    if (ok_) return head_.release();
    return nullptr;
  }

 private:
  resbuf* Add(int code) {
    if (!ok_) return nullptr;
    resbuf* rb = NewRb(code);
    if (!rb) {
      ok_ = false;
      return nullptr;
    }
    if (!head_) head_.reset(rb);
    else tail_->rbnext = rb;
    tail_ = rb;
    return rb;
  }
  RbList head_;
  resbuf* tail_ = nullptr;
  bool ok_ = true;
};

}  // namespace

Tables::Tables() {
  styles_.Put(StyleRecord{"STANDARD"});
  layers_.Put(LayerRecord{"0"});
  linetypes_.Put(LinetypeRecord{"BYBLOCK", "", {}});
  linetypes_.Put(LinetypeRecord{"BYLAYER", "", {}});
  linetypes_.Put(LinetypeRecord{"CONTINUOUS", "Solid line", {}});
}

double LinetypeRecord::PatternLength() const {
  double total = 0;
  for (const LinetypeElement& e : elements) total += std::fabs(e.length);
  return total;
}

resbuf* Tables::Search(std::string_view table, std::string_view name) const {
  GroupWriter w;
  if (SameName(table, "STYLE")) {
    const StyleRecord* s = styles_.Find(name);
    if (!s) return nullptr;
    w.Text(0, "STYLE");
    w.Text(2, s->name);
    w.Short(70, s->flags);
    w.Real(40, s->fixed_height);
    w.Real(41, s->width);
    w.Real(50, s->oblique);
    w.Short(71, s->generation);
    w.Real(42, s->last_height);
    w.Text(3, s->font);
    w.Text(4, s->big_font);
  } else if (SameName(table, "LAYER")) {
    const LayerRecord* l = layers_.Find(name);
    if (!l) return nullptr;
    w.Text(0, "LAYER");
    w.Text(2, l->name);
    w.Short(70, l->flags);
    w.Short(62, l->color);
    w.Text(6, l->linetype);
  } else if (SameName(table, "LTYPE")) {
    const LinetypeRecord* t = linetypes_.Find(name);
    if (!t) return nullptr;
    w.Text(0, "LTYPE");
    w.Text(2, t->name);
    w.Short(70, 0);
    w.Text(3, t->description);
    w.Short(72, 'A');
    short dashes = 0;
    for (const LinetypeElement& e : t->elements) dashes += e.kind == LinetypeElement::Kind::kPlain;
    w.Short(73, dashes);
    w.Real(40, t->PatternLength());
    for (const LinetypeElement& e : t->elements)
      if (e.kind == LinetypeElement::Kind::kPlain) w.Real(49, e.length);
  } else if (SameName(table, "BLOCK")) {
    const BlockRecord* b = blocks_.Find(name);
    if (!b) return nullptr;
    w.Text(0, "BLOCK");
    w.Text(2, b->name);
    w.Short(70, b->flags);
    w.Point(10, b->base);
  } else {
    return nullptr;
  }
  return w.Finish();
}

}  // namespace vorhost
