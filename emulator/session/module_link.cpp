// module_link.cpp - messages to the module, registrations and calls.
#include "emulator/session/module_link.h"

#include <algorithm>

#include "emulator/core/text.h"
#include "host/ads.h"

namespace vorhost {

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
