/* runs.h - run drawing: giving picked lines, polylines and arcs the
 * selected run type's linetype, layer and colour with a label beside each,
 * and labelling runs that already carry a run type's linetype. */
#ifndef VORMIS_DRAW_RUNS_H
#define VORMIS_DRAW_RUNS_H

#include "ads.h"

/* Where the label of one run goes: data is the entity data of a LINE,
 * POLYLINE (its first segment) or ARC, offset the distance from the run to
 * the label's middle. Returns 1 with the insertion point and the rotation
 * in degrees, or 0 when the object gets no label. */
int run_label_placement(struct resbuf *data, ads_real offset, ads_point at, ads_real *rotation);

/* The "changeline" operation: the user selects objects; the selected run
 * type's layer is made and its linetype, layer and colour given to them;
 * with LabelOn, each gets the label. */
void apply_run_type(void);

/* The "dimoldline" operation: each selected run whose own linetype is a
 * run type's of the current catalogue gets that run type's label. */
void label_existing_runs(void);

/* 1, with the record in RecordFields, when a record of Catalogue has the
 * linetype name (letters A to Z in any case); 0 otherwise. */
int find_run_type_by_linetype(const char *name);

/* The label gap of LabelGap: the decimal number its text begins with,
 * blanks skipped; 0 when it begins with none. */
ads_real label_gap_value(const char *text);

#endif
