// module_link.cpp - loading the module from its file, messages to it,
// registrations and calls.
#include "emulator/session/module_link.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "emulator/core/text.h"
#include "emulator/platform/search_path.h"
#include "host/ads.h"

namespace vorhost {
namespace {

using ApiVersion = long (*)();

std::string Quoted(std::string_view name) { return "\"" + std::string(name) + "\""; }

std::string Hex(long value) {
  char text[32];
  std::snprintf(text, sizeof text, "0x%lX", static_cast<unsigned long>(value));
  return text;
}

// A module's name as ARXUNLOAD compares it: without folder and extension.
std::string BareName(std::string_view name) {
  size_t base = name.find_last_of("\\/:");
  if (base != std::string_view::npos) name.remove_prefix(base + 1);
  return std::string(name.substr(0, name.rfind('.')));
}

}  // namespace

bool ModuleLink::LoadApplication(std::string_view name, std::string* err) {
  if (library_ && SameName(BareName(name), BareName(name_))) {
    *err = "Application " + Quoted(name_) + " is already loaded.";
    return false;
  }
  std::optional<std::string> found = FindApplication(name);
  if (!found) {
    *err = "Cannot find application " + Quoted(name) + ".";
    return false;
  }
  return LoadFile(*found, err);
}

bool ModuleLink::LoadFile(const std::string& linux_path, std::string* err) {
  std::string name = std::filesystem::path(linux_path).filename().string();
  if (entry_) {
    if (SameName(BareName(name), BareName(name_)))
      *err = "Application " + Quoted(name) + " is already loaded.";
    else if (name_.empty())  // linked into the program: it stays
      *err = "Another application is loaded.";
    else
      *err = "Another application is loaded: unload " + Quoted(name_) + " first.";
    return false;
  }
  std::unique_ptr<SharedLibrary> library = SharedLibrary::Open(linux_path, err);
  if (!library) {
    *err = "Cannot load " + Quoted(linux_path) + ": " + *err;
    return false;
  }
  auto version = reinterpret_cast<ApiVersion>(library->Find("acrxGetApiVersion"));
  auto entry = reinterpret_cast<EntryPoint>(library->Find("acrxEntryPoint"));
  if (!version || !entry) {
    *err = Quoted(name) + " is not an application: it does not export " +
           (entry ? "acrxGetApiVersion" : "acrxEntryPoint") + ".";
    return false;
  }
  if (long wanted = version(); wanted != ACRX_API_VERSION) {
    *err = Quoted(name) + " is built for interface version " + Hex(wanted) +
           "; this host offers " + Hex(ACRX_API_VERSION) + ".";
    return false;
  }
  Load(entry);
  library_ = std::move(library);
  name_ = name;
  return true;
}

bool ModuleLink::UnloadApplication(std::string_view name, std::string* err) {
  if (!library_ || !SameName(BareName(name), BareName(name_))) {
    *err = "Application " + Quoted(name) + " is not loaded.";
    return false;
  }
  if (!calls_.empty()) {
    *err = "Application " + Quoted(name_) + " is running and cannot be unloaded.";
    return false;
  }
  if (!unlocked_) {
    *err = "Application " + Quoted(name_) + " is locked and cannot be unloaded.";
    return false;
  }
  Unload();
  return true;
}

std::vector<std::string> ModuleLink::Applications() const {
  if (!library_) return {};
  return {name_};
}

void ModuleLink::Load(EntryPoint entry) {
  if (entry_) Unload();
  entry_ = entry;
  unlocked_ = false;
  entry_(kInitAppMsg, app_id());
  drawing_open_ = true;
  entry_(kLoadDwgMsg, nullptr);
}

void ModuleLink::Unload() {
  if (!entry_) return;
  EntryPoint entry = entry_;
  entry(kUnloadDwgMsg, nullptr);
  entry(kUnloadAppMsg, nullptr);
  DropRegistrations();
  entry_ = nullptr;
  if (library_ && !unlocked_) library_->Keep();
  library_.reset();
  name_.clear();
}

void ModuleLink::CloseDrawing() {
  if (entry_) entry_(kUnloadDwgMsg, nullptr);
  drawing_open_ = false;
  DropRegistrations();
}

void ModuleLink::OpenDrawing() {
  drawing_open_ = true;
  if (entry_) entry_(kLoadDwgMsg, nullptr);
}

void ModuleLink::DropRegistrations() {
  for (const auto& [name, code] : registered_) lisp_.Undefine(name);
  registered_.clear();
}

void ModuleLink::Unlock(void* app_id) {
  if (app_id == &app_id_) unlocked_ = true;
}

int ModuleLink::Defun(std::string_view name, short code) {
  if (!drawing_open_ || name.empty()) return RTERROR;
  std::string upper = UpperName(name);
  std::erase_if(registered_, [&](const auto& r) { return r.first == upper; });
  registered_.emplace_back(upper, code);
  lisp_.Define(upper, [this, code](const std::vector<lisp::Value>& args, lisp::Value* r, std::string* err) {
    return Call(code, args, r, err);
  });
  return RTNORM;
}

int ModuleLink::Undef(std::string_view name, short code) {
  std::string upper = UpperName(name);
  auto it = std::find_if(registered_.begin(), registered_.end(),
                         [&](const auto& r) { return r.first == upper && r.second == code; });
  if (it == registered_.end()) return RTERROR;
  registered_.erase(it);
  lisp_.Undefine(upper);
  return RTNORM;
}

std::vector<std::string> ModuleLink::RegisteredNames() const {
  std::vector<std::string> names;
  for (const auto& [name, code] : registered_) names.push_back(name);
  return names;
}

std::optional<short> ModuleLink::RegisteredCode(std::string_view name) const {
  std::string upper = UpperName(name);
  for (const auto& [n, code] : registered_)
    if (n == upper) return code;
  return std::nullopt;
}

bool ModuleLink::Call(int code, const std::vector<lisp::Value>& args, lisp::Value* result,
                      std::string* err) {
  if (!entry_) {
    *err = "null function";
    return false;
  }
  auto call = std::make_unique<ModuleCall>();
  call->code = code;
  resbuf* head = nullptr;
  resbuf** link = &head;
  for (const lisp::Value& arg : args) {
    *link = lisp::ToResbuf(arg);
    while (*link) link = &(*link)->rbnext;
  }
  call->args.reset(head);
  calls_.push_back(std::move(call));
  entry_(kInvkSubrMsg, nullptr);
  std::unique_ptr<ModuleCall> done = std::move(calls_.back());
  calls_.pop_back();
  if (done->failure) {
    *err = *done->failure;
    return false;
  }
  *result = std::move(done->result);
  return true;
}

}  // namespace vorhost
