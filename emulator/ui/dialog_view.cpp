// dialog_view.cpp - a dialog as text. Each tile becomes a block of lines of
// one display width; rows put their blocks side by side (or one under the
// other when they do not fit), columns one under the other, boxed clusters
// inside a frame with their label.
#include "emulator/ui/dialog_view.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>
#include <vector>

#include "emulator/core/encoding.h"
#include "emulator/dialogs/dialog.h"

namespace vorhost {
namespace {

using dcl::TileKind;

constexpr char kDim[] = "\x1b[2m";
constexpr char kInverse[] = "\x1b[7m";
constexpr char kBold[] = "\x1b[1m";
constexpr char kPlain[] = "\x1b[0m";

// The code point at s[*i] (UTF-8), moving *i past it; a stray byte is
// taken as it stands.
unsigned NextCodePoint(std::string_view s, size_t* i) {
  unsigned char c = static_cast<unsigned char>(s[*i]);
  int more = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
  if (*i + static_cast<size_t>(more) >= s.size() + (more ? 0 : 1)) more = 0;
  unsigned cp = more == 0 ? c : c & (0x3F >> more);
  (*i)++;
  for (int k = 0; k < more && *i < s.size(); k++) cp = (cp << 6) | (static_cast<unsigned char>(s[(*i)++]) & 0x3F);
  return cp;
}

bool IsWide(unsigned cp) {
  return (cp >= 0x1100 && cp <= 0x115F) || (cp >= 0x2E80 && cp <= 0xA4CF && cp != 0x303F) ||
         (cp >= 0xAC00 && cp <= 0xD7A3) || (cp >= 0xF900 && cp <= 0xFAFF) || (cp >= 0xFE30 && cp <= 0xFE4F) ||
         (cp >= 0xFF00 && cp <= 0xFF60) || (cp >= 0xFFE0 && cp <= 0xFFE6) || (cp >= 0x20000 && cp <= 0x3FFFD);
}

// Skips a colour sequence ("\x1b[...m") at s[*i]; whether there was one.
bool SkipColour(std::string_view s, size_t* i) {
  if (s[*i] != '\x1b') return false;
  size_t j = *i + 1;
  if (j < s.size() && s[j] == '[') j++;
  while (j < s.size() && !(s[j] >= 0x40 && s[j] <= 0x7e)) j++;
  *i = std::min(j + 1, s.size());
  return true;
}

// text cut to at most width columns; a cut is marked with "~".
std::string Fit(std::string_view text, size_t width) {
  if (DisplayWidth(text) <= width) return std::string(text);
  std::string out;
  size_t used = 0;
  for (size_t i = 0; i < text.size();) {
    size_t from = i;
    if (SkipColour(text, &i)) {
      out.append(text.substr(from, i - from));
      continue;
    }
    unsigned cp = NextCodePoint(text, &i);
    size_t w = IsWide(cp) ? 2 : 1;
    if (used + w + 1 > width) break;
    out.append(text.substr(from, i - from));
    used += w;
  }
  if (width > 0) out += "~";
  if (out.find('\x1b') != std::string::npos) out += kPlain;
  return out + std::string(width > used + 1 ? width - used - 1 : 0, ' ');
}

std::string Pad(std::string text, size_t width) {
  size_t w = DisplayWidth(text);
  if (w > width) return Fit(text, width);
  return text + std::string(width - w, ' ');
}

// Lines of one display width.
struct Block {
  std::vector<std::string> lines;
  size_t width = 0;

  void Add(std::string line) {
    width = std::max(width, DisplayWidth(line));
    lines.push_back(std::move(line));
  }
  void Squeeze(size_t max) {
    if (width <= max) return;
    for (std::string& l : lines) l = Fit(l, max);
    width = max;
  }
  void Even() {
    for (std::string& l : lines) l = Pad(l, width);
  }
};

class Painter {
 public:
  explicit Painter(const DialogViewStyle& style) : style_(style) {}

