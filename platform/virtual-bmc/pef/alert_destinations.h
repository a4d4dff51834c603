// Alert destinations of the LANs: LAN configuration parameters 17, 18 and 19 (IPMI 2.0 revision 1.1, table
// 23-4), and whom those of the e-mail kind mail (mail.h).
#pragma once

#include "virtual-bmc/lan/lan_addresses.h"
#include "virtual-bmc/lan/lan_parameter.h"

#include <string>
#include <vector>

namespace vbmc {

// A destination that a client has written.
struct AlertDestination {
    std::uint8_t channel = 0;
    std::uint8_t selector = 0; // 0 to 15; 0 is the volatile one
    std::uint8_t kind = 0;     // type of parameter 18: 0 trap, 6 e-mail, 7 CIM-XML listener
    bool isAcknowledged = false;
    std::uint8_t timeout = 0; // seconds
    std::uint8_t retries = 0;
    bool isIpv6 = false;
    bool usesBackupGateway = false;
    Ipv4Address ipv4;
    MacAddress mac;
    Ipv6Address ipv6;
    std::uint8_t userId = 0; // whom to mail
    std::string subject;
    std::string message;

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct AlertDestinations {
    static constexpr std::uint8_t slots = 15; // of each LAN, without the volatile one

    std::vector<AlertDestination> list;

    static constexpr const char* name = "alertDestinations";
    static std::span<const Command> commands() { return {}; }
    static std::span<const LanParameter> lanParameters();
    void check(const Place& place) const;
    Json describe(const State& state) const;

    AlertDestination get(std::uint8_t channel, std::uint8_t selector) const; // as it is or would be
    AlertDestination& edit(std::uint8_t channel, std::uint8_t selector);
};

const char* destinationKindName(std::uint8_t kind); // null for one that has no name

} // namespace vbmc
