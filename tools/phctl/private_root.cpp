#include "private_root.h"

#include "database.h"
#include "errors.h"

#include <cstdlib>
#include <filesystem>

namespace phctl {
namespace {

namespace fs = std::filesystem;

// A link to "/" is not a private root.
bool isPrivate(const char* root) {
    std::error_code error;
    return root != nullptr && *root != '\0' && !fs::equivalent(root, "/", error);
}

// The firmware of hosts leaves its tables (SMBIOS) to their kernel; BMCs start without such firmware.
bool isHostMachine() {
    std::error_code error;
    return fs::exists("/sys/class/dmi/id", error);
}

} // namespace

std::string whyNotHere(const ipmi::SessionSettings& settings, const char* root, bool isHost) {
    const bool isElsewhere = settings.interfaceType != ipmi::SessionSettings::LocalDevice || isHost;
    if (!isElsewhere || isPrivate(root))
        return {};
    return describe(settings) +
           " is another machine than this one, whose commands would be run and whose /conf would be written: "
           "give that BMC a configuration of its own (`phctl --bmc NAME sync` with its options), or set "
           "PH_SYSROOT to "
           "a folder for it, and run `phctl sync` under it";
}

void requirePrivateRoot(const ipmi::SessionSettings& settings) {
    if (const std::string reason = whyNotHere(settings, secure_getenv("PH_SYSROOT"), isHostMachine());
        !reason.empty())
        throw Failure(reason);
}

} // namespace phctl
