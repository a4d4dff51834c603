// Which elements are associated. A new association is a row here, and for a new class a declaration beside
// it.
#include "associations/association_classes.h"
#include "associations/packed_rows.h"
#include "associations/profiles.h"
#include "associations/relations.h"
#include "associations/row_values.h"

namespace associations {
namespace {

constexpr const char* host = "CIM_HostComputerSystem";
constexpr const char* processor = "CIM_SPComputerSystem";

constexpr Elements lastingBoot("CIM_BootConfigSetting", "InstanceID", "BootConfigSetting-Persistent");
constexpr Elements nextBoot("CIM_BootConfigSetting", "InstanceID", "BootConfigSetting-Once");

constexpr Meeting onSystem = same("Name", "SystemName");
constexpr Meeting assetCapabilities = related("Tag", "InstanceID", hasCapabilities);
constexpr Meeting serviceCapabilities = related("Name", "InstanceID", hasCapabilities);

// A sensor's description ends with the name of the entity that it watches, and a device is named so.
constexpr Meeting watching = related("Description", "ElementName", sensorWatches);
constexpr Meeting watchingModule = related("Description", "Description", sensorWatches);
constexpr Meeting watchingMemory = related("Description", "ElementName", sensorWatchesMemory);
// A redundancy set lists the DeviceIDs of its members.
constexpr Meeting havingMember = related("VendorIdentifyingInfo", "DeviceID", listsMember);

// Clients of a network, their settings, and gateways and servers are of an IP version of a LAN, as IP endpoints are.
constexpr const char* ipEndpoint = "CIM_IPProtocolEndpoint";
constexpr const char* dhcpEndpoint = "CIM_DHCPProtocolEndpoint";
constexpr const char* dnsEndpoint = "CIM_DNSProtocolEndpoint";
constexpr const char* remotePoint = "CIM_RemoteServiceAccessPoint";
constexpr Meeting onSameAddress = related("Name", "Name", shareAddress);
constexpr Meeting settingOfAddress = related("Name", "InstanceID", shareAddress);
constexpr Elements gateways(remotePoint, "AccessContext", "2");
constexpr Elements dnsServers(remotePoint, "AccessContext", "3");
constexpr Elements dhcpServers(remotePoint, "AccessContext", "6");

// Tags and DeviceIDs begin with the IPMI entity.
constexpr Meeting realizing = related("Tag", "DeviceID", realizesDevice);

// A slot's description ends with the tag of what is in it, that of a PCI device with the tag of what it is on.
constexpr Meeting holding = related("Description", "Tag", endsWithTag);
constexpr Meeting carrying = related("Tag", "Description", isTagAtEnd);

// Services and capabilities of the host and the service processor are told apart by how their names begin.
constexpr Elements hostPowerService("CIM_PowerManagementService", "Name", "Host ");
constexpr Elements processorPowerService("CIM_PowerManagementService", "Name", "SP ");
constexpr Elements hostPowerCapabilities("CIM_PowerManagementCapabilities", "InstanceID", "Host");
constexpr Elements processorPowerCapabilities("CIM_PowerManagementCapabilities", "InstanceID", "SP");

// Tags of physical elements begin with their IPMI entity: 23 is the system chassis, 24 a part of it.
constexpr Elements systemChassis("CIM_Chassis", "Tag", "23.");
constexpr Elements subChassis("CIM_Chassis", "Tag", "24.");
constexpr const char* operatingSystem = "CIM_OperatingSystem";
constexpr Elements runningSystem(operatingSystem, "EnabledState", "2"); // enabled
constexpr Elements processorFirmware("CIM_SoftwareIdentity", "InstanceID", "IPMI:BMC ");
constexpr Elements keptImages("CIM_SoftwareIdentity", "InstanceID", "IPMI:Image ");
constexpr Elements hostFirmware("CIM_SoftwareIdentity", "InstanceID", "IPMI:System ");
constexpr const char* indicationService = "CIM_IndicationService";
constexpr const char* tcpEndpoint = "CIM_TCPProtocolEndpoint";
constexpr Elements sshService("CIM_ProtocolService", "Name", "SSH");
constexpr Elements telnetService("CIM_ProtocolService", "Name", "Telnet");
constexpr Elements clpService("CIM_ProtocolService", "Name", "CLP");
constexpr Elements sshPorts(tcpEndpoint, "Name", "TCPProtocolEndpoint-ssh-");
constexpr Elements telnetPorts(tcpEndpoint, "Name", "TCPProtocolEndpoint-telnet-");

constexpr const char* roleService = "CIM_RoleBasedAuthorizationService";
constexpr const char* textService = "CIM_TextRedirectionService";
constexpr const char* textAccessPoint = "CIM_TextRedirectionSAP";
constexpr const char* kvmAccessPoint = "CIM_KVMRedirectionSAP";
constexpr const char* mediaAccessPoint = "CIM_MediaRedirectionSAP";
constexpr const char* usbService = "CIM_USBRedirectionService";
constexpr const char* usbAccessPoint = "CIM_USBRedirectionSAP";
constexpr Elements kvmService("CIM_RedirectionService", "Name", "KVM");
constexpr Elements mediaService("CIM_RedirectionService", "Name", "Media");
constexpr Elements textCapabilities("CIM_RedirectionServiceCapabilities", "InstanceID", "Text");
constexpr Elements kvmCapabilities("CIM_RedirectionServiceCapabilities", "InstanceID", "KVM");
// Access points are named after the service of the BMC that switches them.
constexpr Meeting switching = related("Name", "Name", serviceHasAccessPoint);
constexpr Meeting listening = related("Name", "Name", portIsOfAccessPoint);
constexpr const char* installationService = "CIM_SoftwareInstallationService";

// A system has a collection of each kind (DSP1006).
constexpr Elements collections(const char* prefix) {
    return {"CIM_ConcreteCollection", "InstanceID", prefix};
}
constexpr Elements hostCapabilities = collections("ConcreteCollection:Host Capabilities");
constexpr Elements hostSensors = collections("ConcreteCollection:Host Sensors");
constexpr Elements hostSettings = collections("ConcreteCollection:Host Settings");
constexpr Elements processorCapabilities = collections("ConcreteCollection:SP Capabilities");
constexpr Elements processorSettings = collections("ConcreteCollection:SP Settings");

// What states the elements of a class have to offer.
constexpr Elements stateCapabilities(const char* instanceId) {
    return {"CIM_EnabledLogicalElementCapabilities", "InstanceID", instanceId};
}
#define STATES(name) stateCapabilities("EnabledLogicalElementCapabilities:" name)

constexpr Meeting runningJob = related("Name", "ElementName", serviceRunsJob);
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
    {&systemDevice, {host, "CIM_Fan"}, onSystem},
    {&systemDevice, {host, "CIM_PowerSupply"}, onSystem},
    {&systemDevice, {host, "CIM_Processor"}, onSystem},
    {&systemDevice, {host, "CIM_Memory"}, onSystem},
    {&systemDevice, {host, "CIM_PCIDevice"}, onSystem},
    {&systemDevice, {host, "CIM_Watchdog"}, onSystem},
    {&systemDevice, {processor, "CIM_EthernetPort"}, onSystem},
    {&systemDevice, {processor, "CIM_PortController"}, onSystem},

