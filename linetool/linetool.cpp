/* linetool.cpp - the line tool: VOR_ELINE, VOR_SLINE and VOR_PLINE and
 * their main dialog VOR_ELINE_0, which closes while a run type is applied
 * or runs are labelled and opens again afterwards. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ads.h"
#include "catalogue.h"
#include "editor.h"
#include "linetool.h"
#include "../draw/runs.h"
#include "../host/dialogs.h"
#include "../host/entry.h"
#include "../util/textutil.h"

/* Statuses of the main dialog beyond OK and Cancel. */
enum { STATUS_LOAD = 2, STATUS_APPLY = 3, STATUS_LABEL = 4, STATUS_FIRST = 999 };

/* How the main dialog last ended; STATUS_FIRST before its first opening. */
static int Status = STATUS_FIRST;

/* The caption of the catalogue's path. */
static const char FileCaption[] = "\xBA\xDE\xBD\x75\xA9\x77\xB8\x71\xC0\xC9\xA6\x57\x3A\x20"; /* 管線定義檔名: */
constexpr int FILE_CAPTION_PATH = 56; /* bytes of the path shown */

void line_tool_reset(void)
{
    Status = STATUS_FIRST;
    editor_reset();
    catalogue_reset();
}

static void show_file_name(ads_hdlg dialog)
{
    char caption[TEXT_SIZE] = "", path[FILE_CAPTION_PATH + 1] = "";
    strcatv(FILE_CAPTION_PATH, path, Catalogue.path, nullptr);
    strcatv(TEXT_MAX, caption, FileCaption, path, nullptr);
    ads_set_tile(dialog, "filename", caption);
}

/* Says why the catalogue has no file: the home directory leaves no room
 * for its path, which would name another file if it were cut. */
static void alert_no_path(void)
{
    char alert[TEXT_SIZE];
    snprintf(alert, sizeof alert,
             "%s.CAT cannot be opened: its path in the home directory is longer than 255 "
             "characters.",
             KindName);
    ads_alert(alert);
}

/* Loads the current family's catalogue and tells the user, once per
 * reading, when it has no path or was not read whole. */
static void load_catalogue(void)
{
    catalogue_load();
    if (Catalogue.path[0] == '\0')
        alert_no_path();
    textlist_alert_unread(&Catalogue);
}

/* Refills the list; the record buttons wait for a new choice. */
static void refill(ads_hdlg dialog)
{
    catalogue_rows(dialog);
    record_buttons_mode(dialog, MODE_DISABLE);
}

static void row_chosen(ads_callback_packet *packet)
{
    const char *value = packet_value(packet);
    if (value[0] == '\0')
        return;
    SelectedRow = atoi(value);
    record_buttons_mode(packet->dialog, MODE_ENABLE);
    if (packet->reason == CBR_DOUBLE_CLICK)
        ads_done_dialog(packet->dialog, STATUS_LOAD);
}

static void search_switched(ads_callback_packet *packet)
{
    SearchOn = packet_value(packet)[0] == '1';
    refill(packet->dialog);
}

static void label_switched(ads_callback_packet *packet)
{
    LabelOn = packet_value(packet)[0] == '1';
}

/* The gap as typed up to its first blank; "2.5" when nothing is left. */
static void gap_edited(ads_callback_packet *packet)
{
    if (packet->reason != CBR_LOST_FOCUS)
        return;
    const char *value = packet_value(packet);
    while (*value == ' ')
        value++;
    size_t len = strcspn(value, " ");
    LabelGap[0] = '\0';
    if (len == 0)
        strcpy(LabelGap, "2.5");
    else
        strncat(LabelGap, value, len < TEXT_MAX ? len : TEXT_MAX);
    ads_set_tile(packet->dialog, "dimlinegap", LabelGap);
}

static void add_pressed(ads_callback_packet *packet)
{
    int32_t before = Catalogue.count;
    catalogue_duplicate();
    if (Catalogue.count == before)
        return;
    catalogue_rows(packet->dialog);
    SelectedRow++;
    char row[16];
    snprintf(row, sizeof row, "%d", (int)SelectedRow);
    ads_set_tile(packet->dialog, "eline", row);
    edit_record(packet);
}

static void delete_pressed(ads_callback_packet *packet)
{
    catalogue_delete();
    refill(packet->dialog);
}

