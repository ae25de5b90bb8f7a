/* schedule.cpp - fields and lines of panel schedule files. */
#include <string.h>

#include "schedule.h"
#include "../util/textlist.h"
#include "../util/textutil.h"

/* The files' diameter sign, and the host's text code that shows it. */
static const unsigned char FILE_DIAMETER = 0xED;
static const char DIAMETER_TEXT_CODE[] = "%%c";

void acf_field(const TextNode *line, int index, char *out)
{
    char work[TEXT_SIZE];
    /* Every byte may grow into a three-byte code before the one cut. */
    char grown[TEXT_MAX * 3 + 1];

    out[0] = '\0';
    if (!line || !line->text || index < 0)
        return;
    const char *p = line->text;
    for (int k = 0; k < index; k++) {
        p = strchr(p, ';');
        if (!p)
            return;
        p++;
    }
    size_t len = strnlen(p, TEXT_MAX);
    memcpy(work, p, len);
    work[len] = '\0';
    char *end = strchr(work, ';');
    if (end)
        *end = '\0';
    len = strlen(work);
    while (len > 0 && work[len - 1] == ' ')
        len--;
    work[len] = '\0';
    const char *field = work;
    while (*field == ' ')
        field++;
    if (!*field)
        return;

    size_t n = 0;
    for (const char *q = field; *q; q++) {
        if ((unsigned char)*q == FILE_DIAMETER) {
            memcpy(grown + n, DIAMETER_TEXT_CODE, 3);
            n += 3;
        } else {
            grown[n++] = *q;
        }
    }
    grown[n] = '\0';
    cut_text(grown, TEXT_MAX);
    strcpy(out, grown);
}

void cut_text(char *text, size_t limit)
{
    const unsigned char *t = (const unsigned char *)text;
    size_t i = 0;
    while (t[i]) {
        size_t unit = 1;
        if (t[i] == '%' && t[i + 1] == '%' && t[i + 2] && t[i + 2] < 0x80)
            unit = 3;
        else if (big5_is_lead(t[i]) && big5_is_trail(t[i + 1]))
            unit = 2;
        if (i + unit > limit)
            break;
        i += unit;
    }
    text[i] = '\0';
}

int schedule_circuit_count(const TextList *schedule)
{
    return schedule->count < SCHEDULE_MIN_LINES ? 0 : schedule->count - 2;
}

const TextNode *schedule_circuit(const TextList *schedule, int k)
{
    if (k < 0 || k >= schedule_circuit_count(schedule))
        return nullptr;
    const TextNode *node = schedule->head->next;
    while (k-- > 0)
        node = node->next;
    return node;
}

int field_switch(const char *field, char c)
{
    return field[0] == c;
}

const char *corner_text(const char *field)
{
    return strlen(field) > (size_t)HEADER_PREFIX_LENGTH ? field + HEADER_PREFIX_LENGTH : "";
}
