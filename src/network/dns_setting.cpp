// CIM_DNSSettingData: what the DNS clients of the BMC are set to, for clients to change.
#include "network/dns_changes.h"
#include "network/dns_settings.h"
#include "Utility/engine/current_record.h"
#include "Utility/requests/changes.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <arpa/inet.h>

constexpr const char* const g_DNSSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_DNSSettingData;
}

namespace ph::dns_setting {
namespace {

using Record = DNSSettingDataRecord;

constexpr const char* className = "CIM_DNSSettingData";

bool isTold(const Record& setting) {
    return setting.isTold;
}

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, AddressOrigin),
    PH_PROPERTY(Record, ProtocolIFType),
    PH_PROPERTY_IF(Record, DomainName, isTold),
    PH_PROPERTY_IF(Record, RequestedHostname, isTold),
    PH_PROPERTY_IF(Record, UseSuffixWhenRegistering, isTold),
    PH_PROPERTY_IF(Record, RegisterThisConnectionsAddress, isTold),
    PH_PROPERTY(Record, DNSServerAddresses),
    PH_PROPERTY(Record, DHCPOptionsToUse),
};

int enumerate(RecordArray<Record>& settings, Detail detail) {
    return dns::appendWhereThere([&](dns::Settings& dns) {
        return dns::appendConfigured(settings, className, dns.session(), detail, false,
                                     PH_Fill_DNSSettingData);
    });
}

// ---- Modify

// The configuration of the client that an instance names.
class Configuration final : public dns::Changeable {
public:
    explicit Configuration(const char* instanceId)
        : channel_(channelOf(instanceId).value_or(0)), ipVersion(ipVersionOf(instanceId) == '4' ? 4 : 6) {}

    bool read() override {
        return session_.open() && dns::readConfig(session_.get(), channel_, ipVersion, false, dns);
    }
    bool write() override {
        return CIM_SetDNSConfig(session_.get(), &dns, channel_, ipVersion, hookTimeout) == 0;
    }
    std::span<const std::uint8_t> bytes() const override {
        return {reinterpret_cast<const std::uint8_t*>(&dns), sizeof(dns)};
    }

private:
    IpmiSession session_;
    std::uint8_t channel_;

public:
    const std::uint8_t ipVersion; // that its servers are of
    CIM_DNSConfig dns{};
};

Configuration& configurationOf(dns::Changeable& settings) {
    return static_cast<Configuration&>(settings);
}

const char* setDomain(dns::Changeable& settings, const CMPIData& value) {
    const char* name = dns::textOrCleared(value);
    if (name == nullptr || (*name != '\0' && !dns::isDomainName(name)))
        return "DomainName is no domain name";
    copyText(configurationOf(settings).dns.domainName, name);
    return nullptr;
}

const char* setHostName(dns::Changeable& settings, const CMPIData& value) {
    const char* name = dns::textOrCleared(value);
    if (name == nullptr || (*name != '\0' && !dns::isHostName(name)))
        return "RequestedHostname is no host name: letters, digits and hyphens, at most 63";
    copyText(configurationOf(settings).dns.hostName, name);
    return nullptr;
}

const char* setRegisters(dns::Changeable& settings, const CMPIData& value) {
    return dns::readFlag(value, configurationOf(settings).dns.registersAddress)
               ? nullptr
               : "RegisterThisConnectionsAddress is no boolean";
}

const char* setRegistersWithDomain(dns::Changeable& settings, const CMPIData& value) {
    return dns::readFlag(value, configurationOf(settings).dns.registersWithDomain)
               ? nullptr
               : "UseSuffixWhenRegistering is no boolean";
}

bool readServer(const char* text, int ipVersion, std::uint8_t (&address)[16]) {
    std::ranges::fill(address, std::uint8_t{0});
    return text != nullptr && inet_pton(ipVersion == 4 ? AF_INET : AF_INET6, text, address) == 1 &&
           std::ranges::any_of(address, [](std::uint8_t byte) { return byte != 0; });
}

