// The library's own functions for the platform's: their addresses are known when the library is loaded, while the
// platform's are looked up when they are called, and may be missing until then.
#include "platform/cim_hooks.h"
#include "platform/smash_db.h"

extern "C" {

#define FORWARD(name, failure, parameters, ...)                                                              \
    decltype(name) __real_##name;                                                                            \
    int __wrap_##name parameters {                                                                           \
        return __real_##name(__VA_ARGS__);                                                                   \
    }
#define OPTIONAL(name, failure, parameters, ...)
#define TEXT(name)

#include "platform_calls.inc"

} // extern "C"
