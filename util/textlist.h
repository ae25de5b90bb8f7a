/* textlist.h - a text file held in memory as a singly linked list of lines.
 *
 * Every data file of the module (catalogues, notes, the layer memo) is read
 * whole into a TextList when its dialog opens, edited line by line, and
 * written back, if modified, when the dialog closes. */
#ifndef VORMIS_UTIL_TEXTLIST_H
#define VORMIS_UTIL_TEXTLIST_H

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
 * written. */
void textlist_save(TextList *list);

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
