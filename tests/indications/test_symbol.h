// How a module that a test stands in for reaches what the test program exports.
#pragma once

#include <dlfcn.h>

template <class Function>
Function testSymbol(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}
