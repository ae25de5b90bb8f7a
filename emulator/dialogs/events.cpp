// events.cpp - dialog events: one table row per event, giving its word in
// the text form, the kind of tile it acts on, what it does, and its help.
#include "emulator/dialogs/events.h"

#include <cstdlib>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>

namespace vorhost {
namespace {

using Action = DialogEvent::Action;

std::optional<size_t> RowIndex(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 6)
    return std::nullopt;
  return static_cast<size_t>(std::atoi(text.c_str()));
}

// The chosen rows of a list's value, in ascending order.
std::set<size_t> ChosenRows(const std::string& value) {
  std::set<size_t> rows;
  std::istringstream in(value);
  for (long n; in >> n;)
    if (n >= 0) rows.insert(static_cast<size_t>(n));
  return rows;
}

std::string JoinRows(const std::set<size_t>& rows) {
  std::string out;
  for (size_t r : rows) out += (out.empty() ? "" : " ") + std::to_string(r);
  return out;
}

// Runs a tile's action with its value and reason; accept and cancel
// without one end the dialog with 1 and 0.
void Fire(Dialog& dialog, LiveTile& tile, int reason) {
  CLIENTFUNC action = tile.action;
  if (!action) {
    if (tile.key() == "accept" || tile.key() == "cancel") {
      dialog.done = true;
      dialog.status = tile.key() == "accept" ? DLGOK : DLGCANCEL;
      return;
    }
    action = dialog.default_action();
  }
  if (!action) return;
  std::string value = tile.value;  // the action gets its own copy to read
  ads_callback_packet packet{&dialog, &tile, value.data(), nullptr, reason, 0, 0};
  action(&packet);
}

// Enter in an edit box, or a double click in a list, whose tile allows it
// presses the dialog's OK button as well.
void Accept(Dialog& dialog, LiveTile& tile) {
  if (dialog.done || !tile.def().IsTrue("allow_accept")) return;
  if (LiveTile* ok = dialog.Find("accept"); ok && ok->Usable()) Fire(dialog, *ok, CBR_SELECT);
}

// ---- What each event does to its tile ---------------------------------------

bool ClickRow(Dialog& dialog, LiveTile& tile, const DialogEvent& event, std::string* why) {
  std::optional<size_t> row = RowIndex(event.value);
  if (!row || *row >= tile.rows.size()) {
    *why = "list \"" + event.key + "\" has no row " + event.value + " (it has " +
           std::to_string(tile.rows.size()) + ")";
    return false;
  }
  if (tile.MultipleSelect()) {  // a click chooses or un-chooses the row; no double click
    std::set<size_t> chosen = ChosenRows(tile.value);
    if (!chosen.erase(*row)) chosen.insert(*row);
    tile.value = JoinRows(chosen);
    Fire(dialog, tile, CBR_SELECT);
    return true;
  }
  tile.value = std::to_string(*row);
  Fire(dialog, tile, CBR_SELECT);
  if (event.action == Action::kDoubleClick && !dialog.done) {
    Fire(dialog, tile, CBR_DOUBLE_CLICK);
    Accept(dialog, tile);
  }
  return true;
}

bool TypeText(Dialog& dialog, LiveTile& tile, const DialogEvent& event, std::string*) {
  tile.value = event.value;
  Fire(dialog, tile, event.action == Action::kType ? CBR_LOST_FOCUS : CBR_SELECT);
  if (event.action == Action::kEnter) Accept(dialog, tile);
  return true;
}

bool Flip(Dialog& dialog, LiveTile& tile, const DialogEvent&, std::string*) {
  tile.value = tile.value == "1" ? "0" : "1";
  Fire(dialog, tile, CBR_SELECT);
  return true;
}

// The button's action, then its cluster's, whose value is the button's key.
bool Choose(Dialog& dialog, LiveTile& tile, const DialogEvent&, std::string*) {
  dialog.SetValue(tile, "1");
  if (tile.action) Fire(dialog, tile, CBR_SELECT);
  LiveTile* cluster = tile.parent();
  if (!dialog.done && cluster && (cluster->action || (!tile.action && dialog.default_action())))
    Fire(dialog, *cluster, CBR_SELECT);
  return true;
}

bool Press(Dialog& dialog, LiveTile& tile, const DialogEvent&, std::string*) {
  Fire(dialog, tile, CBR_SELECT);
  return true;
}

bool IsList(const LiveTile& t) { return t.IsList(); }
bool IsEditBox(const LiveTile& t) { return t.kind() == dcl::TileKind::kEditBox; }
bool IsToggle(const LiveTile& t) { return t.kind() == dcl::TileKind::kToggle; }
bool IsRadioButton(const LiveTile& t) { return t.kind() == dcl::TileKind::kRadioButton; }
bool IsButton(const LiveTile& t) {
  return t.kind() == dcl::TileKind::kButton || t.kind() == dcl::TileKind::kImageButton;
}

// What follows the word in the text form. ORDER OPERAND
enum class Operand { kNone, kKey, kKeyAndRow, kKeyAndText };

struct EventVerb {
  const char* word;  // in the text form
  Action action;
  Operand operand;
  bool (*fits)(const LiveTile&);  // the kind of tile it acts on
  const char* wanted;             // that kind, as a refusal names it
  bool (*apply)(Dialog&, LiveTile&, const DialogEvent&, std::string* why);
  const char* help;
};

const EventVerb kEventVerbs[] = {
    {"select", Action::kSelect, Operand::kKeyAndRow, IsList, "a list", ClickRow,
     "clicks row N (from 0) of a list; in a list with several choices, chooses or un-chooses it"},
    {"double-click", Action::kDoubleClick, Operand::kKeyAndRow, IsList, "a list", ClickRow,
     "double-clicks row N"},
    {"type", Action::kType, Operand::kKeyAndText, IsEditBox, "an edit box", TypeText,
     "types TEXT into an edit box and leaves it"},
    {"enter", Action::kEnter, Operand::kKeyAndText, IsEditBox, "an edit box", TypeText,
     "types TEXT and presses Enter"},
    {"press", Action::kPress, Operand::kKey, IsButton, "a button", Press, "presses a button"},
    {"toggle", Action::kToggle, Operand::kKey, IsToggle, "a toggle", Flip, "flips a toggle"},
    {"choose", Action::kChoose, Operand::kKey, IsRadioButton, "a radio button", Choose,
     "chooses a radio button"},
    {"ok", Action::kOk, Operand::kNone, IsButton, "a button", Press, "presses the accept button"},
    {"cancel", Action::kCancel, Operand::kNone, IsButton, "a button", Press,
     "presses the cancel button"},
};

const EventVerb* VerbOf(Action action) {
  for (const EventVerb& v : kEventVerbs)
    if (v.action == action) return &v;
  return nullptr;
}

// Splits "verb key rest": rest is everything after the single space that
// follows the key, blanks included.
void SplitEvent(std::string_view line, std::string* verb, std::string* key, std::string* rest) {
  size_t b = line.find_first_not_of(' ');
  std::string_view s = b == std::string_view::npos ? "" : line.substr(b);
  size_t sp1 = s.find(' ');
  *verb = s.substr(0, sp1);
  if (sp1 == std::string_view::npos) return;
  size_t kb = s.find_first_not_of(' ', sp1);
  if (kb == std::string_view::npos) return;
  size_t sp2 = s.find(' ', kb);
  *key = s.substr(kb, sp2 - kb);
  if (sp2 != std::string_view::npos) *rest = s.substr(sp2 + 1);
}

}  // namespace

