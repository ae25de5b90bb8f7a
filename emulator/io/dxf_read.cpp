// dxf_read.cpp - opening DXF files of R12 and later into a drawing.
//
// The file is first split into (code, value, line) pairs, which settles the
// two-line rhythm and the codes once; the sections are then read from that
// list. Records of the host's own types come out in the host's group order
// with the host's defaults for groups the file left out, so that code
// reading a drawing from a file sees what it sees in one the host made.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <span>

#include "emulator/core/numbers.h"
#include "emulator/core/resbuf.h"
#include "emulator/core/text.h"
#include "emulator/drawing/blocks.h"
#include "emulator/drawing/layout.h"
#include "emulator/io/dxf.h"
#include "emulator/io/dxf_format.h"
#include "emulator/io/dxf_text.h"

namespace vorhost {
namespace {

using dxf::IsPointCode;

struct RawGroup {
  int code;
  std::string_view value;
  int line;  // of the value
};

// A text of the file for a message: bytes outside printable ASCII as \xNN.
std::string Shown(std::string_view text) {
  std::string out;
  for (unsigned char c : text) {
    char buf[8];
    std::snprintf(buf, sizeof buf, c >= 0x20 && c < 0x7F ? "%c" : "\\x%02X", c);
    out += buf;
  }
  return out;
}

// What a number's text turned out to be.
enum class Parsed { kNumber, kNotNumber, kOutOfRange };

// A whole number; "1.0" is taken too, as some writers give integers so.
// A number past 64 bits is out of range, not wrapped.
Parsed ParseLong(std::string_view s, long* v) {
  s = Trim(s);
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  if (s.empty()) return Parsed::kNotNumber;
  auto r = std::from_chars(s.data(), s.data() + s.size(), *v);
  if (r.ptr == s.data() + s.size() && r.ec == std::errc()) return Parsed::kNumber;
  if (r.ptr == s.data() + s.size() && r.ec == std::errc::result_out_of_range) return Parsed::kOutOfRange;
  double d = 0;
  r = std::from_chars(s.data(), s.data() + s.size(), d);
  if (r.ec != std::errc() || r.ptr != s.data() + s.size() || d != std::trunc(d)) return Parsed::kNotNumber;
  if (!(std::fabs(d) < 9e18)) return Parsed::kOutOfRange;
  *v = static_cast<long>(d);
  return Parsed::kNumber;
}

// A real the host can keep: finite and within the drawing's range
// (core/numbers.h). "nan" and "inf" are not numbers to it.
Parsed ParseReal(std::string_view s, double* v) {
  s = Trim(s);
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  auto r = std::from_chars(s.data(), s.data() + s.size(), *v);
  if (s.empty() || r.ptr != s.data() + s.size()) return Parsed::kNotNumber;
  if (r.ec == std::errc::result_out_of_range) return Parsed::kOutOfRange;
  if (r.ec != std::errc() || !std::isfinite(*v)) return Parsed::kNotNumber;
  return InRange(*v) ? Parsed::kNumber : Parsed::kOutOfRange;
}

// Whether an integer fits its group: 16 bits for the short groups, 64 for
// 160-169, 32 for the others.
bool IntegerFits(int code, RbValue kind, long v) {
  if (kind == RbValue::kShort) return IsShort(v);
  if (code >= 160 && code <= 169) return true;
  return v >= INT32_MIN && v <= INT32_MAX;
}

// A handle: hexadecimal, at most kMaxHandle; anything else is no handle
// (0), and the record gets a new one, as one whose handle is taken does.
// The bound leaves the host room to number the records it adds.
constexpr uint32_t kMaxHandle = 0x7FFFFFFF;
uint32_t ParseHandle(std::string_view text) {
  text = Trim(text);
  uint64_t h = 0;
  auto r = std::from_chars(text.data(), text.data() + text.size(), h, 16);
  if (r.ec != std::errc() || r.ptr != text.data() + text.size() || h > kMaxHandle) return 0;
  return static_cast<uint32_t>(h);
}

// What a group of a given code holds in memory: ValueOf's answer where it
// has one, else the DXF reference's ranges; unknown codes stay texts.
RbValue KindOf(int code) {
  RbValue kind = ValueOf(code);
  if (kind == RbValue::kName) return RbValue::kString;
  if (kind != RbValue::kNone) return kind;
  // A y or z without the x before it (20-37) is still a coordinate.
  if ((code >= 20 && code <= 37) || (code >= 110 && code <= 149) || (code >= 210 && code <= 239) ||
      (code >= 460 && code <= 469) || (code >= 1010 && code <= 1059))
    return RbValue::kReal;
  if ((code >= 270 && code <= 299) || (code >= 370 && code <= 389) ||
      (code >= 400 && code <= 409) || (code >= 1060 && code <= 1070))
    return RbValue::kShort;
  if ((code >= 160 && code <= 169) || (code >= 420 && code <= 459) || code == 1071)
    return RbValue::kLong;
  return RbValue::kString;
}

// The blocks that hold model and paper space in files of any version; the
// host's model space is its entity list and it has no paper space.
bool IsLayoutBlock(std::string_view name) {
  for (std::string_view prefix : {"$MODEL_SPACE", "$PAPER_SPACE", "*MODEL_SPACE", "*PAPER_SPACE"})
    if (name.size() >= prefix.size() && SameName(name.substr(0, prefix.size()), prefix)) return true;
  return false;
}

// Header variables of the file, converted, waiting for the tables they
// name to be read.
struct HeaderValues {
  std::string version, code_page;
  uint32_t seed = 0;
  std::map<std::string, std::span<const RawGroup>> raw;  // by name without $
  std::map<std::string, std::vector<Group>> values;      // the same, converted
};

// The file as (code, value, line) groups, read in order from a cursor; the
// values converted to what their codes hold, and the file's faults
// reported at their lines.
class GroupStream {
 public:
  GroupStream(std::string path, std::string data) : path_(std::move(path)), data_(std::move(data)) {}

