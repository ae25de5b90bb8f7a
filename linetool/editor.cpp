/* editor.cpp - editing a run type, and choosing the code pattern. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ads.h"
#include "catalogue.h"
#include "editor.h"
#include "../cable/cable.h"
#include "../host/dialogs.h"
#include "../layer/layer.h"
#include "../util/textutil.h"

/* The pattern in force when the code dialog opened, put back on Cancel. */
static char SavedPattern[256];

/* The prompt of the label text. */
static const char LabelPrompt[] = "\xB3\xC6\xB5\xF9\xBB\xA1\xA9\xFA"; /* 備註說明 */

void editor_reset(void)
{
    memset(SavedPattern, 0, sizeof SavedPattern);
}

void record_buttons_mode(ads_hdlg dialog, short mode)
{
    static const char *const buttons[] = {"add", "editline", "del", "loadline", "changeline"};
    for (const char *key : buttons)
        ads_mode_tile(dialog, key, mode);
}

/* ---- The editor ------------------------------------------------------------ */

/* e1, e2, e3: the field an edit box holds, taken when the box is left, in
 * the stored form the box then shows; a text the field cannot hold is
 * refused and the box shows the field again. */
static void field_edited(ads_callback_packet *packet, int field, const char *key)
{
    if (packet->reason != CBR_LOST_FOCUS)
        return;
    const char *typed = packet_value(packet);
    if (!field_store(field, typed) || strcmp(typed, RecordFields[field]) != 0)
        ads_set_tile(packet->dialog, key, RecordFields[field]);
}

static void code_edited(ads_callback_packet *packet) { field_edited(packet, 0, "e1"); }
static void linetype_edited(ads_callback_packet *packet) { field_edited(packet, 1, "e2"); }
static void pattern_edited(ads_callback_packet *packet) { field_edited(packet, 6, "e3"); }

static void choose_layer(ads_callback_packet *packet)
{
    InitialLayer[0] = '\0';
    strcatv(TEXT_MAX, InitialLayer, RecordFields[2], nullptr);
    if (layer_dialog() != RTNORM || ChosenLayer[0] == '\0' || !field_store(2, ChosenLayer))
        return;
    ads_set_tile(packet->dialog, "t1", RecordFields[2]);
}

static void choose_colour(ads_callback_packet *packet)
{
    int start = atoi(RecordFields[3]);
    struct resbuf *result;
    struct resbuf *args = ads_buildlist(RTSHORT, start > 0 ? start : 1, RTNIL, 0);
    if (host_function("ACAD_COLORDLG", args, &result) != RTNORM)
        return;
    if (result && result->restype == RTSHORT && result->resval.rint >= 1 && result->resval.rint <= 255) {
        snprintf(RecordFields[3], sizeof RecordFields[3], "%d", result->resval.rint);
        ads_set_tile(packet->dialog, "t2", RecordFields[3]);
    }
    ads_relrb(result);
}

/* W1 is given the label as stored and its answer is stored with the
 * quotes it adds escaped. */
static void edit_label(ads_callback_packet *packet)
{
    struct resbuf *result;
    struct resbuf *args = ads_buildlist(RTSTR, RecordFields[4], RTSTR, LabelPrompt, 0);
    if (host_function("W1", args, &result) != RTNORM)
        return;
    if (result && result->restype == RTSTR && result->resval.rstring) {
        if (field_store(4, result->resval.rstring)) {
            unescape_spec();
            ads_set_tile(packet->dialog, "t3", SpecDisplay);
        }
    }
    ads_relrb(result);
}

static const TileAction EditorActions[] = {
    {"e1", code_edited},
    {"e2", linetype_edited},
    {"e3", pattern_edited},
    {"b1", choose_layer},
    {"b2", choose_colour},
    {"b3", edit_label},
    {"b4", cable_dialog},
    {nullptr, nullptr},
};

void edit_record(ads_callback_packet *packet)
{
    ads_hdlg main = packet->dialog, editor;
    TextNode *node, *prev;
    int status = DLGCANCEL;

    if (dialog_new("VOR_ELINE_1", &editor) != RTNORM)
        return;
    catalogue_selected(&node, &prev);
    if (node)
        parse_record(node->text, 1);
    ads_set_tile(editor, "e1", RecordFields[0]);
    ads_set_tile(editor, "e2", RecordFields[1]);
    ads_set_tile(editor, "t1", RecordFields[2]);
    ads_set_tile(editor, "t2", RecordFields[3]);
    unescape_spec();
    ads_set_tile(editor, "t3", SpecDisplay);
    ads_set_tile(editor, "t4", RecordFields[5]);
    ads_set_tile(editor, "e3", RecordFields[6]);
    bind_actions(editor, EditorActions);
    ads_start_dialog(editor, &status);
    if (status == DLGOK && node)
        catalogue_replace(main);
}

/* ---- The code dialog --------------------------------------------------------- */

static void code_picked(ads_callback_packet *packet)
{
    const char *value = packet_value(packet);
    if (value[0] == '\0')
        return;
    int index = atoi(value);
    if (index < 0 || index >= CODE_LIMIT)
        return;
    CodePattern[0] = '\0';
    strcatv(TEXT_MAX, CodePattern, CodeTable[index], nullptr);
    ads_set_tile(packet->dialog, "codeedit", CodePattern);
    if (packet->reason == CBR_DOUBLE_CLICK)
        ads_done_dialog(packet->dialog, DLGOK);
}

static void pattern_typed(ads_callback_packet *packet)
{
    if (packet->reason != CBR_SELECT && packet->reason != CBR_LOST_FOCUS)
        return;
    ads_get_tile(packet->dialog, "codeedit", CodePattern, TEXT_MAX);
    if (CodePattern[0] == '\0') {
        strcpy(CodePattern, "*");
        ads_set_tile(packet->dialog, "codeedit", CodePattern);
    }
}

void edit_code_pattern(ads_callback_packet *packet)
{
    ads_hdlg main = packet->dialog, codes;
    int status = DLGCANCEL;

    if (dialog_new("VOR_ELINE_2", &codes) != RTNORM)
        return;
    strcpy(SavedPattern, CodePattern);
    code_table_build(codes);
    ads_set_tile(codes, "codeedit", CodePattern);
    ads_action_tile(codes, "codelist", code_picked);
    ads_action_tile(codes, "codeedit", pattern_typed);
    ads_start_dialog(codes, &status);
    if (status != DLGOK) {
        strcpy(CodePattern, SavedPattern);
        return;
    }
    if (strcmp(CodePattern, SavedPattern) == 0)
        return;
    ads_set_tile(main, "code", CodePattern);
    SearchOn = 1;
    ads_set_tile(main, "search", "1");
    catalogue_rows(main);
    record_buttons_mode(main, MODE_DISABLE);
}
