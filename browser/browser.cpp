/* browser.cpp - FILE_CON: the directory and drive list, the file list with
 * dates and notes, the choice of files in the order the user makes it, and
 * the note editor. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ads.h"
#include "platform.h"
#include "browser.h"
#include "notes.h"
#include "../host/dialogs.h"
#include "../util/textutil.h"

char BrowserPath[256];
char BrowserPattern[256];
char DirEntries[BROWSER_DIR_ROWS][256];
int32_t DirCount;
int32_t DirNameCount;
char FileEntries[BROWSER_FILE_ROWS][256];
int32_t FileCount;
int32_t Selection[BROWSER_FILE_ROWS];
int32_t SelectionCount;
int32_t CurrentFile;
int32_t ScheduleMode;

void browser_reset(void)
{
    memset(BrowserPath, 0, sizeof BrowserPath);
    memset(BrowserPattern, 0, sizeof BrowserPattern);
    memset(DirEntries, 0, sizeof DirEntries);
    DirCount = DirNameCount = 0;
    memset(FileEntries, 0, sizeof FileEntries);
    FileCount = 0;
    memset(Selection, 0, sizeof Selection);
    SelectionCount = CurrentFile = ScheduleMode = 0;
    notes_reset();
}

/* Room for a directory of 255 bytes joined with a name or pattern of up to
 * 259 (paths are checked against 255 before they are kept). */
static const int JOIN_SIZE = 2 * TEXT_SIZE + 8;

/* The date column: always this many characters. */
static const int DATE_LENGTH = 24;

/* The caption of the current directory, and the prompt of a note. */
static const char PathCaption[] = "\xA5\xD8\xAB"
                                  "e\xA5\xD8\xBF\xFD: "; /* 目前目錄: */
static const char NotePrompt[] = "\xBD\xD0\xBF\xE9\xA4J:\xA4\xA4\xA4\xE5\xB3\xC6\xB5\xF9"; /* 請輸入:中文備註 */

static const char Blanks[] = " \t\n\v\f\r";

/* ---- Bytes and paths ------------------------------------------------ */

/* Bytes of the character at p: a Big5 lead byte with its trail is one. */
static int char_length(const char *p)
{
    const unsigned char *u = (const unsigned char *)p;
    return big5_is_lead(u[0]) && big5_is_trail(u[1]) ? 2 : 1;
}

/* The offset of the last "\" of text that is a character of its own (not
 * the trail byte of a Big5 character), or -1. */
static int last_separator(const char *text)
{
    int last = -1;
    for (const char *p = text; *p; p += char_length(p))
        if (*p == '\\')
            last = (int)(p - text);
    return last;
}

/* Appends to row (at most 255 bytes) as many whole characters of text as
 * fit: a cut never leaves half a Big5 character. */
static void append_whole(char *row, const char *text)
{
    size_t len = strlen(row);
    for (const char *p = text; *p;) {
        int n = char_length(p);
        if (len + n > (size_t)TEXT_MAX)
            break;
        memcpy(row + len, p, n);
        len += n;
        p += n;
    }
    row[len] = '\0';
}

/* The current directory of the current drive with a final "\" (C:\VOR\),
 * or its root when that would not fit in 255 bytes. */
static void current_directory(char *out, int size)
{
    char cwd[TEXT_SIZE];
    out[0] = '\0';
    if (plat_getdcwd(0, cwd, TEXT_SIZE) &&
        strlen(cwd) + (ends_with_char(cwd, '\\') ? 0 : 1) <= (size_t)TEXT_MAX) {
        strcatv(size - 1, out, cwd, ends_with_char(cwd, '\\') ? "" : "\\", nullptr);
    } else {
        char root[] = "?:\\";
        root[0] = (char)('A' + plat_getdrive() - 1);
        strcatv(size - 1, out, root, nullptr);
    }
}

/* Removes "." and empty names from a path of the form X:\..., and each ".."
 * with the name before it (never above the root), so that the path and
 * the note keys built from it name each directory one way. */
static void collapse_names(char *path)
{
    if (!(path[0] && path[1] == ':' && path[2] == '\\'))
        return;
    char out[JOIN_SIZE];
    size_t len = 3;
    memcpy(out, path, 3);
    const char *p = path + 3;
    while (*p) {
        const char *start = p;
        while (*p && *p != '\\')
            p += char_length(p);
        size_t n = (size_t)(p - start);
        if (*p)
            p++;
        if (n == 0 || (n == 1 && start[0] == '.'))
            continue;
        if (n == 2 && start[0] == '.' && start[1] == '.') {
            out[len] = '\0';
            if (len > 3) {
                out[len - 1] = '\0'; /* the "\" ending the last name */
                len = (size_t)last_separator(out) + 1;
            }
            continue;
        }
        memcpy(out + len, start, n);
        len += n;
        out[len++] = '\\';
    }
    out[len] = '\0';
    strcpy(path, out);
}

