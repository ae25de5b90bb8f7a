/* entry.h - the module's registered functions and the dispatcher's state. */
#ifndef VORMIS_HOST_ENTRY_H
#define VORMIS_HOST_ENTRY_H

#include "ads.h"

/* A registered function's handler: runs the whole call, returns a host
 * result code (which the dispatcher does not pass on). */
typedef int (*FunctionHandler)(void);

struct FunctionRow {
    const char *name;        /* as the host's command language knows it */
    FunctionHandler handler;
};

/* One row per registered function; a function's code is its row index. */
enum { FUNCTION_COUNT = 5 };
extern const FunctionRow FunctionTable[FUNCTION_COUNT];

/* The argument list of the call being dispatched, or NULL when the call has
 * none. Owned by the host; valid only while the handler runs. */
extern struct resbuf *CurrentArgs;

/* Puts the module-level state of every subsystem back as it is when the
 * module starts: lists freed, texts emptied, KindName "ELINE". Sent on
 * unload, and used by tests; within a session that state lives on from call
 * to call (the code pattern, the label settings, the browser's choice). */
void module_reset(void);

#endif
