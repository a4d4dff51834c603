// CIM_IndicationFilter: platform event filters of the BMC, and filters of the database.
#include "indications/common_requests.h"
#include "indications/filter_name.h"
#include "provider_helper/indications.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <cstdio>
#include <optional>

constexpr const char* const g_IndicationFilterKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                            "SystemName", "Name"};

namespace ph::indication_filter {
namespace {

using namespace indications;
using Record = IndicationFilterRecord;

constexpr const char* className = "CIM_IndicationFilter";
constexpr std::uint8_t filterEnabled = 0x80; // of the filter configuration
constexpr std::uint8_t alertAction = 0x01;   // of the event filter action

constexpr const char* keysMissing = "Key Properties missing";
constexpr const char* queryMissing = "Required Query property";
constexpr const char* invalidName = "Invalid format for property \"Name\"\n";
constexpr const char* invalidQuery =
    "CQL QueryCompilation Error - Check syntax / filter properties NOTE : Only (AlertingManagedElement & "
    "PerceivedSeverity) supported\n";
constexpr const char* createFailed = "CreateInstance Failed \n";
constexpr const char* modifyFailed = "ModifyInstance Failed \n";
constexpr const char* deleteFailed = "Delete Instance Failed \n";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, IndividualSubscriptionSupported),
    PH_PROPERTY(Record, SourceNamespace),
    PH_PROPERTY(Record, QueryLanguage),
    PH_PROPERTY(Record, Query),
};

// The BMC's filters, as far as one can name them. One that the platform counts but does not fill is disabled.
struct PefTable {
    CIM_PEFEntry entries[CIM_MAX_PEF_ENTRIES] = {};
    std::uint8_t count = 0; // that the BMC has

    bool read(IpmiSession& session) {
        return CIM_GetPEFTable(session.get(), entries, &count, hookTimeout) == 0;
    }
    int held() const { return std::min<int>(count, CIM_MAX_PEF_ENTRIES); }
};

bool isEnabled(const CIM_PEFEntry& entry) {
    return (entry.filterConfiguration & filterEnabled) != 0;
}

// ---- Enumeration

int add(RecordArray<Record>& filters, const char* systemName, const char* name, const char* query,
        Detail detail) {
    Record* filter = append(filters, className, systemName, name);
    if (filter == nullptr)
        return -1;
    return detail == Detail::Names ? 0 : PH_Fill_IndicationFilter(query, filter);
}

int addPefFilters(RecordArray<Record>& filters, const PefTable& table, const char* systemName,
                  Detail detail) {
    for (int i = 0; i < table.held(); ++i) {
        const CIM_PEFEntry& entry = table.entries[i];
        if (!isEnabled(entry))
            continue;
        char name[filterNameSize];
        char query[sizeof(Record::Query)];
        formatPefFilter(name, {entry.alertPolicyNumber, i + 1});
        ConstructFilterQuery(query, &entry);
        if (add(filters, systemName, name, query, detail) != 0)
            return -1;
    }
    return 0;
}

int enumerate(RecordArray<Record>& filters, Detail detail) {
    IpmiSession session;
    Database database;
    char systemName[256] = "";
    PefTable table;
    Rows<CimxmlFilterRow> rows;
    if (!session.open() || PH_GetSPSystemName(systemName) != 0 || !table.read(session) ||
        addPefFilters(filters, table, systemName, detail) != 0 || !database.open() ||
        !rows.read(database.get(), db_get_all_indication_filter_cimxml))
        return -1;
    for (const CimxmlFilterRow& row : rows.all())
        if (add(filters, systemName, row.name, row.query, detail) != 0)
            return -1;
    return session.close() && database.close() ? 0 : -1;
}

// ---- Changes of platform event filters

bool writeEntry(IpmiSession& session, std::uint8_t filterNumber, const CIM_PEFEntry& entry) {
    return CIM_SetPEFEntry(session.get(), filterNumber, &entry, hookTimeout) == 0;
}