/* BrowserPath as the caller left it, made a full path: "\" for "/", the
 * current directory for "" and ".", a final "\", upper case, the current
 * drive or directory in front when it has no drive, "." and ".." resolved.
 * A path that would pass 255 bytes gives the current directory. */
static void normalise_path(void)
{
    char path[JOIN_SIZE] = "", front[TEXT_SIZE] = "";
    strcatv(JOIN_SIZE - 1, path, BrowserPath, nullptr);
    for (char *p = path; *p; p++)
        if (*p == '/')
            *p = '\\';
    if (path[0] == '\0' || strcmp(path, ".") == 0)
        current_directory(path, JOIN_SIZE);
    if (!ends_with_char(path, '\\'))
        strcatv(JOIN_SIZE - 1, path, "\\", nullptr);
    upper_ascii(path);
    if (!strchr(path, ':')) {
        if (path[0] == '\\') {
            front[0] = (char)('A' + plat_getdrive() - 1);
            front[1] = ':';
            front[2] = '\0';
        } else {
            /* The current directory keeps its case, and ends in "\". */
            current_directory(front, TEXT_SIZE);
        }
        char joined[JOIN_SIZE] = "";
        strcatv(JOIN_SIZE - 1, joined, front, path, nullptr);
        strcpy(path, joined);
    }
    collapse_names(path);
    if (strlen(path) > (size_t)TEXT_MAX) {
        current_directory(path, JOIN_SIZE);
        upper_ascii(path);
    }
    strcpy(BrowserPath, path);
}

static void normalise_pattern(void)
{
    for (char *p = BrowserPattern; *p; p++)
        if (*p == '/')
            *p = '\\';
    if (BrowserPattern[0] == '\0')
        strcpy(BrowserPattern, "*.*");
    upper_ascii(BrowserPattern);
}

/* ---- Listing -------------------------------------------------------- */

/* Sorts rows first to count - 1 ascending by their bytes as unsigned
 * values: a selection sort, the first of equal rows taken first. */
static void sort_rows(char (*rows)[256], int first, int count)
{
    char swap[TEXT_SIZE];
    for (int i = first; i < count - 1; i++) {
        int least = i;
        for (int j = i + 1; j < count; j++)
            if (strcmp(rows[j], rows[least]) < 0)
                least = j;
        if (least != i) {
            memcpy(swap, rows[i], TEXT_SIZE);
            memcpy(rows[i], rows[least], TEXT_SIZE);
            memcpy(rows[least], swap, TEXT_SIZE);
        }
    }
}

/* The last-write time as Www Mmm dd hh:mm:ss yyyy in local time, English
 * names whatever the locale; 24 blanks when it cannot be converted. */
static void date_text(time_t t, char *out)
{
    static const char *const days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static const char *const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    struct tm tm;
    char text[64];
    if (plat_localtime(t, &tm) != 0 || tm.tm_wday < 0 || tm.tm_wday > 6 || tm.tm_mon < 0 ||
        tm.tm_mon > 11) {
        memset(out, ' ', DATE_LENGTH);
    } else {
        snprintf(text, sizeof text, "%s %s %02d %02d:%02d:%02d %04d", days[tm.tm_wday],
                 months[tm.tm_mon], tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec,
                 tm.tm_year + 1900);
        memcpy(out, text, DATE_LENGTH);
    }
    out[DATE_LENGTH] = '\0';
}

static void list_rows(ads_hdlg dialog, const char *key, char (*rows)[256], int count)
{
    ads_start_list(dialog, key, LIST_NEW, 0);
    for (int i = 0; i < count; i++)
        ads_add_list(rows[i]);
    ads_end_list();
}

/* The subdirectories of dir, "." as the row "\"; names longer than a row
 * are left out, since they could not be entered. */
static void scan_subdirectories(const char *dir)
{
    char pattern[JOIN_SIZE] = "";
    struct plat_finddata entry;
    strcatv(JOIN_SIZE - 1, pattern, dir, "*.*", nullptr);
    DirNameCount = 0;
    intptr_t search = plat_findfirst(pattern, &entry);
    if (search == -1)
        return;
    do {
        if (!(entry.attrib & PLAT_A_SUBDIR) || strlen(entry.name) > (size_t)TEXT_MAX)
            continue;
        strcpy(DirEntries[DirNameCount++], strcmp(entry.name, ".") == 0 ? "\\" : entry.name);
    } while (DirNameCount < BROWSER_LISTED_MAX && plat_findnext(search, &entry) == 0);
    plat_findclose(search);
}

