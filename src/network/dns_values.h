// Values of DNS classes: options of DHCP, names and their lists, addresses of servers.
#pragma once

#include "platform/cim_dns.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace ph::dns {

// One of what may be of the DHCP lease.
struct Option {
    std::uint16_t dmtf; // DHCPOptionsToUse
    std::uint8_t bit;   // CIM_DNS_…_FROM_DHCP
};
std::span<const Option> options();

// Writes the DHCPOptionsToUse of these bits behind the values that a list has, ended by FFFFh.
void appendOptions(std::span<std::uint16_t> list, std::uint8_t fromDhcp);

// A host name is one label of at most 63 characters. Neither function takes an empty text.
bool isHostName(std::string_view name);
bool isDomainName(std::string_view name);

// Writes an array of heap strings, ended by nullptr, out of a list with blanks. Returns false when memory is short.
bool splitNames(std::span<char*> texts, const char* list);
bool writeServers(std::span<char*> texts, const CIM_DNSConfig& configuration, int ipVersion);

} // namespace ph::dns
