// The library's two ways of telling what it does.
#pragma once

#include "platform/support.h"

namespace ph {

inline constexpr int runtimeLogLevel = 135;

// Writes to standard output when the environment variable DEBUG_PROVIDER is YES.
void debugPrint(const char* text);

} // namespace ph

// Writes a line of the runtime debug log, led by file and line: PH_LOG("%s added", name).
#define PH_LOG(format, ...) PH_LOG_FROM(__FILE__, format __VA_OPT__(, ) __VA_ARGS__)
// Does the same for a source that the log knows by another name than its file's.
#define PH_LOG_FROM(source, format, ...)                                                                     \
    IDBG_LINUXAPP_Runtime_DbgOut(::ph::runtimeLogLevel, "[%s:%d]" format, source,                            \
                                 __LINE__ __VA_OPT__(, ) __VA_ARGS__)
