// dxf.cpp - saving a drawing as an R12 DXF file in code page ANSI_950.
#include "emulator/io/dxf.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <set>
#include <unordered_set>

#include "emulator/core/text.h"
#include "emulator/drawing/geometry.h"
#include "emulator/io/dxf_format.h"
#include "emulator/io/dxf_numbers.h"
#include "emulator/io/dxf_text.h"
#include "emulator/platform/replace_file.h"

namespace vorhost {
namespace {

using dxf::kCodeColor;
using dxf::kCodeHandle;
using dxf::kCodeLayer;
using dxf::kCodeLinetype;
using dxf::kCodeName;
using dxf::kCodeStart;

// The line of a group code as R12 writers write it: right-aligned in three
// columns, then the line's end ("  0\n", " 10\n", "1071\n").
struct CodeLine {
  char text[16];
  size_t size = 0;
  std::string_view view() const { return {text, size}; }
};

CodeLine FormatCodeLine(int code) {
  CodeLine line;
  char* digits = line.text + 2;
  char* end = std::to_chars(digits, line.text + sizeof line.text - 1, code).ptr;
  size_t length = static_cast<size_t>(end - digits);
  char* start = length < 3 ? digits - (3 - length) : digits;
  std::fill(start, digits, ' ');
  *end++ = '\n';
  std::copy(start, end, line.text);
  line.size = static_cast<size_t>(end - start);
  return line;
}

// The lines of every code a record may hold, made once.
const std::vector<CodeLine>& CodeLines() {
  static const std::vector<CodeLine> lines = [] {
    std::vector<CodeLine> all;
    for (int code = 0; code <= dxf::kMaxGroupCode; code++) all.push_back(FormatCodeLine(code));
    return all;
  }();
  return lines;
}

// The lines of a file as it is written: each group as its code's line and
// its value. The lines go to the writer a block at a time, so that no copy
// of the whole file is ever held.
class GroupSink {
 public:
  using Writer = std::function<void(std::string_view)>;
  explicit GroupSink(Writer writer)
      : writer_(std::move(writer)), block_(new char[kBlock]), code_lines_(CodeLines()) {}
  GroupSink(const GroupSink&) = delete;
  GroupSink& operator=(const GroupSink&) = delete;

  void Raw(int code, std::string_view value) {
    CodeLine made;
    if (code < 0 || static_cast<size_t>(code) >= code_lines_.size()) made = FormatCodeLine(code);
    std::string_view head = made.size ? made.view() : code_lines_[code].view();
    if (head.size() + value.size() + 1 > kBlock - used_) {  // the block is full: the long way
      Put(head);
      Put(value);
      Put("\n");
      return;
    }
    char* at = block_.get() + used_;
    std::memcpy(at, head.data(), head.size());
    std::memcpy(at + head.size(), value.data(), value.size());
    at[head.size() + value.size()] = '\n';
    used_ += head.size() + value.size() + 1;
  }
  // A text needs escaping only when it holds a control character or a
  // caret; any other is written as it is.
  void Text(int code, std::string_view big5) {
    if (big5.find('^') == std::string_view::npos &&
        std::none_of(big5.begin(), big5.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }))
      Raw(code, big5);
    else
      Raw(code, dxf::EscapeText(big5));
  }
  void Int(int code, long v) {
    char buf[dxf::kNumberChars];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    Raw(code, std::string_view(buf, static_cast<size_t>(r.ptr - buf)));
  }
  void Real(int code, double v) {
    non_finite_ |= !std::isfinite(v);
    dxf::NumberBuffer buf;
    Raw(code, dxf::RealText(v, buf));
  }
  void Angle(int code, double radians) {
    non_finite_ |= !std::isfinite(radians);
    dxf::NumberBuffer buf;
    Raw(code, dxf::AngleText(radians, buf));
  }
  void Point(int code, const Point3& p, bool with_z = true) {
    Real(code, p[0]);
    Real(code + dxf::kPointYOffset, p[1]);
    if (with_z) Real(code + dxf::kPointZOffset, p[2]);
  }
  void Handle(uint32_t handle) {
    dxf::NumberBuffer buf;
    Raw(kCodeHandle, dxf::HandleText(handle, buf));
  }
  // Hands the lines not yet written to the writer.
  void Flush() {
    if (used_ > 0) writer_(std::string_view(block_.get(), used_));
    used_ = 0;
  }
  // Whether a real that is not finite was given (and written as 0).
  bool non_finite() const { return non_finite_; }

