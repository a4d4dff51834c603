/* The functions of one of the platform's libraries, of which none is there yet. They are weak, so that those of the
 * library take their places. */
#include "platform/cim_hooks.h"
#include "platform/mail.h"
#include "platform/smash_db.h"
#include "platform/support.h"

/* A program that wants to know which functions are missing has this one; others have not. */
void PH_NoteStub(const char* function) __attribute__((weak));

static int fail(const char* function, int result) {
    enum { debugLog = 134 };
    if (PH_NoteStub != NULL)
        PH_NoteStub(function);
    IDBG_LINUXAPP_DbgOut(debugLog, "%s: the platform has no such function yet\n", function);
    return result;
}

#define FORWARD(name, failure, parameters, ...)                                                              \
    __attribute__((weak)) int name parameters {                                                              \
        return fail(#name, failure);                                                                         \
    }
/* The library does without these, in a way of its own. */
#define OPTIONAL(name, failure, parameters, ...)
#define TEXT(name)                                                                                           \
    __attribute__((weak)) const char* name(void) {                                                           \
        return "the platform has no such function yet";                                                      \
    }

#include PH_PLATFORM_CALLS
