/* runs.cpp - applying run types and labelling runs. */
#include <math.h>
#include <stdlib.h>
#include <string.h>

#include "ads.h"
#include "runs.h"
#include "../cable/spec_label.h"
#include "../host/hostval.h"
#include "../linetool/catalogue.h"
#include "../util/textutil.h"

/* M_PI is not standard C++; the C runtime of the module's DLL hides it. */
static const ads_real Pi = 3.14159265358979323846;
static const ads_real HalfPi = Pi / 2, ThreeHalfPi = 3 * Pi / 2, TwoPi = 2 * Pi;

static ads_real degrees(ads_real radians)
{
    return radians * 180.0 * (1.0 / Pi);
}

static int is_digit(char c)
{
    return c >= '0' && c <= '9';
}

ads_real label_gap_value(const char *text)
{
    char number[64];
    size_t n = 0;
    const char *p = text;
    while (*p == ' ' || *p == '\t')
        p++;
    if (*p == '+' || *p == '-')
        number[n++] = *p++;
    size_t digits = 0;
    while (is_digit(*p) && n < sizeof number - 8)
        number[n++] = *p++, digits++;
    if (*p == '.') {
        number[n++] = *p++;
        while (is_digit(*p) && n < sizeof number - 8)
            number[n++] = *p++, digits++;
    }
    if (digits && (*p == 'e' || *p == 'E')) {
        const char *q = p + 1;
        if (*q == '+' || *q == '-')
            q++;
        if (is_digit(*q)) {
            while (p < q)
                number[n++] = *p++;
            while (is_digit(*p) && n < sizeof number - 1)
                number[n++] = *p++;
        }
    }
    number[n] = '\0';
    if (!digits)
        return 0;
    ads_real v = atof(number);
    return isfinite(v) ? v : 0;
}

static const char *type_of(struct resbuf *data)
{
    struct resbuf *type = find_group(data, 0);
    return type && type->resval.rstring ? type->resval.rstring : "";
}

static int is_run(const char *type)
{
    return strcmp(type, "LINE") == 0 || strcmp(type, "POLYLINE") == 0 || strcmp(type, "ARC") == 0;
}

static void copy_point(ads_point to, const ads_real *from)
{
    to[0] = from[0], to[1] = from[1], to[2] = from[2];
}

/* The label of a straight run from p to q: above it, reading left to right. */
static int line_rule(const ads_point p, const ads_point q, ads_real offset, ads_point at,
                     ads_real *rotation)
{
    ads_real a = ads_angle(p, q);
    if (a > HalfPi && a < ThreeHalfPi) {
        a += Pi;
        if (a > TwoPi)
            a -= TwoPi;
    }
    at[0] = (p[0] + q[0]) * 0.5 - sin(a) * offset;
    at[1] = (p[1] + q[1]) * 0.5 + cos(a) * offset;
    at[2] = (p[2] + q[2]) * 0.5;
    *rotation = degrees(a);
    return 1;
}

/* The label of an arc counter-clockwise from a1 to a2 about o: outside it,
 * at its middle. */
static int arc_rule(const ads_point o, ads_real radius, ads_real a1, ads_real a2, ads_real offset,
                    ads_point at, ads_real *rotation)
{
    ads_real m = a2 > a1 ? a1 + (a2 - a1) * 0.5 : a2 + (a1 - a2) * 0.5 + Pi;
    if (m > TwoPi)
        m -= TwoPi;
    ads_polar(o, m, radius + offset, at);
    ads_real r = m - HalfPi;
    if (r > HalfPi && r < ThreeHalfPi)
        r -= Pi;
    *rotation = degrees(r);
    return 1;
}

