// window_tests.cpp - vorhost's window on Qt's offscreen platform, driven by
// clicks and keys: the drawing view's navigation, dialogs built from their
// tiles and the events they hand over, and whole sessions whose drawings
// must equal those of the same sessions played by a script.
#include <stdlib.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTreeWidget>
#include <QWheelEvent>
#include <QtTest>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <sstream>

#include "app/gui/dialog_window.h"
#include "app/gui/editor_window.h"
#include "app/gui/main_window.h"
#include "app/gui/question_windows.h"
#include "app/gui/snap.h"
#include "app/gui/window_user.h"
#include "emulator/core/answer.h"
#include "emulator/core/encoding.h"
#include "emulator/io/dump.h"
#include "emulator/platform/filesystem.h"
#include "emulator/session/host.h"
#include "emulator/ui/history.h"
#include "emulator/ui/script.h"
#include "emulator/lisp/value.h"
#include "host/ads.h"

using namespace vorhost;
using namespace vorhost::gui;

namespace {

// A host on a fresh copy of the examples' drive C:, with the module loaded
// when a session is played.
class Drive {
 public:
  Drive() {
    char dir[] = "/tmp/vor_window_XXXXXX";
    root_ = mkdtemp(dir) ? dir : "";
    std::filesystem::copy(VOR_SOURCE_DIR "/examples/c", root_, std::filesystem::copy_options::recursive);
    std::string err;
    Files().Mount('C', root_, &err);
    Files().SetCurrentDrive(3);
    host = std::make_unique<Host>();
  }
  ~Drive() {
    host.reset();
    Files().Reset();
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }
  std::string Dump() const { return DumpDrawing(host->document().drawing()); }
  std::string LinuxPath(const std::string& path) const { return root_ + "/" + path; }

  std::unique_ptr<Host> host;

 private:
  std::string root_;
};

// The window playing the user of a drive's host: steps run one at a time,
// each when the window waits for the user; the window closes after the
// last, or when a step never gets its answer.
class WindowSession : public Drive {
 public:
  WindowSession() : user(*host, window) {
    window.resize(1000, 700);
    window.show();
    host->console().set_user(&user);
    host->console().set_echo_answers(true);
  }

  void Play(std::vector<std::function<void()>> steps) {
    size_t next = 0;
    user.on_waiting = [&] {
      if (next < steps.size()) steps[next++]();
      else window.close();
    };
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, &window, [this] { window.close(); });
    watchdog.start(20000);
    host->module().Load(acrxEntryPoint);
    host->command_line().Run();
    host->module().Unload();
    if (next != steps.size()) qWarning("%s", host->transcript().text().c_str());
    QVERIFY2(next == steps.size(), qPrintable(QString("the session ended after step %1 of %2").arg(next).arg(steps.size())));
    QVERIFY(watchdog.isActive());
  }

  // The user's verbs.
  void Type(const QString& line) {
    QTest::keyClicks(window.pane().line(), line);
    QTest::keyClick(window.pane().line(), Qt::Key_Return);
  }
  // Clicks the pixel nearest world and gives the point it stands for.
  Point3 Click(const Point3& world) {
    QPoint at = window.view().ScreenAt(world).toPoint();
    Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, at, Qt::NoButton);
    return window.view().WorldAt(at);
  }
  void Drag(const Point3& from, const Point3& to) {
    QPoint a = window.view().ScreenAt(from).toPoint(), b = window.view().ScreenAt(to).toPoint();
    Mouse(QEvent::MouseButtonPress, a, Qt::LeftButton);
    Mouse(QEvent::MouseMove, (a + b) / 2, Qt::LeftButton);
    Mouse(QEvent::MouseMove, b, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, b, Qt::NoButton);
  }
  void Mouse(QEvent::Type type, QPoint at, Qt::MouseButtons buttons) {
    QMouseEvent event(type, at, window.view().mapToGlobal(at), Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&window.view(), &event);
  }
  void Menu(const char* name) {
    QAction* action = window.findChild<QAction*>(name);
    QVERIFY2(action, name);
    action->trigger();
  }
  DialogWindow& Top() { return *user.top_window(); }
  void ClickRow(const char* key, int row) {
    auto* list = qobject_cast<QTreeWidget*>(Top().WidgetFor(key));
    QVERIFY2(list, key);
    QRect rect = list->visualItemRect(list->topLevelItem(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rect.center());
  }
  void Press(const char* key) {
    QWidget* w = Top().WidgetFor(key);
    QVERIFY2(w, key);
    QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(8, w->height() / 2));
  }

  MainWindow window;
  WindowUser user;
};

std::string ScriptDump(const std::vector<std::string>& lines) {
  Drive drive;
  ScriptUser script(*drive.host, "equivalent", lines);
  drive.host->console().set_user(&script);
  drive.host->module().Load(acrxEntryPoint);
  drive.host->command_line().Run();
  drive.host->module().Unload();
  if (script.failed()) return "script failed: " + script.failure();
  return drive.Dump();
}

std::string Big5(const std::string& utf8) {
  std::string out;
  Utf8ToBig5(utf8, &out);
  return out;
}

std::string At(const Point3& p) { return FormatNumber(p[0]) + "," + FormatNumber(p[1]); }

// Every keyed tile has a widget of its kind; unboxed clusters have none.
const char* WidgetKind(dcl::TileKind kind) {
  switch (kind) {
    case dcl::TileKind::kButton:
    case dcl::TileKind::kImageButton: return "QPushButton";
    case dcl::TileKind::kToggle: return "QCheckBox";
    case dcl::TileKind::kRadioButton: return "QRadioButton";
    case dcl::TileKind::kEditBox: return "QLineEdit";
    case dcl::TileKind::kListBox: return "QTreeWidget";
    case dcl::TileKind::kPopupList: return "QComboBox";
    case dcl::TileKind::kText:
    case dcl::TileKind::kTextPart: return "QLabel";
    case dcl::TileKind::kBoxedRow:
    case dcl::TileKind::kBoxedColumn:
    case dcl::TileKind::kBoxedRadioRow:
    case dcl::TileKind::kBoxedRadioColumn: return "QGroupBox";
    default: return nullptr;
  }
}

// docs/dialogs.md: the dialogs of each file, and the keys each section
// names with their kinds (a section may cover several dialogs).
struct DocSection {
  std::vector<std::string> dialogs;
  std::vector<std::pair<std::string, std::string>> keys;  // key, kind
};

std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

