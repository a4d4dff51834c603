// Images that the platform keeps for installation, as instances of CIM_SoftwareIdentity.
#pragma once

#include "platform/cim_firmware.h"

#include <cstddef>
#include <cstdio>

namespace ph {

// Writes the InstanceID.
template <std::size_t N>
void writeStoredId(const CIM_StoredFirmware& image, char (&instanceId)[N]) {
    constexpr int longest = sizeof image.name - 1;
    std::snprintf(instanceId, N, "IPMI:Image %.*s", longest, image.name);
}

} // namespace ph