CMPIStatus createPefFilter(const Request& request, const char* name, const char* query) {
    IpmiSession session;
    PefTable table;
    if (!session.open() || !table.read(session))
        return fail(request.broker, createFailed);
    const auto filter = parsePefFilter(name);
    if (!filter)
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, invalidName);
    const auto [policy, filterNumber] = *filter;
    if (table.count < filterNumber)
        return fail(request.broker, "CreateInstance Failed - Max Filter limit exceeded \n");
    if (filterNumber < 1 || filterNumber > table.held())
        return fail(request.broker, createFailed);
    CIM_PEFEntry entry = table.entries[filterNumber - 1];
    if (isEnabled(entry))
        return fail(request.broker, "CreateInstance Failed - Filter already exists and active \n");
    if (CompileQueryAndSeverity(query, &entry) != 0)
        return fail(request.broker, invalidQuery);
    entry.filterConfiguration |= filterEnabled;
    entry.eventFilterAction |= alertAction;
    entry.alertPolicyNumber = static_cast<std::uint8_t>(policy);
    return writeEntry(session, static_cast<std::uint8_t>(filterNumber), entry)
               ? returnPath(request)
               : fail(request.broker, createFailed);
}

CMPIStatus modifyPefFilter(const Request& request, const char* name, const char* query) {
    IpmiSession session;
    CIM_PEFEntry entry{};
    const std::uint8_t filterNumber = filterNumberOf(name);
    if (!session.open() || CIM_GetPEFEntry(session.get(), filterNumber, &entry, hookTimeout) != 0)
        return fail(request.broker, modifyFailed);
    if (CompileQueryAndSeverity(query, &entry) != 0)
        return fail(request.broker, invalidQuery);
    return writeEntry(session, filterNumber, entry) ? success : fail(request.broker, modifyFailed);
}

bool removePefFilter(const char* name) {
    IpmiSession session;
    CIM_PEFEntry entry{};
    const std::uint8_t filterNumber = filterNumberOf(name);
    return session.open() && CIM_GetPEFEntry(session.get(), filterNumber, &entry, hookTimeout) == 0 &&
           writeEntry(session, filterNumber, {});
}

// ---- Changes of filters in the database

// Makes a filter as the database keeps it; nothing when the query is not valid.
std::optional<CimxmlFilterRow> makeRow(const char* name, const char* query) {
    CIM_PEFEntry entry{};
    if (CompileQueryAndSeverity(query, &entry) != 0)
        return std::nullopt;
    CimxmlFilterRow row{};
    copyText(row.name, name);
    copyText(row.query, query);
    row.sensorNumber = entry.sensorNumber;
    row.sensorType = entry.sensorType;
    row.severity = entry.eventSeverity;
    return row;
}

CMPIStatus createCimxmlFilter(const Request& request, const char* name, const char* query) {
    if (!isCimxmlFilter(name))
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, invalidName);
    CimxmlFilterRow stored{};
    copyText(stored.name, name);
    Database database;
    if (!fits(stored.name, name) || !database.open())
        return fail(request.broker, createFailed);
    if (db_get_indication_filter_cimxml(database.get(), &stored) == 0)
        return fail(request.broker, "Filter already exists and active\n");
    const auto row = makeRow(name, query);
    if (!row)
        return fail(request.broker, invalidQuery);
    if (!fits(row->query, query))
        return fail(request.broker, createFailed);
    (void)db_set_indication_filter_cimxml(database.get(), &*row); // not part of the answer
    return returnPath(request);
}

CMPIStatus modifyCimxmlFilter(const Request& request, const char* name, const char* query) {
    const auto row = makeRow(name, query);
    if (!row)
        return fail(request.broker, invalidQuery);
    Database database;
    return fits(row->query, query) && database.open() &&
                   db_set_indication_filter_cimxml(database.get(), &*row) == 0
               ? success
               : fail(request.broker, modifyFailed);
}

bool removeCimxmlFilter(const char* name) {
    Database database;
    return database.open() && db_delete_indication_filter_cimxml(database.get(), name) == 0;
}

// ---- Requests

