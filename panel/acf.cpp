/* acf.cpp - VOR_ACF, the panel diagram.
 *
 * Not built yet: the function answers at once with a normal result. */
#include "ads.h"
#include "acf.h"

int panel_diagram(void)
{
    return RTNORM;
}