    {&container, {systemChassis, subChassis}},
    {&container, {systemChassis, "CIM_Card"}},
    {&container, {systemChassis, "CIM_Chip"}},
    {&container, {systemChassis, "CIM_PhysicalPackage"}},
    {&container, {systemChassis, "CIM_PhysicalMemory"}},
    {&container, {systemChassis, "CIM_Slot"}},
    {&container, {systemChassis, "CIM_PhysicalConnector"}},
    {&computerSystemPackage, {systemChassis, host}},
    {&realizes, {"CIM_PhysicalPackage", "CIM_Fan"}, realizing},
    {&realizes, {"CIM_PhysicalPackage", "CIM_PowerSupply"}, realizing},
    {&realizes, {"CIM_Chip", "CIM_Processor"}, realizing},
    {&realizes, {"CIM_PhysicalMemory", "CIM_Memory"}},
    {&realizes, {"CIM_Card", "CIM_PCIDevice"}, carrying},
    {&elementInConnector, {"CIM_Slot", "CIM_Chip"}, holding},
    {&elementInConnector, {"CIM_Slot", "CIM_PhysicalMemory"}, holding},
    {&elementInConnector, {"CIM_Slot", "CIM_Card"}, holding},
    {&elementInConnector, {"CIM_Slot", "CIM_PhysicalPackage"}, holding},
    {&concreteComponent, {"CIM_Processor", "CIM_ProcessorCore"}, related("DeviceID", "InstanceID", isCoreOf)},
    {&associatedProcessorMemory, {"CIM_Memory", "CIM_Processor"}},

