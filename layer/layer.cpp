/* layer.cpp - VOR_LAY_SET: the layers of LAYER.MEO as a table of name, note,
 * linetype and colour; the picked row's layer name goes back to the caller. */
#include <stdlib.h>
#include <string.h>

#include "ads.h"
#include "layer.h"
#include "../host/dialogs.h"
#include "../util/textutil.h"

char InitialLayer[256];
char ChosenLayer[256];
TextList LayerMemo;
int32_t LayerRow;

void layer_reset(void)
{
    memset(InitialLayer, 0, sizeof InitialLayer);
    memset(ChosenLayer, 0, sizeof ChosenLayer);
    textlist_free(&LayerMemo);
    LayerRow = 0;
}

/* Columns of a row cut from the memo's first four words, in bytes; they
 * match the tab stops of the list in VORMIS.DCL. */
static const int ColumnWidths[] = {16, 16, 12, 12};

/* The white space that separates the words of a memo line, as the field
 * filter of the text-list loader takes it. */
static const char Blanks[] = " \t\n\v\f\r";

/* Copies the next word at *line into word, cut to its first width bytes
 * (width at most 255), and moves *line past the whole word. 0 when the line
 * has no word left; word is then empty. */
static int next_word(const char **line, char *word, int width)
{
    const char *start = *line + strspn(*line, Blanks);
    size_t len = strcspn(start, Blanks);
    size_t kept = len < (size_t)width ? len : (size_t)width;
    memcpy(word, start, kept);
    word[kept] = '\0';
    *line = start + len;
    return len > 0;
}

/* The list row of a memo line: its first four words cut to their column
 * widths, "." for each word the line lacks, and three fixed "." columns. */
static void row_text(const char *line, char *row)
{
    char word[TEXT_SIZE];
    row[0] = '\0';
    for (int k = 0; k < 4; k++) {
        if (!next_word(&line, word, ColumnWidths[k]))
            strcpy(word, ".");
        strcatv(TEXT_MAX, row, k ? "\t" : "", word, nullptr);
    }
    strcatv(TEXT_MAX, row, "\t.\t.\t.", nullptr);
}

static void fill_rows(ads_hdlg dialog)
{
    char row[TEXT_SIZE];
    ads_start_list(dialog, "layer", LIST_NEW, 0);
    for (LayerMemo.cursor = LayerMemo.head; LayerMemo.cursor;
         LayerMemo.cursor = LayerMemo.cursor->next) {
        row_text(LayerMemo.cursor->text, row);
        ads_add_list(row);
    }
    ads_end_list();
}

/* A click picks a row and enables OK; a double click also ends the dialog
 * as OK does. The value is the row's index, or "" when no row is chosen. */
static void layer_picked(ads_callback_packet *packet)
{
    const char *value = packet_value(packet);
    if (value[0] == '\0')
        return;
    long row = strtol(value, nullptr, 10);
    LayerRow = row < 0 ? -1 : row > INT32_MAX ? INT32_MAX : (int32_t)row;
    if (packet->reason == CBR_DOUBLE_CLICK)
        ads_done_dialog(packet->dialog, DLGOK);
    else
        ads_mode_tile(packet->dialog, "accept", MODE_ENABLE);
}

/* The first word of the picked line, whole: the row shows it cut to 16
 * bytes, but the caller needs the real name. Empty when the row has no
 * line, which the list's rows rule out. */
static void take_chosen_layer(void)
{
    TextNode *node, *prev;
    textlist_find(&LayerMemo, LayerRow, &node, &prev);
    if (LayerRow < 0 || !node)
        return;
    const char *line = node->text;
    next_word(&line, ChosenLayer, TEXT_MAX);
}

int layer_dialog(void)
{
    char path[TEXT_SIZE];
    char caption[TEXT_SIZE] = "";
    ads_hdlg dialog;
    int status = DLGCANCEL;

    ChosenLayer[0] = '\0';
    if (dialog_new("VOR_LAY_SET", &dialog) != RTNORM)
        return RTERROR;
    /* A missing memo, or no home directory that fits, gives an empty list:
     * OK then stays disabled and only Cancel ends the dialog. */
    home_path("LAYER.MEO", path);
    textlist_load(path, &LayerMemo, 1, ColumnWidths[0], 0, 0, 0, 0, 0, 0);
    fill_rows(dialog);

    strcatv(TEXT_MAX, caption, "\xB3\x5D\xA9\x77\xB9\xCF\xBC\x68: " /* 設定圖層: */,
            InitialLayer, nullptr);
    ads_set_tile(dialog, "current_layer", caption);
    ads_mode_tile(dialog, "accept", MODE_DISABLE);
    ads_action_tile(dialog, "layer", layer_picked);
    ads_start_dialog(dialog, &status);

    if (status == DLGOK)
        take_chosen_layer();
    textlist_free(&LayerMemo);
    return RTNORM;
}
