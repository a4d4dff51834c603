/* Interop library of the object manager: /usr/local/lib/libinterop_provider.so, opened at run time, renders
 * and posts indications as CIM-XML. These are its entry points and those of the object manager itself; both
 * are found by name, so the declarations are of types. */
#ifndef PLATFORM_INTEROP_H
#define PLATFORM_INTEROP_H

#include <cmpidt.h>

#ifdef __cplusplus
extern "C" {
#endif

/* "qom_generate_indication_response": the instance as a CIM-XML export request (DSP0200 ExportIndication,
 * DSP0201), UTF-8. Returns 0 and a heap text that the caller frees, or another number. What it asks the
 * instance for on the way is the calling thread's, as of any call of CMPI. */
typedef int (*GenerateIndicationResponse)(const CMPIInstance* indication, char** text);

/* "qom_send_indications": posts the text to a listener's URL and waits for its answer, for a bounded time
 * (the reference platform: 10 s). Returns 0 when the listener took it (HTTP status 2xx and no CIM error),
 * another number otherwise. Alerts wait for each other, so that a listener which is dead or hangs must not
 * cost them that time again and again: the reference platform leaves it alone for a minute then, in which
 * the function fails at once. */
typedef int (*SendIndications)(const char* url, const char* text);

/* "GetBroker", "GetContext": the object manager's broker, and a context for a thread of the library's own. */
typedef const CMPIBroker* (*GetBrokerFunction)(void);
typedef const CMPIContext* (*GetContextFunction)(void);

/* "qom_get_heap", "qom_release_heap": attach the calling thread to the object manager's memory manager.
 * The first returns NULL when it cannot; the second takes what the first returned. */
typedef void* (*GetHeapFunction)(void);
typedef void (*ReleaseHeapFunction)(void* heap);

#ifdef __cplusplus
}
#endif

#endif
