#include "app/gui/editor_window.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "emulator/core/encoding.h"

namespace vorhost::gui {

namespace {

std::string Replace(std::string s, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = s.find(from, at)) != std::string::npos; at += to.size()) s.replace(at, from.size(), to);
  return s;
}

}  // namespace

EditorWindow::EditorWindow(const std::string& contents, const QString& title, QWidget* parent)
    : QDialog(parent), contents_(contents) {
  setModal(true);
  setWindowTitle(title);
  end_mark_ = !contents.empty() && contents.back() == '\x1A';
  std::string text = Replace(end_mark_ ? contents.substr(0, contents.size() - 1) : contents, "\r\n", "\n");
  std::string utf8 = Big5ToUtf8(text), back;
  readable_ = Utf8ToBig5(utf8, &back) && back == text;
  original_ = QString::fromStdString(utf8);
  editor_ = new QPlainTextEdit(this);
  editor_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  editor_->setLineWrapMode(QPlainTextEdit::NoWrap);
  editor_->setPlainText(original_);
  editor_->setMinimumSize(editor_->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 90,
                          editor_->fontMetrics().lineSpacing() * 24);
  refusal_ = new QLabel(this);
  refusal_->setStyleSheet("color: #b00000");
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &EditorWindow::Save);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(editor_, 1);
  layout->addWidget(refusal_);
  layout->addWidget(buttons);
}

QString EditorWindow::refusal() const { return refusal_->text(); }

void EditorWindow::Save() {
  QString text = editor_->toPlainText();
  if (text == original_) {
    outcome_ = EditOutcome::kUnchanged;
    accept();
    return;
  }
  std::string utf8 = text.toStdString(), big5;
  size_t consumed = 0;
  if (!Utf8ToBig5(utf8, &big5, &consumed)) {
    // The character that stopped it, shown and chosen for the user.
    QString before = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(std::min(consumed, utf8.size())));
    int at = static_cast<int>(before.size());
    int length = at < text.size() && text.at(at).isHighSurrogate() ? 2 : 1;
    refusal_->setText(tr("\"%1\" cannot be written in Big5; the file is not saved.").arg(text.mid(at, length)));
    QTextCursor cursor = editor_->textCursor();
    cursor.setPosition(at);
    cursor.setPosition(std::min(at + length, static_cast<int>(text.size())), QTextCursor::KeepAnchor);
    editor_->setTextCursor(cursor);
    return;
  }
  big5 = Replace(Replace(big5, "\r\n", "\n"), "\n", "\r\n");
  if (end_mark_) big5 += '\x1A';
  contents_ = std::move(big5);
  outcome_ = EditOutcome::kSaved;
  accept();
}

}  // namespace vorhost::gui
