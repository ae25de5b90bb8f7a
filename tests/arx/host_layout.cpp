// host_layout.cpp - compiled with vormis.arx (cmake/arx), never run: the
// build fails when the structures the module shares with the host are not
// laid out as the 32-bit host lays them out (pointers and long of 4 bytes,
// a double aligned to 8 inside a structure).
#include <stddef.h>

#include "ads.h"

static_assert(sizeof(void *) == 4 && sizeof(long) == 4, "a 32-bit target");
static_assert(sizeof(ads_name) == 8 && sizeof(ads_point) == 24, "names and points");
static_assert(sizeof(ads_binary) == 8, "ads_binary");
static_assert(sizeof(ads_u_val) == 24 && alignof(ads_u_val) == 8, "the value of a resbuf");
static_assert(offsetof(resbuf, restype) == 4 && offsetof(resbuf, resval) == 8 &&
                  sizeof(resbuf) == 32,
              "resbuf");
static_assert(offsetof(ads_callback_packet, value) == 8 &&
                  offsetof(ads_callback_packet, reason) == 16 &&
                  sizeof(ads_callback_packet) == 28,
              "ads_callback_packet");
