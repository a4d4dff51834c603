/* The functions of one of the platform's libraries, of which none is there yet. They are weak, so that those of the
 * library take their places. */
#include "platform/cim_hooks.h"
#include "platform/mail.h"
#include "platform/smash_db.h"
#include "platform/support.h"

/* A program that wants to know which functions are stubs has this one, others have not. It is told where they lie. */
void PH_NoteStubs(const char* begin, const char* end) __attribute__((weak));

/* The linker's names for the section of the stubs. */
#define STUB __attribute__((weak, section("ph_stubs")))
extern const char __start_ph_stubs[] __attribute__((visibility("hidden")));
extern const char __stop_ph_stubs[] __attribute__((visibility("hidden")));

__attribute__((constructor)) static void noteStubs(void) {
    if (PH_NoteStubs != NULL)
        PH_NoteStubs(__start_ph_stubs, __stop_ph_stubs);
}

static int fail(const char* function, int result) {
    enum { debugLog = 134 };
    IDBG_LINUXAPP_DbgOut(debugLog, "%s: the platform has no such function yet\n", function);
    return result;
}

#define FORWARD(name, failure, parameters, ...)                                                              \
    STUB int name parameters {                                                                               \
        return fail(#name, failure);                                                                         \
    }
/* The library does without these, in a way of its own. */
#define OPTIONAL(name, failure, parameters, ...)
#define TEXT(name)                                                                                           \
    STUB const char* name(void) {                                                                            \
        return "the platform has no such function yet";                                                      \
    }

#include PH_PLATFORM_CALLS
