// text_commands.cpp - TEXT and STYLE.
#include <cmath>
#include <utility>

#include "emulator/commands/registry.h"
#include "emulator/core/text.h"
#include "emulator/drawing/layout.h"
#include "emulator/drawing/textmetric.h"

namespace vorhost {
namespace {

// Justifications: the keyword, groups 72 and 73, the point prompt.
struct Justification {
  const char* key;
  short h, v;
  const char* prompt;
};

const Justification kJustifications[] = {
    {"LEFT", 0, 0, "\nJustify/Style/<Start point>: "},
    {"ALIGN", 3, 0, "\nFirst text line point: "},
    {"FIT", 5, 0, "\nFirst text line point: "},
    {"CENTER", 1, 0, "\nCenter point: "},
    {"MIDDLE", 4, 0, "\nMiddle point: "},
    {"RIGHT", 2, 0, "\nEnd point: "},
    {"TL", 0, 3, "\nTop/left point: "},
    {"TC", 1, 3, "\nTop/center point: "},
    {"TR", 2, 3, "\nTop/right point: "},
    {"ML", 0, 2, "\nMiddle/left point: "},
    {"MC", 1, 2, "\nMiddle/center point: "},
    {"MR", 2, 2, "\nMiddle/right point: "},
    {"BL", 0, 1, "\nBottom/left point: "},
    {"BC", 1, 1, "\nBottom/center point: "},
    {"BR", 2, 1, "\nBottom/right point: "},
};

const Justification* FindJustification(std::string_view typed) {
  std::string key = MatchKeyword(typed, {"Align", "Fit", "Center", "Middle", "Right", "TL", "TC", "TR",
                                         "ML", "MC", "MR", "BL", "BC", "BR"});
  for (const Justification& j : kJustifications)
    if (key == j.key) return &j;
  return nullptr;
}

std::string CurrentStyleName(const Document& doc) {
  SysValue v;
  doc.sysvars().Get("TEXTSTYLE", &v);
  return std::get<std::string>(v);
}

// Text-mode lines: 5/3 of the height apart.
constexpr double kLineSpacing = 5.0 / 3.0;

class TextCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    switch (state_) {
      case State::kMain: return kJustifications[0].prompt;
      case State::kStyle: return "\nStyle name (or ?) <" + CurrentStyleName(doc()) + ">: ";
      case State::kJustify: return "\nAlign/Fit/Center/Middle/Right/TL/TC/TR/ML/MC/MR/BL/BC/BR: ";
      case State::kPoint: return just_->prompt;
      case State::kSecondPoint: return "\nSecond text line point: ";
      case State::kHeight: return "\nHeight <" + FormatNumber(TextSize()) + ">: ";
      case State::kRotation: return "\nRotation angle <" + FormatNumber(DefaultRotation()) + ">: ";
      case State::kText: return "\nText: ";
    }
    return "";
  }

  Step Feed(const Answer& a) override {
    switch (state_) {
      case State::kMain: return Main(a);
      case State::kStyle: return Style(a);
      case State::kJustify: {
        just_ = a.kind == Answer::Kind::kText ? FindJustification(a.text) : nullptr;
        if (!just_) return Reject("Invalid option keyword.");
        state_ = State::kPoint;
        return Step::kAsk;
      }
      case State::kPoint: return FirstPoint(a);
      case State::kSecondPoint: return SecondPoint(a);
      case State::kHeight: return Height(a);
      case State::kRotation: return Rotation(a);
      case State::kText: return Write(a);
    }
    return Step::kAsk;
  }

 private:
  enum class State { kMain, kStyle, kJustify, kPoint, kSecondPoint, kHeight, kRotation, kText };

  const StyleRecord* CurrentStyle() const {
    return std::as_const(doc().tables()).styles().Find(CurrentStyleName(doc()));
  }
  bool Vertical() const { const StyleRecord* s = CurrentStyle(); return s && (s->flags & 4); }
  double TextSize() const {
    SysValue v;
    return doc().sysvars().Get("TEXTSIZE", &v) ? std::get<double>(v) : 2.5;
  }
  double DefaultRotation() const { return Vertical() ? 270 : 0; }