const char* setServers(dns::Changeable& settings, const CMPIData& value) {
    CMPIString** texts = nullptr;
    CMPICount count = 0;
    if (!dns::isCleared(value) && GetStringAValue(value, &texts, &count) != 0)
        return "DNSServerAddresses is no array of texts";
    const HeapPtr<CMPIString*> owner(texts);
    if (count > CIM_MAX_DNS_SERVERS)
        return "DNSServerAddresses has more than 3 addresses, which the BMC has no room for";
    const std::uint8_t ipVersion = configurationOf(settings).ipVersion;
    CIM_DNSConfig& dns = configurationOf(settings).dns;
    std::memset(dns.servers, 0, sizeof(dns.servers));
    for (CMPICount i = 0; i < count; ++i)
        if (!readServer(textOf(texts[i]), ipVersion, dns.servers[i]))
            return ipVersion == 4 ? "DNSServerAddresses has a text that is no IPv4 address of a server"
                                  : "DNSServerAddresses has a text that is no IPv6 address of a server";
    dns.serverCount = static_cast<std::uint8_t>(count);
    return nullptr;
}

const char* setOptions(dns::Changeable& settings, const CMPIData& value) {
    std::uint16_t* numbers = nullptr;
    CMPICount count = 0;
    if (!dns::isCleared(value) && GetUINT16AValue(value, &numbers, &count) != 0)
        return "DHCPOptionsToUse is no array of numbers";
    const HeapPtr<std::uint16_t> owner(numbers);
    std::uint8_t& fromDhcp = configurationOf(settings).dns.fromDhcp;
    fromDhcp = 0;
    for (const std::uint16_t number : std::span(numbers, count)) {
        const auto options = dns::options();
        const auto option = std::ranges::find(options, number, &dns::Option::dmtf);
        if (option == options.end())
            return "DHCPOptionsToUse has another number than 8, 14 and 17";
        fromDhcp |= option->bit;
    }
    return nullptr;
}

constexpr dns::Settable settables[] = {
    {"DomainName", setDomain},
    {"RequestedHostname", setHostName},
    {"RegisterThisConnectionsAddress", setRegisters},
    {"UseSuffixWhenRegistering", setRegistersWithDomain},
    {"DNSServerAddresses", setServers},
    {"DHCPOptionsToUse", setOptions},
};

CMPIStatus modify(const Request& request) {
    CurrentRecord current(family_DNSSettingData);
    PHPropertyList changes{};
    if (const CMPIStatus status = current.readChanges(request, namesOf(settables), changes);
        status.rc != CMPI_RC_OK)
        return status;
    Configuration configuration(current.as<Record>().InstanceID);
    return dns::modify(request, changes, settables, configuration);
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_IPAssignmentSettingData",
    .source = "DNS settings (OEM); LAN configuration parameters 3, 51, 56 and 59",
    .keys = g_DNSSettingDataKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .modify = modify};

} // namespace
} // namespace ph::dns_setting

PH_EXPORT_CLASS_FAMILY(DNSSettingData, DNSSettingDataRecord, ph::dns_setting::definition)

int PH_Fill_DNSSettingData(DNSSettingDataRecord* record, const char* interfaceName, int ipVersion,
                           const CIM_DNSConfig* configuration) {
    ph::fillClientSetting(*record, "DNS", interfaceName, ipVersion);
    record->AddressOrigin = ph::AddressOrigin::NotApplicable;
    ph::setSlots(record->DHCPOptionsToUse, {});
    record->isTold = configuration != nullptr;
    if (configuration == nullptr)
        return 0;
    ph::copyText(record->DomainName, configuration->domainName);
    ph::copyText(record->RequestedHostname, configuration->hostName);
    record->RegisterThisConnectionsAddress = configuration->registersAddress != 0;
    record->UseSuffixWhenRegistering = configuration->registersWithDomain != 0;
    ph::dns::appendOptions(record->DHCPOptionsToUse, configuration->fromDhcp);
    return ph::dns::writeServers(record->DNSServerAddresses, *configuration, ipVersion) ? 0 : -1;
}