    {&associatedSensor, {"CIM_NumericSensor", host}, same("SystemName", "Name")},
    {&associatedSensor, {"CIM_Sensor", host}, same("SystemName", "Name")},
    {&associatedSensor, {"CIM_NumericSensor", "CIM_Fan"}, watching},
    {&associatedSensor, {"CIM_Sensor", "CIM_Fan"}, watching},
    {&associatedSensor, {"CIM_NumericSensor", "CIM_PowerSupply"}, watching},
    {&associatedSensor, {"CIM_Sensor", "CIM_PowerSupply"}, watching},
    {&associatedSensor, {"CIM_NumericSensor", "CIM_Processor"}, watching},
    {&associatedSensor, {"CIM_Sensor", "CIM_Processor"}, watching},
    {&associatedSensor, {"CIM_NumericSensor", "CIM_Memory"}, watchingMemory},
    {&associatedSensor, {"CIM_Sensor", "CIM_Memory"}, watchingMemory},
    {&associatedSensor, {"CIM_NumericSensor", "CIM_PhysicalMemory"}, watchingModule},
    {&associatedSensor, {"CIM_Sensor", "CIM_PhysicalMemory"}, watchingModule},

    {&owningCollectionElement, {host, "CIM_RedundancySet"}},
    {&hostedCollection, {host, "CIM_RedundancySet"}},
    {&memberOfCollection, {"CIM_RedundancySet", "CIM_Fan"}, havingMember},
    {&memberOfCollection, {"CIM_RedundancySet", "CIM_PowerSupply"}, havingMember},

