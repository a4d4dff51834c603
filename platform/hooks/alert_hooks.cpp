// Alert destinations of LANs, in standard IPMI.
#include "hooks/lan_parameters.h"
#include "hooks/session.h"

#include <algorithm>
#include <cstring>

namespace {

using hooks::LanParameters;
namespace lan = ipmi::lan;
namespace parameter = ipmi::lan::parameter;

// Parameter 19 of either format.
struct Address {
    std::uint8_t bytes[18] = {}; // set selector, format, then 11 bytes for IPv4 or 16 for IPv6

    bool isIpv6() const { return bytes[1] >> 4 == lan::destinationIpv6; }
};

Address readAddress(const LanParameters& bmc, std::uint8_t selector) {
    Address address;
    bmc.readSet(parameter::destinationAddress, selector,
                std::span(address.bytes).first(sizeof(CIM_LANDestinationAddress)));
    if (address.isIpv6())
        bmc.readSet(parameter::destinationAddress, selector, address.bytes);
    return address;
}

CIM_LANDestinationAddress readIpv4(const LanParameters& bmc, std::uint8_t selector) {
    CIM_LANDestinationAddress destination{};
    const Address address = readAddress(bmc, selector);
    if (!address.isIpv6())
        std::memcpy(&destination, address.bytes, sizeof destination);
    return destination;
}

} // namespace

int CIM_GetLANDestinationType_AddrTable(IPMI20_SESSION_T* session, CIM_LANDestinationType* types,
                                        CIM_LANDestinationAddress* addresses, uint8_t* count, uint8_t channel,
                                        int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(types != nullptr && addresses != nullptr && count != nullptr);
        constexpr std::uint8_t countMask = 0x0F;
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        const std::uint8_t destinations = bmc.readByte(parameter::destinationCount) & countMask;
        for (std::uint8_t selector = 1; selector <= destinations; ++selector) {
            std::uint8_t type[sizeof(CIM_LANDestinationType)];
            const bool isPresent = bmc.readSetIfPresent(parameter::destinationType, selector, type);
            std::memcpy(&types[selector - 1], type, sizeof type);
            addresses[selector - 1] = isPresent ? readIpv4(bmc, selector) : CIM_LANDestinationAddress{};
        }
        *count = destinations;
    });
}

int CIM_SetLANDestinationType(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector, uint8_t type,
                              int timeout) {
    return hooks::guarded(__func__, [&] {
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        std::uint8_t value[sizeof(CIM_LANDestinationType)];
        bmc.readSet(parameter::destinationType, selector, value);
        value[1] = static_cast<std::uint8_t>((value[1] & ~lan::destinationTypeMask) |
                                             (type & lan::destinationTypeMask));
        bmc.write(parameter::destinationType, value);
    });
}

int CIM_SetLANDestinationAddress(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector, uint8_t format,
                                 const uint8_t* address, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(address != nullptr);
        std::uint8_t value[sizeof(CIM_LANDestinationAddress)] = {selector,
                                                                 static_cast<std::uint8_t>(format << 4)};
        std::copy_n(address, sizeof(CIM_LANDestinationAddress::address),
                    value + offsetof(CIM_LANDestinationAddress, address));
        LanParameters(hooks::sessionOf(session, timeout), channel)
            .write(parameter::destinationAddress, value);
    });
}

int CIM_GetLANDestinationV6Address(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector,
                                   CIM_LANDestinationV6Address* address, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(address != nullptr);
        const Address read = readAddress({hooks::sessionOf(session, timeout), channel}, selector);
        *address = {};
        if (read.isIpv6()) {
            address->isUsed = 1;
            address->format = lan::destinationIpv6;
            std::copy_n(read.bytes + 2, sizeof address->address, address->address);
        }
    });
}

int CIM_SetLANDestinationV6Address(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector,
                                   uint8_t format, const uint8_t* address, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(address != nullptr);
        constexpr std::size_t size = sizeof(CIM_LANDestinationV6Address::address);
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        Address value;
        value.bytes[0] = selector;
        value.bytes[1] = static_cast<std::uint8_t>(format << 4);
        std::copy_n(address, size, value.bytes + 2);
        const bool isClear =
            std::all_of(address, address + size, [](std::uint8_t byte) { return byte == 0; });
        if (!isClear || readAddress(bmc, selector).isIpv6())
            bmc.write(parameter::destinationAddress, value.bytes);
    });
}