/* The label of a polyline segment from p to q with bulge b, an arc. */
static int bulge_rule(const ads_point from, const ads_point to, ads_real b, ads_real offset,
                      ads_point at, ads_real *rotation)
{
    ads_point p, q, o;
    copy_point(p, b < 0 ? to : from);
    copy_point(q, b < 0 ? from : to);
    b = fabs(b);
    ads_real d = ads_distance(p, q);
    if (d == 0)
        return 0; /* a segment without length has no arc to label */
    ads_real a = ads_angle(p, q);
    ads_real s = d * b * 0.5;
    ads_real radius = (s * s + d * d * 0.25) / (2 * s);
    o[0] = (p[0] + q[0]) * 0.5 - sin(a) * (radius - s);
    o[1] = (p[1] + q[1]) * 0.5 + cos(a) * (radius - s);
    o[2] = (p[2] + q[2]) * 0.5;
    return arc_rule(o, radius, ads_angle(o, p), ads_angle(o, q), offset, at, rotation);
}

/* The first segment of the polyline whose data is given: its two leading
 * vertices' locations and the first one's bulge; 0 without two vertices. */
static int first_segment(struct resbuf *data, ads_point p, ads_point q, ads_real *bulge)
{
    struct resbuf *name = find_group(data, -1);
    ads_name v1, v2;
    int found = 0;
    if (!name || ads_entnext(name->resval.rlname, v1) != RTNORM)
        return 0;
    struct resbuf *first = ads_entget(v1);
    struct resbuf *second = nullptr;
    if (first && strcmp(type_of(first), "VERTEX") == 0 && ads_entnext(v1, v2) == RTNORM)
        second = ads_entget(v2);
    if (second && strcmp(type_of(second), "VERTEX") == 0) {
        struct resbuf *b = find_group(first, 42);
        copy_point(p, find_group(first, 10)->resval.rpoint);
        copy_point(q, find_group(second, 10)->resval.rpoint);
        *bulge = b ? b->resval.rreal : 0;
        found = 1;
    }
    ads_relrb(first);
    ads_relrb(second);
    return found;
}

int run_label_placement(struct resbuf *data, ads_real offset, ads_point at, ads_real *rotation)
{
    const char *type = type_of(data);
    ads_point p, q;
    if (strcmp(type, "LINE") == 0) {
        struct resbuf *start = find_group(data, 10), *end = find_group(data, 11);
        if (!start || !end)
            return 0;
        return line_rule(start->resval.rpoint, end->resval.rpoint, offset, at, rotation);
    }
    if (strcmp(type, "POLYLINE") == 0) {
        ads_real bulge;
        if (!first_segment(data, p, q, &bulge))
            return 0;
        return bulge == 0 ? line_rule(p, q, offset, at, rotation)
                          : bulge_rule(p, q, bulge, offset, at, rotation);
    }
    if (strcmp(type, "ARC") == 0) {
        struct resbuf *o = find_group(data, 10), *r = find_group(data, 40);
        struct resbuf *a1 = find_group(data, 50), *a2 = find_group(data, 51);
        if (!o || !r || !a1 || !a2)
            return 0;
        return arc_rule(o->resval.rpoint, r->resval.rreal, a1->resval.rreal, a2->resval.rreal, offset,
                        at, rotation);
    }
    return 0;
}

/* Text height, label offset and the TEXT form, decided once per operation. */
struct LabelSettings {
    ads_real fixed_height;
    ads_real offset;
};

static LabelSettings label_settings(void)
{
    ads_real fixed = 0, size = 0;
    text_size_settings(&fixed, &size);
    ads_real height = fixed != 0 ? fixed : size;
    return LabelSettings{fixed, height * 0.5 + label_gap_value(LabelGap)};
}

/* Writes the label in field 5 of RecordFields (drawing form) beside the
 * run whose data is given. */
static void write_label(struct resbuf *data, const LabelSettings &settings)
{
    ads_point at;
    ads_real rotation;
    if (!run_label_placement(data, settings.offset, at, &rotation))
        return;
    if (settings.fixed_height != 0)
        ads_command(RTSTR, "TEXT", RTSTR, "M", RT3DPOINT, at, RTREAL, rotation, RTSTR, RecordFields[4], 0);
    else
        ads_command(RTSTR, "TEXT", RTSTR, "M", RT3DPOINT, at, RTSTR, "", RTREAL, rotation, RTSTR,
                    RecordFields[4], 0);
}

