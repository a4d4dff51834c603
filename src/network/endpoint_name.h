// The Name of an IP endpoint as its parts: "IPProtocolEndpoint1*Channel-1*eth0-4".
#pragma once

#include <cstdint>
#include <optional>

namespace ph {

std::optional<std::uint8_t> channelOf(const char* endpointName);
// The version is '4' or '6'; a longer text gives nothing.
std::optional<char> ipVersionOf(const char* endpointName);

} // namespace ph