    {&owningCollectionElement, {host, collections("ConcreteCollection:Host ")}},
    {&owningCollectionElement, {processor, collections("ConcreteCollection:SP ")}},
    {&memberOfCollection, {hostSensors, "CIM_NumericSensor"}},
    {&memberOfCollection, {hostSensors, "CIM_Sensor"}},
    {&memberOfCollection, {hostCapabilities, "CIM_BootServiceCapabilities"}},
    {&memberOfCollection, {hostCapabilities, "CIM_PhysicalAssetCapabilities"}},
    {&memberOfCollection, {hostCapabilities, hostPowerCapabilities}},
    {&memberOfCollection, {hostCapabilities, STATES("Host")}},
    {&memberOfCollection, {hostCapabilities, STATES("OS")}},
    {&memberOfCollection, {hostCapabilities, STATES("Watchdog")}},
    {&memberOfCollection, {processorCapabilities, STATES("SP")}},
    {&memberOfCollection, {processorCapabilities, STATES("Port")}},
    {&memberOfCollection, {processorCapabilities, STATES("DHCP")}},
    {&memberOfCollection, {processorCapabilities, STATES("Account")}},
    {&memberOfCollection, {processorCapabilities, STATES("Redirection")}},
    {&memberOfCollection, {hostSettings, "CIM_BootConfigSetting"}},
    {&memberOfCollection, {hostSettings, "CIM_BootSourceSetting"}},
    {&memberOfCollection, {collections("ConcreteCollection:SP Consoles"), textAccessPoint}},
    {&memberOfCollection, {collections("ConcreteCollection:SP Logs"), "CIM_RecordLog"}},
    {&memberOfCollection, {processorCapabilities, "CIM_AccountManagementCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_CLPCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_DHCPCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_IndicationServiceCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_MediaRedirectionCapabilities"}},
    {&memberOfCollection, {processorCapabilities, processorPowerCapabilities}},
    {&memberOfCollection, {processorCapabilities, "CIM_ProtocolServiceCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_RecordLogCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_RedirectionServiceCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_RoleBasedManagementCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_SoftwareInstallationServiceCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_SSHCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_TelnetCapabilities"}},
    {&memberOfCollection, {processorCapabilities, "CIM_USBRedirectionCapabilities"}},
    {&memberOfCollection, {processorSettings, "CIM_CLPSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_DHCPSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_DNSGeneralSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_DNSSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_IndicationServiceSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_IPAssignmentSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_SSHSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_StaticIPAssignmentSettingData"}},
    {&memberOfCollection, {processorSettings, "CIM_TelnetSettingData"}},

    {&owningCollectionElement, {processor, "CIM_Role"}},
    {&memberOfCollection, {"CIM_Role", "CIM_Identity"}, related("Name", "Description", isRoleOf)},
    {&memberOfCollection, {"CIM_Role", "CIM_Privilege"}, same("ElementName", "ElementName")},
    {&roleLimitedToTarget, {"CIM_Role", processor}},
    {&assignedIdentity, {"CIM_Identity", "CIM_Account"}, related("InstanceID", "Name", isIdentityOf)},
    {&identityContext, {"CIM_Identity", processor}},
    {&concreteDependency, {roleService, "CIM_Privilege"}},
    {&serviceServiceDependency, {"CIM_AccountManagementService", roleService}},

    {&hostedService, {processor, "CIM_PowerManagementService"}, onSystem},
    {&hostedService, {processor, "CIM_AccountManagementService"}, onSystem},
    {&hostedService, {processor, "CIM_BootService"}, onSystem},
    {&hostedService, {processor, "CIM_IPConfigurationService"}, onSystem},
    {&hostedService, {processor, "CIM_ProtocolService"}, onSystem},
    {&hostedService, {processor, roleService}, onSystem},
    {&hostedService, {processor, "CIM_TimeService"}, onSystem},
    {&hostedService, {processor, installationService}, onSystem},
    {&hostedService, {processor, indicationService}, onSystem},
    {&hostedService, {processor, textService}, onSystem},
    {&hostedService, {processor, "CIM_RedirectionService"}, onSystem},
    {&hostedService, {processor, usbService}, onSystem},

    {&serviceAffectsElement, {"CIM_Account", "CIM_AccountManagementService"}, every, manages},
    {&serviceAffectsElement, {"CIM_Identity", "CIM_AccountManagementService"}, every, manages},
    {&serviceAffectsElement, {"CIM_Identity", roleService}, every, manages},
    {&serviceAffectsElement, {"CIM_Role", roleService}, every, manages},
    {&serviceAffectsElement, {ipEndpoint, "CIM_IPConfigurationService"}, every, manages},
    {&serviceAffectsElement, {host, "CIM_BootService"}, every, manages},
    {&serviceAffectsElement, {host, textService}, every, manages},
    {&serviceAffectsElement, {host, "CIM_RedirectionService"}, every, manages},
    {&serviceAffectsElement, {host, usbService}, every, manages},

