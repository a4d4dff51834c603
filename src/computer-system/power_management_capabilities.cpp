// CIM_PowerManagementCapabilities: what the power management services can do.
#include "provider_helper/computer_system.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_PowerManagementCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::power_management_capabilities {
namespace {

using Record = PowerManagementCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, PowerChangeCapabilities),
    PH_PROPERTY(Record, PowerStatesSupported),
    PH_PROPERTY(Record, RequestedPowerStatesSupported),
};

int append(RecordArray<Record>& all, const PowerCapabilitiesRow& row, Detail detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, row.instanceId);
    return detail == Detail::Names ? 0 : PH_Fill_PowerManagementCapabilities(&row, capabilities);
}

int enumerate(RecordArray<Record>& all, Detail detail) {
    Rows<PowerCapabilitiesRow> rows;
    if (!rows.read(db_get_all_power_mgt_capabilities))
        return -1;
    for (const PowerCapabilitiesRow& row : rows.all())
        if (append(all, row, detail) != 0)
            return -1;
    return 0;
}

int get(RecordArray<Record>& all, CMPIString** keyValues) {
    const auto row = storedRow(db_get_power_mgt_capabilities, CMGetCharsPtr(keyValues[0], nullptr));
    return row != nullptr ? append(all, *row, Detail::All) : -1;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_PowerManagementCapabilities",
                                             .superclass = "CIM_Capabilities",
                                             .source = "table power_capabilities",
                                             .keys = g_PowerManagementCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .get = get};

} // namespace
} // namespace ph::power_management_capabilities

int PH_Fill_PowerManagementCapabilities(const PowerCapabilitiesRow* row,
                                        PowerManagementCapabilitiesRecord* record) {
    ph::copyText(record->ElementName, row->elementName);
    ph::parseList(record->PowerChangeCapabilities, row->powerChangeCapabilities);
    ph::parseList(record->PowerStatesSupported, row->powerStatesSupported);
    ph::parseList(record->RequestedPowerStatesSupported, row->requestedPowerStatesSupported);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PowerManagementCapabilities, PowerManagementCapabilitiesRecord,
                       ph::power_management_capabilities::definition)