 private:
  static constexpr size_t kBlock = 64 * 1024;

  // Adds bytes to the block, handing the block over when they do not fit;
  // bytes longer than a block go to the writer directly.
  void Put(std::string_view bytes) {
    if (bytes.size() > kBlock - used_) {
      Flush();
      if (bytes.size() > kBlock) {
        writer_(bytes);
        return;
      }
    }
    std::memcpy(block_.get() + used_, bytes.data(), bytes.size());
    used_ += bytes.size();
  }

  Writer writer_;
  std::unique_ptr<char[]> block_;
  size_t used_ = 0;  // bytes of block_ not yet handed to the writer
  const std::vector<CodeLine>& code_lines_;
  bool non_finite_ = false;
};

// Gives every written record a handle unique in the file: a record keeps
// its own when no other took it, else it gets the next free one. Handles
// up to about the drawing's seed are marked in a vector of flags, as long
// as that stays near the number of records; any others (read from a file)
// in a set.
class HandleBook {
 public:
  HandleBook(uint32_t seed, size_t records)
      : next_(seed == 0 ? 1 : seed),
        dense_(std::min<size_t>(seed, 4 * records + 65536) + records + 1024) {}
  void Reserve(uint32_t handle) {
    if (handle != 0) Mark(handle);
  }
  uint32_t Take(uint32_t wanted) {
    if (wanted != 0 && !Used(wanted)) {
      Mark(wanted);
      return wanted;
    }
    while (Used(next_)) next_++;
    Mark(next_);
    return next_++;
  }
  // The file's $HANDSEED: above every handle given out.
  uint32_t Seed() const { return any_ ? std::max(next_, highest_ + 1) : next_; }

 private:
  bool Used(uint32_t h) const { return h < dense_.size() ? dense_[h] : far_.count(h) > 0; }
  void Mark(uint32_t h) {
    if (h < dense_.size()) dense_[h] = true;
    else far_.insert(h);
    highest_ = any_ ? std::max(highest_, h) : h;
    any_ = true;
  }

