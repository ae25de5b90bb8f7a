// dump.cpp - the drawing as stable text.
#include "emulator/io/dump.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/drawing/layout.h"

namespace vorhost {
namespace {

std::string Real(double v) { return DecimalText(v, 6); }

std::string Point(const Point3& p) { return "(" + Real(p[0]) + "," + Real(p[1]) + "," + Real(p[2]) + ")"; }

// A Big5 text in UTF-8 between quotes; quotes and control bytes escaped.
std::string Quoted(const std::string& big5) {
  std::string out = "\"";
  for (char c : Big5ToUtf8(big5)) {
    if (c == '"') {
      out += "\\\"";
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      char esc[8];
      std::snprintf(esc, sizeof esc, "\\x%02X", static_cast<unsigned char>(c));
      out += esc;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

std::string Value(const GroupValue& v) {
  if (auto* s = std::get_if<std::string>(&v)) return Quoted(*s);
  if (auto* d = std::get_if<double>(&v)) return Real(*d);
  if (auto* p = std::get_if<Point3>(&v)) return Point(*p);
  if (auto* h = std::get_if<short>(&v)) return std::to_string(*h);
  return std::to_string(std::get<long>(v));
}

void DumpRecord(const Entity& e, const std::string& indent, std::string* out) {
  *out += indent + e.type + " layer=" + Quoted(e.layer) +
          " linetype=" + (e.linetype.empty() ? "BYLAYER" : Quoted(e.linetype)) +
          " color=" + std::to_string(e.color);
  for (const Group& g : GroupsInOrder(e)) *out += " " + std::to_string(g.code) + "=" + Value(g.value);
  *out += "\n";
}

void DumpRecords(const EntityList& records, const std::string& indent, std::string* out) {
  for (const Entity& e : records)
    if (!e.erased) DumpRecord(e, e.IsSubEntity() ? indent + "  " : indent, out);
}

template <typename Record>
std::vector<const Record*> Sorted(const SymbolTable<Record>& table) {
  std::vector<const Record*> out;
  for (const Record& r : table.records()) out.push_back(&r);
  std::sort(out.begin(), out.end(),
            [](const Record* a, const Record* b) { return UpperName(a->name) < UpperName(b->name); });
  return out;
}

std::string Element(const LinetypeElement& el) {
  std::string s = Real(el.length);
  if (el.kind == LinetypeElement::Kind::kPlain) return s;
  s += el.kind == LinetypeElement::Kind::kText ? "[text " : "[shape ";
  s += Quoted(el.text) + " " + Quoted(el.source) + " S=" + Real(el.scale) +
       (el.absolute_rotation ? " A=" : " R=") + Real(el.rotation) + " X=" + Real(el.x) +
       " Y=" + Real(el.y) + "]";
  return s;
}

void DumpTables(const Tables& t, std::string* out) {
  for (const LinetypeRecord* r : Sorted(t.linetypes())) {
    *out += "LTYPE " + Quoted(r->name) + " " + Quoted(r->description) + " [";
    for (size_t i = 0; i < r->elements.size(); i++) *out += (i ? " " : "") + Element(r->elements[i]);
    *out += "]\n";
  }
  for (const LayerRecord* r : Sorted(t.layers()))
    *out += "LAYER " + Quoted(r->name) + " color=" + std::to_string(r->color) +
            " linetype=" + Quoted(r->linetype) + " flags=" + std::to_string(r->flags) + "\n";
  for (const StyleRecord* r : Sorted(t.styles()))
    *out += "STYLE " + Quoted(r->name) + " font=" + Quoted(r->font) + " big_font=" +
            Quoted(r->big_font) + " height=" + Real(r->fixed_height) + " width=" + Real(r->width) +
            " oblique=" + Real(r->oblique) + " last_height=" + Real(r->last_height) +
            " flags=" + std::to_string(r->flags) + " generation=" + std::to_string(r->generation) + "\n";
  for (const BlockRecord* r : Sorted(t.blocks())) {
    *out += "BLOCK " + Quoted(r->name) + " base=" + Point(r->base) + " flags=" + std::to_string(r->flags) + "\n";
    DumpRecords(r->entities, "  ", out);
  }
}

}  // namespace

std::string DumpDrawing(const Drawing& drawing) {
  std::string out;
  DumpTables(drawing.tables(), &out);
  out += "ENTITIES\n";
  DumpRecords(drawing.entities(), "", &out);
  return out;
}

}  // namespace vorhost
