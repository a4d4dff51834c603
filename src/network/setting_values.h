// What a CIM_StaticIPAssignmentSettingData instance holds, as the broker hands it over.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cstdint>

namespace ph {

// "" where there is none. The text belongs to the instance.
const char* textProperty(const CMPIInstance* instance, const char* name);
// IPv6SubnetPrefixLength; one that is no prefix length reads 255, which the BMC refuses.
std::uint8_t prefixLengthProperty(const CMPIInstance* instance);

} // namespace ph
