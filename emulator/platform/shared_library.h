// shared_library.h - a shared library loaded into the process (dlopen),
// closed again when its owner lets it go.
#ifndef VORHOST_PLATFORM_SHARED_LIBRARY_H
#define VORHOST_PLATFORM_SHARED_LIBRARY_H

#include <memory>
#include <string>

namespace vorhost {

class SharedLibrary {
 public:
  // Loads the library at linux_path with every symbol it needs bound at
  // once, so that one the program does not offer fails here rather than at
  // the first call; null with *err (the loader's reason) when it cannot.
  static std::unique_ptr<SharedLibrary> Open(const std::string& linux_path, std::string* err);
  // Closes the library: none of its code or data may be in use.
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  // The address of a symbol of the library (or of a library it needs, never
  // of the program), or null.
  void* Find(const char* symbol) const;
  // Leaves the library in the process for good: the destructor no longer
  // closes it (for a module that never allowed its unloading).
  void Keep() { keep_ = true; }

 private:
  explicit SharedLibrary(void* handle) : handle_(handle) {}

  void* handle_;
  bool keep_ = false;
};

}  // namespace vorhost

#endif
