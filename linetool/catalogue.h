/* catalogue.h - the run-type catalogue of the current family: records of
 * seven quoted fields, their parsing and composing, the line tool's list
 * rows, the code filter and the record edits.
 *
 * A record line: ("code" "linetype" "layer" "colour" "label" "items"
 * "pattern"), a double quote inside a field written as backslash-quote. */
#ifndef VORMIS_LINETOOL_CATALOGUE_H
#define VORMIS_LINETOOL_CATALOGUE_H

#include <stdint.h>

#include "ads.h"
#include "../util/textlist.h"

constexpr int RECORD_FIELDS = 7;
constexpr int ROW_LIMIT = 500;  /* rows of the line tool's list */
constexpr int CODE_LIMIT = 501; /* distinct codes in the code list */
constexpr int CODE_WIDTH = 20;  /* bytes of a code in the code list */

/* The current family: "ELINE", "SLINE" or "PLINE". */
extern char KindName[6];
/* The records of the current family's catalogue file. */
extern TextList Catalogue;
/* Fields 1 to 7 of the record last parsed (index 0 is field 1). */
extern char RecordFields[RECORD_FIELDS][256];
/* Field 5 with its backslash-quote pairs turned into quotes. */
extern char SpecDisplay[256];
/* Catalogue index of each row of the list tile "eline". */
extern int32_t RowMap[ROW_LIMIT];
/* The row last chosen in "eline". */
extern int32_t SelectedRow;
/* 1 when run drawing writes labels beside runs. */
extern int32_t LabelOn;
/* The gap between a run and its label, as typed; "2.5" when empty. */
extern char LabelGap[256];
/* The wildcard pattern on codes; it lives on from call to call. */
extern char CodePattern[256];
/* 1 when the list shows only the records whose code matches CodePattern. */
extern int32_t SearchOn;
/* Distinct codes, cut to 20 bytes, in order of first appearance. */
extern char CodeTable[CODE_LIMIT][CODE_WIDTH + 1];

/* Puts the catalogue state back as the module starts with it: KindName
 * "ELINE", the catalogue freed, everything else empty or 0. */
void catalogue_reset(void);

/* The current family's catalogue file: home_path of KindName and ".CAT". */
void catalogue_path(char *out);
void catalogue_load(void);

/* Fills RecordFields from a record line: fields 1 to 5, or all seven when
 * all is not 0. A field ends at the first quote not preceded by a
 * backslash, both read as whole characters (a Big5 trail byte 5C is no
 * backslash); escapes stay in the field; missing fields are empty. */
void parse_record(const char *line, int all);
/* Copies a field's text into out (256 bytes) without the backslash of each
 * backslash-quote pair, reading by whole Big5 characters. */
void unescape_field(const char *text, char *out);
/* SpecDisplay = field 5 unescaped. */
void unescape_spec(void);

/* The text to hold in field (0 to 6) of RecordFields for text as the user
 * gave it, into out (256 bytes): every double quote that no backslash
 * escapes gets one, so that parse_record gives the same text back. A text
 * that cannot be held so (too long once escaped, ending in a backslash,
 * holding a line break) is refused with an alert naming the field; the
 * result is then 0 and out empty. */
int field_stored_form(int field, const char *text, char *out);
/* field_stored_form into RecordFields[field]; 0, field unchanged, when
 * refused. */
int field_store(int field, const char *text);

/* Writes the record line of RecordFields into out (256 bytes). Returns 1,
 * or 0 with out empty when the line would not fit in 255 bytes: a cut
 * record would lose its closing quotes and not read back. */
int compose_record(char *out);

/* Refills the list "eline" of dialog from Catalogue and rebuilds RowMap. */
void catalogue_rows(ads_hdlg dialog);
/* Copies the selected record in front of itself. */
void catalogue_duplicate(void);
/* Replaces the selected record by RecordFields and redraws its row. */
void catalogue_replace(ads_hdlg dialog);
void catalogue_delete(void);
/* Refills CodeTable and the list "codelist" of dialog. */
void code_table_build(ads_hdlg dialog);

/* The selected record's node and its predecessor (either may be NULL). */
void catalogue_selected(TextNode **node, TextNode **prev);

#endif
