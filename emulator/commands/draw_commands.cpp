// draw_commands.cpp - LINE, PLINE, ARC, CIRCLE and ERASE.
#include <cmath>
#include <utility>
#include <vector>

#include "emulator/commands/registry.h"
#include "emulator/commands/selection.h"
#include "emulator/core/numbers.h"
#include "emulator/drawing/geometry.h"
#include "emulator/drawing/layout.h"

namespace vorhost {
namespace {

constexpr const char* kInvalidPoint = "Invalid point.";

double NormalAngle(double a) {
  a = std::fmod(a, 2 * M_PI);
  return a < 0 ? a + 2 * M_PI : a;
}

// ---- LINE ------------------------------------------------------------------

class LineCommand : public Command {
 public:
  using Command::Command;
  std::string Prompt() const override { return from_ ? "\nFrom point: " : "\nTo point: "; }
  std::optional<Point3> base() const override { return from_ ? std::nullopt : std::optional<Point3>(last_); }

  Step Feed(const Answer& a) override {
    if (from_) {
      std::optional<Point3> p = a.IsEnter() ? doc().LastPoint() : AnswerPoint(a, doc().LastPoint());
      if (!p) return Reject(kInvalidPoint);
      start_ = last_ = *p;
      doc().SetLastPoint(*p);
      from_ = false;
      return Step::kAsk;
    }
    if (a.IsEnter()) return Step::kDone;
    std::string key = a.kind == Answer::Kind::kText ? MatchKeyword(a.text, {"Close", "Undo"}) : "";
    if (key == "UNDO") {
      if (segments_.empty()) return Reject("All segments already undone.");
      const Entity* e = std::as_const(doc().drawing()).Find(segments_.back());
      last_ = e->Point(10);
      doc().drawing().Erase(segments_.back());
      segments_.pop_back();
      doc().SetLastPoint(last_);
      return Step::kAsk;
    }
    if (key == "CLOSE") {
      if (segments_.size() < 2) return Reject("Close needs two segments drawn.");
      Segment(start_);
      return Step::kDone;
    }
    std::optional<Point3> p = AnswerPoint(a, last_);
    if (!p) return Reject(kInvalidPoint);
    Segment(*p);
    return Step::kAsk;
  }

 private:
  void Segment(const Point3& to) {
    Entity e = doc().NewEntity("LINE");
    e.groups = LayOut("LINE", {{10, last_}, {11, to}});
    segments_.push_back(doc().drawing().Append(std::move(e)));
    last_ = to;
    doc().SetLastPoint(to);
  }

  bool from_ = true;
  Point3 start_{}, last_{};
  std::vector<uint64_t> segments_;
};

// ---- PLINE -----------------------------------------------------------------

class PlineCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    switch (state_) {
      case State::kFrom: return "\nFrom point: ";
      case State::kStartWidth:
        return std::string(half_ ? "\nStarting half-width <" : "\nStarting width <") +
               FormatNumber(end_width_ / Factor()) + ">: ";
      case State::kEndWidth:
        return std::string(half_ ? "\nEnding half-width <" : "\nEnding width <") +
               FormatNumber(pending_start_ / Factor()) + ">: ";
      case State::kLength: return "\nLength of line: ";
      case State::kMain: break;
    }
    return arc_mode_ ? "\nAngle/CEnter/CLose/Direction/Halfwidth/Line/Radius/Second pt/Undo/Width/"
                       "<Endpoint of arc>: "
                     : "\nArc/Close/Halfwidth/Length/Undo/Width/<Endpoint of line>: ";
  }

  std::optional<Point3> base() const override {
    if (state_ != State::kMain || vertices_.empty()) return std::nullopt;
    return vertices_.back().at;
  }

  Step Begin() override {
    SysValue w;
    if (doc().sysvars().Get("PLINEWID", &w)) start_width_ = end_width_ = std::get<double>(w);
    return Step::kAsk;
  }

  Step Feed(const Answer& a) override {
    switch (state_) {
      case State::kFrom: return From(a);
      case State::kStartWidth: return StartWidth(a);
      case State::kEndWidth: return EndWidth(a);
      case State::kLength: return Length(a);
      case State::kMain: return Main(a);
    }
    return Step::kAsk;
  }