bool ParseDialogEvent(std::string_view line, DialogEvent* event, std::string* why) {
  std::string word, key, rest;
  SplitEvent(line, &word, &key, &rest);
  for (const EventVerb& v : kEventVerbs) {
    if (word != v.word) continue;
    if (v.action == Action::kOk) *event = DialogEvent::Ok();
    else if (v.action == Action::kCancel) *event = DialogEvent::Cancel();
    else *event = DialogEvent::Of(v.action, key, v.operand == Operand::kKey ? "" : rest);
    return true;
  }
  std::string words;
  for (const EventVerb& v : kEventVerbs) words += std::string(words.empty() ? "" : ", ") + v.word;
  *why = "not a dialog event: \"" + std::string(line) + "\" (" + words + ")";
  return false;
}

std::string EventText(const DialogEvent& event) {
  const EventVerb* verb = VerbOf(event.action);
  std::string text = verb ? verb->word : "";
  if (verb && verb->operand != Operand::kNone) text += " " + event.key;
  if (verb && verb->operand > Operand::kKey) text += " " + event.value;
  return text;
}

bool ApplyEvent(Dialog& dialog, const DialogEvent& event, std::string* why) {
  const EventVerb* verb = VerbOf(event.action);
  LiveTile* tile = event.key.empty() || !verb ? nullptr : dialog.Find(event.key);
  if (!tile) {
    *why = "dialog " + dialog.name() + " has no tile \"" + event.key + "\"";
    return false;
  }
  if (!tile->Usable()) {
    *why = "tile \"" + event.key + "\" of dialog " + dialog.name() + " is disabled";
    return false;
  }
  if (!verb->fits(*tile)) {
    *why = "tile \"" + event.key + "\" is a " + dcl::KindName(tile->kind()) + ", not " + verb->wanted;
    return false;
  }
  return verb->apply(dialog, *tile, event, why);
}

std::vector<std::string> EventWords() {
  std::vector<std::string> words;
  for (const EventVerb& v : kEventVerbs) words.push_back(v.word);
  return words;
}

namespace {

const EventVerb* VerbOf(std::string_view word) {
  for (const EventVerb& v : kEventVerbs)
    if (word == v.word) return &v;
  return nullptr;
}

}  // namespace

bool EventFits(std::string_view word, const LiveTile& tile) {
  const EventVerb* verb = VerbOf(word);
  return verb && verb->operand != Operand::kNone && verb->fits(tile);
}

bool EventTakesKey(std::string_view word) {
  const EventVerb* verb = VerbOf(word);
  return verb && verb->operand != Operand::kNone;
}

bool EventTakesRow(std::string_view word) {
  const EventVerb* verb = VerbOf(word);
  return verb && verb->operand == Operand::kKeyAndRow;
}

std::string EventSummary() {
  static const char* const kOperands[] = {"", " KEY", " KEY N", " KEY TEXT"};  // ORDER OPERAND
  static_assert(std::size(kOperands) == static_cast<size_t>(Operand::kKeyAndText) + 1);
  std::string out;
  for (const EventVerb& v : kEventVerbs)
    out += std::string(v.word) + kOperands[static_cast<int>(v.operand)] + "  " + v.help + "\n";
  return out;
}

}  // namespace vorhost
