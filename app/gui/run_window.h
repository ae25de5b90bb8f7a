// run_window.h - vorhost in its window: a host with the module loaded,
// played by the person at the window or by a script shown in it.
#ifndef VORHOST_APP_GUI_RUN_WINDOW_H
#define VORHOST_APP_GUI_RUN_WINDOW_H

#include <functional>
#include <string>

#include "emulator/session/host.h"

namespace vorhost::gui {

struct WindowOptions {
  std::string open;         // a drawing to start from
  std::string play;         // a script to play in the window
  std::string screenshots;  // a folder for PNGs of the dialogs and the window
};

// Loads the module into the host as the program's options say; false with
// *err when it cannot be loaded.
using ModuleLoader = std::function<bool(Host& host, std::string* err)>;

// Runs the session with the module load_module loads; done is called with
// the host once the session has ended (to save what the options ask for)
// and says whether that went well. The exit status as vorhost's: 0, 1 for
// a script that failed, 2 for a file that cannot be read or a module that
// cannot be loaded, 3 for a file that cannot be written.
int RunWindow(const WindowOptions& options, const ModuleLoader& load_module, const std::function<bool(Host&)>& done);

// The same, as the window's library (lib/vormis/vorhost-window.so) offers
// it to vorhost, which opens that library only for --gui.
using SessionEnd = std::function<bool(Host&)>;
using RunWindowEntry = int (*)(const WindowOptions* options, const ModuleLoader* load_module,
                               const SessionEnd* done);
inline constexpr char kWindowLibrary[] = "vorhost-window.so";
inline constexpr char kRunWindowEntry[] = "vorhost_run_window";

}  // namespace vorhost::gui

#endif
