#include "memory_faults.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local bool counts = false;
thread_local bool struck = false;
thread_local unsigned made = 0;
thread_local unsigned failing = 0;
thread_local long blocks = 0;

bool failsNow() {
    if (!counts || ++made != failing)
        return false;
    struck = true;
    errno = ENOMEM;
    return true;
}

void* counted(void* block) {
    blocks += block != nullptr;
    return block;
}

} // namespace

MemoryFault::MemoryFault(unsigned nth) {
    struck = false;
    made = 0;
    failing = nth;
    counts = true;
}

MemoryFault::~MemoryFault() {
    counts = false;
}

bool MemoryFault::hasStruck() const {
    return struck;
}

unsigned MemoryFault::allocations() const {
    return made;
}

long liveBlocks() {
    return blocks;
}

// The allocator of the C library, or of the sanitizer, under ours. Every library of the process calls ours.
#ifdef __SANITIZE_ADDRESS__
#define ALLOCATOR(name) __interceptor_##name
#else
#define ALLOCATOR(name) __libc_##name
#endif

#pragma GCC visibility push(default)
extern "C" {
void* ALLOCATOR(malloc)(std::size_t size);
void* ALLOCATOR(calloc)(std::size_t count, std::size_t size);
void* ALLOCATOR(realloc)(void* block, std::size_t size);
void ALLOCATOR(free)(void* block);

void* malloc(std::size_t size) {
    return failsNow() ? nullptr : counted(ALLOCATOR(malloc)(size));
}
void* calloc(std::size_t count, std::size_t size) {
    return failsNow() ? nullptr : counted(ALLOCATOR(calloc)(count, size));
}
void* realloc(void* block, std::size_t size) {
    if (failsNow())
        return nullptr;
    void* const moved = ALLOCATOR(realloc)(block, size);
    blocks += (block == nullptr && moved != nullptr) - (block != nullptr && size == 0 && moved == nullptr);
    return moved;
}
void free(void* block) {
    blocks -= block != nullptr;
    ALLOCATOR(free)(block);
}
}

#ifdef __SANITIZE_ADDRESS__ // it has operators of its own, which ask no malloc
void* operator new(std::size_t size) {
    if (void* const block = malloc(size != 0 ? size : 1))
        return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return malloc(size != 0 ? size : 1);
}
void operator delete(void* block) noexcept {
    free(block);
}
void operator delete[](void* block) noexcept {
    free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    free(block);
}
#endif
#pragma GCC visibility pop
