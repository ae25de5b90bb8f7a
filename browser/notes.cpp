/* notes.cpp - FILE_CON.DAT: finding, adding, replacing and removing the note
 * of a file listed by the browser. */
#include <string.h>

#include "ads.h"
#include "notes.h"
#include "../util/textutil.h"

TextList FileNotes;

void notes_reset(void)
{
    notes_end_listing();
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
    notes_end_listing();
    textlist_load(path, &FileNotes, 2, TEXT_MAX, TEXT_MAX, 0, 0, 0, 0, 0);
    textlist_alert_unread(&FileNotes);
}

/* ---- Keys compared with files ----------------------------------------- */

/* A key as it is compared: upper case, "/" turned into "\". */
struct NoteKey {
    const char *text;
    size_t length;
    int has_colon;
    int bare; /* neither ":" nor "\": a name, or the end of names */
};

/* A file as keys are compared with it, upper case: its bare name, its
 * directory and name joined, and that path after its first ":" (rest is
 * NULL without one). */
struct NoteFile {
    char name[TEXT_SIZE + 8];
    char full[FULL_SIZE];
    size_t name_length, full_length, rest_length;
    const char *rest;
};

/* The keys of FileNotes, from its first line on, made ready once for a
 * listing (notes_begin_listing), so that each file listed is compared with
 * them without copying or upper-casing them again. Lines past the tables'
 * room are made ready one at a time, with the same result. */
static NoteKey ListingKeys[NOTES_LISTING_KEYS];
static char ListingText[NOTES_LISTING_TEXT];
/* The lines whose keys are in ListingKeys; 0 outside a listing. */
static int32_t ListingKeyCount;

/* Makes the key k (at most 255 bytes, changed in place) ready to compare. */
static void prepare_key(char *k, NoteKey *key)
{
    for (char *p = k; *p; p++)
        if (*p == '/')
            *p = '\\';
    upper_ascii(k);
    key->text = k;
    key->length = strlen(k);
    key->has_colon = strchr(k, ':') != nullptr;
    key->bare = !key->has_colon && !holds_char(k, '\\') && k[0];
}

static void prepare_file(NoteFile *file, const char *dir, const char *name)
{
    file->name[0] = file->full[0] = '\0';
    strcatv((int)sizeof file->name - 1, file->name, name, nullptr);
    strcatv(FULL_SIZE - 1, file->full, dir, name, nullptr);
    upper_ascii(file->name);
    upper_ascii(file->full);
    file->name_length = strlen(file->name);
    file->full_length = strlen(file->full);
    const char *colon = strchr(file->full, ':');
    file->rest = colon ? colon + 1 : nullptr;
    file->rest_length = colon ? file->full_length - (size_t)(file->rest - file->full) : 0;
}

/* Lengths are compared first: most keys differ from a file in length. */
static int same_text(const char *a, size_t a_length, const char *b, size_t b_length)
{
    return a_length == b_length && memcmp(a, b, a_length) == 0;
}

static int key_names_file(const NoteKey *key, const NoteFile *file)
{
    if (same_text(key->text, key->length, file->name, file->name_length) ||
        same_text(key->text, key->length, file->full, file->full_length))
        return 1;
    if (key->bare && key->length <= file->full_length) {
        /* A bare key names every file whose path ends in it, but only when
         * its first occurrence is that end. */
        const char *end = file->full + file->full_length - key->length;
        if (memcmp(end, key->text, key->length) == 0 && find_whole(file->full, key->text) == end)
            return 1;
    }
    return !key->has_colon && file->rest &&
           same_text(key->text, key->length, file->rest, file->rest_length);
}

int note_key_matches(const char *key, const char *dir, const char *name)
{
    char k[TEXT_SIZE] = "";
    NoteKey prepared;
    NoteFile file;
    strcatv(TEXT_MAX, k, key, nullptr);
    prepare_key(k, &prepared);
    prepare_file(&file, dir, name);
    return key_names_file(&prepared, &file);
}

void notes_begin_listing(void)
{
    size_t used = 0;
    ListingKeyCount = 0;
    for (TextNode *node = FileNotes.head; node && ListingKeyCount < NOTES_LISTING_KEYS;
         node = node->next) {
        if (sizeof ListingText - used < (size_t)TEXT_SIZE)
            break;
        const char *line = node->text;
        char *k = ListingText + used;
        next_word(&line, k);
        NoteKey *key = &ListingKeys[ListingKeyCount++];
        prepare_key(k, key);
        used += key->length + 1;
    }
}

void notes_end_listing(void)
{
    ListingKeyCount = 0;
}

/* The note of line index: its first word after the key into note; gives
 * the line before it (NULL for the first). */
static TextNode *note_at(int32_t index, char *note)
{
    char key[TEXT_SIZE];
    TextNode *prev = nullptr, *node = FileNotes.head;
    for (int32_t i = 0; i < index; i++)
        prev = node, node = node->next;
    const char *line = node->text;
    next_word(&line, key);
    next_word(&line, note);
    return prev;
}

TextNode *find_note(const char *dir, const char *name, char *note, int32_t *index)
{
    char text[TEXT_SIZE];
    NoteFile file;
    NoteKey key;
    note[0] = '\0';
    *index = -1;
    if (!FileNotes.head)
        return nullptr;
    prepare_file(&file, dir, name);
    int32_t i = 0;
    for (; i < ListingKeyCount; i++)
        if (key_names_file(&ListingKeys[i], &file)) {
            *index = i;
            return note_at(i, note);
        }
    TextNode *node = FileNotes.head;
    for (int32_t k = 0; k < i && node; k++)
        node = node->next;
    for (; node; node = node->next, i++) {
        const char *line = node->text;
        next_word(&line, text);
        prepare_key(text, &key);
        if (key_names_file(&key, &file)) {
            *index = i;
            return note_at(i, note);
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
    /* Keys made ready for a listing would no longer be those of the lines. */
    notes_end_listing();
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
