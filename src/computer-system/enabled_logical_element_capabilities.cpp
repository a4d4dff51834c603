// CIM_EnabledLogicalElementCapabilities: the states that RequestStateChange takes of clients.
#include "provider_helper/computer_system.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

constexpr const char* const g_EnabledLogicalElementCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::enabled_logical_element_capabilities {
namespace {

using namespace RequestedState;
using Record = EnabledLogicalElementCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ElementNameEditSupported),
    PH_PROPERTY(Record, RequestedStatesSupported),
};

constexpr int onAndOff[] = {Enabled, Disabled, -1};
constexpr int onOffAndReset[] = {Enabled, Disabled, Reset, -1};
constexpr int onlyReset[] = {Reset, -1};
constexpr int shutDown[] = {Disabled, ShutDown, -1};

constexpr struct {
    const char *name, *elements;
    const int* states;
} rows[] = {
    {"Account", "Account", onAndOff},         {"DHCP", "DHCP Client", onAndOff},
    {"Host", "Host", onOffAndReset},          {"OS", "Operating System", shutDown},
    {"Port", "Ethernet Port", onOffAndReset}, {"Redirection", "Redirection", onAndOff},
    {"SP", "Service Processor", onlyReset},   {"Watchdog", "Watchdog", onOffAndReset},
};

int enumerate(RecordArray<Record>& all, Detail) {
    for (const auto& row : rows) {
        Record* capabilities = all.append();
        if (capabilities == nullptr)
            return -1;
        std::snprintf(capabilities->InstanceID, sizeof capabilities->InstanceID,
                      "EnabledLogicalElementCapabilities:%s", row.name);
        std::snprintf(capabilities->ElementName, sizeof capabilities->ElementName, "%s State Capabilities",
                      row.elements);
        capabilities->RequestedStatesSupported = row.states;
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_EnabledLogicalElementCapabilities",
                                             .superclass = "CIM_Capabilities",
                                             .source = "a fixed instance for each class",
                                             .keys = g_EnabledLogicalElementCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::enabled_logical_element_capabilities

PH_EXPORT_CLASS_FAMILY(EnabledLogicalElementCapabilities, EnabledLogicalElementCapabilitiesRecord,
                       ph::enabled_logical_element_capabilities::definition)
