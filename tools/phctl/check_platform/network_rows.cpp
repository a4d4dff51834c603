// LANs: channels, addresses, interfaces, and the alert destinations of each.
#include "check_platform/probe.h"
#include "check_platform/rows.h"

#include <algorithm>
#include <cstring>

namespace phctl::check {
namespace {

void getLanCount(Probe& probe) {
    Out<std::uint8_t> count("the count");
    OutArray<std::uint8_t> indices("the LAN indices", CIM_MAX_LANS);
    auto call = probe.call<decltype(CIM_GetLANCount)>("", probe.session(), count, indices, probe.timeout());
    if (!call)
        return;
    call.expect(*count <= CIM_MAX_LANS, "there are more LANs than channels");
    const std::size_t listed = std::min<std::size_t>(*count, CIM_MAX_LANS);
    for (std::size_t i = 0; i < listed; ++i)
        call.expect(std::count(&indices[0], &indices[0] + listed, indices[i]) == 1,
                    "two LANs have the same index");
}

void getChannel(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<std::uint8_t> channel("the channel");
        if (auto call = probe.call<decltype(CIM_GetChannelNum)>(
                "LAN " + std::to_string(lan.index), probe.session(), lan.index, channel, probe.timeout()))
            call.expect(*channel >= 1 && *channel <= CIM_MAX_LANS, "the channel is none of a LAN");
    }
    constexpr std::uint8_t none = 0xEE;
    Out<std::uint8_t> channel("the channel");
    probe
        .call<decltype(CIM_GetChannelNum)>("a LAN that is not listed", probe.session(), none, channel,
                                           probe.timeout())
        .expectFailure("a LAN that is not listed");
}

// Two names of one function.
void getMac(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        OutArray<std::uint8_t> mac("the MAC address", 6, true);
        probe.call<decltype(CIM_Get_MACAddress)>(lan.words, probe.session(), mac, lan.channel,
                                                 probe.timeout());
    }
}

void getVlan(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<std::uint8_t> enabled("enabled");
        Out<std::uint16_t> id("the VLAN's ID");
        Out<std::uint8_t> priority("the priority");
        if (auto call = probe.call<decltype(CIM_GetVlanStatus)>(lan.words, probe.session(), enabled, id,
                                                                priority, lan.channel, probe.timeout())) {
            call.expect(*enabled <= 1, "enabled is neither 0 nor 1");
            call.expect(*id <= 0x0FFF, "the VLAN's ID has more than 12 bits");
            call.expect(*priority <= 7, "the priority is above 7");
        }
    }
}

void getIpv4(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<CIM_IPv4NetworkCfg> configuration("the configuration");
        if (auto call = probe.call<decltype(CIM_GetIPv4NetworkCfg)>(lan.words, probe.session(), configuration,
                                                                    lan.channel, probe.timeout()))
            call.expect(configuration->source <= CIM_ADDRESS_SOURCE_OTHER, "the source is none");
    }
}

void getIpv6(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<CIM_IPv6NetworkCfg> configuration("the configuration");
        if (auto call = probe.call<decltype(CIM_GetIPv6NetworkCfg)>(lan.words, probe.session(), configuration,
                                                                    lan.channel, probe.timeout())) {
            call.expect(configuration->source == CIM_ADDRESS_SOURCE_STATIC ||
                            configuration->source == CIM_ADDRESS_SOURCE_DYNAMIC,
                        "the source is neither static nor dynamic");
            call.expect(configuration->prefixLength <= 128, "the prefix is longer than an address");
        }
    }
}

void getIpv6Addresses(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<CIM_IPv6Addresses> list("the addresses");
        auto call = probe.call<decltype(CIM_GetAllIPv6Addresses)>(lan.words, probe.session(), list,
                                                                  lan.channel, probe.timeout());
        if (!call)
            continue;
        call.expect(list->count <= CIM_MAX_IPV6_ADDRESSES, "there are more addresses than room");
        for (int i = 0; i < std::min<int>(list->count, CIM_MAX_IPV6_ADDRESSES); ++i) {
            call.expect(list->addresses[i].prefixLength <= 128, "a prefix is longer than an address");
            call.expect(list->addresses[i].origin <= 2, "an origin is none");
        }
    }
}