    {&serviceAffectsElement, {processor, "CIM_TimeService"}, same("Name", "SystemName"), manages},
    {&serviceAffectsElement, {processor, installationService}, same("Name", "SystemName"), manages},
    {&serviceAffectsElement, {processorFirmware, installationService}, every, manages},
    {&serviceAffectsElement, {keptImages, installationService}, every, manages},
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
    {&elementCapabilities, {roleService, "CIM_RoleBasedManagementCapabilities"}},
    {&elementCapabilities, {"CIM_RecordLog", "CIM_RecordLogCapabilities"}},
    {&elementCapabilities, {"CIM_Chassis", "CIM_PhysicalAssetCapabilities"}, assetCapabilities},
    {&elementCapabilities, {"CIM_Card", "CIM_PhysicalAssetCapabilities"}, assetCapabilities},
    {&elementCapabilities, {"CIM_Chip", "CIM_PhysicalAssetCapabilities"}, assetCapabilities},
    {&elementCapabilities, {"CIM_PhysicalPackage", "CIM_PhysicalAssetCapabilities"}, assetCapabilities},
    {&elementCapabilities, {"CIM_PhysicalMemory", "CIM_PhysicalAssetCapabilities"}, assetCapabilities},
    {&elementCapabilities, {"CIM_Slot", "CIM_PhysicalAssetCapabilities"}, assetCapabilities},
    {&elementCapabilities, {"CIM_PhysicalConnector", "CIM_PhysicalAssetCapabilities"}, assetCapabilities},
    {&elementCapabilities, {"CIM_BootService", "CIM_BootServiceCapabilities"}},
    {&elementCapabilities, {host, STATES("Host")}},
    {&elementCapabilities, {"CIM_PhysicalComputerSystemView", STATES("Host")}},
    {&elementCapabilities, {operatingSystem, STATES("OS")}},
    {&elementCapabilities, {"CIM_Watchdog", STATES("Watchdog")}},
    {&elementCapabilities, {processor, STATES("SP")}},
    {&elementCapabilities, {"CIM_EthernetPort", STATES("Port")}},
    {&elementCapabilities, {dhcpEndpoint, STATES("DHCP")}},
    {&elementCapabilities, {"CIM_Account", STATES("Account")}},
    {&elementCapabilities, {kvmAccessPoint, STATES("Redirection")}},
    {&elementCapabilities, {mediaAccessPoint, STATES("Redirection")}},
    {&elementCapabilities, {usbAccessPoint, STATES("Redirection")}},
    {&elementCapabilities, {installationService, "CIM_SoftwareInstallationServiceCapabilities"}},
    {&elementCapabilities, {indicationService, "CIM_IndicationServiceCapabilities"}},
    {&elementCapabilities, {"CIM_ProtocolService", "CIM_ProtocolServiceCapabilities"}, serviceCapabilities},
    {&elementCapabilities, {"CIM_ProtocolService", "CIM_SSHCapabilities"}, serviceCapabilities},
    {&elementCapabilities, {"CIM_ProtocolService", "CIM_TelnetCapabilities"}, serviceCapabilities},
    {&elementCapabilities, {"CIM_ProtocolService", "CIM_CLPCapabilities"}, serviceCapabilities},
    {&elementCapabilities, {dhcpEndpoint, "CIM_DHCPCapabilities"}},
    {&elementCapabilities, {textService, textCapabilities}},
    {&elementCapabilities, {kvmService, kvmCapabilities}},
    {&elementCapabilities, {mediaService, "CIM_MediaRedirectionCapabilities"}},
    {&elementCapabilities, {usbService, "CIM_USBRedirectionCapabilities"}},

