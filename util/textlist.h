/* textlist.h - a text file held in memory as a singly linked list of lines.
 *
 * Every data file of the module (catalogues, notes, the layer memo) is read
 * whole into a TextList when its dialog opens, edited line by line, and
 * written back, if modified, when the dialog closes. */
#ifndef VORMIS_UTIL_TEXTLIST_H
#define VORMIS_UTIL_TEXTLIST_H

#include <stddef.h>
#include <stdint.h>

struct TextNode {
    TextNode *next; /* the following line, or NULL for the last */
    char *text;     /* the line without its line end; lives in the node's block */
};

/* Invariants: head and tail are both NULL exactly when count is 0; following
 * next from head reaches tail after count - 1 steps. All fields zero is a
 * cleared list. The list owns its nodes. */
struct TextList {
    char path[256];   /* the file's DOS path */
    TextNode *head;
    TextNode *tail;
    TextNode *cursor; /* for callers walking the list; cleared by clearing */
    int32_t count;
    int32_t modified; /* 1 once a line was deleted or replaced: save writes */
    /* 0 when the file was read whole; else the first line of the file (from
     * 1) that the list does not hold as it stands, and why (UNREAD_...).
     * A save then keeps the file as it was beside it first. */
    int32_t unread_line;
    int32_t unread_why;
};

/* Why a file was not read whole. ORDER: UnreadReasons in textlist.cpp. */
enum {
    UNREAD_NONE,
    UNREAD_LONG_LINE, /* a line over 255 bytes, taken in as several lines */
    UNREAD_NUL,       /* a NUL byte: the rest of its line is lost */
    UNREAD_END_MARK,  /* a 0x1A byte with text after it, which is never read */
    UNREAD_MEMORY,    /* memory ran out: the lines from there on are not read */
    UNREAD_REASONS
};

/* Frees what list holds (it must be loaded or cleared), sets its path and takes in every line of the file for which
 * filter_fields(line, n, w1..w7) leaves MatchLine non-empty, whole and in
 * order. Lines longer than 255 bytes arrive as several lines. A file that
 * cannot be opened leaves the list empty; a path longer than 255 bytes
 * leaves it empty with no path. */
void textlist_load(const char *path, TextList *list, int n, int w1, int w2, int w3,
                   int w4, int w5, int w6, int w7);

/* Writes a modified list back to its path in text mode (CR LF line ends, one
 * 0x1A byte after the last line, an empty file for an empty list). Does
 * nothing when the list is not modified, has no path or the file cannot be
 * written. A list whose file was not read whole first copies the file, byte
 * for byte, to its backup (textlist_backup_path); when that fails the file
 * is left as it was, with an alert. After a backup the list counts as read
 * whole, so later saves do not replace the backup. */
void textlist_save(TextList *list);

/* The backup of list's file: its path with the extension replaced by .BAK
 * (C:\VOR\ELINE.CAT gives C:\VOR\ELINE.BAK), into out (256 bytes). 0 when
 * that would not fit or would be the file itself. */
int textlist_backup_path(const TextList *list, char *out);

/* When list's file was not read whole, alerts once, naming the file, the
 * first line concerned and why, and the backup a save will keep. */
void textlist_alert_unread(const TextList *list);

/* The first sentence of that alert into out: "C:\VOR\ELINE.CAT could not
 * be read whole: line 3 is longer than 255 characters ...". 0, with out
 * empty, when the file was read whole. */
int textlist_unread_text(const TextList *list, char *out, size_t size);

/* Adds a copy of text after the node after (the current tail), or as the
 * first node when after is NULL, and returns it; on allocation failure
 * alerts "Memory Fault !" and returns NULL with the list unchanged. */
TextNode *textlist_append(TextList *list, TextNode *after, const char *text);

/* Releases every node and clears the list, path included. */
void textlist_free(TextList *list);

/* Removes the node at index i (0-based) and marks the list modified;
 * nothing happens for an index out of range. */
void textlist_delete(TextList *list, int32_t i);

/* Gives the node at index i and its predecessor: (head, NULL) for i <= 0,
 * (NULL, tail) for i >= count. */
void textlist_find(const TextList *list, int32_t i, TextNode **node, TextNode **prev);

/* A node for text, its text in the same block; NULL when memory ran out.
 * Used by the list and by editors that replace a node in place. */
TextNode *textnode_new(const char *text);

#endif
