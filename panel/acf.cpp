/* acf.cpp - VOR_ACF: panel diagrams, each drawn from its schedule with the
 * host's commands: feeder, main breaker, bus, one branch per circuit, the
 * dashed panel box with its totals, and the title. */
#include <stdio.h>
#include <string.h>

#include "ads.h"
#include "acf.h"
#include "circuit_text.h"
#include "schedule.h"
#include "../browser/browser.h"
#include "../host/entry.h"
#include "../host/hostval.h"
#include "../util/textutil.h"

/* Dimensions of the diagram, in drawing units. */
static const ads_real TextHeight = 25;   /* every text of the panel itself */
static const char LineWidth[] = "5";     /* feeder and bus polylines */
static const ads_real Pitch = 250;       /* between branches */
static const ads_real BreakerGap = 100;  /* main breaker below the start point */
static const ads_real BusDepth = 400;    /* bus below the start point */
static const ads_real BoxLeft = 150, BoxRight = 250, BoxBelow = 315, BoxAbove = 350;
static const ads_real BranchLength = 1000;
static const ads_real MinimumLtscale = 30;
/* Depths below the bus along a branch. */
static const ads_real BreakerAt = 100, BreakerEnd = 200, DeviceAt = 227.5, DeviceEnd = 287.5;
static const ads_real ShuntAt = 424.35, SecondBreakerAt = 462.5, SecondBreakerEnd = 562.5;
static const ads_real LabelAt = 680, SymbolText1 = 1030, SymbolText2 = 1090, DescriptionAt = 1180;

/* The browser lists no more files than this, so no more can be chosen. */
constexpr int MAX_FILES = BROWSER_LISTED_MAX;

/* The chosen files that are drawn, as indexes into Selection, in the order
 * of choosing. */
static int Drawn[MAX_FILES];
/* The entries of Drawn in use. */
static int DrawnCount;
/* The start point the user gave for each file drawn: StartPoints[k] is
 * that of Drawn[k]. */
static ads_point StartPoints[MAX_FILES];

void panel_reset(void)
{
    memset(Drawn, 0, sizeof Drawn);
    DrawnCount = 0;
    memset(StartPoints, 0, sizeof StartPoints);
}

static void at(ads_point p, ads_real x, ads_real y, ads_real z)
{
    p[0] = x, p[1] = y, p[2] = z;
}

static int pline(const ads_point from, const ads_point to)
{
    return ads_command(RTSTR, "PLINE", RT3DPOINT, from, RTSTR, "W", RTSTR, LineWidth, RTSTR, LineWidth,
                       RT3DPOINT, to, RTSTR, "", 0);
}

static int line(const ads_point from, const ads_point to)
{
    return ads_command(RTSTR, "LINE", RT3DPOINT, from, RT3DPOINT, to, RTSTR, "", 0);
}

/* Where a circuit's branch hangs: its schedule line, its x, the height of
 * the bus and the z of every point. */
struct Branch {
    const TextNode *circuit;
    ads_real x, bus, z;
};

/* The point of a branch at depth below the bus. */
static void branch_point(const Branch *b, ads_real depth, ads_point p)
{
    at(p, b->x, b->bus - depth, b->z);
}

/* A vertical run of a branch from one depth below the bus to another. */
static int branch_line(const Branch *b, ads_real top, ads_real bottom)
{
    ads_point from, to;
    branch_point(b, top, from);
    branch_point(b, bottom, to);
    return line(from, to);
}

/* "INSERT" of a breaker at p with the four attribute values of the line's
 * fields from first on. */
static int breaker(const TextNode *line_of, int first, const ads_point p)
{
    static_assert(BREAKER_FIELDS == 4, "the command below answers four attribute prompts");
    char f[BREAKER_FIELDS][TEXT_SIZE];
    for (int k = 0; k < BREAKER_FIELDS; k++)
        acf_field(line_of, first + k, f[k]);
    return ads_command(RTSTR, "INSERT", RTSTR, "NFB--", RT3DPOINT, p, RTSTR, "1", RTSTR, "1", RTSTR, "0",
                       RTSTR, f[0], RTSTR, f[1], RTSTR, f[2], RTSTR, f[3], 0);
}

