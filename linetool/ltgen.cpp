/* ltgen.cpp - VOR_LT_LO: the linetype files of the three families, written
 * from their catalogues and loaded into the drawing. */
#include <stdio.h>
#include <string.h>

#include "ads.h"
#include "platform.h"
#include "catalogue.h"
#include "ltgen.h"
#include "../host/hostval.h"
#include "../util/textutil.h"

/* ORDER: the families walked, each with its file's header letter. */
static const char *const Kinds[] = {"ELINE", "SLINE", "PLINE"};

/* The header; the character at HEADER_KIND_AT is the family's letter. */
static constexpr char Header[] = ";;\n;;  VORMIS LineType file for (VOR_ELINE) function\n;;\n";
constexpr size_t HEADER_KIND_AT = 37;
static_assert(sizeof Header - 1 == 56 && Header[HEADER_KIND_AT] == 'E', "header layout");

/* The full path of name in dir into out (256 bytes): the current
 * directory's full path when dir is "", so that messages name the file
 * wherever it lies. 0 when the path would pass 255 bytes: a cut path names
 * another file, so such a path is never used. */
static int join_path(const char *dir, const char *name, char *out)
{
    char cwd[TEXT_SIZE];
    out[0] = '\0';
    if (dir[0] == '\0') {
        if (!plat_getdcwd(0, cwd, TEXT_SIZE))
            return 0;
        dir = cwd;
    }
    const char *separator = ends_with_char(dir, '\\') || ends_with_char(dir, '/') ? "" : "\\";
    if (strlen(dir) + strlen(separator) + strlen(name) > (size_t)TEXT_MAX)
        return 0;
    strcatv(TEXT_MAX, out, dir, separator, name, nullptr);
    return 1;
}

/* Whether the file name exists in dir ("" for the current directory); the
 * path found goes to out. A directory whose path with name does not fit is
 * passed over. */
static int found_in(const char *dir, const char *name, char *out)
{
    char path[TEXT_SIZE];
    if (!join_path(dir, name, path))
        return 0;
    FILE *file = plat_fopen(path, "r");
    if (!file)
        return 0;
    fclose(file);
    strcpy(out, path);
    return 1;
}

/* Looks for name in the current directory, then in the folders of ACAD. */
static int search_path(const char *name, char *out)
{
    if (found_in("", name, out))
        return 1;
    const char *acad = plat_getenv("ACAD");
    for (const char *p = acad; p && *p;) {
        const char *semi = strchr(p, ';');
        size_t len = semi ? (size_t)(semi - p) : strlen(p);
        char dir[TEXT_SIZE] = "";
        if (len <= TEXT_MAX) {
            memcpy(dir, p, len);
            dir[len] = '\0';
            if (dir[0] && found_in(dir, name, out))
                return 1;
        }
        p = semi ? semi + 1 : p + len;
    }
    return 0;
}

/* Where the family's linetype file goes: where it lies already, else beside
 * the host's ACAD.LIN, else the current directory. 0 when that path would
 * not fit in 255 bytes. */
static int linetype_file_path(const char *name, char *out)
{
    static const char HostFile[] = "ACAD.LIN";
    char found[TEXT_SIZE];
    out[0] = '\0';
    if (search_path(name, out))
        return 1;
    if (search_path(HostFile, found)) {
        /* The first occurrence, at the start of a whole character; the
         * found path ends in the name, so there is one. */
        const char *at = big5_strstr(found, HostFile);
        if (!at)
            return 0;
        size_t before = (size_t)(at - found), after = strlen(at + sizeof HostFile - 1);
        if (before + strlen(name) + after > (size_t)TEXT_MAX)
            return 0;
        memcpy(out, found, before);
        out[before] = '\0';
        strcatv(TEXT_MAX, out, name, at + sizeof HostFile - 1, nullptr);
        return 1;
    }
    return join_path("", name, out);
}