    {&elementView, {host, "CIM_PhysicalComputerSystemView"}},
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
    {&owningJobElement, {"CIM_PowerManagementService", "CIM_ConcreteJob"}, runningJob},
    {&owningJobElement, {"CIM_ProtocolService", "CIM_ConcreteJob"}, runningJob},
    {&owningJobElement,
     {"CIM_EthernetPort", "CIM_ConcreteJob"},
     related("DeviceID", "ElementName", portRunsJob)},
    {&owningJobElement, {dhcpEndpoint, "CIM_ConcreteJob"}, related("Name", "ElementName", dhcpRunsJob)},
    {&owningJobElement, {"CIM_IPConfigurationService", jobs("ApplySettingToIPProtocolEndpoint")}},
    {&owningJobElement, {"CIM_BootService", jobs("SetBootConfigRole")}},
    {&owningJobElement, {installationService, jobs("InstallFrom")}},
    {&owningJobElement,
     {"CIM_BootConfigSetting", "CIM_ConcreteJob"},
     related("InstanceID", "ElementName", serviceRunsJob)},
    {&owningJobElement, {"CIM_Watchdog", jobs("Watchdog_")}},
    {&owningJobElement, {"CIM_PhysicalComputerSystemView", jobs("View_")}},
    {&owningJobElement, {operatingSystem, jobs("OperatingSystem_")}},
    {&owningJobElement, {textService, "CIM_ConcreteJob"}, runningJob},
    {&owningJobElement, {kvmAccessPoint, "CIM_ConcreteJob"}, runningJob},
    {&owningJobElement, {mediaAccessPoint, "CIM_ConcreteJob"}, runningJob},
    {&owningJobElement, {usbAccessPoint, "CIM_ConcreteJob"}, runningJob},

    {&affectedJobElement, {host, jobs("Host_")}, every, disturbsElement},
    {&affectedJobElement, {host, jobs("Host ")}, every, disturbsElement},
    {&affectedJobElement, {operatingSystem, jobs("OperatingSystem_")}, every, disturbsElement},
    {&affectedJobElement, {processor, jobs("SP_")}, every, disturbsElement},
    {&affectedJobElement, {processor, jobs("SP ")}, every, disturbsElement},
    {&affectedJobElement, {"CIM_ProtocolService", "CIM_ConcreteJob"}, runningJob, disturbsElement},
    {&affectedJobElement,
     {"CIM_EthernetPort", "CIM_ConcreteJob"},
     related("DeviceID", "ElementName", portRunsJob),
     disturbsElement},
    {&affectedJobElement,
     {dhcpEndpoint, "CIM_ConcreteJob"},
     related("Name", "ElementName", dhcpRunsJob),
     disturbsElement},
    {&affectedJobElement,
     {"CIM_BootConfigSetting", "CIM_ConcreteJob"},
     related("InstanceID", "ElementName", serviceRunsJob),
     altersElement},
    {&affectedJobElement, {"CIM_BootConfigSetting", jobs("SetBootConfigRole")}, every, altersElement},
    {&affectedJobElement, {"CIM_BootConfigSetting", jobs("View_")}, every, altersElement},
    {&affectedJobElement, {"CIM_Watchdog", jobs("Watchdog_")}, every, disturbsElement},
    {&affectedJobElement, {textService, "CIM_ConcreteJob"}, runningJob, disturbsElement},
    {&affectedJobElement, {kvmAccessPoint, "CIM_ConcreteJob"}, runningJob, disturbsElement},
    {&affectedJobElement, {mediaAccessPoint, "CIM_ConcreteJob"}, runningJob, disturbsElement},
    {&affectedJobElement, {usbAccessPoint, "CIM_ConcreteJob"}, runningJob, disturbsElement},
    {&affectedJobElement, {processor, jobs("InstallFrom")}, every, disturbsElement},

