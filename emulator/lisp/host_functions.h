// host_functions.h - the functions the host's command language offers
// beside the language's own: those the installation provides for the
// module (W1 asks for a text, W2 lets the user edit a text file, ADS_HELP
// shows a help topic, ACAD_COLORDLG is the host's colour dialog), the
// system variables (GETVAR, SETVAR), the command line (COMMAND), a look
// at any dialog (DCL_PREVIEW) and the modules (ARXLOAD, ARXUNLOAD, ARX).
// One table defines them all; each reaches the host only through
// HostServices.
#ifndef VORHOST_LISP_HOST_FUNCTIONS_H
#define VORHOST_LISP_HOST_FUNCTIONS_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/answer.h"
#include "emulator/core/input.h"
#include "emulator/core/question.h"
#include "emulator/core/sysvars.h"
#include "emulator/lisp/interp.h"

namespace vorhost {

// What the host functions need of the host.
class HostServices {
 public:
  virtual ~HostServices() = default;

  // Shows prompt (Big5) and reads the user's answer.
  virtual Input Ask(std::string_view prompt) = 0;
  // The same for a question a front end may show in a window of its own
  // (Console::Ask); a front end without one answers the prompt.
  virtual Input AskQuestion(std::string_view prompt, const Question& question) = 0;
  // A help topic (Big5) printed, for a front end to show as well.
  virtual void ShowHelp(std::string_view topic, std::string_view text) = 0;
  // Prints host text (Big5): as it stands, or at the start of a line.
  virtual void Print(std::string_view text) = 0;
  virtual void PrintLine(std::string_view text) = 0;
  // Lets the user edit text (User::EditText); none when nobody plays the user.
  virtual std::optional<EditOutcome> EditText(std::string* text, std::string* why) = 0;

  // The document's variables, set as a program sets them (checked).
  virtual bool GetVariable(std::string_view name, SysValue* value) = 0;
  virtual bool SetVariable(std::string_view name, const SysValue& value, std::string* why) = 0;

  // A program's answers to the command line (ads_command), and cancelling
  // the command that is pending.
  virtual void FeedCommand(const std::vector<Answer>& items) = 0;
  virtual void CancelCommand() = 0;

  // Opens dialog name of a dialog file with no actions of its own and lets
  // the user work in it: the status it ended with, or none when it could
  // not be opened (the reason is in the transcript).
  virtual std::optional<int> PreviewDialog(const std::string& file, const std::string& name) = 0;

  // Loads or unloads a module by its name (ModuleLink::LoadApplication,
  // UnloadApplication); false with *why when refused. The file names of
  // the modules loaded.
  virtual bool LoadApplication(std::string_view name, std::string* why) = 0;
  virtual bool UnloadApplication(std::string_view name, std::string* why) = 0;
  virtual std::vector<std::string> Applications() = 0;
};

// Defines the host functions in lisp; host is not owned and must outlive
// the definitions.
void DefineHostFunctions(lisp::Interpreter& lisp, HostServices& host);

// One line per host function, for help texts: "NAME  what it does".
std::string HostFunctionSummary();

// The text of topic in a help file's contents (Big5), without its heading;
// false when the file has no such topic. A help file is a series of topics,
// each headed by a line "[NAME]"; lines starting with ";" are comments.
bool HelpTopic(std::string_view contents, std::string_view topic, std::string* text);

}  // namespace vorhost

#endif