/* Appends "<X:>" for each drive from A: to Y: that can be made current,
 * and leaves the current drive as it was. */
static void scan_drives(void)
{
    int current = plat_getdrive();
    DirCount = DirNameCount;
    for (int drive = 1; drive <= BROWSER_DRIVE_ROWS; drive++) {
        if (plat_chdrive(drive) != 0)
            continue;
        char *row = DirEntries[DirCount++];
        row[0] = '<';
        row[1] = (char)('A' + drive - 1);
        strcpy(row + 2, ":>");
    }
    plat_chdrive(current);
}

/* The files of dir matching pattern, with their dates and notes. A file
 * whose name leaves no room in a row for its date, or holds a tab, is left
 * out: the caller takes the name up to the row's first tab, and a cut name
 * would name another file. A note is cut to what fits. */
static void scan_files(const char *dir, const char *pattern)
{
    char search_for[JOIN_SIZE] = "", date[DATE_LENGTH + 1], note[TEXT_SIZE];
    struct plat_finddata entry;
    int32_t index;
    strcatv(JOIN_SIZE - 1, search_for, dir, pattern, nullptr);
    FileCount = 0;
    intptr_t search = plat_findfirst(search_for, &entry);
    if (search == -1)
        return;
    notes_begin_listing();
    do {
        if ((entry.attrib & PLAT_A_SUBDIR) || strlen(entry.name) + 2 + DATE_LENGTH > (size_t)TEXT_MAX ||
            strchr(entry.name, '\t'))
            continue;
        note[0] = '\0';
        if (FileNotes.count > 0)
            find_note(dir, entry.name, note, &index);
        date_text(entry.time_write, date);
        char *row = FileEntries[FileCount++];
        row[0] = '\0';
        strcatv(TEXT_MAX, row, entry.name, "\t", date, "\t", nullptr);
        append_whole(row, note);
    } while (FileCount < BROWSER_LISTED_MAX && plat_findnext(search, &entry) == 0);
    notes_end_listing();
    plat_findclose(search);
}

void scan_directory(ads_hdlg dialog, const char *dir, const char *pattern)
{
    scan_subdirectories(dir);
    /* "\" and ".." stay at the head only when the search gave "." first,
     * as it does for every directory but a drive's root. */
    sort_rows(DirEntries, DirNameCount > 0 && strcmp(DirEntries[0], "\\") == 0 ? 2 : 0, DirNameCount);
    scan_drives();
    list_rows(dialog, "path", DirEntries, DirCount);

    scan_files(dir, pattern);
    sort_rows(FileEntries, 0, FileCount);
    list_rows(dialog, "file", FileEntries, FileCount);
}

/* ---- Tile callbacks ------------------------------------------------- */

static void show_path(ads_hdlg dialog)
{
    char caption[TEXT_SIZE] = "";
    strcatv(TEXT_MAX, caption, PathCaption, BrowserPath, nullptr);
    ads_set_tile(dialog, "current_path", caption);
}

/* Listing anew empties the choice of files. */
static void clear_choice(ads_hdlg dialog)
{
    CurrentFile = -1;
    SelectionCount = 0;
    ads_mode_tile(dialog, "edit", MODE_DISABLE);
}

static void pattern_changed(ads_callback_packet *packet)
{
    if (packet->reason != CBR_SELECT && packet->reason != CBR_LOST_FOCUS)
        return;
    char text[TEXT_SIZE] = "";
    ads_get_tile(packet->dialog, "type", text, TEXT_SIZE);
    const char *word = text + strspn(text, " \t");
    size_t len = strcspn(word, " \t");
    memcpy(BrowserPattern, word, len);
    BrowserPattern[len] = '\0';
    upper_ascii(BrowserPattern);
    if (BrowserPattern[0] == '\0')
        strcpy(BrowserPattern, "*.*");
    ads_set_tile(packet->dialog, "type", BrowserPattern);
    scan_directory(packet->dialog, BrowserPath, BrowserPattern);
    clear_choice(packet->dialog);
}

/* Makes path the current directory of the drive letter when the drive can
 * be made current and its current directory holds anything; 0 (path
 * unchanged) when the drive is not usable. The current drive is the same
 * afterwards. */
