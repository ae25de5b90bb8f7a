/* platform.h - the operating-system services the module needs.
 *
 * On the original platform these are the C runtime's DOS-flavoured calls
 * (fopen in text mode, _findfirst, _getdrive, _chdrive, _getdcwd,
 * localtime, getenv). Paths are DOS paths in the module's own bytes (ASCII
 * or Big5): "C:\VOR\ELINE.CAT", "\ACF\", "P1.ACF"; a path without a drive
 * is on the current drive, one without a leading "\" is relative to that
 * drive's current directory. "/" is taken as "\".
 */
#ifndef VORMIS_HOST_PLATFORM_H
#define VORMIS_HOST_PLATFORM_H

#include <stdint.h>
#include <stdio.h>
#include <time.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Opens a file by DOS path. Modes are fopen's: "r", "w", "a" open in text
 * mode (a "\n" written goes to disk as CR LF; reading gives CR LF as "\n"
 * and ends at a 0x1A byte); with "b" the bytes pass unchanged. Returns a
 * stream for the standard C calls and fclose, or NULL. */
FILE *plat_fopen(const char *dos_path, const char *mode);

/* Attributes of a directory entry. */
#define PLAT_A_NORMAL 0x00
#define PLAT_A_RDONLY 0x01
#define PLAT_A_HIDDEN 0x02
#define PLAT_A_SYSTEM 0x04
#define PLAT_A_SUBDIR 0x10
#define PLAT_A_ARCH 0x20

#define PLAT_NAME_MAX 260

struct plat_finddata {
    unsigned attrib;
    time_t time_write; /* last write, as a calendar time */
    long size;
    char name[PLAT_NAME_MAX];
};

/* Directory search by pattern ("C:\ACF\*.ACF", "*.*"; "*" and "?" as in
 * DOS, letters in any case). A directory other than a drive's root gives
 * "." and ".." first. plat_findfirst returns a handle, or -1 when the
 * directory cannot be searched or nothing matches; plat_findnext returns 0
 * and the next entry, or -1 at the end. Every handle other than -1 is
 * closed with plat_findclose. */
intptr_t plat_findfirst(const char *dos_pattern, struct plat_finddata *entry);
int plat_findnext(intptr_t handle, struct plat_finddata *entry);
int plat_findclose(intptr_t handle);

/* Local time of a calendar time; 0 on success, -1 otherwise. */
int plat_localtime(time_t t, struct tm *out);

/* The current drive: 1 for A:, 2 for B:, ... */
int plat_getdrive(void);

/* Makes a drive current; 0 on success, -1 when the drive is not there. */
int plat_chdrive(int drive);

/* The current directory of a drive (0 for the current drive) as a full DOS
 * path such as "C:\VOR" or "C:\" into buf; returns buf, or NULL when the
 * drive is not there or the path does not fit in size bytes. */
char *plat_getdcwd(int drive, char *buf, int size);

/* The value of an environment variable ("ACAD", the host's search path of
 * DOS directories separated by ";"), or NULL. */
const char *plat_getenv(const char *name);

#ifdef __cplusplus
}
#endif

#endif /* VORMIS_HOST_PLATFORM_H */
