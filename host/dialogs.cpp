/* dialogs.cpp - the dialog file, opening dialogs, host functions by name. */
#include <string.h>

#include "ads.h"
#include "dialogs.h"
#include "../util/textutil.h"

int DialogFile;

int dialog_file_load(const char *file)
{
    if (ads_load_dialog(file, &DialogFile) != RTNORM) {
        char message[TEXT_SIZE] = "";
        strcatv(TEXT_MAX, message, "Unable to load dialog box: ", file, nullptr);
        ads_fail(message);
        return RTERROR;
    }
    return RTNORM;
}

int dialog_new(const char *name, ads_hdlg *dialog)
{
    if (ads_new_dialog(name, DialogFile, NULLCB, dialog) != RTNORM) {
        char message[TEXT_SIZE] = "";
        strcatv(TEXT_MAX, message, "Unable to initialize dialog box: ", name, nullptr);
        ads_fail(message);
        return RTERROR;
    }
    return RTNORM;
}

void bind_actions(ads_hdlg dialog, const TileAction *table)
{
    for (const TileAction *row = table; row->key; row++)
        ads_action_tile(dialog, row->key, row->action);
}

int host_function(const char *name, struct resbuf *args, struct resbuf **result)
{
    *result = nullptr;
    if (!args)
        return RTERROR;
    struct resbuf *call = ads_buildlist(RTSTR, name, 0);
    if (!call) {
        ads_relrb(args);
        return RTERROR;
    }
    call->rbnext = args;
    int status = ads_invoke(call, result);
    ads_relrb(call);
    if (status != RTNORM) {
        char message[TEXT_SIZE] = "";
        strcatv(TEXT_MAX, message, "Can not invoke function : ", name, nullptr);
        ads_alert(message);
        ads_relrb(*result);
        *result = nullptr;
        return RTERROR;
    }
    return RTNORM;
}

void show_help(const char *topic)
{
    struct resbuf *result;
    if (host_function("ADS_HELP", ads_buildlist(RTSTR, "VORMIS.HLP", RTSTR, topic, 0), &result) == RTNORM)
        ads_relrb(result);
}

const char *packet_value(const ads_callback_packet *packet)
{
    return packet && packet->value ? packet->value : "";
}
