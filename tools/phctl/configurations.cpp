#include "configurations.h"

#include "errors.h"
#include "names.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace phctl {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestName = 64;

// No name leaves the folder, is hidden in it or looks like an option.
bool isName(const std::string& name) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    return !name.empty() && name.size() <= longestName &&
           letters.find(name.front()) != std::string_view::npos &&
           name.find_first_not_of(std::string(letters) + ".-") == std::string::npos;
}

const char* folderOf(const char* variable) {
    const char* value = secure_getenv(variable);
    return value != nullptr && *value == '/' ? value : nullptr;
}

[[noreturn]] void refuseUnknown(const std::string& name) {
    const auto known = configurations();
    throw UsageError("--bmc: there is no configuration " + name + didYouMean(name, known) +
                     (known.empty() ? "" : "; there are: " + joined(known)) + " (`phctl --bmc " + name +
                     " sync` with the BMC's options, or `phctl --bmc " + name +
                     " bmc create MODEL`, makes it)");
}

void makeFolder(const fs::path& folder) {
    if (mkdir(folder.c_str(), S_IRWXU) != 0)
        throw Failure(folder.string() + ": " + std::strerror(errno));
}

} // namespace

fs::path configurationsFolder() {
    if (const char* state = folderOf("XDG_STATE_HOME"))
        return fs::path(state) / "provider-helper";
    if (const char* home = folderOf("HOME"))
        return fs::path(home) / ".local/state/provider-helper";
    throw UsageError("configurations need XDG_STATE_HOME or HOME to name a folder");
}

std::vector<std::string> configurations() {
    std::vector<std::string> names;
    std::error_code error; // no folder: no configurations
    for (const fs::directory_entry& entry : fs::directory_iterator(configurationsFolder(), error))
        if (const std::string name = entry.path().filename(); entry.is_directory() && isName(name))
            names.push_back(name);
    std::ranges::sort(names);
    return names;
}

Configuration::Configuration(const std::optional<std::string>& name, bool mayBeNew) {
    if (!name)
        return;
    if (!isName(*name))
        throw UsageError("--bmc: \"" + *name + "\" is no name: letters, digits, dots and dashes, at most " +
                         std::to_string(longestName));
    const fs::path folder = configurationsFolder() / *name;
    if (!fs::is_directory(folder)) {
        if (!mayBeNew)
            refuseUnknown(*name);
        create_directories(folder.parent_path());
        makeFolder(folder);
        newFolder_ = folder;
    }
    setenv("PH_SYSROOT", folder.c_str(), 1);
}

Configuration::~Configuration() {
    std::error_code error;
    if (!newFolder_.empty() && !fs::exists(newFolder_ / "conf/smash.db", error))
        fs::remove_all(newFolder_, error);
}

} // namespace phctl