/* "INSERT" of a block with one attribute value, or none when value is NULL. */
static int block(const char *name, const ads_point p, const char *value)
{
    if (value)
        return ads_command(RTSTR, "INSERT", RTSTR, name, RT3DPOINT, p, RTSTR, "1", RTSTR, "1", RTSTR, "0",
                           RTSTR, value, 0);
    return ads_command(RTSTR, "INSERT", RTSTR, name, RT3DPOINT, p, RTSTR, "1", RTSTR, "1", RTSTR, "0", 0);
}

/* The dashed box around the bus, the current linetype put back after it.
 * RTNORM when the box was drawn. */
static int panel_box(ads_real left, ads_real right, ads_real bus, ads_real z)
{
    char celtype[TEXT_SIZE] = "BYLAYER";
    struct resbuf *value = ads_newrb(RTSTR);
    if (value && ads_getvar("CELTYPE", value) == RTNORM && value->restype == RTSTR && value->resval.rstring) {
        celtype[0] = '\0';
        strcatv(TEXT_MAX, celtype, value->resval.rstring, nullptr);
    }
    ads_relrb(value);
    ads_real ltscale = 1.0;
    struct resbuf *scale = ads_newrb(RTREAL);
    if (scale && ads_getvar("LTSCALE", scale) == RTNORM && scale->restype == RTREAL)
        ltscale = scale->resval.rreal;
    ads_relrb(scale);
    if (ltscale < MinimumLtscale)
        ads_command(RTSTR, "LTSCALE", RTSTR, "100", 0);

    ads_command(RTSTR, "LINETYPE", RTSTR, "S", RTSTR, "DASHED", RTSTR, "", 0);
    ads_point c[4];
    at(c[0], left - BoxLeft, bus - BoxBelow, z);
    at(c[1], right + BoxRight, bus - BoxBelow, z);
    at(c[2], right + BoxRight, bus + BoxAbove, z);
    at(c[3], left - BoxLeft, bus + BoxAbove, z);
    int drawn = ads_command(RTSTR, "LINE", RT3DPOINT, c[0], RT3DPOINT, c[1], RT3DPOINT, c[2], RT3DPOINT, c[3],
                            RTSTR, "C", 0);
    ads_command(RTSTR, "LINETYPE", RTSTR, "S", RTSTR, celtype, RTSTR, "", 0);
    return drawn;
}

/* "TEXT" at p, height T, rotation, text: left-aligned, or right-aligned
 * with justification "R". */
static int write_text(const char *justification, const ads_point p, const char *rotation, const char *text)
{
    if (justification)
        return ads_command(RTSTR, "TEXT", RTSTR, justification, RT3DPOINT, p, RTREAL, TextHeight, RTSTR,
                           rotation, RTSTR, text, 0);
    return ads_command(RTSTR, "TEXT", RT3DPOINT, p, RTREAL, TextHeight, RTSTR, rotation, RTSTR, text, 0);
}

/* The totals, the interrupting capacity and the header's corner text. */
static int totals(const TextList *schedule, ads_real left, ads_real right, ads_real bus, ads_real z)
{
    char field[TEXT_SIZE], text[TEXT_SIZE];
    ads_point p;
    acf_field(schedule->tail, TOTALS_LOAD, field);
    text[0] = '\0';
    strcatv(TEXT_MAX, text, "Total:", field, "VA", nullptr);
    at(p, left - BoxLeft + TextHeight, bus + BoxAbove - 1.5 * TextHeight, z);
    if (write_text(nullptr, p, "0", text) != RTNORM)
        return RTERROR;
    acf_field(schedule->tail, TOTALS_CAPACITY, field);
    text[0] = '\0';
    strcatv(TEXT_MAX, text, "IC:", field, nullptr);
    if (ads_command(RTSTR, "TEXT", RTSTR, "", RTSTR, text, 0) != RTNORM)
        return RTERROR;
    acf_field(schedule->head, HEADER_CORNER, field);
    at(p, right + BoxRight - TextHeight, bus + BoxAbove - 1.5 * TextHeight, z);
    return write_text("R", p, "0", corner_text(field));
}

