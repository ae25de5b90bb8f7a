/* catalogue.cpp - run-type records and the catalogue of the current family. */
#include <stdio.h>
#include <string.h>

#include "ads.h"
#include "catalogue.h"
#include "../util/textutil.h"

char KindName[6] = "ELINE";
TextList Catalogue;
char RecordFields[RECORD_FIELDS][256];
char SpecDisplay[256];
int32_t RowMap[ROW_LIMIT];
int32_t SelectedRow;
int32_t LabelOn;
char LabelGap[256];
char CodePattern[256];
int32_t SearchOn;
char CodeTable[CODE_LIMIT][CODE_WIDTH + 1];

/* Widths of the columns of a list row: code, linetype, layer, colour, label. */
static const int RowWidths[] = {6, 10, 8, 3, 50};

void catalogue_reset(void)
{
    memset(KindName, 0, sizeof KindName);
    strcpy(KindName, "ELINE");
    textlist_free(&Catalogue);
    memset(RecordFields, 0, sizeof RecordFields);
    memset(SpecDisplay, 0, sizeof SpecDisplay);
    memset(RowMap, 0, sizeof RowMap);
    SelectedRow = LabelOn = 0;
    memset(LabelGap, 0, sizeof LabelGap);
    memset(CodePattern, 0, sizeof CodePattern);
    SearchOn = 0;
    memset(CodeTable, 0, sizeof CodeTable);
}

void catalogue_path(char *out)
{
    char name[16] = "";
    strcatv(sizeof name - 1, name, KindName, ".CAT", nullptr);
    home_path(name, out);
}

void catalogue_load(void)
{
    char path[TEXT_SIZE];
    catalogue_path(path);
    textlist_load(path, &Catalogue, 1, 255, 0, 0, 0, 0, 0, 0);
}

/* The closing quote of a field whose text starts at p: the first quote that
 * does not directly follow a backslash, or NULL. The text is read by whole
 * characters, so the trail byte 5C of a Big5 character (功 is A5 5C) is
 * not a backslash. */
static const char *closing_quote(const char *p)
{
    int escaped = 0;
    for (; *p; p += big5_char_bytes(p)) {
        if (*p == '"' && !escaped)
            return p;
        escaped = *p == '\\';
    }
    return nullptr;
}

void parse_record(const char *line, int all)
{
    int fields = all ? RECORD_FIELDS : 5;
    const char *p = line;

    memset(RecordFields, 0, sizeof RecordFields);
    for (int k = 0; k < fields; k++) {
        const char *open = strchr(p, '"');
        if (!open)
            return;
        const char *close = closing_quote(open + 1);
        if (!close)
            return;
        size_t len = (size_t)(close - open - 1);
        if (len > TEXT_MAX)
            len = TEXT_MAX;
        memcpy(RecordFields[k], open + 1, len);
        p = close + 1;
    }
}

void unescape_field(const char *text, char *out)
{
    size_t n = 0;
    for (const char *p = text; *p;) {
        int bytes = big5_char_bytes(p);
        if (n + bytes > (size_t)TEXT_MAX)
            break;
        if (!(p[0] == '\\' && p[1] == '"'))
            for (int k = 0; k < bytes; k++)
                out[n++] = p[k];
        p += bytes;
    }
    out[n] = '\0';
}

void unescape_spec(void)
{
    unescape_field(RecordFields[4], SpecDisplay);
}

/* What the messages call each field. ORDER: the fields of a record. */
static const char *const FieldNames[RECORD_FIELDS] = {
    "code", "linetype name", "layer", "colour", "label", "item list", "linetype pattern"};

/* The stored form of text into out (256 bytes), or the reason it has none. */
static const char *stored_form(const char *text, char *out)
{
    size_t n = 0;
    int after_backslash = 0;
    for (const char *p = text; *p;) {
        int bytes = big5_char_bytes(p);
        if (*p == '\r' || *p == '\n' || *p == 0x1A)
            return "must be one line";
        int escape = *p == '"' && !after_backslash;
        if (n + escape + bytes > (size_t)TEXT_MAX)
            return "is longer than a run type can hold (255 characters)";
        if (escape)
            out[n++] = '\\';
        memcpy(out + n, p, bytes);
        n += bytes;
        after_backslash = bytes == 1 && *p == '\\';
        p += bytes;
    }
    out[n] = '\0';
    /* No escape exists for a backslash: before the closing quote it would
     * make the quote part of the field. */
    if (after_backslash)
        return "ends in a backslash, which would run it into the next field";
    return nullptr;
}

int field_stored_form(int field, const char *text, char *out)
{
    char alert[TEXT_SIZE];
    const char *why = stored_form(text, out);
    if (!why)
        return 1;
    out[0] = '\0';
    snprintf(alert, sizeof alert, "The %s %s; it was not taken.", FieldNames[field], why);
    ads_alert(alert);
    return 0;
}

int field_store(int field, const char *text)
{
    char stored[TEXT_SIZE];
    if (!field_stored_form(field, text, stored))
        return 0;
    strcpy(RecordFields[field], stored);
    return 1;
}