/* Copies text without its leading spaces, upper-cased and without the
 * backslash of each backslash-quote pair (the catalogue's escape, which a
 * linetype file must not hold), into out (256 bytes). */
static void linetype_text(const char *text, char *out)
{
    while (*text == ' ')
        text++;
    unescape_field(text, out);
    upper_ascii(out);
}

/* Writes the two lines of the record in RecordFields; a record whose name
 * or pattern is missing, or would not fit a line of 255 bytes, is left out
 * with a message, so that the file stays loadable as a whole. */
static void write_record(FILE *file)
{
    char name[TEXT_SIZE], pattern[TEXT_SIZE], line[TEXT_SIZE] = "";
    linetype_text(RecordFields[1], name);
    linetype_text(RecordFields[6], pattern);
    const char *prefix = strncmp(pattern, "A,", 2) == 0 ? "" : "A,";
    int unusable = name[0] == '\0' || pattern[0] == '\0' || strpbrk(name, ", \t") != nullptr;
    if (unusable || strlen(name) + 2 > TEXT_MAX || strlen(prefix) + strlen(pattern) + 1 > TEXT_MAX) {
        ads_printf("\nLinetype \"%s\" of run type \"%s\" left out: %s", name, RecordFields[0],
                   unusable ? "its name or pattern is missing or not usable"
                            : "its definition is longer than a linetype file line");
        return;
    }
    strcatv(TEXT_MAX, line, "*", name, "\n", nullptr);
    fputs(line, file);
    line[0] = '\0';
    strcatv(TEXT_MAX, line, prefix, pattern, "\n", nullptr);
    fputs(line, file);
}

/* Writes the current family's linetype file and has the host load it. A
 * file whose path, or whose catalogue's path, does not fit is not written:
 * the old file stays as it is. */
static void generate_kind(const char *kind)
{
    char file_name[16] = "", path[TEXT_SIZE], catalogue[TEXT_SIZE], header[sizeof Header];

    KindName[0] = '\0';
    strcatv(sizeof KindName - 1, KindName, kind, nullptr);
    strcatv(sizeof file_name - 1, file_name, kind, ".LIN", nullptr);
    if (!linetype_file_path(file_name, path)) {
        ads_printf("\n%s not written: its path would be longer than 255 characters", file_name);
        return;
    }
    catalogue_path(catalogue);
    if (catalogue[0] == '\0') {
        ads_printf("\n%s not written: the path of %s.CAT in the home directory is longer than 255 "
                   "characters",
                   file_name, kind);
        return;
    }

    FILE *file = plat_fopen(path, "w");
    if (!file) {
        ads_printf("\nFile open failure : %s", path);
        return;
    }
    catalogue_load();
    /* The file then lacks linetypes, or holds broken ones: say so. */
    char unread[TEXT_SIZE * 2];
    if (textlist_unread_text(&Catalogue, unread, sizeof unread))
        ads_printf("\n%s", unread);
    memcpy(header, Header, sizeof Header);
    header[HEADER_KIND_AT] = kind[0];
    fputs(header, file);
    for (TextNode *node = Catalogue.head; node; node = node->next) {
        parse_record(node->text, 1);
        write_record(file);
    }
    fputc(0x1A, file);
    fclose(file);
    textlist_free(&Catalogue);
    ads_command(RTSTR, "LINETYPE", RTSTR, "L", RTSTR, "*", RTSTR, file_name, RTSTR, "", 0);
}

int linetype_generate(void)
{
    short echo = set_int_sysvar("CMDECHO", 0);
    short expert = set_int_sysvar("EXPERT", 3);
    short filedia = set_int_sysvar("FILEDIA", 0);
    for (const char *kind : Kinds)
        generate_kind(kind);
    set_int_sysvar("CMDECHO", echo);
    set_int_sysvar("EXPERT", expert);
    set_int_sysvar("FILEDIA", filedia);
    return RTNORM;
}
