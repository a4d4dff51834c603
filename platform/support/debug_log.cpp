// The debug log: "<time, UTC> [<process>] <log>: <text>", a line per call.
//
// It is off unless the environment variable PH_DEBUG_LOG names a file ("-": standard error) or features.ini
// says [debug] log = yes, which writes to /var/log/provider-helper.log. That is decided at a process's first
// line. A line is one write() to a file opened for appending, so that lines of several threads and processes
// never mix, and a rotation that truncates the file works.
#include "feature_file.h"

#include <platform/support.h>
#include <platform/sysroot.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t lineSize = 1024; // a longer text is cut
constexpr int off = -1;

int openLog() noexcept {
    const auto append = [](const char* path) {
        return open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
    };
    try {
        if (const char* const name = secure_getenv("PH_DEBUG_LOG"); name != nullptr && *name != '\0')
            return std::strcmp(name, "-") == 0 ? STDERR_FILENO : append(name);
        char path[4096];
        if (support::FeatureFile().isEnabled("debug:log") &&
            PH_SysrootPath("/var/log/provider-helper.log", path, sizeof path) == 0)
            return append(path);
    } catch (const std::bad_alloc&) { // no memory, no log
    }
    return off;
}

std::size_t writeHead(char* line, int log) {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    tm utc = {};
    gmtime_r(&now.tv_sec, &utc);
    const std::size_t length = std::strftime(line, lineSize, "%Y-%m-%dT%H:%M:%S", &utc);
    return length + std::snprintf(line + length, lineSize - length,
                                  ".%03ldZ [%d] %d: ", static_cast<long>(now.tv_nsec / 1'000'000),
                                  static_cast<int>(getpid()), log);
}

__attribute__((format(printf, 2, 0))) void writeLine(int log, const char* format, va_list arguments) {
    const int callersErrno = errno;
    static const int file = openLog();
    if (file != off && format != nullptr) {
        char line[lineSize];
        const std::size_t head = writeHead(line, log);
        errno = callersErrno; // for %m
        const int wanted = std::vsnprintf(line + head, lineSize - head, format, arguments);
        std::size_t end = head + std::clamp<std::size_t>(wanted > 0 ? wanted : 0, 0, lineSize - head - 1);
        while (end > head && std::strchr("\n ", line[end - 1]) != nullptr)
            --end;
        std::replace_if(
            line + head, line + end, [](unsigned char c) { return c < 0x20; }, ' ');
        line[end] = '\n';
        [[maybe_unused]] const ssize_t written = write(file, line, end + 1);
    }
    errno = callersErrno;
}

} // namespace

void IDBG_LINUXAPP_DbgOut(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    writeLine(level, format, arguments);
    va_end(arguments);
}

void IDBG_LINUXAPP_Runtime_DbgOut(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    writeLine(level, format, arguments);
    va_end(arguments);
}
