/* browser.h - FILE_CON, the file browser: walks drives and directories,
 * lists the files that match a pattern with their dates and notes, edits
 * notes, and lets the user choose files in an order of his own.
 *
 * The caller sets BrowserPath, BrowserPattern and ScheduleMode, calls
 * file_browser, and afterwards reads the chosen files: Selection[0] to
 * Selection[SelectionCount - 1] are rows of FileEntries in the order the
 * user chose them; a file's name is its row up to the first tab, and it lies
 * in BrowserPath. The tables keep their contents after the dialog ends. */
#ifndef VORMIS_BROWSER_BROWSER_H
#define VORMIS_BROWSER_BROWSER_H

#include <stdint.h>

#include "ads.h"

/* Rows the browser takes from one directory, for each of its two lists. */
constexpr int BROWSER_LISTED_MAX = 999;
/* Drives A: to Y: may follow the directory rows. */
constexpr int BROWSER_DRIVE_ROWS = 25;
constexpr int BROWSER_FILE_ROWS = 1000;
constexpr int BROWSER_DIR_ROWS = BROWSER_LISTED_MAX + BROWSER_DRIVE_ROWS;

/* The directory listed: drive, directories and a final "\" (C:\ACF\). Any
 * form before the call (no drive, relative, "/", no final "\", ""); the
 * full form afterwards. */
extern char BrowserPath[256];
/* The file-name pattern ("*" and "?"), upper case; "" stands for "*.*". */
extern char BrowserPattern[256];

/* Rows of the list path: "\" (the drive's root) and ".." when the directory
 * has them, the subdirectories sorted, then "<X:>" for each usable drive. */
extern char DirEntries[BROWSER_DIR_ROWS][256];
/* The rows of DirEntries in use, drives included. */
extern int32_t DirCount;
/* The first DirNameCount rows of DirEntries are directories. */
extern int32_t DirNameCount;

/* Rows of the list file, sorted: name, tab, date (24 characters), tab,
 * note (may be empty). */
extern char FileEntries[BROWSER_FILE_ROWS][256];
/* The rows of FileEntries in use. */
extern int32_t FileCount;

/* The chosen rows of FileEntries in the order of choosing. */
extern int32_t Selection[BROWSER_FILE_ROWS];
/* The entries of Selection in use. */
extern int32_t SelectionCount;
/* The chosen row while exactly one is chosen, else -1. */
extern int32_t CurrentFile;

/* Set to 1 by the panel diagram around its call; the browser behaves the
 * same either way. */
extern int32_t ScheduleMode;

/* Runs FILE_CON (a top-level dialog: it loads and unloads BLK.DCL). RTNORM
 * when the dialog was shown: after OK the choice stands and changed notes
 * are written; after Cancel SelectionCount is 0 and FILE_CON.DAT is as it
 * was. RTERROR after "Unable to load dialog box: BLK.DCL" or "Unable to
 * initialize dialog box: FILE_CON", with SelectionCount 0. */
int file_browser(void);

/* Lists directory dir (ending in "\") into DirEntries and the files
 * matching pattern into FileEntries, and fills the dialog's lists path and
 * file. */
void scan_directory(ads_hdlg dialog, const char *dir, const char *pattern);

/* Puts the browser's state back as the module starts: texts, tables and
 * counts empty, no choice, the notes store freed (notes_reset). */
void browser_reset(void);

#endif