  // Splits the file into groups; false (and the error) for a file that is
  // binary, or has a code line that holds no group code or no value after it.
  bool Split();
  // Sets the error: the file and line, the message, and the line itself.
  bool Fail(int line, const std::string& message);
  const std::string& error() const { return error_; }

  // Whether the groups ran out; sets the error then.
  bool AtEnd();
  // The same, or the next group is the file's EOF while a section is open.
  bool SectionEnds();
  // Whether the group ahead of the cursor (0 for the one at it) has this
  // code and value.
  bool At(int code, std::string_view value, size_t ahead = 0) const {
    return pos_ + ahead < groups_.size() && groups_[pos_ + ahead].code == code &&
           Trim(groups_[pos_ + ahead].value) == value;
  }
  bool Has(size_t ahead) const { return pos_ + ahead < groups_.size(); }
  const RawGroup& Peek(size_t ahead = 0) const { return groups_[pos_ + ahead]; }
  // The group at the cursor, which moves past it.
  const RawGroup& Next() { return groups_[pos_++]; }
  void Skip(size_t count = 1) { pos_ += count; }
  // The groups from the cursor up to the next group 0 (or group stop).
  std::span<const RawGroup> Record(int stop = dxf::kCodeStart);
  // Steps to the next record of a section: true with its type and groups;
  // false at the section's ENDSEC (*ended set) or when the file ends
  // inside the section (the error set).
  bool NextRecord(std::string_view* type, std::span<const RawGroup>* raws, bool* ended);

  // Texts are decoded in the file's code page, once the header names it.
  void ChooseCodePage(const std::string& version, const std::string& code_page) {
    decoder_.Choose(version, code_page);
  }
  // Typed groups of a record. Owner handles, reactor and dictionary
  // brackets and comments say nothing the host keeps and are left out.
  bool Convert(std::span<const RawGroup> raws, std::vector<Group>* out);

 private:
  bool ConvertOne(std::span<const RawGroup> raws, size_t* i, std::vector<Group>* out);

  std::string path_;
  std::string data_;
  std::vector<std::string_view> lines_;
  std::vector<RawGroup> groups_;
  size_t pos_ = 0;
  std::string error_;
  dxf::TextDecoder decoder_;
};

// The sections of a file read into a drawing and its header's variables.
class Parser {
 public:
  Parser(std::string path, std::string data) : in_(std::move(path), std::move(data)) {}

  bool Run(Drawing* drawing, std::vector<std::pair<std::string, SysValue>>* vars);
  const std::string& error() const { return in_.error(); }