  Block Draw(LiveTile& tile, size_t width, size_t indent_header = 0) {
    size_t inside = width > 12 ? width - 4 : 8;  // within a frame
    switch (tile.kind()) {
      case TileKind::kDialog:
      case TileKind::kColumn:
      case TileKind::kRadioColumn:
      case TileKind::kParagraph: return Column(tile, width);
      case TileKind::kRow:
      case TileKind::kRadioRow: return Row(tile, width, 2);
      case TileKind::kConcatenation: {
        // Parts of one line (column headers, say): cut, never wrapped.
        std::vector<Block> parts;
        for (const auto& kid : tile.children()) parts.push_back(Draw(*kid, width));
        Block b;
        SideBySide(parts, 0, &b);
        if (indent_header)
          for (std::string& l : b.lines) l = std::string(indent_header, ' ') + l;
        b.width += indent_header;
        b.Squeeze(width);
        return b;
      }
      case TileKind::kBoxedRow:
      case TileKind::kBoxedRadioRow: return Boxed(tile, Row(tile, inside, 2), width);
      case TileKind::kBoxedColumn:
      case TileKind::kBoxedRadioColumn: return Boxed(tile, Column(tile, inside), width);
      case TileKind::kListBox: return List(tile, width);
      default: return Leaf(tile, width);
    }
  }

  // The width a list's row text is shown after: its number and mark.
  static constexpr size_t kRowLead = 6;

 private:
  std::string Label(const LiveTile& tile) const { return Big5ToUtf8(tile.def().AttrString("label")); }
  // A tile's key, which events name it by, unless its label says it already.
  std::string Key(const LiveTile& tile) const {
    if (tile.key().empty() || tile.key() == tile.def().AttrString("label")) return "";
    return "(" + Big5ToUtf8(tile.key()) + ")";
  }
  std::string Off(const LiveTile& tile, std::string text) const {
    if (tile.Usable()) return text;
    text = "-" + text;
    return style_.colour ? kDim + text + kPlain : text;
  }

  Block Column(LiveTile& tile, size_t width) {
    Block b;
    const auto& kids = tile.children();
    for (size_t i = 0; i < kids.size(); i++) {
      // Column headers written over a list line up with its rows.
      bool over_list = kids[i]->kind() == TileKind::kConcatenation && i + 1 < kids.size() &&
                       kids[i + 1]->kind() == TileKind::kListBox;
      Block kid = Draw(*kids[i], width, over_list ? kRowLead : 0);
      if (over_list) kid = List(*kids[++i], width, &kid);  // the list's name, then the headers
      for (std::string& l : kid.lines) b.Add(std::move(l));
    }
    return b;
  }

  // The tiles side by side; those that do not fit go on under the others,
  // as words of a paragraph do.
  Block Row(LiveTile& tile, size_t width, size_t gap) {
    Block b;
    std::vector<Block> run;
    size_t used = 0;
    for (const auto& kid : tile.children()) {
      Block k = Draw(*kid, width);
      if (k.lines.empty()) continue;
      if (!run.empty() && used + gap + k.width > width) {
        SideBySide(run, gap, &b);
        run.clear();
      }
      used = (run.empty() ? 0 : used + gap) + k.width;
      run.push_back(std::move(k));
    }
    SideBySide(run, gap, &b);
    return b;
  }

  static void SideBySide(std::vector<Block>& run, size_t gap, Block* b) {
    size_t height = 0;
    for (Block& k : run) {
      k.Even();
      height = std::max(height, k.lines.size());
    }
    for (size_t r = 0; r < height; r++) {
      std::string line;
      for (size_t i = 0; i < run.size(); i++) {
        if (i) line += std::string(gap, ' ');
        line += r < run[i].lines.size() ? run[i].lines[r] : std::string(run[i].width, ' ');
      }
      while (!line.empty() && line.back() == ' ') line.pop_back();
      b->Add(line);
    }
  }