static int switch_drive(char letter, char *path)
{
    int current = plat_getdrive(), usable = 0;
    int drive = letter - 'A' + 1;
    char cwd[TEXT_SIZE], pattern[JOIN_SIZE] = "", full[JOIN_SIZE] = "";
    struct plat_finddata entry;

    if (plat_chdrive(drive) == 0 && plat_getdcwd(drive, cwd, TEXT_SIZE)) {
        const char *end = ends_with_char(cwd, '\\') ? "" : "\\";
        strcatv(JOIN_SIZE - 1, pattern, cwd, end, "*.*", nullptr);
        intptr_t search = plat_findfirst(pattern, &entry);
        if (search != -1) {
            plat_findclose(search);
            char front[3] = {letter, ':', '\0'};
            strcatv(JOIN_SIZE - 1, full, strchr(cwd, ':') ? "" : front, cwd, end, nullptr);
            upper_ascii(full);
            if (strlen(full) <= (size_t)TEXT_MAX) {
                strcpy(path, full);
                usable = 1;
            }
        }
    }
    plat_chdrive(current);
    return usable;
}

/* path, a directory ending in "\", made the root of its drive. */
static void to_root(char *path)
{
    char *colon = strchr(path, ':');
    if (colon) {
        strcpy(colon + 1, "\\");
    } else {
        path[0] = (char)('A' + plat_getdrive() - 1);
        strcpy(path + 1, ":\\");
    }
}

/* path, a directory ending in "\", made its parent; a root stays itself. */
static void to_parent(char *path)
{
    size_t len = strlen(path);
    if (len > 0 && path[len - 1] == '\\')
        path[len - 1] = '\0';
    int cut = last_separator(path);
    if (cut >= 0)
        path[cut + 1] = '\0';
    else
        strcatv(TEXT_MAX, path, "\\", nullptr);
}

/* The directory that row of the list path leads to from BrowserPath, into
 * path (256 bytes). 0 when it leads nowhere: a drive that cannot be used,
 * or a subdirectory whose path would pass 255 characters (said in an
 * alert). */
static int row_target(long row, char *path)
{
    const char *name = DirEntries[row];
    strcpy(path, BrowserPath);
    if (row >= DirNameCount)
        return switch_drive(name[1], path);
    if (strcmp(name, "\\") == 0) {
        to_root(path);
    } else if (strcmp(name, "..") == 0) {
        to_parent(path);
    } else if (strlen(path) + strlen(name) + 1 > (size_t)TEXT_MAX) {
        ads_alert("The path of this directory is longer than 255 characters; "
                  "it cannot be opened here.");
        return 0;
    } else {
        strcatv(TEXT_MAX, path, name, "\\", nullptr);
    }
    return 1;
}

/* A double click opens the row's directory or drive; a single click does
 * nothing. */
static void directory_opened(ads_callback_packet *packet)
{
    const char *value = packet_value(packet);
    char path[TEXT_SIZE];
    if (packet->reason != CBR_DOUBLE_CLICK || value[0] == '\0')
        return;
    long row = strtol(value, nullptr, 10);
    if (row < 0 || row >= DirCount || !row_target(row, path))
        return;
    strcpy(BrowserPath, path);
    scan_directory(packet->dialog, BrowserPath, BrowserPattern);
    show_path(packet->dialog);
    clear_choice(packet->dialog);
}

static int holds_row(const int32_t *rows, int32_t count, int32_t row)
{
    for (int32_t i = 0; i < count; i++)
        if (rows[i] == row)
            return 1;
    return 0;
}

/* The rows of FileEntries that a value of the list file names ("3 1 2"),
 * into rows (room for BROWSER_FILE_ROWS); how many. */
static int32_t rows_of_value(const char *value, int32_t *rows)
{
    int32_t count = 0;
    while (count < BROWSER_FILE_ROWS) {
        char *end;
        long row = strtol(value, &end, 10);
        if (end == value)
            break;
        value = end;
        if (row >= 0 && row < FileCount)
            rows[count++] = (int32_t)row;
    }
    return count;
}

/* Appends to Selection the first row of now that it lacks. */
static void choose_new_row(const int32_t *now, int32_t now_count)
{
    for (int32_t i = 0; i < now_count; i++) {
        if (!holds_row(Selection, SelectionCount, now[i])) {
            Selection[SelectionCount++] = now[i];
            return;
        }
    }
}

/* Removes from Selection the first row that now lacks; the others keep
 * their order. */
static void drop_gone_row(const int32_t *now, int32_t now_count)
{
    for (int32_t i = 0; i < SelectionCount; i++) {
        if (!holds_row(now, now_count, Selection[i])) {
            memmove(Selection + i, Selection + i + 1, sizeof(int32_t) * (size_t)(SelectionCount - i - 1));
            SelectionCount--;
            return;
        }
    }
}

