// tables.h - the symbol tables of a drawing: text styles, layers and
// linetypes, each a list of records in creation order, names case-blind.
#ifndef VORHOST_DRAWING_TABLES_H
#define VORHOST_DRAWING_TABLES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/text.h"
#include "emulator/drawing/entity.h"

namespace vorhost {

struct StyleRecord {
  std::string name;
  std::string font = "txt";
  std::string big_font;
  double fixed_height = 0;  // 0: TEXT asks for the height
  double width = 1;
  double oblique = 0;
  double last_height = 2.5;
  short flags = 0;          // 4: vertical
  short generation = 0;     // 2: backwards, 4: upside down
};

struct LayerRecord {
  std::string name;
  short color = 7;  // negative: the layer is off
  std::string linetype = "CONTINUOUS";
  short flags = 0;  // 1: frozen, 4: locked
};

// A block definition: its entities are drawn relative to base.
struct BlockRecord {
  std::string name;
  Point3 base{0, 0, 0};
  short flags = 0;  // 2: has attribute definitions
  EntityList entities;
};

// One element of a linetype's pattern: a dash (length > 0), a gap (< 0) or
// a dot (0); or, with length 0, a text or a shape drawn where the element
// before it ends.
struct LinetypeElement {
  enum class Kind { kPlain, kText, kShape };
  double length = 0;
  Kind kind = Kind::kPlain;
  std::string text;    // the text, or the shape's name
  std::string source;  // the text style, or the shape file
  double scale = 1, rotation = 0, x = 0, y = 0;  // S=, R= or A= (degrees), X=, Y=
  bool absolute_rotation = false;
};

struct LinetypeRecord {
  std::string name;
  std::string description;
  std::vector<LinetypeElement> elements;  // empty: a continuous line

  double PatternLength() const;
};

// Records of one kind, found by name without regard to the case of ASCII
// letters (SameName).
template <typename Record>
class SymbolTable {
 public:
  const Record* Find(std::string_view name) const {
    for (const Record& r : records_)
      if (SameName(r.name, name)) return &r;
    return nullptr;
  }
  Record* Find(std::string_view name) {
    return const_cast<Record*>(static_cast<const SymbolTable*>(this)->Find(name));
  }
  // Adds the record, or replaces the one of the same name.
  Record& Put(Record record) {
    if (Record* old = Find(record.name)) return *old = std::move(record);
    records_.push_back(std::move(record));
    return records_.back();
  }
  const std::vector<Record>& records() const { return records_; }

 private:
  std::vector<Record> records_;
};

// The tables of one drawing, as a new drawing has them: style STANDARD,
// layer 0, linetypes BYBLOCK, BYLAYER and CONTINUOUS.
class Tables {
 public:
  Tables();

  // Styles and blocks shape the outlines of texts and inserts: handing
  // either out for change counts as a change of geometry_version().
  SymbolTable<StyleRecord>& styles() {
    geometry_version_++;
    return styles_;
  }
  SymbolTable<LayerRecord>& layers() { return layers_; }
  SymbolTable<LinetypeRecord>& linetypes() { return linetypes_; }
  SymbolTable<BlockRecord>& blocks() {
    geometry_version_++;
    return blocks_;
  }
  const SymbolTable<StyleRecord>& styles() const { return styles_; }
  const SymbolTable<LayerRecord>& layers() const { return layers_; }
  const SymbolTable<LinetypeRecord>& linetypes() const { return linetypes_; }
  const SymbolTable<BlockRecord>& blocks() const { return blocks_; }
  uint64_t geometry_version() const { return geometry_version_; }

 private:
  SymbolTable<StyleRecord> styles_;
  SymbolTable<LayerRecord> layers_;
  SymbolTable<LinetypeRecord> linetypes_;
  SymbolTable<BlockRecord> blocks_;
  uint64_t geometry_version_ = 0;
};

}  // namespace vorhost

#endif
