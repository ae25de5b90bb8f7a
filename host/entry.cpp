/* entry.cpp - the module's entry point: the host's messages, registration of
 * the five functions for every drawing, and dispatch of calls to them. */
#include "ads.h"
#include "dialogs.h"
#include "entry.h"
#include "../browser/browser.h"
#include "../cable/cable.h"
#include "../layer/layer.h"
#include "../linetool/linetool.h"
#include "../linetool/ltgen.h"
#include "../numtool/numtool.h"
#include "../panel/acf.h"
#include "../util/textutil.h"

/* The module's two exports. The DLL names them in its definition file;
 * the shared library vorhost loads is built with every other symbol
 * hidden, so these two are marked. */
#if defined(__GNUC__) && !defined(_WIN32)
#define MODULE_EXPORT __attribute__((visibility("default")))
#else
#define MODULE_EXPORT
#endif

struct resbuf *CurrentArgs;

/* ORDER: the codes 0 to 4 that the host hands back are these rows' indexes. */
const FunctionRow FunctionTable[FUNCTION_COUNT] = {
    {"VOR_ELINE", line_tool_eline},
    {"VOR_SLINE", line_tool_sline},
    {"VOR_PLINE", line_tool_pline},
    {"VOR_LT_LO", linetype_generate},
    {"VOR_ACF", panel_diagram},
};

/* Registers every function for the drawing just opened. The first refusal
 * stops the loop: the later rows stay unregistered for this drawing. */
static int register_functions(void)
{
    for (short code = 0; code < FUNCTION_COUNT; code++)
        if (ads_defun(FunctionTable[code].name, code) != RTNORM)
            return RTERROR;
    return RTNORM;
}

static int unregister_functions(void)
{
    for (short code = 0; code < FUNCTION_COUNT; code++)
        ads_undef(FunctionTable[code].name, code);
    return RTNORM;
}

/* Runs the handler of the function the host says was called. The result is
 * void unless the handler sets one itself. */
static int dispatch(void)
{
    ads_retvoid();
    int code = ads_getfuncode();
    if (code < 0 || code >= FUNCTION_COUNT) {
        ads_fail("Received nonexistent function code.");
        return RTERROR;
    }
    CurrentArgs = ads_getargs();
    int result = FunctionTable[code].handler();
    CurrentArgs = nullptr;
    return result;
}

/* The host integration's own state: no call under way, no dialog file
 * loaded, no line filtered. */
static void dispatch_reset(void)
{
    CurrentArgs = nullptr;
    DialogFile = 0;
    textutil_reset();
}

/* Run drawing keeps nothing between calls, so it has no reset. */
void module_reset(void)
{
    dispatch_reset();
    line_tool_reset();
    cable_reset();
    number_tool_reset();
    layer_reset();
    browser_reset();
    panel_reset();
}

extern "C" MODULE_EXPORT int acrxEntryPoint(int msg, void *pkt)
{
    switch (msg) {
    case kInitAppMsg:
        acrxUnlockApplication(pkt);
        break;
    case kUnloadAppMsg:
        /* Nothing is asked of the host; what a new load finds is the state
         * of a module loaded afresh. */
        module_reset();
        break;
    case kLoadDwgMsg:
        register_functions();
        break;
    case kUnloadDwgMsg:
        unregister_functions();
        break;
    case kInvkSubrMsg:
        dispatch();
        break;
    default:
        break;
    }
    return 0;
}

extern "C" MODULE_EXPORT long acrxGetApiVersion(void)
{
    return ACRX_API_VERSION;
}
