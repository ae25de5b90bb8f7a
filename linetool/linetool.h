/* linetool.h - the line tool: VOR_ELINE, VOR_SLINE and VOR_PLINE. */
#ifndef VORMIS_LINETOOL_LINETOOL_H
#define VORMIS_LINETOOL_LINETOOL_H

/* Handlers of the registered functions, one per run family. */
int line_tool_eline(void);
int line_tool_sline(void);
int line_tool_pline(void);

#endif
