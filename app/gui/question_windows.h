// question_windows.h - the windows of the host functions that ask for
// something: ACAD_COLORDLG's chooser of the index colours, W1's input
// window, and ADS_HELP's help window (also the window's own help).
#ifndef VORHOST_APP_GUI_QUESTION_WINDOWS_H
#define VORHOST_APP_GUI_QUESTION_WINDOWS_H

#include <QDialog>
#include <QWidget>
#include <functional>
#include <string>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace vorhost::gui {

// The 255 index colours as swatches: 1 to 9 in a row, 10 to 249 with a
// column for each hue and a row for each shade, 250 to 255 in a row.
class ColourGrid : public QWidget {
  Q_OBJECT

 public:
  explicit ColourGrid(QWidget* parent);
  // Where the swatch of index (1 to 255) is drawn.
  static QRect CellRect(int index);
  void set_chosen(int index);
  int chosen() const { return chosen_; }
  // A swatch clicked; double-clicked.
  std::function<void(int)> on_choose;
  std::function<void(int)> on_accept;

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  static int IndexAt(QPoint at);
  int chosen_ = 0;
};

// ACAD_COLORDLG's window: the swatches, BYLAYER and BYBLOCK where the call
// allows them, the number chosen, OK and Cancel.
class ColourWindow : public QDialog {
  Q_OBJECT

 public:
  ColourWindow(int current, bool logical, QWidget* parent);
  ColourGrid* grid() { return grid_; }
  QPushButton* by_layer() { return by_layer_; }
  QPushButton* by_block() { return by_block_; }
  // The colour chosen (0 BYBLOCK, 256 BYLAYER); -1 for none yet.
  int chosen() const { return chosen_; }
  // The answer as it would be typed: the number, or BYLAYER or BYBLOCK.
  std::string Answer() const;
  // Chooses index (0 BYBLOCK, 256 BYLAYER), or none for -1, as a click does.
  void Choose(int index);

 private:
  bool logical_;
  int chosen_ = -1;
  ColourGrid* grid_;
  QLabel* shown_;
  QLabel* sample_;
  QPushButton* by_layer_;
  QPushButton* by_block_;
  QPushButton* ok_;
};

// W1's window: the prompt over a line holding the current text.
class TextWindow : public QDialog {
  Q_OBJECT

 public:
  // label and current are UTF-8.
  TextWindow(const QString& label, const QString& current, QWidget* parent);
  QLineEdit* line() { return line_; }

 private:
  QLineEdit* line_;
};

// A help text in a window of its own, left open beside the work.
class HelpWindow : public QDialog {
  Q_OBJECT

 public:
  explicit HelpWindow(QWidget* parent);
  void Show(const QString& title, const QString& text);
  QPlainTextEdit* text() { return text_; }

 private:
  QPlainTextEdit* text_;
};

}  // namespace vorhost::gui

#endif