int compose_record(char *out)
{
    size_t need = 2 + RECORD_FIELDS * 2 + (RECORD_FIELDS - 1);
    for (int k = 0; k < RECORD_FIELDS; k++)
        need += strlen(RecordFields[k]);
    out[0] = '\0';
    if (need > TEXT_MAX)
        return 0;
    strcatv(TEXT_MAX, out, "(", nullptr);
    for (int k = 0; k < RECORD_FIELDS; k++)
        strcatv(TEXT_MAX, out, k ? " \"" : "\"", RecordFields[k], "\"", nullptr);
    strcatv(TEXT_MAX, out, ")", nullptr);
    return 1;
}

/* The list row of the record in RecordFields (fields 1 to 5 parsed). */
static void row_text(char *row)
{
    char column[TEXT_SIZE];
    row[0] = '\0';
    unescape_spec();
    for (int k = 0; k < 5; k++) {
        column[0] = '\0';
        strcatv(RowWidths[k], column, k < 4 ? RecordFields[k] : SpecDisplay, nullptr);
        strcatv(TEXT_MAX, row, k ? "\t" : "", column, nullptr);
    }
}

void catalogue_rows(ads_hdlg dialog)
{
    char row[TEXT_SIZE];
    int32_t rows = 0, index = 0;

    ads_start_list(dialog, "eline", LIST_NEW, 0);
    for (TextNode *node = Catalogue.head; node && rows < ROW_LIMIT; node = node->next, index++) {
        parse_record(node->text, 0);
        if (SearchOn &&
            (CodePattern[0] == '\0' || ads_wcmatch(RecordFields[0], CodePattern) != RTNORM))
            continue;
        RowMap[rows++] = index;
        row_text(row);
        ads_add_list(row);
    }
    ads_end_list();
}

void catalogue_selected(TextNode **node, TextNode **prev)
{
    int32_t index = SelectedRow >= 0 && SelectedRow < ROW_LIMIT ? RowMap[SelectedRow] : -1;
    if (index < 0) {
        *node = *prev = nullptr;
        return;
    }
    textlist_find(&Catalogue, index, node, prev);
}

void catalogue_duplicate(void)
{
    TextNode *node, *prev;
    catalogue_selected(&node, &prev);
    if (!node)
        return;
    TextNode *copy = textnode_new(node->text);
    if (!copy) {
        ads_alert("Memory Fault !");
        return;
    }
    copy->next = node;
    if (prev)
        prev->next = copy;
    else
        Catalogue.head = copy;
    Catalogue.count++;
    Catalogue.modified = 1;
}

void catalogue_replace(ads_hdlg dialog)
{
    char line[TEXT_SIZE], row[TEXT_SIZE];
    TextNode *node, *prev;

    if (!compose_record(line)) {
        ads_alert("This run type is longer than a catalogue line can hold (255 characters): "
                  "shorten its fields. The catalogue is unchanged.");
        return;
    }
    catalogue_selected(&node, &prev);
    if (!node)
        return;
    size_t len = strlen(line);
    TextNode *grown = (TextNode *)acad_realloc(node, sizeof(TextNode) + len + 1);
    if (!grown) {
        ads_alert("Memory Fault !");
        return;
    }
    grown->text = (char *)(grown + 1);
    memcpy(grown->text, line, len + 1);
    if (prev)
        prev->next = grown;
    if (Catalogue.head == node)
        Catalogue.head = grown;
    if (Catalogue.tail == node)
        Catalogue.tail = grown;
    if (Catalogue.cursor == node)
        Catalogue.cursor = grown;
    Catalogue.modified = 1;

    parse_record(grown->text, 0);
    row_text(row);
    ads_start_list(dialog, "eline", LIST_CHANGE, (short)SelectedRow);
    ads_add_list(row);
    ads_end_list();
}

void catalogue_delete(void)
{
    if (SelectedRow >= 0 && SelectedRow < ROW_LIMIT)
        textlist_delete(&Catalogue, RowMap[SelectedRow]);
}

/* Whether code is in the first count entries of CodeTable. */
static int code_known(const char *code, int count)
{
    for (int k = 0; k < count; k++)
        if (strcmp(CodeTable[k], code) == 0)
            return 1;
    return 0;
}

void code_table_build(ads_hdlg dialog)
{
    int count = 0;

    memset(CodeTable, 0, sizeof CodeTable);
    ads_start_list(dialog, "codelist", LIST_NEW, 0);
    for (TextNode *node = Catalogue.head; node && count < CODE_LIMIT; node = node->next) {
        const char *open = strchr(node->text, '"');
        const char *close = open ? closing_quote(open + 1) : nullptr;
        if (!close)
            continue;
        char code[CODE_WIDTH + 1] = "";
        size_t len = (size_t)(close - open - 1);
        memcpy(code, open + 1, len < CODE_WIDTH ? len : CODE_WIDTH);
        if (code_known(code, count))
            continue;
        strcpy(CodeTable[count++], code);
        ads_add_list(code);
    }
    ads_end_list();
}
