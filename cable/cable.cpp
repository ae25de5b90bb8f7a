/* cable.cpp - the cable dialogs of ELINE, SLINE and PLINE, and the pair
 * count dialog of a telephone cable. */
#include <string.h>

#include "ads.h"
#include "cable.h"
#include "spec_label.h"
#include "../host/dialogs.h"
#include "../linetool/catalogue.h"
#include "../numtool/numtool.h"
#include "../util/textutil.h"

char SpecWork[256];
char ChosenKey[256];
char PipeMaterial[256];
char CableChoice[256];

/* Captions of the number tool. */
#define CAPTION_QUANTITY "\xBC\xC6\xB6\x71:" /* 數量: */
#define CAPTION_CABLES "\xB1\xF8\xBC\xC6:"   /* 條數: */
#define CAPTION_SETS "\xB2\xD5\xBC\xC6:"     /* 組數: */
#define CAPTION_PIPES "\xA4\xE4\xBC\xC6:"    /* 支數: */

/* Clusters "ra", "rb", ... of the cable dialogs. */
constexpr int LINE_CLUSTERS = 17;  /* ELINE and SLINE: "ra" to "rq" */
constexpr int PIPE_CLUSTERS = 8;   /* PLINE: "ra" to "rh" */
constexpr int CHOICE_CLUSTERS = 4; /* VOR_SLINE_CABLE_1: "ra" to "rd" */

void cable_reset(void)
{
    memset(SpecWork, 0, sizeof SpecWork);
    memset(ChosenKey, 0, sizeof ChosenKey);
    memset(PipeMaterial, 0, sizeof PipeMaterial);
    memset(CableChoice, 0, sizeof CableChoice);
}

static int kind_is(const char *kind)
{
    return strcmp(KindName, kind) == 0;
}

/* "VOR_", the current family and "_CABLE": the cable dialog's name and its
 * help topic. */
static void cable_name(char *out)
{
    out[0] = '\0';
    strcatv(TEXT_MAX, out, "VOR_", KindName, "_CABLE", nullptr);
}

/* Upper-cases the ASCII letters of an ELINE or SLINE list. A hand-typed
 * Big5 character is stepped over whole: its trail byte may be a letter. */
static void upper_list(char *text)
{
    for (unsigned char *p = (unsigned char *)text; *p; p++) {
        if (big5_is_lead(p[0]) && big5_is_trail(p[1]))
            p++;
        else if (*p >= 'a' && *p <= 'z')
            *p = (unsigned char)(*p - 'a' + 'A');
    }
}

static void bind_clusters(ads_hdlg dialog, int count, void (*action)(ads_callback_packet *))
{
    for (int i = 0; i < count; i++) {
        char key[3] = {'r', (char)('a' + i), '\0'};
        ads_action_tile(dialog, key, action);
    }
}

/* All clusters of a dialog act as one radio group: the key of the button
 * just chosen (its cluster's value) goes into key (256 bytes), the button
 * that was on before, in whatever cluster, is switched off, and chosen
 * becomes key. */
static void switch_to(ads_callback_packet *packet, char *chosen, char *key)
{
    key[0] = '\0';
    strcatv(TEXT_MAX, key, packet_value(packet), nullptr);
    if (chosen[0] != '\0' && strcmp(chosen, key) != 0)
        ads_set_tile(packet->dialog, chosen, "0");
    chosen[0] = '\0';
    strcatv(TEXT_MAX, chosen, key, nullptr);
}

/* Asks the number tool for a count under caption; 1 with the count in
 * NumberValue, 0 when the user cancelled or left it empty. */
static int ask_count(const char *caption)
{
    NumberCaption[0] = '\0';
    strcatv(TEXT_MAX, NumberCaption, caption, nullptr);
    NumberValue[0] = '\0';
    number_tool();
    return NumberValue[0] != '\0';
}

/* Sets the count of the group key (found by size for PLINE) in SpecWork
 * and shows the list. */
static void set_count(ads_hdlg dialog, const char *key, const char *size)
{
    spec_set_count(SpecWork, key, size, NumberValue);
    ads_set_tile(dialog, "edit", SpecWork);
}

void quantity_eline(ads_callback_packet *packet)
{
    char key[TEXT_SIZE];
    switch_to(packet, ChosenKey, key);
    if (ask_count(CAPTION_QUANTITY))
        set_count(packet->dialog, key, nullptr);
}

void quantity_sline(ads_callback_packet *packet)
{
    char button[TEXT_SIZE], key[TEXT_SIZE] = "";
    const char *caption = CAPTION_PIPES;

    switch_to(packet, ChosenKey, button);
    strcatv(TEXT_MAX, key, button, nullptr);
    if (button[0] == 'T') {
        /* A telephone cable is an item only with its pair count; a dialog
         * that cannot open leaves an earlier count behind, so it must not
         * be taken for an answer. */
        if (cable_choice_dialog() != RTNORM || CableChoice[0] == '\0')
            return;
        strcatv(TEXT_MAX, key, "-", CableChoice, nullptr);
        caption = CAPTION_SETS;
    } else if (button[0] == 'V' || button[0] == 'S') {
        caption = CAPTION_CABLES;
    }
    if (ask_count(caption))
        set_count(packet->dialog, key, nullptr);
}

