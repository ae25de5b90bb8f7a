// probe_module.cpp - small modules for the host's loading and unloading,
// built as shared libraries like vormis.arx:
//   probe.arx          unlocks itself and registers PROBE for every drawing;
//                      (probe "NAME") asks the host to unload NAME while it runs
//   locked.arx         the same, but it never unlocks itself
//   wrong_version.arx  built for another interface version; registers
//                      WRONG if it is ever sent message 3
#include "ads.h"

#define EXPORT extern "C" __attribute__((visibility("default")))

EXPORT long acrxGetApiVersion(void)
{
#ifdef PROBE_WRONG_VERSION
    return 0xF0000L;
#else
    return ACRX_API_VERSION;
#endif
}

/* (probe): 1; (probe "NAME"): the result of (arxunload NAME "refused"). */
static void probe(void)
{
    struct resbuf *arg = ads_getargs();
    if (!arg || arg->restype != RTSTR) {
        ads_retint(1);
        return;
    }
    struct resbuf *call = ads_buildlist(RTSTR, "ARXUNLOAD", RTSTR, arg->resval.rstring,
                                        RTSTR, "refused", 0);
    struct resbuf *result = nullptr;
    if (ads_invoke(call, &result) == RTNORM && result && result->restype == RTSTR)
        ads_retstr(result->resval.rstring);
    ads_relrb(call);
    ads_relrb(result);
}

EXPORT int acrxEntryPoint(int msg, void *pkt)
{
    switch (msg) {
    case kInitAppMsg:
#ifndef PROBE_LOCKED
        acrxUnlockApplication(pkt);
#endif
        break;
    case kLoadDwgMsg:
#ifdef PROBE_WRONG_VERSION
        ads_defun("WRONG", 0);
#else
        ads_defun("PROBE", 0);
#endif
        break;
    case kInvkSubrMsg:
        probe();
        break;
    }
    (void)pkt;
    return 0;
}
