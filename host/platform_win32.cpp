/* platform_win32.cpp - the operating-system services of platform.h on
 * Windows, where they are the C runtime's own calls. Compiled only into
 * vormis.arx; on Linux vorhost provides them.
 *
 * The C runtime already speaks the module's language: DOS paths in the
 * system's code page (Big5 on a Traditional Chinese system), "/" taken as
 * "\", text mode turning "\n" into CR LF on writing and back on reading,
 * where a 0x1A byte ends the file. Nothing is translated here.
 */
#include <direct.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "platform.h"

/* Drives A: to Z:. Numbers outside them are refused here: newer runtimes
 * treat them as a programming error rather than a missing drive. */
enum { DriveCount = 26 };

/* "r" and "w" without "b" are the runtime's text mode, its default. */
FILE *plat_fopen(const char *dos_path, const char *mode)
{
    if (!dos_path || !mode)
        return nullptr;
    return fopen(dos_path, mode);
}

static void copy_entry(const struct _finddata_t *found, struct plat_finddata *entry)
{
    entry->attrib = found->attrib;
    entry->time_write = found->time_write;
    entry->size = (long)found->size;
    strncpy(entry->name, found->name, sizeof entry->name - 1);
    entry->name[sizeof entry->name - 1] = '\0';
}

intptr_t plat_findfirst(const char *dos_pattern, struct plat_finddata *entry)
{
    struct _finddata_t found;
    if (!dos_pattern || !entry)
        return -1;
    intptr_t handle = _findfirst(dos_pattern, &found);
    if (handle != -1)
        copy_entry(&found, entry);
    return handle;
}

int plat_findnext(intptr_t handle, struct plat_finddata *entry)
{
    struct _finddata_t found;
    if (handle == -1 || !entry || _findnext(handle, &found) != 0)
        return -1;
    copy_entry(&found, entry);
    return 0;
}

int plat_findclose(intptr_t handle)
{
    return handle == -1 ? -1 : _findclose(handle);
}

int plat_localtime(time_t t, struct tm *out)
{
    const struct tm *local = localtime(&t);
    if (!out || !local)
        return -1;
    *out = *local;
    return 0;
}

int plat_getdrive(void)
{
    return _getdrive();
}

int plat_chdrive(int drive)
{
    if (drive < 1 || drive > DriveCount)
        return -1;
    return _chdrive(drive) == 0 ? 0 : -1;
}

/* The runtime gives NULL when the drive is not there or the path does not
 * fit, as platform.h asks; with a null buffer it would allocate one. */
char *plat_getdcwd(int drive, char *buf, int size)
{
    if (!buf || size <= 0 || drive < 0 || drive > DriveCount)
        return nullptr;
    return _getdcwd(drive, buf, size);
}

const char *plat_getenv(const char *name)
{
    return name ? getenv(name) : nullptr;
}
