#include "check_platform/platform_libraries.h"

#include "libraries.h"

#include <algorithm>
#include <cstdint>
#include <dlfcn.h>

namespace {

struct Range {
    std::uintptr_t begin, end;
};
constinit std::vector<Range> stubs; // libraries that the program is linked with come before its constructors

bool isStub(const void* function) {
    const auto address = reinterpret_cast<std::uintptr_t>(function);
    return std::ranges::any_of(
        stubs, [=](const Range& range) { return address >= range.begin && address < range.end; });
}

// A private root may have no copy yet of a library that is opened by path: then the installed one is checked.
std::string fileOf(const std::string& name) {
    if (name.front() != '/')
        return name;
    const std::filesystem::path place = phctl::placeOf(name.c_str());
    const auto installed = phctl::installedLibrary(place.filename().c_str());
    return exists(place) || installed.empty() || secure_getenv("PH_SYSROOT") == nullptr ? place.string()
                                                                                        : installed.string();
}

} // namespace

// Libraries that have stubs call this when they are loaded.
extern "C" __attribute__((visibility("default"))) void PH_NoteStubs(const char* begin, const char* end) {
    stubs.push_back({reinterpret_cast<std::uintptr_t>(begin), reinterpret_cast<std::uintptr_t>(end)});
}

namespace phctl::check {

// One that others need comes before them.
Libraries::Libraries(const char* also) {
    std::vector<std::string> names{"libphsupport.so",   "libsmashdb.so",     "libCIMAPIHooks.so",
                                   "libCIMTRZHooks.so", "libCIMOEMHooks.so", "libsmtp.so"};
    if (std::ranges::find(names, also) == names.end())
        names.emplace_back(also);
    for (const std::string& name : names) {
        void* handle = dlopen(fileOf(name).c_str(), RTLD_LAZY | RTLD_GLOBAL);
        const std::string fault = handle == nullptr ? dlerror() : "";
        // A sanitizer calls dlopen in the program's place, and then the program's search path does not count. One
        // that is found and cannot be loaded is a fault of its own.
        const std::string installed = phctl::installedLibrary(name.c_str());
        if (!installed.empty() && fault.starts_with(name + ": cannot open shared object file"))
            handle = dlopen(installed.c_str(), RTLD_LAZY | RTLD_GLOBAL);
        libraries_.push_back({name, handle, handle == nullptr ? fault : ""});
    }
}

void* Libraries::find(const char* function) const {
    for (const Library& library : libraries_)
        if (void* const found = library.handle != nullptr ? dlsym(library.handle, function) : nullptr)
            return isStub(found) ? nullptr : found;
    return nullptr;
}

std::string Libraries::faultOf(const std::string& library) const {
    const auto found = std::ranges::find(libraries_, library, &Library::name);
    return found != libraries_.end() ? found->fault : "";
}

} // namespace phctl::check