  Block Boxed(LiveTile& tile, Block inner, size_t width) {
    std::string label = Label(tile);
    size_t w = std::min(std::max(inner.width, DisplayWidth(label) + 2), width > 12 ? width - 4 : size_t{8});
    inner.Squeeze(w);
    Block b;
    std::string top = Fit("+-" + (label.empty() ? "" : " " + label + " "), w + 3);
    b.Add(Dashes(top, w + 3) + "+");
    for (std::string& l : inner.lines) b.Add("| " + Pad(l, w) + " |");
    b.Add("+" + std::string(w + 2, '-') + "+");
    return b;
  }

  static std::string Dashes(const std::string& head, size_t width) {
    size_t w = DisplayWidth(head);
    return head + std::string(width > w ? width - w : 0, '-');
  }

  // A list: its name, the column headers written over it (if any), and its
  // rows around the first chosen one.
  Block List(LiveTile& tile, size_t width, const Block* headers = nullptr) {
    Block b;
    std::string head = Label(tile);
    size_t n = tile.rows.size();
    b.Add(Off(tile, (head.empty() ? "list" : head) + Key(tile) + ", " + std::to_string(n) +
                        (n == 1 ? " row" : " rows") + (tile.MultipleSelect() ? ", several may be chosen" : "")));
    if (headers)
      for (const std::string& l : headers->lines) b.Add(l);
    std::set<size_t> chosen;
    std::istringstream in(tile.value);
    for (long row; in >> row;)
      if (row >= 0) chosen.insert(static_cast<size_t>(row));
    std::vector<size_t> stops;
    std::istringstream tabs(tile.def().AttrString("tabs"));
    for (double t; tabs >> t;)
      if (t > 0) stops.push_back(static_cast<size_t>(t));
    size_t shown = style_.list_rows;
    if (const dcl::AttrValue* h = tile.def().Attr("height"); h && h->is_number() && h->number() >= 1)
      shown = std::min(shown, static_cast<size_t>(h->number()));
    shown = std::max<size_t>(shown, 3);
    size_t first = 0;
    if (n > shown) {
      size_t around = chosen.empty() ? 0 : *chosen.begin();
      first = around > shown / 2 ? around - shown / 2 : 0;
      first = std::min(first, n - shown);
    }
    size_t last = std::min(n, first + shown);
    if (first > 0) b.Add("      ... " + std::to_string(first) + " above");
    for (size_t i = first; i < last; i++) {
      bool on = chosen.count(i) > 0;
      std::string number = std::to_string(i);
      std::string lead = (on ? "> " : "  ") + std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + " ";
      std::string text = Fit(Expand(Big5ToUtf8(tile.rows[i]), stops), width > kRowLead ? width - kRowLead : 0);
      while (!text.empty() && text.back() == ' ') text.pop_back();
      std::string line = lead + text;
      if (on && style_.colour) line = kInverse + line + kPlain;
      b.Add(line);
    }
    if (last < n) b.Add("      ... " + std::to_string(n - last) + " below");
    if (n == 0) b.Add("      (empty)");
    return b;
  }

  // Tabs moved to the stops (display columns); past the last stop, two blanks.
  static std::string Expand(const std::string& row, const std::vector<size_t>& stops) {
    std::string out;
    size_t column = 0, next = 0;
    for (size_t i = 0; i < row.size();) {
      if (row[i] == '\t') {
        while (next < stops.size() && stops[next] <= column) next++;
        size_t to = next < stops.size() ? stops[next] : column + 2;
        out += std::string(to - column, ' ');
        column = to;
        i++;
        continue;
      }
      size_t from = i;
      unsigned cp = NextCodePoint(row, &i);
      out.append(row, from, i - from);
      column += IsWide(cp) ? 2 : 1;
    }
    return out;
  }