  uint32_t next_;
  std::vector<bool> dense_;
  std::unordered_set<uint32_t> far_;
  uint32_t highest_ = 0;
  bool any_ = false;
};

void WriteGroup(GroupList::Ref g, bool degrees, bool always_z, GroupSink* out) {
  int code = g.code();
  if (g.is_text()) {
    out->Text(code, g.text());
  } else if (g.is_real()) {
    if (degrees && (code == 50 || code == 51)) out->Angle(code, g.real());
    else out->Real(code, g.real());
  } else if (g.is_point()) {
    Point3 p = g.point();
    out->Point(code, p, always_z || p[2] != 0);
  } else if (g.is_short()) {
    out->Int(code, g.int16());
  } else {
    out->Int(code, g.int32());
  }
}

// One record: type, handle, common properties, then its groups. Records of
// newer types get their subclass markers back (see dxf_format.h) after the
// common properties and the groups of AcDbEntity, where readers of R12
// files look for them. Records of R12 types always carry z, newer ones
// only when it is not 0 (their 2D points have no z group).
void WriteEntity(const Entity& e, uint32_t handle, GroupSink* out) {
  out->Raw(kCodeStart, e.type);
  out->Handle(handle);
  out->Text(kCodeLayer, e.layer);
  if (!e.linetype.empty()) out->Text(kCodeLinetype, e.linetype);
  if (e.color != kColorByLayer) out->Int(kCodeColor, e.color);
  bool r12 = dxf::IsR12Type(e.type);
  bool degrees = dxf::IsDegreeType(e.type);
  std::string_view marker = dxf::SubclassMarkerOf(e.type);
  if (marker.empty()) {
    for (GroupList::Ref g : e.groups) WriteGroup(g, degrees, r12, out);
    return;
  }
  for (GroupList::Ref g : e.groups)
    if (dxf::IsEntityCode(g.code())) WriteGroup(g, degrees, r12, out);
  out->Raw(dxf::kCodeSubclass, dxf::kEntityMarker);
  out->Raw(dxf::kCodeSubclass, marker);
  for (GroupList::Ref g : e.groups)
    if (!dxf::IsEntityCode(g.code())) WriteGroup(g, degrees, r12, out);
}

// Model space's handles are unique already and reserved in handles; a
// block's records keep theirs only when no other record has it.
void WriteEntities(const EntityList& records, bool reserved, HandleBook* handles,
                   GroupSink* out) {
  for (const Entity& e : records) {
    if (e.erased) continue;
    WriteEntity(e, reserved && e.handle != 0 ? e.handle : handles->Take(e.handle), out);
  }
}

void BeginSection(std::string_view name, GroupSink* out) {
  out->Raw(kCodeStart, "SECTION");
  out->Raw(kCodeName, name);
}

void EndSection(GroupSink* out) { out->Raw(kCodeStart, "ENDSEC"); }

void BeginTable(std::string_view name, size_t count, GroupSink* out) {
  out->Raw(kCodeStart, "TABLE");
  out->Raw(kCodeName, name);
  out->Int(dxf::kCodeFlags, static_cast<long>(count));
}

void EndTable(GroupSink* out) { out->Raw(kCodeStart, "ENDTAB"); }

// The one viewport, looking at the drawing's extents.
void WriteVportTable(const Box& extents, GroupSink* out) {
  Point3 centre{0, 0, 0};
  double height = 297;
  if (!extents.empty) {
    Point3 c{(extents.lo[0] + extents.hi[0]) / 2, (extents.lo[1] + extents.hi[1]) / 2, 0};
    double h = std::max({extents.hi[1] - extents.lo[1], (extents.hi[0] - extents.lo[0]) / 1.4, 1.0}) * 1.1;
    // Extents wider than a double can measure keep the default view.
    if (std::isfinite(h) && std::isfinite(c[0]) && std::isfinite(c[1])) centre = c, height = h;
  }
  BeginTable("VPORT", 1, out);
  out->Raw(kCodeStart, "VPORT");
  out->Raw(kCodeName, "*ACTIVE");
  out->Int(70, 0);
  out->Point(10, {0, 0, 0}, false);
  out->Point(11, {1, 1, 0}, false);
  out->Point(12, centre, false);
  out->Point(13, {0, 0, 0}, false);
  out->Point(14, {1, 1, 0}, false);
  out->Point(15, {10, 10, 0}, false);
  out->Point(16, {0, 0, 1});
  out->Point(17, {0, 0, 0});
  out->Real(40, height);
  out->Real(41, 1.4);
  out->Real(42, 50);
  for (int code : {43, 44, 50, 51}) out->Real(code, 0);
  for (auto [code, value] : {std::pair{71, 0}, {72, 100}, {73, 1}, {74, 3}, {75, 0}, {76, 0},
                             {77, 0}, {78, 0}})
    out->Int(code, value);
  EndTable(out);
}

// Linetypes as R12 holds them: its elements cannot draw texts or shapes,
// so those elements (which take no length) are left out.
void WriteLtypeTable(const Tables& tables, GroupSink* out) {
  std::vector<const LinetypeRecord*> written;
  for (const LinetypeRecord& t : tables.linetypes().records())
    if (!SameName(t.name, "BYLAYER") &&
        !SameName(t.name, "BYBLOCK"))
      written.push_back(&t);
  BeginTable("LTYPE", written.size(), out);
  for (const LinetypeRecord* t : written) {
    std::vector<double> lengths;
    for (const LinetypeElement& el : t->elements)
      if (el.kind == LinetypeElement::Kind::kPlain) lengths.push_back(el.length);
    out->Raw(kCodeStart, "LTYPE");
    out->Text(kCodeName, t->name);
    out->Int(70, 0);
    out->Text(3, t->description);
    out->Int(72, 'A');
    out->Int(73, static_cast<long>(lengths.size()));
    out->Real(40, t->PatternLength());
    for (double length : lengths) out->Real(49, length);
  }
  EndTable(out);
}

// Layers of the table, then any layer a record names that the table lacks
// (a reader would make it with these defaults anyway).
void WriteLayerTable(const Drawing& drawing, GroupSink* out) {
  SymbolTable<LayerRecord> layers = drawing.tables().layers();
  auto note = [&](const EntityList& records) {
    const RecordName* last = nullptr;  // a run of records on one layer is looked up once
    for (const Entity& e : records) {
      if (e.erased || (last && e.layer == *last)) continue;
      if (!layers.Find(e.layer)) layers.Put(LayerRecord{e.layer});
      last = &e.layer;
    }
  };
  note(drawing.entities());
  for (const BlockRecord& b : drawing.tables().blocks().records()) note(b.entities);
  BeginTable("LAYER", layers.records().size(), out);
  for (const LayerRecord& l : layers.records()) {
    out->Raw(kCodeStart, "LAYER");
    out->Text(kCodeName, l.name);
    out->Int(70, l.flags);
    out->Int(62, l.color);
    out->Text(6, l.linetype);
  }
  EndTable(out);
}

void WriteStyleTable(const Tables& tables, GroupSink* out) {
  BeginTable("STYLE", tables.styles().records().size(), out);
  for (const StyleRecord& s : tables.styles().records()) {
    out->Raw(kCodeStart, "STYLE");
    out->Text(kCodeName, s.name);
    out->Int(70, s.flags);
    out->Real(40, s.fixed_height);
    out->Real(41, s.width);
    out->Angle(50, s.oblique);
    out->Int(71, s.generation);
    out->Real(42, s.last_height);
    out->Text(3, s.font);
    out->Text(4, s.big_font);
  }
  EndTable(out);
}

// ACAD and every application whose extended data a record carries.
void WriteAppidTable(const Drawing& drawing, GroupSink* out) {
  std::set<std::string> apps{"ACAD"};
  auto note = [&](const EntityList& records) {
    for (const Entity& e : records)
      for (GroupList::Ref g : e.groups)
        if (g.code() == dxf::kCodeAppName && g.is_text()) apps.emplace(g.text());
  };
  note(drawing.entities());
  for (const BlockRecord& b : drawing.tables().blocks().records()) note(b.entities);
  BeginTable("APPID", apps.size(), out);
  for (const std::string& app : apps) {
    out->Raw(kCodeStart, "APPID");
    out->Text(kCodeName, app);
    out->Int(70, 0);
  }
  EndTable(out);
}

void WriteTables(const Drawing& drawing, const Box& extents, GroupSink* out) {
  BeginSection("TABLES", out);
  WriteVportTable(extents, out);
  WriteLtypeTable(drawing.tables(), out);
  WriteLayerTable(drawing, out);
  WriteStyleTable(drawing.tables(), out);
  for (const char* empty : {"VIEW", "UCS"}) {
    BeginTable(empty, 0, out);
    EndTable(out);
  }
  WriteAppidTable(drawing, out);
  BeginTable("DIMSTYLE", 0, out);
  EndTable(out);
  EndSection(out);
}

// Each block with flag 2 exactly when it holds attribute definitions.
// BLOCK and ENDBLK carry no handle: the host keeps none for them, and one
// made up at each save would change the file at every save.
void WriteBlocks(const Tables& tables, HandleBook* handles, GroupSink* out) {
  BeginSection("BLOCKS", out);
  for (const BlockRecord& b : tables.blocks().records()) {
    bool has_attdefs = false;
    for (const Entity& e : b.entities) has_attdefs |= !e.erased && e.type == "ATTDEF";
    out->Raw(kCodeStart, "BLOCK");
    out->Raw(kCodeLayer, "0");
    out->Text(kCodeName, b.name);
    out->Int(70, has_attdefs ? (b.flags | 2) : (b.flags & ~2));
    out->Point(10, b.base);
    out->Text(3, b.name);
    WriteEntities(b.entities, false, handles, out);
    out->Raw(kCodeStart, "ENDBLK");
    out->Raw(kCodeLayer, "0");
  }
  EndSection(out);
}

void WriteHeaderVar(const dxf::HeaderVar& hv, const SysVarTable& vars, GroupSink* out) {
  SysValue v;
  if (!vars.Get(hv.name, &v)) return;
  std::string name = std::string("$") + hv.name;
  if (hv.code == 10 && std::holds_alternative<Point3>(v)) {
    out->Raw(dxf::kCodeHeaderVar, name);
    out->Point(10, std::get<Point3>(v), !hv.planar);
  } else if (hv.code == 40 && std::holds_alternative<double>(v)) {
    out->Raw(dxf::kCodeHeaderVar, name);
    out->Real(40, std::get<double>(v));
  } else if (hv.code == 70 && std::holds_alternative<short>(v)) {
    out->Raw(dxf::kCodeHeaderVar, name);
    out->Int(70, std::get<short>(v));
  } else if (hv.code < 10 && std::holds_alternative<std::string>(v)) {
    out->Raw(dxf::kCodeHeaderVar, name);
    out->Text(hv.code, std::get<std::string>(v));
  }
}

void WriteHeader(const SysVarTable& vars, const Box& extents, uint32_t seed, GroupSink* out) {
  BeginSection("HEADER", out);
  out->Raw(dxf::kCodeHeaderVar, "$ACADVER");
  out->Raw(1, dxf::kVersionR12);
  out->Raw(dxf::kCodeHeaderVar, "$DWGCODEPAGE");
  out->Raw(3, dxf::kCodePage);
  // An empty drawing has the inverted extents that readers expect.
  out->Raw(dxf::kCodeHeaderVar, "$EXTMIN");
  out->Point(10, extents.empty ? Point3{1e20, 1e20, 1e20} : extents.lo);
  out->Raw(dxf::kCodeHeaderVar, "$EXTMAX");
  out->Point(10, extents.empty ? Point3{-1e20, -1e20, -1e20} : extents.hi);
  for (const dxf::HeaderVar& hv : dxf::kHeaderVars) WriteHeaderVar(hv, vars, out);
  out->Raw(dxf::kCodeHeaderVar, "$HANDLING");
  out->Int(70, 1);
  out->Raw(dxf::kCodeHeaderVar, "$HANDSEED");
  out->Handle(seed);
  EndSection(out);
}

// Writes the file through writer in one pass: the extents come from the
// drawing's spatial index, and $HANDSEED, which the header gives before
// the blocks take their handles, from handing them out once beforehand the
// same way. False when a number was not finite.
bool WriteDxf(const Drawing& drawing, const SysVarTable& vars, GroupSink::Writer writer) {
  size_t records = drawing.entities().size();
  for (const BlockRecord& b : drawing.tables().blocks().records()) records += b.entities.size();
  auto reserved = [&drawing, records] {
    HandleBook handles(drawing.handle_seed(), records);
    for (const Entity& e : drawing.entities()) handles.Reserve(e.handle);
    return handles;
  };
  HandleBook rehearsal = reserved();
  for (const BlockRecord& b : drawing.tables().blocks().records())
    for (const Entity& e : b.entities)
      if (!e.erased) rehearsal.Take(e.handle);
  for (const Entity& e : drawing.entities())
    if (!e.erased && e.handle == 0) rehearsal.Take(0);
  HandleBook handles = reserved();
  Box extents = DrawingBox(drawing);

  GroupSink file(std::move(writer));
  WriteHeader(vars, extents, rehearsal.Seed(), &file);
  WriteTables(drawing, extents, &file);
  WriteBlocks(drawing.tables(), &handles, &file);
  BeginSection("ENTITIES", &file);
  WriteEntities(drawing.entities(), true, &handles, &file);
  EndSection(&file);
  file.Raw(kCodeStart, "EOF");
  file.Flush();
  // The host never keeps such a number; should one get in all the same,
  // the file is not made rather than written with a 0 in its place.
  return !file.non_finite();
}

}  // namespace

