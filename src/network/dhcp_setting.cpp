// CIM_DHCPSettingData: what the DHCP clients of the BMC ask for.
#include "network/dns_settings.h"
#include "network/dns_values.h"

constexpr const char* const g_DHCPSettingDataKeyList[1] = {"InstanceID"};

namespace ph::dhcp_setting {
namespace {

using Record = DHCPSettingDataRecord;

constexpr const char* className = "CIM_DHCPSettingData";

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, AddressOrigin),
    PH_PROPERTY(Record, ProtocolIFType),
    PH_PROPERTY(Record, RequestedOptions),
};

int enumerate(RecordArray<Record>& settings, Detail detail) {
    IpmiSession session;
    if (!session.open())
        return -1;
    return dns::appendConfigured(settings, className, session.get(), detail, false, PH_Fill_DHCPSettingData);
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_IPAssignmentSettingData",
                                             .source = "LAN configuration parameters 3, 51, 56 and 59; "
                                                       "DNS settings (OEM)",
                                             .keys = g_DHCPSettingDataKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::dhcp_setting

PH_EXPORT_CLASS_FAMILY(DHCPSettingData, DHCPSettingDataRecord, ph::dhcp_setting::definition)

int PH_Fill_DHCPSettingData(DHCPSettingDataRecord* record, const char* interfaceName, int ipVersion,
                            const CIM_DNSConfig* dns) {
    ph::fillClientSetting(*record, "DHCP", interfaceName, ipVersion);
    ph::setSlots(record->RequestedOptions, {});
    if (ipVersion == 4) {
        record->AddressOrigin = ph::AddressOrigin::Dhcp;
        // What LAN parameters 6 and 12 hold comes from there.
        ph::setSlots(record->RequestedOptions, {ph::DhcpOption::SubnetMask, ph::DhcpOption::Router});
    } else {
        record->AddressOrigin = ph::AddressOrigin::DhcpV6;
    }
    if (dns != nullptr && dns->isSupported != 0)
        ph::dns::appendOptions(record->RequestedOptions, dns->fromDhcp);
    return 0;
}
