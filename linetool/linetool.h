/* linetool.h - the line tool: VOR_ELINE, VOR_SLINE and VOR_PLINE. */
#ifndef VORMIS_LINETOOL_LINETOOL_H
#define VORMIS_LINETOOL_LINETOOL_H

/* Handlers of the registered functions, one per run family. */
int line_tool_eline(void);
int line_tool_sline(void);
int line_tool_pline(void);

/* Puts the line tool's state back as the module starts: its dialogs', the
 * editor's and the catalogue's (catalogue_reset). */
void line_tool_reset(void);

#endif
