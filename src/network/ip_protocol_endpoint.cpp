// CIM_IPProtocolEndpoint: the BMC's IP addresses.
#include "network/endpoint_name.h"
#include "network/lans.h"
#include "platform/sysroot.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <string_view>
#include <unistd.h>

constexpr const char* const g_IPProtocolEndpointKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                              "SystemName", "Name"};

namespace ph::ip_protocol_endpoint {
namespace {

using Record = IPProtocolEndpointRecord;

constexpr const char* className = "CIM_IPProtocolEndpoint";

// A LAN whose configuration the BMC does not tell has an endpoint without these.
bool hasIpv4Address(const Record& endpoint) {
    return endpoint.ProtocolIFType == ProtocolIFType::IPv4 && endpoint.IPv4Address[0] != '\0';
}
bool hasOrigin(const Record& endpoint) {
    return endpoint.AddressOrigin != AddressOrigin::Unknown;
}
bool isIpv6(const Record& endpoint) {
    return endpoint.ProtocolIFType == ProtocolIFType::IPv6;
}

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, NameFormat),
    PH_PROPERTY(Record, ProtocolIFType),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY_IF(Record, IPv4Address, hasIpv4Address),
    PH_PROPERTY_IF(Record, IPv6Address, isIpv6),
    PH_PROPERTY_IF(Record, SubnetMask, hasIpv4Address),
    PH_PROPERTY_IF(Record, IPv6AddressType, isIpv6),
    PH_PROPERTY_IF(Record, IPv6SubnetPrefixLength, isIpv6),
    PH_PROPERTY_IF(Record, AddressOrigin, hasOrigin),
};

// One address of a LAN, as it becomes an endpoint.
struct Address {
    int ipVersion = 4;
    int origin = AddressOrigin::Unknown;
    char text[64] = "";
    char subnetMask[64] = ""; // version 4
    int prefixLength = 0;     // version 6
};

void setKeys(Record& endpoint, const char* systemName, const char* interfaceName, int channel, int ipVersion,
             int count) {
    setHostedKeys(endpoint, processorClass, systemName, className);
    writeEndpointName(endpoint.Name, "IPProtocolEndpoint", count, interfaceName, channel, ipVersion);
}

Address readIpv4(IPMI20_SESSION_T* session, const Lan& lan) {
    CIM_IPv4NetworkCfg configuration{};
    Address address;
    if (CIM_GetIPv4NetworkCfg(session, &configuration, lan.channel, hookTimeout) != 0)
        return address;
    address.origin =
        configuration.source == CIM_ADDRESS_SOURCE_DYNAMIC ? AddressOrigin::Dhcp : AddressOrigin::Static;
    ConvertIPnumToStr(configuration.address, address.text);
    ConvertIPnumToStr(configuration.netmask, address.subnetMask);
    return address;
}

// The origin of all IPv6 addresses of a LAN. Dynamic ones come from a DHCPv6 server when the client has noted
// one, or when no static address is left in the configuration.
int ipv6Origin(IPMI20_SESSION_T* session, const Lan& lan) {
    CIM_IPv6NetworkCfg configuration{};
    if (CIM_GetIPv6NetworkCfg(session, &configuration, lan.channel, hookTimeout) != 0)
        return AddressOrigin::Unknown;
    if (configuration.source != CIM_ADDRESS_SOURCE_DYNAMIC)
        return AddressOrigin::Static;
    char configured[64] = "";
    ConvertIP6numToStr(configuration.address, configured);
    return PH_IsDHCPServerAddressFilePresent(lan.interfaceName) != 0 || std::string_view(configured) == "::"
               ? AddressOrigin::DhcpV6
               : AddressOrigin::IPv6Auto;
}

std::vector<Address> readAddresses(IPMI20_SESSION_T* session, const Lan& lan) {
    std::vector<Address> addresses{readIpv4(session, lan)};
    CIM_IPv6Addresses list{};
    if (CIM_GetAllIPv6Addresses(session, &list, lan.channel, hookTimeout) != 0 || list.count == 0)
        return addresses;
    const int origin = ipv6Origin(session, lan);
    for (std::size_t i = 0; i < std::min<std::size_t>(list.count, CIM_MAX_IPV6_ADDRESSES); ++i) {
        Address& address = addresses.emplace_back();
        address.ipVersion = 6;
        address.origin = origin;
        address.prefixLength = list.addresses[i].prefixLength;
        ConvertIP6numToStr(list.addresses[i].address, address.text);
    }
    return addresses;
}

