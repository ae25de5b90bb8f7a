/* hostval.h - small operations on host values: integer system variables,
 * groups of entity data, and the settings that decide a new text's height. */
#ifndef VORMIS_HOST_HOSTVAL_H
#define VORMIS_HOST_HOSTVAL_H

#include "ads.h"

/* Sets the integer system variable name to value and returns its previous
 * value. When the variable cannot be read nothing is written and value
 * itself comes back, so that restoring with the result is harmless. */
short set_int_sysvar(const char *name, short value);

/* The first item of list whose group code is code, or NULL. */
struct resbuf *find_group(struct resbuf *list, int code);

/* Stores the current text style's fixed height (0 when it has none) and
 * TEXTSIZE; an output whose source cannot be read keeps its value. */
void text_size_settings(ads_real *fixed_height, ads_real *text_size);

#endif