void quantity_pline(ads_callback_packet *packet)
{
    char button[TEXT_SIZE], key[TEXT_SIZE] = "";

    switch_to(packet, ChosenKey, button);
    /* An inch size is keyed "A" and the size; the group is found again by
     * its size alone, so it keeps the material it was added with. */
    int inch = button[0] == 'A';
    const char *size = inch ? button + 1 : button;
    strcatv(TEXT_MAX, key, inch ? "in" : "mm", "_", PipeMaterial, "_", size, nullptr);
    if (ask_count(CAPTION_QUANTITY))
        set_count(packet->dialog, key, size);
}

void spec_edited(ads_callback_packet *packet)
{
    if (packet->reason != CBR_SELECT && packet->reason != CBR_LOST_FOCUS)
        return;
    /* No syntax check: the label rules skip what they cannot read. */
    SpecWork[0] = '\0';
    strcatv(TEXT_MAX, SpecWork, packet_value(packet), nullptr);
    if (!kind_is("PLINE"))
        upper_list(SpecWork);
    ads_set_tile(packet->dialog, "edit", SpecWork);
}

void pipe_edited(ads_callback_packet *packet)
{
    if (packet->reason != CBR_LOST_FOCUS)
        return;
    PipeMaterial[0] = '\0';
    strcatv(TEXT_MAX, PipeMaterial, packet_value(packet), nullptr);
}

void cable_help(ads_callback_packet *)
{
    char topic[TEXT_SIZE];
    cable_name(topic);
    show_help(topic);
}

/* Binds the item clusters of the current family's dialog; the piping
 * dialog's material box starts empty. */
static void bind_items(ads_hdlg dialog)
{
    if (kind_is("PLINE")) {
        bind_clusters(dialog, PIPE_CLUSTERS, quantity_pline);
        PipeMaterial[0] = '\0';
        ads_set_tile(dialog, "pipe", PipeMaterial);
        ads_action_tile(dialog, "pipe", pipe_edited);
    } else {
        bind_clusters(dialog, LINE_CLUSTERS, kind_is("SLINE") ? quantity_sline : quantity_eline);
    }
}

static const TileAction CableActions[] = {
    {"help", cable_help},
    {"edit", spec_edited},
    {nullptr, nullptr},
};

/* Takes SpecWork into field 6 and the label the family's rule makes of it
 * into field 5, and shows both in the editor. Both or neither are taken,
 * each in the form a field holds. */
static void take_items(ads_hdlg editor)
{
    char label[TEXT_SIZE], stored_list[TEXT_SIZE], stored_label[TEXT_SIZE];
    spec_format_label(KindName, SpecWork, label);
    if (!field_stored_form(5, SpecWork, stored_list) || !field_stored_form(4, label, stored_label))
        return;
    strcpy(RecordFields[5], stored_list);
    strcpy(RecordFields[4], stored_label);
    ads_set_tile(editor, "t4", RecordFields[5]);
    unescape_spec();
    ads_set_tile(editor, "t3", SpecDisplay);
}

void cable_dialog(ads_callback_packet *packet)
{
    char name[TEXT_SIZE];
    ads_hdlg dialog;
    int status = DLGCANCEL;

    cable_name(name);
    if (dialog_new(name, &dialog) != RTNORM)
        return;
    ChosenKey[0] = '\0';
    SpecWork[0] = '\0';
    strcatv(TEXT_MAX, SpecWork, RecordFields[5], nullptr);
    if (!kind_is("PLINE"))
        upper_list(SpecWork);
    ads_set_tile(dialog, "edit", SpecWork);
    bind_items(dialog);
    bind_actions(dialog, CableActions);
    ads_start_dialog(dialog, &status);
    if (status == DLGOK)
        take_items(packet->dialog);
}

int cable_choice_dialog(void)
{
    ads_hdlg dialog;
    int status = DLGCANCEL;

    if (dialog_new("VOR_SLINE_CABLE_1", &dialog) != RTNORM)
        return RTERROR;
    CableChoice[0] = '\0';
    /* OK can only be pressed once a pair count is chosen. */
    ads_mode_tile(dialog, "accept", MODE_DISABLE);
    bind_clusters(dialog, CHOICE_CLUSTERS, cable_choice_pick);
    ads_start_dialog(dialog, &status);
    /* Cancel, or every dialog ended by the host: no choice. */
    if (status != DLGOK)
        CableChoice[0] = '\0';
    return RTNORM;
}

void cable_choice_pick(ads_callback_packet *packet)
{
    char key[TEXT_SIZE];
    switch_to(packet, CableChoice, key);
    ads_mode_tile(packet->dialog, "accept", MODE_ENABLE);
}
