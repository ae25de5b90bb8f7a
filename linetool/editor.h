/* editor.h - the run-type editor VOR_ELINE_1 and the code dialog
 * VOR_ELINE_2, both nested in the line tool's main dialog. */
#ifndef VORMIS_LINETOOL_EDITOR_H
#define VORMIS_LINETOOL_EDITOR_H

#include "ads.h"

/* The action of the main dialog's "editline" (and run by "add"): edits the
 * selected record; OK writes it back and redraws its row. */
void edit_record(ads_callback_packet *packet);

/* The action of the main dialog's "edit_code": choose or type the code
 * pattern; OK with a new pattern turns the filter on and refills the list. */
void edit_code_pattern(ads_callback_packet *packet);

/* Enables (MODE_ENABLE) or disables (MODE_DISABLE) the main dialog's
 * buttons that act on a chosen row: disabled whenever the list is
 * refilled, enabled when a row is chosen. */
void record_buttons_mode(ads_hdlg dialog, short mode);

/* Puts the editor's and the code dialog's state back as the module starts. */
void editor_reset(void);

#endif
