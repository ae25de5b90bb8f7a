/* numtool.h - the number tool: a keypad dialog that asks for a number as
 * text, opened from the cable dialogs. */
#ifndef VORMIS_NUMTOOL_NUMTOOL_H
#define VORMIS_NUMTOOL_NUMTOOL_H

/* The value shown and returned (set by the caller, result left in it). */
extern char NumberValue[256];
/* The caption shown in the tile "type", set by the caller. */
extern char NumberCaption[256];

/* Runs NUMBER_TOOL of the loaded dialog file. RTNORM (Cancel puts the value
 * back as it was), or RTERROR after "Unable to initialize dialog box:
 * NUMBER_TOOL" with NumberValue unchanged. */
int number_tool(void);

/* Empties the value and the caption, as the module starts. */
void number_tool_reset(void);

#endif
