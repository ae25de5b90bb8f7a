/* layer.h - the layer memo LAYER.MEO and the dialog VOR_LAY_SET, in which
 * the user picks a run type's layer from the memo's layers and notes. */
#ifndef VORMIS_LAYER_LAYER_H
#define VORMIS_LAYER_LAYER_H

#include <stdint.h>

#include "../util/textlist.h"

/* The layer shown as the present one; set by the caller. */
extern char InitialLayer[256];
/* The chosen layer name, or "" when nothing was chosen. */
extern char ChosenLayer[256];

/* The memo's lines while the dialog is open (row i is line i); cleared
 * whenever the dialog is not open. */
extern TextList LayerMemo;
/* The row the user picked last; set again before OK can be pressed. */
extern int32_t LayerRow;

/* Runs VOR_LAY_SET (nested: the line tool's dialog file is loaded). RTNORM,
 * or RTERROR after "Unable to initialize dialog box: VOR_LAY_SET". */
int layer_dialog(void);

/* Puts the dialog's state back as the module starts: texts empty, the memo
 * freed, no row picked. */
void layer_reset(void);

#endif
