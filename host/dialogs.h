/* dialogs.h - what every dialog of the module shares: the one loaded
 * dialog file, opening a dialog with the host's failure messages, binding
 * its tile actions, calling a host function by name from inside a dialog,
 * and help. */
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

/* A tile's key and the action the dialog runs when the user uses it. */
struct TileAction {
    const char *key;
    CLIENTFUNC action;
};

/* Registers the action of every row of table, up to a row whose key is
 * NULL, on dialog. */
void bind_actions(ads_hdlg dialog, const TileAction *table);

/* Calls the host function name with the argument list args: the items
 * after the name, as ads_buildlist gave them. Returns the result list (the
 * caller releases it; it may be NULL) through *result and RTNORM; when the
 * call fails, alerts "Can not invoke function : NAME" and returns RTERROR.
 * A NULL args is a list the host could not build (memory is short): nothing
 * is called or said, and the result is RTERROR. args is released on every
 * path. */
int host_function(const char *name, struct resbuf *args, struct resbuf **result);

/* Shows topic of the help file VORMIS.HLP through the host function
 * ADS_HELP; alerts "Can not invoke function : ADS_HELP" when the host
 * cannot show it. The dialog stays open either way. */
void show_help(const char *topic);

/* The text of a tile callback's value, or "" when there is none. */
const char *packet_value(const ads_callback_packet *packet);

#endif