  Block Leaf(LiveTile& tile, size_t width) {
    std::string label = Label(tile), value = Big5ToUtf8(tile.value), line;
    switch (tile.kind()) {
      case TileKind::kButton:
      case TileKind::kImageButton:
        line = Off(tile, label.empty() ? "[" + Big5ToUtf8(tile.key()) + "]" : "[" + label + "]" + Key(tile));
        break;
      case TileKind::kToggle: line = Off(tile, std::string(tile.value == "1" ? "[x] " : "[ ] ") + label + Key(tile)); break;
      case TileKind::kRadioButton:
        line = Off(tile, std::string(tile.value == "1" ? "(*) " : "( ) ") + label + Key(tile));
        break;
      case TileKind::kEditBox: {
        size_t w = 10;
        if (const dcl::AttrValue* e = tile.def().Attr("edit_width"); e && e->is_number() && e->number() >= 1)
          w = std::min<size_t>(static_cast<size_t>(e->number()), 40);
        w = std::max(w, DisplayWidth(value));
        line = Off(tile, (label.empty() ? "" : label + " ") + "[" + Pad(value, w) + "]" + Key(tile));
        break;
      }
      case TileKind::kPopupList: {
        std::string row;
        char* end = nullptr;
        long chosen = std::strtol(tile.value.c_str(), &end, 10);
        if (!tile.value.empty() && !*end && chosen >= 0 && static_cast<size_t>(chosen) < tile.rows.size())
          row = Big5ToUtf8(tile.rows[static_cast<size_t>(chosen)]);
        line = Off(tile, (label.empty() ? "" : label + " ") + "<" + row + " v>" + Key(tile));
        break;
      }
      case TileKind::kText: {
        line = value.empty() ? label : value;  // a text's value starts as its label
        if (const dcl::AttrValue* w = tile.def().Attr("width"); w && w->is_number() && !line.empty())
          line = Pad(line, std::min<size_t>(static_cast<size_t>(w->number()), width));
        while (!line.empty() && line.back() == ' ' && tile.parent() && tile.parent()->kind() != TileKind::kConcatenation &&
               tile.parent()->kind() != TileKind::kRow)
          line.pop_back();
        break;
      }
      case TileKind::kTextPart: {
        line = label.empty() ? value : label;
        if (const dcl::AttrValue* w = tile.def().Attr("width"); w && w->is_number())
          line = Pad(line, static_cast<size_t>(w->number()));
        break;
      }
      case TileKind::kImage: line = "[image" + Key(tile) + "]"; break;
      case TileKind::kSlider: line = Off(tile, "slider " + value + Key(tile)); break;
      default: return {};
    }
    Block b;
    if (!line.empty()) b.Add(Fit(line, width));
    return b;
  }

  const DialogViewStyle& style_;
};

}  // namespace

size_t DisplayWidth(std::string_view utf8) {
  size_t width = 0;
  for (size_t i = 0; i < utf8.size();) {
    if (SkipColour(utf8, &i)) continue;
    width += IsWide(NextCodePoint(utf8, &i)) ? 2 : 1;
  }
  return width;
}

std::string DrawDialog(Dialog& dialog, const DialogViewStyle& style) {
  size_t width = static_cast<size_t>(std::max(style.width, 30));
  Painter painter(style);
  Block body = painter.Draw(dialog.root(), width - 4);
  body.Squeeze(width - 4);
  std::string label = Big5ToUtf8(dialog.root().def().AttrString("label"));
  std::string title = Fit(label.empty() ? dialog.name() : label + " (" + dialog.name() + ")", width - 8);
  while (!title.empty() && title.back() == ' ') title.pop_back();
  size_t w = std::min(std::max({body.width, DisplayWidth(title) + 4, size_t{20}}), width - 4);
  std::string head = "+= " + (style.colour ? std::string(kBold) + title + kPlain : title) + " ";
  size_t head_width = DisplayWidth(head);
  std::string out = head + std::string(w + 3 > head_width ? w + 3 - head_width : 0, '=') + "+\n";
  for (const std::string& l : body.lines) out += "| " + Pad(l, w) + " |\n";
  out += "+" + std::string(w + 2, '=') + "+\n";
  std::string legend = Fit("  > chosen row   [x] on   (*) chosen   -disabled   type help for the events", width);
  while (!legend.empty() && legend.back() == ' ') legend.pop_back();
  out += legend + "\n";
  return out;
}

}  // namespace vorhost