  Step Main(const Answer& a) {
    if (a.IsEnter()) return UnderPrevious();
    if (a.kind == Answer::Kind::kText) {
      std::string key = MatchKeyword(a.text, {"Justify", "Style"});
      if (key == "STYLE") {
        state_ = State::kStyle;
        return Step::kAsk;
      }
      if (key == "JUSTIFY") {
        state_ = State::kJustify;
        return Step::kAsk;
      }
      if (const Justification* j = FindJustification(a.text)) {
        just_ = j;
        state_ = State::kPoint;
        return Step::kAsk;
      }
    }
    return FirstPoint(a);
  }

  Step Style(const Answer& a) {
    if (a.IsEnter()) {
      state_ = State::kMain;
      return Step::kAsk;
    }
    std::string name = UpperName(a.text);
    if (!std::as_const(doc().tables()).styles().Find(name))
      return Reject("Cannot find text style " + a.text + ".");
    doc().sysvars().Force("TEXTSTYLE", name);
    state_ = State::kMain;
    return Step::kAsk;
  }

  Step FirstPoint(const Answer& a) {
    std::optional<Point3> p = AnswerPoint(a, doc().LastPoint());
    if (!p) return Reject("Invalid point or option keyword.");
    first_ = *p;
    doc().SetLastPoint(*p);
    if (just_->h == 3 || just_->h == 5) {
      state_ = State::kSecondPoint;
      return Step::kAsk;
    }
    return AfterPoints();
  }

  Step SecondPoint(const Answer& a) {
    std::optional<Point3> p = AnswerPoint(a, first_);
    if (!p || (*p == first_)) return Reject("Invalid point.");
    second_ = *p;
    rotation_ = std::atan2(second_[1] - first_[1], second_[0] - first_[0]);
    return AfterPoints();
  }

  // Height is asked only of a style without a fixed height, never for Align.
  Step AfterPoints() {
    const StyleRecord* style = CurrentStyle();
    height_ = style && style->fixed_height > 0 ? style->fixed_height : TextSize();
    if ((!style || style->fixed_height <= 0) && just_->h != 3) state_ = State::kHeight;
    else state_ = just_->h == 3 || just_->h == 5 ? State::kText : State::kRotation;
    return Step::kAsk;
  }

  Step Height(const Answer& a) {
    std::optional<double> h = a.IsEnter() ? TextSize() : AnswerReal(a);
    if (!h || *h <= 0) return Reject("Requires a positive height.");
    height_ = *h;
    doc().sysvars().Force("TEXTSIZE", *h);
    state_ = just_->h == 5 ? State::kText : State::kRotation;
    return Step::kAsk;
  }

  Step Rotation(const Answer& a) {
    std::optional<double> deg = a.IsEnter() ? DefaultRotation() : AnswerReal(a);
    if (!deg) {
      std::optional<Point3> p = AnswerPoint(a, first_);
      if (!p) return Reject("Requires a numeric angle or a point.");
      deg = std::atan2((*p)[1] - first_[1], (*p)[0] - first_[0]) * 180 / M_PI;
    }
    rotation_ = *deg * M_PI / 180;
    state_ = State::kText;
    return Step::kAsk;
  }

  // Enter at the first prompt: the same settings, one line further down.
  Step UnderPrevious() {
    const Entity* prev = std::as_const(doc().drawing()).Find(doc().last_text());
    if (!prev || prev->erased) return Reject("No previous text to continue.");
    under_ = true;
    height_ = prev->Real(40, TextSize());
    rotation_ = prev->Real(50);
    short h = prev->Short(72), v = prev->Short(73);
    for (const Justification& j : kJustifications)
      if (j.h == h && j.v == v) just_ = &j;
    style_ = prev->Text(7, "STANDARD");
    width_factor_ = prev->Real(41, 1);
    Point3 at = (h || v) ? prev->Point(11) : prev->Point(10);
    double step = height_ * kLineSpacing;
    first_ = {at[0] + std::sin(rotation_) * step, at[1] - std::cos(rotation_) * step, at[2]};
    if (just_->h == 3 || just_->h == 5) {
      Point3 end = prev->Point(11);
      second_ = {end[0] + std::sin(rotation_) * step, end[1] - std::cos(rotation_) * step, end[2]};
    }
    state_ = State::kText;
    return Step::kAsk;
  }