 private:
  enum class State { kFrom, kMain, kStartWidth, kEndWidth, kLength };
  struct Vertex {
    Point3 at;
    double start_width = 0, end_width = 0, bulge = 0;
  };

  double Factor() const { return half_ ? 2 : 1; }

  Step From(const Answer& a) {
    std::optional<Point3> p = AnswerPoint(a, doc().LastPoint());
    if (!p) return Reject(kInvalidPoint);
    vertices_.push_back({*p});
    doc().SetLastPoint(*p);
    Message("Current line-width is " + FormatNumber(end_width_));
    state_ = State::kMain;
    return Step::kAsk;
  }

  Step StartWidth(const Answer& a) {
    std::optional<double> w = a.IsEnter() ? end_width_ / Factor() : AnswerReal(a);
    if (!w || *w < 0) return Reject("Requires a width of 0 or more.");
    if (!InRange(*w * Factor())) return Reject(kValueOutOfRange);
    pending_start_ = *w * Factor();
    state_ = State::kEndWidth;
    return Step::kAsk;
  }

  Step EndWidth(const Answer& a) {
    std::optional<double> w = a.IsEnter() ? pending_start_ / Factor() : AnswerReal(a);
    if (!w || *w < 0) return Reject("Requires a width of 0 or more.");
    if (!InRange(*w * Factor())) return Reject(kValueOutOfRange);
    start_width_ = pending_start_;
    end_width_ = *w * Factor();
    state_ = State::kMain;
    return Step::kAsk;
  }

  Step Length(const Answer& a) {
    std::optional<double> len = AnswerReal(a);
    if (!len) return Reject("Requires numeric distance.");
    const Point3& p = vertices_.back().at;
    Point3 q{p[0] + *len * std::cos(direction_), p[1] + *len * std::sin(direction_), p[2]};
    if (!InRange(q)) return Reject(kValueOutOfRange);
    AddVertex(q, false);
    state_ = State::kMain;
    return Step::kAsk;
  }

  Step Main(const Answer& a) {
    if (a.IsEnter()) return Finish(false);
    std::string key = a.kind != Answer::Kind::kText ? ""
                      : arc_mode_ ? MatchKeyword(a.text, {"CLose", "Halfwidth", "Line", "Undo", "Width"})
                                  : MatchKeyword(a.text, {"Arc", "Close", "Halfwidth", "Length", "Undo", "Width"});
    if (key == "ARC") arc_mode_ = true;
    else if (key == "LINE") arc_mode_ = false;
    else if (key == "CLOSE") {
      if (vertices_.size() < 2) return Reject("Close needs a segment drawn.");
      if (arc_mode_) vertices_.back().bulge = TangentBulge(vertices_.back().at, vertices_.front().at);
      vertices_.back().start_width = start_width_;
      vertices_.back().end_width = end_width_;
      return Finish(true);
    } else if (key == "WIDTH" || key == "HALFWIDTH") {
      half_ = key == "HALFWIDTH";
      state_ = State::kStartWidth;
    } else if (key == "LENGTH") {
      state_ = State::kLength;
    } else if (key == "UNDO") {
      if (vertices_.size() < 2) return Reject("All segments already undone.");
      vertices_.pop_back();
      vertices_.back().bulge = 0;
      doc().SetLastPoint(vertices_.back().at);
    } else {
      std::optional<Point3> p = AnswerPoint(a, vertices_.back().at);
      if (!p) return Reject(arc_mode_ ? "Invalid point or option keyword." : kInvalidPoint);
      AddVertex(*p, arc_mode_);
    }
    return Step::kAsk;
  }

  // The bulge of an arc from p to q leaving p along the current direction.
  double TangentBulge(const Point3& p, const Point3& q) const {
    double chord = std::atan2(q[1] - p[1], q[0] - p[0]);
    double half = std::remainder(chord - direction_, 2 * M_PI);  // half the included angle
    return std::tan(half / 2);
  }

  void AddVertex(const Point3& q, bool arc) {
    Vertex& last = vertices_.back();
    last.start_width = start_width_;
    last.end_width = end_width_;
    double chord = std::atan2(q[1] - last.at[1], q[0] - last.at[0]);
    if (arc) {
      last.bulge = TangentBulge(last.at, q);
      direction_ = chord + 2 * std::atan(last.bulge);  // the tangent where the arc ends
    } else {
      direction_ = chord;
    }
    start_width_ = end_width_;
    vertices_.push_back({q, start_width_, end_width_});
    doc().SetLastPoint(q);
  }

