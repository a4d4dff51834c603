// Parameters of the LAN configuration commands (IPMI 2.0 revision 1.1, 23.1, 23.2, table
// 23-4).
#pragma once

#include <cstdint>

namespace ipmi::lan {

inline constexpr std::uint8_t parameterRevision = 0x11;

namespace parameter {
inline constexpr std::uint8_t setInProgress = 0;
inline constexpr std::uint8_t ipv4Address = 3;
inline constexpr std::uint8_t ipv4Source = 4;
inline constexpr std::uint8_t macAddress = 5;
inline constexpr std::uint8_t subnetMask = 6;
inline constexpr std::uint8_t defaultGateway = 12;
inline constexpr std::uint8_t destinationCount = 17;
inline constexpr std::uint8_t destinationType = 18;
inline constexpr std::uint8_t destinationAddress = 19;
inline constexpr std::uint8_t vlanId = 20;
inline constexpr std::uint8_t vlanPriority = 21;
inline constexpr std::uint8_t ipv6Support = 50;
inline constexpr std::uint8_t ipv6Enables = 51;
inline constexpr std::uint8_t ipv6Status = 55;
inline constexpr std::uint8_t ipv6StaticAddresses = 56;
inline constexpr std::uint8_t ipv6DynamicAddresses = 59;
inline constexpr std::uint8_t ipv6RouterControl = 64;
inline constexpr std::uint8_t ipv6StaticRouter1 = 65;
inline constexpr std::uint8_t ipv6StaticRouter1PrefixLength = 67;
inline constexpr std::uint8_t ipv6StaticRouter2 = 69;
inline constexpr std::uint8_t ipv6DynamicRouterCount = 73;
inline constexpr std::uint8_t ipv6DynamicRouters = 74;
} // namespace parameter

// Parameter 4.
inline constexpr std::uint8_t sourceStatic = 1;
inline constexpr std::uint8_t sourceDhcp = 2;

// Parameter 18: set selector, type, time-out, retries.
inline constexpr std::uint8_t destinationTypeMask = 0x07;
inline constexpr std::uint8_t petTrap = 0;
inline constexpr std::uint8_t email = 6;    // OEM 1
inline constexpr std::uint8_t listener = 7; // OEM 2: a CIM-XML listener

// Parameter 19: set selector, address format (high nibble), then for IPv4 gateway, address (4) and MAC
// address (6), for IPv6 the address (16).
inline constexpr std::uint8_t destinationIpv4 = 0;
inline constexpr std::uint8_t destinationIpv6 = 1;

// Parameter 51.
inline constexpr std::uint8_t ipv6Disabled = 0;
inline constexpr std::uint8_t ipv6Only = 1;
inline constexpr std::uint8_t ipv6AndIpv4 = 2;

// Parameters 56 and 59: set selector, source, address (16), prefix length, status.
inline constexpr std::uint8_t addressEnabled = 0x80; // of a static address, in the source byte
inline constexpr std::uint8_t sourceMask = 0x0F;     // 0 static, 1 SLAAC, 2 DHCPv6
inline constexpr std::uint8_t statusActive = 0;
inline constexpr std::uint8_t statusDisabled = 1;

// Parameter 64.
inline constexpr std::uint8_t staticRouters = 0x01;
inline constexpr std::uint8_t dynamicRouters = 0x02;

// Completion codes of these commands (tables 23-2 and 23-3).
inline constexpr std::uint8_t parameterNotSupported = 0x80;
inline constexpr std::uint8_t parameterIsReadOnly = 0x82;
inline constexpr std::uint8_t parameterIsWriteOnly = 0x83;

} // namespace ipmi::lan

namespace ipmi::channel {

// These are values of Get Channel Info (IPMI 2.0, 22.24).
inline constexpr std::uint8_t mediumLan = 0x04;
inline constexpr std::uint8_t protocolIpmb = 0x01;
inline constexpr std::uint8_t last = 11; // of those that media are assigned to
inline constexpr std::uint8_t present = 0x0E;

} // namespace ipmi::channel
