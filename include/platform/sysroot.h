/* Where absolute paths lie: below the directory named by PH_SYSROOT, or where they say.
 *
 * The product works on fixed absolute paths. A demo, a test or a benchmark sets PH_SYSROOT to a directory of
 * its own, and every such path is then taken below it. A program that runs with more rights than its user has
 * ignores the variable. */
#ifndef PLATFORM_SYSROOT_H
#define PLATFORM_SYSROOT_H

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/auxv.h>

/* Writes the place of `absolutePath` to `text` (`size` bytes, always terminated).
 * Returns 0, or -1 when it does not fit. */
static inline int PH_SysrootPath(const char* absolutePath, char* text, size_t size) {
    const char* root = getauxval(AT_SECURE) == 0 ? getenv("PH_SYSROOT") : NULL;
    const int length = snprintf(text, size, "%s%s", root != NULL ? root : "", absolutePath);
    return length >= 0 && (size_t)length < size ? 0 : -1;
}

#endif
