#include "app/gui/question_windows.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>

#include "emulator/core/numbers.h"
#include "emulator/io/aci.h"

namespace vorhost::gui {

namespace {

constexpr int kCell = 15;  // a swatch's side, in pixels
constexpr int kStep = kCell + 3;
constexpr int kGap = 10;  // between the three parts
constexpr int kHues = 24, kShades = 10;

QColor ColourOf(int index) {
  Rgb rgb = AciRgb(index);
  return QColor(rgb.r, rgb.g, rgb.b);
}

// Help topics are laid out in columns for a screen where a Big5
// character, of two bytes, takes two columns: each character beyond ASCII
// is given the spacing that makes it two of the font's columns wide,
// whatever the width of its glyph.
void KeepColumns(QPlainTextEdit* edit) {
  QFontMetricsF metrics(edit->font());
  qreal column = metrics.horizontalAdvance(QLatin1Char('0'));
  const QString text = edit->toPlainText();
  QTextCursor cursor(edit->document());
  for (qsizetype i = 0; i < text.size();) {
    if (text[i].unicode() < 0x80 || text[i].isSurrogate()) {
      i++;
      continue;
    }
    qreal width = metrics.horizontalAdvance(text[i]);
    qsizetype end = i + 1;
    while (end < text.size() && text[end].unicode() >= 0x80 && !text[end].isSurrogate() &&
           metrics.horizontalAdvance(text[end]) == width)
      end++;
    QTextCharFormat format;
    format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
    format.setFontLetterSpacing(2 * column - width);
    cursor.setPosition(static_cast<int>(i));
    cursor.setPosition(static_cast<int>(end), QTextCursor::KeepAnchor);
    cursor.mergeCharFormat(format);
    i = end;
  }
}

}  // namespace

ColourGrid::ColourGrid(QWidget* parent) : QWidget(parent) {
  setMouseTracking(false);
  setFixedSize(sizeHint());
}

QSize ColourGrid::sizeHint() const {
  return QSize(kHues * kStep, (kShades + 2) * kStep + 2 * kGap);
}

QRect ColourGrid::CellRect(int index) {
  if (index >= 1 && index <= 9) return QRect((index - 1) * kStep, 0, kCell, kCell);
  if (index >= 10 && index <= 249) {
    int hue = (index - 10) / kShades, shade = (index - 10) % kShades;
    return QRect(hue * kStep, kStep + kGap + shade * kStep, kCell, kCell);
  }
  if (index >= 250 && index <= 255)
    return QRect((index - 250) * kStep, (kShades + 1) * kStep + 2 * kGap, kCell, kCell);
  return QRect();
}

int ColourGrid::IndexAt(QPoint at) {
  for (int index = 1; index <= 255; index++)
    if (CellRect(index).adjusted(-1, -1, 1, 1).contains(at)) return index;
  return 0;
}

void ColourGrid::set_chosen(int index) {
  chosen_ = index;
  update();
}

void ColourGrid::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (int index = 1; index <= 255; index++) {
    QRect cell = CellRect(index);
    painter.fillRect(cell, ColourOf(index));
    painter.setPen(QColor(120, 120, 120));
    painter.drawRect(cell.adjusted(0, 0, -1, -1));
  }
  if (chosen_ >= 1 && chosen_ <= 255) {
    // A black frame round the swatch and a white one inside it, seen on
    // light and dark colours alike.
    QRect cell = CellRect(chosen_);
    painter.setPen(Qt::black);
    painter.drawRect(cell.adjusted(-2, -2, 1, 1));
    painter.drawRect(cell.adjusted(-1, -1, 0, 0));
    painter.setPen(Qt::white);
    painter.drawRect(cell.adjusted(0, 0, -1, -1));
  }
}

void ColourGrid::mousePressEvent(QMouseEvent* event) {
  int index = IndexAt(event->position().toPoint());
  if (index && on_choose) on_choose(index);
}

void ColourGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  int index = IndexAt(event->position().toPoint());
  if (index && on_accept) on_accept(index);
}

ColourWindow::ColourWindow(int current, bool logical, QWidget* parent) : QDialog(parent), logical_(logical) {
  setModal(true);
  setWindowTitle(tr("Select Color"));
  grid_ = new ColourGrid(this);
  grid_->on_choose = [this](int index) { Choose(index); };
  grid_->on_accept = [this](int index) {
    Choose(index);
    accept();
  };
  by_layer_ = new QPushButton("BYLAYER", this);
  by_block_ = new QPushButton("BYBLOCK", this);
  by_layer_->setAutoDefault(false);
  by_block_->setAutoDefault(false);
  by_layer_->setEnabled(logical);
  by_block_->setEnabled(logical);
  connect(by_layer_, &QPushButton::clicked, this, [this] { Choose(kColorByLayer); });
  connect(by_block_, &QPushButton::clicked, this, [this] { Choose(kColorByBlock); });
  shown_ = new QLabel(this);
  sample_ = new QLabel(this);
  sample_->setFixedSize(3 * kCell, 2 * kCell);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  ok_ = buttons->button(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* logical_row = new QHBoxLayout;
  logical_row->addWidget(by_layer_);
  logical_row->addWidget(by_block_);
  logical_row->addStretch(1);
  logical_row->addWidget(shown_);
  logical_row->addWidget(sample_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(grid_, 0, Qt::AlignHCenter);
  layout->addLayout(logical_row);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);

  bool usable = (current >= 1 && current <= 255) ||
                (logical && (current == kColorByLayer || current == kColorByBlock));
  Choose(usable ? current : -1);
}

void ColourWindow::Choose(int index) {
  chosen_ = index;
  grid_->set_chosen(index);
  ok_->setEnabled(index >= 0);
  QString name = index == kColorByLayer   ? "BYLAYER"
                 : index == kColorByBlock ? "BYBLOCK"
                 : index > 0              ? QString::number(index)
                                          : QString();
  shown_->setText(tr("Color: %1").arg(name));
  bool swatch = index >= 1 && index <= 255;
  sample_->setStyleSheet(swatch ? QString("background: %1; border: 1px solid #777").arg(ColourOf(index).name())
                                : QString());
}

std::string ColourWindow::Answer() const {
  if (chosen_ == kColorByLayer) return "BYLAYER";
  if (chosen_ == kColorByBlock) return "BYBLOCK";
  return std::to_string(chosen_);
}

TextWindow::TextWindow(const QString& label, const QString& current, QWidget* parent) : QDialog(parent) {
  setModal(true);
  setWindowTitle(label);
  line_ = new QLineEdit(current, this);
  line_->setMinimumWidth(line_->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 50);
  line_->selectAll();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(label, this));
  layout->addWidget(line_);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

HelpWindow::HelpWindow(QWidget* parent) : QDialog(parent) {
  setModal(false);
  text_ = new QPlainTextEdit(this);
  text_->setReadOnly(true);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setMinimumSize(text_->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 84,
                        text_->fontMetrics().lineSpacing() * 24);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_, 1);
  layout->addWidget(buttons);
}

void HelpWindow::Show(const QString& title, const QString& text) {
  setWindowTitle(title);
  text_->setPlainText(text);
  KeepColumns(text_);
  show();
  raise();
}

}  // namespace vorhost::gui
