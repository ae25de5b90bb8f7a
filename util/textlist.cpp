/* textlist.cpp - loading, editing and saving text lists. */
#include <stdio.h>
#include <string.h>

#include "ads.h"
#include "platform.h"
#include "textlist.h"
#include "textutil.h"

static void textlist_clear(TextList *list)
{
    memset(list, 0, sizeof *list);
}

TextNode *textnode_new(const char *text)
{
    size_t len = strlen(text);
    TextNode *node = (TextNode *)acad_malloc(sizeof(TextNode) + len + 1);
    if (!node)
        return nullptr;
    node->next = nullptr;
    node->text = (char *)(node + 1);
    memcpy(node->text, text, len + 1);
    return node;
}

TextNode *textlist_append(TextList *list, TextNode *after, const char *text)
{
    TextNode *node = textnode_new(text);
    if (!node) {
        ads_alert("Memory Fault !");
        return nullptr;
    }
    if (after)
        after->next = node;
    else
        list->head = node;
    list->tail = node;
    list->count++;
    return node;
}

/* Keeps the earliest line at which the file was not read whole. */
static void mark_unread(TextList *list, int32_t line, int32_t why)
{
    if (list->unread_line == 0 || line < list->unread_line) {
        list->unread_line = line;
        list->unread_why = why;
    }
}

/* Whether anything but white space and end marks is left in file. */
static int text_follows(FILE *file)
{
    for (int c; (c = getc(file)) != EOF;)
        if (c != 0x1A && c != ' ' && !(c >= '\t' && c <= '\r'))
            return 1;
    return 0;
}

/* Looks at the bytes of the file for what text-mode reading in pieces of
 * 255 does not take in as it stands: a line longer than 255 bytes, a NUL
 * byte, an end mark with text after it. Reading stays as it is; this only
 * notes the first such line in the list. */
static void find_unread(const char *path, TextList *list)
{
    FILE *file = plat_fopen(path, "rb");
    if (!file)
        return;
    int32_t line = 1;
    size_t length = 0;
    for (int c; (c = getc(file)) != EOF;) {
        if (c == '\r') {
            int next = getc(file);
            if (next == '\n')
                c = '\n';
            else if (next != EOF)
                ungetc(next, file);
        }
        if (c == '\n') {
            line++;
            length = 0;
        } else if (c == 0x1A) {
            if (text_follows(file))
                mark_unread(list, line, UNREAD_END_MARK);
            break;
        } else if (c == '\0') {
            mark_unread(list, line, UNREAD_NUL);
            break;
        } else if (++length > (size_t)TEXT_MAX) {
            mark_unread(list, line, UNREAD_LONG_LINE);
            break;
        }
    }
    fclose(file);
}

void textlist_load(const char *path, TextList *list, int n, int w1, int w2, int w3,
                   int w4, int w5, int w6, int w7)
{
    char piece[TEXT_SIZE];
    int32_t line = 1;

    textlist_free(list);
    if (strlen(path) > TEXT_MAX)
        return;
    strcatv(TEXT_MAX, list->path, path, nullptr);

    FILE *file = plat_fopen(path, "r");
    if (!file)
        return;
    while (fgets(piece, sizeof piece, file)) {
        size_t len = strlen(piece);
        if (len == 0)
            continue;
        int line_end = piece[len - 1] == '\n';
        if (line_end)
            piece[len - 1] = '\0';
        filter_fields(piece, n, w1, w2, w3, w4, w5, w6, w7);
        if (MatchLine[0] && !textlist_append(list, list->tail, piece)) {
            mark_unread(list, line, UNREAD_MEMORY);
            break;
        }
        line += line_end;
    }
    fclose(file);
    find_unread(path, list);
}

int textlist_backup_path(const TextList *list, char *out)
{
    static const char Extension[] = ".BAK";
    /* The extension is looked for in the file's name only, after its last
     * "\" or "/" (never the trail byte of a Big5 character). */
    const char *back = big5_strrchr(list->path, '\\'), *slash = big5_strrchr(list->path, '/');
    const char *name = !back ? slash : !slash || back > slash ? back : slash;
    name = name ? name + 1 : list->path;
    const char *dot = big5_strrchr(name, '.');
    size_t stem = dot ? (size_t)(dot - list->path) : strlen(list->path);
    out[0] = '\0';
    if (list->path[0] == '\0' || stem + sizeof Extension - 1 > (size_t)TEXT_MAX)
        return 0;
    memcpy(out, list->path, stem);
    strcpy(out + stem, Extension);
    if (strcmp(out, list->path) == 0) {
        out[0] = '\0';
        return 0;
    }
    return 1;
}

