// file_commands.cpp - SAVEAS (and DXFOUT): the drawing to a DXF file.
#include <filesystem>

#include "emulator/commands/registry.h"
#include "emulator/host.h"
#include "emulator/io/dxf.h"
#include "emulator/platform/filesystem.h"

namespace vorhost {
namespace {

class SaveAsCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override { return "\nSave drawing as <" + DefaultName() + ">: "; }

  Step Feed(const Answer& a) override {
    std::string dos = a.IsEnter() ? DefaultName() : a.Echo();
    std::string upper = UpperAscii(dos);
    if (upper.size() < 4 || upper.compare(upper.size() - 4, 4, ".DXF") != 0) dos += ".DXF";
    std::string linux_path, why;
    if (!Files().Resolve(dos, &linux_path)) return Reject("Invalid file name " + dos + ".");
    if (!SaveDxf(host_.drawing(), host_.sysvars(), linux_path, &why)) return Reject(why);
    std::string full = Files().DosPath(dos);
    size_t slash = full.rfind('\\');
    host_.sysvars().Force("DWGNAME", full.substr(slash + 1));
    host_.sysvars().Force("DWGPREFIX", full.substr(0, slash + 1));
    host_.CommandMessage("Saved " + full + ".");
    return Step::kDone;
  }

 private:
  std::string DefaultName() const {
    SysValue prefix, name;
    host_.sysvars().Get("DWGPREFIX", &prefix);
    host_.sysvars().Get("DWGNAME", &name);
    std::string n = std::get<std::string>(name);
    size_t dot = n.rfind('.');
    return std::get<std::string>(prefix) + n.substr(0, dot) + ".DXF";
  }
};

}  // namespace

std::unique_ptr<Command> MakeSaveAs(Host& host) { return std::make_unique<SaveAsCommand>(host); }

}  // namespace vorhost
