// session_commands.cpp - the commands that act on the session: NEW, QUIT
// and EXIT, SAVE and QSAVE, HELP; the drawing's file and whether it has
// changes that are not saved.
#include <algorithm>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/io/dxf.h"
#include "emulator/platform/filesystem.h"
#include "emulator/session/host.h"

namespace vorhost {
namespace {

struct SessionCommand {
  const char* name;
  const char* help;
};

const SessionCommand kSessionCommands[] = {
    {"NEW", "a new, empty drawing"},
    {"SAVE", "save the drawing under its name"},
    {"QSAVE", "save the drawing under its name"},
    {"QUIT", "end the session, asking to save unsaved changes"},
    {"EXIT", "end the session, asking to save unsaved changes"},
    {"HELP", "this list (also ?)"},
};

// DWGPREFIX and DWGNAME as one text, to see whether SAVEAS named the drawing.
std::string DwgVars(const SysVarTable& vars) {
  SysValue prefix, name;
  if (!vars.Get("DWGPREFIX", &prefix) || !vars.Get("DWGNAME", &name)) return "";
  return std::get<std::string>(prefix) + std::get<std::string>(name);
}

}  // namespace

void Host::NameDrawing(std::string name, std::string linux_path) {
  file_.name = std::move(name);
  file_.linux_path = std::move(linux_path);
  NoteDrawingVars();
}

void Host::NoteDrawingVars() { file_.dwg_vars = DwgVars(document_.sysvars()); }

void Host::FollowSaveAs() {
  std::string vars = DwgVars(document_.sysvars());
  if (vars == file_.dwg_vars) return;
  // SAVEAS wrote the drawing under a DOS name: that file is what was saved.
  file_.name = vars;
  file_.linux_path.clear();
  file_.dwg_vars = vars;
  std::string linux_path, saved;
  if (Files().Resolve(vars, &linux_path) && ReadWholeFile(linux_path, &saved)) {
    Fingerprint fingerprint;
    fingerprint.Add(saved);
    file_.saved_dxf = fingerprint.value();
  }
}

const std::string& Host::drawing_name() {
  FollowSaveAs();
  return file_.name;
}

bool Host::DrawingModified() {
  FollowSaveAs();
  uint64_t now = 0;
  // A drawing that cannot be written as DXF cannot be saved either; asking
  // would only end in a refusal.
  if (!DrawingDxfFingerprint(document_.drawing(), document_.sysvars(), &now)) return false;
  if (!file_.saved_dxf) {
    // Nothing was marked saved: the drawing is compared with a new one.
    static const uint64_t fresh = [] {
      Document blank;
      uint64_t fingerprint = 0;
      DrawingDxfFingerprint(blank.drawing(), blank.sysvars(), &fingerprint);
      return fingerprint;
    }();
    return now != fresh;
  }
  return now != *file_.saved_dxf;
}

void Host::MarkDrawingSaved() {
  FollowSaveAs();
  uint64_t fingerprint = 0;
  if (!DrawingDxfFingerprint(document_.drawing(), document_.sysvars(), &fingerprint)) {
    Fingerprint none;  // a drawing that cannot be written: an empty file's
    fingerprint = none.value();
  }
  file_.saved_dxf = fingerprint;
}

bool Host::SaveDrawing(std::string* why) {
  FollowSaveAs();
  std::string linux_path = file_.linux_path;
  if (linux_path.empty() && !Files().Resolve(file_.name, &linux_path)) {
    *why = "Cannot save " + file_.name + ": no drive holds it.";
    return false;
  }
  if (!SaveDxf(document_.drawing(), document_.sysvars(), linux_path, why, file_.name)) return false;
  MarkDrawingSaved();
  return true;
}

bool Host::MayLeaveDrawing() {
  if (!DrawingModified()) return true;
  for (;;) {
    Input in = console_.Ask("\nSave changes to " + drawing_name() + "? <Y>: ");
    if (!in.IsAnswer()) return false;
    std::string answer = UpperName(Trim(in.text(), kBlanksAndLineEnds));
    if (answer == "N" || answer == "NO") return true;
    if (answer.empty() || answer == "Y" || answer == "YES") {
      std::string why;
      if (!SaveDrawing(&why)) {
        transcript_.WriteLine(why);
        return false;  // the drawing stays, unsaved
      }
      transcript_.WriteLine("Saved " + file_.name + ".");
      return true;
    }
    transcript_.WriteLine("Answer Y or N.");
  }
}

void Host::Quit() {
  if (MayLeaveDrawing()) command_line_.Stop();
}

bool Host::RunSessionCommand(const std::string& name) {
  if (name == "NEW") {
    if (MayLeaveDrawing()) NewDrawing();
  } else if (name == "QUIT" || name == "EXIT") {
    Quit();
  } else if (name == "SAVE" || name == "QSAVE") {
    std::string why;
    if (SaveDrawing(&why)) transcript_.WriteLine("Saved " + file_.name + ".");
    else transcript_.WriteLine(why);
  } else if (name == "HELP" || name == "?") {
    transcript_.WriteLine(HelpText());
  } else {
    return false;
  }
  return true;
}

std::string Host::SessionCommandSummary() {
  std::string out;
  for (const SessionCommand& c : kSessionCommands) out += std::string(c.name) + "  " + c.help + "\n";
  return out;
}

std::vector<std::string> Host::SessionCommandNames() {
  std::vector<std::string> names;
  for (const SessionCommand& c : kSessionCommands) names.push_back(c.name);
  return names;
}

std::string Host::HelpText() {
  std::string commands = CommandSummary() + SessionCommandSummary();
  std::string out = "Commands:\n" +
                    Indented(commands);
  std::vector<std::string> functions = module_.RegisteredNames();
  std::sort(functions.begin(), functions.end());
  out += "Functions of the module (type as (NAME) or (NAME \"argument\")):\n";
  if (functions.empty()) out += "  (none: the module is not loaded)\n";
  for (const std::string& f : functions) out += "  (" + f + ")\n";
  out += "Functions of the host:\n" + Indented(HostFunctionSummary());
  std::string notes;
  if (User* user = console_.user()) Utf8ToBig5(user->HelpNotes(), &notes);
  out += notes;
  return out;
}

}  // namespace vorhost
