// dialog_view.h - a dialog drawn as text for a terminal: its label, its
// tiles in their rows and columns, boxed clusters framed with their
// labels, lists with their column headers and rows on the dialog's tab
// stops (the chosen rows marked, a long list shown around its chosen row),
// toggles and radio buttons with their state, disabled tiles marked, edit
// boxes with their values. Chinese text is measured by display width.
#ifndef VORHOST_UI_DIALOG_VIEW_H
#define VORHOST_UI_DIALOG_VIEW_H

#include <string>
#include <string_view>

namespace vorhost {

class Dialog;

struct DialogViewStyle {
  int width = 80;       // columns the drawing may take
  bool colour = false;  // mark chosen rows and disabled tiles with colour as well
  size_t list_rows = 8; // rows of a list shown at most
};

// The dialog drawn (UTF-8), lines ending with a line feed.
std::string DrawDialog(Dialog& dialog, const DialogViewStyle& style);

// Columns text takes on a terminal (UTF-8): two for a CJK character.
size_t DisplayWidth(std::string_view utf8);

}  // namespace vorhost

#endif
