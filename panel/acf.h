/* acf.h - VOR_ACF: panel single-line diagrams from schedule files. */
#ifndef VORMIS_PANEL_ACF_H
#define VORMIS_PANEL_ACF_H

#include "ads.h"
#include "../util/textlist.h"

/* The handler of VOR_ACF: the user chooses schedule files in the file
 * browser and gives a start point for each; one panel is drawn per file.
 * Always RTNORM. */
int panel_diagram(void);

/* Draws the panel of a loaded schedule (at least three lines) at start. It
 * stops where a host command fails; what was drawn stays. */
void draw_panel(const TextList *schedule, const ads_point start);

/* Forgets the files and start points of the last call, as the module
 * starts. */
void panel_reset(void);

#endif