CMPIStatus create(const Request& request) {
    KeyValues keys;
    if (!readKeys(request, g_IndicationFilterKeyList, keys))
        return fail(request.broker, keysMissing);
    if (ValidateConstantKeyPropertiesIF(request.ref) != 0)
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER,
                    "Invalid key properties : Only 'Name' prop is variable, refer other instances of IF");
    const char* const query = propertyText(request.instance, "Query");
    if (query == nullptr)
        return fail(request.broker, queryMissing);
    const char* const name = propertyText(request.instance, "Name");
    if (name == nullptr)
        return fail(request.broker, "Required Name property");
    const auto kind = kindOfFilter(name);
    if (!kind)
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, invalidName);
    switch (*kind) {
    case FilterKind::Pef:
        return createPefFilter(request, name, query);
    case FilterKind::Cimxml:
        return createCimxmlFilter(request, name, query);
    default:
        return fail(request.broker, createFailed);
    }
}

CMPIStatus modify(const Request& request) {
    KeyValues keys;
    if (!readKeys(request, g_IndicationFilterKeyList, keys))
        return fail(request.broker, keysMissing);
    const auto filter = find(PH_Get_IndicationFilter, keys);
    if (filter == nullptr)
        return fail(request.broker, "ModifyInstance Failed - Given instance does not exist \n");
    const char* const query = propertyText(request.instance, "Query");
    if (query == nullptr)
        return fail(request.broker, queryMissing);
    switch (kindOfFilter(filter->Name).value_or(FilterKind::Other)) {
    case FilterKind::Pef:
        return modifyPefFilter(request, filter->Name, query);
    case FilterKind::Cimxml:
        return modifyCimxmlFilter(request, filter->Name, query);
    default:
        return fail(request.broker, modifyFailed);
    }
}

CMPIStatus remove(const Request& request) {
    KeyValues keys;
    if (!readKeys(request, g_IndicationFilterKeyList, keys))
        return fail(request.broker, keysMissing);
    const auto filter = find(PH_Get_IndicationFilter, keys);
    if (filter == nullptr)
        return fail(request.broker, "DeleteInstance Failed - Given instance does not exist \n");
    const auto kind = kindOfFilter(filter->Name);
    const bool isRemoved = kind == FilterKind::Pef      ? removePefFilter(filter->Name)
                           : kind == FilterKind::Cimxml ? removeCimxmlFilter(filter->Name)
                                                        : kind.has_value();
    return isRemoved ? success : fail(request.broker, deleteFailed);
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_ManagedElement",
                                             .source =
                                                 "PEF configuration parameters 5 and 6 (Get and Set PEF "
                                                 "Configuration Parameters); table cimxml_filter",
                                             .keys = g_IndicationFilterKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .failureFreesAll = true,
                                             .modify = modify,
                                             .create = create,
                                             .remove = remove};

} // namespace
} // namespace ph::indication_filter

int PH_Fill_IndicationFilter(const char* query, IndicationFilterRecord* record) {
    ph::copyText(record->SourceNamespace, PH_INTEROP_NAMESPACE);
    ph::copyText(record->QueryLanguage, "WQL");
    ph::copyText(record->Query, query);
    record->IndividualSubscriptionSupported = true;
    return 0;
}

int PH_Create_IndicationFilterInstance(IndicationFilterRecord** records, int* count, const char* systemName,
                                       const char* name, const char* query, int namesOnly) {
    return ph::indications::appendTo(records, count, ph::indication_filter::properties,
                                     [&](ph::RecordArray<IndicationFilterRecord>& filters) {
                                         if (systemName == nullptr || name == nullptr || query == nullptr)
                                             return -1;
                                         return ph::indication_filter::add(filters, systemName, name, query,
                                                                           namesOnly != 0 ? ph::Detail::Names
                                                                                          : ph::Detail::All);
                                     });
}

int ValidateConstantKeyPropertiesIF(const CMPIObjectPath* ref) {
    return ph::indications::hasConstantKeys(ref, ph::indication_filter::className) ? 0 : -1;
}

PH_EXPORT_CLASS_FAMILY(IndicationFilter, IndicationFilterRecord, ph::indication_filter::definition)