/* Copies the file from, byte for byte, to to; 1 when done, or when from
 * cannot be opened (there is nothing to keep). */
static int copy_file(const char *from, const char *to)
{
    char buffer[4096];
    FILE *in = plat_fopen(from, "rb");
    if (!in)
        return 1;
    FILE *out = plat_fopen(to, "wb");
    int ok = out != nullptr;
    for (size_t n; ok && (n = fread(buffer, 1, sizeof buffer, in)) > 0;)
        ok = fwrite(buffer, 1, n, out) == n;
    ok = ok && !ferror(in);
    fclose(in);
    if (out && fclose(out) != 0)
        ok = 0;
    return ok;
}

/* Before a list that was not read whole replaces its file, keeps the file
 * as it was in its backup; 1 when the file may be written. */
static int keep_backup(TextList *list)
{
    char backup[TEXT_SIZE], alert[TEXT_SIZE * 2];
    if (!textlist_backup_path(list, backup) || !copy_file(list->path, backup)) {
        snprintf(alert, sizeof alert,
                 "%s is left as it was and the changes are not saved: no backup of it could be "
                 "written beside it.",
                 list->path);
        ads_alert(alert);
        return 0;
    }
    list->unread_line = 0;
    list->unread_why = UNREAD_NONE;
    return 1;
}

void textlist_save(TextList *list)
{
    if (!list->modified || list->path[0] == '\0')
        return;
    if (list->unread_line && !keep_backup(list))
        return;
    FILE *file = plat_fopen(list->path, "w");
    if (!file)
        return;
    for (TextNode *node = list->head; node; node = node->next) {
        fputs(node->text, file);
        fputc('\n', file);
    }
    if (list->count > 0)
        fputc(0x1A, file);
    fclose(file);
}

/* ORDER: the UNREAD_ reasons; each takes the line number. */
static const char *const UnreadReasons[] = {
    "",
    "line %d is longer than 255 characters and is taken in as several lines",
    "line %d holds a NUL byte, and the rest of that line is not read",
    "an end mark (byte 1A) in line %d hides the text after it",
    "memory ran out at line %d, and the lines from there on are not read",
};
static_assert(sizeof UnreadReasons / sizeof *UnreadReasons == UNREAD_REASONS, "one text per reason");

int textlist_unread_text(const TextList *list, char *out, size_t size)
{
    char reason[128];
    out[0] = '\0';
    if (list->unread_line == 0 || list->unread_why <= UNREAD_NONE ||
        list->unread_why >= UNREAD_REASONS)
        return 0;
    snprintf(reason, sizeof reason, UnreadReasons[list->unread_why], (int)list->unread_line);
    snprintf(out, size, "%s could not be read whole: %s.", list->path, reason);
    return 1;
}

void textlist_alert_unread(const TextList *list)
{
    char text[TEXT_SIZE * 2], backup[TEXT_SIZE], alert[TEXT_SIZE * 4];
    if (!textlist_unread_text(list, text, sizeof text))
        return;
    if (textlist_backup_path(list, backup))
        snprintf(alert, sizeof alert, "%s If it is saved, the file as it is now is kept as %s.",
                 text, backup);
    else
        snprintf(alert, sizeof alert, "%s It cannot be saved: no backup of it could be named.",
                 text);
    ads_alert(alert);
}

void textlist_free(TextList *list)
{
    TextNode *node = list->head;
    while (node) {
        TextNode *next = node->next;
        acad_free(node);
        node = next;
    }
    textlist_clear(list);
}

void textlist_find(const TextList *list, int32_t i, TextNode **node, TextNode **prev)
{
    TextNode *at = list->head;
    TextNode *before = nullptr;
    for (int32_t step = 0; step < i && at; step++) {
        before = at;
        at = at->next;
    }
    *node = at;
    *prev = before;
}

void textlist_delete(TextList *list, int32_t i)
{
    TextNode *node, *prev;

    if (list->count == 0 || i >= list->count)
        return;
    textlist_find(list, i, &node, &prev);
    if (!node)
        return;
    if (node == list->tail)
        list->tail = prev;
    if (prev)
        prev->next = node->next;
    else
        list->head = node->next;
    acad_free(node);
    list->count--;
    list->modified = 1;
    if (list->count == 0)
        list->head = list->tail = nullptr;
}
