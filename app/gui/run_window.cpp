#include "app/gui/run_window.h"

#include <QApplication>
#include <QScreen>
#include <fstream>
#include <iostream>
#include <memory>

#include "app/gui/main_window.h"
#include "app/gui/window_user.h"
#include "emulator/ui/history.h"
#include "emulator/ui/script.h"

namespace vorhost::gui {

namespace {
// The main window's size when it first opens.
constexpr int kWidth = 1400, kHeight = 860;
}  // namespace

int RunWindow(const WindowOptions& options, const ModuleLoader& load_module, const std::function<bool(Host&)>& done) {
  static int argc = 1;
  static char name[] = "vorhost";
  static char* argv[] = {name, nullptr};
  QApplication app(argc, argv);
  QApplication::setApplicationName("vorhost");

  std::ifstream script_file;
  if (!options.play.empty()) {
    script_file.open(options.play, std::ios::binary);
    if (!script_file.is_open()) {
      std::cerr << "vorhost: cannot read script " << options.play << "\n";
      return 2;
    }
  }
  Host host(nullptr);
  History history;  // outlives the window, which holds it
  MainWindow window;
  window.resize(kWidth, kHeight);
  WindowUser user(host, window);
  std::unique_ptr<ScriptUser> script;
  if (!options.play.empty()) {
    script = std::make_unique<ScriptUser>(host, options.play, &script_file);
    user.set_script(script.get(), !options.screenshots.empty());
  }
  user.set_screenshots(options.screenshots);
  // A person at the window shares the terminal's history file; a script
  // that ends the session leaves it alone.
  std::string history_file = options.screenshots.empty() ? History::DefaultPath() : "";
  std::string history_err;
  if (!history_file.empty() && !history.Load(history_file, &history_err))
    std::cerr << "vorhost: " << history_err << "\n";
  window.pane().set_history(&history);
  host.console().set_user(&user);
  host.console().set_echo_answers(true);
  // Enter at the command prompt repeats the last command for a person; a
  // script played in the window keeps its blank lines as spacing.
  host.command_line().set_repeat_on_enter(options.play.empty());
  std::string err;
  if (!options.open.empty() && !host.OpenDrawing(options.open, &err)) {
    std::cerr << "vorhost: " << err << "\n";
    return 2;
  }
  user.MarkSaved();
  // A person is asked to save changes when closing; a script with
  // screenshots ends without a question.
  user.set_ask_to_save(options.screenshots.empty());
  if (!load_module(host, &err)) {
    std::cerr << "vorhost: " << err << "\n";
    return 2;
  }
  window.show();
  host.command_line().Run();
  host.module().Unload();
  if (!history_file.empty() && !history.Save(history_file, &history_err))
    std::cerr << "vorhost: " << history_err << "\n";
  int status = script && script->failed() ? 1 : 0;
  if (script && script->failed()) std::cerr << script->failure() << "\n";
  if (!user.Finish(&err)) {
    std::cerr << "vorhost: " << err << "\n";
    status = status ? status : 3;
  }
  if (done && !done(host)) status = status ? status : 3;
  return status;
}

}  // namespace vorhost::gui
