// dcl_tree.h - resolved dialog tile trees, and the library that builds them from dialog files.
#ifndef VORHOST_DCL_DCL_TREE_H
#define VORHOST_DCL_DCL_TREE_H

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vorhost::dcl {

// The name under which Library::Load asks its loader for the base
// definitions (resources/BASE.DCL): the standard prototypes every dialog
// file may use, read before the file itself.
inline constexpr char kBaseFileName[] = "BASE.DCL";

// Limits that keep a pathological file from exhausting the stack or memory:
// levels of nested tiles (in a file, and in a resolved tree), of prototypes
// resolved one through another, and of included files; tiles in one
// resolved tree; and tiles in all the trees of one Load together.
inline constexpr int kMaxDepth = 64;
inline constexpr size_t kMaxTiles = 10000;
inline constexpr size_t kMaxLoadTiles = 100000;

// The tile kinds the host implements itself. Every tile of a resolved tree
// is one of these; prototypes are names for them with attributes (and
// children) filled in.
enum class TileKind {
  // ORDER KINDS: clusters first; keep in step with kKinds in dcl_tree.cpp.
  kDialog,
  kRow,
  kColumn,
  kBoxedRow,
  kBoxedColumn,
  kRadioRow,
  kRadioColumn,
  kBoxedRadioRow,
  kBoxedRadioColumn,
  kConcatenation,
  kParagraph,
  kButton,
  kToggle,
  kRadioButton,
  kEditBox,
  kListBox,
  kPopupList,
  kText,
  kTextPart,
  kSpacer,
  kImage,
  kImageButton,
  kSlider,
};

// The kind's name in dialog files: "boxed_radio_row".
const char* KindName(TileKind kind);
// The built-in kind named name (case matters, as for every DCL name).
bool KindByName(std::string_view name, TileKind* kind);
// Whether tiles of the kind hold other tiles (dialog, rows, columns,
// concatenation, paragraph).
bool IsCluster(TileKind kind);
// Whether the kind is one of the four radio clusters, the only parents a
// radio_button may have. Its value is the key of its button that is on.
bool IsRadioCluster(TileKind kind);

// An attribute's value as written: a string, an integer, a real, true or
// false, or another reserved word (left, centered, ...).
class AttrValue {
 public:
  struct Word {
    std::string name;
    bool operator==(const Word&) const = default;
  };

  AttrValue() = default;
  static AttrValue Text(std::string text) { return AttrValue(Repr(std::move(text))); }
  static AttrValue Integer(int value) { return AttrValue(Repr(value)); }
  static AttrValue Real(double value) { return AttrValue(Repr(value)); }
  static AttrValue Boolean(bool value) { return AttrValue(Repr(value)); }
  static AttrValue Reserved(std::string word) { return AttrValue(Repr(Word{std::move(word)})); }

  bool is_text() const { return std::holds_alternative<std::string>(value_); }
  bool is_integer() const { return std::holds_alternative<int>(value_); }
  bool is_real() const { return std::holds_alternative<double>(value_); }
  bool is_boolean() const { return std::holds_alternative<bool>(value_); }
  bool is_reserved() const { return std::holds_alternative<Word>(value_); }
  bool is_number() const { return is_integer() || is_real(); }

  // The string's bytes; "" for the other types.
  const std::string& text() const;
  // The number, integer or real; 0 for the other types.
  double number() const;
  // True only for the value true.
  bool boolean() const { return is_boolean() && std::get<bool>(value_); }
  // The reserved word; "" for the other types.
  const std::string& word() const;

  // The value as a string, as the host's attribute queries give it: a
  // string's bytes, a number in its shortest exact form ("12.75", "0.5",
  // "-1"), "true", "false", or the reserved word.
  std::string ToString() const;

  bool operator==(const AttrValue&) const = default;

 private:
  using Repr = std::variant<std::string, int, double, bool, Word>;
  explicit AttrValue(Repr value) : value_(std::move(value)) {}
  Repr value_;
};

// One tile of a resolved dialog: its built-in kind, every attribute it has
// after inheritance, and its children in layout order. A tree owns its
// children by value; a runtime builds its live dialog from a copy and keeps
// values and modes itself, keyed by Key().
struct Tile {
  TileKind kind = TileKind::kSpacer;
  std::string type;  // as written where the tile is placed ("ok_button", "row"); a
                     // dialog's own tree has the dialog's name
  std::map<std::string, AttrValue, std::less<>> attrs;
  std::vector<Tile> children;
  std::string file;  // where the tile is placed (for an inherited child, where its
  int line = 0;      // prototype defines it)

  // The key attribute as a string; "" when the tile has none.
  std::string Key() const { return AttrString("key"); }
  // The attribute, or null when the tile has none of that name.
  const AttrValue* Attr(std::string_view name) const;
  // The attribute's ToString(); "" when the tile has none.
  std::string AttrString(std::string_view name) const;
  // Whether the attribute is the value true (is_default, multiple_select...).
  bool IsTrue(std::string_view name) const;
  // The first tile in document order, this one included, whose key is key;
  // null when there is none.
  const Tile* Find(std::string_view key) const;
};

// Maps a file name as written (the one given to Load, an @include's, or
// kBaseFileName) to the file's bytes. *where is the name shown in messages
// and tiles, the path found, say, and also tells files apart: a file whose
// where was read already is not read again. Returns false when there is no
// such file.
using Loader =
    std::function<bool(const std::string& name, std::string* contents, std::string* where)>;

// The dialogs of one dialog file, resolved: what the host holds for an
// id of a loaded dialog file.
//
// Load reads the base definitions, then the file; for each file read, the
// files it includes are read (each once, in order, wherever the @include
// stands) before its own definitions. All definitions share one name space:
// a definition replaces one of the same name read earlier, so a file's own
// definitions override those of its includes and of the base, and of two
// included files the later wins. One file may not define a name twice, nor
// redefine a built-in kind. Names in definitions bind late, to the
// definitions in force once everything is read.
//
// Every definition is then resolved into a tree, so faults anywhere surface
// at Load, even in prototypes no dialog uses:
//   - an instance ": P { ... }" takes P's kind and attributes, its own
//     attributes replacing P's of the same name, and its own children;
//   - a definition "N : P1 : P2 { ... }" likewise, with the kind of P1 and,
//     for an attribute more than one Pi sets, the leftmost Pi's value;
//   - a definition or instance with children is a subassembly: it is used
//     as it stands, by "N;" or ": N { }" with an empty body and nothing
//     else after the colon; changing or adding to one is a fault;
//   - "N;" places N as defined, attributes and children.
// Faults: unknown tile type, a prototype that (through types or children)
// refers to itself, children under a kind that holds none, a dialog inside
// a tile, a radio_button whose parent is not a radio cluster, and going
// past the limits above.
class Library {
 public:
  // Reads file name (through loader) as above. On success replaces what the
  // library held and returns true; on the first fault returns false with
  // *err as "file:line: message", the source line and a caret (or a plain
  // message when the file itself or the base definitions are missing), and
  // leaves the library as it was.
  bool Load(const std::string& name, const Loader& loader, std::string* err);

  // The resolved tree of the dialog named name (case matters) into *out.
  // False with *err saying so when the file defines no dialog of that name.
  bool Dialog(std::string_view name, Tile* out, std::string* err) const;

  // The names of the definitions whose kind is dialog, in the order they
  // were first defined.
  std::vector<std::string> DialogNames() const;

  // The where of the file loaded, "" before a successful Load.
  const std::string& file() const { return file_; }

 private:
  std::string file_;
  std::vector<std::string> dialog_names_;
  std::map<std::string, Tile, std::less<>> dialogs_;
};

}  // namespace vorhost::dcl

#endif
