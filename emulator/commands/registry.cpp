// registry.cpp - the host's command table: every file's commands, and the
// names that are other spellings of them.
#include "emulator/commands/registry.h"

#include <algorithm>
#include <vector>

namespace vorhost {
namespace {

// Other names of commands: DTEXT is TEXT, DXFOUT is SAVEAS.
struct Alias {
  const char* name;
  const char* command;
};
constexpr Alias kAliases[] = {{"DTEXT", "TEXT"}, {"DXFOUT", "SAVEAS"}};

// Every command, sorted by name for MakeCommand's binary search.
const std::vector<CommandEntry>& Commands() {
  static const std::vector<CommandEntry> commands = [] {
    std::vector<CommandEntry> all;
    for (auto table : {DrawCommands(), TextCommands(), PropertyCommands(), InsertCommands(), FileCommands(),
                       ModuleCommands()})
      all.insert(all.end(), table.begin(), table.end());
    std::sort(all.begin(), all.end(),
              [](const CommandEntry& a, const CommandEntry& b) { return std::string_view(a.name) < b.name; });
    return all;
  }();
  return commands;
}

}  // namespace

std::unique_ptr<Command> MakeCommand(CommandContext& context, std::string_view name) {
  for (const Alias& alias : kAliases)
    if (name == alias.name) name = alias.command;
  const std::vector<CommandEntry>& commands = Commands();
  auto it = std::lower_bound(commands.begin(), commands.end(), name,
                             [](const CommandEntry& c, std::string_view n) { return c.name < n; });
  if (it != commands.end() && name == it->name) return it->make(context);
  return MakeSysvarCommand(context, name);
}

std::vector<std::string> CommandNames() {
  std::vector<std::string> names;
  for (const CommandEntry& c : Commands()) names.push_back(c.name);
  for (const Alias& alias : kAliases) names.push_back(alias.name);
  return names;
}

std::string CommandSummary() {
  std::string out;
  for (const CommandEntry& c : Commands()) out += std::string(c.name) + "  " + c.help + "\n";
  out += "(any system variable)  show or set it\n";
  return out;
}

}  // namespace vorhost
