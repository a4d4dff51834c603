// CIM_ListenerDestinationSNMP: alert destinations of the trap kind, which send platform event traps to an
// address.
#include "indications/lan_destination.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>

constexpr const char* const g_ListenerDestinationSNMPKeyList[4] = {"SystemCreationClassName",
                                                                   "CreationClassName", "SystemName", "Name"};

namespace ph::listener_destination_snmp {
namespace {

using namespace indications;
using Record = ListenerDestinationRecord;

constexpr const char* noIpv4 = "0.0.0.0";
constexpr const char* noIpv6 = "::";

enum : std::uint8_t { ipv4Format = 0, ipv6Format = 1 };

bool setIpv4(IpmiSession& session, const LanDestinationName& name, const std::uint8_t (&address)[4]) {
    return CIM_SetLANDestinationAddress(session.get(), name.channel, name.selector, ipv4Format, address,
                                        hookTimeout) == 0;
}

bool setIpv6(IpmiSession& session, const LanDestinationName& name, const std::uint8_t (&address)[16]) {
    return CIM_SetLANDestinationV6Address(session.get(), name.channel, name.selector, ipv6Format, address,
                                          hookTimeout) == 0;
}

bool readIpv6(IpmiSession& session, std::uint8_t channel, std::uint8_t selector,
              CIM_LANDestinationV6Address& address) {
    return CIM_GetLANDestinationV6Address(session.get(), channel, selector, &address, hookTimeout) == 0;
}

template <std::size_t N>
bool isSet(const std::uint8_t (&address)[N]) {
    return std::any_of(address, address + N, [](std::uint8_t byte) { return byte != 0; });
}

std::optional<bool> describe(IpmiSession& session, std::uint8_t channel, std::uint8_t selector,
                             const CIM_LANDestinationAddress& address, char* text) {
    constexpr socklen_t size = sizeof(Record::Destination);
    if (address.selector != 0)
        return inet_ntop(AF_INET, address.address, text, size) != nullptr && std::strcmp(text, noIpv4) != 0;
    CIM_LANDestinationV6Address ipv6{};
    if (!readIpv6(session, channel, selector, ipv6))
        return std::nullopt;
    return ipv6.isUsed != 0 && inet_ntop(AF_INET6, ipv6.address, text, size) != nullptr;
}

std::optional<bool> isActive(IpmiSession& session, const LanDestinationName& name,
                             const CIM_LANDestinationAddress& address) {
    if (isSet(address.address))
        return true;
    CIM_LANDestinationV6Address ipv6{};
    if (!readIpv6(session, name.channel, name.selector, ipv6))
        return std::nullopt;
    return isSet(ipv6.address);
}

const char* write(IpmiSession& session, const LanDestinationName& name, const char* destination, bool isNew,
                  const char* failed) {
    if (std::strcmp(destination, noIpv4) == 0 || std::strcmp(destination, noIpv6) == 0)
        return "Invalid Destination Address\n";
    std::uint8_t ipv4[4];
    std::uint8_t ipv6[16];
    const bool isIpv4 = inet_pton(AF_INET, destination, ipv4) == 1;
    if (!isIpv4 && inet_pton(AF_INET6, destination, ipv6) != 1)
        return failed;
    const bool isWritten = (!isNew || setType(session, name, CIM_DESTINATION_PET_TRAP)) &&
                           (isIpv4 ? setIpv4(session, name, ipv4) : setIpv6(session, name, ipv6));
    return isWritten ? nullptr : failed;
}

bool clear(IpmiSession& session, const LanDestinationName& name) {
    return setIpv6(session, name, {}) && setIpv4(session, name, {}) &&
           setType(session, name, CIM_DESTINATION_PET_TRAP);
}

constexpr LanDestinationClass family{.name = "CIM_ListenerDestinationSNMP",
                                     .elementName = "SNMP LAN Listener Destination",
                                     .protocol = "SNMP",
                                     .type = CIM_DESTINATION_PET_TRAP,
                                     .invalidProtocol = "Invalid protocol mentioned in Name property \n",
                                     .keys = g_ListenerDestinationSNMPKeyList,
                                     .describe = describe,
                                     .isActive = isActive,
                                     .write = write,
                                     .clear = clear,
                                     .get = PH_Get_ListenerDestinationSNMP};

} // namespace
} // namespace ph::listener_destination_snmp

int PH_Fill_ListenerDestinationSNMP(const char* destination, ListenerDestinationRecord* record) {
    return ph::indications::fillLanDestination(ph::listener_destination_snmp::family, destination, record);
}

int PH_Create_ListenerDestinationSNMPInstance(ListenerDestinationRecord** records, int* count,
                                              const char* systemName, const char* name,
                                              const char* destination, int namesOnly) {
    return ph::indications::appendLanDestination(ph::listener_destination_snmp::family, records, count,
                                                 systemName, name, destination, namesOnly);
}

int ValidateConstantKeyPropertiesLDSNMP(const CMPIObjectPath* ref) {
    return ph::indications::hasConstantKeys(ref, ph::listener_destination_snmp::family.name) ? 0 : -1;
}

PH_EXPORT_CLASS_FAMILY(ListenerDestinationSNMP, ListenerDestinationRecord,
                       ph::indications::lanDestinationDefinition<ph::listener_destination_snmp::family>)
