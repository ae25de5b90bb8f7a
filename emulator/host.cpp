// host.cpp - the emulated host: module messages, registered functions,
// the command prompt and the search path.
#include "emulator/host.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "emulator/core/encoding.h"
#include "emulator/core/hostfuncs.h"
#include "emulator/core/numbers.h"
#include "emulator/core/text.h"
#include "emulator/core/resbuf.h"
#include "emulator/io/dxf.h"
#include "emulator/platform/filesystem.h"
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

// A line typed at the command prompt without its blanks and line end.
std::string_view TrimLine(std::string_view s) { return Trim(s, " \t\r"); }

// A list of two or three numbers: a point as the command language gives one.
bool IsPointValue(const lisp::Value& v) {
  if (v.kind != lisp::Value::Kind::kList || v.dotted || v.items.size() < 2 || v.items.size() > 3)
    return false;
  for (const lisp::Value& item : v.items)
    if (!item.IsNumber()) return false;
  return true;
}

}  // namespace

Host::Host(std::ostream* out)
    : transcript_(out), link_(lisp_),
      dialogs_(std::make_unique<DialogManager>(*this)) {
  previous_ = current_host;
  current_host = this;
  SetSaveReporter(&ReportSaveFailure);
  // A host is a session: the files the module reads are warned about once
  // in it, on the command line of whichever host is current.
  SetWarningSink([](std::string_view text) {
    if (Host* host = Current()) host->transcript().Write(text);
  });
  DefineBuiltins();
}

Host::~Host() {
  UnloadModule();
  if (current_host == this) current_host = previous_;
}

Host* Host::Current() { return current_host; }

void Host::DefineBuiltins() {
  DefineHostFunctions(*this);
  // (dcl_preview "FILE.DCL" "DIALOG"): shows a dialog with no actions of its
  // own, for a look at it; gives the status it ended with, or nil.
  lisp_.Define("DCL_PREVIEW", [this](const std::vector<lisp::Value>& args, lisp::Value* r, std::string* err) {
    if (args.size() != 2 || args[0].kind != lisp::Value::Kind::kString || args[1].kind != lisp::Value::Kind::kString) {
      *err = "bad argument type";
      return false;
    }
    int id = 0, status = 0;
    ads_hdlg dialog = nullptr;
    if (dialogs_->Load(args[0].text, &id) != RTNORM) return true;
    if (dialogs_->New(args[1].text, id, NULLCB, &dialog) == RTNORM && dialogs_->Start(dialog, &status) == RTNORM)
      *r = lisp::Value::Int(status);
    dialogs_->Unload(id);
    return true;
  });
  // (command "LINE" '(0 0) '(10 0) ""): answers fed as a program feeds them.
  lisp_.Define("COMMAND", [this](const std::vector<lisp::Value>& args, lisp::Value*, std::string*) {
    std::vector<Answer> items;
    for (const lisp::Value& v : args) {
      using K = lisp::Value::Kind;
      if (v.kind == K::kString) items.push_back(Answer::Text(v.text));
      else if (v.kind == K::kInt) items.push_back(Answer::OfInt(v.integer));
      else if (v.kind == K::kReal) items.push_back(Answer::OfReal(v.real));
      else if (IsPointValue(v))
        items.push_back(Answer::OfPoint({v.items[0].Number(), v.items[1].Number(),
                                         v.items.size() == 3 ? v.items[2].Number() : 0.0}));
      else if (v.kind == K::kEname) {
        Answer a;
        a.kind = Answer::Kind::kName;
        a.entities = {EntityId(v.ename)};
        items.push_back(a);
      } else items.push_back(Answer::Enter());
    }
    if (items.empty()) CancelCommand();
    else FeedCommand(items);
    return true;
  });
  lisp_.Define("GETVAR", [this](const std::vector<lisp::Value>& args, lisp::Value* r,
                                 std::string* err) {
    if (args.size() != 1 || args[0].kind != lisp::Value::Kind::kString) {
      *err = args.size() != 1 ? "too few arguments" : "bad argument type";
      return false;
    }
    SysValue v;
    if (!document_.sysvars().Get(args[0].text, &v)) return true;  // nil
    if (auto* s = std::get_if<short>(&v)) *r = lisp::Value::Int(*s);
    else if (auto* d = std::get_if<double>(&v)) *r = lisp::Value::Real(*d);
    else if (auto* p = std::get_if<Point3>(&v))
      *r = lisp::Value::List({lisp::Value::Real((*p)[0]), lisp::Value::Real((*p)[1]),
                              lisp::Value::Real((*p)[2])});
    else *r = lisp::Value::String(std::get<std::string>(v));
    return true;
  });
  lisp_.Define("SETVAR", [this](const std::vector<lisp::Value>& args, lisp::Value* r,
                                 std::string* err) {
    if (args.size() != 2 || args[0].kind != lisp::Value::Kind::kString) {
      *err = args.size() != 2 ? "too few arguments" : "bad argument type";
      return false;
    }
    const lisp::Value& v = args[1];
    SysValue value;
    bool fits = true;  // an integer past 16 bits is refused, not wrapped
    if (v.kind == lisp::Value::Kind::kInt) {
      fits = IsShort(v.integer);
      value = static_cast<short>(v.integer);
    } else if (v.kind == lisp::Value::Kind::kReal) {
      value = v.real;
    } else if (v.kind == lisp::Value::Kind::kString) {
      value = v.text;
    } else if (IsPointValue(v)) {
      value = Point3{v.items[0].Number(), v.items[1].Number(),
                     v.items.size() == 3 ? v.items[2].Number() : 0.0};
    } else {
      fits = false;
    }
    std::string why;
    if (!fits || !document_.SetVariable(args[0].text, value, &why)) {
      *err = "the host rejected the value";
      return false;
    }
    *r = v;
    return true;
  });
}

