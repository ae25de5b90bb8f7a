/* textutil.h - string helpers shared by every part of the module: bounded
 * joining, the field filter of the text-list loader, the home directory of
 * the data files, and the Big5 byte rules they rely on. */
#ifndef VORMIS_UTIL_TEXTUTIL_H
#define VORMIS_UTIL_TEXTUTIL_H

#include <stddef.h>

/* The module's texts live in 256-byte buffers: 255 bytes and a terminator. */
constexpr int TEXT_SIZE = 256;
constexpr int TEXT_MAX = TEXT_SIZE - 1;

/* filter_fields looks at most at this many fields of a line. */
constexpr int FIELD_COUNT = 7;

/* The first n fields of the line last filtered, each cut to its width,
 * joined by tabs; empty when the line had fewer than n fields. */
extern char MatchLine[FIELD_COUNT * TEXT_MAX + FIELD_COUNT];

/* Empties MatchLine, as the module starts. */
void textutil_reset(void);

/* Appends the strings that follow dest, up to a null pointer, to the text
 * already in dest, which never grows beyond size bytes (plus terminator):
 * what does not fit is cut, by bytes. */
void strcatv(int size, char *dest, ...);

/* Splits line into white-space separated fields and fills MatchLine from
 * the first n of them (1 to 7), field k cut to its first wk bytes. A field
 * longer than 255 bytes is taken as its first 255. */
void filter_fields(const char *line, int n, int w1, int w2, int w3, int w4,
                   int w5, int w6, int w7);

/* Writes into out (256 bytes) the upper-cased full DOS path of the data
 * file name in the home directory: the command-language symbol VORMIS, or
 * C:\ when it is unset. A path that would not fit in 255 bytes gives the
 * empty text, so that no other file is read or written in its place. */
void home_path(const char *name, char *out);

/* Big5: a lead byte starts a two-byte character when a trail byte follows. */
int big5_is_lead(unsigned char c);
int big5_is_trail(unsigned char c);

/* Bytes of the character at p: 2 for a Big5 lead byte with its trail, else
 * 1 (0 at the terminator is never asked for). */
int big5_char_bytes(const char *p);

/* Whether the last character of text (a whole Big5 character counting as
 * one) is the single byte c. A trail byte equal to c does not count. */
int ends_with_char(const char *text, char c);

/* The last character of text that is the single byte c, or NULL; the trail
 * byte of a Big5 character (5C is one, 5F another) does not count. */
const char *big5_strrchr(const char *text, char c);

/* The first place where part begins in text, tried only at the starts of
 * whole characters; NULL when there is none. */
const char *big5_strstr(const char *text, const char *part);

/* Upper-cases the ASCII letters of text in place, byte by byte. */
void upper_ascii(char *text);

#endif
