// What a CIM_StaticIPAssignmentSettingData instance holds, as the broker hands it over.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cstdint>
#include <optional>

namespace ph {

// "" where there is none. The text belongs to the instance.
const char* textProperty(const CMPIInstance* instance, const char* name);
// IPv6SubnetPrefixLength in bits; none where it is no prefix length.
std::optional<std::uint8_t> prefixLengthProperty(const CMPIInstance* instance);

} // namespace ph