 private:
  bool ReadSection();
  bool ReadHeader();
  bool ReadTables();
  bool ReadTableEntry(std::string_view type, std::span<const RawGroup> raws);
  bool ReadBlocks();
  // The block an INSERT names, and the line of the name.
  using InsertLines = std::vector<std::pair<std::string, int>>;
  bool ReadEntities(EntityList* out, std::string_view end, InsertLines* insert_lines = nullptr);
  bool CheckBlockCycles();
  bool ReadEntitiesSection();
  bool ReadEntity(std::string_view type, std::span<const RawGroup> raws, const Entity* polyline,
                  Entity* e);
  bool SkipSection();
  void ApplyHeader(std::vector<std::pair<std::string, SysValue>>* vars);
  std::optional<SysValue> HeaderValue(std::string_view name, int code) const;
  void ResolveLinetypeStyles();

  GroupStream in_;
  HeaderValues header_;
  Drawing drawing_;
  std::map<uint32_t, std::string> style_handles_;  // STYLE handle -> name
  // Text elements of linetypes whose style is known only by handle.
  struct PendingStyle {
    std::string linetype;
    size_t element;
    uint32_t handle;
  };
  std::vector<PendingStyle> pending_styles_;
  // For each block read (by upper-case name), the INSERTs in it.
  std::map<std::string, InsertLines> block_inserts_;
};

bool GroupStream::Fail(int line, const std::string& message) {
  error_ = FileLineMessage(path_, static_cast<size_t>(line), message);
  if (line >= 1 && static_cast<size_t>(line) <= lines_.size()) {
    error_ += "\n" + Shown(lines_[line - 1].substr(0, 80)) + "\n^";
  }
  return false;
}

bool GroupStream::AtEnd() {
  if (pos_ < groups_.size()) return false;
  Fail(std::max(1, static_cast<int>(lines_.size())), "the file ends without EOF");
  return true;
}

bool GroupStream::SectionEnds() {
  if (AtEnd()) return true;
  if (!At(0, "EOF")) return false;
  Fail(groups_[pos_].line, "EOF inside a section (no ENDSEC)");
  return true;
}

// Every code line must hold an integer and have a value line after it.
bool GroupStream::Split() {
  // Binary files start with a line naming themselves "... Binary DXF".
  if (data_.substr(0, data_.find('\n')).find("Binary DXF") != std::string::npos)
    return Fail(1, "binary DXF files are not read");
  for (size_t start = 0; start < data_.size();) {
    size_t end = data_.find('\n', start);
    if (end == std::string::npos) end = data_.size();
    std::string_view line(data_.data() + start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines_.push_back(line);
    start = end + 1;
  }
  for (size_t i = 0; i < lines_.size(); i += 2) {
    int line = static_cast<int>(i) + 1;
    long code = 0;
    std::string_view t = Trim(lines_[i]);
    auto r = std::from_chars(t.data(), t.data() + t.size(), code);
    if (t.empty() || r.ec != std::errc() || r.ptr != t.data() + t.size() || code < 0 ||
        code > dxf::kMaxGroupCode)
      return Fail(line, "'" + Shown(lines_[i].substr(0, 40)) + "' is not a group code");
    if (i + 1 >= lines_.size()) return Fail(line, "group code " + std::to_string(code) + " has no value");
    groups_.push_back({static_cast<int>(code), lines_[i + 1], line + 1});
  }
  return true;
}

std::span<const RawGroup> GroupStream::Record(int stop) {
  size_t start = pos_;
  while (pos_ < groups_.size() && groups_[pos_].code != dxf::kCodeStart && groups_[pos_].code != stop) pos_++;
  return std::span<const RawGroup>(groups_).subspan(start, pos_ - start);
}

bool GroupStream::NextRecord(std::string_view* type, std::span<const RawGroup>* raws, bool* ended) {
  *ended = false;
  while (!SectionEnds()) {
    const RawGroup& g = Next();
    if (g.code != dxf::kCodeStart) continue;
    *type = Trim(g.value);
    if (*type == "ENDSEC") {
      *ended = true;
      return false;
    }
    *raws = Record();
    return true;
  }
  return false;
}

bool GroupStream::ConvertOne(std::span<const RawGroup> raws, size_t* i, std::vector<Group>* out) {
  const RawGroup& g = raws[*i];
  // True when the text read as a number; else the error of its line.
  auto number = [&](const RawGroup& text, Parsed parsed) {
    if (parsed == Parsed::kNumber) return true;
    return Fail(text.line, "'" + Shown(Trim(text.value).substr(0, 40)) +
                               (parsed == Parsed::kNotNumber ? "' is not a number" : "' is out of range") +
                               " (group " + std::to_string(text.code) + ")");
  };
  if (IsPointCode(g.code)) {
    Point3 p{0, 0, 0};
    if (!number(g, ParseReal(g.value, &p[0]))) return false;
    if (*i + 1 >= raws.size() || raws[*i + 1].code != g.code + dxf::kPointYOffset)
      return Fail(g.line, "group " + std::to_string(g.code) + " has no y (group " +
                              std::to_string(g.code + dxf::kPointYOffset) + ") after it");
    ++*i;
    if (!number(raws[*i], ParseReal(raws[*i].value, &p[1]))) return false;
    bool has_z = g.code != 18 && *i + 1 < raws.size() && raws[*i + 1].code == g.code + dxf::kPointZOffset;
    if (has_z && (++*i, !number(raws[*i], ParseReal(raws[*i].value, &p[2])))) return false;
    out->push_back({g.code, p});
    return true;
  }
  switch (RbValue kind = KindOf(g.code)) {
    case RbValue::kReal: {
      double v = 0;
      if (!number(g, ParseReal(g.value, &v))) return false;
      out->push_back({g.code, v});
      return true;
    }
    case RbValue::kShort:
    case RbValue::kLong: {
      long v = 0;
      Parsed parsed = ParseLong(g.value, &v);
      if (parsed == Parsed::kNumber && !IntegerFits(g.code, kind, v)) parsed = Parsed::kOutOfRange;
      if (!number(g, parsed)) return false;
      if (kind == RbValue::kShort) out->push_back({g.code, static_cast<short>(v)});
      else out->push_back({g.code, v});
      return true;
    }
    default:
      out->push_back({g.code, decoder_.Decode(g.value)});
      return true;
  }
}

bool GroupStream::Convert(std::span<const RawGroup> raws, std::vector<Group>* out) {
  for (size_t i = 0; i < raws.size(); i++) {
    int code = raws[i].code;
    if (code == dxf::kCodeOwner || code == dxf::kCodeHardOwner || code == dxf::kCodeComment) continue;
    if (code == dxf::kCodeGroupBracket) {
      if (!Trim(raws[i].value).starts_with("{")) continue;
      auto closes = [&](size_t k) {
        return raws[k].code == dxf::kCodeGroupBracket && Trim(raws[k].value) == "}";
      };
      while (i + 1 < raws.size() && !closes(i + 1)) i++;
      if (i + 1 < raws.size()) i++;
      continue;
    }
    if (!ConvertOne(raws, &i, out)) return false;
  }
  return true;
}

bool Parser::ReadHeader() {
  while (!in_.SectionEnds()) {
    if (in_.At(0, "ENDSEC")) {
      in_.Skip();
      break;
    }
    const RawGroup& g = in_.Next();
    if (g.code != dxf::kCodeHeaderVar) continue;  // stray groups: nothing to keep
    std::string name(Trim(g.value));
    if (name.starts_with("$")) name.erase(0, 1);
    header_.raw[name] = in_.Record(dxf::kCodeHeaderVar);
  }
  if (!in_.error().empty()) return false;
  auto first = [&](const char* name) -> std::string {
    auto it = header_.raw.find(name);
    return it == header_.raw.end() || it->second.empty() ? "" : std::string(Trim(it->second[0].value));
  };
  header_.version = first("ACADVER");
  header_.code_page = first("DWGCODEPAGE");
  header_.seed = ParseHandle(first("HANDSEED"));
  in_.ChooseCodePage(header_.version, header_.code_page);
  // Only the variables the host keeps are read; the others may hold what
  // they like.
  for (const dxf::HeaderVar& hv : dxf::kHeaderVars)
    if (auto it = header_.raw.find(hv.name); it != header_.raw.end())
      if (!in_.Convert(it->second, &header_.values[hv.name])) return false;
  return true;
}

uint32_t HandleOf(const std::vector<Group>& groups, int code = dxf::kCodeHandle) {
  for (const Group& g : groups)
    if (auto* s = std::get_if<std::string>(&g.value); s && g.code == code) return ParseHandle(*s);
  return 0;
}

// Linetype elements: each 49 is a dash, gap or dot; a 74 with 2 (text) or
// 4 (shape) after it adds a text or shape element of length 0, whose 75,
// 340, 46, 50 (radians in the file), 44, 45 and 9 follow; 1 in 74 makes
// its rotation absolute.
LinetypeRecord ReadLinetype(const Entity& entry, std::vector<std::pair<size_t, uint32_t>>* styles) {
  LinetypeRecord t{entry.Text(2), entry.Text(3), {}};
  bool in_drawn = false;  // whether the groups now belong to a text or shape
  for (const Group& g : entry.groups) {
    if (g.code == 49) {
      t.elements.push_back({std::get<double>(g.value)});
      in_drawn = false;
    } else if (auto* flags = std::get_if<short>(&g.value); flags && g.code == 74 && (*flags & 6)) {
      LinetypeElement el;
      el.kind = (*flags & 2) ? LinetypeElement::Kind::kText : LinetypeElement::Kind::kShape;
      el.absolute_rotation = *flags & 1;
      t.elements.push_back(el);
      in_drawn = true;
    } else if (in_drawn) {
      LinetypeElement& el = t.elements.back();
      if (auto* d = std::get_if<double>(&g.value)) {
        if (g.code == 46) el.scale = *d;
        else if (g.code == 50) el.rotation = dxf::RadiansToDegrees(*d);
        else if (g.code == 44) el.x = *d;
        else if (g.code == 45) el.y = *d;
      } else if (auto* text = std::get_if<std::string>(&g.value)) {
        if (g.code == 9) el.text = *text;
        if (g.code == 340) styles->push_back({t.elements.size() - 1, HandleOf({g}, 340)});
      }
    }
  }
  return t;
}

// Entries of the tables the host keeps; those of the others (VPORT,
// VIEW, ...) are not read at all.
bool Parser::ReadTableEntry(std::string_view type, std::span<const RawGroup> raws) {
  if (type != "LTYPE" && type != "LAYER" && type != "STYLE") return true;
  Entity entry{std::string(type)};
  // A linetype's total length (40) is not read: the host sums its elements.
  std::vector<RawGroup> kept(raws.begin(), raws.end());
  if (type == "LTYPE") std::erase_if(kept, [](const RawGroup& g) { return g.code == 40; });
  std::vector<Group> groups;
  if (!in_.Convert(kept, &groups)) return false;
  entry.groups = groups;
  if (type == "LTYPE") {
    std::vector<std::pair<size_t, uint32_t>> styles;
    LinetypeRecord t = ReadLinetype(entry, &styles);
    if (SameName(t.name, "BYLAYER") || SameName(t.name, "BYBLOCK")) return true;
    for (auto [element, handle] : styles) pending_styles_.push_back({t.name, element, handle});
    drawing_.tables().linetypes().Put(std::move(t));
  } else if (type == "LAYER") {
    drawing_.tables().layers().Put(
        LayerRecord{entry.Text(2), entry.Short(62, 7), entry.Text(6, "CONTINUOUS"), entry.Short(70)});
  } else if (type == "STYLE") {
    StyleRecord s{entry.Text(2),     entry.Text(3, "txt"), entry.Text(4),
                  entry.Real(40),    entry.Real(41, 1),    dxf::DegreesToRadians(entry.Real(50)),
                  entry.Real(42, 2.5), entry.Short(70),    entry.Short(71)};
    if (uint32_t h = HandleOf(groups)) style_handles_[h] = s.name;
    drawing_.tables().styles().Put(std::move(s));
  }
  return true;
}

bool Parser::ReadTables() {
  std::string_view type;
  std::span<const RawGroup> raws;
  bool ended = false;
  while (in_.NextRecord(&type, &raws, &ended))
    if (type != "TABLE" && type != "ENDTAB" && !ReadTableEntry(type, raws)) return false;
  return ended;
}

void Parser::ResolveLinetypeStyles() {
  for (const PendingStyle& p : pending_styles_) {
    LinetypeRecord* t = drawing_.tables().linetypes().Find(p.linetype);
    auto it = style_handles_.find(p.handle);
    if (!t || p.element >= t->elements.size() || it == style_handles_.end()) continue;
    LinetypeElement& el = t->elements[p.element];
    const StyleRecord* style = drawing_.tables().styles().Find(it->second);
    el.source = el.kind == LinetypeElement::Kind::kShape && style ? style->font : it->second;
  }
}

// One entity: its common properties taken out of the groups, subclass
// markers dropped where the writer puts them back (see dxf_format.h),
// angles made radians, the host's types in the host's order.
bool Parser::ReadEntity(std::string_view type, std::span<const RawGroup> raws,
                        const Entity* polyline, Entity* e) {
  e->type = std::string(type);
  std::vector<Group> groups, kept;
  if (!in_.Convert(raws, &groups)) return false;
  bool keep_markers = !dxf::IsR12Type(type) && dxf::SubclassMarkerOf(type).empty();
  bool degrees = dxf::IsDegreeType(type);
  for (Group& g : groups) {
    auto* text = std::get_if<std::string>(&g.value);
    if (g.code == dxf::kCodeHandle && text) {
      e->handle = ParseHandle(*text);
    } else if (g.code == dxf::kCodeLayer && text) {
      e->layer = *text;
    } else if (g.code == dxf::kCodeLinetype && text) {
      e->linetype = SameName(*text, "BYLAYER") ? "" : *text;
    } else if (g.code == dxf::kCodeColor) {
      e->color = std::get<short>(g.value);
    } else if (g.code != dxf::kCodeSubclass || keep_markers) {
      if (degrees && (g.code == 50 || g.code == 51))
        if (auto* d = std::get_if<double>(&g.value)) *d = dxf::DegreesToRadians(*d);
      kept.push_back(std::move(g));
    }
  }
  // The host's own types in the host's group order, with its defaults for
  // what the file left out (a vertex's widths default to its polyline's).
  e->groups = LayOut(e->type, std::move(kept), e->type == "VERTEX" ? polyline : nullptr);
  return true;
}

// Records up to the group 0 named end (ENDSEC or ENDBLK), which is left
// for the caller; with insert_lines, the block each INSERT names and the
// line where it does.
bool Parser::ReadEntities(EntityList* out, std::string_view end, InsertLines* insert_lines) {
  std::optional<size_t> polyline;  // index in *out of the open POLYLINE
  while (!in_.SectionEnds()) {
    if (in_.At(0, end)) return true;
    if (in_.At(0, "ENDSEC")) return in_.Fail(in_.Peek().line, "BLOCK without ENDBLK");
    const RawGroup& g = in_.Next();
    if (g.code != dxf::kCodeStart) continue;
    std::string_view type = Trim(g.value);
    std::span<const RawGroup> raws = in_.Record();
    Entity e;
    if (!ReadEntity(type, raws, polyline ? &(*out)[*polyline] : nullptr, &e)) return false;
    if (type == "INSERT" && insert_lines) {
      int line = g.line;
      for (const RawGroup& r : raws)
        if (r.code == dxf::kCodeName) line = r.line;
      insert_lines->push_back({e.Text(dxf::kCodeName), line});
    }
    if (type == "POLYLINE") polyline = out->size();
    else if (type != "VERTEX") polyline.reset();
    out->push_back(std::move(e));
  }
  return false;
}

bool Parser::ReadBlocks() {
  std::string_view type;
  std::span<const RawGroup> raws;
  bool ended = false;
  while (in_.NextRecord(&type, &raws, &ended)) {
    if (type != "BLOCK") continue;
    Entity head;
    std::vector<Group> groups;
    if (!in_.Convert(raws, &groups)) return false;
    head.groups = groups;
    BlockRecord block{head.Text(2), head.Point(10), head.Short(70), {}};
    InsertLines inserts;
    if (!ReadEntities(&block.entities, "ENDBLK", &inserts)) return false;
    block_inserts_[UpperName(block.name)] = std::move(inserts);
    in_.Skip();
    in_.Record();  // ENDBLK's own groups
    if (!IsLayoutBlock(block.name)) drawing_.tables().blocks().Put(std::move(block));
  }
  return ended;
}

bool Parser::ReadEntitiesSection() {
  EntityList records;
  if (!ReadEntities(&records, "ENDSEC")) return false;
  in_.Skip();
  for (Entity& e : records) drawing_.Append(std::move(e));
  return true;
}

// A block that inserts itself, directly or through others, would be drawn
// without end: such a file is refused at the INSERT that closes the cycle.
bool Parser::CheckBlockCycles() {
  std::vector<std::string> cycle = BlockCycle(drawing_.tables().blocks());
  if (cycle.empty()) return true;
  const std::string& last = cycle[cycle.size() - 2];
  int line = 0;
  for (const auto& [name, at] : block_inserts_[UpperName(last)])
    if (SameName(name, cycle.back())) {
      line = at;
      break;
    }
  return in_.Fail(line, DescribeCycle(cycle));
}

bool Parser::SkipSection() {
  while (!in_.SectionEnds()) {
    bool end = in_.At(0, "ENDSEC");
    in_.Skip();
    if (end) return true;
  }
  return false;
}

std::optional<SysValue> Parser::HeaderValue(std::string_view name, int code) const {
  auto it = header_.values.find(std::string(name));
  if (it == header_.values.end()) return std::nullopt;
  for (const Group& g : it->second) {
    if (g.code != code) continue;
    if (auto* p = std::get_if<Point3>(&g.value)) return *p;
    if (auto* d = std::get_if<double>(&g.value)) return *d;
    if (auto* s = std::get_if<short>(&g.value)) return *s;
    if (auto* t = std::get_if<std::string>(&g.value)) return *t;
  }
  return std::nullopt;
}

// The header's variables as the host keeps them: names of styles, layers
// and linetypes only when the drawing has them, spelt as the table does.
void Parser::ApplyHeader(std::vector<std::pair<std::string, SysValue>>* vars) {
  const Tables& t = drawing_.tables();
  for (const dxf::HeaderVar& hv : dxf::kHeaderVars) {
    std::optional<SysValue> v = HeaderValue(hv.name, hv.code);
    if (!v) continue;
    if (auto* name = std::get_if<std::string>(&*v)) {
      if (hv.code == 7) {
        const StyleRecord* s = t.styles().Find(*name);
        if (!s) continue;
        *name = s->name;
      } else if (hv.code == 8) {
        const LayerRecord* l = t.layers().Find(*name);
        if (!l) continue;
        *name = l->name;
      } else if (hv.code == 6) {
        const LinetypeRecord* l = t.linetypes().Find(*name);
        if (!l) continue;
        *name = l->name;
      }
    }
    vars->push_back({hv.name, std::move(*v)});
  }
}

// One section, from its SECTION group.
bool Parser::ReadSection() {
  if (!in_.At(0, "SECTION")) return in_.Fail(in_.Peek().line, "expected SECTION or EOF");
  if (!in_.Has(1) || in_.Peek(1).code != dxf::kCodeName) return in_.Fail(in_.Peek().line, "SECTION without a name");
  std::string_view name = Trim(in_.Peek(1).value);
  in_.Skip(2);
  return name == "HEADER"     ? ReadHeader()
         : name == "TABLES"   ? ReadTables()
         : name == "BLOCKS"   ? ReadBlocks()
         : name == "ENTITIES" ? ReadEntitiesSection()
                              : SkipSection();
}

bool Parser::Run(Drawing* drawing, std::vector<std::pair<std::string, SysValue>>* vars) {
  if (!in_.Split()) return false;
  while (!in_.AtEnd()) {
    if (in_.At(0, "EOF")) break;
    if (!ReadSection()) return false;
  }
  if (!in_.error().empty() || !CheckBlockCycles()) return false;
  ResolveLinetypeStyles();
  ApplyHeader(vars);
  uint32_t seed = std::max(header_.seed, drawing_.handle_seed());
  for (const BlockRecord& b : drawing_.tables().blocks().records())
    for (const Entity& e : b.entities) seed = std::max(seed, e.handle + 1);
  drawing_.set_handle_seed(seed);
  *drawing = std::move(drawing_);
  return true;
}

}  // namespace

bool ReadDxf(std::string where, std::string data, Drawing* drawing, SysVarTable* vars,
             std::string* err) {
  Parser parser(std::move(where), std::move(data));
  std::vector<std::pair<std::string, SysValue>> values;
  if (!parser.Run(drawing, &values)) {
    *err = parser.error();
    return false;
  }
  if (vars)
    for (auto& [name, value] : values) {
      const SysVar* var = vars->Find(name);
      if (var && var->value.index() == value.index()) vars->Force(name, std::move(value));
    }
  return true;
}

bool OpenDxf(const std::string& linux_path, Drawing* drawing, SysVarTable* vars, std::string* err,
             std::string_view shown_name) {
  std::string shown(shown_name.empty() ? std::string_view(linux_path) : shown_name);
  std::string data;
  if (!ReadWholeFile(linux_path, &data)) {
    *err = shown + ": cannot open";
    return false;
  }
  return ReadDxf(std::move(shown), std::move(data), drawing, vars, err);
}

}  // namespace vorhost
