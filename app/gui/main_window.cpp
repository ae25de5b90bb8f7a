#include "app/gui/main_window.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

#include "emulator/core/answer.h"

namespace vorhost::gui {

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
  setWindowTitle("vorhost");
  view_ = new DrawingView(this);
  setCentralWidget(view_);
  pane_ = new CommandPane(this);
  auto* dock = new QDockWidget(tr("Command line"), this);
  dock->setObjectName("command_line");
  dock->setWidget(pane_);
  dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  addDockWidget(Qt::BottomDockWidgetArea, dock);
  resizeDocks({dock}, {pane_->minimumSizeHint().height()}, Qt::Vertical);
  coordinates_ = new QLabel(this);
  coordinates_->setMinimumWidth(220);
  statusBar()->addPermanentWidget(coordinates_);
  view_->on_cursor = [this](const Point3& p) {
    coordinates_->setText(QString::fromStdString(FormatNumber(p[0]) + ", " + FormatNumber(p[1])));
  };
  BuildMenus();
  pane_->line()->setFocus();
}

void MainWindow::BuildMenus() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  QToolBar* tools = addToolBar(tr("Tools"));
  tools->setObjectName("tools");
  auto file_item = [this, file](const QString& text, FileAction action, QKeySequence keys) {
    QAction* a = file->addAction(text, this, [this, action] {
      if (on_file) on_file(action);
    });
    a->setShortcut(keys);
    return a;
  };
  tools->addAction(file_item(tr("&New"), FileAction::kNew, QKeySequence::New));
  tools->addAction(file_item(tr("&Open DXF..."), FileAction::kOpen, QKeySequence::Open));
  // Save is the host's QSAVE: the drawing under its name, as at the terminal.
  QAction* save = file->addAction(tr("&Save"), this, [this] { Command("QSAVE"); });
  save->setShortcut(QKeySequence::Save);
  tools->addAction(save);
  tools->addAction(file_item(tr("Save &As..."), FileAction::kSaveAs, QKeySequence::SaveAs));
  file_item(tr("&Export SVG..."), FileAction::kExportSvg, QKeySequence());
  file->addSeparator();
  file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);

  QMenu* view = menuBar()->addMenu(tr("&View"));
  QAction* extents = view->addAction(tr("Zoom &Extents"), view_, &DrawingView::ZoomExtents);
  tools->addSeparator();
  tools->addAction(extents);

  // The module's functions, as typed at the command prompt.
  struct Item {
    const char* text;
    const char* line;
  };
  const Item module_items[] = {
      {"&Electrical runs...", "(VOR_ELINE)"},
      {"&Signal runs...", "(VOR_SLINE)"},
      {"&Piping runs...", "(VOR_PLINE)"},
      {"Load &linetypes", "(VOR_LT_LO)"},
      {"Panels from &schedules...", "(VOR_ACF)"},
  };
  QMenu* module = menuBar()->addMenu(tr("&Vormis"));
  module->setObjectName("vormis");
  tools->addSeparator();
  for (const Item& item : module_items) {
    QString line = item.line;
    QAction* a = module->addAction(tr(item.text), this, [this, line] { Command(line); });
    a->setObjectName(line.mid(1, line.size() - 2));
    tools->addAction(a);
  }

  QMenu* draw = menuBar()->addMenu(tr("&Draw"));
  for (const char* command : {"LINE", "PLINE", "CIRCLE", "ARC", "TEXT"}) {
    QString line = command;
    draw->addAction(line, this, [this, line] { Command(line); });
  }

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  QAction* keys = help->addAction(tr("&Commands and keys"), this, [this] {
    if (on_help) on_help();
  });
  keys->setObjectName("help");
  keys->setShortcut(QKeySequence::HelpContents);
  help->addAction(tr("&About vorhost"), this, [this] {
    QMessageBox::about(this, tr("About vorhost"),
                       tr("vorhost: the emulated CAD host with the drafting module loaded.\n"
                          "Middle button pans, the wheel zooms about the cursor."));
  });
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (may_close && !may_close()) {
    event->ignore();
    return;
  }
  if (on_close) on_close();
  event->accept();
}

}  // namespace vorhost::gui
