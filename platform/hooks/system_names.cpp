// System names of this installation: section [names], keys "host" and "sp" of /conf/system_names.ini.
#include <platform/cim_hooks.h>
#include <platform/sysroot.h>

#include <cstdio>
#include <iniparser/iniparser.h>
#include <memory>
#include <unistd.h>

namespace {

constexpr char file[] = "/conf/system_names.ini";
constexpr std::size_t nameSize = 256;
constexpr int none = 1;

int readName(const char* key, char* name) {
    char path[4096];
    // iniparser reports a file that is not there on standard error, and having none is the usual case.
    if (name == nullptr || PH_SysrootPath(file, path, sizeof path) != 0 || access(path, R_OK) != 0)
        return none;
    const std::unique_ptr<dictionary, void (*)(dictionary*)> names(iniparser_load(path), iniparser_freedict);
    const char* const value = names ? iniparser_getstring(names.get(), key, nullptr) : nullptr;
    if (value == nullptr || *value == '\0')
        return none;
    std::snprintf(name, nameSize, "%s", value);
    return 0;
}

} // namespace

int OEM_GetHostSystemName(char* name) {
    return readName("names:host", name);
}

int OEM_GetSPSystemName(char* name) {
    return readName("names:sp", name);
}