    {&hostedAccessPoint, {processor, "CIM_LANEndpoint"}, onSystem},
    {&hostedAccessPoint, {processor, ipEndpoint}, onSystem},
    {&hostedAccessPoint, {processor, tcpEndpoint}, onSystem},
    {&hostedAccessPoint, {processor, "CIM_SSHProtocolEndpoint"}, onSystem},
    {&hostedAccessPoint, {processor, "CIM_TelnetProtocolEndpoint"}, onSystem},
    {&hostedAccessPoint, {processor, "CIM_CLPProtocolEndpoint"}, onSystem},
    {&hostedAccessPoint, {processor, dhcpEndpoint}, onSystem},
    {&hostedAccessPoint, {processor, dnsEndpoint}, onSystem},
    {&hostedAccessPoint, {processor, remotePoint}, onSystem},
    {&providesEndpoint, {sshService, "CIM_SSHProtocolEndpoint"}},
    {&providesEndpoint, {telnetService, "CIM_TelnetProtocolEndpoint"}},
    {&providesEndpoint, {clpService, "CIM_CLPProtocolEndpoint"}},
    {&serviceAccessBySap,
     {"CIM_ProtocolService", tcpEndpoint},
     related("OtherProtocol", "Name", serviceListensAt)},
    {&hostedAccessPoint, {processor, textAccessPoint}, onSystem},
    {&hostedAccessPoint, {processor, kvmAccessPoint}, onSystem},
    {&hostedAccessPoint, {processor, mediaAccessPoint}, onSystem},
    {&hostedAccessPoint, {processor, usbAccessPoint}, onSystem},
    {&serviceAccessBySap, {textService, textAccessPoint}},
    {&serviceAccessBySap, {kvmService, kvmAccessPoint}},
    {&serviceAccessBySap, {mediaService, mediaAccessPoint}},
    {&serviceAccessBySap, {usbService, usbAccessPoint}},
    {&serviceAccessBySap, {"CIM_ProtocolService", kvmAccessPoint}, switching},
    {&serviceAccessBySap, {"CIM_ProtocolService", mediaAccessPoint}, switching},
    {&serviceAccessBySap, {"CIM_ProtocolService", usbAccessPoint}, switching},
    {&sapAvailableForElement, {textAccessPoint, host}},
    {&sapAvailableForElement, {kvmAccessPoint, host}},
    {&sapAvailableForElement, {mediaAccessPoint, host}},
    {&sapAvailableForElement, {usbAccessPoint, host}},
    {&deviceSapImplementation,
     {"CIM_EthernetPort", "CIM_LANEndpoint"},
     related("DeviceID", "Name", portHasLanEndpoint)},
    {&bindsTo, {"CIM_LANEndpoint", ipEndpoint}, related("Name", "Name", lanEndpointCarriesIp)},
    {&bindsTo, {ipEndpoint, tcpEndpoint}},
    {&bindsTo, {tcpEndpoint, kvmAccessPoint}, listening},
    {&bindsTo, {tcpEndpoint, mediaAccessPoint}, listening},
    {&bindsTo, {tcpEndpoint, usbAccessPoint}, listening},
    {&bindsTo, {sshPorts, "CIM_SSHProtocolEndpoint"}},
    {&bindsTo, {telnetPorts, "CIM_TelnetProtocolEndpoint"}},
    {&bindsTo, {ipEndpoint, dhcpEndpoint}, onSameAddress},
    {&bindsTo, {ipEndpoint, dnsEndpoint}, onSameAddress},
    {&remoteAccessAvailableToElement, {gateways, ipEndpoint}, onSameAddress, isDefaultAccess},
    {&remoteAccessAvailableToElement, {dnsServers, dnsEndpoint}, onSameAddress, isDefaultAccess},
    {&remoteAccessAvailableToElement, {dhcpServers, dhcpEndpoint}, onSameAddress, isDefaultAccess},
    {&controlledBy, {"CIM_PortController", "CIM_EthernetPort"}, same("SystemName", "SystemName")},
    {&elementSettingData, {ipEndpoint, "CIM_IPAssignmentSettingData"}, every, addressSetting},
    {&elementSettingData, {ipEndpoint, "CIM_DHCPSettingData"}, settingOfAddress, addressSetting},
    {&elementSettingData, {dhcpEndpoint, "CIM_DHCPSettingData"}, settingOfAddress, clientSetting},
    {&elementSettingData, {dnsEndpoint, "CIM_DNSSettingData"}, settingOfAddress, clientSetting},
    {&elementSettingData, {dnsEndpoint, "CIM_DNSGeneralSettingData"}, every, clientSetting},
    {&elementSettingData, {host, lastingBoot}, every, lastingBootUse},
    {&elementSettingData, {host, nextBoot}, every, nextBootUse},
    {&orderedComponent, {"CIM_BootConfigSetting", "CIM_BootSourceSetting"}, every, bootOrder},
    {&elementSettingData, {indicationService, "CIM_IndicationServiceSettingData"}, every, onlySetting},
    {&elementSettingData, {sshService, "CIM_SSHSettingData"}, every, onlySetting},
    {&elementSettingData, {"CIM_SSHProtocolEndpoint", "CIM_SSHSettingData"}, every, onlySetting},
    {&elementSettingData, {telnetService, "CIM_TelnetSettingData"}, every, onlySetting},
    {&elementSettingData, {clpService, "CIM_CLPSettingData"}, every, onlySetting},
    {&elementSettingData, {"CIM_TelnetProtocolEndpoint", "CIM_TelnetSettingData"}, every, onlySetting},
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
    {&elementConformsToProfile, {profile(fan), "CIM_Fan"}},
    {&elementConformsToProfile, {profile(powerSupply), "CIM_PowerSupply"}},
    {&elementConformsToProfile, {profile(physicalAsset), "CIM_Chassis"}},
    {&elementConformsToProfile, {profile(physicalAsset), "CIM_Card"}},
    {&elementConformsToProfile, {profile(physicalAsset), "CIM_Chip"}},
    {&elementConformsToProfile, {profile(physicalAsset), "CIM_PhysicalPackage"}},
    {&elementConformsToProfile, {profile(physicalAsset), "CIM_PhysicalMemory"}},
    {&elementConformsToProfile, {profile(physicalAsset), "CIM_Slot"}},
    {&elementConformsToProfile, {profile(physicalAsset), "CIM_PhysicalConnector"}},
    {&elementConformsToProfile, {profile(cpu), "CIM_Processor"}},
    {&elementConformsToProfile, {profile(systemMemory), "CIM_Memory"}},
    {&elementConformsToProfile, {profile(recordLog), "CIM_RecordLog"}},
    {&elementConformsToProfile, {profile(osStatus), operatingSystem}},
    {&elementConformsToProfile, {profile(ethernetPort), "CIM_EthernetPort"}},
    {&elementConformsToProfile, {profile(hostLanNetworkPort), "CIM_EthernetPort"}},
    {&elementConformsToProfile, {profile(ipInterface), ipEndpoint}},
    {&elementConformsToProfile, {profile(dhcpClient), dhcpEndpoint}},
    {&elementConformsToProfile, {profile(dnsClient), dnsEndpoint}},
    {&elementConformsToProfile, {profile(bootControl), "CIM_BootService"}},
    {&elementConformsToProfile, {profile(powerStateManagement), "CIM_PowerManagementService"}},
    {&elementConformsToProfile, {profile(simpleIdentityManagement), "CIM_AccountManagementService"}},
    {&elementConformsToProfile, {profile(roleBasedAuthorization), roleService}},
    {&elementConformsToProfile, {profile(softwareInventory), "CIM_SoftwareIdentity"}},
    {&elementConformsToProfile, {profile(textConsoleRedirection), textService}},
    {&elementConformsToProfile, {profile(kvmRedirection), kvmService}},
    {&elementConformsToProfile, {profile(softwareUpdate), installationService}},
    {&referencedProfile, {profileClass, profileClass}, related("InstanceID", "InstanceID", isReferencedBy)},
};

} // namespace

std::span<const Row> rows() {
    static const std::vector<Row> unpacked = PackedRows<table>::unpack();
    return unpacked;
}

std::span<const AssociationClass* const> allAssociations() {
    return PackedRows<table>::classes;
}

} // namespace associations