/* Lets the user edit the catalogue file as text, through the host. */
static void edit_file_pressed(ads_callback_packet *packet)
{
    struct resbuf *result;
    if (Catalogue.path[0] == '\0') {
        alert_no_path();
        return;
    }
    struct resbuf *args = ads_buildlist(RTSTR, Catalogue.path, 0);
    if (!args)
        return;
    textlist_save(&Catalogue);
    if (host_function("W2", args, &result) == RTNORM) {
        textlist_free(&Catalogue);
        load_catalogue();
        show_file_name(packet->dialog);
        refill(packet->dialog);
    }
    ads_relrb(result);
}

/* One topic serves the three families. */
static void help_pressed(ads_callback_packet *)
{
    show_help("VOR_ELINE");
}

static void load_pressed(ads_callback_packet *packet) { ads_done_dialog(packet->dialog, STATUS_LOAD); }
static void apply_pressed(ads_callback_packet *packet) { ads_done_dialog(packet->dialog, STATUS_APPLY); }
static void label_pressed(ads_callback_packet *packet) { ads_done_dialog(packet->dialog, STATUS_LABEL); }

static const TileAction MainActions[] = {
    {"eline", row_chosen},
    {"search", search_switched},
    {"dimline", label_switched},
    {"dimlinegap", gap_edited},
    {"editfile", edit_file_pressed},
    {"add", add_pressed},
    {"editline", edit_record},
    {"del", delete_pressed},
    {"help", help_pressed},
    {"edit_code", edit_code_pattern},
    {"loadline", load_pressed},
    {"changeline", apply_pressed},
    {"dimoldline", label_pressed},
    {nullptr, nullptr},
};

/* Takes the code pattern from the call's argument, if it has one. */
static void take_argument(void)
{
    if (CurrentArgs && CurrentArgs->restype == RTSTR && CurrentArgs->resval.rstring) {
        CodePattern[0] = '\0';
        strcatv(TEXT_MAX, CodePattern, CurrentArgs->resval.rstring, nullptr);
        SearchOn = 1;
        return;
    }
    if (CodePattern[0] == '\0')
        strcpy(CodePattern, "*");
    SearchOn = 0;
}

/* Opens the main dialog once; false when it cannot be made. */
static int run_main_dialog(void)
{
    ads_hdlg dialog;
    if (dialog_new("VOR_ELINE_0", &dialog) != RTNORM)
        return 0;
    ads_set_tile(dialog, "search", SearchOn ? "1" : "0");
    ads_set_tile(dialog, "code", CodePattern);
    ads_set_tile(dialog, "dimline", LabelOn ? "1" : "0");
    if (LabelGap[0] == '\0')
        strcpy(LabelGap, "2.5");
    ads_set_tile(dialog, "dimlinegap", LabelGap);
    if (Status == STATUS_FIRST)
        load_catalogue();
    show_file_name(dialog);
    refill(dialog);

    bind_actions(dialog, MainActions);
    ads_start_dialog(dialog, &Status);
    return 1;
}

static int line_tool(const char *kind)
{
    KindName[0] = '\0';
    strcatv(sizeof KindName - 1, KindName, kind, nullptr);
    Status = STATUS_FIRST;
    if (dialog_file_load("VORMIS.DCL") != RTNORM)
        return RTERROR;
    take_argument();
    while (Status > STATUS_LOAD) {
        if (!run_main_dialog()) {
            /* Reopening failed: leave as Cancel would, nothing saved. */
            ads_unload_dialog(DialogFile);
            textlist_free(&Catalogue);
            return RTERROR;
        }
        if (Status == STATUS_APPLY)
            apply_run_type();
        else if (Status == STATUS_LABEL)
            label_existing_runs();
    }
    ads_unload_dialog(DialogFile);
    if (Status == STATUS_LOAD) {
        TextNode *node, *prev;
        catalogue_selected(&node, &prev);
        if (node)
            ads_retstr(node->text);
    }
    if (Status >= DLGOK)
        textlist_save(&Catalogue);
    textlist_free(&Catalogue);
    return RTNORM;
}

int line_tool_eline(void)
{
    line_tool("ELINE");
    return RTNORM;
}

int line_tool_sline(void)
{
    line_tool("SLINE");
    return RTNORM;
}

int line_tool_pline(void)
{
    line_tool("PLINE");
    return RTNORM;
}
