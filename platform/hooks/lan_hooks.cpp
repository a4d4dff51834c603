// LAN channels and their IPv4 configuration.
#include "hooks/lan_parameters.h"
#include "hooks/session.h"

#include <stdexcept>

static_assert(sizeof(CIM_IPv4NetworkCfg) == 13, "layout shared with the library");

namespace {

using hooks::LanParameters;
namespace parameter = ipmi::lan::parameter;

constexpr std::size_t macSize = 6;
constexpr std::size_t ipv4Size = 4;

int readMac(const char* hook, const IPMI20_SESSION_T* session, int timeout, std::uint8_t* mac,
            std::uint8_t channel) {
    return hooks::guarded(hook, [&] {
        hooks::require(mac != nullptr);
        LanParameters(hooks::sessionOf(session, timeout), channel)
            .read(parameter::macAddress, std::span(mac, macSize));
    });
}

int writeIpv4(const char* hook, const IPMI20_SESSION_T* session, int timeout, std::uint8_t channel,
              std::uint8_t number, const std::uint8_t* address) {
    return hooks::guarded(hook, [&] {
        hooks::require(address != nullptr);
        LanParameters(hooks::sessionOf(session, timeout), channel)
            .write(number, std::span(address, ipv4Size));
    });
}

} // namespace

int CIM_GetLANCount(IPMI20_SESSION_T* session, uint8_t* count, uint8_t* lanIndices, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(count != nullptr && lanIndices != nullptr);
        auto& bmc = hooks::sessionOf(session, timeout);
        *count = static_cast<uint8_t>(bmc.lanChannels().size());
        for (std::uint8_t i = 0; i < *count; ++i)
            lanIndices[i] = static_cast<uint8_t>(i + 1);
    });
}

int CIM_GetChannelNum(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t* channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(channel != nullptr);
        const auto& channels = hooks::sessionOf(session, timeout).lanChannels();
        if (lanIndex == 0 || channels.size() < lanIndex)
            throw std::out_of_range("the BMC has no LAN " + std::to_string(lanIndex));
        *channel = channels[lanIndex - 1U];
    });
}

int CIM_Get_MACAddress(IPMI20_SESSION_T* session, uint8_t* mac, uint8_t channel, int timeout) {
    return readMac(__func__, session, timeout, mac, channel);
}

int LIBIPMI_HL_GetMACAddress(IPMI20_SESSION_T* session, uint8_t* mac, uint8_t channel, int timeout) {
    return readMac(__func__, session, timeout, mac, channel);
}

int CIM_GetVlanStatus(IPMI20_SESSION_T* session, uint8_t* enabled, uint16_t* vlanId, uint8_t* priority,
                      uint8_t channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(enabled != nullptr && vlanId != nullptr && priority != nullptr);
        const LanParameters lan(hooks::sessionOf(session, timeout), channel);
        std::uint8_t id[2] = {}; // 12 bits, and bit 15: enabled
        lan.readIfPresent(parameter::vlanId, id);
        lan.readIfPresent(parameter::vlanPriority, std::span(priority, 1));
        *enabled = id[1] >> 7;
        *vlanId = static_cast<uint16_t>(id[0] | (id[1] & 0x0F) << 8);
        *priority &= 0x07;
    });
}

int CIM_GetIPv4NetworkCfg(IPMI20_SESSION_T* session, CIM_IPv4NetworkCfg* configuration, uint8_t channel,
                          int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(configuration != nullptr);
        const LanParameters lan(hooks::sessionOf(session, timeout), channel);
        // IPMI has no names for the sources beyond "other".
        configuration->source =
            std::min<std::uint8_t>(lan.readByte(parameter::ipv4Source) & 0x0F, CIM_ADDRESS_SOURCE_OTHER);
        lan.read(parameter::ipv4Address, configuration->address);
        lan.read(parameter::subnetMask, configuration->netmask);
        lan.read(parameter::defaultGateway, configuration->gateway);
    });
}

int CIM_SetIPv4Source(IPMI20_SESSION_T* session, uint8_t source, uint8_t channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        LanParameters(hooks::sessionOf(session, timeout), channel).writeByte(parameter::ipv4Source, source);
    });
}

int CIM_SetIPv4Address(IPMI20_SESSION_T* session, const uint8_t* address, uint8_t channel, int timeout) {
    return writeIpv4(__func__, session, timeout, channel, parameter::ipv4Address, address);
}

int CIM_SetIPv4NetMask(IPMI20_SESSION_T* session, const uint8_t* netmask, uint8_t channel, int timeout) {
    return writeIpv4(__func__, session, timeout, channel, parameter::subnetMask, netmask);
}

int CIM_SetIPv4Gateway(IPMI20_SESSION_T* session, const uint8_t* gateway, uint8_t channel, int timeout) {
    return writeIpv4(__func__, session, timeout, channel, parameter::defaultGateway, gateway);
}
