// editor_window.h - W2's editor in the window: one of the host's text files
// (Big5, CR LF, maybe an end mark) edited as UTF-8, written back in the
// host's form; a character Big5 cannot hold is refused and the user goes on
// editing.
#ifndef VORHOST_APP_GUI_EDITOR_WINDOW_H
#define VORHOST_APP_GUI_EDITOR_WINDOW_H

#include <QDialog>
#include <string>

#include "emulator/core/input.h"

class QLabel;
class QPlainTextEdit;

namespace vorhost::gui {

class EditorWindow : public QDialog {
  Q_OBJECT

 public:
  // Edits contents, the bytes of the file titled title.
  EditorWindow(const std::string& contents, const QString& title, QWidget* parent);

  // Whether the contents are Big5 text, which survives the round trip; a
  // window of other bytes cannot save.
  bool readable() const { return readable_; }
  QPlainTextEdit* editor() { return editor_; }
  // The refusal shown under the text; "" when none.
  QString refusal() const;

  // Saves the text when Big5 can hold it (accepting the window), or shows
  // why not and leaves the window open.
  void Save();
  // After the window is closed: how the edit ended, and the new contents
  // for kSaved.
  EditOutcome outcome() const { return outcome_; }
  const std::string& contents() const { return contents_; }

 private:
  std::string contents_;
  bool end_mark_ = false;
  bool readable_ = true;
  QString original_;
  QPlainTextEdit* editor_;
  QLabel* refusal_;
  EditOutcome outcome_ = EditOutcome::kCancelled;
};

}  // namespace vorhost::gui

#endif
