#include "app/gui/command_pane.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace vorhost::gui {

namespace {
constexpr int kTranscriptLines = 6;        // lines of transcript shown
constexpr int kTranscriptBlocks = 5000;    // lines of transcript kept
constexpr size_t kCandidatesWidth = 78;    // characters a list of Tab's candidates is kept within
}  // namespace

CommandPane::CommandPane(QWidget* parent) : QWidget(parent) {
  QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  transcript_ = new QPlainTextEdit(this);
  transcript_->setReadOnly(true);
  transcript_->setFont(mono);
  transcript_->setMaximumBlockCount(kTranscriptBlocks);
  transcript_->setFocusPolicy(Qt::NoFocus);
  transcript_->setMinimumHeight(QFontMetrics(mono).lineSpacing() * kTranscriptLines + 8);
  prompt_ = new QLabel(this);
  prompt_->setFont(mono);
  line_ = new QLineEdit(this);
  line_->setFont(mono);
  line_->installEventFilter(this);
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(prompt_);
  row->addWidget(line_, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(4, 2, 4, 4);
  column->setSpacing(2);
  column->addWidget(transcript_, 1);
  column->addLayout(row);
  connect(line_, &QLineEdit::returnPressed, this, [this] {
    QString text = line_->text();
    line_->clear();
    recalled_ = -1;
    if (history_) history_->Add(text.toStdString());
    if (on_line) on_line(text);
  });
}

void CommandPane::Append(const QString& text) {
  if (text.isEmpty()) return;
  transcript_->moveCursor(QTextCursor::End);
  transcript_->insertPlainText(text);
  transcript_->verticalScrollBar()->setValue(transcript_->verticalScrollBar()->maximum());
}

void CommandPane::SetPrompt(const QString& prompt) { prompt_->setText(prompt); }

void CommandPane::Recall(int step) {
  if (!history_ || history_->lines().empty()) return;
  const std::vector<std::string>& lines = history_->lines();
  long newest = static_cast<long>(lines.size());
  long at = recalled_ < 0 ? newest : std::min(recalled_, newest);
  if (recalled_ < 0) under_way_ = line_->text();
  at = std::clamp(at + step, 0L, newest);
  recalled_ = at == newest ? -1 : at;
  line_->setText(at == newest ? under_way_ : QString::fromStdString(lines[static_cast<size_t>(at)]));
}

void CommandPane::CompleteWord() {
  if (!complete) return;
  QString text = line_->text();
  std::string line = text.toStdString();
  size_t cursor = static_cast<size_t>(text.left(line_->cursorPosition()).toUtf8().size());
  Completion c = complete(line, cursor);
  if (c.candidates.empty() || c.start > cursor) return;
  std::string word = line.substr(c.start, cursor - c.start), insert;
  if (c.Replacement(word, &insert)) {
    QString before = QString::fromStdString(line.substr(0, c.start) + insert);
    line_->setText(before + QString::fromStdString(line.substr(cursor)));
    line_->setCursorPosition(static_cast<int>(before.size()));
    return;
  }
  // The candidates under the prompt and what was typed, which the
  // transcript shows again after them.
  QString shown = transcript_->toPlainText();
  QString open_line = shown.mid(shown.lastIndexOf('\n') + 1);
  Append((open_line.isEmpty() ? "" : "\n") + QString::fromStdString(c.Columns(kCandidatesWidth)) + open_line);
}

bool CommandPane::eventFilter(QObject* watched, QEvent* event) {
  if (watched != line_ || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape:
      line_->clear();
      recalled_ = -1;
      if (on_escape) on_escape();
      return true;
    case Qt::Key_Up: Recall(-1); return true;
    case Qt::Key_Down: Recall(+1); return true;
    case Qt::Key_Tab: CompleteWord(); return true;
    default: return QWidget::eventFilter(watched, event);
  }
}

}  // namespace vorhost::gui
