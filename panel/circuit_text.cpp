/* circuit_text.cpp - cable labels and column descriptions of circuits. */
#include <math.h>
#include <string.h>

#include "ads.h"
#include "circuit_text.h"
#include "schedule.h"
#include "../util/textutil.h"

/* ---- Cable label ------------------------------------------------------------- */

/* One size of the label into out (256 bytes): the field up to its first
 * space, overscored when exactly "mm" follows that space. */
static void size_text(const char *field, char *out)
{
    const char *space = strchr(field, ' ');
    size_t len = space ? (size_t)(space - field) : strlen(field);
    char size[TEXT_SIZE];
    memcpy(size, field, len < TEXT_MAX ? len : TEXT_MAX);
    size[len < TEXT_MAX ? len : TEXT_MAX] = '\0';
    out[0] = '\0';
    if (space && strcmp(space + 1, "mm") == 0)
        strcatv(TEXT_MAX, out, "%%o", size, "%%o", nullptr);
    else
        strcatv(TEXT_MAX, out, size, nullptr);
}

void compose_cable_label(const char *size, const char *count, const char *earth,
                         const char *conduit, const char *suffix, char *label)
{
    /* Built whole and cut once, so that a cut never splits a code. */
    char parts[TEXT_SIZE * 6] = "";
    const int room = (int)sizeof parts - 1;
    char shown[TEXT_SIZE];

    if (size[0]) {
        size_text(size, shown);
        strcatv(room, parts, shown, nullptr);
        if (strcmp(count, "1") != 0)
            strcatv(room, parts, "x", count, nullptr);
    }
    if (earth[0]) {
        size_text(earth, shown);
        strcatv(room, parts, parts[0] ? ",E" : "E", shown, nullptr);
    }
    if (conduit[0])
        strcatv(room, parts, parts[0] ? ",%%c" : "%%c", conduit, suffix, nullptr);

    label[0] = '\0';
    if (!parts[0])
        return;
    char whole[TEXT_SIZE * 6 + 2] = "(";
    strcatv((int)sizeof whole - 1, whole, parts, ")", nullptr);
    cut_text(whole, TEXT_MAX);
    strcpy(label, whole);
}

/* ---- Column text ------------------------------------------------------------- */

static const ads_real COLUMN_HEIGHT = 50;
static const ads_real COLUMN_GAP = 20;

enum RunMode { RUN_NONE, RUN_HORIZONTAL, RUN_VERTICAL };

/* How far the last entity, a vertical text, reaches down: the height of its
 * text box; 0 when the host cannot give the box. */
static ads_real last_text_depth(void)
{
    ads_name last;
    ads_point low = {0, 0, 0}, high = {0, 0, 0};
    if (ads_entlast(last) != RTNORM)
        return 0;
    struct resbuf *data = ads_entget(last);
    if (!data)
        return 0;
    if (ads_textbox(data, low, high) != RTNORM)
        low[1] = high[1] = 0;
    ads_relrb(data);
    return fabs(high[1] - low[1]);
}

/* Writes the bytes of text from start to end as one run at q, moving q down
 * first (by the gap unless the run opens the column) and, for a vertical
 * run that is not the last, by its box afterwards. 1 when TEXT failed. */
static int write_run(ads_point q, const char *text, size_t start, size_t end, RunMode mode,
                     int last)
{
    char run[TEXT_SIZE];
    size_t len = end - start < TEXT_MAX ? end - start : TEXT_MAX;
    memcpy(run, text + start, len);
    run[len] = '\0';

    if (start != 0)
        q[1] -= COLUMN_GAP;
    if (mode == RUN_HORIZONTAL) {
        q[1] -= COLUMN_HEIGHT;
        return ads_command(RTSTR, "TEXT", RTSTR, "S", RTSTR, "ROMANSAEH", RTSTR, "BC", RT3DPOINT, q,
                           RTREAL, COLUMN_HEIGHT, RTSTR, "0", RTSTR, run, 0) != RTNORM;
    }
    if (ads_command(RTSTR, "TEXT", RTSTR, "S", RTSTR, "ROMANSAEV", RT3DPOINT, q, RTREAL,
                    COLUMN_HEIGHT, RTSTR, "270", RTSTR, run, 0) != RTNORM)
        return 1;
    if (!last)
        q[1] -= last_text_depth();
    return 0;
}

int write_column_text(const ads_point at, const char *text)
{
    /* Walked as unsigned bytes: a byte of 0x80 or more leads a Big5 pair. */
    const unsigned char *s = (const unsigned char *)text;
    size_t n = strlen(text);
    ads_point q = {at[0], at[1], at[2]};
    RunMode mode = RUN_NONE;
    const size_t none = (size_t)-1;
    size_t start = none;

    if (n == 0)
        return 0;
    for (size_t i = 0; i < n;) {
        if (s[i] >= 0x80) {
            if (mode == RUN_HORIZONTAL) {
                /* Spaces right before the character begin the vertical run. */
                size_t e = i;
                while (e > start && s[e - 1] == ' ')
                    e--;
                if (e > start && write_run(q, text, start, e, RUN_HORIZONTAL, 0))
                    return 1;
                start = e < i ? e : none;
            }
            mode = RUN_VERTICAL;
            if (start == none)
                start = i;
            i += 2;
            continue;
        }
        if (mode == RUN_VERTICAL) {
            if (s[i] == ' ') {
                i++;
                continue;
            }
            if (write_run(q, text, start, i, RUN_VERTICAL, 0))
                return 1;
            start = none;
        }
        mode = RUN_HORIZONTAL;
        if (start == none)
            start = i;
        i++;
    }
    return write_run(q, text, start, n, mode, 1);
}
