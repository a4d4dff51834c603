// CIM_DNSSettingData: what the DNS clients of the BMC are set to, for clients to change.
#include "network/dns_changes.h"
#include "network/dns_settings.h"
#include "network/network_clients.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <arpa/inet.h>

constexpr const char* const g_DNSSettingDataKeyList[1] = {"InstanceID"};

namespace {

using Record = DNSSettingDataRecord;

constexpr const char* className = "CIM_DNSSettingData";

bool isTold(const Record& setting) {
    return setting.isTold;
}

constexpr ph::Property properties[] = {
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

int enumerate(ph::RecordArray<Record>& settings, ph::Detail detail) {
    ph::dns::Settings dns;
    if (!dns.read())
        return -1;
    if (!dns.areThere())
        return 0;
    return ph::appendClients(
        settings, className, dns.session(), detail, [&](Record& setting, const ph::AddressedLan& each) {
            CIM_DNSConfig configuration{};
            const bool isRead =
                ph::dns::readConfig(dns.session(), each.lan.channel, each.ipVersion, false, configuration);
            return PH_Fill_DNSSettingData(&setting, each.lan.interfaceName, each.ipVersion,
                                          isRead ? &configuration : nullptr);
        });
}

// ---- Modify

// A configuration and the IP version that its servers are of.
struct Configuration {
    CIM_DNSConfig dns;
    std::uint8_t ipVersion; // a byte, so that configurations compare as bytes
};

const char* setDomain(Configuration& configuration, const CMPIData& value) {
    const char* name = ph::dns::textOrCleared(value);
    if (name == nullptr || (*name != '\0' && !ph::dns::isDomainName(name)))
        return "DomainName is no domain name";
    ph::copyText(configuration.dns.domainName, name);
    return nullptr;
}

const char* setHostName(Configuration& configuration, const CMPIData& value) {
    const char* name = ph::dns::textOrCleared(value);
    if (name == nullptr || (*name != '\0' && !ph::dns::isHostName(name)))
        return "RequestedHostname is no host name: letters, digits and hyphens, at most 63";
    ph::copyText(configuration.dns.hostName, name);
    return nullptr;
}

const char* setRegisters(Configuration& configuration, const CMPIData& value) {
    return ph::dns::readFlag(value, configuration.dns.registersAddress)
               ? nullptr
               : "RegisterThisConnectionsAddress is no boolean";
}

const char* setRegistersWithDomain(Configuration& configuration, const CMPIData& value) {
    return ph::dns::readFlag(value, configuration.dns.registersWithDomain)
               ? nullptr
               : "UseSuffixWhenRegistering is no boolean";
}

bool readServer(const char* text, int ipVersion, std::uint8_t (&address)[16]) {
    std::ranges::fill(address, std::uint8_t{0});
    return text != nullptr && inet_pton(ipVersion == 4 ? AF_INET : AF_INET6, text, address) == 1 &&
           std::ranges::any_of(address, [](std::uint8_t byte) { return byte != 0; });
}

const char* setServers(Configuration& configuration, const CMPIData& value) {
    CMPIString** texts = nullptr;
    CMPICount count = 0;
    if (!ph::dns::isCleared(value) && GetStringAValue(value, &texts, &count) != 0)
        return "DNSServerAddresses is no array of texts";
    const ph::HeapPtr<CMPIString*> owner(texts);
    if (count > CIM_MAX_DNS_SERVERS)
        return "DNSServerAddresses has more than 3 addresses, which the BMC has no room for";
    CIM_DNSConfig& dns = configuration.dns;
    std::memset(dns.servers, 0, sizeof(dns.servers));
    for (CMPICount i = 0; i < count; ++i)
        if (!readServer(ph::textOf(texts[i]), configuration.ipVersion, dns.servers[i]))
            return configuration.ipVersion == 4
                       ? "DNSServerAddresses has a text that is no IPv4 address of a server"
                       : "DNSServerAddresses has a text that is no IPv6 address of a server";
    dns.serverCount = static_cast<std::uint8_t>(count);
    return nullptr;
}

const char* setOptions(Configuration& configuration, const CMPIData& value) {
    std::uint16_t* numbers = nullptr;
    CMPICount count = 0;
    if (!ph::dns::isCleared(value) && GetUINT16AValue(value, &numbers, &count) != 0)
        return "DHCPOptionsToUse is no array of numbers";
    const ph::HeapPtr<std::uint16_t> owner(numbers);
    configuration.dns.fromDhcp = 0;
    for (const std::uint16_t number : std::span(numbers, count)) {
        const auto options = ph::dns::options();
        const auto option = std::ranges::find(options, number, &ph::dns::Option::dmtf);
        if (option == options.end())
            return "DHCPOptionsToUse has another number than 8, 14 and 17";
        configuration.dns.fromDhcp |= option->bit;
    }
    return nullptr;
}

constexpr ph::dns::Settable<Configuration> settables[] = {
    {"DomainName", setDomain},
    {"RequestedHostname", setHostName},
    {"RegisterThisConnectionsAddress", setRegisters},
    {"UseSuffixWhenRegistering", setRegistersWithDomain},
    {"DNSServerAddresses", setServers},
    {"DHCPOptionsToUse", setOptions},
};

struct Current {
    Record* record = nullptr;
    ~Current() { PH_Clean_DNSSettingData(&record, 1); }
};

CMPIStatus modify(const ph::Request& request) {
    Current current;
    ph::KeyValues keys;
    if (!keys.areRead(request.broker, request.ref, g_DNSSettingDataKeyList) ||
        PH_Get_DNSSettingData(&current.record, keys) != 0)
        return ph::fail(request.broker, ph::noSuchInstance.code, ph::noSuchInstance.message);
    const auto channel = ph::channelOf(current.record->InstanceID).value_or(0);
    const std::uint8_t ipVersion = ph::ipVersionOf(current.record->InstanceID) == '4' ? 4 : 6;
    ph::IpmiSession session;
    return ph::dns::modify<Configuration>(
        request,
        PH_MakeInst_DNSSettingData(request.broker, request.context, request.ref, nullptr, current.record, 0,
                                   2, nullptr),
        settables,
        [&](Configuration& configuration) {
            configuration.ipVersion = ipVersion;
            return session.open() &&
                   ph::dns::readConfig(session.get(), channel, ipVersion, false, configuration.dns);
        },
        [&](const Configuration& configuration) {
            return CIM_SetDNSConfig(session.get(), &configuration.dns, channel, ipVersion, ph::hookTimeout) ==
                   0;
        });
}

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_IPAssignmentSettingData",
    .source = "DNS settings (OEM); LAN configuration parameters 3, 51, 56 and 59",
    .keys = g_DNSSettingDataKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .modify = modify};

} // namespace

PH_EXPORT_CLASS_FAMILY(DNSSettingData, Record, definition)

int PH_Fill_DNSSettingData(Record* record, const char* interfaceName, int ipVersion,
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
