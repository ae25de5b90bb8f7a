// dialog_window.h - a live dialog of the dialog runtime as a modal Qt
// window: widgets built from its tile tree, kept in step with the tiles'
// values, modes and rows, and the user's clicks and keys handed on as
// dialog events. The window never changes a tile itself: the runtime
// applies each event and the window is synced from the result.
#ifndef VORHOST_APP_GUI_DIALOG_WINDOW_H
#define VORHOST_APP_GUI_DIALOG_WINDOW_H

#include <QBoxLayout>
#include <QDialog>
#include <deque>
#include <functional>
#include <map>
#include <string>

#include "emulator/dialogs/dialog.h"
#include "emulator/dialogs/events.h"

class QLabel;

namespace vorhost::gui {

class DialogWindow : public QDialog {
  Q_OBJECT

 public:
  // The window of dialog; the dialog is read here and in Sync only.
  DialogWindow(Dialog& dialog, QWidget* parent);

  // Shows the tiles' values, modes and list rows as the runtime keeps them.
  void Sync(Dialog& dialog);

  const std::string& dialog_name() const { return name_; }
  int file_id() const { return file_id_; }
  // The widget of the tile with this key; null when there is none.
  QWidget* WidgetFor(const std::string& key) const;

  // What the user did since the runtime last asked, oldest first.
  std::deque<DialogInput>& pending() { return pending_; }
  // Called whenever something is added to pending().
  std::function<void()> on_input;

  // A character's width and a line's height in the dialog's font: the units
  // of the width, height, edit_width and tabs attributes.
  int char_width() const { return char_width_; }
  int line_height() const { return line_height_; }

 protected:
  void reject() override;  // Escape and the close button: the cancel button
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  struct Bound {
    const LiveTile* tile = nullptr;  // valid during the build only
    dcl::TileKind kind;
    QWidget* widget = nullptr;
    QLabel* label = nullptr;    // a list's or edit box's own label
    std::string synced;         // the value last shown
  };

  void Build(const LiveTile& tile, QBoxLayout* into);
  QWidget* Leaf(const LiveTile& tile, QBoxLayout* into);
  void Bind(const LiveTile& tile, QWidget* widget, QLabel* label);
  void Give(DialogInput input);
  void Give(DialogEvent event) { Give(DialogInput::Event(std::move(event))); }
  void SyncTile(Bound& bound, const LiveTile& tile);
  void EditFinished(const std::string& key, bool enter);

  std::string name_;
  int file_id_;
  int char_width_;
  int line_height_;
  bool syncing_ = false;
  bool enter_taken_ = false;  // an edit box has taken the Enter key being handled
  std::map<std::string, Bound> bound_;
  std::string default_key_;  // the is_default button's key
  std::deque<DialogInput> pending_;
};

// UTF-8 of a tile's Big5 text.
QString FromBig5(const std::string& big5);

}  // namespace vorhost::gui

#endif
