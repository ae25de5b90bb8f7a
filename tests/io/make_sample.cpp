// make_sample.cpp - writes the sample drawing as sample.dxf and sample.svg
// into a folder, with sample.json: what an independent reader must find in
// the DXF file, taken from the drawing in memory (check_dxf.py compares).
//
// usage: make_sample DIR
#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <iostream>

#include "emulator/core/encoding.h"
#include "emulator/io/dxf.h"
#include "emulator/io/svg.h"
#include "io/sample_drawing.h"

namespace vorhost {
namespace {

// A Big5 text as a JSON string in UTF-8.
std::string Json(const std::string& big5) {
  std::string out = "\"";
  for (char c : Big5ToUtf8(big5)) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char esc[8];
      std::snprintf(esc, sizeof esc, "\\u%04x", c);
      out += esc;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

std::string Num(double v) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.17g", v);
  std::string s = buf;
  if (s.find_first_of(".en") == std::string::npos) s += ".0";  // stays a real for Python
  return s;
}

double Degrees(double radians) { return radians * 180 / M_PI; }

std::string Handle(uint32_t h) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%X", h);
  return buf;
}

// Rows of widths and bulge, one per vertex.
std::string VertexRows(const std::vector<std::array<double, 3>>& rows) {
  std::string s = "[";
  for (size_t i = 0; i < rows.size(); i++)
    s += std::string(i ? ", " : "") + "[" + Num(rows[i][0]) + ", " + Num(rows[i][1]) + ", " + Num(rows[i][2]) + "]";
  return s + "]";
}

std::string LwpolylineRows(const Entity& e) {
  std::vector<std::array<double, 3>> rows;
  for (const Group& g : e.groups) {
    if (g.code == 10) rows.push_back({0, 0, 0});
    else if (!rows.empty() && g.code >= 40 && g.code <= 42) rows.back()[g.code - 40] = std::get<double>(g.value);
  }
  return VertexRows(rows);
}

std::string EntityJson(const EntityList& records, size_t i) {
  const Entity& e = records[i];
  std::string s = "{\"type\": \"" + e.type + "\", \"handle\": \"" + Handle(e.handle) +
                  "\", \"layer\": " + Json(e.layer) + ", \"linetype\": " +
                  Json(e.linetype.empty() ? "BYLAYER" : e.linetype) + ", \"color\": " + std::to_string(e.color);
  if (e.type == "TEXT") {
    s += ", \"text\": " + Json(e.Text(1)) + ", \"style\": " + Json(e.Text(7)) + ", \"rotation\": " + Num(Degrees(e.Real(50)));
  } else if (e.type == "ARC") {
    s += ", \"angles\": [" + Num(Degrees(e.Real(50))) + ", " + Num(Degrees(e.Real(51))) + "]";
  } else if (e.type == "INSERT") {
    s += ", \"block\": " + Json(e.Text(2)) + ", \"attribs\": [";
    for (size_t k = i + 1; k < records.size() && records[k].type == "ATTRIB"; k++)
      s += std::string(k > i + 1 ? ", " : "") + "[" + Json(records[k].Text(2)) + ", " + Json(records[k].Text(1)) + "]";
    s += "]";
  } else if (e.type == "POLYLINE") {
    std::vector<std::array<double, 3>> rows;
    for (size_t k = i + 1; k < records.size() && records[k].type == "VERTEX"; k++)
      rows.push_back({records[k].Real(40), records[k].Real(41), records[k].Real(42)});
    s += ", \"vertices\": " + VertexRows(rows);
  } else if (e.type == "LWPOLYLINE") {
    s += ", \"vertices\": " + LwpolylineRows(e);
  }
  return s + "}";
}

std::string TablesJson(const Tables& t) {
  std::string s = "\"layers\": {";
  for (size_t i = 0; i < t.layers().records().size(); i++) {
    const LayerRecord& l = t.layers().records()[i];
    s += std::string(i ? ", " : "") + Json(l.name) + ": {\"color\": " + std::to_string(l.color) +
         ", \"linetype\": " + Json(l.linetype) + ", \"flags\": " + std::to_string(l.flags) + "}";
  }
  s += "},\n\"linetypes\": {";
  bool first = true;
  for (const LinetypeRecord& lt : t.linetypes().records()) {
    if (lt.name == "BYLAYER" || lt.name == "BYBLOCK") continue;
    s += std::string(first ? "" : ", ") + Json(lt.name) + ": [";
    bool first_length = true;  // R12 keeps the dashes and gaps only
    for (const LinetypeElement& el : lt.elements)
      if (el.kind == LinetypeElement::Kind::kPlain) {
        s += std::string(first_length ? "" : ", ") + Num(el.length);
        first_length = false;
      }
    s += "]";
    first = false;
  }
  s += "},\n\"styles\": {";
  for (size_t i = 0; i < t.styles().records().size(); i++) {
    const StyleRecord& st = t.styles().records()[i];
    s += std::string(i ? ", " : "") + Json(st.name) + ": {\"font\": " + Json(st.font) + ", \"bigfont\": " +
         Json(st.big_font) + ", \"flags\": " + std::to_string(st.flags) + ", \"height\": " +
         Num(st.fixed_height) + ", \"width\": " + Num(st.width) + "}";
  }
  return s + "}";
}

std::string BlocksJson(const Tables& t) {
  std::string s = "\"blocks\": {";
  for (size_t i = 0; i < t.blocks().records().size(); i++) {
    const BlockRecord& b = t.blocks().records()[i];
    std::string types, attdefs;
    for (const Entity& e : b.entities) {
      types += (types.empty() ? "\"" : ", \"") + e.type + "\"";
      if (e.type == "ATTDEF")
        attdefs += (attdefs.empty() ? "[" : ", [") + Json(e.Text(2)) + ", " + Json(e.Text(3)) + ", " + Json(e.Text(1)) + "]";
    }
    s += std::string(i ? ",\n  " : "") + Json(b.name) + ": {\"flags\": " + std::to_string(b.flags) +
         ", \"types\": [" + types + "], \"attdefs\": [" + attdefs + "]}";
  }
  return s + "}";
}

std::string ExpectationJson(const Drawing& d) {
  std::string s = "{\n" + TablesJson(d.tables()) + ",\n" + BlocksJson(d.tables()) + ",\n\"entities\": [\n";
  bool first = true;
  for (size_t i = 0; i < d.entities().size(); i++) {
    const Entity& e = d.entities()[i];
    if (e.erased || e.IsSubEntity()) continue;
    s += std::string(first ? "  " : ",\n  ") + EntityJson(d.entities(), i);
    first = false;
  }
  return s + "\n]}\n";
}

}  // namespace
}  // namespace vorhost

int main(int argc, char** argv) {
  using namespace vorhost;
  if (argc != 2) {
    std::cerr << "usage: make_sample DIR\n";
    return 2;
  }
  std::string dir = argv[1];
  mkdir(dir.c_str(), 0755);
  Drawing drawing;
  SysVarTable vars;
  sample::Build(&drawing, &vars);
  std::string err;
  if (!SaveDxf(drawing, vars, dir + "/sample.dxf", &err) || !SaveSvg(drawing, vars, dir + "/sample.svg", &err)) {
    std::cerr << err << "\n";
    return 1;
  }
  std::ofstream json(dir + "/sample.json");
  json << ExpectationJson(drawing);
  return json.good() ? 0 : 1;
}
