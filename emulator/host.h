// host.h - the emulated host by its former place, for code written before
// the host was split into its parts (the benchmarks); new code includes
// emulator/session/host.h.
#ifndef VORHOST_HOST_H
#define VORHOST_HOST_H

#include "emulator/session/host.h"

#endif
