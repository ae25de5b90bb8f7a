/* notes.cpp - FILE_CON.DAT: finding, adding, replacing and removing the note
 * of a file listed by the browser. */
#include <string.h>

#include "ads.h"
#include "notes.h"
#include "../util/textutil.h"

TextList FileNotes;

void notes_reset(void)
{
    textlist_free(&FileNotes);
}

/* The white space that separates a line's key from its note, as the field
 * filter of the text-list loader takes it. */
static const char Blanks[] = " \t\n\v\f\r";

/* A directory (255 bytes) followed by a file name (DOS allows 259). */
static const int FULL_SIZE = 2 * TEXT_SIZE + 8;

/* Bytes of the character at p: a Big5 lead byte with its trail is one. */
static int char_length(const char *p)
{
    const unsigned char *u = (const unsigned char *)p;
    return big5_is_lead(u[0]) && big5_is_trail(u[1]) ? 2 : 1;
}

/* Whether text holds the single-byte character c; the trail byte of a Big5
 * character (5C is one) does not count. */
static int holds_char(const char *text, char c)
{
    for (const char *p = text; *p; p += char_length(p))
        if (*p == c)
            return 1;
    return 0;
}

/* The first place where part starts a run of text, trying only the starts
 * of whole characters; NULL when there is none. */
static const char *find_whole(const char *text, const char *part)
{
    size_t len = strlen(part);
    for (const char *p = text; *p; p += char_length(p))
        if (strncmp(p, part, len) == 0)
            return p;
    return nullptr;
}

/* Copies the next word at *line into word, cut to its first 255 bytes, and
 * moves *line past the whole word; word is "" when none is left. */
static void next_word(const char **line, char *word)
{
    const char *start = *line + strspn(*line, Blanks);
    size_t len = strcspn(start, Blanks);
    size_t kept = len < (size_t)TEXT_MAX ? len : (size_t)TEXT_MAX;
    memcpy(word, start, kept);
    word[kept] = '\0';
    *line = start + len;
}

void notes_load(void)
{
    char path[TEXT_SIZE];
    /* No home directory that fits gives the empty path: an empty store that
     * is never written. */
    home_path("FILE_CON.DAT", path);
    textlist_load(path, &FileNotes, 2, TEXT_MAX, TEXT_MAX, 0, 0, 0, 0, 0);
    textlist_alert_unread(&FileNotes);
}

int note_key_matches(const char *key, const char *dir, const char *name)
{
    char k[TEXT_SIZE] = "", n[TEXT_SIZE + 8] = "", full[FULL_SIZE] = "";
    strcatv(TEXT_MAX, k, key, nullptr);
    strcatv((int)sizeof n - 1, n, name, nullptr);
    strcatv(FULL_SIZE - 1, full, dir, name, nullptr);
    for (char *p = k; *p; p++)
        if (*p == '/')
            *p = '\\';
    upper_ascii(k);
    upper_ascii(n);
    upper_ascii(full);

    if (strcmp(k, n) == 0 || strcmp(k, full) == 0)
        return 1;
    int has_colon = strchr(k, ':') != nullptr;
    if (!has_colon && !holds_char(k, '\\') && k[0]) {
        /* A bare key names every file whose path ends in it, but only when
         * its first occurrence is that end. */
        const char *at = find_whole(full, k);
        if (at && at + strlen(k) == full + strlen(full))
            return 1;
    }
    const char *drive_end = strchr(full, ':');
    return !has_colon && drive_end && strcmp(k, drive_end + 1) == 0;
}

TextNode *find_note(const char *dir, const char *name, char *note, int32_t *index)
{
    char key[TEXT_SIZE];
    TextNode *prev = nullptr;
    note[0] = '\0';
    *index = -1;
    int32_t i = 0;
    for (TextNode *node = FileNotes.head; node; prev = node, node = node->next, i++) {
        const char *line = node->text;
        next_word(&line, key);
        if (note_key_matches(key, dir, name)) {
            next_word(&line, note);
            *index = i;
            return prev;
        }
    }
    return nullptr;
}

/* Makes sure a line of key, one blank and note can be read back as the same
 * key and note; alerts why not otherwise. */
static int line_fits(const char *key, const char *note)
{
    if (key[strcspn(key, Blanks)] != '\0') {
        ads_alert("This file's path holds a blank, so FILE_CON.DAT cannot keep a note "
                  "for it. The note is unchanged.");
        return 0;
    }
    if (strpbrk(note, "\r\n\x1A")) {
        ads_alert("A note must be one line. The note is unchanged.");
        return 0;
    }
    if (strlen(key) + 1 + strlen(note) > (size_t)TEXT_MAX) {
        ads_alert("This note does not fit in a line of FILE_CON.DAT (255 characters with "
                  "the file's name): shorten it. The note is unchanged.");
        return 0;
    }
    return 1;
}

/* Rewrites the line after prev (the first line when prev is NULL) as text;
 * the node may move, so the links to it follow. */
static int replace_line(TextNode *prev, const char *text)
{
    TextNode *node = prev ? prev->next : FileNotes.head;
    if (!node)
        return 0;
    int was_tail = FileNotes.tail == node;
    size_t len = strlen(text);
    TextNode *moved = (TextNode *)acad_realloc(node, sizeof(TextNode) + len + 1);
    if (!moved) {
        ads_alert("Memory Fault !");
        return 0;
    }
    moved->text = (char *)(moved + 1);
    memcpy(moved->text, text, len + 1);
    if (prev)
        prev->next = moved;
    else
        FileNotes.head = moved;
    if (was_tail)
        FileNotes.tail = moved;
    FileNotes.modified = 1;
    return 1;
}

int set_note(const char *dir, const char *name, const char *old_note, int32_t index,
             TextNode *prev, const char *new_note)
{
    char key[FULL_SIZE] = "", line[FULL_SIZE + TEXT_SIZE] = "";
    if (strcmp(new_note, old_note) == 0)
        return 0;
    if (FileNotes.path[0] == '\0') {
        ads_alert("FILE_CON.DAT cannot be written: its path in the home directory is longer than "
                  "255 characters. The note is unchanged.");
        return 0;
    }
    /* A line of a key and blanks is not a note: it would be dropped on the
     * next reading, so such a note is the empty one. */
    int empty = new_note[strspn(new_note, Blanks)] == '\0';

    if (index < 0) {
        if (empty)
            return 0;
        strcatv(FULL_SIZE - 1, key, dir, name, nullptr);
        if (!line_fits(key, new_note))
            return 0;
        strcatv((int)sizeof line - 1, line, key, " ", new_note, nullptr);
        if (!textlist_append(&FileNotes, FileNotes.tail, line))
            return 0;
        FileNotes.modified = 1;
        return 1;
    }
    if (empty) {
        int32_t before = FileNotes.count;
        textlist_delete(&FileNotes, index);
        return FileNotes.count != before;
    }
    if (!line_fits(name, new_note))
        return 0;
    strcatv((int)sizeof line - 1, line, name, " ", new_note, nullptr);
    return replace_line(prev, line);
}
