#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/debug_log.h"

#include <cstdio>

namespace {

constexpr std::size_t nameSize = 256;

// The vendor's name comes first; without one, a name is made from the device record.
int systemName(char* name, int (*vendorName)(char*), int deviceType, const char* format) {
    char given[nameSize] = "";
    if (vendorName(given) == 0 && given[0] != '\0') {
        std::snprintf(name, nameSize, "%s", given);
        return 0;
    }
    ph::Database database;
    const auto device =
        database.open() ? ph::record(db_get_device_bytype, database.get(), deviceType) : nullptr;
    if (device == nullptr) {
        ph::debugPrint("\nUnable to get Info from device table \n");
        return -1;
    }
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(name, nameSize, format, device->deviceId);
#pragma GCC diagnostic pop
    return 0;
}

} // namespace

int PH_GetHostSystemName(char* name) {
    return systemName(name, OEM_GetHostSystemName, SMASH_DEVICE_HOST, "Unknown.IPMI BMC DeviceID.%s");
}

int PH_GetSPSystemName(char* name) {
    return systemName(name, OEM_GetSPSystemName, SMASH_DEVICE_SP, "IPMI Controller %s");
}
