// Which elements are associated. A new association is a row here, and for a new class a declaration beside
// it.
#include "associations/association_classes.h"
#include "associations/profiles.h"
#include "associations/relations.h"

#include <string_view>

namespace associations {
namespace {

constexpr const char* host = "CIM_HostComputerSystem";
constexpr const char* processor = "CIM_SPComputerSystem";

template <std::uint64_t... values>
Numbers fixed(std::string_view, std::string_view) {
    return {values...};
}

// DMTF IsCurrent and IsNext: 1 it is, 2 it is not. An address comes from the setting with the same
// AddressOrigin, and what the BMC uses now it also uses after its next start.
Numbers usesSetting(std::string_view endpointOrigin, std::string_view settingOrigin) {
    return {endpointOrigin == settingOrigin ? 1U : 2U};
}

constexpr OwnValue manages[] = {{"ElementEffects", {}, fixed<5>}};
// The BMC that answers is on. What state was asked for is not recorded: 0, unknown.
constexpr OwnValue processorPower[] = {{"PowerState", {}, fixed<2>}, {"RequestedPowerState", {}, fixed<0>}};
constexpr OwnValue hostPower[] = {{"PowerState", {}, nullptr, Reading::HostPower},
                                  {"RequestedPowerState", {}, fixed<0>}};
// Which setting a BMC was delivered with is not known: 0.
constexpr OwnValue addressSetting[] = {{"IsDefault", {}, fixed<0>},
                                       {"IsCurrent", {"AddressOrigin", "AddressOrigin"}, usesSetting},
                                       {"IsNext", {"AddressOrigin", "AddressOrigin"}, usesSetting}};
// The service is set so now, and stays so. How it was delivered is not recorded.
constexpr OwnValue onlySetting[] = {
    {"IsDefault", {}, fixed<0>}, {"IsCurrent", {}, fixed<1>}, {"IsNext", {}, fixed<1>}};
constexpr OwnValue isPrimary[] = {{"PrimaryOS", {}, fixed<1>}};
constexpr OwnValue isInstalled[] = {{"ElementSoftwareStatus", {}, fixed<2, 6>}}; // current, installed
constexpr OwnValue firstOfSequence[] = {{"AssignedSequence", {}, fixed<1>}};

constexpr Meeting onSystem = same("Name", "SystemName");

// Services and capabilities of the host and the service processor are told apart by how their names begin.
constexpr Elements hostPowerService("CIM_PowerManagementService", "Name", "Host ");
constexpr Elements processorPowerService("CIM_PowerManagementService", "Name", "SP ");
constexpr Elements hostPowerCapabilities("CIM_PowerManagementCapabilities", "InstanceID", "Host");
constexpr Elements processorPowerCapabilities("CIM_PowerManagementCapabilities", "InstanceID", "SP");

constexpr const char* operatingSystem = "CIM_OperatingSystem";
constexpr Elements runningSystem(operatingSystem, "EnabledState", "2"); // enabled
constexpr Elements processorFirmware("CIM_SoftwareIdentity", "InstanceID", "IPMI:BMC ");
constexpr Elements hostFirmware("CIM_SoftwareIdentity", "InstanceID", "IPMI:System ");
constexpr const char* indicationService = "CIM_IndicationService";

// Jobs are named after the method that they run, and its class or service.
constexpr Elements jobs(const char* prefix) {
    return {"CIM_ConcreteJob", "ElementName", prefix};
}

constexpr Elements profile(const char* instanceId) {
    return {profileClass, "InstanceID", instanceId};
}

constexpr Row table[] = {
    {&systemComponent, {host, processor}},

    {&systemDevice, {host, "CIM_NumericSensor"}, onSystem},
    {&systemDevice, {host, "CIM_Sensor"}, onSystem},
    {&systemDevice, {processor, "CIM_EthernetPort"}, onSystem},
    {&systemDevice, {processor, "CIM_PortController"}, onSystem},

    {&associatedSensor, {"CIM_NumericSensor", host}, same("SystemName", "Name")},
    {&associatedSensor, {"CIM_Sensor", host}, same("SystemName", "Name")},

    {&hostedService, {processor, "CIM_PowerManagementService"}, onSystem},
    {&hostedService, {processor, "CIM_AccountManagementService"}, onSystem},
    {&hostedService, {processor, "CIM_IPConfigurationService"}, onSystem},
    {&hostedService, {processor, "CIM_ProtocolService"}, onSystem},
    {&hostedService, {processor, "CIM_TimeService"}, onSystem},
    {&hostedService, {processor, indicationService}, onSystem},

    {&serviceAffectsElement, {"CIM_Account", "CIM_AccountManagementService"}, every, manages},
    {&serviceAffectsElement, {"CIM_IPProtocolEndpoint", "CIM_IPConfigurationService"}, every, manages},

    {&serviceAffectsElement, {processor, "CIM_TimeService"}, same("Name", "SystemName"), manages},
    {&serviceAffectsElement, {"CIM_IndicationFilter", indicationService}, every, manages},
    {&serviceAffectsElement, {"CIM_ListenerDestinationCIMXML", indicationService}, every, manages},
    {&serviceAffectsElement, {"CIM_ListenerDestinationSMTP", indicationService}, every, manages},
    {&serviceAffectsElement, {"CIM_ListenerDestinationSNMP", indicationService}, every, manages},

    {&serviceAvailableToElement, {"CIM_ProtocolService", processor}, same("SystemName", "Name")},
    {&associatedPowerManagementService, {hostPowerService, host}, every, hostPower},
    {&associatedPowerManagementService, {processorPowerService, processor}, every, processorPower},

    {&elementCapabilities, {hostPowerService, hostPowerCapabilities}},
    {&elementCapabilities, {processorPowerService, processorPowerCapabilities}},
    {&elementCapabilities, {"CIM_AccountManagementService", "CIM_AccountManagementCapabilities"}},
    {&elementCapabilities, {"CIM_RecordLog", "CIM_RecordLogCapabilities"}},
    {&elementCapabilities, {indicationService, "CIM_IndicationServiceCapabilities"}},

    {&installedOs, {host, operatingSystem}, same("Name", "CSName"), isPrimary},
    {&runningOs, {runningSystem, host}, same("CSName", "Name")},
    {&elementSoftwareIdentity, {processorFirmware, processor}, every, isInstalled},
    {&elementSoftwareIdentity, {hostFirmware, host}, every, isInstalled},
    {&installedSoftwareIdentity, {processor, processorFirmware}},
    {&installedSoftwareIdentity, {host, hostFirmware}},

    {&useOfLog, {"CIM_RecordLog", processor}, containing("InstanceID", "Name")},
    {&logManagesRecord, {"CIM_RecordLog", "CIM_LogEntry"}, same("InstanceID", "LogInstanceID")},

    {&owningJobElement, {host, jobs("Host_")}},
    {&owningJobElement, {processor, jobs("SP_")}},
    {&owningJobElement,
     {"CIM_PowerManagementService", "CIM_ConcreteJob"},
     related("Name", "ElementName", serviceRunsJob)},
    {&owningJobElement,
     {"CIM_ProtocolService", "CIM_ConcreteJob"},
     related("Name", "ElementName", serviceRunsJob)},
    {&owningJobElement,
     {"CIM_EthernetPort", "CIM_ConcreteJob"},
     related("DeviceID", "ElementName", portRunsJob)},
    {&owningJobElement, {"CIM_IPConfigurationService", jobs("ApplySettingToIPProtocolEndpoint")}},
    {&owningJobElement, {operatingSystem, jobs("OperatingSystem_")}},

    {&affectedJobElement, {host, jobs("Host_")}},
    {&affectedJobElement, {host, jobs("Host ")}},
    {&affectedJobElement, {operatingSystem, jobs("OperatingSystem_")}},
    {&affectedJobElement, {processor, jobs("SP_")}},
    {&affectedJobElement, {processor, jobs("SP ")}},
    {&affectedJobElement,
     {"CIM_ProtocolService", "CIM_ConcreteJob"},
     related("Name", "ElementName", serviceRunsJob)},
    {&affectedJobElement,
     {"CIM_EthernetPort", "CIM_ConcreteJob"},
     related("DeviceID", "ElementName", portRunsJob)},

    {&hostedAccessPoint, {processor, "CIM_LANEndpoint"}, onSystem},
    {&hostedAccessPoint, {processor, "CIM_IPProtocolEndpoint"}, onSystem},
    {&deviceSapImplementation,
     {"CIM_EthernetPort", "CIM_LANEndpoint"},
     related("DeviceID", "Name", portHasLanEndpoint)},
    {&bindsTo, {"CIM_LANEndpoint", "CIM_IPProtocolEndpoint"}, related("Name", "Name", lanEndpointCarriesIp)},
    {&controlledBy, {"CIM_PortController", "CIM_EthernetPort"}, same("SystemName", "SystemName")},
    {&elementSettingData, {"CIM_IPProtocolEndpoint", "CIM_IPAssignmentSettingData"}, every, addressSetting},
    {&elementSettingData, {indicationService, "CIM_IndicationServiceSettingData"}, every, onlySetting},
    {&orderedComponent,
     {"CIM_IPAssignmentSettingData", "CIM_StaticIPAssignmentSettingData"},
     same("AddressOrigin", "AddressOrigin"),
     firstOfSequence},

    {&accountOnSystem, {processor, "CIM_Account"}, onSystem},

    {&elementConformsToProfile, {profile(profileRegistration), profileClass}},
    {&elementConformsToProfile, {profile(baseServer), host}},
    {&elementConformsToProfile, {profile(serviceProcessor), processor}},
    {&elementConformsToProfile, {profile(sensors), "CIM_NumericSensor"}},
    {&elementConformsToProfile, {profile(sensors), "CIM_Sensor"}},
    {&elementConformsToProfile, {profile(recordLog), "CIM_RecordLog"}},
    {&elementConformsToProfile, {profile(ethernetPort), "CIM_EthernetPort"}},
    {&elementConformsToProfile, {profile(hostLanNetworkPort), "CIM_EthernetPort"}},
    {&elementConformsToProfile, {profile(ipInterface), "CIM_IPProtocolEndpoint"}},
    {&elementConformsToProfile, {profile(powerStateManagement), "CIM_PowerManagementService"}},
    {&elementConformsToProfile, {profile(softwareInventory), "CIM_SoftwareIdentity"}},
    {&referencedProfile, {profileClass, profileClass}, related("InstanceID", "InstanceID", isReferencedBy)},
};

constexpr const AssociationClass* classes[] = {&systemComponent,
                                               &systemDevice,
                                               &accountOnSystem,
                                               &associatedSensor,
                                               &hostedService,
                                               &hostedAccessPoint,
                                               &serviceAffectsElement,
                                               &serviceAvailableToElement,
                                               &associatedPowerManagementService,
                                               &elementCapabilities,
                                               &elementSettingData,
                                               &orderedComponent,
                                               &useOfLog,
                                               &logManagesRecord,
                                               &owningJobElement,
                                               &affectedJobElement,
                                               &deviceSapImplementation,
                                               &bindsTo,
                                               &controlledBy,
                                               &installedOs,
                                               &runningOs,
                                               &elementSoftwareIdentity,
                                               &installedSoftwareIdentity,
                                               &elementConformsToProfile,
                                               &referencedProfile};

consteval bool everyClassIsListed() {
    for (const Row& row : table) {
        bool listed = false;
        for (const AssociationClass* each : classes)
            listed = listed || std::string_view(each->name) == row.associationClass->name;
        if (!listed)
            return false;
    }
    return true;
}
static_assert(everyClassIsListed());

} // namespace

std::span<const Row> rows() {
    return table;
}

std::span<const AssociationClass* const> allAssociations() {
    return classes;
}

} // namespace associations
