// file_commands.cpp - SAVEAS (and DXFOUT): the drawing to a DXF file.
#include <filesystem>
#include <string_view>

#include "emulator/commands/registry.h"
#include "emulator/core/text.h"
#include "emulator/io/dxf.h"
#include "emulator/platform/filesystem.h"

namespace vorhost {
namespace {

// Whether a DOS path ends in a file name, rather than naming a drive or a
// directory ("C:", "C:/", "\ACF\", "..") or an extension alone (".DXF").
bool NamesAFile(std::string_view dos) {
  size_t cut = FindLastSeparator(dos);
  std::string_view name = cut == std::string_view::npos ? dos : dos.substr(cut + 1);
  if (cut == std::string_view::npos && name.size() >= 2 && name[1] == ':') name.remove_prefix(2);
  return !name.empty() && name[0] != '.';
}

class SaveAsCommand : public Command {
 public:
  using Command::Command;

  std::string Prompt() const override { return "\nSave drawing as <" + DefaultName() + ">: "; }

  Step Feed(const Answer& a) override {
    std::string dos = a.IsEnter() ? DefaultName() : a.Echo();
    std::string linux_path, why;
    if (!NamesAFile(dos) || !Files().Resolve(dos, &linux_path)) return Reject("Invalid file name " + dos + ".");
    std::error_code ec;
    if (std::filesystem::is_directory(linux_path, ec))
      return Reject("Invalid file name " + dos + ": it is a directory.");
    std::string upper = UpperName(dos);
    if (upper.size() < 4 || upper.compare(upper.size() - 4, 4, ".DXF") != 0) dos += ".DXF";
    std::string full = Files().DosPath(dos);
    if (!Files().Resolve(dos, &linux_path)) return Reject("Invalid file name " + dos + ".");
    if (!SaveDxf(doc().drawing(), doc().sysvars(), linux_path, &why, full)) return Reject(why);
    size_t slash = FindLastSeparator(full);  // never the second byte of a Big5 character
    doc().sysvars().Force("DWGNAME", full.substr(slash + 1));
    doc().sysvars().Force("DWGPREFIX", full.substr(0, slash + 1));
    Message("Saved " + full + ".");
    return Step::kDone;
  }

 private:
  std::string DefaultName() const {
    SysValue prefix, name;
    doc().sysvars().Get("DWGPREFIX", &prefix);
    doc().sysvars().Get("DWGNAME", &name);
    std::string n = std::get<std::string>(name);
    size_t dot = n.rfind('.');
    return std::get<std::string>(prefix) + n.substr(0, dot) + ".DXF";
  }
};

const CommandEntry kFileCommands[] = {
    {"SAVEAS", "save the drawing as a DXF file", Make<SaveAsCommand>},
};

}  // namespace

std::span<const CommandEntry> FileCommands() { return kFileCommands; }

}  // namespace vorhost
