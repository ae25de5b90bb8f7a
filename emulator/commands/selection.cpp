// selection.cpp - collecting objects.
#include "emulator/commands/selection.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <unordered_set>

#include "emulator/core/numbers.h"
#include "emulator/drawing/geometry.h"
#include "emulator/drawing/spatial_index.h"

namespace vorhost {
namespace {

// How near, in drawing units, a pick must come to an object's outline.
double PickBox(const Drawing& drawing) {
  Box all = DrawingBox(drawing);
  if (all.empty) return 1;
  return std::max(1.0, 0.01 * std::hypot(all.hi[0] - all.lo[0], all.hi[1] - all.lo[1]));
}

double SegmentDistance(const Point3& p, const Point3& a, const Point3& b) {
  double dx = b[0] - a[0], dy = b[1] - a[1], len2 = dx * dx + dy * dy;
  double t = len2 == 0 ? 0 : std::clamp(((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / len2, 0.0, 1.0);
  return std::hypot(p[0] - (a[0] + t * dx), p[1] - (a[1] + t * dy));
}

}  // namespace

std::string ObjectSelector::Prompt() const {
  switch (state_) {
    case State::kFirstCorner: return "\nFirst corner: ";
    case State::kOtherCorner: return "\nOther corner: ";
    case State::kHandle: return "\nEnter handle: ";
    case State::kObjects: break;
  }
  return removing_ ? "\nRemove objects: " : "\nSelect objects: ";
}

Asking ObjectSelector::asking() const {
  switch (state_) {
    case State::kFirstCorner:
    case State::kOtherCorner: return Asking::kPoint;
    case State::kHandle: return Asking::kPrompt;
    case State::kObjects: break;
  }
  return Asking::kSelection;
}

void ObjectSelector::Take(const std::vector<uint64_t>& candidates) {
  const Drawing& drawing = context_.document().drawing();
  std::vector<uint64_t> found;
  for (uint64_t id : candidates) {
    const Entity* e = drawing.Find(id);
    if (e && !e->erased && !e->IsSubEntity()) found.push_back(id);
  }
  size_t before = selected_.size(), duplicates = 0;
  if (removing_) {
    std::unordered_set<uint64_t> gone;
    for (uint64_t id : found)
      if (members_.erase(id)) gone.insert(id);
    if (!gone.empty()) std::erase_if(selected_, [&](uint64_t id) { return gone.count(id) > 0; });
  } else {
    for (uint64_t id : found) {
      if (members_.insert(id).second) selected_.push_back(id);
      else duplicates++;
    }
  }
  std::string message = std::to_string(found.size()) + " found";
  if (duplicates) message += " (" + std::to_string(duplicates) + " duplicate)";
  if (removing_) message += ", " + std::to_string(before - selected_.size()) + " removed";
  context_.Message(message);
}

Step ObjectSelector::Corner(const Answer& answer) {
  std::optional<Point3> p = AnswerPoint(answer, context_.document().LastPoint());
  if (!p) {
    refusal_ = "Invalid point.";
    return Step::kReject;
  }
  if (state_ == State::kFirstCorner) {
    first_corner_ = *p;
    state_ = State::kOtherCorner;
    return Step::kAsk;
  }
  state_ = State::kObjects;
  return Window(first_corner_, *p, crossing_);
}

Step ObjectSelector::Window(const Point3& a, const Point3& b, bool crossing) {
  std::vector<uint64_t> found;
  const Drawing& drawing = context_.document().drawing();
  double x1 = std::min(a[0], b[0]), x2 = std::max(a[0], b[0]);
  double y1 = std::min(a[1], b[1]), y2 = std::max(a[1], b[1]);
  // Only entities whose box meets the window can be in it or cross it; a
  // box wholly inside means the outline is too.
  for (const SpatialIndex::Hit& hit : drawing.spatial().Meeting(drawing, a, b)) {
    const Box& box = *hit.box;
    bool inside = hit.bounded && box.lo[0] >= x1 && box.hi[0] <= x2 && box.lo[1] >= y1 && box.hi[1] <= y2;
    if (!inside) {
      if (hit.bounded && !crossing) continue;
      std::vector<Chain> outline = EntityOutline(drawing, hit.id);
      inside = crossing ? CrossesWindow(outline, a, b) : InsideWindow(outline, a, b);
    }
    if (inside) found.push_back(hit.id);
  }
  Take(found);
  return Step::kAsk;
}

Step ObjectSelector::Pick(const Point3& p) {
  const Drawing& drawing = context_.document().drawing();
  double best = PickBox(drawing);
  uint64_t chosen = 0;
  // Whatever passes within the pick box has its box meet the square round p.
  Point3 lo{p[0] - best, p[1] - best, 0}, hi{p[0] + best, p[1] + best, 0};
  for (const SpatialIndex::Hit& hit : drawing.spatial().Meeting(drawing, lo, hi))
    for (const Chain& c : EntityOutline(drawing, hit.id))
      for (size_t k = 0; k < c.size(); k++) {
        double d = c.size() == 1 ? std::hypot(p[0] - c[0][0], p[1] - c[0][1])
                                 : (k + 1 < c.size() ? SegmentDistance(p, c[k], c[k + 1])
                                                     : std::numeric_limits<double>::max());
        if (d <= best) {
          best = d;
          chosen = hit.id;
        }
      }
  if (!chosen) {
    context_.Message("0 found");
    return Step::kAsk;
  }
  Take({chosen});
  return Step::kAsk;
}

Step ObjectSelector::Handle(const Answer& answer) {
  state_ = State::kObjects;
  char* end = nullptr;
  unsigned long handle = std::strtoul(answer.text.c_str(), &end, 16);
  const Entity* e = answer.text.empty() || *end
                        ? nullptr
                        : context_.document().drawing().FindByHandle(static_cast<uint32_t>(handle));
  if (!e || e->erased || e->IsSubEntity()) {
    refusal_ = "No object has the handle " + answer.text + ".";
    return Step::kReject;
  }
  Take({e->id});
  return Step::kAsk;
}

Step ObjectSelector::Entities(const std::vector<uint64_t>& ids) {
  const Drawing& drawing = context_.document().drawing();
  bool any = std::any_of(ids.begin(), ids.end(), [&](uint64_t id) {
    const Entity* e = drawing.Find(id);
    return e && !e->erased && !e->IsSubEntity();
  });
  if (!any) {
    refusal_ = "Invalid selection.";
    return Step::kReject;
  }
  Take(ids);
  return Step::kAsk;
}

Step ObjectSelector::Keyword(const std::string& typed) {
  const Drawing& drawing = context_.document().drawing();
  std::string key = MatchKeyword(typed, {"ALL", "Last", "Window", "Crossing", "Handle", "Previous", "Remove", "Add"});
  if (key == "ALL") Take(drawing.MainEntities());
  else if (key == "LAST") Take(drawing.Last() ? std::vector<uint64_t>{drawing.Last()} : std::vector<uint64_t>{});
  else if (key == "PREVIOUS") Take(context_.document().selection_sets().previous());
  else if (key == "REMOVE") removing_ = true;
  else if (key == "ADD") removing_ = false;
  else if (key == "HANDLE") state_ = State::kHandle;
  else if (key == "WINDOW" || key == "CROSSING") {
    crossing_ = key == "CROSSING";
    state_ = State::kFirstCorner;
  } else {
    refusal_ = "*Invalid selection*\nExpects a point or Window/Last/Crossing/ALL/Previous/Remove/Add/Handle";
    return Step::kReject;
  }
  return Step::kAsk;
}

Step ObjectSelector::Feed(const Answer& answer) {
  switch (state_) {
    case State::kFirstCorner:
    case State::kOtherCorner: return Corner(answer);
    case State::kHandle: return Handle(answer);
    case State::kObjects: break;
  }
  switch (answer.kind) {
    case Answer::Kind::kName:
    case Answer::Kind::kSet: return Entities(answer.entities);
    case Answer::Kind::kPoint: return Pick(answer.point);
    case Answer::Kind::kWindow:
      if (!InRange(answer.point) || !InRange(answer.corner)) {
        refusal_ = "Invalid point.";
        return Step::kReject;
      }
      return Window(answer.point, answer.corner, answer.crossing);
    default: break;
  }
  if (answer.IsEnter()) {
    context_.document().selection_sets().previous() = selected_;
    return Step::kDone;
  }
  if (std::optional<Point3> p = AnswerPoint(answer, context_.document().LastPoint())) return Pick(*p);
  return Keyword(answer.text);
}

}  // namespace vorhost
