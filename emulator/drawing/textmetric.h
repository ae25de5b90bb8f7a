// textmetric.h - how much room a text takes. The host has no font files, so
// every font is measured by one simple metric (docs/host.md, "Text metric"):
// an ASCII character is 0.75 of the height wide, a Big5 character a full
// height; capitals reach the height and nothing goes below the baseline. A
// vertical style stacks the characters downward, one height each, in a
// column one height wide centred on the insertion point.
#ifndef VORHOST_DRAWING_TEXTMETRIC_H
#define VORHOST_DRAWING_TEXTMETRIC_H

#include <string_view>

#include "emulator/drawing/entity.h"

namespace vorhost {

// Corners of a text's box in its own frame (rotation 0), the insertion
// point (left end of the baseline, or top of the column) at the origin.
struct TextBox {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  double width() const { return x2 - x1; }
  double height() const { return y2 - y1; }
};

constexpr double kAsciiAdvance = 0.75;  // in heights
constexpr double kBig5Advance = 1.0;

// The number of character cells of text: a Big5 character is one cell of
// kBig5Advance, a control code %%c, %%d, %%p, %%% or %%nnn one ASCII cell,
// and %%o and %%u (overscore and underscore switches) none. Returned in
// heights, for horizontal text.
double TextAdvance(std::string_view text);
// Characters in a vertical column (each control code counted as above).
int TextCells(std::string_view text);

TextBox MeasureText(std::string_view text, double height, double width_factor, bool vertical);

// The insertion point (group 10) of a text whose alignment point is align,
// for horizontal justification h (group 72: 0 left, 1 centre, 2 right,
// 4 middle) and vertical justification v (0 baseline, 1 bottom, 2 middle,
// 3 top), rotation in radians.
Point3 JustifiedInsertion(const TextBox& box, const Point3& align, int h, int v, double rotation);

}  // namespace vorhost

#endif
