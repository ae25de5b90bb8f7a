// textmetric.cpp - the host's one text metric.
#include "emulator/drawing/textmetric.h"

#include <cmath>

#include "emulator/core/encoding.h"

namespace vorhost {
namespace {

// Walks text one cell at a time, calling f(width in heights) for each.
template <typename F>
void ForEachCell(std::string_view text, F f) {
  for (size_t i = 0; i < text.size();) {
    if (text.compare(i, 2, "%%") == 0 && i + 2 < text.size()) {
      char c = text[i + 2];
      if (c == 'o' || c == 'O' || c == 'u' || c == 'U') {
        i += 3;
        continue;
      }
      if (c >= '0' && c <= '9') {
        size_t j = i + 2;
        while (j < text.size() && j < i + 5 && text[j] >= '0' && text[j] <= '9') j++;
        f(kAsciiAdvance);
        i = j;
        continue;
      }
      f(kAsciiAdvance);  // %%c, %%d, %%p, %%% and unknown codes
      i += 3;
      continue;
    }
    size_t len = Big5CharLength(text, i);
    f(len == 2 ? kBig5Advance : kAsciiAdvance);
    i += len;
  }
}

}  // namespace

double TextAdvance(std::string_view text) {
  double total = 0;
  ForEachCell(text, [&](double w) { total += w; });
  return total;
}

int TextCells(std::string_view text) {
  int cells = 0;
  ForEachCell(text, [&](double) { cells++; });
  return cells;
}

TextBox MeasureText(std::string_view text, double height, double width_factor, bool vertical) {
  TextBox box;
  if (vertical) {
    box.x1 = -0.5 * height * width_factor;
    box.x2 = 0.5 * height * width_factor;
    box.y1 = -height * TextCells(text);
    box.y2 = 0;
  } else {
    box.x2 = height * width_factor * TextAdvance(text);
    box.y2 = height;
  }
  return box;
}

Point3 JustifiedInsertion(const TextBox& box, const Point3& align, int h, int v, double rotation) {
  double dx = 0, dy = 0;
  if (h == 4) {  // middle: the centre of the box
    dx = -(box.x1 + box.x2) / 2;
    dy = -(box.y1 + box.y2) / 2;
  } else {
    dx = h == 1 ? -(box.x1 + box.x2) / 2 : h == 2 ? -box.x2 : 0;
    dy = v == 1 ? -box.y1 : v == 2 ? -(box.y1 + box.y2) / 2 : v == 3 ? -box.y2 : 0;
  }
  double c = std::cos(rotation), s = std::sin(rotation);
  return {align[0] + dx * c - dy * s, align[1] + dx * s + dy * c, align[2]};
}

}  // namespace vorhost
