/* linetool.cpp - the line tool's registered functions.
 *
 * The main dialog is not built yet: each function answers at once with a
 * normal result and no value. */
#include "ads.h"
#include "linetool.h"

int line_tool_eline(void)
{
    return RTNORM;
}

int line_tool_sline(void)
{
    return RTNORM;
}

int line_tool_pline(void)
{
    return RTNORM;
}
