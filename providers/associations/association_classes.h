// The association classes of the DMTF schema that are served.
#pragma once

#include "associations/association.h"

namespace associations {

inline constexpr AssociationClass systemComponent{
    "CIM_SystemComponent",
    "CIM_Component",
    {{"GroupComponent", "CIM_System"}, {"PartComponent", "CIM_ManagedSystemElement"}}};

inline constexpr AssociationClass systemDevice{
    "CIM_SystemDevice",
    "CIM_SystemComponent",
    {{"GroupComponent", "CIM_System"}, {"PartComponent", "CIM_LogicalDevice"}}};

inline constexpr AssociationClass accountOnSystem{
    "CIM_AccountOnSystem",
    "CIM_SystemComponent",
    {{"GroupComponent", "CIM_System"}, {"PartComponent", "CIM_Account"}}};

inline constexpr AssociationClass container{
    "CIM_Container",
    "CIM_Component",
    {{"GroupComponent", "CIM_PhysicalPackage"}, {"PartComponent", "CIM_PhysicalElement"}}};

inline constexpr AssociationClass computerSystemPackage{
    "CIM_ComputerSystemPackage",
    "CIM_SystemPackaging",
    {{"Antecedent", "CIM_PhysicalPackage"}, {"Dependent", "CIM_ComputerSystem"}}};

inline constexpr AssociationClass realizes{
    "CIM_Realizes",
    "CIM_Dependency",
    {{"Antecedent", "CIM_PhysicalElement"}, {"Dependent", "CIM_LogicalDevice"}}};

inline constexpr AssociationClass elementInConnector{
    "CIM_ElementInConnector",
    "CIM_Dependency",
    {{"Antecedent", "CIM_PhysicalConnector"}, {"Dependent", "CIM_PhysicalElement"}}};

inline constexpr AssociationClass concreteComponent{
    "CIM_ConcreteComponent",
    "CIM_Component",
    {{"GroupComponent", "CIM_ManagedElement"}, {"PartComponent", "CIM_ManagedElement"}}};

inline constexpr AssociationClass associatedProcessorMemory{
    "CIM_AssociatedProcessorMemory",
    "CIM_AssociatedMemory",
    {{"Antecedent", "CIM_Memory"}, {"Dependent", "CIM_Processor"}}};

inline constexpr AssociationClass associatedSensor{
    "CIM_AssociatedSensor",
    "CIM_Dependency",
    {{"Antecedent", "CIM_Sensor"}, {"Dependent", "CIM_ManagedSystemElement"}}};

// The indication service is in the interop namespace too, and with it what leads to it and from it.
inline constexpr AssociationClass hostedService{"CIM_HostedService",
                                                "CIM_HostedDependency",
                                                {{"Antecedent", "CIM_System"}, {"Dependent", "CIM_Service"}},
                                                {},
                                                Placement::Both};

inline constexpr AssociationClass hostedCollection{
    "CIM_HostedCollection",
    "CIM_HostedDependency",
    {{"Antecedent", "CIM_System"}, {"Dependent", "CIM_SystemSpecificCollection"}}};

inline constexpr AssociationClass memberOfCollection{
    "CIM_MemberOfCollection",
    nullptr,
    {{"Collection", "CIM_Collection"}, {"Member", "CIM_ManagedElement"}},
    {},
    Placement::Both};

inline constexpr AssociationClass roleLimitedToTarget{
    "CIM_RoleLimitedToTarget",
    nullptr,
    {{"DefiningRole", "CIM_Role"}, {"TargetElement", "CIM_ManagedElement"}}};

inline constexpr AssociationClass assignedIdentity{
    "CIM_AssignedIdentity",
    nullptr,
    {{"IdentityInfo", "CIM_Identity"}, {"ManagedElement", "CIM_ManagedElement"}}};

inline constexpr AssociationClass identityContext{
    "CIM_IdentityContext",
    nullptr,
    {{"ElementInContext", "CIM_Identity"}, {"ElementProvidingContext", "CIM_ManagedElement"}}};

inline constexpr AssociationClass concreteDependency{
    "CIM_ConcreteDependency",
    "CIM_Dependency",
    {{"Antecedent", "CIM_ManagedElement"}, {"Dependent", "CIM_ManagedElement"}}};

inline constexpr AssociationClass serviceServiceDependency{
    "CIM_ServiceServiceDependency",
    "CIM_Dependency",
    {{"Antecedent", "CIM_Service"}, {"Dependent", "CIM_Service"}}};

inline constexpr AssociationClass owningCollectionElement{
    "CIM_OwningCollectionElement",
    nullptr,
    {{"OwningElement", "CIM_ManagedElement"}, {"OwnedElement", "CIM_Collection"}}};

inline constexpr AssociationClass hostedAccessPoint{
    "CIM_HostedAccessPoint",
    "CIM_HostedDependency",
    {{"Antecedent", "CIM_System"}, {"Dependent", "CIM_ServiceAccessPoint"}}};

inline constexpr AssociationClass serviceAccessBySap{
    "CIM_ServiceAccessBySAP",
    "CIM_Dependency",
    {{"Antecedent", "CIM_Service"}, {"Dependent", "CIM_ServiceAccessPoint"}}};

inline constexpr AssociationClass providesEndpoint{
    "CIM_ProvidesEndpoint",
    "CIM_ServiceAccessBySAP",
    {{"Antecedent", "CIM_Service"}, {"Dependent", "CIM_ProtocolEndpoint"}}};

inline constexpr AssociationClass sapAvailableForElement{
    "CIM_SAPAvailableForElement",
    nullptr,
    {{"AvailableSAP", "CIM_ServiceAccessPoint"}, {"ManagedElement", "CIM_ManagedElement"}}};

inline constexpr Declaration effects[] = {{"ElementEffects", CMPI_uint16A}};
inline constexpr AssociationClass serviceAffectsElement{
    "CIM_ServiceAffectsElement",
    nullptr,
    {{"AffectedElement", "CIM_ManagedElement"}, {"AffectingElement", "CIM_Service"}},
    effects,
    Placement::Both};

inline constexpr AssociationClass serviceAvailableToElement{
    "CIM_ServiceAvailableToElement",
    nullptr,
    {{"ServiceProvided", "CIM_Service"}, {"UserOfService", "CIM_ManagedElement"}}};

inline constexpr Declaration powerStates[] = {{"PowerState", CMPI_uint16},
                                              {"RequestedPowerState", CMPI_uint16}};
inline constexpr AssociationClass associatedPowerManagementService{
    "CIM_AssociatedPowerManagementService",
    "CIM_ServiceAvailableToElement",
    {{"ServiceProvided", "CIM_PowerManagementService"}, {"UserOfService", "CIM_ManagedElement"}},
    powerStates};

inline constexpr AssociationClass elementCapabilities{
    "CIM_ElementCapabilities",
    nullptr,
    {{"ManagedElement", "CIM_ManagedElement"}, {"Capabilities", "CIM_Capabilities"}},
    {},
    Placement::Both};

inline constexpr Declaration settingUses[] = {
    {"IsDefault", CMPI_uint16}, {"IsCurrent", CMPI_uint16}, {"IsNext", CMPI_uint16}};
inline constexpr AssociationClass elementSettingData{
    "CIM_ElementSettingData",
    nullptr,
    {{"ManagedElement", "CIM_ManagedElement"}, {"SettingData", "CIM_SettingData"}},
    settingUses,
    Placement::Both};

inline constexpr Declaration sequence[] = {{"AssignedSequence", CMPI_uint64}};
inline constexpr AssociationClass orderedComponent{
    "CIM_OrderedComponent",
    "CIM_Component",
    {{"GroupComponent", "CIM_ManagedElement"}, {"PartComponent", "CIM_ManagedElement"}},
    sequence};

inline constexpr AssociationClass useOfLog{
    "CIM_UseOfLog", "CIM_Dependency", {{"Antecedent", "CIM_Log"}, {"Dependent", "CIM_ManagedSystemElement"}}};

inline constexpr AssociationClass logManagesRecord{
    "CIM_LogManagesRecord", nullptr, {{"Log", "CIM_Log"}, {"Record", "CIM_RecordForLog"}}};

inline constexpr AssociationClass owningJobElement{
    "CIM_OwningJobElement", nullptr, {{"OwningElement", "CIM_ManagedElement"}, {"OwnedElement", "CIM_Job"}}};

inline constexpr AssociationClass affectedJobElement{
    "CIM_AffectedJobElement",
    nullptr,
    {{"AffectedElement", "CIM_ManagedElement"}, {"AffectingElement", "CIM_Job"}},
    effects};

inline constexpr AssociationClass deviceSapImplementation{
    "CIM_DeviceSAPImplementation",
    "CIM_Dependency",
    {{"Antecedent", "CIM_LogicalDevice"}, {"Dependent", "CIM_ServiceAccessPoint"}}};

inline constexpr AssociationClass bindsTo{
    "CIM_BindsTo",
    "CIM_SAPSAPDependency",
    {{"Antecedent", "CIM_ProtocolEndpoint"}, {"Dependent", "CIM_ServiceAccessPoint"}}};

inline constexpr Declaration accessUse[] = {{"IsDefault", CMPI_boolean}};
inline constexpr AssociationClass remoteAccessAvailableToElement{
    "CIM_RemoteAccessAvailableToElement",
    "CIM_Dependency",
    {{"Antecedent", "CIM_RemoteServiceAccessPoint"}, {"Dependent", "CIM_EnabledLogicalElement"}},
    accessUse};

inline constexpr AssociationClass controlledBy{
    "CIM_ControlledBy",
    "CIM_DeviceConnection",
    {{"Antecedent", "CIM_Controller"}, {"Dependent", "CIM_LogicalDevice"}}};

inline constexpr AssociationClass runningOs{
    "CIM_RunningOS",
    "CIM_Dependency",
    {{"Antecedent", "CIM_OperatingSystem"}, {"Dependent", "CIM_ComputerSystem"}}};

inline constexpr Declaration primaryOs[] = {{"PrimaryOS", CMPI_boolean}};
inline constexpr AssociationClass installedOs{
    "CIM_InstalledOS",
    "CIM_SystemComponent",
    {{"GroupComponent", "CIM_ComputerSystem"}, {"PartComponent", "CIM_OperatingSystem"}},
    primaryOs};

inline constexpr Declaration softwareStatus[] = {{"ElementSoftwareStatus", CMPI_uint16A}};
inline constexpr AssociationClass elementSoftwareIdentity{
    "CIM_ElementSoftwareIdentity",
    "CIM_Dependency",
    {{"Antecedent", "CIM_SoftwareIdentity"}, {"Dependent", "CIM_ManagedElement"}},
    softwareStatus};

inline constexpr AssociationClass installedSoftwareIdentity{
    "CIM_InstalledSoftwareIdentity",
    nullptr,
    {{"System", "CIM_System"}, {"InstalledSoftware", "CIM_SoftwareIdentity"}}};

inline constexpr AssociationClass elementView{
    "CIM_ElementView", "CIM_Dependency", {{"Antecedent", "CIM_ManagedElement"}, {"Dependent", "CIM_View"}}};

inline constexpr AssociationClass elementConformsToProfile{
    "CIM_ElementConformsToProfile",
    nullptr,
    {{"ConformantStandard", "CIM_RegisteredProfile"}, {"ManagedElement", "CIM_ManagedElement"}},
    {},
    Placement::Both};

inline constexpr AssociationClass referencedProfile{
    "CIM_ReferencedProfile",
    "CIM_ReferencedSpecification",
    {{"Antecedent", "CIM_RegisteredProfile"}, {"Dependent", "CIM_RegisteredProfile"}},
    {},
    Placement::Interop};

} // namespace associations
