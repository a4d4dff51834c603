// Libraries opened at run time.
#pragma once

#include "platform/sysroot.h"

#include <dlfcn.h>

namespace ph {

// The dynamic linker searches for a bare name; an absolute path lies below PH_SYSROOT. Returns nullptr when
// there is no such library.
inline void* openLibrary(const char* nameOrPath) {
    char path[4096];
    if (nameOrPath[0] != '/')
        return dlopen(nameOrPath, RTLD_LAZY);
    return PH_SysrootPath(nameOrPath, path, sizeof(path)) == 0 ? dlopen(path, RTLD_LAZY) : nullptr;
}

// There may be nothing to close: C libraries differ in whether they refuse a null handle or crash.
inline int closeLibrary(void* library) {
    return library != nullptr ? dlclose(library) : -1;
}

// A library that is closed with its owner.
class DynamicLibrary {
public:
    explicit DynamicLibrary(const char* nameOrPath) : handle_(openLibrary(nameOrPath)) {}
    ~DynamicLibrary() { closeLibrary(handle_); }
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    // Returns nullptr when the library could not be opened or has no such symbol.
    template <class Function>
    Function find(const char* symbol) const {
        return handle_ != nullptr ? reinterpret_cast<Function>(dlsym(handle_, symbol)) : nullptr;
    }

private:
    void* handle_ = nullptr;
};

} // namespace ph