int enumerate(RecordArray<Record>& endpoints, Detail detail) {
    char systemName[256] = "";
    IpmiSession session;
    if (PH_GetSPSystemName(systemName) != 0 || !session.open())
        return -1;
    for (Lan& lan : listLans(session.get())) {
        readName(session.get(), lan);
        for (const Address& address : readAddresses(session.get(), lan)) {
            Record* endpoint = endpoints.append();
            if (endpoint == nullptr)
                return -1;
            setKeys(*endpoint, systemName, lan.interfaceName, lan.channel, address.ipVersion,
                    endpoints.count());
            if (detail == Detail::All)
                PH_Fill_IPProtocolEndpoint(endpoint, address.origin, address.text, address.subnetMask,
                                           address.prefixLength, address.ipVersion);
        }
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ProtocolEndpoint",
    .source = "Get LAN Configuration Parameters 3, 4, 6, 12, 51, 56, 59 and 64",
    .keys = g_IPProtocolEndpointKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::ip_protocol_endpoint

int PH_Fill_IPProtocolEndpoint(IPProtocolEndpointRecord* record, int addressOrigin, const char* address,
                               const char* subnetMask, int prefixLength, int ipVersion) {
    ph::copyText(record->NameFormat, ph::endpointNameFormat);
    record->EnabledState = ph::EnabledState::Enabled;
    record->RequestedState = ph::RequestedState::NotApplicable;
    ph::copyText(record->ElementName, "Endpoint Dedicated to a Single IP");
    record->AddressOrigin = static_cast<uint16_t>(addressOrigin);
    if (ipVersion == 4) {
        record->ProtocolIFType = ph::ProtocolIFType::IPv4;
        ph::copyText(record->IPv4Address, address);
        ph::copyText(record->SubnetMask, subnetMask);
    } else {
        record->ProtocolIFType = ph::ProtocolIFType::IPv6;
        ph::copyText(record->IPv6Address, address);
        record->IPv6AddressType = static_cast<uint16_t>(ipVersion);
        record->IPv6SubnetPrefixLength = static_cast<uint16_t>(prefixLength);
    }
    return 0;
}

int PH_CreateIPProtocolEndpointInstance(IPProtocolEndpointRecord** records, int* count,
                                        const char* systemName, const char* interfaceName, int channel,
                                        int addressOrigin, const char* address, const char* subnetMask,
                                        int prefixLength, int namesOnly, int ipVersion) {
    void* const former = *count == 0 ? nullptr : *records;
    auto* const grown = static_cast<IPProtocolEndpointRecord*>(
        std::realloc(former, sizeof(IPProtocolEndpointRecord) * (static_cast<std::size_t>(*count) + 1)));
    if (grown == nullptr) {
        std::free(former);
        *records = nullptr;
        *count = 0;
        return -1;
    }
    IPProtocolEndpointRecord& endpoint = grown[*count];
    endpoint = {};
    *records = grown;
    ++*count;
    ph::ip_protocol_endpoint::setKeys(endpoint, systemName, interfaceName, channel, ipVersion, *count);
    return namesOnly != 0 ? 0
                          : PH_Fill_IPProtocolEndpoint(&endpoint, addressOrigin, address, subnetMask,
                                                       prefixLength, ipVersion);
}

int PH_IsDHCPServerAddressFilePresent(const char* interfaceName) {
    char name[128];
    char path[4096];
    std::snprintf(name, sizeof(name), "/tmp/dhcp6_server_%s", interfaceName);
    return PH_SysrootPath(name, path, sizeof(path)) == 0 && access(path, F_OK) == 0;
}

PH_EXPORT_CLASS_FAMILY(IPProtocolEndpoint, IPProtocolEndpointRecord, ph::ip_protocol_endpoint::definition)
