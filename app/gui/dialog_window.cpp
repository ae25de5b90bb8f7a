#include "app/gui/dialog_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStringList>
#include <QTreeWidget>
#include <algorithm>
#include <sstream>

#include "emulator/core/encoding.h"

namespace vorhost::gui {

using dcl::TileKind;

QString FromBig5(const std::string& big5) { return QString::fromStdString(Big5ToUtf8(big5)); }

namespace {

// A label for a widget that reads "&" as the mark of a shortcut key: the
// dialog's "&" is a character.
QString Literal(const QString& label) {
  QString out = label;
  return out.replace(QLatin1Char('&'), QLatin1String("&&"));
}

// A list box with no height shows this many rows.
constexpr int kDefaultListRows = 8;

std::vector<int> TabStops(const dcl::Tile& def) {
  std::vector<int> stops;
  std::istringstream in(def.AttrString("tabs"));
  for (double stop; in >> stop;)
    if (stop > 0 && stop < 1000) stops.push_back(static_cast<int>(stop));
  std::sort(stops.begin(), stops.end());
  return stops;
}

std::vector<int> ChosenRows(const std::string& value) {
  std::vector<int> rows;
  std::istringstream in(value);
  for (int row; in >> row;) rows.push_back(row);
  return rows;
}

// The tile's size attribute (width, height, edit_width) in its units; 0 for none.
double Size(const dcl::Tile& def, const char* name) {
  const dcl::AttrValue* a = def.Attr(name);
  return a && a->is_number() && a->number() > 0 && a->number() < 1000 ? a->number() : 0;
}

QBoxLayout* NewLayout(bool horizontal) {
  auto* layout = new QBoxLayout(horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  layout->setSpacing(6);
  return layout;
}

bool Horizontal(TileKind kind) {
  return kind == TileKind::kRow || kind == TileKind::kBoxedRow || kind == TileKind::kRadioRow ||
         kind == TileKind::kBoxedRadioRow || kind == TileKind::kConcatenation;
}

bool Boxed(TileKind kind) {
  return kind == TileKind::kBoxedRow || kind == TileKind::kBoxedColumn || kind == TileKind::kBoxedRadioRow ||
         kind == TileKind::kBoxedRadioColumn;
}

}  // namespace

DialogWindow::DialogWindow(Dialog& dialog, QWidget* parent)
    : QDialog(parent), name_(dialog.name()), file_id_(dialog.file_id()) {
  setModal(true);
  setObjectName(QString::fromStdString(name_));
  setWindowTitle(FromBig5(dialog.root().def().AttrString("label")));
  QFontMetrics metrics(font());
  char_width_ = std::max(1, metrics.horizontalAdvance(QLatin1Char('0')));
  line_height_ = std::max(1, metrics.lineSpacing());
  QBoxLayout* top = NewLayout(false);
  top->setContentsMargins(10, 10, 10, 10);
  setLayout(top);
  for (const auto& child : dialog.root().children()) Build(*child, top);
  Sync(dialog);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  if (QWidget* first = WidgetFor(dialog.root().def().AttrString("initial_focus"))) first->setFocus();
}

void DialogWindow::Build(const LiveTile& tile, QBoxLayout* into) {
  TileKind kind = tile.kind();
  if (!dcl::IsCluster(kind)) {
    Leaf(tile, into);
    return;
  }
  QBoxLayout* layout = NewLayout(Horizontal(kind));
  if (kind == TileKind::kConcatenation) layout->setSpacing(0);
  if (Boxed(kind)) {
    auto* box = new QGroupBox(Literal(FromBig5(tile.def().AttrString("label"))), this);
    box->setLayout(layout);
    into->addWidget(box);
    if (!tile.key().empty()) Bind(tile, box, nullptr);
  } else {
    // A cluster centred or right-aligned in a column, such as the row of
    // OK and Cancel, sits between stretches.
    std::string alignment = tile.def().AttrString("alignment");
    bool in_column = tile.parent() && !Horizontal(tile.parent()->kind());
    if (in_column && (alignment == "centered" || alignment == "right")) {
      QBoxLayout* holder = NewLayout(true);
      holder->addStretch(1);
      holder->addLayout(layout);
      if (alignment == "centered") holder->addStretch(1);
      into->addLayout(holder);
    } else {
      into->addLayout(layout);
    }
  }
  for (const auto& child : tile.children()) Build(*child, layout);
  if (Horizontal(kind)) layout->addStretch(kind == TileKind::kConcatenation ? 1 : 0);
  // Columns side by side keep their tiles at the top: a column shorter
  // than its neighbours leaves room below, not around.
  else if (tile.parent() && Horizontal(tile.parent()->kind())) layout->addStretch(1);
}

QWidget* DialogWindow::Leaf(const LiveTile& tile, QBoxLayout* into) {
  const dcl::Tile& def = tile.def();
  const std::string& key = tile.key();
  QString label = Literal(FromBig5(def.AttrString("label")));
  double width = Size(def, "width"), height = Size(def, "height");
  QWidget* widget = nullptr;
  QLabel* own_label = nullptr;
  switch (tile.kind()) {
    case TileKind::kButton: {
      auto* button = new QPushButton(label, this);
      button->setAutoDefault(false);
      if (def.IsTrue("is_default")) {
        button->setDefault(true);
        default_key_ = key;
      }
      if (width > 0) button->setMinimumWidth(static_cast<int>(width * char_width_));
      connect(button, &QPushButton::clicked, this, [this, key] {
        if (key == "accept") Give(DialogEvent::Ok());
        else if (key == "cancel") Give(DialogEvent::Cancel());
        else if (!key.empty()) Give(DialogEvent::Of(DialogEvent::Action::kPress, key));
      });
      widget = button;
      break;
    }
    case TileKind::kToggle: {
      auto* box = new QCheckBox(label, this);
      connect(box, &QCheckBox::clicked, this, [this, key] {
        if (!syncing_) Give(DialogEvent::Of(DialogEvent::Action::kToggle, key));
      });
      widget = box;
      break;
    }
    case TileKind::kRadioButton: {
      auto* radio = new QRadioButton(label, this);
      radio->setAutoExclusive(false);  // the runtime keeps the cluster's one choice
      connect(radio, &QRadioButton::clicked, this, [this, key] {
        if (!syncing_) Give(DialogEvent::Of(DialogEvent::Action::kChoose, key));
      });
      widget = radio;
      break;
    }
    case TileKind::kEditBox: {
      auto* edit = new QLineEdit(this);
      double edit_width = Size(def, "edit_width");
      if (edit_width > 0) edit->setFixedWidth(static_cast<int>((edit_width + 1) * char_width_) + 8);
      connect(edit, &QLineEdit::returnPressed, this, [this, key] {
        enter_taken_ = true;
        EditFinished(key, true);
      });
      connect(edit, &QLineEdit::editingFinished, this, [this, key] { EditFinished(key, false); });
      auto* row = NewLayout(true);
      if (!label.isEmpty()) {
        own_label = new QLabel(label, this);
        own_label->setBuddy(edit);
        row->addWidget(own_label);
      }
      row->addWidget(edit, edit_width > 0 ? 0 : 1);
      into->addLayout(row);
      Bind(tile, edit, own_label);
      return edit;
    }
    case TileKind::kListBox: {
      auto* list = new QTreeWidget(this);
      std::vector<int> stops = TabStops(def);
      list->setColumnCount(static_cast<int>(stops.size()) + 1);
      list->setHeaderHidden(true);
      list->setRootIsDecorated(false);
      list->setIndentation(0);
      list->setUniformRowHeights(true);
      list->setAllColumnsShowFocus(true);
      list->header()->setStretchLastSection(true);
      list->header()->setMinimumSectionSize(1);
      for (size_t i = 0; i < stops.size(); i++)
        list->setColumnWidth(static_cast<int>(i), (stops[i] - (i ? stops[i - 1] : 0)) * char_width_);
      bool multiple = tile.MultipleSelect();
      list->setSelectionMode(multiple ? QAbstractItemView::MultiSelection : QAbstractItemView::SingleSelection);
      int rows = height > 0 ? static_cast<int>(height) : kDefaultListRows;
      list->setMinimumHeight(rows * (line_height_ + 2) + 4);
      int chars = static_cast<int>(std::max(width, stops.empty() ? 20.0 : stops.back() + 8.0));
      list->setMinimumWidth(chars * char_width_ + 24);
      connect(list, &QTreeWidget::itemClicked, this, [this, key, list](QTreeWidgetItem* item) {
        if (!syncing_) Give(DialogEvent::Of(DialogEvent::Action::kSelect, key, std::to_string(list->indexOfTopLevelItem(item))));
      });
      if (!multiple)
        connect(list, &QTreeWidget::itemDoubleClicked, this, [this, key, list](QTreeWidgetItem* item) {
          if (!syncing_)
            Give(DialogEvent::Of(DialogEvent::Action::kDoubleClick, key, std::to_string(list->indexOfTopLevelItem(item))));
        });
      auto* column = NewLayout(false);
      column->setSpacing(2);
      if (!label.isEmpty()) {
        own_label = new QLabel(label, this);
        own_label->setBuddy(list);
        column->addWidget(own_label);
      }
      column->addWidget(list, 1);
      into->addLayout(column, 1);
      Bind(tile, list, own_label);
      return list;
    }
    case TileKind::kPopupList: {
      auto* popup = new QComboBox(this);
      if (width > 0) popup->setMinimumWidth(static_cast<int>(width * char_width_));
      connect(popup, &QComboBox::activated, this, [this, key](int row) {
        if (!syncing_) Give(DialogEvent::Of(DialogEvent::Action::kSelect, key, std::to_string(row)));
      });
      auto* row = NewLayout(true);
      if (!label.isEmpty()) {
        own_label = new QLabel(FromBig5(def.AttrString("label")), this);
        row->addWidget(own_label);
      }
      row->addWidget(popup, 1);
      into->addLayout(row);
      Bind(tile, popup, own_label);
      return popup;
    }
    case TileKind::kText:
    case TileKind::kTextPart: {
      auto* text = new QLabel(FromBig5(def.AttrString("label")), this);
      // Parts of a concatenation keep their widths, so that a heading of
      // parts lines up with the tab stops of a list under it.
      bool fixed = tile.kind() == TileKind::kTextPart || def.IsTrue("fixed_width");
      if (width > 0 && fixed) text->setFixedWidth(static_cast<int>(width * char_width_));
      else if (width > 0) text->setMinimumWidth(static_cast<int>(width * char_width_));
      widget = text;
      break;
    }
    case TileKind::kImage:
    case TileKind::kImageButton: {
      QWidget* image = tile.kind() == TileKind::kImageButton ? static_cast<QWidget*>(new QPushButton(this)) : new QFrame(this);
      image->setFixedSize(static_cast<int>(std::max(width, 2.0) * char_width_),
                          static_cast<int>(std::max(height, 1.0) * line_height_));
      if (auto* button = qobject_cast<QPushButton*>(image)) {
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this,
                [this, key] { Give(DialogEvent::Of(DialogEvent::Action::kPress, key)); });
      } else {
        static_cast<QFrame*>(image)->setFrameShape(QFrame::Box);
      }
      widget = image;
      break;
    }
    case TileKind::kSlider: {
      auto* slider = new QSlider(Qt::Horizontal, this);
      slider->setEnabled(false);  // no event moves a slider
      widget = slider;
      break;
    }
    case TileKind::kSpacer:
    default: {
      into->addSpacing(static_cast<int>(std::max(width * char_width_, height * line_height_)));
      return nullptr;
    }
  }
  into->addWidget(widget);
  if (!key.empty()) Bind(tile, widget, own_label);
  return widget;
}

void DialogWindow::Bind(const LiveTile& tile, QWidget* widget, QLabel* label) {
  if (tile.key().empty()) return;
  widget->setObjectName(QString::fromStdString(tile.key()));
  bound_.emplace(tile.key(), Bound{nullptr, tile.kind(), widget, label, {}});
}

QWidget* DialogWindow::WidgetFor(const std::string& key) const {
  auto it = bound_.find(key);
  return it == bound_.end() ? nullptr : it->second.widget;
}

void DialogWindow::Sync(Dialog& dialog) {
  syncing_ = true;
  for (auto& [key, bound] : bound_)
    if (LiveTile* tile = dialog.Find(key)) SyncTile(bound, *tile);
  syncing_ = false;
}

void DialogWindow::SyncTile(Bound& bound, const LiveTile& tile) {
  bool usable = tile.Usable();
  bound.widget->setEnabled(usable);
  if (bound.label) bound.label->setEnabled(usable);
  bound.synced = tile.value;
  switch (tile.kind()) {
    case TileKind::kToggle:
    case TileKind::kRadioButton:
      static_cast<QAbstractButton*>(bound.widget)->setChecked(tile.value == "1");
      break;
    case TileKind::kEditBox: {
      auto* edit = static_cast<QLineEdit*>(bound.widget);
      QString text = FromBig5(tile.value);
      if (edit->text() != text) edit->setText(text);
      break;
    }
    case TileKind::kText:
    case TileKind::kTextPart: {
      auto* text = static_cast<QLabel*>(bound.widget);
      // A text's value is its label, as the module sets it; a text part
      // without one shows its label.
      bool own = tile.kind() == TileKind::kText || !tile.value.empty();
      text->setText(FromBig5(own ? tile.value : tile.def().AttrString("label")));
      break;
    }
    case TileKind::kListBox: {
      auto* list = static_cast<QTreeWidget*>(bound.widget);
      bool same = list->topLevelItemCount() == static_cast<int>(tile.rows.size());
      for (int i = 0; same && i < list->topLevelItemCount(); i++)
        same = list->topLevelItem(i)->data(0, Qt::UserRole).toByteArray().toStdString() == tile.rows[i];
      if (!same) {
        list->clear();
        for (const std::string& row : tile.rows) {
          QStringList cells = FromBig5(row).split(QLatin1Char('\t'));
          int columns = list->columnCount();
          if (cells.size() > columns) cells = cells.mid(0, columns - 1) << cells.mid(columns - 1).join(QLatin1Char(' '));
          auto* item = new QTreeWidgetItem(cells);
          item->setData(0, Qt::UserRole, QByteArray::fromStdString(row));
          list->addTopLevelItem(item);
        }
      }
      list->clearSelection();
      std::vector<int> chosen = ChosenRows(tile.value);
      for (int row : chosen)
        if (row >= 0 && row < list->topLevelItemCount()) list->topLevelItem(row)->setSelected(true);
      if (!chosen.empty() && chosen.front() >= 0 && chosen.front() < list->topLevelItemCount())
        list->scrollToItem(list->topLevelItem(chosen.front()));
      break;
    }
    case TileKind::kPopupList: {
      auto* popup = static_cast<QComboBox*>(bound.widget);
      popup->clear();
      for (const std::string& row : tile.rows) popup->addItem(FromBig5(row));
      std::vector<int> chosen = ChosenRows(tile.value);
      popup->setCurrentIndex(chosen.empty() ? -1 : chosen.front());
      break;
    }
    default:
      break;
  }
}

void DialogWindow::EditFinished(const std::string& key, bool enter) {
  if (syncing_) return;
  auto it = bound_.find(key);
  if (it == bound_.end()) return;
  std::string utf8 = static_cast<QLineEdit*>(it->second.widget)->text().toStdString(), big5;
  if (!Utf8ToBig5Text(utf8, &big5)) {
    Give(DialogInput::Mistake(utf8, "The text has a character Big5 cannot hold."));
    return;
  }
  // Leaving an edit box the user did not change is no event; Enter always is.
  if (!enter && big5 == it->second.synced) return;
  it->second.synced = big5;
  Give(DialogEvent::Of(enter ? DialogEvent::Action::kEnter : DialogEvent::Action::kType, key, big5));
}

void DialogWindow::Give(DialogInput input) {
  pending_.push_back(std::move(input));
  if (on_input) on_input();
}

void DialogWindow::reject() { Give(DialogInput::Escape()); }

void DialogWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void DialogWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    // In an edit box Enter is the box's own event; elsewhere it presses
    // the default button.
    bool taken = enter_taken_ || qobject_cast<QLineEdit*>(focusWidget());
    enter_taken_ = false;
    if (taken) return;
    if (auto* button = qobject_cast<QPushButton*>(WidgetFor(default_key_)); button && button->isEnabled())
      button->click();
    return;
  }
  QDialog::keyPressEvent(event);
}

}  // namespace vorhost::gui
