/* circuit_text.h - the two texts of a panel circuit: the cable label written
 * along the branch and the description written below it as a column. */
#ifndef VORMIS_PANEL_CIRCUIT_TEXT_H
#define VORMIS_PANEL_CIRCUIT_TEXT_H

#include "ads.h"

/* The cable label of a circuit into label (256 bytes) from its conductor
 * size, conductor count, earth size, conduit size and conduit suffix, as
 * acf_field reads them: "(" parts joined by "," ")" with the parts
 * conductors (size, "x" and the count unless the count is exactly "1"),
 * earth ("E" and the size) and conduit ("%%c", size, suffix); a part whose
 * size is empty is left out, and with no part the label is empty. A size
 * followed by one space and exactly "mm" is shown overscored ("%%o" around
 * it); any other text after the first space is dropped. Cut at 255 bytes by
 * cut_text. The fields are not changed. */
void compose_cable_label(const char *size, const char *count, const char *earth,
                         const char *conduit, const char *suffix, char *label);

/* Writes text downward from at as a column of runs, height 50, 20 apart:
 * single-byte runs horizontal in ROMANSAEH, bottom-centred under the
 * previous run; double-byte (Big5) runs vertical in ROMANSAEV from a start
 * point, each moving the next run down by its text box. Spaces between a
 * double-byte character and the next one, and spaces that end a single-byte
 * run before a double-byte character, go with the vertical run. Both styles
 * must exist. Returns 0 when every TEXT command succeeded (also for an empty
 * text), 1 at the first that did not; runs already written stay. Sets
 * nothing itself, but the host's TEXT makes the style it names current, so
 * the style of the last run written is current afterwards. */
int write_column_text(const ads_point at, const char *text);

#endif
