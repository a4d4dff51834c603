#include "failing_allocation.h"

#include <cerrno>
#include <cstddef>

namespace {

unsigned left = 0;
bool failed = false;

bool failsNow() {
    if (left == 0 || --left != 0)
        return false;
    failed = true;
    errno = ENOMEM;
    return true;
}

} // namespace

void failAllocation(unsigned nth) {
    left = nth;
    failed = false;
}

bool allocationFailed() {
    return failed;
}

// The linker's names, see ld --wrap; it looks for them in the name of shared libraries too.
#pragma GCC visibility push(default)
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
char* __real_strdup(const char* text);
char* __real_strndup(const char* text, std::size_t length);

void* __wrap_malloc(std::size_t size) {
    return failsNow() ? nullptr : __real_malloc(size);
}
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return failsNow() ? nullptr : __real_calloc(count, size);
}
void* __wrap_realloc(void* block, std::size_t size) {
    return failsNow() ? nullptr : __real_realloc(block, size);
}
char* __wrap_strdup(const char* text) {
    return failsNow() ? nullptr : __real_strdup(text);
}
char* __wrap_strndup(const char* text, std::size_t length) {
    return failsNow() ? nullptr : __real_strndup(text, length);
}
}
#pragma GCC visibility pop
