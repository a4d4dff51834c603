// What the classes of DHCP and DNS clients share: their instances are those of the LANs with an address.
#pragma once

#include "network/addressed_lans.h"
#include "network/endpoint_name.h"
#include "provider_helper/network_clients.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/processor_endpoint.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

namespace ph {

// Fills what client endpoints have in common, apart from the keys.
template <class Record>
void fillClientEndpoint(Record& endpoint, const char* protocol, const char* interfaceName, int ipVersion,
                        std::uint16_t enabledState) {
    fillEndpoint(endpoint, endpointNameFormat, protocol, enabledState);
    std::snprintf(endpoint.ElementName, sizeof(endpoint.ElementName), "%s Client of %s for IPv%d", protocol,
                  interfaceName, ipVersion);
}

// Does it for their settings.
template <class Record>
void fillClientSetting(Record& setting, const char* protocol, const char* interfaceName, int ipVersion) {
    std::snprintf(setting.ElementName, sizeof(setting.ElementName), "%s Settings of %s for IPv%d", protocol,
                  interfaceName, ipVersion);
    setting.ProtocolIFType = ipVersion == 4 ? ProtocolIFType::IPv4 : ProtocolIFType::IPv6;
}

// Appends a record of the class "CIM_<kind>" for each addressed LAN, named by its InstanceID or its keys, and calls
// int fill(Record&, const AddressedLan&) where all is asked for. Returns 0, or -1 when one fails.
template <class Record, class Fill>
int appendClients(RecordArray<Record>& records, const char* className, IPMI20_SESSION_T* session,
                  Detail detail, Fill fill) {
    constexpr std::size_t prefix = sizeof("CIM_") - 1;
    constexpr bool isSetting = requires(Record & record) {
        record.InstanceID;
    };
    char systemName[256] = "";
    if (!isSetting && PH_GetSPSystemName(systemName) != 0)
        return -1;
    int count = 0;
    for (const AddressedLan& each : addressedLans(session)) {
        Record* record = records.append();
        if (record == nullptr)
            return -1;
        const auto name = [&](std::span<char> field) {
            writeEndpointName(field, className + prefix, ++count, each.lan.interfaceName, each.lan.channel,
                              each.ipVersion);
        };
        if constexpr (isSetting) {
            name(record->InstanceID);
        } else {
            setHostedKeys(*record, processorClass, systemName, className);
            name(record->Name);
        }
        if (detail == Detail::All && fill(*record, each) != 0)
            return -1;
    }
    return 0;
}

} // namespace ph
