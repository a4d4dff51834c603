/* Files in folders that every user writes to, such as "/tmp".
 *
 * Somebody else may have put something there under our name: a link to a file of ours, a pipe that blocks who
 * opens it, a file with what they want us to read. */
#ifndef PLATFORM_SHARED_FILE_H
#define PLATFORM_SHARED_FILE_H

/* In strict ISO C, <fcntl.h> has the flags below only for those who ask for POSIX. */
#if defined(__STRICT_ANSI__) && !defined(_POSIX_C_SOURCE) && !defined(_GNU_SOURCE)
#define _POSIX_C_SOURCE 200809L
#endif

#include <errno.h>
#include <fcntl.h>
#include <stdbool.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/sysroot.h"

#ifndef O_NOFOLLOW
#error "Include this header before those of the system, or define _POSIX_C_SOURCE as 200809L."
#endif

/* What lstat or fstat told of a regular file of this process's user or of root's, under no other name. */
static inline bool PH_IsTrustedFile(const struct stat* status) {
    return S_ISREG(status->st_mode) && status->st_nlink == 1 &&
           (status->st_uid == geteuid() || status->st_uid == 0);
}

/* Opens the file at an absolute path with the flags of open(), O_TRUNC left out, and mode 0644 when it makes
 * it. Returns its descriptor, or -1 with errno, which is EPERM for what is not trusted. */
static inline int PH_OpenSharedFile(const char* absolutePath, int flags) {
    char path[4096];
    struct stat status;
    int descriptor;
    if (PH_SysrootPath(absolutePath, path, sizeof(path)) != 0) {
        errno = ENAMETOOLONG;
        return -1;
    }
    descriptor = open(path, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0644);
    if (descriptor == -1 || (fstat(descriptor, &status) == 0 && PH_IsTrustedFile(&status)))
        return descriptor;
    close(descriptor);
    errno = EPERM;
    return -1;
}

#endif
