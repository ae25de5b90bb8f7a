/* hostval.cpp - system variables, group lookup, text height settings. */
#include "ads.h"
#include "hostval.h"

short set_int_sysvar(const char *name, short value)
{
    struct resbuf *buffer = ads_newrb(RTSHORT);
    if (!buffer)
        return value;
    short previous = value;
    /* A variable of another type counts as unreadable: its value is not a
     * short to give back, and the buffer must keep its type to be freed. */
    if (ads_getvar(name, buffer) == RTNORM && buffer->restype == RTSHORT) {
        previous = buffer->resval.rint;
        buffer->resval.rint = value;
        ads_setvar(name, buffer);
    }
    ads_relrb(buffer);
    return previous;
}

struct resbuf *find_group(struct resbuf *list, int code)
{
    for (struct resbuf *item = list; item; item = item->rbnext)
        if (item->restype == code)
            return item;
    return nullptr;
}

void text_size_settings(ads_real *fixed_height, ads_real *text_size)
{
    struct resbuf *size = ads_newrb(RTREAL);
    if (size && ads_getvar("TEXTSIZE", size) == RTNORM)
        *text_size = size->resval.rreal;
    ads_relrb(size);

    struct resbuf *style = ads_newrb(RTSTR);
    if (style && ads_getvar("TEXTSTYLE", style) == RTNORM && style->resval.rstring) {
        struct resbuf *record = ads_tblsearch("STYLE", style->resval.rstring, 0);
        struct resbuf *height = find_group(record, 40);
        if (height)
            *fixed_height = height->resval.rreal;
        ads_relrb(record);
    }
    ads_relrb(style);
}