/* CurrentFile follows the choice: the chosen row while exactly one is
 * chosen, and only then can its note be edited. */
static void show_choice(ads_hdlg dialog)
{
    if (SelectionCount == 1) {
        CurrentFile = Selection[0];
        ads_mode_tile(dialog, "edit", MODE_ENABLE);
    } else {
        CurrentFile = -1;
        ads_mode_tile(dialog, "edit", MODE_DISABLE);
    }
}

/* Each click chooses or un-chooses one row; the value lists all chosen
 * rows, so the one that changed is found by comparing with the choice so
 * far, which keeps the order of choosing. */
static void files_chosen(ads_callback_packet *packet)
{
    static int32_t now[BROWSER_FILE_ROWS];
    int32_t now_count = rows_of_value(packet_value(packet), now);
    if (now_count == 0)
        SelectionCount = 0;
    else if (now_count > SelectionCount)
        choose_new_row(now, now_count);
    else
        drop_gone_row(now, now_count);
    show_choice(packet->dialog);
}

static void all_pressed(ads_callback_packet *packet)
{
    /* Every index with its blank: 999 files need about 3,900 bytes. */
    static char value[BROWSER_FILE_ROWS * 5];
    size_t len = 0;
    value[0] = '\0';
    for (int32_t i = 0; i < FileCount; i++) {
        Selection[i] = i;
        len += (size_t)snprintf(value + len, sizeof value - len, i ? " %d" : "%d", (int)i);
    }
    SelectionCount = FileCount;
    ads_set_tile(packet->dialog, "file", value);
    show_choice(packet->dialog);
}

static void none_pressed(ads_callback_packet *packet)
{
    SelectionCount = 0;
    ads_set_tile(packet->dialog, "file", "");
    show_choice(packet->dialog);
}

/* Asks for the chosen file's note on the command line (W1) and shows the
 * new note in the file's row at once; the store is written on OK only. */
static void edit_pressed(ads_callback_packet *packet)
{
    char name[TEXT_SIZE], old_note[TEXT_SIZE];
    int32_t index;
    struct resbuf *result = nullptr;

    if (CurrentFile < 0 || CurrentFile >= FileCount)
        return;
    char *row = FileEntries[CurrentFile];
    size_t len = strcspn(row, "\t");
    memcpy(name, row, len);
    name[len] = '\0';
    TextNode *prev = find_note(BrowserPath, name, old_note, &index);

    if (host_function("W1", ads_buildlist(RTSTR, old_note, RTSTR, NotePrompt, 0), &result) != RTNORM)
        return;
    if (result && result->restype == RTSTR && result->resval.rstring) {
        const char *note = result->resval.rstring;
        if (set_note(BrowserPath, name, old_note, index, prev, note)) {
            int cut = (int)(strrchr(row, '\t') - row);
            row[cut] = '\0';
            strcatv(TEXT_MAX, row, "\t", nullptr);
            append_whole(row, note);
            ads_start_list(packet->dialog, "file", LIST_CHANGE, (short)CurrentFile);
            ads_add_list(row);
            ads_end_list();
        }
    }
    ads_relrb(result);
}

static void help_pressed(ads_callback_packet *)
{
    show_help("FILE_CON");
}

static const TileAction BrowserActions[] = {
    {"type", pattern_changed},
    {"path", directory_opened},
    {"file", files_chosen},
    {"all", all_pressed},
    {"none", none_pressed},
    {"edit", edit_pressed},
    {"help", help_pressed},
    {nullptr, nullptr},
};

/* ---- The dialog ----------------------------------------------------- */

int file_browser(void)
{
    ads_hdlg dialog;
    int status = DLGCANCEL;

    SelectionCount = 0;
    CurrentFile = -1;
    if (dialog_file_load("BLK.DCL") != RTNORM)
        return RTERROR;
    if (dialog_new("FILE_CON", &dialog) != RTNORM) {
        ads_unload_dialog(DialogFile);
        return RTERROR;
    }
    normalise_path();
    normalise_pattern();
    show_path(dialog);
    ads_set_tile(dialog, "type", BrowserPattern);
    notes_load();
    scan_directory(dialog, BrowserPath, BrowserPattern);
    clear_choice(dialog);

    bind_actions(dialog, BrowserActions);
    ads_start_dialog(dialog, &status);

    ads_unload_dialog(DialogFile);
    if (status >= DLGOK)
        textlist_save(&FileNotes);
    textlist_free(&FileNotes);
    if (status < DLGOK) {
        SelectionCount = 0;
        CurrentFile = -1;
    }
    return RTNORM;
}
