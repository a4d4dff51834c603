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

#pragma GCC visibility push(default)
#ifndef __SANITIZE_ADDRESS__
// The allocator of the C library, under ours: every library of the process calls ours, operator new as well.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
    return failsNow() ? nullptr : counted(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size) {
    return failsNow() ? nullptr : counted(__libc_calloc(count, size));
}
void* realloc(void* block, std::size_t size) {
    if (failsNow())
        return nullptr;
    void* const moved = __libc_realloc(block, size);
    blocks += (block == nullptr && moved != nullptr) - (block != nullptr && size == 0 && moved == nullptr);
    return moved;
}
void free(void* block) {
    blocks -= block != nullptr;
    __libc_free(block);
}
}
#else
// The sanitizer's malloc is needed before this program is ready to run: only operator new is ours.
void* operator new(std::size_t size) {
    void* const block = failsNow() ? nullptr : counted(std::malloc(size != 0 ? size : 1));
    return block != nullptr ? block : throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return failsNow() ? nullptr : counted(std::malloc(size != 0 ? size : 1));
}
void operator delete(void* block) noexcept {
    blocks -= block != nullptr;
    std::free(block);
}
void operator delete[](void* block) noexcept {
    operator delete(block);
}
void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    operator delete(block);
}
#endif
#pragma GCC visibility pop