/* The branch's top: from the bus down to the circuit's breaker. */
static int branch_top(const Branch *b)
{
    ads_point p;
    if (ads_command(RTSTR, "TEXTSTYLE", RTSTR, "ROMANSAEH", 0) != RTNORM)
        return RTERROR;
    if (branch_line(b, 0, BreakerAt) != RTNORM)
        return RTERROR;
    branch_point(b, BreakerAt, p);
    return breaker(b->circuit, CIRCUIT_BREAKER, p);
}

/* Below the breaker, the run through the device block ("M" or "Y") down
 * to the depth end. */
static int device_run(const Branch *b, const char *device, ads_real end)
{
    char label[TEXT_SIZE];
    ads_point p;
    if (branch_line(b, BreakerEnd, DeviceAt) != RTNORM)
        return RTERROR;
    acf_field(b->circuit, CIRCUIT_DEVICE_LABEL, label);
    branch_point(b, DeviceAt, p);
    if (block(field_switch(device, 'M') ? "MS--" : "Y3--", p, label) != RTNORM)
        return RTERROR;
    return branch_line(b, DeviceEnd, end);
}

/* The second breaker with its shunt trip SP--, and the run below them. */
static int second_breaker_group(const Branch *b)
{
    char label[TEXT_SIZE];
    ads_point p;
    branch_point(b, SecondBreakerAt, p);
    if (breaker(b->circuit, CIRCUIT_BREAKER, p) != RTNORM)
        return RTERROR;
    acf_field(b->circuit, CIRCUIT_SP_LABEL, label);
    branch_point(b, ShuntAt, p);
    if (block("SP--", p, label) != RTNORM)
        return RTERROR;
    return branch_line(b, SecondBreakerEnd, BranchLength);
}

/* The middle of the branch, down to its lower end, as the switches of the
 * device and of the second breaker have it. */
static int branch_middle(const Branch *b)
{
    char device[TEXT_SIZE], second[TEXT_SIZE];
    acf_field(b->circuit, CIRCUIT_DEVICE, device);
    acf_field(b->circuit, CIRCUIT_SECOND_BREAKER, second);
    int has_device = field_switch(device, 'M') || field_switch(device, 'Y');
    int has_second = field_switch(second, 'Y');
    ads_real run_end = has_second ? SecondBreakerAt : BranchLength;
    int drawn = has_device ? device_run(b, device, run_end) : branch_line(b, BreakerEnd, run_end);
    if (drawn != RTNORM || !has_second)
        return drawn;
    return second_breaker_group(b);
}

/* The load symbol ("R" or "C") at the branch's lower end and its two
 * texts; nothing for any other switch. */
static int load_symbol(const Branch *b)
{
    char symbol[TEXT_SIZE], text[TEXT_SIZE];
    ads_point p;
    acf_field(b->circuit, CIRCUIT_LOAD_SYMBOL, symbol);
    if (!field_switch(symbol, 'R') && !field_switch(symbol, 'C'))
        return RTNORM;
    branch_point(b, BranchLength, p);
    if (block(field_switch(symbol, 'R') ? "$RECT" : "$CIRCLE", p, nullptr) != RTNORM)
        return RTERROR;
    acf_field(b->circuit, CIRCUIT_SYMBOL_TEXT_1, text);
    branch_point(b, SymbolText1, p);
    if (write_text("M", p, "0", text) != RTNORM)
        return RTERROR;
    acf_field(b->circuit, CIRCUIT_SYMBOL_TEXT_2, text);
    branch_point(b, SymbolText2, p);
    return write_text("M", p, "0", text);
}

