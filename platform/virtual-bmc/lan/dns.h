// The DNS clients (docs/oem-commands.md, "DNS"): one for each IP version of a LAN.
#pragma once

#include "virtual-bmc/state/part.h"
#include "virtual-bmc/state/pending_blocks.h"

#include <array>
#include <string>
#include <vector>

namespace vbmc {

struct DnsServer {
    std::uint8_t ipVersion = 4;
    std::array<std::uint8_t, 16> bytes = {}; // of an IPv4 address the first four

    bool operator==(const DnsServer&) const = default;
    void fromJson(const Json& json, const Place& place); // "192.0.2.53", "2001:db8::53"
    Json toJson() const;
};

struct DnsNames {
    std::string hostName;
    std::string domainName;
    std::vector<DnsServer> servers;

    void fields(Fields& fields);
    bool isValid(std::uint8_t ipVersion) const;
};

struct DnsClient {
    std::uint8_t channel = 0;
    std::uint8_t ipVersion = 4;
    DnsNames configured;
    DnsNames lease; // what the DHCP server of this LAN gives
    bool takesServers = true, takesHostName = false, takesDomainName = true; // of the lease
    bool registersAddress = false;
    bool registersWithDomain = false;

    void fields(Fields& fields);
    void check(const Place& place) const;
    DnsNames used(const State& state) const;
};

struct Dns {
    std::vector<DnsClient> clients;
    bool appendsPrimarySuffix = true;
    bool appendsParentSuffixes = false;
    std::vector<std::string> suffixes;
    PendingBlocks pending; // settings

    static constexpr const char* name = "dns";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;

    DnsClient get(std::uint8_t channel, std::uint8_t ipVersion) const; // as it is or would be
    DnsClient& edit(std::uint8_t channel, std::uint8_t ipVersion);
};

} // namespace vbmc
