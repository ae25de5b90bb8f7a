// main_window.h - vorhost's main window: the drawing view, the command line
// docked under it, the cursor's coordinates in the status bar, and menus
// and a toolbar that type the host's and the module's commands.
#ifndef VORHOST_APP_GUI_MAIN_WINDOW_H
#define VORHOST_APP_GUI_MAIN_WINDOW_H

#include <QLabel>
#include <QMainWindow>
#include <functional>

#include "app/gui/command_pane.h"
#include "app/gui/drawing_view.h"

namespace vorhost::gui {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(QWidget* parent = nullptr);

  DrawingView& view() { return *view_; }
  CommandPane& pane() { return *pane_; }

  // Called with a line a menu or toolbar button types at the command
  // prompt, and with a file action that needs the host's drawing.
  std::function<void(const QString&)> on_command;
  enum class FileAction { kNew, kOpen, kSaveAs, kExportSvg };
  std::function<void(FileAction)> on_file;
  // Asked when the user closes the window: whether it may close (the
  // drawing saved, or its changes given up). Then on_close is called.
  std::function<bool()> may_close;
  std::function<void()> on_close;
  // Help > Commands and keys (F1): the host's help.
  std::function<void()> on_help;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildMenus();
  void Command(const QString& line) {
    if (on_command) on_command(line);
  }

  DrawingView* view_;
  CommandPane* pane_;
  QLabel* coordinates_;
};

}  // namespace vorhost::gui

#endif
