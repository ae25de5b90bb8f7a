/* ltgen.h - VOR_LT_LO: linetype files from the run-type catalogues. */
#ifndef VORMIS_LINETOOL_LTGEN_H
#define VORMIS_LINETOOL_LTGEN_H

int linetype_generate(void);

#endif
