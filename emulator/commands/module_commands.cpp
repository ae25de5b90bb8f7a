// module_commands.cpp - ARXLOAD and ARXUNLOAD: a module loaded into the
// host, or unloaded, by its name.
#include <string_view>

#include "emulator/commands/registry.h"

namespace vorhost {
namespace {

// Asks for a module's name and hands it to the host; a name the host
// refuses is refused with its reason, and the user is asked again.
template <bool load>
class ModuleCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override {
    return load ? "\nApplication to load: " : "\nApplication to unload: ";
  }

  Step Feed(const Answer& a) override {
    if (a.IsEnter()) return Step::kDone;
    std::string why;
    bool done = load ? context_.LoadApplication(a.Echo(), &why) : context_.UnloadApplication(a.Echo(), &why);
    return done ? Step::kDone : Reject(why);
  }
};

const CommandEntry kModuleCommands[] = {
    {"ARXLOAD", "load a module by its name or file", Make<ModuleCommand<true>>},
    {"ARXUNLOAD", "unload a module that allows it", Make<ModuleCommand<false>>},
};

}  // namespace

std::span<const CommandEntry> ModuleCommands() { return kModuleCommands; }

}  // namespace vorhost
