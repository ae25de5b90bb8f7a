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

void textlist_load(const char *path, TextList *list, int n, int w1, int w2, int w3,
                   int w4, int w5, int w6, int w7)
{
    char piece[TEXT_SIZE];

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
        if (piece[len - 1] == '\n')
            piece[len - 1] = '\0';
        filter_fields(piece, n, w1, w2, w3, w4, w5, w6, w7);
        if (MatchLine[0] && !textlist_append(list, list->tail, piece))
            break;
    }
    fclose(file);
}

void textlist_save(TextList *list)
{
    if (!list->modified || list->path[0] == '\0')
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