void ReadDialogDocs(std::map<std::string, std::vector<std::string>>* files, std::vector<DocSection>* sections) {
  std::istringstream in(ReadText(VOR_SOURCE_DIR "/docs/dialogs.md"));
  std::regex file_row(R"(^\| `(\w+\.DCL)` \| (.*?) \|)"), name(R"(`([A-Z_0-9]+)`)"), word(R"([A-Z][A-Z_0-9]{3,})");
  std::regex key_row(R"(^\| `(\w+)` \| (text|toggle|button|list|multi-list|edit) \|)");
  std::smatch m;
  for (std::string line; std::getline(in, line);) {
    if (std::regex_search(line, m, file_row)) {
      std::string names = m[2];
      for (std::sregex_iterator it(names.begin(), names.end(), name), end; it != end; ++it)
        (*files)[m[1]].push_back((*it)[1]);
    } else if (line.rfind("## ", 0) == 0) {
      sections->push_back({});
      for (std::sregex_iterator it(line.begin(), line.end(), word), end; it != end; ++it)
        sections->back().dialogs.push_back(it->str());
    } else if (!sections->empty() && std::regex_search(line, m, key_row)) {
      sections->back().keys.emplace_back(m[1], m[2]);
    }
  }
}

}  // namespace

class WindowTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    setenv("VORHOST_RESOURCES", VORHOST_RESOURCES, 1);
    setenv("VORMIS_FILES", VORMIS_FILES, 1);
    setenv("TZ", "UTC", 1);
  }

  void viewNavigates() {
    DrawingView view;
    view.resize(400, 300);
    view.SetPicture(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 -100 200 100\">"
        "<path d=\"M0,0 L200,-100\" stroke=\"#000\"/></svg>");
    // Fitted: the frame's centre in the middle, the frame's width across.
    QCOMPARE(view.scale(), 2.0);
    Point3 middle = view.WorldAt(QPointF(200, 150));
    QCOMPARE(middle[0], 100.0);
    QCOMPARE(middle[1], 50.0);
    Point3 p{37.5, -12.25, 0};
    Point3 back = view.WorldAt(view.ScreenAt(p));
    QCOMPARE(back[0], p[0]);
    QCOMPARE(back[1], p[1]);

    // The wheel zooms about the cursor: the point under it stays.
    QPointF cursor(50, 70);
    Point3 under = view.WorldAt(cursor);
    QWheelEvent wheel(cursor, view.mapToGlobal(cursor), {}, QPoint(0, 240), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &wheel);
    QVERIFY(qAbs(view.scale() - 2.0 * 1.2 * 1.2) < 1e-12);
    QVERIFY(qAbs(view.WorldAt(cursor)[0] - under[0]) < 1e-9);
    QVERIFY(qAbs(view.WorldAt(cursor)[1] - under[1]) < 1e-9);

    // The middle button drags the drawing along.
    QPoint from(100, 100), to(130, 80);
    Point3 grabbed = view.WorldAt(from);
    for (auto [type, at, buttons] : {std::tuple{QEvent::MouseButtonPress, from, Qt::MiddleButton},
                                     std::tuple{QEvent::MouseMove, to, Qt::MiddleButton},
                                     std::tuple{QEvent::MouseButtonRelease, to, Qt::NoButton}}) {
      QMouseEvent event(type, at, view.mapToGlobal(at), Qt::MiddleButton, buttons, Qt::NoModifier);
      QApplication::sendEvent(&view, &event);
    }
    QVERIFY(qAbs(view.WorldAt(to)[0] - grabbed[0]) < 1e-9);
    QVERIFY(qAbs(view.WorldAt(to)[1] - grabbed[1]) < 1e-9);

    // Once the user has moved the view, a new picture keeps it; extents
    // fit again.
    view.SetPicture("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 -10 20 10\"></svg>");
    QVERIFY(view.scale() > 2.0);
    view.ZoomExtents();
    QCOMPARE(view.scale(), 20.0);
  }

  // Ends and middles of what is drawn, and a click for a point near one
  // takes it exactly; a pick of objects does not snap.
  void clicksSnapToEndsAndMiddles() {
    Drive drive;
    ScriptUser script(*drive.host, "drawing",
                      {"LINE", "0,0", "10,0", "", "ARC", "20,0", "25,5", "30,0", "PLINE", "0,20", "10,20", "10,30", ""});
    drive.host->console().set_user(&script);
    drive.host->command_line().Run();
    QVERIFY2(!script.failed(), script.failure().c_str());
    std::vector<SnapPoint> snaps = SnapPoints(drive.host->document().drawing());
    std::set<std::tuple<long, long, bool>> got, want = {
        {0, 0, false},  {10, 0, false},  {5, 0, true},                    // the line
        {20, 0, false}, {30, 0, false},  {25, 5, true},                   // the arc
        {0, 20, false}, {10, 20, false}, {10, 30, false}, {5, 20, true}, {10, 25, true}};  // the polyline
    for (const SnapPoint& p : snaps) got.insert({std::lround(p.at[0] * 1000), std::lround(p.at[1] * 1000), p.mid});
    std::set<std::tuple<long, long, bool>> want_milli;
    for (auto [x, y, mid] : want) want_milli.insert({x * 1000, y * 1000, mid});
    QVERIFY(got == want_milli);

    DrawingView view;
    view.resize(400, 300);
    view.SetView({10, 10, 0}, 10);
    view.SetSnaps(snaps);
    std::vector<Point3> clicked;
    view.on_point = [&clicked](const Point3& p) { clicked.push_back(p); };
    auto click = [&view](QPointF at) {
      for (QEvent::Type type : {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, view.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
      }
    };
    QPointF near_end = view.ScreenAt({10, 0, 0}) + QPointF(4, -3), far = view.ScreenAt({15, 12, 0});
    view.set_pick(DrawingView::Pick::kPoint);
    click(near_end);
    click(far);
    view.set_pick(DrawingView::Pick::kObjects);
    click(near_end);
    QCOMPARE(clicked.size(), size_t{3});
    QCOMPARE(clicked[0][0], 10.0);
    QCOMPARE(clicked[0][1], 0.0);
    QCOMPARE(clicked[1][0], view.WorldAt(far)[0]);
    QVERIFY(clicked[2][0] != 10.0);
  }

  // At "Select objects:" a click picks the object under the pick box on
  // the screen, however far the view is zoomed out; a click on nothing
  // picks nothing. What is chosen is marked, windows and Remove included,
  // until the command goes on.
  void clickPicksTheObjectUnderIt() {
    std::string dump;
    std::vector<size_t> chosen;  // the objects marked after each step
    std::string transcript;
    {
      WindowSession s;
      s.window.view().SetView({500, 0, 0}, 0.2);  // a pixel is 5 units
      s.Play({
          [&] { s.Type("LINE"); }, [&] { s.Type("0,0"); }, [&] { s.Type("1000,0"); }, [&] { s.Type(""); },
          [&] { s.Type("LINE"); }, [&] { s.Type("0,100"); }, [&] { s.Type("1000,100"); }, [&] { s.Type(""); },
          [&] { s.Type("ERASE"); },
          [&] { s.Click({500, 400, 0}); },  // nothing there
          [&] { s.Click({500, 15, 0}); },   // 3 pixels above the first line
          [&] {
            chosen.push_back(s.user.chosen().size());
            s.Drag({-100, 200, 0}, {1100, 50, 0});  // the second line, inside
          },
          [&] {
            chosen.push_back(s.user.chosen().size());
            s.Type("R");
          },
          [&] { s.Click({500, 100, 0}); },
          [&] {
            chosen.push_back(s.user.chosen().size());
            s.Type("");
          },
          [&] {
            chosen.push_back(s.user.chosen().size());
            s.window.close();
          },
      });
      transcript = s.host->transcript().text();
      QVERIFY(transcript.find("Select objects: <Entity>\n1 found") != std::string::npos);
      dump = s.Dump();
    }
    QVERIFY2(chosen == (std::vector<size_t>{1, 2, 1, 0}), [&] { std::string t; for (size_t c : chosen) t += std::to_string(c) + " "; return t + transcript; }().c_str());
    QVERIFY(dump.find("10=(0,0,0)") == std::string::npos);
    QVERIFY(dump.find("10=(0,100,0)") != std::string::npos);
  }

  // The objects highlighted are the host's set as it stands after each
  // answer: everything for ALL typed, less a line removed by a click that
  // only the host's pick box reaches; nothing once the selection ends; a
  // window and a crossing dragged.
  void highlightFollowsTheHost() {
    WindowSession s;
    s.window.view().SetView({500, 100, 0}, 1);
    std::vector<std::vector<uint64_t>> chosen;
    std::vector<size_t> outlines;
    auto note = [&] {
      chosen.push_back(s.user.chosen());
      outlines.push_back(s.window.view().highlight().size());
    };
    s.Play({
        [&] { s.Type("LINE"); }, [&] { s.Type("0,0"); }, [&] { s.Type("1000,0"); }, [&] { s.Type("1000,200"); },
        [&] { s.Type(""); },
        [&] { s.Type("CHPROP"); },
        [&] {
          note();
          s.Type("ALL");
        },
        [&] {
          note();
          s.Type("R");
        },
        [&] { s.Click({500, 8, 0}); },  // 8 pixels off: beyond the window's pick box, inside the host's
        [&] {
          note();
          s.Type("");
        },
        [&] {
          note();
          QTest::keyClick(s.window.pane().line(), Qt::Key_Escape);
        },
        // A window round the middle of the first line takes nothing dragged
        // left to right, and the line dragged right to left.
        [&] { s.Type("ERASE"); },
        [&] { s.Drag({400, -50, 0}, {600, 50, 0}); },
        [&] {
          note();
          s.Drag({600, 50, 0}, {400, -50, 0});
        },
        [&] {
          note();
          QTest::keyClick(s.window.pane().line(), Qt::Key_Escape);
        },
    });
    std::vector<uint64_t> lines = s.host->document().drawing().MainEntities();
    QCOMPARE(lines.size(), size_t{2});
    QVERIFY(chosen == (std::vector<std::vector<uint64_t>>{{}, lines, {lines[1]}, {}, {}, {lines[0]}}));
    QCOMPARE(outlines, (std::vector<size_t>{0, 2, 1, 0, 0, 1}));
  }

  // Every dialog of the module's files: each keyed tile has a widget of
  // its kind, greyed when the tile or a cluster around it is disabled, and
  // every key docs/dialogs.md names is there, as the kind it says.
  void dialogsHaveTheirWidgets() {
    std::map<std::string, std::vector<std::string>> files;
    std::vector<DocSection> sections;
    ReadDialogDocs(&files, &sections);
    QCOMPARE(files.size(), size_t{2});
    Drive drive;
    std::map<std::string, std::unique_ptr<DialogWindow>> windows;
    std::map<std::string, Dialog*> dialogs;
    for (const auto& [file, names] : files) {
      int id = 0;
      QCOMPARE(drive.host->dialogs().Load(file, &id), RTNORM);
      for (const std::string& name : names) {
        ads_hdlg handle = nullptr;
        QVERIFY2(drive.host->dialogs().New(name, id, NULLCB, &handle) == RTNORM, name.c_str());
        Dialog* dialog = drive.host->dialogs().Find(handle);
        std::vector<LiveTile*> keyed = dialog->KeyedTiles();
        for (size_t i = 0; i < keyed.size(); i += 3) keyed[i]->enabled = false;
        windows[name] = std::make_unique<DialogWindow>(*dialog, nullptr);
        dialogs[name] = dialog;
        for (LiveTile* tile : keyed) {
          const char* kind = WidgetKind(tile->kind());
          QWidget* widget = windows[name]->WidgetFor(tile->key());
          QString where = QString::fromStdString(name + " " + tile->key());
          if (!kind) continue;
          QVERIFY2(widget && widget->inherits(kind), qPrintable(where));
          QVERIFY2(widget->isEnabled() == tile->Usable(), qPrintable(where));
        }
      }
    }
    size_t documented = 0;
    const std::map<std::string, const char*> kinds = {{"text", "QLabel"}, {"toggle", "QCheckBox"},
                                                      {"button", "QPushButton"}, {"list", "QTreeWidget"},
                                                      {"multi-list", "QTreeWidget"}, {"edit", "QLineEdit"}};
    for (const DocSection& section : sections)
      for (const auto& [key, kind] : section.keys) {
        bool found = false;
        for (const std::string& name : section.dialogs) {
          if (!windows.count(name)) continue;
          QWidget* widget = windows[name]->WidgetFor(key);
          if (!widget) continue;
          found = true;
          QVERIFY2(widget->inherits(kinds.at(kind)), qPrintable(QString::fromStdString(name + " " + key)));
          if (auto* list = qobject_cast<QTreeWidget*>(widget))
            QCOMPARE(list->selectionMode() == QAbstractItemView::MultiSelection, kind == "multi-list");
        }
        QVERIFY2(found, key.c_str());
        documented++;
      }
    QVERIFY(documented > 50);
    windows.clear();
  }

  // The module's dialogs as it opens them: each keyed tile's widget is
  // greyed exactly where the module has disabled the tile, and follows it
  // when a row chosen enables the buttons that need one; a nested dialog
  // is modal over its parent.
  void moduleDialogsGreyWhatItDisabled() {
    WindowSession s;
    std::vector<std::string> greyed;  // for each dialog seen, its name and the keys greyed
    auto check = [&] {
      Dialog* dialog = s.host->dialogs().top();
      QVERIFY(dialog && s.user.top_window());
      QCOMPARE(s.Top().dialog_name(), dialog->name());
      std::string keys = dialog->name() + ":";
      for (LiveTile* tile : dialog->KeyedTiles()) {
        QWidget* widget = s.Top().WidgetFor(tile->key());
        if (!WidgetKind(tile->kind())) continue;
        QVERIFY2(widget && widget->isEnabled() == tile->Usable(), (dialog->name() + " " + tile->key()).c_str());
        if (!tile->Usable()) keys += " " + tile->key();
      }
      greyed.push_back(keys);
    };
    s.Play({
        [&] { s.Type("(setq VORMIS \"C:/VOR\")"); },
        [&] { s.Type("(VOR_ELINE)"); },
        [&] {
          check();
          s.ClickRow("eline", 0);
        },
        [&] {
          check();
          s.Press("editline");
        },
        [&] {
          check();
          // The run type's dialog is modal over the list's.
          auto* parent = qobject_cast<DialogWindow*>(s.Top().parentWidget());
          QVERIFY(s.Top().isModal() && parent && parent->dialog_name() == "VOR_ELINE_0");
          s.Press("cancel");
        },
        [&] { s.Press("cancel"); },
        [&] { s.Type("(VOR_ACF)"); },
        [&] {
          check();
          s.Press("cancel");
        },
    });
    QCOMPARE(greyed.size(), size_t{4});
    QVERIFY2(greyed[0] != greyed[1], greyed[0].c_str());  // a row chosen enables its buttons
    QVERIFY2(greyed[0].find(" del") != std::string::npos, greyed[0].c_str());
  }

  // What the user does in a dialog reaches the runtime as the events of
  // its text form, and nothing else does.
  void dialogHandsOverEvents() {
    Drive drive;
    int id = 0;
    QCOMPARE(drive.host->dialogs().Load("VORMIS.DCL", &id), RTNORM);
    ads_hdlg handle = nullptr;
    QCOMPARE(drive.host->dialogs().New("VOR_ELINE_0", id, NULLCB, &handle), RTNORM);
    Dialog& dialog = *drive.host->dialogs().Find(handle);
    dialog.Find("eline")->rows = {"E1\tELINE1\tE-LIGHT\t2\tx", "E2\tELINE2\tE-POWER\t1\ty", "E3\tELINE3\tE-POWER\t1\tz"};
    dialog.Find("del")->enabled = false;
    DialogWindow window(dialog, nullptr);
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* list = qobject_cast<QTreeWidget*>(window.WidgetFor("eline"));
    auto* gap = qobject_cast<QLineEdit*>(window.WidgetFor("dimlinegap"));
    auto row_at = [list](int row) { return list->visualItemRect(list->topLevelItem(row)).center(); };
    auto button = [&window](const char* key) { return window.WidgetFor(key); };

    struct Case {
      const char* what;
      std::function<void()> act;
      std::vector<std::string> events;  // text forms; "<escape>" for Escape
    };
    const Case cases[] = {
        {"a row clicked", [&] { QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row_at(1)); },
         {"select eline 1"}},
        {"a row double-clicked",
         [&] {
           QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row_at(2));
           QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row_at(2));
         },
         {"select eline 2", "double-click eline 2"}},
        {"a toggle flipped", [&] { QTest::mouseClick(button("dimline"), Qt::LeftButton, {}, QPoint(6, 8)); },
         {"toggle dimline"}},
        {"a text typed and left",
         [&] {
           gap->setFocus();
           gap->selectAll();
           QTest::keyClicks(gap, "3.5");
           button("add")->setFocus();
         },
         {"type dimlinegap 3.5"}},
        {"an edit box left unchanged", [&] { gap->setFocus(); button("add")->setFocus(); }, {}},
        {"a text typed with Enter",
         [&] {
           gap->selectAll();
           QTest::keyClicks(gap, "4");
           QTest::keyClick(gap, Qt::Key_Return);
         },
         {"enter dimlinegap 4"}},
        {"a button pressed", [&] { QTest::mouseClick(button("add"), Qt::LeftButton); }, {"press add"}},
        {"a disabled button clicked", [&] { QTest::mouseClick(button("del"), Qt::LeftButton); }, {}},
        {"OK", [&] { QTest::mouseClick(button("accept"), Qt::LeftButton); }, {"ok"}},
        {"Cancel", [&] { QTest::mouseClick(button("cancel"), Qt::LeftButton); }, {"cancel"}},
        {"Escape", [&] { QTest::keyClick(&window, Qt::Key_Escape); }, {"<escape>"}},
    };
    for (const Case& c : cases) {
      window.pending().clear();
      window.Sync(dialog);
      c.act();
      std::vector<std::string> got;
      for (const DialogInput& in : window.pending())
        got.push_back(in.kind == DialogInput::Kind::kEscape ? "<escape>" : EventText(in.event));
      std::string said = std::string(c.what) + ":";
      for (const std::string& e : got) said += " [" + e + "]";
      QVERIFY2(got == c.events, said.c_str());
    }
    // The runtime's values are shown: the chosen row, the toggle, the mode.
    dialog.SetValue(*dialog.Find("eline"), "2");
    dialog.SetValue(*dialog.Find("dimline"), "1");
    dialog.Find("del")->enabled = true;
    window.Sync(dialog);
    QCOMPARE(list->selectedItems().size(), qsizetype{1});
    QCOMPARE(list->indexOfTopLevelItem(list->selectedItems().front()), 2);
    QCOMPARE(list->topLevelItem(2)->text(2), QString("E-POWER"));
    QVERIFY(qobject_cast<QCheckBox*>(button("dimline"))->isChecked());
    QVERIFY(button("del")->isEnabled());
  }

  // Tiles the module's files use little or not at all, from a file of the
  // test's own: radio buttons in a boxed cluster, a popup list, a list of
  // several choices with tab stops, a text set empty, "&" in labels.
  void tilesOfAFileOfOurOwn() {
    Drive drive;
    std::ofstream(drive.LinuxPath("TEST.DCL"), std::ios::binary)
        << "TEST : dialog { label = \"R&D\";\r\n"
           "  : boxed_radio_row { key = \"pick\"; label = \"Which\";\r\n"
           "    : radio_button { key = \"a\"; label = \"A&B\"; value = \"1\"; }\r\n"
           "    : radio_button { key = \"b\"; label = \"B\"; is_enabled = false; } }\r\n"
           "  : popup_list { key = \"size\"; label = \"Size\"; }\r\n"
           "  : list_box { key = \"many\"; multiple_select = true; tabs = \"4 10\"; }\r\n"
           "  : text { key = \"note\"; label = \"C&D\"; }\r\n"
           "  ok_only; }\r\n";
    int id = 0;
    QCOMPARE(drive.host->dialogs().Load("TEST.DCL", &id), RTNORM);
    ads_hdlg handle = nullptr;
    QCOMPARE(drive.host->dialogs().New("TEST", id, NULLCB, &handle), RTNORM);
    Dialog& dialog = *drive.host->dialogs().Find(handle);
    dialog.Find("size")->rows = {"small", "large"};
    dialog.SetValue(*dialog.Find("size"), "1");
    dialog.Find("many")->rows = {"1\t2\t3", "4\t5\t6\t7"};
    dialog.SetValue(*dialog.Find("many"), "0 1");
    DialogWindow window(dialog, nullptr);
    window.show();
    QCOMPARE(window.windowTitle(), QString("R&D"));
    auto* a = qobject_cast<QRadioButton*>(window.WidgetFor("a"));
    auto* b = qobject_cast<QRadioButton*>(window.WidgetFor("b"));
    QVERIFY(a->isChecked() && !b->isChecked() && !b->isEnabled());
    QCOMPARE(a->text(), QString("A&&B"));  // shown as A&B
    QCOMPARE(qobject_cast<QGroupBox*>(window.WidgetFor("pick"))->title(), QString("Which"));
    auto* size = qobject_cast<QComboBox*>(window.WidgetFor("size"));
    QCOMPARE(size->count(), 2);
    QCOMPARE(size->currentIndex(), 1);
    auto* many = qobject_cast<QTreeWidget*>(window.WidgetFor("many"));
    QCOMPARE(many->selectedItems().size(), qsizetype{2});
    QCOMPARE(many->columnCount(), 3);
    QCOMPARE(many->columnWidth(0), 4 * window.char_width());
    QCOMPARE(many->topLevelItem(1)->text(2), QString("6 7"));  // past the last stop, one column
    auto* note = qobject_cast<QLabel*>(window.WidgetFor("note"));
    QCOMPARE(note->text(), QString("C&D"));
    dialog.SetValue(*dialog.Find("note"), "");
    window.Sync(dialog);
    QCOMPARE(note->text(), QString());

    QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(6, b->height() / 2));
    QTest::mouseClick(a, Qt::LeftButton, {}, QPoint(6, a->height() / 2));
    emit size->activated(0);
    QTest::mouseClick(many->viewport(), Qt::LeftButton, {}, many->visualItemRect(many->topLevelItem(1)).center());
    QPoint first_row = many->visualItemRect(many->topLevelItem(0)).center();
    QTest::mouseClick(many->viewport(), Qt::LeftButton, {}, first_row);
    QTest::mouseDClick(many->viewport(), Qt::LeftButton, {}, first_row);
    std::vector<std::string> got;
    for (const DialogInput& in : window.pending()) got.push_back(EventText(in.event));
    // A double click in a list of several choices is its first click alone.
    std::vector<std::string> want = {"choose a", "select size 0", "select many 1", "select many 0"};
    QVERIFY2(got == want, [&] { std::string t; for (auto& g : got) t += "[" + g + "]"; return t; }().c_str());
  }

  // Two lines drawn by clicks, a run type applied to them from the line
  // tool's dialog with its label switched on, the lines chosen with a
  // window: the same drawing as the session typed as a script.
  void runTypeAppliedByClicks() {
    Point3 a, b, c, d;
    std::string shown;
    bool came_back = false;
    std::string window_dump;
    std::vector<uint64_t> picked, lines;
    {
      WindowSession s;
      s.window.view().SetView({200, -50, 0}, 0.5);
      s.Play({
          [&] { s.Type("(setq VORMIS \"C:/VOR\")"); },
          [&] { s.Menu("VOR_LT_LO"); },
          [&] { s.Type("LINE"); },
          [&] { a = s.Click({0, 0, 0}); },
          [&] { b = s.Click({400, 0, 0}); },
          [&] { s.Type(""); },
          [&] { s.Type("LINE"); },
          [&] { c = s.Click({0, -100, 0}); },
          [&] { d = s.Click({400, -100, 0}); },
          [&] { s.Type(""); },
          [&] { s.Menu("VOR_ELINE"); },
          [&] { s.ClickRow("eline", 0); },
          [&] { s.Press("dimline"); },
          [&] { s.Press("changeline"); },
          [&] { s.Drag({-50, 50, 0}, {450, -150, 0}); },
          [&] {
            picked = s.user.chosen();
            s.Type("");
          },
          [&] {
            came_back = s.user.top_window() && s.Top().dialog_name() == "VOR_ELINE_0";
            s.Press("accept");
          },
      });
      window_dump = s.Dump();
      for (uint64_t id : s.host->document().drawing().MainEntities())
        if (s.host->document().drawing().Find(id)->type == "LINE") lines.push_back(id);
    }
    QVERIFY(came_back);
    std::sort(picked.begin(), picked.end());
    QVERIFY(picked == lines);  // the module's ads_ssget showed what the window took
    QVERIFY2(window_dump.find("ELINE1") != std::string::npos, window_dump.c_str());
    std::string script_dump = ScriptDump({"(setq VORMIS \"C:/VOR\")", "(VOR_LT_LO)", "LINE", At(a), At(b), "", "LINE", At(c),
                                          At(d), "", "(VOR_ELINE)", "select eline 0", "toggle dimline",
                                          "press changeline", "W", "-50,50", "450,-150", "", "ok"});
    QCOMPARE(window_dump, script_dump);
  }

  // W2's editor: the file's Big5 and CR LF shown as UTF-8 lines, written
  // back in the host's form with its end mark; a character Big5 cannot
  // hold refused with the window left open; bytes that are not Big5 text
  // not offered for editing.
  void editorKeepsTheHostsForm() {
    struct Case {
      const char* what;
      std::string contents;
      QString shown, edited;
      EditOutcome outcome;
      std::string saved;
    };
    const Case cases[] = {
        {"edited", Big5("電力\r\nA\r\n") + "\x1A", QString::fromUtf8("電力\nA\n"), QString::fromUtf8("電力\nB 照明\n"),
         EditOutcome::kSaved, Big5("電力\r\nB 照明\r\n") + "\x1A"},
        {"without an end mark", "X\r\n", "X\n", "Y\nZ", EditOutcome::kSaved, "Y\r\nZ"},
        {"unchanged", "X\r\n", "X\n", "X\n", EditOutcome::kUnchanged, "X\r\n"},
    };
    for (const Case& c : cases) {
      EditorWindow editor(c.contents, "t", nullptr);
      QVERIFY2(editor.readable(), c.what);
      QCOMPARE(editor.editor()->toPlainText(), c.shown);
      editor.editor()->setPlainText(c.edited);
      editor.Save();
      QVERIFY2(editor.outcome() == c.outcome, c.what);
      QVERIFY2(editor.contents() == c.saved, c.what);
    }
    EditorWindow editor("A\r\n", "t", nullptr);
    editor.editor()->setPlainText(QString::fromUtf8("A \U0001F600 B"));
    editor.Save();
    QVERIFY(editor.outcome() == EditOutcome::kCancelled);
    QVERIFY(editor.refusal().contains(QString::fromUtf8("\U0001F600")));
    QCOMPARE(editor.editor()->textCursor().selectedText(), QString::fromUtf8("\U0001F600"));
    QVERIFY(!EditorWindow("\xA4", "t", nullptr).readable());  // a lead byte alone
  }

  // The line tool's catalogue edited in the window: the file on the drive
  // holds the edit in Big5 with CR LF.
  void catalogueEditedInTheWindow() {
    WindowSession s;
    QString seen;
    s.Play({
        [&] { s.Type("(setq VORMIS \"C:/VOR\")"); },
        [&] { s.Type("(VOR_ELINE)"); },
        [&] { s.Press("editfile"); },
        [&] {
          QVERIFY(s.user.editor());
          QPlainTextEdit* text = s.user.editor()->editor();
          seen = text->toPlainText();
          text->setPlainText(seen + QString::fromUtf8("\u2603"));  // a snowman, not in Big5
          s.user.editor()->Save();
          QVERIFY(s.user.editor()->isVisible());
          text->setPlainText(QString(seen).replace(QString::fromUtf8("緊急照明 2.0x2"), QString::fromUtf8("緊急照明燈 2.0x2")));
          s.user.editor()->Save();
        },
        [&] { s.Press("cancel"); },
    });
    QVERIFY(seen.contains(QString::fromUtf8("緊急照明 2.0x2")));
    std::string file = ReadText(s.LinuxPath("VOR/ELINE.CAT"));
    QVERIFY(file.find(Big5("\"緊急照明燈 2.0x2\" \"\" \"A,10,-2,0,-2\")\r\n")) != std::string::npos);
    QVERIFY(file.find('\n') == file.find("\r\n") + 1);
  }

  // The host functions that ask have windows of their own: the colour
  // chooser (BYLAYER and BYBLOCK only where the call allows them, Cancel
  // nil), W1's input window over the dialog whose action asked, the help
  // window for ADS_HELP and for F1.
  void hostFunctionsAskInTheirWindows() {
    WindowSession s;
    std::vector<std::string> results;
    QString label, help_title, help_text, keys_text;
    bool over_dialog = false;
    auto result = [&] { results.push_back(lisp::Print(s.host->command_line().last_value())); };
    auto colours = [&] { return s.user.colour_window(); };
    s.Play({
        [&] { s.Type("(acad_colordlg 7 nil)"); },
        [&] {
          ColourWindow* w = colours();
          QVERIFY(w);
          QCOMPARE(w->chosen(), 7);
          QVERIFY(!w->by_layer()->isEnabled() && !w->by_block()->isEnabled());
          if (const char* dir = getenv("VOR_SHOTS")) w->grab().save(QString(dir) + "/colour_window.png");
          QTest::mouseClick(w->grid(), Qt::LeftButton, {}, ColourGrid::CellRect(30).center());
          QCOMPARE(w->chosen(), 30);
          QTest::mouseDClick(w->grid(), Qt::LeftButton, {}, ColourGrid::CellRect(254).center());
        },
        [&] {
          result();
          s.Type("(acad_colordlg 0)");
        },
        [&] {
          ColourWindow* w = colours();
          QVERIFY(w);
          QCOMPARE(w->chosen(), 0);  // BYBLOCK, allowed
          QTest::mouseClick(w->by_layer(), Qt::LeftButton);
          w->accept();
        },
        [&] {
          result();
          s.Type("(acad_colordlg 0 nil)");
        },
        [&] {
          ColourWindow* w = colours();
          QVERIFY(w);
          QCOMPARE(w->chosen(), -1);  // none: BYBLOCK is not allowed
          w->reject();
        },
        [&] {
          result();
          s.Type("(setq VORMIS \"C:/VOR\")");
        },
        [&] { s.Type("(VOR_ELINE)"); },
        [&] { s.ClickRow("eline", 0); },
        [&] { s.Press("editline"); },
        [&] { s.Press("b3"); },
        [&] {
          QVERIFY(s.user.text_window());
          over_dialog = s.Top().isVisible();
          s.user.text_window()->line()->setText(QString::fromUtf8("照明 2.0x2"));
          s.user.text_window()->accept();
        },
        [&] {
          label = qobject_cast<QLabel*>(s.Top().WidgetFor("t3"))->text();
          s.Press("cancel");
        },
        [&] { s.Press("cancel"); },
        [&] { s.Type("(ads_help \"VORMIS.HLP\" \"file_con\")"); },
        [&] {
          QVERIFY(s.user.help_window() && s.user.help_window()->isVisible());
          help_title = s.user.help_window()->windowTitle();
          help_text = s.user.help_window()->text()->toPlainText();
          QAction* keys = s.window.findChild<QAction*>("help");
          QVERIFY(keys);
          QCOMPARE(keys->shortcut(), QKeySequence(Qt::Key_F1));
          keys->trigger();
          QVERIFY(s.user.help_window());
          keys_text = s.user.help_window()->text()->toPlainText();
          s.user.help_window()->close();
          s.window.close();
        },
    });
    QCOMPARE(results, (std::vector<std::string>{"254", "256", "nil"}));
    QVERIFY(over_dialog);
    QCOMPARE(label, QString::fromUtf8("照明 2.0x2"));
    QCOMPARE(help_title, QString("Help: file_con"));
    QVERIFY(!help_text.isEmpty() && !help_text.contains('\r'));
    QVERIFY2(keys_text.contains("(VOR_ELINE)"), qPrintable(keys_text.left(300)));
    QVERIFY(keys_text.contains("F1 shows this help"));
  }

  // A help topic's columns line up however wide the font draws a Chinese
  // character: each is two columns, as on the screen the file was written for.
  void helpKeepsItsColumns() {
    HelpWindow help(nullptr);
    help.Show("t", QString::fromUtf8("依代號篩選   x\n選擇代號...  x\nabcdefghijkl x\n"));
    QPlainTextEdit* text = help.text();
    std::vector<int> xs;
    for (int line = 0; line < 3; line++) {
      QTextCursor cursor(text->document()->findBlockByNumber(line));
      cursor.movePosition(QTextCursor::EndOfBlock);
      xs.push_back(text->cursorRect(cursor).left());
    }
    QVERIFY2(xs[0] == xs[2] && xs[1] == xs[2], qPrintable(QString("%1 %2 %3").arg(xs[0]).arg(xs[1]).arg(xs[2])));
  }

  // A script playing in the window: the windows of ACAD_COLORDLG, W1, W2
  // and ADS_HELP open with the script's answer in them, are written as
  // screenshots, and close; the host gets the script's answers as when it
  // plays alone.
  void scriptOperatesTheFunctionsWindows() {
    const std::vector<std::string> lines = {
        "(acad_colordlg 7 nil)", "30", "(acad_colordlg 7)", "#cancel", "(acad_colordlg 7)", "BYLAYER",
        "(w1 \"old\" \"Note\")", "new text", "(w1 \"old\" \"Note\")", "",
        "(ads_help \"VORMIS.HLP\" \"file_con\")", "(setq VORMIS \"C:/VOR\")", "(VOR_ELINE)", "press editfile",
        "#keep", "cancel"};
    std::string played_transcript, alone_transcript;
    std::vector<std::string> played, shots;
    QTemporaryDir dir;
    {
      WindowSession s;
      ScriptUser script(*s.host, "played", lines);
      s.user.set_script(&script, true);
      s.user.set_screenshots(dir.path().toStdString());
      s.user.on_played = [&](QDialog& window) {
        std::string seen = window.windowTitle().toStdString() + ": ";
        if (auto* colour = qobject_cast<ColourWindow*>(&window)) seen += std::to_string(colour->chosen());
        else if (auto* text = qobject_cast<TextWindow*>(&window)) seen += text->line()->text().toStdString();
        else if (auto* editor = qobject_cast<EditorWindow*>(&window)) seen += std::to_string(editor->editor()->blockCount() > 1);
        else if (auto* help = qobject_cast<HelpWindow*>(&window)) seen += std::to_string(!help->text()->toPlainText().isEmpty());
        played.push_back(seen + (window.isVisible() ? "" : " (hidden)"));
      };
      s.Play({});
      QVERIFY2(!script.failed(), script.failure().c_str());
      played_transcript = s.host->transcript().text();
      for (const std::string& shot : s.user.shots()) shots.push_back(std::filesystem::path(shot).filename());
    }
    {
      Drive drive;
      ScriptUser script(*drive.host, "played", lines);
      drive.host->console().set_user(&script);
      drive.host->module().Load(acrxEntryPoint);
      drive.host->command_line().Run();
      drive.host->module().Unload();
      alone_transcript = drive.host->transcript().text();
    }
    QCOMPARE(played_transcript, alone_transcript);
    const std::vector<std::string> want_played = {
        "Select Color: 30", "Select Color: 7", "Select Color: 256", "Note: new text", "Note: old",
        "Help: file_con: 1", "Editing C:\\VOR\\ELINE.CAT: 1"};
    QVERIFY2(played == want_played, [&] { std::string t; for (auto& p : played) t += "[" + p + "]"; return t; }().c_str());
    const std::vector<std::string> want_shots = {"01-ACAD_COLORDLG.png", "02-ACAD_COLORDLG.png", "03-ACAD_COLORDLG.png",
                                                 "04-W1.png", "05-W1.png", "06-ADS_HELP.png", "07-VOR_ELINE_0.png",
                                                 "08-W2.png"};
    QVERIFY2(shots == want_shots, [&] { std::string t; for (auto& p : shots) t += "[" + p + "]"; return t; }().c_str());
  }

  // Closing the window with a changed drawing asks to save it: Cancel
  // keeps the window, Discard closes it. An unchanged one closes at once.
  void closingAsksToSaveChanges() {
    auto answer = [](QMessageBox::StandardButton button, int* asked) {
      QTimer::singleShot(0, [button, asked] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
          ++*asked;
          box->button(button)->click();
        }
      });
    };
    int asked = 0;
    bool stayed = false;
    {
      WindowSession s;
      s.user.set_ask_to_save(true);
      s.user.MarkSaved();
      s.Play({
          [&] { s.Type("LINE"); },
          [&] { s.Type("0,0"); },
          [&] { s.Type("10,0"); },
          [&] { s.Type(""); },
          [&] {
            answer(QMessageBox::Cancel, &asked);
            s.window.close();
            stayed = s.window.isVisible();
            answer(QMessageBox::Discard, &asked);
            s.window.close();
          },
      });
    }
    QVERIFY(stayed);
    QCOMPARE(asked, 2);
    {
      WindowSession s;
      s.user.set_ask_to_save(true);
      s.user.MarkSaved();
      s.Play({[&] {
        answer(QMessageBox::Cancel, &asked);
        s.window.close();
      }});
      QVERIFY(!s.window.isVisible());
    }
    QCOMPARE(asked, 2);
    {
      // Saved by the host's QSAVE (File > Save), the drawing closes at once.
      WindowSession s;
      s.user.set_ask_to_save(true);
      s.user.MarkSaved();
      s.Play({
          [&] { s.Type("LINE"); },
          [&] { s.Type("0,0"); },
          [&] { s.Type("10,0"); },
          [&] { s.Type(""); },
          [&] { s.Type("QSAVE"); },
          [&] {
            answer(QMessageBox::Cancel, &asked);
            s.window.close();
          },
      });
      QVERIFY(!s.window.isVisible());
      QVERIFY(std::filesystem::exists(s.LinuxPath("DRAWING.DXF")));
    }
    QCOMPARE(asked, 2);
  }

  // The command line shares the terminal's history and completion: Up and
  // Down walk the lines typed before, the line under way kept below the
  // newest; Tab completes a command, a function after "(", and at a
  // dialog's prompt an event and a tile's key, listing in the transcript
  // several that fit. Events typed there reach the dialog; Escape there
  // cancels it.
  void commandLineRecallsAndCompletes() {
    WindowSession s;
    History history;
    history.Add("LINE");
    history.Add("(setq VORMIS \"C:/VOR\")");
    s.window.pane().set_history(&history);
    QLineEdit* line = s.window.pane().line();
    auto key = [&](Qt::Key k) { QTest::keyClick(line, k); };
    auto tab = [&](const QString& typed) {
      line->setText(typed);
      key(Qt::Key_Tab);
      QString got = line->text();
      line->clear();
      return got;
    };
    QStringList recalled, completed, listed;
    bool row_chosen = false, cancelled = false;
    s.Play({
        [&] {
          QTest::keyClicks(line, "(se");
          for (Qt::Key k : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down}) {
            key(k);
            recalled << line->text();
          }
          line->clear();
          key(Qt::Key_Up);
          key(Qt::Key_Return);
        },
        [&] {
          completed << tab("QSA") << tab("(VOR_E") << tab("(vor_lt") << tab("LINE 0,0");
          QString before = s.window.pane().transcript()->toPlainText();
          completed << tab("(VOR_");
          QString after = s.window.pane().transcript()->toPlainText();
          listed = after.mid(before.size()).split('\n');
          s.Type("(VOR_ELINE)");
        },
        [&] {
          completed << tab("sel") << tab("select el");
          s.Type("select eline 1");
        },
        [&] {
          auto* list = qobject_cast<QTreeWidget*>(s.Top().WidgetFor("eline"));
          row_chosen = list && list->topLevelItem(1)->isSelected();
          key(Qt::Key_Escape);
        },
        [&] {
          cancelled = s.user.top_window() == nullptr;
          s.Type("");
        },
    });
    QCOMPARE(recalled, QStringList({"(setq VORMIS \"C:/VOR\")", "LINE", "LINE", "(setq VORMIS \"C:/VOR\")", "(se", "(se"}));
    QVERIFY(s.host->transcript().text().find("\"C:/VOR\"\n") != std::string::npos);
    QCOMPARE(completed, QStringList({"QSAVE ", "(VOR_ELINE ", "(VOR_LT_LO ", "LINE 0,0", "(VOR_", "select ",
                                     "select eline "}));
    // The five functions in columns, then the prompt again.
    QVERIFY2(listed.size() >= 2 && listed.join(' ').contains("VOR_ACF") && listed.join(' ').contains("VOR_SLINE") &&
                 listed.last() == "Command: ",
             qPrintable(listed.join('|')));
    QVERIFY(row_chosen);
    QVERIFY(cancelled);
    QCOMPARE(history.lines(), (std::vector<std::string>{"LINE", "(setq VORMIS \"C:/VOR\")", "(VOR_ELINE)", "select eline 1"}));
  }

  // A point asked for from a base point: while it is asked, a line follows
  // the cursor from the base; asked without one, none; once answered, the
  // base is gone.
  void rubberBandFromTheBasePoint() {
    WindowSession s;
    s.window.view().SetView({0, 0, 0}, 1);
    for (bool with_base : {true, false}) {
      ads_point base = {-100, 0, 0}, got = {0, 0, 0};
      bool drawn = false;
      Point3 clicked{};
      s.user.on_waiting = [&] {
        DrawingView& view = s.window.view();
        s.Mouse(QEvent::MouseMove, view.ScreenAt({100, 0, 0}).toPoint(), Qt::NoButton);
        QImage picture = view.grab().toImage();
        QPoint middle = view.ScreenAt({0, 0, 0}).toPoint();
        for (int dy = -1; dy <= 1; dy++) drawn = drawn || picture.pixelColor(middle + QPoint(0, dy)) != QColor(Qt::white);
        clicked = s.Click({100, 0, 0});
      };
      QCOMPARE(ads_getpoint(with_base ? base : nullptr, "Next point: ", got), RTNORM);
      QCOMPARE(got[0], clicked[0]);
      QCOMPARE(drawn, with_base);
      QVERIFY(!s.window.view().base());
    }
  }

  // LINE's "To point:" has its line from the point before it.
  void rubberBandAtLinePrompts() {
    WindowSession s;
    s.window.view().SetView({0, 0, 0}, 1);
    std::vector<std::optional<Point3>> bases;
    Point3 first{}, second{};
    s.Play({
        [&] { s.Type("LINE"); },
        [&] {
          bases.push_back(s.window.view().base());
          first = s.Click({-100, 0, 0});
        },
        [&] {
          bases.push_back(s.window.view().base());
          second = s.Click({100, 0, 0});
        },
        [&] {
          bases.push_back(s.window.view().base());
          s.Type("");
        },
        [&] {
          bases.push_back(s.window.view().base());
          s.window.close();
        },
    });
    QCOMPARE(bases.size(), size_t(4));
    QVERIFY(!bases[0] && !bases[3]);  // From point:, Command:
    QVERIFY(bases[1] && (*bases[1])[0] == first[0] && (*bases[1])[1] == first[1]);
    QVERIFY(bases[2] && (*bases[2])[0] == second[0]);
  }

  // Panels from two schedules chosen in order in the file browser, placed
  // by clicks: the same drawing as the script's.
  void panelsPlacedByClicks() {
    Point3 first, second;
    std::string window_dump;
    {
      WindowSession s;
      s.window.view().SetView({3000, -2000, 0}, 0.05);
      s.Play({
          [&] { s.Type("(setq VORMIS \"C:/VOR\")"); },
          [&] { s.Menu("VOR_ACF"); },
          [&] { s.ClickRow("file", 1); },
          [&] { s.ClickRow("file", 2); },
          [&] { s.Press("accept"); },
          [&] { first = s.Click({0, 0, 0}); },
          [&] { second = s.Click({4000, 0, 0}); },
      });
      window_dump = s.Dump();
    }
    QVERIFY(window_dump.find("LP-1") != std::string::npos);
    QVERIFY(window_dump.find("PP-1") != std::string::npos);
    std::string script_dump = ScriptDump(
        {"(setq VORMIS \"C:/VOR\")", "(VOR_ACF)", "select file 1", "select file 2", "ok", At(first), At(second)});
    QCOMPARE(window_dump, script_dump);
  }
};

QTEST_MAIN(WindowTest)
#include "window_tests.moc"
