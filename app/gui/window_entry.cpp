// window_entry.cpp - what the window's library offers vorhost: RunWindow,
// under a name dlsym finds.
#include "app/gui/run_window.h"

extern "C" __attribute__((visibility("default"))) int vorhost_run_window(
    const vorhost::gui::WindowOptions* options, const vorhost::gui::ModuleLoader* load_module,
    const vorhost::gui::SessionEnd* done) {
  return vorhost::gui::RunWindow(*options, *load_module, *done);
}

// The entry keeps the type vorhost calls it by.
static_assert(std::is_same_v<decltype(&vorhost_run_window), vorhost::gui::RunWindowEntry>);
