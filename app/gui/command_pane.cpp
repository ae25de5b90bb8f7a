#include "app/gui/command_pane.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>

namespace vorhost::gui {

namespace {
constexpr int kTranscriptLines = 6;        // lines of transcript shown
constexpr int kTranscriptBlocks = 5000;    // lines of transcript kept
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

bool CommandPane::eventFilter(QObject* watched, QEvent* event) {
  if (watched == line_ && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    line_->clear();
    if (on_escape) on_escape();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace vorhost::gui
