// host.cpp - a session of the host: its parts put together, a new or
// opened drawing, and the host functions' way into the parts.
#include "emulator/session/host.h"

#include <filesystem>

#include "emulator/io/dxf.h"
#include "emulator/platform/textfile.h"
#include "emulator/platform/warnings.h"

namespace vorhost {
namespace {

Host* current_host = nullptr;

// A save of the module's that failed: the module is not told more than
// fclose's result, so the host tells the user.
void ReportSaveFailure(std::string_view message) {
  if (current_host) current_host->transcript().WriteLine(message);
}

// What the host functions of the command language reach of the host.
class Services : public HostServices {
 public:
  explicit Services(Host& host) : host_(host) {}

  Input Ask(std::string_view prompt) override { return host_.console().Ask(prompt); }
  Input AskQuestion(std::string_view prompt, const Question& question) override {
    return host_.console().Ask(prompt, question);
  }
  void ShowHelp(std::string_view topic, std::string_view text) override { host_.console().ShowHelp(topic, text); }
  void Print(std::string_view text) override { host_.transcript().Write(text); }
  void PrintLine(std::string_view text) override { host_.transcript().WriteLine(text); }
  std::optional<EditOutcome> EditText(std::string* text, std::string* why) override {
    User* user = host_.console().user();
    if (!user) return std::nullopt;
    return user->EditText(text, why);
  }
  bool GetVariable(std::string_view name, SysValue* value) override {
    return host_.document().sysvars().Get(name, value);
  }
  bool SetVariable(std::string_view name, const SysValue& value, std::string* why) override {
    return host_.document().SetVariable(name, value, why);
  }
  void FeedCommand(const std::vector<Answer>& items) override { host_.commands().Feed(items); }
  void CancelCommand() override { host_.commands().Cancel(); }
  std::optional<int> PreviewDialog(const std::string& file, const std::string& name) override;
  bool LoadApplication(std::string_view name, std::string* why) override {
    return host_.module().LoadApplication(name, why);
  }
  bool UnloadApplication(std::string_view name, std::string* why) override {
    return host_.module().UnloadApplication(name, why);
  }
  std::vector<std::string> Applications() override { return host_.module().Applications(); }

 private:
  Host& host_;
};

std::optional<int> Services::PreviewDialog(const std::string& file, const std::string& name) {
  DialogManager& dialogs = host_.dialogs();
  int id = 0, status = 0;
  ads_hdlg dialog = nullptr;
  if (dialogs.Load(file, &id) != RTNORM) return std::nullopt;
  std::optional<int> result;
  if (dialogs.New(name, id, NULLCB, &dialog) == RTNORM && dialogs.Start(dialog, &status) == RTNORM)
    result = status;
  dialogs.Unload(id);
  return result;
}

}  // namespace

Host::Host(std::ostream* out)
    : transcript_(out), console_(transcript_), module_(lisp_), dialogs_(transcript_, console_),
      commands_(transcript_, console_, document_, dialogs_, module_,
                [this](const std::string& name) { return RunSessionCommand(name); }),
      command_line_(transcript_, console_, lisp_, commands_), services_(std::make_unique<Services>(*this)) {
  previous_ = current_host;
  current_host = this;
  SetSaveReporter(&ReportSaveFailure);
  // A host is a session: the files the module reads are warned about once
  // in it, on the command line of whichever host is current.
  SetWarningSink([](std::string_view text) {
    if (Host* host = Current()) host->transcript().Write(text);
  });
  DefineHostFunctions(lisp_, *services_);
  NoteDrawingVars();
}

Host::~Host() {
  module_.Unload();
  if (current_host == this) current_host = previous_;
}

Host* Host::Current() { return current_host; }

void Host::NewDrawing() { ReplaceDocument(Document()); }

bool Host::OpenDrawing(const std::string& linux_path, std::string* err) {
  Drawing drawing;
  SysVarTable vars;
  if (!OpenDxf(linux_path, &drawing, &vars, err)) return false;
  vars.Force("DWGNAME", std::filesystem::path(linux_path).filename().string());
  ReplaceDocument(Document(std::move(drawing), std::move(vars)));
  return true;
}

void Host::ReplaceDocument(Document document) {
  commands_.Cancel();
  module_.CloseDrawing();
  document_ = std::move(document);
  lisp_.Reset();
  DefineHostFunctions(lisp_, *services_);
  module_.OpenDrawing();
  NoteDrawingVars();
  if (file_.saved_dxf) MarkDrawingSaved();
}

}  // namespace vorhost
