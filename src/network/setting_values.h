// What a CIM_StaticIPAssignmentSettingData instance holds, as the broker hands it over.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cstdint>
#include <optional>

namespace ph {

// Returns "" where there is no such text, which belongs to the instance.
const char* textProperty(const CMPIInstance* instance, const char* name);
// Reads IPv6SubnetPrefixLength, in bits; nothing where it is no prefix length.
std::optional<std::uint8_t> prefixLengthProperty(const CMPIInstance* instance);

} // namespace ph