/* The cable label along the branch, when the circuit has one. */
static int cable_label(const Branch *b)
{
    char size[TEXT_SIZE], count[TEXT_SIZE], earth[TEXT_SIZE], conduit[TEXT_SIZE], suffix[TEXT_SIZE];
    char label[TEXT_SIZE];
    ads_point p;
    acf_field(b->circuit, CIRCUIT_CONDUCTOR_SIZE, size);
    acf_field(b->circuit, CIRCUIT_CONDUCTOR_COUNT, count);
    acf_field(b->circuit, CIRCUIT_EARTH_SIZE, earth);
    acf_field(b->circuit, CIRCUIT_CONDUIT_SIZE, conduit);
    acf_field(b->circuit, CIRCUIT_CONDUIT_SUFFIX, suffix);
    compose_cable_label(size, count, earth, conduit, suffix, label);
    if (!label[0])
        return RTNORM;
    at(p, b->x + TextHeight, b->bus - LabelAt, b->z);
    return write_text(nullptr, p, "-90", label);
}

/* The circuit's description as column text below the branch. */
static int description(const Branch *b)
{
    char text[TEXT_SIZE];
    ads_point p;
    if (ads_command(RTSTR, "TEXTSTYLE", RTSTR, "ROMANSAEV", 0) != RTNORM)
        return RTERROR;
    acf_field(b->circuit, CIRCUIT_DESCRIPTION, text);
    branch_point(b, DescriptionAt, p);
    return write_column_text(p, text) == 0 ? RTNORM : RTERROR;
}

/* The branch of one circuit, top to bottom; RTERROR at the first command
 * that fails. */
static int circuit(const Branch *b)
{
    if (branch_top(b) != RTNORM || branch_middle(b) != RTNORM || load_symbol(b) != RTNORM ||
        cable_label(b) != RTNORM)
        return RTERROR;
    return description(b);
}

void draw_panel(const TextList *schedule, const ads_point start)
{
    char field[TEXT_SIZE];
    ads_point p, q;
    const ads_real px = start[0], py = start[1], z = start[2];
    int circuits = schedule_circuit_count(schedule);
    ads_real width = Pitch * (circuits - 1);
    ads_real left = px - width / 2, right = px + width / 2, bus = py - BusDepth;

    acf_field(schedule->head, HEADER_TITLE, field);
    at(p, px + TextHeight, py, z);
    if (write_text(nullptr, p, "0", field) != RTNORM)
        return;
    at(p, px, py, z);
    at(q, px, py - BreakerGap, z);
    if (pline(p, q) != RTNORM || breaker(schedule->tail, TOTALS_BREAKER, q) != RTNORM)
        return;
    at(p, px, py - 2 * BreakerGap, z);
    at(q, px, bus, z);
    if (pline(p, q) != RTNORM)
        return;
    if (width > 0) {
        at(p, left, bus, z);
        at(q, right, bus, z);
        if (pline(p, q) != RTNORM)
            return;
    }
    if (panel_box(left, right, bus, z) != RTNORM || totals(schedule, left, right, bus, z) != RTNORM)
        return;
    Branch branch = {schedule->head->next, left, bus, z};
    for (int k = 0; k < circuits && branch.circuit; k++, branch.circuit = branch.circuit->next) {
        branch.x = left + Pitch * k;
        if (circuit(&branch) != RTNORM)
            return;
    }
}

/* Makes a text style of the font ROMANS with the big font AE when the
 * drawing lacks it; RTNORM when it is there. */
