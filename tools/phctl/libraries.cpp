#include "libraries.h"

#include "errors.h"

#include <cstdlib>
#include <platform/sysroot.h>

namespace phctl {

namespace fs = std::filesystem;

fs::path placeOf(const char* absolutePath) {
    char path[4096];
    if (PH_SysrootPath(absolutePath, path, sizeof(path)) != 0)
        throw Failure("PH_SYSROOT is too long");
    return path;
}

fs::path installedLibrary(const char* name) {
    const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
    const fs::path modules = programs / PH_MODULE_DIR;
    for (const fs::path& folder : {programs / "../lib", modules, modules / "..", modules / "../phctl",
                                   programs / "../lib/cmpi", programs})
        if (exists(folder / name))
            return (folder / name).lexically_normal();
    return {};
}

void provideLibrary(const char* absolutePath, const char* consequence) {
    const fs::path path = placeOf(absolutePath);
    if (exists(path))
        return;
    const fs::path installed = installedLibrary(path.filename().c_str());
    if (secure_getenv("PH_SYSROOT") == nullptr || installed.empty())
        throw Failure(path.string() + " is missing: " + consequence);
    create_directories(path.parent_path());
    create_symlink(installed, path);
}

} // namespace phctl
