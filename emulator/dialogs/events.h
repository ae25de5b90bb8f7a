// events.h - what a user does in a dialog, as a value: which tile, what
// happens to it (a row chosen, a text typed, a button pressed, ...), and
// what it carries. The runtime applies an event to the dialog on top; the
// script reader makes events from the text form of docs/scripting.md, and
// a terminal or a window makes the same values from keys and clicks.
#ifndef VORHOST_DIALOGS_EVENTS_H
#define VORHOST_DIALOGS_EVENTS_H

#include <string>
#include <string_view>
#include <vector>

#include "emulator/dialogs/dialog.h"

namespace vorhost {

struct DialogEvent {
  // What the user does; the tile's action gets the reason in brackets.
  enum class Action {
    kSelect,       // clicks a row of a list (1)
    kDoubleClick,  // double-clicks a row of a list (1, then 4)
    kType,         // types a text into an edit box and leaves it (2)
    kEnter,        // types a text into an edit box and presses Enter (1)
    kPress,        // presses a button (1)
    kToggle,       // flips a toggle (1)
    kChoose,       // chooses a radio button (1)
    kOk,           // presses the accept button (1)
    kCancel,       // presses the cancel button, or Escape (1)
  };
  Action action = Action::kCancel;
  std::string key;    // the tile's key: "accept" for kOk, "cancel" for kCancel
  std::string value;  // the row (kSelect, kDoubleClick) or the text (kType, kEnter)

  static DialogEvent Of(Action action, std::string key, std::string value = "") {
    return {action, std::move(key), std::move(value)};
  }
  static DialogEvent Ok() { return Of(Action::kOk, "accept"); }
  static DialogEvent Cancel() { return Of(Action::kCancel, "cancel"); }
};

// What the user gave when the host asked for an event.
struct DialogInput {
  enum class Kind {
    kEvent,    // an event
    kEscape,   // Escape: the cancel button
    kEnd,      // the user's input ended
    kMistake,  // something that is no event; why says what
  };
  Kind kind = Kind::kEnd;
  DialogEvent event;
  std::string typed;  // the event as the user typed it, for the transcript; "" for none
  std::string why;    // kMistake

  static DialogInput Event(DialogEvent event, std::string typed = "") {
    return {Kind::kEvent, std::move(event), std::move(typed), ""};
  }
  static DialogInput Escape() { return {Kind::kEscape, DialogEvent::Cancel(), "", ""}; }
  static DialogInput End() { return {Kind::kEnd, {}, "", ""}; }
  static DialogInput Mistake(std::string typed, std::string why) {
    return {Kind::kMistake, {}, std::move(typed), std::move(why)};
  }
};

// The event a line of the text form stands for ("select eline 1", "ok");
// false with *why for a line that names no event. The tile is looked at
// only when the event is applied.
bool ParseDialogEvent(std::string_view line, DialogEvent* event, std::string* why);

// The text form of an event.
std::string EventText(const DialogEvent& event);

// Applies an event to dialog: the tile's value changes as the user leaves
// it and its action runs with that value and the reason. False with *why,
// and nothing changed, when the dialog has no such tile, the tile is
// disabled or of a kind the event does not fit, or the list has no such row.
bool ApplyEvent(Dialog& dialog, const DialogEvent& event, std::string* why);

// One line per event of the text form: "select KEY N  what the user does".
std::string EventSummary();

// The words of the text form ("select", ..., "ok", "cancel"), for completion.
std::vector<std::string> EventWords();
// Whether the event of that word acts on tile (a list for "select", ...).
bool EventFits(std::string_view word, const LiveTile& tile);
// Whether the event of that word takes a key, and a row after it.
bool EventTakesKey(std::string_view word);
bool EventTakesRow(std::string_view word);

}  // namespace vorhost

#endif
