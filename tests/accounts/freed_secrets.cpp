#include "freed_secrets.h"

#include <cstring>
#include <malloc.h>

namespace {
const char* watched = nullptr;
bool found = false;
} // namespace

void watchFreedMemory(const char* secret) {
    watched = secret;
    found = false;
}

bool secretWasFreed() {
    return found;
}

extern "C" {
void __real_free(void* block);

// The linker's name, see ld --wrap: the library's own objects call it, and under the sanitizers shared ones.
__attribute__((visibility("default"))) void __wrap_free(void* block) {
    if (watched != nullptr && block != nullptr &&
        memmem(block, malloc_usable_size(block), watched, std::strlen(watched)) != nullptr)
        found = true;
    __real_free(block);
}
}
