// The Name of an IP endpoint as its parts: "IPProtocolEndpoint1*Channel-1*eth0-4". Those of DHCP and DNS clients and of
// gateways and servers have the same form.
#pragma once

#include "network/lans.h"

#include <cstdint>
#include <optional>
#include <span>

namespace ph {

// Writes it; `kind` is what it begins with, `count` from 1.
void writeEndpointName(std::span<char> name, const char* kind, int count, const char* interfaceName,
                       int channel, int ipVersion);
inline constexpr const char* endpointNameFormat =
    "ClassName[Instance Count]*Channel-ChannelNumber*InterfaceName-IPVersion";

std::optional<std::uint8_t> channelOf(const char* endpointName);
// The version is '4' or '6'; a longer text gives nothing.
std::optional<char> ipVersionOf(const char* endpointName);
// "eth0-4"; empty for another text.
const char* interfaceAndVersionOf(const char* endpointName);

} // namespace ph
