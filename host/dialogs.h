/* dialogs.h - what every dialog of the module shares: the one loaded
 * dialog file, opening a dialog with the host's failure messages, and
 * calling a host function by name from inside a dialog. */
#ifndef VORMIS_HOST_DIALOGS_H
#define VORMIS_HOST_DIALOGS_H

#include "ads.h"

/* The id of the dialog definition file loaded by the dialog the user
 * opened; nested dialogs use it and neither load nor unload it. */
extern int DialogFile;

/* Loads file (VORMIS.DCL or BLK.DCL) into DialogFile; RTERROR after
 * ads_fail "Unable to load dialog box: FILE" when it cannot be. */
int dialog_file_load(const char *file);

/* Creates the dialog name of DialogFile with no default action; RTERROR
 * after ads_fail "Unable to initialize dialog box: NAME" when it cannot be. */
int dialog_new(const char *name, ads_hdlg *dialog);

/* Calls the host function name with the argument list args (items after
 * the name, built by the caller, or NULL). Returns the result list (the
 * caller releases it; it may be NULL) through *result and RTNORM; when the
 * call fails, alerts "Can not invoke function : NAME" and returns RTERROR.
 * args is released on every path. */
int host_function(const char *name, struct resbuf *args, struct resbuf **result);

/* The text of a tile callback's value, or "" when there is none. */
const char *packet_value(const ads_callback_packet *packet);

#endif
