// The DNS clients of the LANs.
#include "check_platform/probe.h"
#include "check_platform/rows.h"

#include <cstring>

namespace phctl::check {
namespace {

constexpr std::uint8_t ipv4 = 4, ipv6 = 6, configured = 0;

void getDnsConfig(Probe& probe) {
    for (const auto& lan : probe.lans())
        for (const std::uint8_t version : {ipv4, ipv6})
            for (const std::uint8_t inUse : {std::uint8_t{0}, std::uint8_t{1}}) {
                Out<CIM_DNSConfig> dns("the configuration");
                auto call = probe.call<decltype(CIM_GetDNSConfig)>(
                    lan.words + ", IPv" + std::to_string(version) + (inUse != 0 ? " in use" : ""),
                    probe.session(), dns, lan.channel, version, inUse, probe.timeout());
                if (!call)
                    continue;
                call.expect(dns->isSupported <= 1 && dns->registersAddress <= 1 &&
                                dns->registersWithDomain <= 1,
                            "a flag is neither 0 nor 1");
                call.expect(dns->fromDhcp <= 7, "fromDhcp has other bits");
                call.expect(dns->serverCount <= CIM_MAX_DNS_SERVERS, "there are more servers than room");
                call.expectText("hostName", dns->hostName);
                call.expectText("domainName", dns->domainName);
            }
}

// What it writes was there before.
void setDnsConfig(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        CIM_DNSConfig before{}, after{};
        const auto read = [&](CIM_DNSConfig& dns) {
            probe.use<decltype(CIM_GetDNSConfig)>("CIM_GetDNSConfig", probe.session(), &dns, lan.channel,
                                                  ipv4, configured, probe.timeout());
        };
        read(before);
        if (before.isSupported == 0)
            throw NotPossible("the BMC has no DNS settings");
        if (auto call =
                probe.call<decltype(CIM_SetDNSConfig)>(lan.words + ", the same settings", probe.session(),
                                                       &before, lan.channel, ipv4, probe.timeout())) {
            read(after);
            call.expect(std::memcmp(&before, &after, sizeof(before)) == 0,
                        "writing the settings that are there changes them");
        }
    }
}

void getDnsSearch(Probe& probe) {
    Out<CIM_DNSSearch> search("the settings");
    auto call = probe.call<decltype(CIM_GetDNSSearch)>("", probe.session(), search, probe.timeout());
    if (!call)
        return;
    call.expect(search->isSupported <= 1 && search->appendsPrimarySuffix <= 1 &&
                    search->appendsParentSuffixes <= 1,
                "a flag is neither 0 nor 1");
    call.expectText("suffixes", search->suffixes);
}

void setDnsSearch(Probe& probe) {
    CIM_DNSSearch search{};
    probe.use<decltype(CIM_GetDNSSearch)>("CIM_GetDNSSearch", probe.session(), &search, probe.timeout());
    if (search.isSupported == 0)
        throw NotPossible("the BMC has no DNS settings");
    probe.call<decltype(CIM_SetDNSSearch)>("the same settings", probe.session(), &search, probe.timeout());
}

constexpr Row dns[] = {
    {"CIM_GetDNSConfig", getDnsConfig},
    {"CIM_SetDNSConfig", setDnsConfig, true},
    {"CIM_GetDNSSearch", getDnsSearch},
    {"CIM_SetDNSSearch", setDnsSearch, true},
};

} // namespace

std::span<const Row> dnsRows() {
    return dns;
}

} // namespace phctl::check
