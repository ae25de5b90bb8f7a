/* notes.h - FILE_CON.DAT, the note the user keeps for each file, as the file
 * browser shows and edits it.
 *
 * One line per note: a key naming the file, white space, the note text. The
 * key is a full path (C:\ACF\P1.ACF), a path without the drive (\ACF\P1.ACF),
 * a bare name (P1.ACF) or the end of names (1.ACF); "/" may stand for "\" and
 * case does not matter. The browser shows the note's first word. */
#ifndef VORMIS_BROWSER_NOTES_H
#define VORMIS_BROWSER_NOTES_H

#include <stdint.h>

#include "../util/textlist.h"

/* The lines of FILE_CON.DAT while the browser is open (lines of fewer than
 * two words are dropped on reading); cleared whenever it is not. */
extern TextList FileNotes;

/* Loads FileNotes from FILE_CON.DAT in the home directory; a missing file is
 * an empty store. A file not read whole is said in an alert, as the store
 * would lose the rest when written back (it then keeps a backup). */
void notes_load(void);

/* Frees the store, as the module starts with none. */
void notes_reset(void);

/* Whether key, as written in a line, names the file name (a bare name) in
 * the directory dir (ending in "\"). Compared in upper case. */
int note_key_matches(const char *key, const char *dir, const char *name);

/* Room for the keys that notes_begin_listing makes ready: lines and bytes
 * of keys (each key takes its length and one byte more). */
constexpr int NOTES_LISTING_KEYS = 4000;
constexpr int NOTES_LISTING_TEXT = 128 * 1024;

/* Around the find_note calls of one listing: upper-cases the keys of
 * FileNotes once, so that each file is compared with them as they are.
 * find_note gives the same answers with or without; set_note, notes_load
 * and notes_reset end the listing, as the keys then change. Nothing is
 * allocated: a store larger than the room has its further keys read line
 * by line as before. */
void notes_begin_listing(void);
void notes_end_listing(void);

/* Looks up the file name of directory dir: the first line whose key names
 * it. Found: note (256 bytes) gets the note's first word, *index the line's
 * index, and the line before it comes back (NULL for the first line). Not
 * found: note is "", *index -1, and the result means nothing. */
TextNode *find_note(const char *dir, const char *name, char *note, int32_t *index);

/* Gives the file name of dir the note new_note, where old_note, index and
 * prev are what find_note said of it: adds a line keyed by the full path,
 * rewrites the found line keyed by the bare name, or removes it when the new
 * note is empty (white space only counts as empty). 1 when the store
 * changed. A note that would make a line longer than 255 bytes, or that
 * holds a line break, or a file whose path holds white space (its key could
 * not be read back), is refused with an alert and changes nothing; so are
 * all changes when FILE_CON.DAT has no path that fits, and so does running
 * out of memory ("Memory Fault !"). */
int set_note(const char *dir, const char *name, const char *old_note, int32_t index,
             TextNode *prev, const char *new_note);

#endif
