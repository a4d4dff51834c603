#include "class_list.h"

namespace ph {

extern constinit const ClassFamily family_Account;
extern constinit const ClassFamily family_AccountManagementCapabilities;
extern constinit const ClassFamily family_AccountManagementService;
extern constinit const ClassFamily family_ConcreteJob;
extern constinit const ClassFamily family_Error;
extern constinit const ClassFamily family_EthernetPort;
extern constinit const ClassFamily family_HostComputerSystem;
extern constinit const ClassFamily family_IPAssignmentSettingData;
extern constinit const ClassFamily family_IPConfigurationService;
extern constinit const ClassFamily family_IPProtocolEndpoint;
extern constinit const ClassFamily family_LANEndpoint;
extern constinit const ClassFamily family_IndicationFilter;
extern constinit const ClassFamily family_ListenerDestinationCIMXML;
extern constinit const ClassFamily family_ListenerDestinationSMTP;
extern constinit const ClassFamily family_ListenerDestinationSNMP;
extern constinit const ClassFamily family_LogEntry;
extern constinit const ClassFamily family_NumericSensor;
extern constinit const ClassFamily family_PortController;
extern constinit const ClassFamily family_PowerManagementCapabilities;
extern constinit const ClassFamily family_PowerManagementService;
extern constinit const ClassFamily family_ProtocolService;
extern constinit const ClassFamily family_RecordLog;
extern constinit const ClassFamily family_RecordLogCapabilities;
extern constinit const ClassFamily family_Sensor;
extern constinit const ClassFamily family_SPComputerSystem;
extern constinit const ClassFamily family_StaticIPAssignmentSettingData;

std::span<const ClassFamily* const> allClasses() {
    static constexpr const ClassFamily* classes[] = {
        &family_Account,
        &family_AccountManagementCapabilities,
        &family_AccountManagementService,
        &family_ConcreteJob,
        &family_Error,
        &family_EthernetPort,
        &family_HostComputerSystem,
        &family_IPAssignmentSettingData,
        &family_IPConfigurationService,
        &family_IPProtocolEndpoint,
        &family_LANEndpoint,
        &family_IndicationFilter,
        &family_ListenerDestinationCIMXML,
        &family_ListenerDestinationSMTP,
        &family_ListenerDestinationSNMP,
        &family_LogEntry,
        &family_NumericSensor,
        &family_PortController,
        &family_PowerManagementCapabilities,
        &family_PowerManagementService,
        &family_ProtocolService,
        &family_RecordLog,
        &family_RecordLogCapabilities,
        &family_Sensor,
        &family_SPComputerSystem,
        &family_StaticIPAssignmentSettingData,
    };
    return classes;
}

} // namespace ph