static int ensure_style(const char *name, const char *vertical)
{
    struct resbuf *record = ads_tblsearch("STYLE", name, 0);
    if (record) {
        ads_relrb(record);
        return RTNORM;
    }
    return ads_command(RTSTR, "STYLE", RTSTR, name, RTSTR, "ROMANS,AE", RTSTR, "", RTSTR, "", RTSTR, "",
                       RTSTR, "", RTSTR, "", RTSTR, vertical, 0);
}

/* Takes the chosen files whose path fits in 255 bytes; a longer path cut
 * there would name another file, so each other file is named on the
 * command line as skipped. */
static void take_drawn_files(void)
{
    DrawnCount = 0;
    for (int k = 0; k < SelectionCount && k < MAX_FILES; k++) {
        const char *row = FileEntries[Selection[k]];
        int name = (int)strcspn(row, "\t");
        if (strlen(BrowserPath) + (size_t)name > (size_t)TEXT_MAX) {
            ads_printf("\nSchedule %.*s skipped: its path is longer than 255 characters", name, row);
            continue;
        }
        Drawn[DrawnCount++] = k;
    }
}

/* Asks one start point per file drawn; 0 when the user gave no point. */
static int ask_start_points(void)
{
    for (int k = 0; k < DrawnCount; k++) {
        char prompt[32];
        snprintf(prompt, sizeof prompt, "\nstart point %d:", k + 1);
        if (ads_getpoint(nullptr, prompt, StartPoints[k]) != RTNORM)
            return 0;
    }
    return 1;
}

/* Draws the panel of the k-th file drawn. */
static void draw_file(int k)
{
    char path[TEXT_SIZE] = "";
    TextList schedule = {};

    if (ads_command(RTSTR, "TEXTSTYLE", RTSTR, "ROMANSAEH", 0) != RTNORM)
        return;
    char *row = FileEntries[Selection[Drawn[k]]];
    char *tab = strchr(row, '\t');
    if (tab)
        *tab = '\0';
    strcatv(TEXT_MAX, path, BrowserPath, row, nullptr);
    textlist_load(path, &schedule, 1, TEXT_MAX, 0, 0, 0, 0, 0, 0);
    if (schedule_circuit_count(&schedule) > 0)
        draw_panel(&schedule, StartPoints[k]);
    textlist_free(&schedule);
}

int panel_diagram(void)
{
    BrowserPath[0] = '\0';
    if (CurrentArgs && CurrentArgs->restype == RTSTR && CurrentArgs->resval.rstring)
        strcatv(TEXT_MAX, BrowserPath, CurrentArgs->resval.rstring, nullptr);
    else
        strcpy(BrowserPath, "C:\\ACF\\");
    strcpy(BrowserPattern, "*.ACF");
    ScheduleMode = 1;
    int shown = file_browser();
    ScheduleMode = 0;
    if (shown != RTNORM || SelectionCount < 1)
        return RTNORM;
    take_drawn_files();
    if (DrawnCount < 1 || !ask_start_points())
        return RTNORM;

    short echo = set_int_sysvar("CMDECHO", 0);
    short blips = set_int_sysvar("BLIPMODE", 0);
    short limits = set_int_sysvar("LIMCHECK", 0);
    char style[TEXT_SIZE] = "";
    struct resbuf *current = ads_newrb(RTSTR);
    int have_style = current && ads_getvar("TEXTSTYLE", current) == RTNORM && current->restype == RTSTR &&
                     current->resval.rstring;
    if (have_style)
        strcatv(TEXT_MAX, style, current->resval.rstring, nullptr);
    ads_relrb(current);

    if (ensure_style("ROMANSAEH", "N") == RTNORM && ensure_style("ROMANSAEV", "Y") == RTNORM)
        for (int k = 0; k < DrawnCount; k++)
            draw_file(k);

    set_int_sysvar("BLIPMODE", blips);
    set_int_sysvar("LIMCHECK", limits);
    if (have_style)
        ads_command(RTSTR, "TEXTSTYLE", RTSTR, style, 0);
    set_int_sysvar("CMDECHO", echo);
    return RTNORM;
}
