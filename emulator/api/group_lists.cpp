// group_lists.cpp - entity and table record data as result-buffer lists.
#include "emulator/api/group_lists.h"

#include <cstdio>
#include <cstdlib>

#include "emulator/core/alloc.h"
#include "emulator/core/resbuf.h"
#include "emulator/core/text.h"

namespace vorhost {
namespace {

// Appends items to a list under construction. The first item that cannot
// be had stops it; the caller checks once, at the end.
class GroupWriter {
 public:
  // An item of group code with value, the union filled as the code says.
  void Value(int code, const GroupValue& value) {
    resbuf* rb = Add(code);
    if (!rb) return;
    switch (ValueOf(code)) {
      case RbValue::kString: {
        const std::string* s = std::get_if<std::string>(&value);
        ok_ = (rb->resval.rstring = HostStrdup(s ? s->c_str() : "")) != nullptr;
        break;
      }
      case RbValue::kPoint:
        if (auto* p = std::get_if<Point3>(&value))
          for (int i = 0; i < 3; i++) rb->resval.rpoint[i] = (*p)[i];
        break;
      case RbValue::kShort:
        if (auto* s = std::get_if<short>(&value)) rb->resval.rint = *s;
        else if (auto* l = std::get_if<long>(&value)) rb->resval.rint = static_cast<short>(*l);
        break;
      case RbValue::kLong:
        if (auto* l = std::get_if<long>(&value)) rb->resval.rlong = *l;
        else if (auto* s = std::get_if<short>(&value)) rb->resval.rlong = *s;
        break;
      default:
        if (auto* d = std::get_if<double>(&value)) rb->resval.rreal = *d;
        else if (auto* s = std::get_if<short>(&value)) rb->resval.rreal = *s;
        break;
    }
  }
  void Text(int code, const std::string& s) { Value(code, s); }
  void Short(int code, short v) { Value(code, v); }
  void Real(int code, double v) { Value(code, v); }
  void Name(int code, uint64_t id) {
    if (resbuf* rb = Add(code)) EntityName(id, rb->resval.rlname);
  }
  // The list, or nullptr (and nothing leaked) if any step failed.
  resbuf* Finish() { return ok_ ? head_.release() : nullptr; }

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

void StyleData(const StyleRecord& s, GroupWriter* w) {
  w->Text(2, s.name);
  w->Short(70, s.flags);
  w->Real(40, s.fixed_height);
  w->Real(41, s.width);
  w->Real(50, s.oblique);
  w->Short(71, s.generation);
  w->Real(42, s.last_height);
  w->Text(3, s.font);
  w->Text(4, s.big_font);
}

void LayerData(const LayerRecord& l, GroupWriter* w) {
  w->Text(2, l.name);
  w->Short(70, l.flags);
  w->Short(62, l.color);
  w->Text(6, l.linetype);
}

void LinetypeData(const LinetypeRecord& t, GroupWriter* w) {
  w->Text(2, t.name);
  w->Short(70, 0);
  w->Text(3, t.description);
  w->Short(72, 'A');
  short dashes = 0;
  for (const LinetypeElement& e : t.elements) dashes += e.kind == LinetypeElement::Kind::kPlain;
  w->Short(73, dashes);
  w->Real(40, t.PatternLength());
  for (const LinetypeElement& e : t.elements)
    if (e.kind == LinetypeElement::Kind::kPlain) w->Real(49, e.length);
}

void BlockData(const BlockRecord& b, GroupWriter* w) {
  w->Text(2, b.name);
  w->Short(70, b.flags);
  w->Value(10, b.base);
}

// Writes (0 . TABLE) and the record's data when table names this table.
template <typename Record>
bool TryTable(const SymbolTable<Record>& records, const char* table, std::string_view wanted,
              std::string_view name, void (*data)(const Record&, GroupWriter*), GroupWriter* w) {
  if (!SameName(wanted, table)) return false;
  const Record* r = records.Find(name);
  if (!r) return false;
  w->Text(0, table);
  data(*r, w);
  return true;
}

}  // namespace

resbuf* EntityData(const Entity& e) {
  GroupWriter w;
  char handle[16];
  std::snprintf(handle, sizeof handle, "%X", e.handle);
  w.Name(-1, e.id);
  w.Text(0, e.type);
  w.Text(5, handle);
  w.Text(8, e.layer);
  if (!e.linetype.empty()) w.Text(6, e.linetype);
  if (e.color != kColorByLayer) w.Short(62, e.color);
  for (const Group& g : e.groups) w.Value(g.code, g.value);
  if (e.type == "SEQEND") w.Name(-2, e.owner);
  return w.Finish();
}

resbuf* TableRecordData(const Tables& tables, std::string_view table, std::string_view name) {
  GroupWriter w;
  bool found = TryTable(tables.styles(), "STYLE", table, name, StyleData, &w) ||
               TryTable(tables.layers(), "LAYER", table, name, LayerData, &w) ||
               TryTable(tables.linetypes(), "LTYPE", table, name, LinetypeData, &w) ||
               TryTable(tables.blocks(), "BLOCK", table, name, BlockData, &w);
  return found ? w.Finish() : nullptr;
}

}  // namespace vorhost
