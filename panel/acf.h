/* acf.h - VOR_ACF: panel single-line diagrams from schedule files. */
#ifndef VORMIS_PANEL_ACF_H
#define VORMIS_PANEL_ACF_H

int panel_diagram(void);

#endif