// ---- The module -------------------------------------------------------------

void Host::NewDrawing() { ReplaceDocument(Document()); }

bool Host::OpenDrawing(const std::string& linux_path, std::string* err) {
  Drawing drawing;
  SysVarTable vars;
  if (!OpenDxf(linux_path, &drawing, &vars, err)) return false;
  std::filesystem::path path(linux_path);
  std::string name = path.filename().string();
  vars.Force("DWGNAME", name);
  ReplaceDocument(Document(std::move(drawing), std::move(vars)));
  return true;
}

void Host::ReplaceDocument(Document document) {
  CancelCommand();
  link_.CloseDrawing();
  document_ = std::move(document);
  lisp_.Reset();
  DefineBuiltins();
  link_.OpenDrawing();
}

// ---- The command line -----------------------------------------------------------

Input Host::Ask(std::string_view prompt, Asking asking) {
  if (asking == Asking::kCommand) transcript_.StartLine();
  transcript_.Write(prompt);
  size_t shown = transcript_.text().size();
  Input in = user_ ? user_->Read(asking, prompt) : Input::Cancel();
  if (transcript_.text().size() != shown && in.kind != Input::Kind::kEnd) {
    // Something was printed while the user was being asked (a script's
    // #show): ask again on a line of its own, so the answer follows its prompt.
    std::string_view again = prompt;
    while (!again.empty() && again.front() == '\n') again.remove_prefix(1);
    transcript_.StartLine();
    transcript_.Write(again);
  }
  // The answer stays on the prompt's line: whatever the host prints next
  // starts a line of its own, as texts and prompts begin with a line feed.
  switch (in.kind) {
    case Input::Kind::kLine:
      if (echo_answers_) transcript_.Write(in.text);
      else transcript_.Record(in.text + "\n");
      break;
    case Input::Kind::kCancel: transcript_.Write("*Cancel*"); break;
    case Input::Kind::kEnd: transcript_.StartLine(); break;
  }
  return in;
}

void Host::Run() {
  for (;;) {
    Input in = Ask("Command: ", Asking::kCommand);
    if (in.kind == Input::Kind::kEnd) return;
    if (in.kind == Input::Kind::kLine) Execute(in.text);
  }
}

void Host::Execute(std::string_view line) {
  line = TrimLine(line);
  if (line.empty()) return;
  if (line.front() == '(' || line.front() == '\'') return EvaluateLine(line);
  if (line.front() == '!') return EvaluateLine(line.substr(1));
  RunCommand(line);
}