/* The user's selection and its length; 0 when there is nothing to work on
 * (the set, if any, already released). */
static int select_runs(ads_name set, long *length)
{
    if (ads_ssget("", nullptr, nullptr, nullptr, set) != RTNORM)
        return 0;
    if (ads_sslength(set, length) != RTNORM || *length <= 0) {
        ads_ssfree(set);
        return 0;
    }
    return 1;
}

/* Feeds the runs of the set to LAYER and CHPROP; 1 when any was taken. */
static int change_properties(const ads_name set, long length)
{
    int accepted = 0;
    for (long i = 0; i < length; i++) {
        ads_name member;
        if (ads_ssname(set, i, member) != RTNORM)
            continue;
        struct resbuf *data = ads_entget(member);
        if (data && is_run(type_of(data))) {
            if (!accepted) {
                ads_command(RTSTR, "LAYER", RTSTR, "N", RTSTR, RecordFields[2], RTSTR, "", 0);
                ads_command(RTSTR, "CHPROP", RTENAME, member, 0);
            } else {
                ads_command(RTENAME, member, 0);
            }
            accepted = 1;
        }
        ads_relrb(data);
    }
    if (accepted)
        ads_command(RTSTR, "", RTSTR, "LT", RTSTR, RecordFields[1], RTSTR, "LA", RTSTR, RecordFields[2],
                    RTSTR, "C", RTSTR, RecordFields[3], RTSTR, "", 0);
    return accepted;
}

/* Whether the run whose data is given carries the linetype of a run type
 * of the catalogue; that record is then in RecordFields. */
static int own_run_type(struct resbuf *data)
{
    struct resbuf *linetype = find_group(data, 6);
    return is_run(type_of(data)) && linetype && linetype->resval.rstring &&
           find_run_type_by_linetype(linetype->resval.rstring);
}

/* Writes a label beside each member of the set that gets one: the label in
 * RecordFields (already in drawing form), or, by_linetype, the label of the
 * run type whose linetype the member carries. */
static void label_members(const ads_name set, long length, const LabelSettings &settings, int by_linetype)
{
    for (long i = 0; i < length; i++) {
        ads_name member;
        if (ads_ssname(set, i, member) != RTNORM)
            continue;
        struct resbuf *data = ads_entget(member);
        if (data && (!by_linetype || own_run_type(data))) {
            if (by_linetype)
                label_drawing_form();
            write_label(data, settings);
        }
        ads_relrb(data);
    }
}

void apply_run_type(void)
{
    ads_name set;
    long length;
    TextNode *node, *prev;

    if (!select_runs(set, &length))
        return;
    catalogue_selected(&node, &prev);
    if (!node) {
        ads_ssfree(set);
        return;
    }
    parse_record(node->text, 0);
    short echo = set_int_sysvar("CMDECHO", 0);
    if (change_properties(set, length) && LabelOn) {
        label_drawing_form();
        label_members(set, length, label_settings(), 0);
    }
    set_int_sysvar("CMDECHO", echo);
    ads_ssfree(set);
}

/* ASCII letters compared without case, byte by byte. */
static int same_name(const char *a, const char *b)
{
    for (; *a && *b; a++, b++) {
        char x = *a >= 'a' && *a <= 'z' ? (char)(*a - 32) : *a;
        char y = *b >= 'a' && *b <= 'z' ? (char)(*b - 32) : *b;
        if (x != y)
            return 0;
    }
    return *a == *b;
}

int find_run_type_by_linetype(const char *name)
{
    for (TextNode *node = Catalogue.head; node; node = node->next) {
        parse_record(node->text, 0);
        if (same_name(RecordFields[1], name))
            return 1;
    }
    return 0;
}

void label_existing_runs(void)
{
    ads_name set;
    long length;

    if (!select_runs(set, &length))
        return;
    short echo = set_int_sysvar("CMDECHO", 0);
    label_members(set, length, label_settings(), 1);
    set_int_sysvar("CMDECHO", echo);
    ads_ssfree(set);
}
