// alloc.h - the heaps the host hands out: the module's own heap (acad_malloc
// and friends) and the host's result buffers, each with injectable failures
// so that tests can exercise the module's out-of-memory paths.
#ifndef VORHOST_CORE_ALLOC_H
#define VORHOST_CORE_ALLOC_H

#include <cstddef>

namespace vorhost {

enum class Heap {
  kModule,  // acad_malloc, acad_calloc, acad_realloc, acad__strdup
  kHost,    // result buffers and their texts (ads_newrb, ads_buildlist, ...)
};

// Makes the allocation after the next `skip` ones on heap fail, once.
void FailAllocation(Heap heap, int skip = 0);

// Forgets any pending failure on both heaps.
void ClearAllocationFailures();

// Consumes one allocation on heap: false when it is the one set to fail.
bool AllocationAllowed(Heap heap);

// Blocks of the module heap not yet released (for leak checks in tests).
long LiveModuleBlocks();

// Host-side allocation that honours injected failures; memory from these is
// released with std::free.
void* HostAlloc(std::size_t size);
char* HostStrdup(const char* text);

}  // namespace vorhost

#endif
