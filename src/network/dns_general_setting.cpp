// CIM_DNSGeneralSettingData: how the DNS clients of the BMC complete names, for clients to change.
#include "network/dns_changes.h"
#include "network/dns_settings.h"
#include "network/network_clients.h"
#include "Utility/requests/request_texts.h"

#include <string>

constexpr const char* const g_DNSGeneralSettingDataKeyList[1] = {"InstanceID"};

namespace {

using Record = DNSGeneralSettingDataRecord;

constexpr ph::Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, AddressOrigin),
    PH_PROPERTY(Record, AppendPrimarySuffixes),
    PH_PROPERTY(Record, AppendParentSuffixes),
    PH_PROPERTY(Record, DNSSuffixesToAppend),
};

int enumerate(ph::RecordArray<Record>& settings, ph::Detail detail) {
    ph::dns::Settings dns;
    if (!dns.read())
        return -1;
    if (!dns.areThere())
        return 0;
    Record* setting = settings.append();
    if (setting == nullptr)
        return -1;
    ph::copyText(setting->InstanceID, "DNSGeneralSettingData1");
    return detail == ph::Detail::Names ? 0 : PH_Fill_DNSGeneralSettingData(setting, &dns.search());
}

// ---- Modify

const char* setPrimary(CIM_DNSSearch& search, const CMPIData& value) {
    return ph::dns::readFlag(value, search.appendsPrimarySuffix) ? nullptr
                                                                 : "AppendPrimarySuffixes is no boolean";
}

const char* setParents(CIM_DNSSearch& search, const CMPIData& value) {
    return ph::dns::readFlag(value, search.appendsParentSuffixes) ? nullptr
                                                                  : "AppendParentSuffixes is no boolean";
}

const char* setSuffixes(CIM_DNSSearch& search, const CMPIData& value) {
    CMPIString** texts = nullptr;
    CMPICount count = 0;
    if (!ph::dns::isCleared(value) && GetStringAValue(value, &texts, &count) != 0)
        return "DNSSuffixesToAppend is no array of texts";
    const ph::HeapPtr<CMPIString*> owner(texts);
    if (count > CIM_MAX_DNS_SUFFIXES)
        return "DNSSuffixesToAppend has more than 6 names, which the BMC has no room for";
    std::string list;
    for (CMPICount i = 0; i < count; ++i) {
        const char* name = ph::textOf(texts[i]);
        if (name == nullptr || !ph::dns::isDomainName(name))
            return "DNSSuffixesToAppend has a text that is no domain name";
        list += (i > 0 ? " " : "") + std::string(name);
    }
    if (!ph::fits(search.suffixes, list.c_str()))
        return "DNSSuffixesToAppend has more than 255 characters in all, which the BMC has no room for";
    ph::copyText(search.suffixes, list.c_str());
    return nullptr;
}

constexpr ph::dns::Settable<CIM_DNSSearch> settables[] = {
    {"AppendPrimarySuffixes", setPrimary},
    {"AppendParentSuffixes", setParents},
    {"DNSSuffixesToAppend", setSuffixes},
};

struct Current {
    Record* record = nullptr;
    ~Current() { PH_Clean_DNSGeneralSettingData(&record, 1); }
};

CMPIStatus modify(const ph::Request& request) {
    Current current;
    ph::KeyValues keys;
    if (!keys.areRead(request.broker, request.ref, g_DNSGeneralSettingDataKeyList) ||
        PH_Get_DNSGeneralSettingData(&current.record, keys) != 0)
        return ph::fail(request.broker, ph::noSuchInstance.code, ph::noSuchInstance.message);
    ph::dns::Settings dns;
    return ph::dns::modify<CIM_DNSSearch>(
        request,
        PH_MakeInst_DNSGeneralSettingData(request.broker, request.context, request.ref, nullptr,
                                          current.record, 0, 2, nullptr),
        settables,
        [&](CIM_DNSSearch& search) {
            const bool isRead = dns.read() && dns.areThere();
            search = dns.search();
            return isRead;
        },
        [&](const CIM_DNSSearch& search) {
            return CIM_SetDNSSearch(dns.session(), &search, ph::hookTimeout) == 0;
        });
}

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_DNSGeneralSettingData",
                                                 .superclass = "CIM_IPAssignmentSettingData",
                                                 .source = "DNS settings (OEM)",
                                                 .keys = g_DNSGeneralSettingDataKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate,
                                                 .modify = modify};

} // namespace

PH_EXPORT_CLASS_FAMILY(DNSGeneralSettingData, Record, definition)

int PH_Fill_DNSGeneralSettingData(Record* record, const CIM_DNSSearch* search) {
    ph::copyText(record->ElementName, "DNS Settings of all LANs");
    record->AddressOrigin = ph::AddressOrigin::NotApplicable;
    record->AppendPrimarySuffixes = search->appendsPrimarySuffix != 0;
    record->AppendParentSuffixes = search->appendsParentSuffixes != 0;
    return ph::dns::splitNames(record->DNSSuffixesToAppend, search->suffixes) ? 0 : -1;
}
