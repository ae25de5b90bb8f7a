/* spec_label.cpp - item lists, labels and the drawing form of a label. */
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "spec_label.h"
#include "../linetool/catalogue.h"
#include "../util/textutil.h"

/* ---- Editing a list ------------------------------------------------------ */

static int is_blank(unsigned char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/* The count text as the list holds it; -1 for a negative count. Leading
 * blanks, then a sign, then digits; no digits is 0. */
static long long read_count(const char *text)
{
    const char *p = text;
    int negative = 0;
    long long n = 0;
    while (is_blank((unsigned char)*p))
        p++;
    if (*p == '+' || *p == '-')
        negative = *p++ == '-';
    for (; isdigit((unsigned char)*p); p++)
        n = n > 99999999999LL ? n : n * 10 + (*p - '0');
    if (negative && n > 0)
        return -1;
    return n;
}

/* The end of the key that starts at p: the first blank or parenthesis. */
static const char *key_end(const char *p)
{
    while (*p && !is_blank((unsigned char)*p) && *p != '(' && *p != ')')
        p++;
    return p;
}

/* The "(" of the first group of key (or, with size, of the first group
 * whose key's part after its last "_" is size); *end gets the end of the
 * group's key. NULL when there is none. */
static const char *find_group_of(const char *list, const char *key, const char *size,
                                 const char **end)
{
    for (const char *open = strchr(list, '('); open; open = strchr(open + 1, '(')) {
        const char *start = open + 1;
        const char *stop = key_end(start);
        if (size) {
            /* By whole characters: a Big5 trail byte 5F is no "_". */
            const char *last = nullptr;
            for (const char *p = start; p < stop; p += big5_char_bytes(p))
                if (*p == '_')
                    last = p;
            if (last && (size_t)(stop - last - 1) == strlen(size) &&
                strncmp(last + 1, size, strlen(size)) == 0) {
                *end = stop;
                return open;
            }
        } else {
            size_t len = strlen(key);
            if (strncmp(start, key, len) == 0 && start[len] == ' ') {
                *end = start + len;
                return open;
            }
        }
    }
    return nullptr;
}

void spec_set_count(char *list, const char *key, const char *size, const char *count)
{
    char result[TEXT_SIZE] = "", number[32];
    long long n = read_count(count);
    const char *key_stop = nullptr;

    /* A list longer than its buffer is not one this rule made or can hold. */
    if (n < 0 || strlen(list) > (size_t)TEXT_MAX)
        return;
    snprintf(number, sizeof number, "%lld", n);
    const char *open = find_group_of(list, key, size, &key_stop);
    const char *close = open ? strchr(key_stop, ')') : nullptr;
    if (n == 0) {
        if (!open)
            return;
        strncat(result, list, (size_t)(open - list));
        if (close) {
            const char *rest = close + 1;
            while (*rest == ' ')
                rest++;
            strcatv(TEXT_MAX, result, rest, nullptr);
        }
    } else if (open) {
        strncat(result, list, (size_t)(key_stop - list) < TEXT_MAX ? (size_t)(key_stop - list) : TEXT_MAX);
        strcatv(TEXT_MAX, result, " ", number, close ? close : "))", nullptr);
    } else if (!strchr(list, ')')) {
        strcatv(TEXT_MAX, result, "((", key, " ", number, "))", nullptr);
    } else {
        strcatv(TEXT_MAX, result, list, nullptr);
        *strrchr(result, ')') = '\0';
        size_t len = strlen(result);
        strcatv(TEXT_MAX, result, len && result[len - 1] == ')' ? " (" : "(", key, " ", number, "))",
                nullptr);
    }
    strcpy(list, result);
}

/* ---- Labels ---------------------------------------------------------------- */

/* Appends one item's text to a label: the separator when the label is not
 * empty, the contribution, and "x" and the count unless it is "1". */
static void contribute(char *label, const char *contribution, const char *count)
{
    strcatv(TEXT_MAX, label, label[0] ? "," : "", contribution, nullptr);
    if (strcmp(count, "1") != 0)
        strcatv(TEXT_MAX, label, "x", count, nullptr);
}

/* A conduit key (PVC28) as its contribution (φ28PVC); 0 for another key. */
static int conduit(const char *key, char *out)
{
    static const char *const materials[] = {"PVC", "EMT", "GIP"};
    for (const char *m : materials)
        if (strncmp(key, m, 3) == 0) {
            out[0] = '\0';
            strcatv(TEXT_MAX, out, DIAMETER_SIGN, key + 3, m, nullptr);
            return 1;
        }
    return 0;
}

/* The contribution of an ELINE or SLINE key; 0 when it contributes nothing. */
static int key_contribution(const char *kind, const char *key, char *out)
{
    out[0] = '\0';
    if (strcmp(kind, "SLINE") == 0) {
        if (key[0] == 'V' || key[0] == 'S') {
            strcatv(TEXT_MAX, out, key + 1, nullptr);
            return 1;
        }
        if (key[0] == 'T') {
            strcatv(TEXT_MAX, out, key + 1, "-PE-PVC", nullptr);
            return 1;
        }
        return conduit(key, out);
    }
    if (key[0] == 'S') {
        strcatv(TEXT_MAX, out, key + 1, nullptr);
        return 1;
    }
    if (key[0] == 'E' && key[1] != 'M') {
        strcatv(TEXT_MAX, out, key + 1, "E", nullptr);
        return 1;
    }
    return conduit(key, out);
}

/* The contribution of a PLINE group text ("mm_PVC_20 1"): size, unit,
 * material; 0 when the group is not of that form. */
static int pipe_contribution(char *group, char *out, const char **count)
{
    char *blank = nullptr;
    for (char *p = group; *p; p++)
        if (is_blank((unsigned char)*p))
            blank = p;
    if (!blank)
        return 0;
    *blank = '\0';
    *count = blank + 1;
    /* The last "_" characters; a Big5 trail byte 5F is not one. */
    char *size = (char *)big5_strrchr(group, '_');
    if (!size)
        return 0;
    *size++ = '\0';
    char *material = (char *)big5_strrchr(group, '_');
    if (!material)
        return 0;
    *material++ = '\0';
    const char *unit = group;
    int inch = (unit[0] == 'i' || unit[0] == 'I') && (unit[1] == 'n' || unit[1] == 'N') && !unit[2];
    out[0] = '\0';
    strcatv(TEXT_MAX, out, size, inch ? "\\\"" : unit, material, nullptr);
    return 1;
}

void spec_format_label(const char *kind, const char *list, char *out)
{
    char group[TEXT_SIZE], contribution[TEXT_SIZE], key[TEXT_SIZE], count[TEXT_SIZE];
    int pipes = strcmp(kind, "PLINE") == 0;
    const char *p = strchr(list, '(');

    out[0] = '\0';
    if (!p)
        return;
    for (p++;;) {
        const char *open = strchr(p, '(');
        const char *close = open ? strchr(open + 1, ')') : nullptr;
        if (!close)
            return;
        size_t len = (size_t)(close - open - 1);
        if (len > (size_t)TEXT_MAX)
            len = TEXT_MAX;
        memcpy(group, open + 1, len);
        group[len] = '\0';
        p = close + 1;
        if (pipes) {
            const char *pipe_count = nullptr;
            if (pipe_contribution(group, contribution, &pipe_count))
                contribute(out, contribution, pipe_count);
            continue;
        }
        key[0] = count[0] = '\0';
        if (sscanf(group, "%255s %255s", key, count) == 2 && key_contribution(kind, key, contribution))
            contribute(out, contribution, count);
    }
}

/* ---- The drawing form ---------------------------------------------------------- */

void label_drawing_form(void)
{
    char grown[TEXT_SIZE * 2] = "";
    char *label = RecordFields[4];

    /* Every backslash that stands before a quote goes, also when several do;
     * the trail byte 5C of a Big5 character is no backslash. */
    for (char *q; (q = (char *)big5_strstr(label, "\\\"")) != nullptr;)
        memmove(q, q + 1, strlen(q));
    /* Diameter signs, found by whole characters, become the host's code. */
    size_t n = 0;
    for (size_t i = 0; label[i];) {
        int pair = big5_is_lead((unsigned char)label[i]) && big5_is_trail((unsigned char)label[i + 1]);
        if (pair && memcmp(label + i, DIAMETER_SIGN, 2) == 0) {
            memcpy(grown + n, DIAMETER_CODE, 3);
            n += 3;
        } else {
            memcpy(grown + n, label + i, pair ? 2 : 1);
            n += pair ? 2 : 1;
        }
        i += pair ? 2 : 1;
    }
    grown[n] = '\0';
    /* Cut once, at 255 bytes, never inside a character or a "%%c". */
    size_t cut = 0;
    for (size_t i = 0; i < n;) {
        size_t unit = strncmp(grown + i, DIAMETER_CODE, 3) == 0 ? 3
                      : big5_is_lead((unsigned char)grown[i]) && big5_is_trail((unsigned char)grown[i + 1]) ? 2
                                                                                                           : 1;
        if (i + unit > TEXT_MAX)
            break;
        i += unit;
        cut = i;
    }
    grown[cut] = '\0';
    strcpy(label, grown);
}
