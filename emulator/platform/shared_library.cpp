// shared_library.cpp - dlopen, dlsym and dlclose.
#include "emulator/platform/shared_library.h"

#include <dlfcn.h>

namespace vorhost {

std::unique_ptr<SharedLibrary> SharedLibrary::Open(const std::string& linux_path, std::string* err) {
  // A name without a folder would send dlopen to the system's library path.
  std::string path = linux_path.find('/') == std::string::npos ? "./" + linux_path : linux_path;
  int flags = RTLD_NOW | RTLD_LOCAL;
#ifdef VORHOST_KEEP_LIBRARIES
  // The sanitizer build: a leak found at exit in a library already closed
  // would be reported without its function names.
  flags |= RTLD_NODELETE;
#endif
  void* handle = dlopen(path.c_str(), flags);
  if (!handle) {
    const char* why = dlerror();
    *err = why ? why : "cannot be loaded";
    return nullptr;
  }
  return std::unique_ptr<SharedLibrary>(new SharedLibrary(handle));
}

SharedLibrary::~SharedLibrary() {
  if (!keep_) dlclose(handle_);
}

void* SharedLibrary::Find(const char* symbol) const { return dlsym(handle_, symbol); }

}  // namespace vorhost
