// command_pane.h - the command line docked under the drawing: the
// transcript of what the host printed and was answered, the prompt it is
// showing, and the line the user types, with the terminal front end's
// history (Up, Down) and completion (Tab).
#ifndef VORHOST_APP_GUI_COMMAND_PANE_H
#define VORHOST_APP_GUI_COMMAND_PANE_H

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QWidget>
#include <functional>
#include <string_view>

#include "emulator/ui/completer.h"
#include "emulator/ui/history.h"

namespace vorhost::gui {

class CommandPane : public QWidget {
  Q_OBJECT

 public:
  explicit CommandPane(QWidget* parent = nullptr);

  // Adds text (UTF-8) to the transcript as the host printed it.
  void Append(const QString& text);
  // Shows the prompt the host is asking with; "" when it asks nothing.
  void SetPrompt(const QString& prompt);

  // The lines Up and Down recall, kept as the user enters them (UTF-8;
  // not owned; none when null).
  void set_history(History* history) {
    history_ = history;
    recalled_ = -1;
  }

  QLineEdit* line() { return line_; }
  QPlainTextEdit* transcript() { return transcript_; }

  // A line typed and entered (Enter alone gives ""); Escape.
  std::function<void(const QString&)> on_line;
  std::function<void()> on_escape;
  // Tab: the candidates for the word that ends at cursor (bytes of the
  // line's UTF-8). One is put in whole, several by what they begin with;
  // when that adds nothing they are listed in the transcript.
  std::function<Completion(std::string_view line, size_t cursor)> complete;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Up (step -1) and Down (+1) through the history; below the newest
  // line is the one being typed when Up was first pressed.
  void Recall(int step);
  void CompleteWord();

  QPlainTextEdit* transcript_;
  QLabel* prompt_;
  QLineEdit* line_;
  History* history_ = nullptr;
  long recalled_ = -1;  // the history's line shown; -1 when none is
  QString under_way_;   // the line typed before Up was pressed
};

}  // namespace vorhost::gui

#endif
