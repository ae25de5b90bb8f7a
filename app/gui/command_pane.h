// command_pane.h - the command line docked under the drawing: the
// transcript of what the host printed and was answered, the prompt it is
// showing, and the line the user types. History and completion are those
// of the terminal front end, to be shared with it.
#ifndef VORHOST_APP_GUI_COMMAND_PANE_H
#define VORHOST_APP_GUI_COMMAND_PANE_H

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QWidget>
#include <functional>

namespace vorhost::gui {

class CommandPane : public QWidget {
  Q_OBJECT

 public:
  explicit CommandPane(QWidget* parent = nullptr);

  // Adds text (UTF-8) to the transcript as the host printed it.
  void Append(const QString& text);
  // Shows the prompt the host is asking with; "" when it asks nothing.
  void SetPrompt(const QString& prompt);

  QLineEdit* line() { return line_; }
  QPlainTextEdit* transcript() { return transcript_; }

  // A line typed and entered (Enter alone gives ""); Escape.
  std::function<void(const QString&)> on_line;
  std::function<void()> on_escape;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPlainTextEdit* transcript_;
  QLabel* prompt_;
  QLineEdit* line_;
};

}  // namespace vorhost::gui

#endif