void getIpv6Routers(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<CIM_IPv6Routers> routers("the routers");
        if (auto call = probe.call<decltype(CIM_GetIPv6Routers)>(lan.words, probe.session(), routers,
                                                                 lan.channel, probe.timeout()))
            call.expect(routers->count <= CIM_MAX_IPV6_ROUTERS, "there are more routers than room");
    }
}

// The name becomes part of keys and of a file's name.
void getInterfaceName(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        OutText name("the name", CIM_INTERFACE_NAME_SIZE);
        if (auto call = probe.call<decltype(CIM_GetLANIndex)>(lan.words, probe.session(), lan.index, name,
                                                              probe.timeout())) {
            const std::string_view text(name, strnlen(name, CIM_INTERFACE_NAME_SIZE));
            call.expect(!text.empty(), "the name is empty");
            call.expect(text.find_first_of(" /") == std::string::npos, "the name has a blank or '/'");
        }
    }
}

void getLanEnable(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<std::uint8_t> enable("the state");
        if (auto call = probe.call<decltype(CIM_GetLANEnable)>(lan.words, probe.session(), lan.index, enable,
                                                               probe.timeout()))
            call.expect(*enable <= CIM_LAN_BOTH, "the state is none");
    }
}

void isBondEnabled(Probe& probe) {
    Out<CIM_BondInfo> info("the bond");
    if (auto call = probe.call<decltype(CIM_IsBondEnabled)>("", probe.session(), info, probe.timeout()))
        call.expect(info->enabled <= 1, "enabled is neither 0 nor 1");
}

void getBond(Probe& probe) {
    Out<CIM_BondConfig> configuration("the configuration");
    if (auto call =
            probe.call<decltype(CIM_GetBondEnable)>("", probe.session(), configuration, probe.timeout())) {
        call.expect(configuration->enabled <= 1, "enabled is neither 0 nor 1");
        call.expect(configuration->mode <= 6, "the mode is none of Linux's");
    }
}

void getPhy(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<std::uint32_t> phy("the PHY");
        probe.call<decltype(CIM_GetPHYConfig)>(lan.words, probe.session(), lan.channel, phy, probe.timeout());
    }
}

void getEthernet(Probe& probe) {
    Out<CIM_NWExtEthCfg> configuration("the settings");
    Out<std::uint8_t> isDefault("isDefault");
    if (auto call = probe.call<decltype(CIM_GetNWExtEthCfg)>("", configuration, isDefault)) {
        call.expect(configuration->duplex == 1 || configuration->duplex == 2, "duplex is neither 1 nor 2");
        call.expect(configuration->autoNegotiation == 1 || configuration->autoNegotiation == 2,
                    "autoNegotiation is neither 1 nor 2");
        call.expect(*isDefault <= 1, "isDefault is neither 0 nor 1");
    }
}

// ---- Alert destinations

struct Destinations {
    CIM_LANDestinationType types[CIM_MAX_LAN_DESTINATIONS];
    CIM_LANDestinationAddress addresses[CIM_MAX_LAN_DESTINATIONS];
    std::uint8_t count = 0;
};

Destinations readDestinations(Probe& probe, std::uint8_t channel) {
    Destinations read{};
    probe.use<decltype(CIM_GetLANDestinationType_AddrTable)>("CIM_GetLANDestinationType_AddrTable",
                                                             probe.session(), read.types, read.addresses,
                                                             &read.count, channel, probe.timeout());
    if (read.count == 0 || read.count > CIM_MAX_LAN_DESTINATIONS)
        throw NotPossible("the channel has no alert destinations");
    return read;
}

void getDestinations(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        OutArray<CIM_LANDestinationType> types("the types", CIM_MAX_LAN_DESTINATIONS);
        OutArray<CIM_LANDestinationAddress> addresses("the addresses", CIM_MAX_LAN_DESTINATIONS);
        Out<std::uint8_t> count("the count");
        auto call = probe.call<decltype(CIM_GetLANDestinationType_AddrTable)>(
            lan.words, probe.session(), types, addresses, count, lan.channel, probe.timeout());
        if (!call)
            continue;
        call.expect(*count <= CIM_MAX_LAN_DESTINATIONS, "there are more destinations than room");
        for (std::uint8_t i = 0; i < std::min<std::uint8_t>(*count, CIM_MAX_LAN_DESTINATIONS); ++i) {
            call.expect(types[i].selector == 0 || types[i].selector == i + 1,
                        "a type stands at another place than its selector's");
            call.expect(addresses[i].selector == 0 || addresses[i].selector == i + 1,
                        "an address stands at another place than its selector's");
        }
    }
}

