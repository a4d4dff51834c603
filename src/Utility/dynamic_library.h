// A library opened at run time, closed with its owner.
#pragma once

#include "platform/sysroot.h"

#include <dlfcn.h>

namespace ph {

class DynamicLibrary {
public:
    // By a bare name the dynamic linker searches, an absolute path lies below PH_SYSROOT.
    explicit DynamicLibrary(const char* nameOrPath) {
        char path[4096];
        if (nameOrPath[0] != '/')
            handle_ = dlopen(nameOrPath, RTLD_LAZY);
        else if (PH_SysrootPath(nameOrPath, path, sizeof(path)) == 0)
            handle_ = dlopen(path, RTLD_LAZY);
    }
    ~DynamicLibrary() {
        if (handle_ != nullptr)
            dlclose(handle_);
    }
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    // nullptr when the library could not be opened or has no such symbol.
    template <class Function>
    Function find(const char* symbol) const {
        return handle_ != nullptr ? reinterpret_cast<Function>(dlsym(handle_, symbol)) : nullptr;
    }

private:
    void* handle_ = nullptr;
};

} // namespace ph
