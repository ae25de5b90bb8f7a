/* ltgen.cpp - VOR_LT_LO, the linetype file generator.
 *
 * Not built yet: the function answers at once with a normal result. */
#include "ads.h"
#include "ltgen.h"

int linetype_generate(void)
{
    return RTNORM;
}