  Step Finish(bool closed) {
    doc().sysvars().Force("PLINEWID", end_width_);
    if (vertices_.size() < 2) return Step::kDone;
    SysValue type;
    bool light = doc().sysvars().Get("PLINETYPE", &type) && std::get<short>(type) == 2;
    light ? MakeLight(closed) : MakeOldStyle(closed);
    return Step::kDone;
  }

  void MakeOldStyle(bool closed) {
    Drawing& d = doc().drawing();
    Entity head = doc().NewEntity("POLYLINE");
    head.groups = LayOut("POLYLINE", {{10, Point3{0, 0, vertices_[0].at[2]}}, {70, short(closed ? 1 : 0)}});
    d.Append(head);
    for (const Vertex& v : vertices_) {
      Entity e = doc().NewEntity("VERTEX");
      e.groups = LayOut("VERTEX", {{10, v.at}, {40, v.start_width}, {41, v.end_width}, {42, v.bulge}});
      d.Append(std::move(e));
    }
    d.Append(doc().NewEntity("SEQEND"));
  }

  void MakeLight(bool closed) {
    Entity e = doc().NewEntity("LWPOLYLINE");
    e.groups = {{90, static_cast<long>(vertices_.size())}, {70, short(closed ? 1 : 0)}};
    for (const Vertex& v : vertices_) {
      e.groups.push_back({10, Point3{v.at[0], v.at[1], 0}});
      e.groups.push_back({40, v.start_width});
      e.groups.push_back({41, v.end_width});
      e.groups.push_back({42, v.bulge});
    }
    doc().drawing().Append(std::move(e));
  }

  State state_ = State::kFrom;
  bool arc_mode_ = false, half_ = false;
  double start_width_ = 0, end_width_ = 0, pending_start_ = 0;
  double direction_ = 0;  // of the last segment where it ends
  std::vector<Vertex> vertices_;
};

// ---- ARC and CIRCLE --------------------------------------------------------

// The centre of the circle through three points; false when they are on a line.
bool Circumcentre(const Point3& a, const Point3& b, const Point3& c, Point3* centre) {
  double d = 2 * (a[0] * (b[1] - c[1]) + b[0] * (c[1] - a[1]) + c[0] * (a[1] - b[1]));
  if (std::fabs(d) < 1e-12) return false;
  double a2 = a[0] * a[0] + a[1] * a[1], b2 = b[0] * b[0] + b[1] * b[1], c2 = c[0] * c[0] + c[1] * c[1];
  *centre = {(a2 * (b[1] - c[1]) + b2 * (c[1] - a[1]) + c2 * (a[1] - b[1])) / d,
             (a2 * (c[0] - b[0]) + b2 * (a[0] - c[0]) + c2 * (b[0] - a[0])) / d, a[2]};
  return true;
}

double Angle(const Point3& from, const Point3& to) {
  return NormalAngle(std::atan2(to[1] - from[1], to[0] - from[0]));
}

class ArcCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    switch (state_) {
      case State::kFirst: return "\nCenter/<Start point>: ";
      case State::kSecond: return "\nCenter/End/<Second point>: ";
      case State::kEnd3: return "\nEnd point: ";
      case State::kCentre: return "\nCenter: ";
      case State::kStart: return "\nStart point: ";
      case State::kEndByCentre: return "\nAngle/<End point>: ";
      case State::kAngle: return "\nIncluded angle: ";
    }
    return "";
  }
  // The second point is measured from the start point, the end point from
  // the second; by its centre, the centre from the start point given
  // before it, and the start and end points from the centre.
  std::optional<Point3> base() const override {
    switch (state_) {
      case State::kSecond: return start_;
      case State::kEnd3: return second_;
      case State::kCentre: return start_given_ ? std::optional<Point3>(start_) : std::nullopt;
      case State::kStart:
      case State::kEndByCentre: return centre_;
      case State::kFirst:
      case State::kAngle: break;
    }
    return std::nullopt;
  }

  Step Feed(const Answer& a) override {
    std::string key = a.kind == Answer::Kind::kText ? MatchKeyword(a.text, {"Center", "Angle"}) : "";
    if ((state_ == State::kFirst || state_ == State::kSecond) && key == "CENTER") {
      state_ = State::kCentre;
      return Step::kAsk;
    }
    if (state_ == State::kEndByCentre && key == "ANGLE") {
      state_ = State::kAngle;
      return Step::kAsk;
    }
    if (state_ == State::kAngle) {
      std::optional<double> deg = AnswerReal(a);
      if (!deg || *deg == 0) return Reject("Requires a non-zero angle.");
      double a1 = Angle(centre_, start_);
      return Make(centre_, Distance(centre_, start_), *deg > 0 ? a1 : a1 + *deg * M_PI / 180,
                  *deg > 0 ? a1 + *deg * M_PI / 180 : a1);
    }
    std::optional<Point3> p = AnswerPoint(a, doc().LastPoint());
    if (!p) return Reject(kInvalidPoint);
    switch (state_) {
      case State::kFirst: start_ = *p; start_given_ = true; state_ = State::kSecond; break;
      case State::kSecond: second_ = *p; state_ = State::kEnd3; break;
      case State::kEnd3: return ThreePoints(*p);
      case State::kCentre:
        centre_ = *p;
        state_ = start_given_ ? State::kEndByCentre : State::kStart;
        break;
      case State::kStart: start_ = *p; state_ = State::kEndByCentre; break;
      case State::kEndByCentre:
        return Make(centre_, Distance(centre_, start_), Angle(centre_, start_), Angle(centre_, *p));
      case State::kAngle: break;
    }
    return Step::kAsk;
  }

 private:
  enum class State { kFirst, kSecond, kEnd3, kCentre, kStart, kEndByCentre, kAngle };
  static double Distance(const Point3& a, const Point3& b) { return std::hypot(b[0] - a[0], b[1] - a[1]); }

  Step ThreePoints(const Point3& end) {
    Point3 c;
    if (!Circumcentre(start_, second_, end, &c)) return Reject("Points are collinear.");
    double cross = (second_[0] - start_[0]) * (end[1] - start_[1]) - (second_[1] - start_[1]) * (end[0] - start_[0]);
    const Point3& from = cross > 0 ? start_ : end;
    const Point3& to = cross > 0 ? end : start_;
    return Make(c, Distance(c, start_), Angle(c, from), Angle(c, to));
  }

  Step Make(const Point3& c, double r, double a1, double a2) {
    if (r <= 0) return Reject("The arc has no radius.");
    if (!InRange(c) || !InRange(r)) return Reject(kValueOutOfRange);
    Entity e = doc().NewEntity("ARC");
    e.groups = LayOut("ARC", {{10, c}, {40, r}, {50, NormalAngle(a1)}, {51, NormalAngle(a2)}});
    doc().drawing().Append(std::move(e));
    doc().SetLastPoint({c[0] + r * std::cos(a2), c[1] + r * std::sin(a2), c[2]});
    return Step::kDone;
  }

  State state_ = State::kFirst;
  bool start_given_ = false;
  Point3 start_{}, second_{}, centre_{};
};

class CircleCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    switch (state_) {
      case State::kCentre: return "\n3P/2P/TTR/<Center point>: ";
      case State::kRadius: return "\nDiameter/<Radius> <" + FormatNumber(DefaultRadius()) + ">: ";
      case State::kDiameter: return "\nDiameter <" + FormatNumber(2 * DefaultRadius()) + ">: ";
      case State::kPoint1: return two_ ? "\nFirst point on diameter: " : "\nFirst point: ";
      case State::kPoint2: return two_ ? "\nSecond point on diameter: " : "\nSecond point: ";
      case State::kPoint3: return "\nThird point: ";
    }
    return "";
  }
  // The radius and the diameter are measured from the centre, the second
  // point from the first.
  std::optional<Point3> base() const override {
    if (state_ == State::kRadius || state_ == State::kDiameter || state_ == State::kPoint2) return points_[0];
    return std::nullopt;
  }

  Step Feed(const Answer& a) override {
    std::string key = a.kind == Answer::Kind::kText ? MatchKeyword(a.text, {"3P", "2P", "TTR", "Diameter"}) : "";
    switch (state_) {
      case State::kCentre:
        if (key == "3P" || key == "2P") {
          two_ = key == "2P";
          state_ = State::kPoint1;
          return Step::kAsk;
        }
        if (key == "TTR") return Reject("Tangent, tangent, radius is not offered by this host.");
        return TakePoint(a, &points_[0], State::kRadius);
      case State::kRadius:
        if (key == "DIAMETER") {
          state_ = State::kDiameter;
          return Step::kAsk;
        }
        return Radius(a, 1);
      case State::kDiameter: return Radius(a, 0.5);
      case State::kPoint1: return TakePoint(a, &points_[0], State::kPoint2);
      case State::kPoint2:
        if (two_) {
          std::optional<Point3> p = AnswerPoint(a, doc().LastPoint());
          if (!p) return Reject(kInvalidPoint);
          Point3 c{(points_[0][0] + (*p)[0]) / 2, (points_[0][1] + (*p)[1]) / 2, points_[0][2]};
          return Make(c, std::hypot((*p)[0] - c[0], (*p)[1] - c[1]));
        }
        return TakePoint(a, &points_[1], State::kPoint3);
      case State::kPoint3: {
        std::optional<Point3> p = AnswerPoint(a, doc().LastPoint());
        Point3 c;
        if (!p) return Reject(kInvalidPoint);
        if (!Circumcentre(points_[0], points_[1], *p, &c)) return Reject("Points are collinear.");
        return Make(c, std::hypot(points_[0][0] - c[0], points_[0][1] - c[1]));
      }
    }
    return Step::kAsk;
  }

 private:
  enum class State { kCentre, kRadius, kDiameter, kPoint1, kPoint2, kPoint3 };

  double DefaultRadius() const {
    SysValue v;
    return doc().sysvars().Get("CIRCLERAD", &v) ? std::get<double>(v) : 1.0;
  }

  Step TakePoint(const Answer& a, Point3* slot, State next) {
    std::optional<Point3> p = AnswerPoint(a, doc().LastPoint());
    if (!p) return Reject(kInvalidPoint);
    *slot = *p;
    state_ = next;
    return Step::kAsk;
  }

  Step Radius(const Answer& a, double factor) {
    std::optional<double> v = a.IsEnter() ? DefaultRadius() / factor : AnswerReal(a);
    if (!v) {
      if (std::optional<Point3> p = AnswerPoint(a, points_[0]))
        v = std::hypot((*p)[0] - points_[0][0], (*p)[1] - points_[0][1]) / factor;
    }
    if (!v || *v <= 0) return Reject("Requires a positive distance.");
    return Make(points_[0], *v * factor);
  }

  Step Make(const Point3& c, double r) {
    if (r <= 0) return Reject("The circle has no radius.");
    if (!InRange(c) || !InRange(r)) return Reject(kValueOutOfRange);
    Entity e = doc().NewEntity("CIRCLE");
    e.groups = LayOut("CIRCLE", {{10, c}, {40, r}});
    doc().drawing().Append(std::move(e));
    doc().sysvars().Force("CIRCLERAD", r);
    return Step::kDone;
  }

  State state_ = State::kCentre;
  bool two_ = false;
  Point3 points_[2]{};
};

// ---- ERASE -----------------------------------------------------------------

class EraseCommand : public Command {
 public:
  explicit EraseCommand(CommandContext& context) : Command(context), selector_(context) {}
  std::string Prompt() const override { return selector_.Prompt(); }
  Asking asking() const override { return selector_.asking(); }
  const std::vector<uint64_t>* chosen() const override { return &selector_.selected(); }
  Step Feed(const Answer& a) override {
    Step s = selector_.Feed(a);
    if (s == Step::kReject) return Reject(selector_.refusal());
    if (s == Step::kDone)
      for (uint64_t id : selector_.selected()) doc().drawing().Erase(id);
    return s;
  }

 private:
  ObjectSelector selector_;
};

const CommandEntry kDrawCommands[] = {
    {"ARC", "an arc through three points, or from its centre", Make<ArcCommand>},
    {"CIRCLE", "a circle by centre and radius or diameter, or through two or three points", Make<CircleCommand>},
    {"ERASE", "erase objects", Make<EraseCommand>},
    {"LINE", "line segments", Make<LineCommand>},
    {"PLINE", "a polyline of lines and arcs, with widths", Make<PlineCommand>},
};

}  // namespace

std::span<const CommandEntry> DrawCommands() { return kDrawCommands; }

}  // namespace vorhost