  Step Write(const Answer& a) {
    std::string text = a.Echo();
    if (text.empty()) return Step::kDone;  // Enter: no text at all
    const StyleRecord* style =
        std::as_const(doc().tables()).styles().Find(under_ ? style_ : CurrentStyleName(doc()));
    std::string style_name = style ? style->name : "STANDARD";
    bool vertical = style && (style->flags & 4);
    double width_factor = under_ ? width_factor_ : style ? style->width : 1;
    double height = height_;
    if (just_->h == 3 || just_->h == 5) {  // Align and Fit fill the line between the points
      double length = std::hypot(second_[0] - first_[0], second_[1] - first_[1]);
      double advance = TextAdvance(text);
      if (advance > 0 && just_->h == 3) height = length / (advance * width_factor);
      if (advance > 0 && just_->h == 5) width_factor = length / (advance * height);
    }
    TextBox box = MeasureText(text, height, width_factor, vertical);
    Point3 insertion = just_->h == 0 && just_->v == 0 ? first_
                       : just_->h == 3 || just_->h == 5
                           ? first_
                           : JustifiedInsertion(box, first_, just_->h, just_->v,
                                                rotation_ - (vertical ? 3 * M_PI / 2 : 0));
    Entity e = doc().NewEntity("TEXT");
    e.groups = LayOut("TEXT", {{10, insertion}, {40, height}, {1, text}, {50, rotation_}, {41, width_factor},
                               {51, style ? style->oblique : 0.0}, {7, style_name},
                               {71, style ? style->generation : short{0}}, {72, just_->h},
                               {11, just_->h == 3 || just_->h == 5 ? second_ : first_}, {73, just_->v}});
    if (!e.NumbersInRange()) return Reject(kValueOutOfRange);
    doc().set_last_text(doc().drawing().Append(std::move(e)));
    return Step::kDone;
  }

  State state_ = State::kMain;
  const Justification* just_ = &kJustifications[0];
  Point3 first_{}, second_{};
  double height_ = 0, rotation_ = 0, width_factor_ = 1;
  bool under_ = false;
  std::string style_;
};

// ---- STYLE -----------------------------------------------------------------

// Fonts that can be written vertically: the host's own (SHX) fonts, not
// TrueType ones.
bool FontCanBeVertical(const std::string& font) {
  std::string upper = UpperName(font);
  return !(upper.size() > 4 && upper.compare(upper.size() - 4, 4, ".TTF") == 0);
}

std::optional<bool> YesNo(const Answer& a, bool fallback) {
  if (a.IsEnter()) return fallback;
  std::string key = a.kind == Answer::Kind::kText ? MatchKeyword(a.text, {"Yes", "No"}) : "";
  if (key.empty()) return std::nullopt;
  return key == "YES";
}

class StyleCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    const StyleRecord& s = style_;
    switch (state_) {
      case State::kName: return "\nText style name (or ?) <" + CurrentStyleName(doc()) + ">: ";
      case State::kFont: {
        std::string fonts = s.font + (s.big_font.empty() ? "" : "," + s.big_font);
        return "\nFont file <" + fonts + ">: ";
      }
      case State::kHeight: return "\nHeight <" + FormatNumber(s.fixed_height) + ">: ";
      case State::kWidth: return "\nWidth factor <" + FormatNumber(s.width) + ">: ";
      case State::kOblique: return "\nObliquing angle <" + FormatNumber(s.oblique * 180 / M_PI) + ">: ";
      case State::kBackwards: return std::string("\nBackwards? <") + ((s.generation & 2) ? "Y" : "N") + "> ";
      case State::kUpsideDown: return std::string("\nUpside-down? <") + ((s.generation & 4) ? "Y" : "N") + "> ";
      case State::kVertical: return std::string("\nVertical? <") + ((s.flags & 4) ? "Y" : "N") + "> ";
    }
    return "";
  }

  Step Feed(const Answer& a) override {
    switch (state_) {
      case State::kName: return Name(a);
      case State::kFont: return Font(a);
      case State::kHeight: return Number(a, &style_.fixed_height, 0, 1e300, State::kWidth);
      case State::kWidth: return Number(a, &style_.width, 1e-9, 1e300, State::kOblique);
      case State::kOblique: {
        double deg = style_.oblique * 180 / M_PI;
        Step s = Number(a, &deg, -85, 85, State::kBackwards);
        style_.oblique = deg * M_PI / 180;
        return s;
      }
      case State::kBackwards: return Flag(a, &style_.generation, 2, State::kUpsideDown);
      case State::kUpsideDown: {
        bool vertical_asked = FontCanBeVertical(style_.font);
        Step s = Flag(a, &style_.generation, 4, State::kVertical);
        return s == Step::kAsk && !vertical_asked ? Finish() : s;
      }
      case State::kVertical: {
        Step s = Flag(a, &style_.flags, 4, State::kVertical);
        return s == Step::kReject ? s : Finish();
      }
    }
    return Step::kAsk;
  }

 private:
  enum class State { kName, kFont, kHeight, kWidth, kOblique, kBackwards, kUpsideDown, kVertical };

  Step Name(const Answer& a) {
    std::string name = a.IsEnter() ? CurrentStyleName(doc()) : UpperName(a.text);
    if (!ValidSymbolName(name)) return Reject("Invalid text style name.");
    if (const StyleRecord* old = doc().tables().styles().Find(name)) {
      style_ = *old;
      Message("Existing style.");
    } else {
      style_ = StyleRecord{name};
      Message("New style.");
    }
    state_ = State::kFont;
    return Step::kAsk;
  }

  // "ROMANS,AE": the font, and after the comma the big font.
  Step Font(const Answer& a) {
    if (!a.IsEnter()) {
      std::string text = a.Echo();
      size_t comma = text.find(',');
      std::string font = text.substr(0, comma);
      if (font.empty() && comma == std::string::npos) return Reject("Invalid font file name.");
      if (!font.empty()) style_.font = font;
      style_.big_font = comma == std::string::npos ? "" : text.substr(comma + 1);
    }
    state_ = State::kHeight;
    return Step::kAsk;
  }

  Step Number(const Answer& a, double* value, double lo, double hi, State next) {
    std::optional<double> v = a.IsEnter() ? *value : AnswerReal(a);
    if (!v || *v < lo || *v > hi) return Reject(kValueOutOfRange);
    *value = *v;
    state_ = next;
    return Step::kAsk;
  }

  Step Flag(const Answer& a, short* flags, short bit, State next) {
    std::optional<bool> yes = YesNo(a, (*flags & bit) != 0);
    if (!yes) return Reject("Please answer Y or N.");
    *flags = static_cast<short>(*yes ? (*flags | bit) : (*flags & ~bit));
    state_ = next;
    return Step::kAsk;
  }

  Step Finish() {
    doc().tables().styles().Put(style_);
    doc().sysvars().Force("TEXTSTYLE", style_.name);
    Message(style_.name + " is now the current text style.");
    return Step::kDone;
  }

  State state_ = State::kName;
  StyleRecord style_;
};

const CommandEntry kTextCommands[] = {
    {"STYLE", "make or change a text style", Make<StyleCommand>},
    {"TEXT", "a line of text", Make<TextCommand>},
};

}  // namespace

std::span<const CommandEntry> TextCommands() { return kTextCommands; }

}  // namespace vorhost
