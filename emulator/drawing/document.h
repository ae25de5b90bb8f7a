// document.h - the drawing the user works on, with everything the host
// keeps for it alone: its records and tables, its system variables, the
// selection sets programs hold on it, and what commands remember between
// them (the last point, the text TEXT wrote last). NEW and opening a file
// replace the whole document as one value.
#ifndef VORHOST_DRAWING_DOCUMENT_H
#define VORHOST_DRAWING_DOCUMENT_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/sysvars.h"
#include "emulator/drawing/drawing.h"

namespace vorhost {

// The selection sets programs hold (ads_ssget, ads_ssfree), by number, and
// what the last selection the user completed held ("P" selects it again).
class SelectionSets {
 public:
  // At most this many sets are held at once, as on the host.
  static constexpr size_t kMaxSets = 128;

  // Keeps a set; its number (from 1), or 0 when kMaxSets are held.
  long Add(std::vector<uint64_t> members);
  // The members of the set with that number, or null.
  const std::vector<uint64_t>* Find(long number) const;
  bool Free(long number);

  std::vector<uint64_t>& previous() { return previous_; }

 private:
  std::map<long, std::vector<uint64_t>> sets_;
  long next_ = 1;
  std::vector<uint64_t> previous_;
};

class Document {
 public:
  // A new drawing with the host's defaults.
  Document() = default;
  // A drawing read from a file, with the variables it held.
  Document(Drawing drawing, SysVarTable vars) : drawing_(std::move(drawing)), vars_(std::move(vars)) {}
  Document(Document&&) = default;
  Document& operator=(Document&&) = default;

  Drawing& drawing() { return drawing_; }
  const Drawing& drawing() const { return drawing_; }
  Tables& tables() { return drawing_.tables(); }
  const Tables& tables() const { return drawing_.tables(); }
  // The variables as they are; sysvars().Force for the host's own bookkeeping.
  SysVarTable& sysvars() { return vars_; }
  const SysVarTable& sysvars() const { return vars_; }
  SelectionSets& selection_sets() { return sets_; }

  // Sets a variable as a user or program may (SysVarTable::Set): TEXTSTYLE,
  // CLAYER and CELTYPE take only a style, layer or linetype of the drawing,
  // kept in upper case; CECOLOR a colour, kept as BYLAYER, BYBLOCK or its
  // number.
  bool SetVariable(std::string_view name, const SysValue& value, std::string* why);

  // A new record of the given type on the current layer, with the current
  // linetype and colour.
  Entity NewEntity(std::string type) const;

  // The last point given to a command (LASTPOINT), for relative input.
  Point3 LastPoint() const;
  void SetLastPoint(const Point3& p);
  // The text TEXT wrote last, under which Enter at its first prompt writes.
  uint64_t last_text() const { return last_text_; }
  void set_last_text(uint64_t id) { last_text_ = id; }

 private:
  bool CheckText(std::string_view name, std::string* value) const;

  // What a new record takes from the variables (CLAYER, CELTYPE, CECOLOR),
  // read again only when they changed: a drawing makes a record for every
  // line and text, and the variables seldom change between them.
  struct Current {
    uint64_t version = 0;  // of vars_ when read; 0: never read
    std::string layer = "0";
    std::string linetype;  // empty: BYLAYER
    short color = kColorByLayer;
  };
  const Current& current() const;

  Drawing drawing_;
  SysVarTable vars_;
  mutable Current current_;
  SelectionSets sets_;
  uint64_t last_text_ = 0;
};

}  // namespace vorhost

#endif
