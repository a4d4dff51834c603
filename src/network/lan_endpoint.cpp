// CIM_LANEndpoint: the data-link end of each network port.
#include "network/lans.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

constexpr const char* const g_LANEndpointKeyList[4] = {"Name", "SystemCreationClassName", "CreationClassName",
                                                       "SystemName"};

namespace ph::lan_endpoint {
namespace {

using Record = LANEndpointRecord;

constexpr const char* className = "CIM_LANEndpoint";

bool hasMac(const Record& endpoint) {
    return endpoint.MACAddress[0] != '\0';
}
bool hasLanId(const Record& endpoint) {
    return endpoint.LANID[0] != '\0';
}

constexpr Property properties[] = {
    PH_KEY(Record, Name),
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_PROPERTY(Record, NameFormat),
    PH_PROPERTY(Record, ProtocolIFType),
    PH_PROPERTY_IF(Record, MACAddress, hasMac),
    PH_PROPERTY_IF(Record, LANID, hasLanId),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, ElementName),
};

constexpr int unknownEnable = 0xFF; // none of CIM_LAN_…

int readEnable(IPMI20_SESSION_T* session, const Lan& lan) {
    std::uint8_t enable = CIM_LAN_BOTH;
    return lan.isBond || CIM_GetLANEnable(session, lan.index, &enable, hookTimeout) == 0 ? enable
                                                                                         : unknownEnable;
}

struct LanId {
    char text[8] = ""; // empty when the BMC does not tell
};

LanId readLanId(IPMI20_SESSION_T* session, const Lan& lan) {
    std::uint8_t enabled = 0;
    std::uint16_t id = 0;
    std::uint8_t priority = 0;
    LanId lanId;
    if (CIM_GetVlanStatus(session, &enabled, &id, &priority, lan.channel, hookTimeout) == 0)
        std::snprintf(lanId.text, sizeof(lanId.text), "%d", id);
    return lanId;
}

int enumerate(RecordArray<Record>& endpoints, Detail detail) {
    char systemName[256] = "";
    IpmiSession session;
    if (PH_GetSPSystemName(systemName) != 0 || !session.open())
        return -1;
    for (Lan& lan : listLans(session.get())) {
        readName(session.get(), lan);
        Record* endpoint = endpoints.append();
        if (endpoint == nullptr)
            return -1;
        setHostedKeys(*endpoint, processorClass, systemName, className);
        std::snprintf(endpoint->Name, sizeof(endpoint->Name), "%s-%s", "LANEndpoint", lan.interfaceName);
        if (detail == Detail::Names)
            continue;
        const MacText mac = readMac(CIM_Get_MACAddress, session.get(), lan);
        if (PH_Fill_LANEndpoint(lan.interfaceName, endpoint, mac.text, readEnable(session.get(), lan),
                                readLanId(session.get(), lan).text) != 0)
            return -1;
    }
    return 0;
}

std::uint16_t enabledState(int enable) {
    if (enable > CIM_LAN_BOTH)
        return EnabledState::Unknown;
    return enable == CIM_LAN_DISABLED ? EnabledState::Disabled : EnabledState::Enabled;
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ProtocolEndpoint",
    .source = "Get Channel Info; LAN configuration parameters 5, 20 and 21; LAN enables (OEM)",
    .keys = g_LANEndpointKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::lan_endpoint

int PH_Fill_LANEndpoint(const char* interfaceName, LANEndpointRecord* record, const char* macAddress,
                        int enable, const char* lanId) {
    ph::copyText(record->NameFormat, "ClassName-InterfaceName");
    record->ProtocolIFType = ph::ProtocolIFType::EthernetCsmaCd;
    ph::copyText(record->MACAddress, macAddress);
    ph::copyText(record->LANID, lanId);
    record->EnabledState = ph::lan_endpoint::enabledState(enable);
    record->RequestedState = ph::RequestedState::NotApplicable;
    std::snprintf(record->ElementName, sizeof(record->ElementName), "LANEndPoint for %s", interfaceName);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(LANEndpoint, LANEndpointRecord, ph::lan_endpoint::definition)