void Host::EvaluateLine(std::string_view line) {
  size_t pos = 0;
  while (pos < line.size() && !TrimLine(line.substr(pos)).empty()) {
    lisp::Value expr, value;
    std::string err;
    if (!lisp::Read(line, &pos, &expr, &err)) {
      transcript_.WriteLine("error: " + err);
      return;
    }
    if (!lisp_.Eval(expr, &value, &err)) {
      transcript_.WriteLine("error: " + err);
      transcript_.WriteLine(lisp::Print(expr));
      transcript_.WriteLine("*Cancel*");
      last_value_ = lisp::Value::Nil();
      return;
    }
    last_value_ = value;
    if (value.kind != lisp::Value::Kind::kVoid) transcript_.WriteLine(lisp::Print(value));
    // A command that a program left pending goes on with the user.
    FinishCommand();
  }
}

// ---- Commands ----------------------------------------------------------------------

bool Host::StartCommand(std::string_view typed, bool echo) {
  std::string name = UpperName(TrimLine(typed));
  while (!name.empty() && (name[0] == '-' || name[0] == '_' || name[0] == '.')) name.erase(0, 1);
  if (name == "NEW") {  // replaces the drawing and the command language with it
    NewDrawing();
    return true;
  }
  std::unique_ptr<Command> command = MakeCommand(*this, name);
  if (!command) {
    transcript_.WriteLine("Unknown command \"" + name + "\".  Press F1 for help.");
    return false;
  }
  command_ = std::move(command);
  command_echo_ = echo;
  if (command_->Begin() == Step::kDone) command_.reset();
  return true;
}

void Host::RunCommand(std::string_view typed) {
  if (StartCommand(typed, true)) FinishCommand();
}

void Host::FinishCommand() {
  command_echo_ = true;
  while (command_) {
    Input in = Ask(command_->Prompt());
    if (in.kind != Input::Kind::kLine) {
      CancelCommand();
      return;
    }
    switch (command_->Feed(Answer::Text(in.text))) {
      case Step::kDone: command_.reset(); break;
      case Step::kReject: transcript_.WriteLine(command_->refusal()); break;
      case Step::kAsk: break;
    }
  }
}

void Host::CancelCommand() {
  if (!command_) return;
  std::unique_ptr<Command> command = std::move(command_);
  command->Cancelled();
}

int Host::FeedCommand(const std::vector<Answer>& items) {
  if (dialogs_->any_open()) {
    transcript_.WriteLine("Commands cannot run while a dialog is open.");
    return RTERROR;
  }
  SysValue echo;
  bool echo_on = !document_.sysvars().Get("CMDECHO", &echo) || std::get<short>(echo) != 0;
  for (const Answer& item : items) {
    if (!command_) {
      if (item.kind != Answer::Kind::kText || item.IsEnter()) return RTREJ;
      if (echo_on) transcript_.WriteLine("Command: " + item.text);
      if (!StartCommand(item.text, echo_on)) return RTREJ;
      continue;
    }
    Answer answer = item;
    if (item.kind == Answer::Kind::kText && item.text == "\\") {  // PAUSE: the user answers
      Input in = Ask(command_->Prompt());
      if (in.kind != Input::Kind::kLine) {
        CancelCommand();
        return RTCAN;
      }
      answer = Answer::Text(in.text);
    } else if (command_echo_) {
      transcript_.Write(command_->Prompt());
      transcript_.Write(answer.Echo());
    }
    switch (command_->Feed(answer)) {
      case Step::kDone:
        command_.reset();
        command_echo_ = true;  // what follows is no longer the program's command
        break;
      case Step::kAsk: break;
      case Step::kReject:
        transcript_.WriteLine(command_->refusal());
        CancelCommand();
        transcript_.WriteLine("*Cancel*");
        return RTREJ;
    }
  }
  return RTNORM;
}

void Host::CommandMessage(std::string_view text) {
  if (command_echo_) transcript_.WriteLine(text);
}

void Host::Alert(std::string_view message) {
  transcript_.WriteLine("[Alert] " + std::string(message));
  if (user_) user_->Acknowledge(message);
}

}  // namespace vorhost
