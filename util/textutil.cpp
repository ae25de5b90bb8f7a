/* textutil.cpp - bounded joining, the field filter, the home path. */
#include <stdarg.h>
#include <string.h>

#include "ads.h"
#include "textutil.h"

char MatchLine[FIELD_COUNT * TEXT_MAX + FIELD_COUNT];

void textutil_reset(void)
{
    memset(MatchLine, 0, sizeof MatchLine);
}

void strcatv(int size, char *dest, ...)
{
    size_t used = strlen(dest);
    size_t room = size > 0 && (size_t)size > used ? (size_t)size - used : 0;
    va_list ap;
    va_start(ap, dest);
    for (const char *s = va_arg(ap, const char *); s && room > 0;
         s = va_arg(ap, const char *)) {
        size_t len = strnlen(s, room);
        memcpy(dest + used, s, len);
        used += len;
        room -= len;
    }
    va_end(ap);
    dest[used] = '\0';
}

/* The white space of the C locale, whatever locale the host runs in. */
static int is_blank(unsigned char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

void filter_fields(const char *line, int n, int w1, int w2, int w3, int w4,
                   int w5, int w6, int w7)
{
    const int widths[FIELD_COUNT] = {w1, w2, w3, w4, w5, w6, w7};
    const char *start[FIELD_COUNT];
    size_t length[FIELD_COUNT];
    int found = 0;

    MatchLine[0] = '\0';
    if (n < 1 || n > FIELD_COUNT)
        return;
    for (const unsigned char *p = (const unsigned char *)line;
         *p && found < FIELD_COUNT;) {
        while (*p && is_blank(*p))
            p++;
        if (!*p)
            break;
        const unsigned char *end = p;
        while (*end && !is_blank(*end))
            end++;
        start[found] = (const char *)p;
        length[found] = (size_t)(end - p) > TEXT_MAX ? TEXT_MAX : (size_t)(end - p);
        found++;
        p = end;
    }
    if (found < n)
        return;

    char *out = MatchLine;
    for (int k = 0; k < n; k++) {
        size_t width = widths[k] < 0 ? 0 : (size_t)widths[k];
        size_t len = length[k] < width ? length[k] : width;
        if (k > 0)
            *out++ = '\t';
        memcpy(out, start[k], len);
        out += len;
    }
    *out = '\0';
}

int big5_is_lead(unsigned char c)
{
    return c >= 0x81 && c <= 0xFE;
}

int big5_is_trail(unsigned char c)
{
    return (c >= 0x40 && c <= 0x7E) || (c >= 0xA1 && c <= 0xFE);
}

int big5_char_bytes(const char *p)
{
    const unsigned char *u = (const unsigned char *)p;
    return big5_is_lead(u[0]) && big5_is_trail(u[1]) ? 2 : 1;
}

int ends_with_char(const char *text, char c)
{
    const char *last = nullptr;
    for (const char *p = text; *p; p += big5_char_bytes(p))
        last = p;
    return last && big5_char_bytes(last) == 1 && *last == c;
}

const char *big5_strrchr(const char *text, char c)
{
    const char *found = nullptr;
    for (const char *p = text; *p; p += big5_char_bytes(p))
        if (*p == c)
            found = p;
    return found;
}

const char *big5_strstr(const char *text, const char *part)
{
    size_t len = strlen(part);
    for (const char *p = text; *p; p += big5_char_bytes(p))
        if (strncmp(p, part, len) == 0)
            return p;
    return len == 0 ? text : nullptr;
}

void upper_ascii(char *text)
{
    for (char *p = text; *p; p++)
        if (*p >= 'a' && *p <= 'z')
            *p = (char)(*p - 'a' + 'A');
}

/* The text of the command-language symbol VORMIS, or "" when it is unset or
 * not a text. */
static void home_directory(char *out)
{
    struct resbuf *value = nullptr;
    out[0] = '\0';
    if (ads_getsym("VORMIS", &value) == RTNORM && value && value->restype == RTSTR &&
        value->resval.rstring)
        strcatv(TEXT_MAX, out, value->resval.rstring, nullptr);
    ads_relrb(value);
}

void home_path(const char *name, char *out)
{
    char dir[TEXT_SIZE];
    char path[TEXT_SIZE * 2 + 1] = "";

    home_directory(dir);
    if (dir[0] == '\0') {
        strcatv(sizeof path - 1, path, "C:\\", name, nullptr);
    } else {
        for (char *p = dir; *p; p++)
            if (*p == '/')
                *p = '\\';
        strcatv(sizeof path - 1, path, dir, ends_with_char(dir, '\\') ? "" : "\\", name,
                nullptr);
    }
    upper_ascii(path);
    out[0] = '\0';
    if (strlen(path) <= TEXT_MAX)
        strcatv(TEXT_MAX, out, path, nullptr);
}
