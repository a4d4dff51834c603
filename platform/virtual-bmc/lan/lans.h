// The LANs: channels, their LAN configuration parameters (IPMI 2.0 revision 1.1, 23.1, 23.2) and how they get
// their addresses.
#pragma once

#include "virtual-bmc/lan/lan_addresses.h"
#include "virtual-bmc/lan/lan_parameter.h"
#include "virtual-bmc/state/part.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vbmc {

constexpr std::uint8_t longestPrefix = 128; // of IPv6

struct Ipv4Setting {
    Ipv4Address address;
    Ipv4Address netmask;
    Ipv4Address gateway;

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct Ipv4 {
    std::uint8_t source = 1; // LAN parameter 4
    Ipv4Setting configured;
    Ipv4Setting lease; // what the DHCP server of this LAN gives

    void fields(Fields& fields);
    bool isDhcp() const { return source == 2; }
    const Ipv4Setting& used() const { return isDhcp() ? lease : configured; }
};

struct Ipv6Setting {
    bool isEnabled = false; // of a static address
    Ipv6Address address;
    std::uint8_t prefixLength = 64;

    void fields(Fields& fields);
};

struct DynamicIpv6 : Ipv6Setting {
    std::uint8_t source = 0; // LAN parameter 59: 1 SLAAC, 2 DHCPv6
};

struct Ipv6 {
    static constexpr std::uint8_t staticSets = 2;
    static constexpr std::uint8_t dynamicSets = 2;

    std::uint8_t enables = 2; // LAN parameter 51
    std::vector<Ipv6Setting> statics;
    std::uint8_t routerControl = 2; // LAN parameter 64
    Ipv6Address router;             // static router 1
    std::uint8_t routerPrefixLength = 0;
    std::optional<Ipv6Setting> advertised; // what this LAN's router lets one configure
    std::optional<Ipv6Setting> lease;      // what its DHCPv6 server gives
    Ipv6Address advertisedRouter;          // of this LAN

    void fields(Fields& fields);
    void check(const Place& place) const;
    // Returns the dynamic address of a set selector. The network assigns some while IPv6 and dynamic routers
    // are on.
    std::optional<DynamicIpv6> dynamic(std::uint8_t selector) const;
    bool isDynamic() const;
};

struct Lan {
    std::uint8_t channel = 0; // 1 to 11
    std::string name;         // of the interface, up to 15 characters
    MacAddress mac;
    std::uint8_t enable = 3; // 0 off, 1 IPv4, 2 IPv6, 3 both
    bool isLinkUp = true;
    std::uint16_t speed = 1000; // Mb/s
    bool isFullDuplex = true;
    bool autoNegotiates = true;
    bool isInVlan = false;
    std::uint16_t vlanId = 0;
    std::uint8_t vlanPriority = 0;
    Ipv4 ipv4;
    Ipv6 ipv6;
    bool isSetInProgress = false; // LAN parameter 0

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct Lans {
    std::vector<Lan> list; // the nth has LAN index n, from 1

    static constexpr const char* name = "lans";
    static std::span<const Command> commands();
    static std::span<const LanParameter> lanParameters();
    void check(const Place& place) const;
    Json describe(const State& state) const;

    Lan* find(std::uint8_t channel);
    const Lan* find(std::uint8_t channel) const;
    Lan& find(std::string_view interfaceName); // throws Error
};

} // namespace vbmc
