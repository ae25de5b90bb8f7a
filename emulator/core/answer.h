// answer.h - what a command is given at a prompt: a text the user typed, or
// a value a program sent through ads_command or a front end handed over;
// and the readers that turn typed texts into points, numbers and keywords
// as the command line does.
#ifndef VORHOST_COMMANDS_ANSWER_H
#define VORHOST_COMMANDS_ANSWER_H

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/numbers.h"

namespace vorhost {

struct Answer {
  enum class Kind {
    kText,   // typed, or RTSTR; "" is Enter
    kPoint,  // RT3DPOINT, RTPOINT
    kReal,   // RTREAL, RTANG (an angle in degrees)
    kInt,    // RTSHORT, RTLONG
    kName,   // RTENAME: an entity; or an object a front end picked
    kSet,    // RTPICKS: a selection set's members; or objects picked
    kWindow, // a window a front end drew, from point to corner
  };
  Kind kind = Kind::kText;
  std::string text;
  Point3 point{0, 0, 0};
  Point3 corner{0, 0, 0};          // kWindow: the other corner
  bool crossing = false;           // kWindow: objects crossing it count too
  double real = 0;
  long integer = 0;
  std::vector<uint64_t> entities;  // kName: one; kSet: the members

  static Answer Text(std::string t) { Answer a; a.text = std::move(t); return a; }
  static Answer Enter() { return Text(""); }
  static Answer OfPoint(const Point3& p) { Answer a; a.kind = Kind::kPoint; a.point = p; return a; }
  static Answer OfReal(double r) { Answer a; a.kind = Kind::kReal; a.real = r; return a; }
  static Answer OfInt(long i) { Answer a; a.kind = Kind::kInt; a.integer = i; return a; }
  // kName or kSet with these entity ids.
  static Answer OfEntities(Kind kind, std::vector<uint64_t> ids) {
    Answer a;
    a.kind = kind;
    a.entities = std::move(ids);
    return a;
  }
  static Answer OfWindow(const Point3& from, const Point3& to, bool crossing) {
    Answer a = OfPoint(from);
    a.kind = Kind::kWindow;
    a.corner = to;
    a.crossing = crossing;
    return a;
  }

  bool IsEnter() const { return kind == Kind::kText && text.empty(); }
  // How the command line shows the answer after its prompt.
  std::string Echo() const;
};

// Why a command refuses an answer whose result (a point computed from
// it, a record made with it) would fall out of the drawing's range.
constexpr const char* kValueOutOfRange = "Value out of range.";

// A number as the command line shows it: "2.5", "100", "-90".
std::string FormatNumber(double v);
std::string FormatPoint(const Point3& p);

// The answer as a real: a number sent, or a typed decimal number. None
// for a number that is not finite or is out of the drawing's range (see
// core/numbers.h), whether typed or sent by a program.
std::optional<double> AnswerReal(const Answer& a);
// The answer as a point. Typed forms: "x,y" and "x,y,z"; "@dx,dy[,dz]"
// relative to last; "@dist<angle" polar from last; "@" is last itself.
// None for a point with a coordinate out of range, a relative point whose
// sum runs out of range included.
std::optional<Point3> AnswerPoint(const Answer& a, const Point3& last);
// The answer as a whole number in [lo, hi].
std::optional<long> AnswerInt(const Answer& a, long lo, long hi);

// The keyword of options that a typed answer names, or "" when none does.
// Options are written as the host shows them, the capitals being the
// shortest form ("LAyer" takes "LA", "LAY", "LAYER"); answers are
// case-blind.
std::string MatchKeyword(std::string_view typed, std::initializer_list<std::string_view> options);

// A colour answer: 1 to 255 or a name of the first seven (RED to WHITE),
// and with allow_logical also BYLAYER (256) or BYBLOCK (0).
std::optional<short> ColorAnswer(const Answer& a, bool allow_logical);

// Whether name can name a layer, style or other table record: 1 to 31
// letters, digits, "$", "-", "_" or Big5 bytes.
bool ValidSymbolName(std::string_view name);

}  // namespace vorhost

#endif
