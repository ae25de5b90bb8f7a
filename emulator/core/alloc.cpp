// alloc.cpp - the acad_* allocator exported to the module, and host memory.
#include "emulator/core/alloc.h"

#include <cstdlib>
#include <cstring>

#include "host/ads.h"

namespace vorhost {
namespace {

struct Faults {
  int countdown[2] = {-1, -1};  // -1: nothing pending
};

Faults& faults() {
  static Faults f;
  return f;
}

long live_module_blocks = 0;

}  // namespace

void FailAllocation(Heap heap, int skip) {
  faults().countdown[static_cast<int>(heap)] = skip < 0 ? 0 : skip;
}

void ClearAllocationFailures() { faults() = Faults{}; }

bool AllocationAllowed(Heap heap) {
  int& n = faults().countdown[static_cast<int>(heap)];
  if (n < 0) return true;
  if (n-- > 0) return true;
  return false;  // n is now -1: the failure happens once
}

long LiveModuleBlocks() { return live_module_blocks; }

void* HostAlloc(std::size_t size) {
  if (!AllocationAllowed(Heap::kHost)) return nullptr;
  return std::calloc(1, size ? size : 1);
}

char* HostStrdup(const char* text) {
  std::size_t len = std::strlen(text);
  char* copy = static_cast<char*>(HostAlloc(len + 1));
  if (copy) std::memcpy(copy, text, len + 1);
  return copy;
}

}  // namespace vorhost

using vorhost::Heap;

extern "C" void* acad_malloc(size_t size) {
  if (!vorhost::AllocationAllowed(Heap::kModule)) return nullptr;
  void* block = std::malloc(size ? size : 1);
  if (block) ++vorhost::live_module_blocks;
  return block;
}

extern "C" void* acad_calloc(size_t count, size_t size) {
  if (!vorhost::AllocationAllowed(Heap::kModule)) return nullptr;
  void* block = std::calloc(count ? count : 1, size ? size : 1);
  if (block) ++vorhost::live_module_blocks;
  return block;
}

extern "C" void* acad_realloc(void* block, size_t size) {
  if (!block) return acad_malloc(size);
  if (!vorhost::AllocationAllowed(Heap::kModule)) return nullptr;
  return std::realloc(block, size ? size : 1);
}

extern "C" void acad_free(void* block) {
  if (!block) return;
  --vorhost::live_module_blocks;
  std::free(block);
}

extern "C" char* acad__strdup(const char* s) {
  std::size_t len = std::strlen(s);
  char* copy = static_cast<char*>(acad_malloc(len + 1));
  if (copy) std::memcpy(copy, s, len + 1);
  return copy;
}