bool DrawingDxf(const Drawing& drawing, const SysVarTable& vars, std::string* text) {
  std::string made;
  if (!WriteDxf(drawing, vars, [&made](std::string_view block) { made.append(block); })) return false;
  *text = std::move(made);
  return true;
}

bool DrawingDxfFingerprint(const Drawing& drawing, const SysVarTable& vars, uint64_t* fingerprint) {
  Fingerprint made;
  if (!WriteDxf(drawing, vars, [&made](std::string_view block) { made.Add(block); })) return false;
  *fingerprint = made.value();
  return true;
}

bool SaveDxf(const Drawing& drawing, const SysVarTable& vars, const std::string& linux_path,
             std::string* err, std::string_view shown_name) {
  if (shown_name.empty()) shown_name = linux_path;
  FileReplacement file;
  bool writing = file.Begin(linux_path);
  // A drawing that cannot be saved is said to be so before any trouble
  // with its file: the whole drawing is formatted even when the writes
  // stopped.
  bool finite = WriteDxf(drawing, vars, [&](std::string_view block) {
    if (writing) writing = file.Write(block);
  });
  if (!finite) {
    *err = "Cannot save " + std::string(shown_name) + ": " + kNotFiniteReason + ".";
    return false;
  }
  if (writing && file.Commit()) return true;
  *err = SaveFailureMessage(shown_name, file.failure());
  return false;
}

}  // namespace vorhost
