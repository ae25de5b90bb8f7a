// registry.h - the host's commands, one table per file of commands,
// gathered into the command table in registry.cpp.
#ifndef VORHOST_COMMANDS_REGISTRY_H
#define VORHOST_COMMANDS_REGISTRY_H

#include <memory>
#include <span>
#include <string_view>

#include "emulator/commands/command.h"

namespace vorhost {

// One command: its name, what it does, and how it is made.
struct CommandEntry {
  const char* name;
  const char* help;
  std::unique_ptr<Command> (*make)(CommandContext&);
};

// The maker of a command class that takes only its context.
template <typename C>
std::unique_ptr<Command> Make(CommandContext& context) {
  return std::make_unique<C>(context);
}

std::span<const CommandEntry> DrawCommands();      // draw_commands.cpp
std::span<const CommandEntry> TextCommands();      // text_commands.cpp
std::span<const CommandEntry> PropertyCommands();  // property_commands.cpp
std::span<const CommandEntry> InsertCommands();    // insert_command.cpp
std::span<const CommandEntry> FileCommands();      // file_commands.cpp
std::span<const CommandEntry> ModuleCommands();    // module_commands.cpp

// A system variable typed as a command; nullptr when there is no such variable.
std::unique_ptr<Command> MakeSysvarCommand(CommandContext& context, std::string_view name);

}  // namespace vorhost

#endif
