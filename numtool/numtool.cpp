/* numtool.cpp - NUMBER_TOOL: keypad buttons, sign, backspace, clear. */
#include <string.h>

#include "ads.h"
#include "numtool.h"
#include "../host/dialogs.h"
#include "../util/textutil.h"

char NumberValue[256];
char NumberCaption[256];

void number_tool_reset(void)
{
    memset(NumberValue, 0, sizeof NumberValue);
    memset(NumberCaption, 0, sizeof NumberCaption);
}

static void show_value(ads_hdlg dialog)
{
    ads_set_tile(dialog, "edit", NumberValue);
}

/* "0" to "9" and ".": the pressed tile's key is the character it enters. */
static void keypad_pressed(ads_callback_packet *packet)
{
    char key[8] = "";
    ads_get_attr_string(packet->tile, "key", key, sizeof key);
    if (strlen(NumberValue) >= TEXT_MAX || key[0] == '\0')
        return;
    char digit[2] = {key[0], '\0'};
    strcatv(TEXT_MAX, NumberValue, digit, nullptr);
    show_value(packet->dialog);
}

static void sign_pressed(ads_callback_packet *packet)
{
    const char *rest = NumberValue;
    while (*rest == ' ')
        rest++;
    char value[TEXT_SIZE] = "";
    if (rest[0] == '-') {
        strcatv(TEXT_MAX, value, rest + 1, nullptr);
    } else if (strlen(rest) < TEXT_MAX) {
        strcatv(TEXT_MAX, value, "-", rest, nullptr);
    } else {
        return;
    }
    strcpy(NumberValue, value);
    show_value(packet->dialog);
}

static void backspace_pressed(ads_callback_packet *packet)
{
    size_t len = strlen(NumberValue);
    if (len == 0)
        return;
    NumberValue[len - 1] = '\0';
    show_value(packet->dialog);
}

static void clear_pressed(ads_callback_packet *packet)
{
    NumberValue[0] = '\0';
    show_value(packet->dialog);
}

static void edit_changed(ads_callback_packet *packet)
{
    if (packet->reason == CBR_SELECT || packet->reason == CBR_LOST_FOCUS)
        ads_get_tile(packet->dialog, "edit", NumberValue, TEXT_MAX);
}

/* The keypad's buttons, all served by keypad_pressed. */
static const char *const KeypadKeys[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "."};

/* The other buttons that change the value, and the box that shows it. */
static const TileAction ValueActions[] = {
    {"sign", sign_pressed},
    {"backspace", backspace_pressed},
    {"clear", clear_pressed},
    {"edit", edit_changed},
    {nullptr, nullptr},
};

int number_tool(void)
{
    char before[TEXT_SIZE];
    ads_hdlg dialog;
    int status = DLGCANCEL;

    strcpy(before, NumberValue);
    if (dialog_new("NUMBER_TOOL", &dialog) != RTNORM)
        return RTERROR;
    ads_set_tile(dialog, "type", NumberCaption);
    ads_set_tile(dialog, "edit", NumberValue);
    ads_mode_tile(dialog, "2p", MODE_DISABLE);
    ads_mode_tile(dialog, "entity", MODE_DISABLE);
    for (const char *key : KeypadKeys)
        ads_action_tile(dialog, key, keypad_pressed);
    bind_actions(dialog, ValueActions);
    ads_start_dialog(dialog, &status);
    if (status == DLGCANCEL)
        strcpy(NumberValue, before);
    return RTNORM;
}
