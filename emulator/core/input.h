// input.h - what whoever plays the user hands the host when it asks: an
// answer (a line typed, a point or objects picked, a window), Escape, or
// the end of their input; and how an edit of a text file ended. A script,
// a terminal and a window hand over the same values.
#ifndef VORHOST_CORE_INPUT_H
#define VORHOST_CORE_INPUT_H

#include <string>
#include <utility>

#include "emulator/core/answer.h"

namespace vorhost {

// What the host is asking for.
enum class Asking {
  kCommand,    // the command prompt: a command or an expression
  kPrompt,     // an answer to a prompt of a command or function
  kPoint,      // a point (ads_getpoint): typed, or picked in a view
  kSelection,  // objects, at "Select objects:": typed, picked, or a window
  kDialog,     // an event in the dialog that is open (see docs/scripting.md)
};

// Whether the host asks for an answer to a prompt (kPrompt, kPoint,
// kSelection), where an empty line is Enter.
inline bool AsksForAnswer(Asking asking) {
  return asking == Asking::kPrompt || asking == Asking::kPoint || asking == Asking::kSelection;
}

struct Input {
  enum class Kind { kAnswer, kCancel, kEnd };
  Kind kind = Kind::kEnd;
  Answer answer;  // kAnswer: a text typed ("" is Enter), a point, objects, a window

  static Input Line(std::string text) { return Of(Answer::Text(std::move(text))); }
  static Input Of(Answer answer) { return {Kind::kAnswer, std::move(answer)}; }
  static Input Cancel() { return {Kind::kCancel, {}}; }
  static Input End() { return {Kind::kEnd, {}}; }

  bool IsAnswer() const { return kind == Kind::kAnswer; }
  // The text typed; "" for an answer of another kind, Escape and the end.
  const std::string& text() const { return answer.text; }
};

// How an edit of a text file ended.
enum class EditOutcome { kSaved, kUnchanged, kCancelled };

}  // namespace vorhost

#endif
