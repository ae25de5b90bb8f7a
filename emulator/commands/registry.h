// registry.h - the makers of the host's commands, one per file of commands,
// gathered into the command table in registry.cpp.
#ifndef VORHOST_COMMANDS_REGISTRY_H
#define VORHOST_COMMANDS_REGISTRY_H

#include <memory>
#include <string_view>

#include "emulator/commands/command.h"

namespace vorhost {

std::unique_ptr<Command> MakeLine(Host& host);
std::unique_ptr<Command> MakePline(Host& host);
std::unique_ptr<Command> MakeArc(Host& host);
std::unique_ptr<Command> MakeCircle(Host& host);
std::unique_ptr<Command> MakeErase(Host& host);
std::unique_ptr<Command> MakeText(Host& host);
std::unique_ptr<Command> MakeStyle(Host& host);
std::unique_ptr<Command> MakeLayer(Host& host);
std::unique_ptr<Command> MakeLinetype(Host& host);
std::unique_ptr<Command> MakeLtscale(Host& host);
std::unique_ptr<Command> MakeChprop(Host& host);
std::unique_ptr<Command> MakeInsert(Host& host);
std::unique_ptr<Command> MakeSaveAs(Host& host);
// A system variable typed as a command; nullptr when there is no such variable.
std::unique_ptr<Command> MakeSysvarCommand(Host& host, std::string_view name);

}  // namespace vorhost

#endif
