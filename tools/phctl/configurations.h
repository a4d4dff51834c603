// Named configurations: one user's BMCs, each with a folder that stands for its machine's root.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace phctl {

// ${XDG_STATE_HOME:-~/.local/state}/provider-helper. Throws UsageError when the environment names neither.
std::filesystem::path configurationsFolder();
// The names of those that exist, sorted.
std::vector<std::string> configurations();

// Makes the configuration's folder this process's PH_SYSROOT. To be made before anything is read.
class Configuration {
public:
    // Without a name it does nothing. Throws UsageError for a name that is none, and for one that does not exist,
    // unless it `mayBeNew`: then its folder is made, for its owner alone as it will hold a password.
    Configuration(const std::optional<std::string>& name, bool mayBeNew);
    // Removes a new folder that got no database.
    ~Configuration();
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

private:
    std::filesystem::path newFolder_;
};

} // namespace phctl
