// question.h - what a host function asks for besides its prompt: a text
// with its current value (W1), or a colour (ACAD_COLORDLG). The prompt is
// asked as any other; a front end with a window for the question may show
// that window instead and hand back what it gives as a typed answer.
#ifndef VORHOST_CORE_QUESTION_H
#define VORHOST_CORE_QUESTION_H

#include <string>
#include <utility>

namespace vorhost {

struct Question {
  enum class Kind { kNone, kText, kColour };
  Kind kind = Kind::kNone;
  std::string label;    // kText: the prompt without its default (Big5)
  std::string current;  // kText: the current text (Big5)
  int colour = 0;       // kColour: the current colour number
  bool logical = false; // kColour: BYBLOCK (0) and BYLAYER (256) may be chosen too

  static Question Text(std::string label, std::string current) {
    return {Kind::kText, std::move(label), std::move(current), 0, false};
  }
  static Question Colour(int colour, bool logical) { return {Kind::kColour, "", "", colour, logical}; }
};

}  // namespace vorhost

#endif
