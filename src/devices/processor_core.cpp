// CIM_ProcessorCore.
#include "devices/entity_device.h"

#include <cstdio>

constexpr const char* const g_ProcessorCoreKeyList[1] = {"InstanceID"};

namespace ph::processor_core {
namespace {

using Record = ProcessorCoreRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, CoreEnabledState),
};

// There may be thousands of them.
int stream(const std::function<bool(const Record&)>& take, Detail) {
    char systemName[256] = "";
    Rows<ProcessorRow> processors;
    if (PH_GetHostSystemName(systemName) != 0 || !processors.read(db_get_all_processors))
        return -1;
    for (const ProcessorRow& row : processors.all())
        for (int number = 1; number <= row.cores; ++number) {
            const bool areEnabled = row.enabledCores == row.cores;
            Record core{};
            std::snprintf(core.InstanceID, sizeof core.InstanceID, "SMBIOS:%s %d.%d.%d", systemName,
                          row.entityId, row.entityInstance, number);
            std::snprintf(core.ElementName, sizeof core.ElementName, "Core %d of %s %d", number,
                          mappingOf(row.entityId).name, row.entityInstance);
            core.EnabledState = areEnabled ? EnabledState::Enabled : EnabledState::Unknown;
            core.CoreEnabledState = core.EnabledState;
            core.RequestedState = RequestedState::NotApplicable;
            setList(core.OperationalStatus, {OperationalStatus::Unknown});
            if (!take(core))
                return -1;
        }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_ProcessorCore",
                                             .superclass = "CIM_EnabledLogicalElement",
                                             .source = "table processor (SMBIOS type 4)",
                                             .keys = g_ProcessorCoreKeyList,
                                             .properties = properties,
                                             .stream = stream};

} // namespace
} // namespace ph::processor_core

PH_EXPORT_CLASS_FAMILY(ProcessorCore, ProcessorCoreRecord, ph::processor_core::definition)