void getV6Destination(Probe& probe) {
    for (const auto& lan : probe.lans())
        for (std::uint8_t selector = 1; selector <= readDestinations(probe, lan.channel).count; ++selector) {
            Out<CIM_LANDestinationV6Address> address("the address");
            if (auto call = probe.call<decltype(CIM_GetLANDestinationV6Address)>(
                    lan.words + ", destination " + std::to_string(selector), probe.session(), lan.channel,
                    selector, address, probe.timeout()))
                call.expect(address->isUsed <= 1, "isUsed is neither 0 nor 1");
        }
}

// What it writes was there before.
void setDestinationType(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        const auto before = readDestinations(probe, lan.channel);
        const std::uint8_t selector = before.count; // the last is the least likely to be in use
        const std::uint8_t type = before.types[selector - 1].type & 0x07;
        if (auto call = probe.call<decltype(CIM_SetLANDestinationType)>(
                lan.words + ", the same type", probe.session(), lan.channel, selector, type, probe.timeout()))
            call.expect(readDestinations(probe, lan.channel).types[selector - 1].type ==
                            before.types[selector - 1].type,
                        "writing the type that is there changes the destination");
    }
}

constexpr const char* cutsConnections = "it would cut connections to the BMC";
constexpr const char* changesAlerts = "it would send alerts elsewhere";

constexpr Row network[] = {
    {"CIM_GetLANCount", getLanCount},
    {"CIM_GetChannelNum", getChannel},
    {"CIM_GetLANIndex", getInterfaceName},
    {"CIM_Get_MACAddress", getMac},
    {"LIBIPMI_HL_GetMACAddress", getMac},
    {"CIM_GetVlanStatus", getVlan},
    {"CIM_GetIPv4NetworkCfg", getIpv4},
    {"CIM_SetIPv4Source", nullptr, true, cutsConnections},
    {"CIM_SetIPv4Address", nullptr, true, cutsConnections},
    {"CIM_SetIPv4NetMask", nullptr, true, cutsConnections},
    {"CIM_SetIPv4Gateway", nullptr, true, cutsConnections},
    {"CIM_GetIPv6NetworkCfg", getIpv6},
    {"CIM_GetAllIPv6Addresses", getIpv6Addresses},
    {"CIM_GetIPv6Routers", getIpv6Routers},
    {"CIM_SetIPv6Source", nullptr, true, cutsConnections},
    {"CIM_SetIPv6Address", nullptr, true, cutsConnections},
    {"CIM_SetIPv6Prefix", nullptr, true, cutsConnections},
    {"CIM_SetIPv6Gateway", nullptr, true, cutsConnections},
    {"CIM_GetLANEnable", getLanEnable},
    {"LIBIPMI_HL_GetLANEnable", getLanEnable},
    {"CIM_SetLANEnable", nullptr, true, cutsConnections},
    {"CIM_IsBondEnabled", isBondEnabled},
    {"CIM_GetBondEnable", getBond},
    {"CIM_SetBondEnable", nullptr, true, cutsConnections},
    {"CIM_GetPHYConfig", getPhy},
    {"CIM_GetNWExtEthCfg", getEthernet},
};
constexpr Row alerts[] = {
    {"CIM_GetLANDestinationType_AddrTable", getDestinations},
    {"CIM_SetLANDestinationType", setDestinationType, true},
    {"CIM_SetLANDestinationAddress", nullptr, true, changesAlerts},
    {"CIM_GetLANDestinationV6Address", getV6Destination},
    {"CIM_SetLANDestinationV6Address", nullptr, true, changesAlerts},
};

} // namespace

std::span<const Row> networkRows() {
    return network;
}

std::span<const Row> alertRows() {
    return alerts;
}

} // namespace phctl::check
