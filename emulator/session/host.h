// host.h - the emulated CAD host: one session of it, made of parts that
// each keep one job, and the current host that the module's ads_* calls act
// on. vorhost makes one; tests make one per test.
//
//   console     the command line between the host and whoever plays the user
//   document    the drawing, its variables, selection sets, last point and text
//   lisp        the command language, with the host's functions (host_functions.h)
//   module      the module's entry point, its registered functions, its calls
//   commands    the command in progress (CommandRunner)
//   dialogs     the dialog runtime
//   command_line  the command prompt, where the user types commands and expressions
//
// See docs/emulator.md for how a user's action flows through them.
#ifndef VORHOST_SESSION_HOST_H
#define VORHOST_SESSION_HOST_H

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/transcript.h"
#include "emulator/dialogs/dialogs.h"
#include "emulator/drawing/document.h"
#include "emulator/lisp/host_functions.h"
#include "emulator/lisp/interp.h"
#include "emulator/session/command_line.h"
#include "emulator/session/command_runner.h"
#include "emulator/session/console.h"
#include "emulator/session/module_link.h"

namespace vorhost {

class Host {
 public:
  // A host with a new drawing and no module, printing its transcript to
  // out (not owned; may be null). It becomes the current host.
  explicit Host(std::ostream* out = nullptr);
  // Unloads the module if it is loaded; the previous host becomes current.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // The host that the ads_* functions act on; null when there is none.
  static Host* Current();

  Transcript& transcript() { return transcript_; }
  Console& console() { return console_; }
  Document& document() { return document_; }
  lisp::Interpreter& lisp() { return lisp_; }
  ModuleLink& module() { return module_; }
  CommandRunner& commands() { return commands_; }
  DialogManager& dialogs() { return dialogs_; }
  CommandLine& command_line() { return command_line_; }

  // Closes the drawing (message 4) and opens a new, empty one (message 3):
  // the command language starts afresh, as the host does for each drawing.
  void NewDrawing();
  // Replaces the drawing by the DXF file at linux_path, with the header
  // variables it holds, as NewDrawing does; false with *err (and the drawing
  // unchanged) when the file cannot be read.
  bool OpenDrawing(const std::string& linux_path, std::string* err);

  // The drawing's file: the name the user knows it by (Big5: a DOS path,
  // or the path given on vorhost's command line) and the Linux path it is
  // written to ("" to find the DOS path on the drives when saving). A new
  // host's drawing is C:\DRAWING.DXF; SAVEAS names it afresh.
  void NameDrawing(std::string name, std::string linux_path);
  const std::string& drawing_name();
  // Whether the drawing differs from what it was when it was last saved,
  // or opened or started once MarkDrawingSaved was called; before that,
  // whether it differs from a new drawing.
  bool DrawingModified();
  // The drawing as it stands is what its file holds; from now on each
  // drawing opened or started counts as saved as it comes.
  void MarkDrawingSaved();
  // Writes the drawing to its file; false with *why (the host's message).
  bool SaveDrawing(std::string* why);

  // The commands that act on the session rather than on the drawing: NEW,
  // QUIT and EXIT (asking to save unsaved changes), SAVE and QSAVE (the
  // drawing to its file), HELP and "?". False for any other name.
  bool RunSessionCommand(const std::string& name);
  // What HELP prints (Big5): the commands, the module's functions, the
  // host's functions, and what the user adds (User::HelpNotes).
  std::string HelpText();
  // One line per command of the session: "NAME  what it does".
  static std::string SessionCommandSummary();
  // The names of the commands of the session, for completion.
  static std::vector<std::string> SessionCommandNames();

 private:
  // Closes the drawing (message 4), puts in the new one, starts the command
  // language afresh and opens it (message 3).
  void ReplaceDocument(Document document);
  // Before the drawing is left (QUIT, EXIT, NEW): asks whether to save
  // unsaved changes, and saves on yes; false when the drawing must stay
  // (Escape at the question, or a save that failed).
  bool MayLeaveDrawing();
  // QUIT and EXIT: ends the command line once the drawing may be left.
  void Quit();
  // Takes a name SAVEAS gave the drawing since it was last looked at.
  void FollowSaveAs();
  // Notes the drawing's DWGPREFIX and DWGNAME, for FollowSaveAs to compare.
  void NoteDrawingVars();

  // The drawing's file and what it held when last opened or saved.
  struct DrawingFile {
    std::string name = "C:\\DRAWING.DXF";
    std::string linux_path;
    std::string dwg_vars;   // DWGPREFIX and DWGNAME when it was named
    // The fingerprint of the drawing's DXF when last opened or saved: the
    // drawing has changes when its DXF now differs (a whole copy would
    // double the memory of a large drawing).
    std::optional<uint64_t> saved_dxf;
  };

  Host* previous_ = nullptr;
  Transcript transcript_;
  Console console_;
  Document document_;
  lisp::Interpreter lisp_;
  ModuleLink module_;
  DialogManager dialogs_;
  CommandRunner commands_;
  CommandLine command_line_;
  std::unique_ptr<HostServices> services_;  // what the host functions reach
  DrawingFile file_;
};

}  // namespace vorhost

#endif
