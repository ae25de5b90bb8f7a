// selection.h - "Select objects:": the host's way of collecting objects for
// a command or for ads_ssget, one answer at a time.
#ifndef VORHOST_COMMANDS_SELECTION_H
#define VORHOST_COMMANDS_SELECTION_H

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "emulator/commands/command.h"

namespace vorhost {

// Answers it takes, until Enter: ALL; L (the last object); W or C and two
// corners (objects inside the window, or also those crossing it); H and a
// handle; P (the previous selection); R and A to switch between removing
// and adding; a point (the object passing nearest within the pick box);
// from programs, entity names and selection sets; from a front end that
// draws the drawing, objects picked and windows drawn. Only main entities
// that are not erased are ever selected.
class ObjectSelector {
 public:
  explicit ObjectSelector(CommandContext& context) : context_(context) {}

  std::string Prompt() const;
  // kSelection at "Select objects:", kPoint at a window's corners, kPrompt
  // for a handle.
  Asking asking() const;
  // kDone when Enter ended the selection, kAsk for more, kReject with
  // refusal() for an answer it does not understand.
  Step Feed(const Answer& answer);

  const std::vector<uint64_t>& selected() const { return selected_; }
  const std::string& refusal() const { return refusal_; }

 private:
  enum class State { kObjects, kFirstCorner, kOtherCorner, kHandle };
  // Adds (or removes) the candidates that are main entities still in the
  // drawing, and says how many were found.
  void Take(const std::vector<uint64_t>& candidates);
  Step Corner(const Answer& answer);
  // Takes the objects inside the window from a to b, or also crossing it.
  Step Window(const Point3& a, const Point3& b, bool crossing);
  Step Handle(const Answer& answer);
  Step Entities(const std::vector<uint64_t>& ids);
  Step Keyword(const std::string& typed);
  Step Pick(const Point3& p);

  CommandContext& context_;
  State state_ = State::kObjects;
  bool removing_ = false;
  bool crossing_ = false;
  Point3 first_corner_{0, 0, 0};
  std::vector<uint64_t> selected_;
  std::unordered_set<uint64_t> members_;  // what selected_ holds
  std::string refusal_;
};

}  // namespace vorhost

#endif
