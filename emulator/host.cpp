// host.cpp - the emulated host: module messages, registered functions,
// the command prompt and the search path.
#include "emulator/host.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "emulator/core/encoding.h"
#include "emulator/core/hostfuncs.h"
#include "emulator/core/resbuf.h"
#include "emulator/platform/filesystem.h"

namespace vorhost {
namespace {

Host* current_host = nullptr;

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

// Parses what a user types at a system variable's prompt into its type.
bool ParseSysValue(std::string_view text, const SysValue& like, SysValue* out) {
  std::string t(text);
  char* end = nullptr;
  if (std::holds_alternative<short>(like)) {
    long v = std::strtol(t.c_str(), &end, 10);
    if (t.empty() || *end || v < -32768 || v > 32767) return false;
    *out = static_cast<short>(v);
  } else if (std::holds_alternative<double>(like)) {
    double v = std::strtod(t.c_str(), &end);
    if (t.empty() || *end) return false;
    *out = v;
  } else if (std::holds_alternative<Point3>(like)) {
    Point3 p{0, 0, 0};
    const char* s = t.c_str();
    for (int i = 0; i < 3; i++) {
      p[i] = std::strtod(s, &end);
      if (end == s) return false;
      s = end;
      if (*s != ',') break;
      s++;
    }
    if (*s) return false;
    *out = p;
  } else {
    *out = lisp::UpperName(t);
  }
  return true;
}

// A file named name (Big5) in the Linux folder dir, letters in any case.
std::optional<std::string> FindInFolder(const std::string& dir, std::string_view name) {
  std::string utf8_name = Big5ToUtf8(name);
  std::error_code ec;
  std::filesystem::path exact = std::filesystem::path(dir) / utf8_name;
  if (std::filesystem::is_regular_file(exact, ec)) return exact.string();
  std::string upper = lisp::UpperName(utf8_name);
  for (const auto& entry : std::filesystem::directory_iterator(dir, ec)) {
    if (lisp::UpperName(entry.path().filename().string()) == upper &&
        entry.is_regular_file(ec))
      return entry.path().string();
  }
  return std::nullopt;
}

}  // namespace

Host::Host(std::ostream* out) : transcript_(out), lisp_(std::make_unique<lisp::Interpreter>()) {
  previous_ = current_host;
  current_host = this;
  sysvars_.SetTextCheck([this](std::string_view name, std::string* value) {
    *value = lisp::UpperName(*value);
    if (name == "TEXTSTYLE") return tables().styles().Find(*value) != nullptr;
    if (name == "CLAYER") return tables().layers().Find(*value) != nullptr;
    return tables().linetypes().Find(*value) != nullptr;
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
  lisp_->Define("GETVAR", [this](const std::vector<lisp::Value>& args, lisp::Value* r,
                                 std::string* err) {
    if (args.size() != 1 || args[0].kind != lisp::Value::Kind::kString) {
      *err = args.size() != 1 ? "too few arguments" : "bad argument type";
      return false;
    }
    SysValue v;
    if (!sysvars_.Get(args[0].text, &v)) return true;  // nil
    if (auto* s = std::get_if<short>(&v)) *r = lisp::Value::Int(*s);
    else if (auto* d = std::get_if<double>(&v)) *r = lisp::Value::Real(*d);
    else if (auto* p = std::get_if<Point3>(&v))
      *r = lisp::Value::List({lisp::Value::Real((*p)[0]), lisp::Value::Real((*p)[1]),
                              lisp::Value::Real((*p)[2])});
    else *r = lisp::Value::String(std::get<std::string>(v));
    return true;
  });
  lisp_->Define("SETVAR", [this](const std::vector<lisp::Value>& args, lisp::Value* r,
                                 std::string* err) {
    if (args.size() != 2 || args[0].kind != lisp::Value::Kind::kString) {
      *err = args.size() != 2 ? "too few arguments" : "bad argument type";
      return false;
    }
    const lisp::Value& v = args[1];
    SysValue value;
    if (v.kind == lisp::Value::Kind::kInt) value = static_cast<short>(v.integer);
    else if (v.kind == lisp::Value::Kind::kReal) value = v.real;
    else if (v.kind == lisp::Value::Kind::kString) value = v.text;
    else if (v.kind == lisp::Value::Kind::kList && v.items.size() >= 2 && v.items.size() <= 3)
      value = Point3{v.items[0].Number(), v.items[1].Number(),
                     v.items.size() == 3 ? v.items[2].Number() : 0.0};
    std::string why;
    if (v.IsNil() || !sysvars_.Set(args[0].text, value, &why)) {
      *err = "AutoCAD rejected function";
      return false;
    }
    *r = v;
    return true;
  });
}

// ---- The module -------------------------------------------------------------

void Host::LoadModule(EntryPoint entry) {
  if (entry_) UnloadModule();
  entry_ = entry;
  unlocked_ = false;
  entry_(kInitAppMsg, app_id());
  drawing_open_ = true;
  entry_(kLoadDwgMsg, nullptr);
}

void Host::UnloadModule() {
  if (!entry_) return;
  EntryPoint entry = entry_;
  entry(kUnloadDwgMsg, nullptr);
  entry(kUnloadAppMsg, nullptr);
  for (const auto& [name, code] : registered_) lisp_->Undefine(name);
  registered_.clear();
  entry_ = nullptr;
}

void Host::NewDrawing() {
  if (entry_) entry_(kUnloadDwgMsg, nullptr);
  drawing_open_ = false;
  for (const auto& [name, code] : registered_) lisp_->Undefine(name);
  registered_.clear();
  drawing_ = Drawing();
  lisp_ = std::make_unique<lisp::Interpreter>();
  DefineBuiltins();
  drawing_open_ = true;
  if (entry_) entry_(kLoadDwgMsg, nullptr);
}

void Host::UnlockApplication(void* app_id) {
  if (app_id == &app_id_) unlocked_ = true;
}

// ---- Registered functions -----------------------------------------------------

int Host::Defun(std::string_view name, short code) {
  if (!drawing_open_ || name.empty()) return RTERROR;
  std::string upper = lisp::UpperName(name);
  std::erase_if(registered_, [&](const auto& r) { return r.first == upper; });
  registered_.emplace_back(upper, code);
  RegisterInLisp(upper, code);
  return RTNORM;
}

void Host::RegisterInLisp(const std::string& name, short code) {
  lisp_->Define(name, [this, code](const std::vector<lisp::Value>& args, lisp::Value* r,
                                   std::string* err) { return CallModule(code, args, r, err); });
}

int Host::Undef(std::string_view name, short code) {
  std::string upper = lisp::UpperName(name);
  auto it = std::find_if(registered_.begin(), registered_.end(),
                         [&](const auto& r) { return r.first == upper && r.second == code; });
  if (it == registered_.end()) return RTERROR;
  registered_.erase(it);
  lisp_->Undefine(upper);
  return RTNORM;
}

std::optional<short> Host::RegisteredCode(std::string_view name) const {
  std::string upper = lisp::UpperName(name);
  for (const auto& [n, code] : registered_)
    if (n == upper) return code;
  return std::nullopt;
}

bool Host::CallModule(int code, const std::vector<lisp::Value>& args, lisp::Value* result,
                      std::string* err) {
  if (!entry_) {
    *err = "null function";
    return false;
  }
  auto call = std::make_unique<ModuleCall>();
  call->code = code;
  resbuf** link = &call->args;
  for (const lisp::Value& arg : args) {
    *link = lisp::ToResbuf(arg);
    while (*link) link = &(*link)->rbnext;
  }
  calls_.push_back(std::move(call));
  entry_(kInvkSubrMsg, nullptr);
  std::unique_ptr<ModuleCall> done = std::move(calls_.back());
  calls_.pop_back();
  ReleaseList(done->args);
  if (done->failure) {
    *err = *done->failure;
    return false;
  }
  *result = done->result;
  return true;
}

// ---- The command line -----------------------------------------------------------

Input Host::Ask(std::string_view prompt, Asking asking) {
  if (asking == Asking::kCommand) transcript_.StartLine();
  transcript_.Write(prompt);
  Input in = user_ ? user_->Read(asking, prompt) : Input::Cancel();
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
  line = Trim(line);
  if (line.empty()) return;
  if (line.front() == '(' || line.front() == '\'') return EvaluateLine(line);
  if (line.front() == '!') return EvaluateLine(line.substr(1));
  RunCommand(line);
}

void Host::EvaluateLine(std::string_view line) {
  size_t pos = 0;
  while (pos < line.size() && !Trim(line.substr(pos)).empty()) {
    lisp::Value expr, value;
    std::string err;
    if (!lisp::Read(line, &pos, &expr, &err)) {
      transcript_.WriteLine("error: " + err);
      return;
    }
    if (!lisp_->Eval(expr, &value, &err)) {
      transcript_.WriteLine("error: " + err);
      transcript_.WriteLine(lisp::Print(expr));
      transcript_.WriteLine("*Cancel*");
      last_value_ = lisp::Value::Nil();
      return;
    }
    last_value_ = value;
    if (value.kind != lisp::Value::Kind::kVoid) transcript_.WriteLine(lisp::Print(value));
  }
}

void Host::RunCommand(std::string_view typed) {
  std::string name = lisp::UpperName(typed);
  if (!name.empty() && (name[0] == '-' || name[0] == '_' || name[0] == '.'))
    name.erase(0, 1);
  if (name == "NEW") {
    NewDrawing();
    return;
  }
  const SysVar* var = sysvars_.Find(name);
  if (!var) {
    transcript_.WriteLine("Unknown command \"" + name + "\".  Press F1 for help.");
    return;
  }
  if (var->read_only) {
    transcript_.WriteLine(name + " = " + FormatSysValue(var->value) + " (read only)");
    return;
  }
  for (;;) {
    Input in = Ask("\nNew value for " + name + " <" + FormatSysValue(var->value) + ">: ");
    if (in.kind != Input::Kind::kLine || Trim(in.text).empty()) return;
    SysValue value;
    std::string why = "Invalid value.";
    if (ParseSysValue(Trim(in.text), var->value, &value) && sysvars_.Set(name, value, &why))
      return;
    transcript_.WriteLine(why);
  }
}

void Host::Alert(std::string_view message) {
  transcript_.WriteLine("[Alert] " + std::string(message));
  if (user_) user_->Acknowledge(message);
}

// ---- Files ------------------------------------------------------------------------

std::string Host::ResourceDirectory() {
  if (const char* dir = std::getenv("VORHOST_RESOURCES"); dir && *dir) return dir;
  return VORHOST_RESOURCES;
}

std::vector<std::string> Host::SearchPath() const {
  std::vector<std::string> dirs;
  std::string linux_path;
  if (Files().Resolve(Files().CurrentDirectory(0), &linux_path)) dirs.push_back(linux_path);
  if (const char* acad = std::getenv("ACAD")) {
    std::string_view rest = acad;
    while (!rest.empty()) {
      size_t semi = rest.find(';');
      std::string_view dir = Trim(rest.substr(0, semi));
      rest = semi == std::string_view::npos ? std::string_view() : rest.substr(semi + 1);
      if (!dir.empty() && Files().Resolve(dir, &linux_path)) dirs.push_back(linux_path);
    }
  }
  dirs.push_back(ResourceDirectory());
  return dirs;
}

std::optional<std::string> Host::FindFile(std::string_view name) const {
  if (name.find_first_of("\\/:") != std::string_view::npos) {
    std::string linux_path;
    std::error_code ec;
    if (Files().Resolve(name, &linux_path) && std::filesystem::is_regular_file(linux_path, ec))
      return linux_path;
    return std::nullopt;
  }
  for (const std::string& dir : SearchPath())
    if (auto found = FindInFolder(dir, name)) return found;
  return std::nullopt;
}

}  // namespace vorhost
