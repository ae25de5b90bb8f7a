/* schedule.h - panel schedule files (*.ACF), read only.
 *
 * A schedule is loaded into a TextList with textlist_load (n = 1, w1 = 255),
 * so only lines holding a word are kept and line positions count kept lines.
 * Roles go by position: the first line is the header, the last the totals,
 * every line between them one circuit, drawn left to right. A line is a list
 * of fields separated by ';', numbered from 0, with no quoting. */
#ifndef VORMIS_PANEL_SCHEDULE_H
#define VORMIS_PANEL_SCHEDULE_H

#include <stddef.h>

struct TextNode;
struct TextList;

/* Header line. The corner text is field 0 from its seventh character on; its
 * first six characters are a prefix that is never shown. */
constexpr int HEADER_CORNER = 0;
constexpr int HEADER_TITLE = 1;
constexpr int HEADER_PREFIX_LENGTH = 6;

/* Circuit lines. The breaker's four attribute values are the four fields
 * from CIRCUIT_BREAKER on, in the order of the breaker block's prompts. */
constexpr int CIRCUIT_DESCRIPTION = 0;
constexpr int CIRCUIT_BREAKER = 3;
constexpr int CIRCUIT_CONDUCTOR_SIZE = 7;
constexpr int CIRCUIT_CONDUCTOR_COUNT = 8;
constexpr int CIRCUIT_CONDUIT_SUFFIX = 9;
constexpr int CIRCUIT_CONDUIT_SIZE = 10;
constexpr int CIRCUIT_EARTH_SIZE = 11;
constexpr int CIRCUIT_DEVICE = 12;         /* switch: 'M' or 'Y' */
constexpr int CIRCUIT_DEVICE_LABEL = 13;
constexpr int CIRCUIT_SECOND_BREAKER = 14; /* switch: 'Y' */
constexpr int CIRCUIT_SP_LABEL = 15;
constexpr int CIRCUIT_LOAD_SYMBOL = 16;    /* switch: 'R' or 'C' */
constexpr int CIRCUIT_SYMBOL_TEXT_1 = 18;
constexpr int CIRCUIT_SYMBOL_TEXT_2 = 19;

/* Totals line. The main breaker's four attribute values start at
 * TOTALS_BREAKER; the last of them is also the interrupting capacity. */
constexpr int TOTALS_LOAD = 1;
constexpr int TOTALS_BREAKER = 3;
constexpr int TOTALS_CAPACITY = 6;

constexpr int BREAKER_FIELDS = 4;

/* A schedule with fewer lines has no circuit and is not drawn. */
constexpr int SCHEDULE_MIN_LINES = 3;

/* Field index of line into out (256 bytes): the text between the index-th
 * and the next ';' (or the line end), spaces (0x20 only; tabs stay) removed
 * at both ends, every byte 0xED (the diameter sign of the files' code page,
 * also inside a Big5 character) replaced by the host code "%%c", cut at 255
 * bytes by cut_text. Empty for a field the line does not reach or one of
 * spaces only. */
void acf_field(const TextNode *line, int index, char *out);

/* Cuts text to at most limit bytes, never inside a Big5 pair or a host text
 * code ("%%" and the ASCII character after it). */
void cut_text(char *text, size_t limit);

/* The number of circuit lines of a loaded schedule; 0 when it has fewer than
 * SCHEDULE_MIN_LINES lines. */
int schedule_circuit_count(const TextList *schedule);

/* Circuit line k (from 0) of a loaded schedule; NULL when there is none. */
const TextNode *schedule_circuit(const TextList *schedule, int k);

/* Whether a switch field is on: its first character is c, case counting. */
int field_switch(const char *field, char c);

/* The shown part of header field 0: from its seventh character on, empty
 * for a field of six characters or fewer. */
const char *corner_text(const char *field);

#endif
