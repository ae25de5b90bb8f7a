#include "app/gui/window_user.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPainter>
#include <QStatusBar>
#include <algorithm>
#include <cstdio>

#include "app/gui/editor_window.h"
#include "app/gui/pick.h"
#include "app/gui/snap.h"
#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/drawing/geometry.h"
#include "emulator/io/dxf.h"
#include "emulator/io/svg.h"

namespace vorhost::gui {

WindowUser::WindowUser(Host& host, MainWindow& window) : host_(host), window_(window), completer_(host) {
  window_.pane().on_line = [this](const QString& line) {
    std::string big5;
    if (!Utf8ToBig5Text(line.toStdString(), &big5)) {
      window_.statusBar()->showMessage(QObject::tr("The line has a character Big5 cannot hold."), 5000);
      return;
    }
    // At a dialog's prompt the line is an event, as at the terminal.
    if (asking_ == Asking::kDialog) {
      if (Trim(big5, kBlanks).empty()) return;
      DialogEvent event;
      std::string why;
      return GiveEvent(ParseDialogEvent(big5, &event, &why) ? DialogInput::Event(std::move(event), big5)
                                                            : DialogInput::Mistake(big5, why));
    }
    Answer(Input::Line(big5));
  };
  window_.pane().on_escape = [this] {
    if (asking_ == Asking::kDialog) return GiveEvent(DialogInput::Escape());
    Answer(Input::Cancel());
  };
  window_.pane().complete = [this](std::string_view line, size_t cursor) {
    return loop_ ? completer_.Complete(line, cursor, asking_) : Completion{};
  };
  // Where the host asks for a point or objects, a click is handed over as
  // a point; at a command's prompt, which may want a point or a text, it
  // is typed as its coordinates, as a user could have typed them.
  // At "Select objects:" a click picks the object nearest it within the
  // pick box on the screen; with none there the point goes to the host,
  // which finds nothing.
  window_.view().on_point = [this](const Point3& p) {
    if (asking_ == Asking::kPrompt) return Answer(Input::Line(FormatNumber(p[0]) + "," + FormatNumber(p[1])));
    if (asking_ == Asking::kSelection) {
      double reach = DrawingView::kPickBox / window_.view().scale();
      if (uint64_t id = NearestObject(host_.document().drawing(), p, reach))
        return Answer(Input::Of(vorhost::Answer::OfEntities(vorhost::Answer::Kind::kName, {id})));
    }
    Answer(Input::Of(vorhost::Answer::OfPoint(p)));
  };
  window_.view().on_window = [this](const Point3& from, const Point3& to, bool crossing) {
    Answer(Input::Of(vorhost::Answer::OfWindow(from, to, crossing)));
  };
  window_.on_command = [this](const QString& line) {
    if (asking_ != Asking::kCommand || loop_ == nullptr) {
      window_.statusBar()->showMessage(QObject::tr("Finish or cancel what is asked first."), 5000);
      return;
    }
    std::string big5;
    Utf8ToBig5Text(line.toStdString(), &big5);
    Answer(Input::Line(big5));
  };
  window_.on_file = [this](MainWindow::FileAction action) {
    if (asking_ != Asking::kCommand || loop_ == nullptr) {
      window_.statusBar()->showMessage(QObject::tr("Finish or cancel what is asked first."), 5000);
      return;
    }
    std::string err;
    bool ok = true;
    switch (action) {
      case MainWindow::FileAction::kNew:
        if (!MayDiscard()) break;
        host_.NewDrawing();
        MarkSaved();
        window_.view().ZoomExtents();
        break;
      case MainWindow::FileAction::kOpen: {
        QString path = QFileDialog::getOpenFileName(&window_, QObject::tr("Open a drawing"), QString(),
                                                    QObject::tr("Drawings (*.dxf *.DXF)"));
        if (path.isEmpty() || !MayDiscard()) break;
        ok = host_.OpenDrawing(path.toStdString(), &err);
        if (ok) MarkSaved();
        window_.view().ZoomExtents();
        break;
      }
      case MainWindow::FileAction::kSaveAs:
      case MainWindow::FileAction::kExportSvg:
        SaveAs(action == MainWindow::FileAction::kExportSvg);
        break;
    }
    if (!ok) QMessageBox::warning(&window_, "vorhost", QString::fromStdString(err));
    Refresh();
  };
  window_.on_help = [this] { ShowHelpWindow(QObject::tr("vorhost help"), FromBig5(host_.HelpText())); };
  window_.may_close = [this] { return closing_ || MayDiscard(); };
  window_.on_close = [this] {
    closing_ = true;
    if (loop_) loop_->quit();
  };
}

WindowUser::~WindowUser() {
  window_.pane().on_line = nullptr;
  window_.pane().on_escape = nullptr;
  window_.pane().complete = nullptr;
  window_.view().on_point = nullptr;
  window_.view().on_window = nullptr;
  window_.on_command = nullptr;
  window_.on_file = nullptr;
  window_.on_close = nullptr;
  window_.on_help = nullptr;
  window_.may_close = nullptr;
}

void WindowUser::MarkSaved() { host_.MarkDrawingSaved(); }

bool WindowUser::Changed() const { return host_.DrawingModified(); }

bool WindowUser::SaveAs(bool svg) {
  QString path = QFileDialog::getSaveFileName(&window_, svg ? QObject::tr("Export SVG") : QObject::tr("Save As"),
                                              QString(), svg ? "SVG (*.svg)" : QObject::tr("Drawings (*.dxf)"));
  if (path.isEmpty()) return false;
  const Document& doc = host_.document();
  std::string err;
  bool ok = svg ? SaveSvg(doc.drawing(), doc.sysvars(), path.toStdString(), &err)
                : SaveDxf(doc.drawing(), doc.sysvars(), path.toStdString(), &err);
  if (!ok) QMessageBox::warning(&window_, "vorhost", QString::fromStdString(err));
  else if (!svg) MarkSaved();
  return ok;
}

bool WindowUser::MayDiscard() {
  if (!ask_to_save_ || !Changed()) return true;
  QMessageBox question(QMessageBox::Question, "vorhost", QObject::tr("Save the changes to the drawing?"),
                       QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &window_);
  question.setDefaultButton(QMessageBox::Save);
  switch (question.exec()) {
    case QMessageBox::Save: return SaveAs(false);
    case QMessageBox::Discard: return true;
    default: return false;
  }
}

void WindowUser::Refresh() {
  const std::string& text = host_.transcript().text();
  if (transcript_shown_ > text.size()) transcript_shown_ = 0;  // cleared
  window_.pane().Append(QString::fromStdString(text.substr(transcript_shown_)));
  transcript_shown_ = text.size();
  std::string svg = DrawingSvg(host_.document().drawing(), host_.document().sysvars());
  if (svg != picture_) {
    picture_ = svg;
    window_.view().SetPicture(svg);
    window_.view().SetSnaps(SnapPoints(host_.document().drawing()));
  }
}

void WindowUser::Answer(Input input) {
  if (!loop_ || (!AsksForAnswer(asking_) && asking_ != Asking::kCommand)) return;
  // A point or a window answers only where the host asks for one.
  if (input.answer.kind == vorhost::Answer::Kind::kPoint && asking_ != Asking::kPoint &&
      asking_ != Asking::kSelection)
    return;
  if ((input.answer.kind == vorhost::Answer::Kind::kWindow || input.answer.kind == vorhost::Answer::Kind::kName) &&
      asking_ != Asking::kSelection)
    return;
  answer_ = std::move(input);
  loop_->quit();
}

void WindowUser::GiveEvent(DialogInput input) {
  if (!loop_ || asking_ != Asking::kDialog || !top_window()) return;
  top_window()->pending().push_back(std::move(input));
  loop_->quit();
}

void WindowUser::ShowChosen() {
  const std::vector<uint64_t>& chosen = host_.console().chosen();
  if (chosen == chosen_) return;
  chosen_ = chosen;
  const Drawing& drawing = host_.document().drawing();
  std::vector<Chain> outlines;
  for (uint64_t id : chosen_)
    for (Chain& chain : EntityOutline(drawing, id)) outlines.push_back(std::move(chain));
  window_.view().SetHighlight(std::move(outlines));
}

void WindowUser::Wait(const std::function<bool()>& done) {
  while (!done() && !closing_) {
    QEventLoop loop;
    QEventLoop* outer = loop_;
    loop_ = &loop;
    if (on_waiting) QMetaObject::invokeMethod(&loop, on_waiting, Qt::QueuedConnection);
    loop.exec();
    loop_ = outer;
  }
}

Input WindowUser::Read(Asking asking, std::string_view prompt) {
  CloseEnded(nullptr);
  // A prompt asked from a dialog's action (a label typed on the command
  // line, objects picked): the dialogs step aside until the next event.
  // A host function's question has a window of its own, over them.
  const Question& question = host_.console().question();
  bool own_window = asking == Asking::kPrompt && question.kind != Question::Kind::kNone;
  if (!own_window)
    for (Shown& shown : windows_) shown.window->hide();
  Refresh();
  // The objects chosen stay marked while the host selects, a window's
  // corners included, and go when it asks anything else.
  ShowChosen();
  asking_ = asking;
  window_.pane().SetPrompt(FromBig5(std::string(prompt)));
  window_.view().set_pick(asking == Asking::kPoint || asking == Asking::kPrompt ? DrawingView::Pick::kPoint
                          : asking == Asking::kSelection ? DrawingView::Pick::kObjects
                                                         : DrawingView::Pick::kNone);
  window_.view().SetBase(asking == Asking::kPoint || asking == Asking::kPrompt ? host_.console().base_point()
                                                                               : std::nullopt);
  if (script_) {
    QApplication::processEvents();
    Input in = script_->Read(asking, prompt);
    if (own_window && in.kind != Input::Kind::kEnd && !closing_) PlayInWindow(question, in);
    if (in.kind != Input::Kind::kEnd || asking != Asking::kCommand || end_with_script_) return in;
    script_ = nullptr;  // the person at the window goes on
    Refresh();
  }
  if (own_window && !closing_) return AskInWindow(question);
  answer_.reset();
  Wait([this] { return answer_.has_value(); });
  window_.view().set_pick(DrawingView::Pick::kNone);
  window_.view().SetBase(std::nullopt);
  if (!answer_) return Input::End();  // the window was closed
  Input in = std::move(*answer_);
  answer_.reset();
  return in;
}

Input WindowUser::AskInWindow(const Question& question) {
  QWidget* parent = top_window() ? static_cast<QWidget*>(top_window()) : &window_;
  if (question.kind == Question::Kind::kColour) {
    ColourWindow window(question.colour, question.logical, parent);
    colour_window_ = &window;
    bool ok = RunModal(window);
    colour_window_ = nullptr;
    if (closing_) return Input::End();
    return ok ? Input::Line(window.Answer()) : Input::Cancel();
  }
  TextWindow window(FromBig5(question.label), FromBig5(question.current), parent);
  text_window_ = &window;
  Input in = Input::Cancel();
  while (RunModal(window)) {
    std::string big5;
    if (Utf8ToBig5Text(window.line()->text().toStdString(), &big5)) {
      in = Input::Line(big5);
      break;
    }
    QMessageBox::warning(&window, "vorhost", QObject::tr("The text has a character Big5 cannot hold."));
  }
  text_window_ = nullptr;
  return closing_ ? Input::End() : in;
}

void WindowUser::PlayInWindow(const Question& question, const Input& in) {
  QWidget* parent = top_window() ? static_cast<QWidget*>(top_window()) : &window_;
  bool typed = in.IsAnswer() && in.answer.kind == vorhost::Answer::Kind::kText && !in.answer.IsEnter();
  if (question.kind == Question::Kind::kColour) {
    ColourWindow window(question.colour, question.logical, parent);
    if (in.IsAnswer() && !in.answer.IsEnter()) {
      std::optional<short> colour = ColorAnswer(in.answer, question.logical);
      window.Choose(colour ? *colour : -1);  // one the host refuses chooses none
    }
    colour_window_ = &window;
    ShowPlayed(window, "ACAD_COLORDLG", in.IsAnswer());
    colour_window_ = nullptr;
    return;
  }
  TextWindow window(FromBig5(question.label), FromBig5(question.current), parent);
  if (typed) window.line()->setText(FromBig5(in.answer.text));
  text_window_ = &window;
  ShowPlayed(window, "W1", in.IsAnswer());
  text_window_ = nullptr;
}

void WindowUser::ShowPlayed(QDialog& window, const std::string& name, bool accepted) {
  window.show();
  window.raise();
  window.activateWindow();
  QApplication::processEvents();
  std::string err;
  if (!screenshots_.empty() && !Shoot(name, &window, &err))
    window_.statusBar()->showMessage(QString::fromStdString(err), 5000);
  if (on_played) on_played(window);
  if (accepted) window.accept();
  else window.reject();
}

bool WindowUser::RunModal(QDialog& window) {
  Refresh();
  if (on_waiting) QMetaObject::invokeMethod(&window, on_waiting, Qt::QueuedConnection);
  return window.exec() == QDialog::Accepted;
}

void WindowUser::ShowHelp(std::string_view topic, std::string_view text) {
  if (script_) script_->ShowHelp(topic, text);
  ShowHelpWindow(QObject::tr("Help: %1").arg(FromBig5(std::string(topic))), FromBig5(std::string(text)));
  if (!script_ || closing_) return;
  // Left open, as for a person; a script's demo writes it as it opens.
  QApplication::processEvents();
  std::string err;
  if (!screenshots_.empty() && !Shoot("ADS_HELP", help_window_, &err))
    window_.statusBar()->showMessage(QString::fromStdString(err), 5000);
  if (on_played) on_played(*help_window_);
}

void WindowUser::ShowHelpWindow(const QString& title, QString text) {
  if (help_window_) help_window_->close();
  help_window_ = new HelpWindow(top_window() ? static_cast<QWidget*>(top_window()) : &window_);
  help_window_->setAttribute(Qt::WA_DeleteOnClose);
  help_window_->Show(title, text.remove(QLatin1Char('\r')));
}

std::string WindowUser::HelpNotes() {
  return "Keys: Up and Down recall lines typed before, Tab completes a name, Escape cancels,\n"
         "F1 shows this help.\n"
         "In the drawing: a click gives a point or picks an object; a window dragged left\n"
         "to right takes the objects inside it, right to left those it crosses; Enter ends\n"
         "a selection. The middle button pans, the wheel zooms about the cursor.\n"
         "At a dialog's prompt its events may be typed, as in a script (select KEY N,\n"
         "type KEY TEXT, press KEY, ok, cancel).\n";
}

void WindowUser::CloseEnded(const Dialog* keep) {
  // A window stays while its dialog exists and is not above keep; a
  // dialog's address may be taken again by a new one, so its name must
  // match too.
  auto ended = [this](const Shown& s) {
    Dialog* d = host_.dialogs().Find(s.dialog);
    return d == nullptr || !d->started || d->done || d->name() != s.window->dialog_name();
  };
  size_t keep_up_to = windows_.size();
  if (keep) {
    auto it = std::find_if(windows_.begin(), windows_.end(), [keep](const Shown& s) { return s.dialog == keep; });
    if (it != windows_.end()) keep_up_to = static_cast<size_t>(it - windows_.begin()) + 1;
  }
  for (size_t i = 0; i < windows_.size(); i++)
    if (i >= keep_up_to || ended(windows_[i])) {
      while (windows_.size() > i) windows_.pop_back();
      break;
    }
}

DialogWindow& WindowUser::WindowOf(Dialog& dialog, bool* opened) {
  *opened = false;
  if (!windows_.empty() && windows_.back().dialog == &dialog) return *windows_.back().window;
  QWidget* parent = windows_.empty() ? static_cast<QWidget*>(&window_) : windows_.back().window.get();
  auto window = std::make_unique<DialogWindow>(dialog, parent);
  window->on_input = [this] {
    if (loop_) loop_->quit();
  };
  windows_.push_back({&dialog, std::move(window)});
  *opened = true;
  return *windows_.back().window;
}

DialogInput WindowUser::ReadEvent(Dialog& dialog, std::string_view prompt) {
  CloseEnded(&dialog);
  bool opened = false;
  DialogWindow& window = WindowOf(dialog, &opened);
  window.Sync(dialog);
  Refresh();
  asking_ = Asking::kDialog;
  ShowChosen();
  window_.pane().SetPrompt(FromBig5(std::string(prompt)));
  window_.view().set_pick(DrawingView::Pick::kNone);
  for (Shown& shown : windows_)
    if (!shown.window->isVisible()) shown.window->show();
  if (opened) {
    window.raise();
    window.activateWindow();
    QApplication::processEvents();
    std::string err;
    if (!screenshots_.empty() && !Shoot(dialog.name(), &window, &err))
      window_.statusBar()->showMessage(QString::fromStdString(err), 5000);
  }
  if (script_) {
    QApplication::processEvents();
    return script_->ReadEvent(dialog, prompt);
  }
  Wait([&window] { return !window.pending().empty(); });
  if (window.pending().empty()) return DialogInput::End();
  DialogInput in = std::move(window.pending().front());
  window.pending().pop_front();
  return in;
}

QString WindowUser::EditorTitle() const {
  // The host has just printed "Editing NAME".
  const std::string& printed = host_.transcript().text();
  size_t line = printed.rfind("Editing ");
  return line == std::string::npos ? QObject::tr("Edit") : QString::fromStdString(printed.substr(line)).trimmed();
}

EditOutcome WindowUser::EditText(std::string* text, std::string* why) {
  Refresh();
  QWidget* parent = top_window() ? static_cast<QWidget*>(top_window()) : &window_;
  if (script_) {
    // The editor shows the file as the script leaves it.
    EditOutcome outcome = script_->EditText(text, why);
    EditorWindow editor(*text, EditorTitle(), parent);
    if (editor.readable() && !closing_) {
      editor_ = &editor;
      ShowPlayed(editor, "W2", outcome == EditOutcome::kSaved);
      editor_ = nullptr;
    }
    return outcome;
  }
  EditorWindow editor(*text, EditorTitle(), parent);
  if (!editor.readable()) {
    *why = "The file holds bytes that are not Big5 text; it is unchanged.";
    return EditOutcome::kCancelled;
  }
  if (on_waiting) QMetaObject::invokeMethod(&editor, on_waiting, Qt::QueuedConnection);
  editor_ = &editor;
  editor.exec();
  editor_ = nullptr;
  if (editor.outcome() == EditOutcome::kSaved) *text = editor.contents();
  return editor.outcome();
}

void WindowUser::Acknowledge(std::string_view message) {
  if (script_) return script_->Acknowledge(message);
  Refresh();
  QMessageBox::information(top_window() ? static_cast<QWidget*>(top_window()) : &window_, "vorhost",
                           FromBig5(std::string(message)));
}

void WindowUser::Misstep(const std::string& why) {
  if (script_) return script_->Misstep(why);
  window_.statusBar()->showMessage(FromBig5(why), 8000);
}

bool WindowUser::Shoot(const std::string& name, QWidget* over, std::string* err) {
  // With a dialog over it, the drawing is fitted into the part of the view
  // left of the dialog, which stands at the right; the dialogs it is over
  // stand behind it, each a step up and to the right of the one above it.
  constexpr int kMargin = 16, kStep = 28;
  std::vector<QWidget*> stack;
  if (over) {
    for (Shown& shown : windows_)
      if (shown.window.get() != over && shown.window->isVisible()) stack.push_back(shown.window.get());
    stack.push_back(over);
  }
  int widest = 0;
  for (size_t k = 0; k < stack.size(); k++) widest = std::max(widest, stack[k]->width() + static_cast<int>(k) * kStep);
  DrawingView& view = window_.view();
  if (over && view.fitting()) {
    int left = view.width() - widest - 2 * kMargin;
    if (left > view.width() / 4) view.ZoomExtentsInto(QRectF(kMargin, kMargin, left, view.height() - 2 * kMargin));
  }
  QPixmap picture = window_.grab();
  if (over && view.fitting()) view.ZoomExtents();
  QPainter painter(&picture);
  QPoint view_at = view.mapTo(&window_, QPoint(0, 0));
  for (size_t k = 0; k < stack.size(); k++) {
    // Each window with a title bar of its own: a window grabbed has no
    // frame.
    QWidget* window = stack[k];
    QPixmap grabbed = window->grab();
    int bar = window->fontMetrics().height() + 10;
    int offset = static_cast<int>(k) * kStep;
    QRect frame(std::max(0, view_at.x() + view.width() - grabbed.width() - kMargin - offset),
                view_at.y() + kMargin + offset, grabbed.width(), grabbed.height() + bar);
    painter.fillRect(frame.translated(5, 5), QColor(0, 0, 0, 50));  // its shadow
    painter.fillRect(QRect(frame.topLeft(), QSize(frame.width(), bar)),
                     window == over ? QColor(52, 101, 164) : QColor(120, 135, 155));
    painter.setPen(Qt::white);
    painter.drawText(QRect(frame.topLeft() + QPoint(8, 0), QSize(frame.width() - 16, bar)),
                     Qt::AlignVCenter | Qt::AlignLeft, window->windowTitle());
    painter.drawPixmap(frame.topLeft() + QPoint(0, bar), grabbed);
    painter.setPen(QColor(60, 60, 60));
    painter.drawRect(frame.adjusted(0, 0, -1, -1));
  }
  painter.end();
  char number[8];
  std::snprintf(number, sizeof number, "%02zu", shots_.size() + 1);
  std::string path = screenshots_ + "/" + (over ? std::string(number) + "-" + name : name) + ".png";
  QDir().mkpath(QString::fromStdString(screenshots_));
  if (!picture.save(QString::fromStdString(path), "PNG")) {
    *err = "Cannot write " + path + ".";
    return false;
  }
  shots_.push_back(path);
  return true;
}

bool WindowUser::Finish(std::string* err) {
  CloseEnded(nullptr);
  windows_.clear();
  Refresh();
  window_.pane().SetPrompt("");
  QApplication::processEvents();
  return screenshots_.empty() || Shoot("main", nullptr, err);
}

}  // namespace vorhost::gui
