// window_user.h - the window as the host's user. The host runs on the
// window's thread: when it asks, the window shows what is asked (the
// prompt, the picking mode, the dialog on top synced from its live tiles)
// and runs a nested event loop until the user has answered with a line, a
// click, a window or a dialog event, which it hands over as a value. A
// script may play the user in the window instead (--play): its answers
// and events are taken, the window shows them.
#ifndef VORHOST_APP_GUI_WINDOW_USER_H
#define VORHOST_APP_GUI_WINDOW_USER_H

#include <QEventLoop>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/gui/dialog_window.h"
#include "app/gui/editor_window.h"
#include "app/gui/main_window.h"
#include "app/gui/question_windows.h"
#include "emulator/session/host.h"
#include "emulator/session/user.h"
#include "emulator/ui/completer.h"

namespace vorhost::gui {

class WindowUser : public User {
 public:
  WindowUser(Host& host, MainWindow& window);
  ~WindowUser() override;
  WindowUser(const WindowUser&) = delete;
  WindowUser& operator=(const WindowUser&) = delete;

  // A script that plays the user until its input ends (not owned); after
  // it, the person at the window does unless end_with_script.
  void set_script(User* script, bool end_with_script) {
    script_ = script;
    end_with_script_ = end_with_script;
  }
  // Writes a PNG of each dialog as it opens (over the main window) into
  // dir, and of the main window at Finish.
  void set_screenshots(std::string dir) { screenshots_ = std::move(dir); }

  // Whether closing the window, New and Open ask to save the changes made
  // since the drawing was last opened or saved from the File menu (a
  // person's session does; one ending with a script and a test's do not).
  void set_ask_to_save(bool ask) { ask_to_save_ = ask; }
  // The drawing as it is now counts as saved.
  void MarkSaved();
  // Whether the drawing has changed since MarkSaved or a save by the host
  // (SAVE, QSAVE, SAVEAS).
  bool Changed() const;

  Input Read(Asking asking, std::string_view prompt) override;
  DialogInput ReadEvent(Dialog& dialog, std::string_view prompt) override;
  EditOutcome EditText(std::string* text, std::string* why) override;
  void Acknowledge(std::string_view message) override;
  void Misstep(const std::string& why) override;
  void ShowHelp(std::string_view topic, std::string_view text) override;
  std::string HelpNotes() override;

  // The session has ended: the window shows the drawing as it is left and,
  // with screenshots, is written as main.png. False when a screenshot
  // could not be written (*err says why).
  bool Finish(std::string* err);

  // The objects highlighted in the view: those the host has chosen so far
  // while objects are being selected (Console::chosen), as it last asked.
  const std::vector<uint64_t>& chosen() const { return chosen_; }
  // The editor open for W2; null when none is.
  EditorWindow* editor() { return editor_; }
  // The windows of ACAD_COLORDLG and W1 while one is open, and the help
  // window while it is shown; null else.
  ColourWindow* colour_window() { return colour_window_; }
  TextWindow* text_window() { return text_window_; }
  HelpWindow* help_window() { return help_window_; }
  // The window of the dialog on top; null when none is shown.
  DialogWindow* top_window() { return windows_.empty() ? nullptr : windows_.back().window.get(); }
  // Called each time the window starts waiting for the user, after it has
  // shown what is asked (W2's editor included): a test's hook to act as the
  // user.
  std::function<void()> on_waiting;
  // Called with each window of a host function (W1, W2, ACAD_COLORDLG,
  // ADS_HELP) that a script has operated, before it closes: a test's hook.
  std::function<void(QDialog&)> on_played;
  // The screenshots written so far, in order.
  const std::vector<std::string>& shots() const { return shots_; }

 private:
  struct Shown {
    Dialog* dialog;  // compared, never dereferenced once the dialog may be gone
    std::unique_ptr<DialogWindow> window;
  };

  // Shows what the host printed since last time and the drawing as it is.
  void Refresh();
  // Closes the windows of dialogs that have ended, and those above keep.
  void CloseEnded(const Dialog* keep);
  DialogWindow& WindowOf(Dialog& dialog, bool* opened);
  // Runs the nested loop until done() holds or the window is closed.
  void Wait(const std::function<bool()>& done);
  void Answer(Input input);
  // Highlights the objects the host has chosen so far, none when it is not
  // selecting.
  void ShowChosen();
  bool Shoot(const std::string& name, QWidget* over, std::string* err);
  // Asks where to save the drawing (as DXF or SVG) and saves it; false when
  // the user gave no file or it could not be written (the user was told).
  bool SaveAs(bool svg);
  // Whether the drawing may be given up (closed, replaced): unchanged, or
  // the user saved it or chose to give up the changes.
  bool MayDiscard();

  // Asks a host function's question (Console::question) in its window:
  // what it gives as it would be typed, Cancel for Cancel.
  Input AskInWindow(const Question& question);
  // Shows a host function's question in its window with the script's
  // answer in, as a person would have given it.
  void PlayInWindow(const Question& question, const Input& in);
  // Shows a window a script operates, written as a screenshot named name,
  // and closes it, accepted or not.
  void ShowPlayed(QDialog& window, const std::string& name, bool accepted);
  // The title of W2's editor: the file the host has just said it edits.
  QString EditorTitle() const;
  // Runs a modal window, telling a test's hook it waits: whether accepted.
  bool RunModal(QDialog& window);
  // Shows text (UTF-8) in the help window, made again over whatever is on
  // top so that a modal dialog does not block it.
  void ShowHelpWindow(const QString& title, QString text);

  // Hands a dialog event typed on the command line, or Escape there, to
  // the dialog on top.
  void GiveEvent(DialogInput input);

  Host& host_;
  MainWindow& window_;
  Completer completer_;
  User* script_ = nullptr;
  bool end_with_script_ = false;
  std::string screenshots_;
  std::vector<std::string> shots_;
  std::vector<Shown> windows_;
  size_t transcript_shown_ = 0;
  std::string picture_;  // the drawing's picture last shown
  Asking asking_ = Asking::kCommand;
  std::optional<Input> answer_;
  QEventLoop* loop_ = nullptr;
  bool closing_ = false;
  EditorWindow* editor_ = nullptr;
  ColourWindow* colour_window_ = nullptr;
  TextWindow* text_window_ = nullptr;
  QPointer<HelpWindow> help_window_;
  bool ask_to_save_ = false;
  std::vector<uint64_t> chosen_;
};

}  // namespace vorhost::gui

#endif
