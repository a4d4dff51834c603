// CIM_DNSGeneralSettingData: how the DNS clients of the BMC complete names, for clients to change.
#include "network/dns_changes.h"
#include "network/dns_settings.h"
#include "Utility/engine/current_record.h"
#include "Utility/requests/changes.h"
#include "Utility/requests/request_texts.h"

#include <cstdio>

constexpr const char* const g_DNSGeneralSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_DNSGeneralSettingData;
}

namespace ph::dns_general_setting {
namespace {

using Record = DNSGeneralSettingDataRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, AddressOrigin),
    PH_PROPERTY(Record, AppendPrimarySuffixes),
    PH_PROPERTY(Record, AppendParentSuffixes),
    PH_PROPERTY(Record, DNSSuffixesToAppend),
};

int enumerate(RecordArray<Record>& settings, Detail detail) {
    return dns::appendWhereThere([&](dns::Settings& dns) {
        Record* setting = settings.append();
        if (setting == nullptr)
            return -1;
        copyText(setting->InstanceID, "DNSGeneralSettingData1");
        return detail == Detail::Names ? 0 : PH_Fill_DNSGeneralSettingData(setting, &dns.search());
    });
}

// ---- Modify

class Search final : public dns::Changeable {
public:
    bool read() override {
        const bool isRead = dns_.read() && dns_.areThere();
        search = dns_.search();
        return isRead;
    }
    bool write() override { return CIM_SetDNSSearch(dns_.session(), &search, hookTimeout) == 0; }
    std::span<const std::uint8_t> bytes() const override {
        return {reinterpret_cast<const std::uint8_t*>(&search), sizeof(search)};
    }

private:
    dns::Settings dns_;

public:
    CIM_DNSSearch search{};
};

CIM_DNSSearch& searchOf(dns::Changeable& settings) {
    return static_cast<Search&>(settings).search;
}

const char* setPrimary(dns::Changeable& settings, const CMPIData& value) {
    return dns::readFlag(value, searchOf(settings).appendsPrimarySuffix)
               ? nullptr
               : "AppendPrimarySuffixes is no boolean";
}

const char* setParents(dns::Changeable& settings, const CMPIData& value) {
    return dns::readFlag(value, searchOf(settings).appendsParentSuffixes)
               ? nullptr
               : "AppendParentSuffixes is no boolean";
}

const char* setSuffixes(dns::Changeable& settings, const CMPIData& value) {
    CMPIString** texts = nullptr;
    CMPICount count = 0;
    if (!dns::isCleared(value) && GetStringAValue(value, &texts, &count) != 0)
        return "DNSSuffixesToAppend is no array of texts";
    const HeapPtr<CMPIString*> owner(texts);
    if (count > CIM_MAX_DNS_SUFFIXES)
        return "DNSSuffixesToAppend has more than 6 names, which the BMC has no room for";
    char list[sizeof(CIM_DNSSearch::suffixes)] = "";
    std::size_t length = 0;
    for (CMPICount i = 0; i < count; ++i) {
        const char* name = textOf(texts[i]);
        if (name == nullptr || !dns::isDomainName(name))
            return "DNSSuffixesToAppend has a text that is no domain name";
        length += static_cast<std::size_t>(
            std::snprintf(list + length, sizeof(list) - length, "%s%s", i > 0 ? " " : "", name));
        if (length >= sizeof(list))
            return "DNSSuffixesToAppend has more than 255 characters in all, which the BMC has no room for";
    }
    copyText(searchOf(settings).suffixes, list);
    return nullptr;
}

constexpr dns::Settable settables[] = {
    {"AppendPrimarySuffixes", setPrimary},
    {"AppendParentSuffixes", setParents},
    {"DNSSuffixesToAppend", setSuffixes},
};

CMPIStatus modify(const Request& request) {
    CurrentRecord current(family_DNSGeneralSettingData);
    PHPropertyList changes{};
    if (const CMPIStatus status = current.readChanges(request, namesOf(settables), changes);
        status.rc != CMPI_RC_OK)
        return status;
    Search search;
    return dns::modify(request, changes, settables, search);
}

constexpr ClassDefinition<Record> definition{.name = "CIM_DNSGeneralSettingData",
                                             .superclass = "CIM_IPAssignmentSettingData",
                                             .source = "DNS settings (OEM)",
                                             .keys = g_DNSGeneralSettingDataKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .modify = modify};

} // namespace
} // namespace ph::dns_general_setting

PH_EXPORT_CLASS_FAMILY(DNSGeneralSettingData, DNSGeneralSettingDataRecord,
                       ph::dns_general_setting::definition)

int PH_Fill_DNSGeneralSettingData(DNSGeneralSettingDataRecord* record, const CIM_DNSSearch* search) {
    ph::copyText(record->ElementName, "DNS Settings of all LANs");
    record->AddressOrigin = ph::AddressOrigin::NotApplicable;
    record->AppendPrimarySuffixes = search->appendsPrimarySuffix != 0;
    record->AppendParentSuffixes = search->appendsParentSuffixes != 0;
    return ph::dns::splitNames(record->DNSSuffixesToAppend, search->suffixes) ? 0 : -1;
}
