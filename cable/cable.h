/* cable.h - the cable dialogs of the three families, in which the user
 * builds a run type's item list and so its label. */
#ifndef VORMIS_CABLE_CABLE_H
#define VORMIS_CABLE_CABLE_H

#include "ads.h"

/* The item list being edited in a cable dialog; shown in its tile "edit". */
extern char SpecWork[256];
/* The key of the item button that is on; emptied when a cable dialog opens. */
extern char ChosenKey[256];
/* The pipe material typed in "pipe", part of every piping group added. */
extern char PipeMaterial[256];
/* The pair count chosen in VOR_SLINE_CABLE_1; empty when none was chosen. */
extern char CableChoice[256];

/* Puts the cable dialogs' texts back as the module starts: all empty. */
void cable_reset(void);

/* The action of the editor's button "b4": opens the cable dialog of the
 * current family on fields 5 and 6 of RecordFields; when it is confirmed,
 * stores the list and the rebuilt label there and shows them in the
 * editor's tiles "t3" and "t4". */
void cable_dialog(ads_callback_packet *packet);

/* The action of the clusters "ra" to "rq" of VOR_ELINE_CABLE: asks for the
 * count of the chosen item and sets it in SpecWork. */
void quantity_eline(ads_callback_packet *packet);

/* The same for VOR_SLINE_CABLE; a "T" item is first completed by its pair
 * count from VOR_SLINE_CABLE_1. */
void quantity_sline(ads_callback_packet *packet);

/* The same for the clusters "ra" to "rh" of VOR_PLINE_CABLE: the group is
 * keyed by unit, PipeMaterial and size, and found again by its size. */
void quantity_pline(ads_callback_packet *packet);

/* The action of "edit": a hand-edited list, taken on Enter or when the box
 * loses the focus (upper-cased unless the family is PLINE). */
void spec_edited(ads_callback_packet *packet);

/* The action of "pipe": the material, taken when the box loses the focus. */
void pipe_edited(ads_callback_packet *packet);

/* The action of "help": the family's cable topic of VORMIS.HLP. */
void cable_help(ads_callback_packet *packet);

/* Opens VOR_SLINE_CABLE_1 and leaves the chosen pair count in CableChoice
 * (empty unless the dialog ended with OK). RTNORM, or RTERROR after
 * "Unable to initialize dialog box: VOR_SLINE_CABLE_1" with CableChoice
 * unchanged. */
int cable_choice_dialog(void);

/* The action of the clusters "ra" to "rd" of VOR_SLINE_CABLE_1. */
void cable_choice_pick(ads_callback_packet *packet);

#endif
