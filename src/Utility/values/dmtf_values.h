// Values of DMTF value maps (CIM schema 2.41), a namespace for each property.
#pragma once

#include <cstdint>

namespace ph {

namespace EnabledState { // CIM_EnabledLogicalElement
enum : std::uint16_t {
    Unknown = 0,
    Enabled = 2,
    Disabled = 3,
    ShuttingDown = 4,
    NotApplicable = 5,
    EnabledButOffline = 6,
    Quiesce = 9
};
}
namespace RequestedState { // CIM_EnabledLogicalElement
enum : std::uint16_t { Unknown = 0, Enabled = 2, Disabled = 3, ShutDown = 4, Reset = 11, NotApplicable = 12 };
}
namespace HealthState { // CIM_ManagedSystemElement
enum : std::uint16_t { Unknown = 0, OK = 5, Degraded = 10, MajorFailure = 20, CriticalFailure = 25 };
}
namespace OperationalStatus { // CIM_ManagedSystemElement
enum : std::uint16_t {
    Unknown = 0,
    OK = 2,
    Error = 6,
    Stopping = 9,
    Stopped = 10,
    InService = 11,
    NoContact = 12,
    Completed = 17
};
}
namespace Availability { // CIM_LogicalDevice
enum : std::uint16_t { Unknown = 2, Running = 3, OffLine = 8, Degraded = 10, NotInstalled = 11 };
}
namespace CPUStatus { // CIM_Processor
enum : std::uint16_t { Unknown = 0, Enabled = 1, DisabledByUser = 2, DisabledByFirmware = 3, Idle = 4 };
}
namespace Family { // CIM_Processor
enum : std::uint16_t { Other = 1, Unknown = 2 };
}
namespace UpgradeMethod { // CIM_Processor
enum : std::uint16_t { Unknown = 2 };
}
namespace RedundancyStatus { // CIM_RedundancySet
enum : std::uint16_t { Unknown = 0, FullyRedundant = 2, Degraded = 3, Lost = 4, OverallFailure = 5 };
}
namespace TypeOfSet { // CIM_RedundancySet
enum : std::uint16_t { NPlus1 = 2 };
}
namespace JobState { // CIM_ConcreteJob
enum : std::uint16_t { Running = 4, Completed = 7, Exception = 10 };
}
namespace PowerState { // CIM_PowerManagementService.RequestPowerStateChange
enum : std::uint16_t {
    Other = 1,
    On = 2,
    SleepLight = 3,
    SleepDeep = 4,
    PowerCycleOffSoft = 5,
    OffHard = 6,
    Hibernate = 7,
    OffSoft = 8,
    PowerCycleOffHard = 9,
    MasterBusReset = 10,
    DiagnosticInterrupt = 11
};
}
namespace Dedicated { // CIM_ComputerSystem
enum : std::uint16_t { NotDedicated = 0, ManagementController = 28 };
}

namespace BootRole { // CIM_BootService.SetBootConfigRole
enum : std::uint16_t { IsNext = 0, IsNextSingleUse = 1, IsDefault = 2 };
}
namespace BootConfigCapabilities { // CIM_BootServiceCapabilities
enum : std::uint16_t { SetsBootRole = 4 };
}
namespace BootStringsSupported { // CIM_BootServiceCapabilities
enum : std::uint16_t { StructuredBootString = 4 };
}
namespace ChangeableType { // CIM_SettingData
enum : std::uint16_t { Transient = 1, Persistent = 2 };
}
namespace FailThroughSupported { // CIM_BootSourceSetting
enum : std::uint16_t { Unknown = 0 };
}
namespace MonitoredEntity { // CIM_Watchdog
enum : std::uint16_t { Unknown = 0, Other = 1, OperatingSystem = 2, OperatingSystemBoot = 3, BiosBoot = 6 };
}
namespace ActionOnExpiration { // CIM_Watchdog
enum : std::uint16_t {
    None = 0,
    SystemReset = 1,
    SystemPowerOff = 2,
    SystemPowerCycle = 3,
    NonMaskableInterrupt = 4,
    SystemManagementInterrupt = 5
};
}

namespace ErrorType { // CIM_Error
enum : std::uint16_t { Unknown = 0, Communications = 2, Software = 4, Hardware = 5 };
}
namespace ErrorSourceFormat { // CIM_Error
enum : std::uint16_t { Unknown = 0 };
}
namespace PerceivedSeverity { // CIM_Error
enum : std::uint16_t { DegradedOrWarning = 3 };
}
namespace ProbableCause { // CIM_Error
enum : std::uint16_t { Unknown = 0 };
}

namespace LogState { // CIM_RecordLog
enum : std::uint16_t { Normal = 2, NotApplicable = 4 };
}
namespace OverwritePolicy { // CIM_RecordLog
enum : std::uint16_t { WrapsWhenFull = 2, NeverOverwrites = 7 };
}
namespace SupportedRecordTypes { // CIM_RecordLogCapabilities
enum : std::uint16_t { RecordData = 2 };
}

namespace PortType { // CIM_NetworkPort
enum : std::uint16_t { T10 = 50, T10Or100 = 51 };
}
namespace LinkTechnology { // CIM_NetworkPort
enum : std::uint16_t { Ethernet = 2 };
}
namespace PortCapabilities { // CIM_EthernetPort
enum : std::uint16_t { Unknown = 0, WakeOnLan = 3 };
}
namespace ControllerType { // CIM_PortController
enum : std::uint16_t { Ethernet = 2 };
}
namespace ProtocolSupported { // CIM_Controller
enum : std::uint16_t { Unknown = 2 };
}
namespace ProtocolIFType { // CIM_ProtocolEndpoint
enum : std::uint16_t { Other = 1, EthernetCsmaCd = 6, IPv4 = 4096, IPv6 = 4097, Tcp = 4111 };
}
namespace AddressOrigin { // CIM_IPProtocolEndpoint, CIM_IPAssignmentSettingData
enum : std::uint16_t { Unknown = 0, NotApplicable = 2, Static = 3, Dhcp = 4, DhcpV6 = 7, IPv6Auto = 8 };
}
namespace ClientState { // CIM_DHCPProtocolEndpoint
enum : std::uint16_t { Unknown = 0, Bound = 8 };
}
namespace DhcpOption { // CIM_DHCPProtocolEndpoint.OptionsReceived: the codes of RFC 2132, plus 2
enum : std::uint16_t { SubnetMask = 3, Router = 5, DomainNameServer = 8, HostName = 14, DomainName = 17 };
}
namespace AccessContext { // CIM_RemoteServiceAccessPoint
enum : std::uint16_t { DefaultGateway = 2, DnsServer = 3, DhcpServer = 6 };
}
namespace InfoFormat { // CIM_RemoteServiceAccessPoint
enum : std::uint16_t { IPv4Address = 3, IPv6Address = 4 };
}
namespace Protocol { // CIM_ProtocolService
enum : std::uint16_t { Other = 1, Ssh = 2, Telnet = 3, SmClp = 4 };
}
namespace SSHVersion { // CIM_SSHProtocolEndpoint
enum : std::uint16_t { Unknown = 0, One = 2, Two = 3 };
}
namespace EncryptionAlgorithm { // CIM_SSHProtocolEndpoint
enum : std::uint16_t { Unknown = 0, Other = 1, Des = 2, TripleDes = 3, Rc4 = 4, Idea = 5 };
}

namespace RedirectionServiceType { // CIM_RedirectionService
enum : std::uint16_t { Text = 2, Kvm = 3, Usb = 4, Media = 5 };
}
namespace SharingMode { // CIM_RedirectionService
enum : std::uint16_t { Unknown = 0, Exclusive = 2, Shared = 3 };
}
namespace TextFlowType { // CIM_TextRedirectionSAP
enum : std::uint16_t { CharacterStream = 2 };
}
namespace KVMProtocol { // CIM_KVMRedirectionSAP
enum : std::uint16_t { Unknown = 0 };
}
namespace ConnectionMode { // CIM_MediaRedirectionSAP, CIM_USBRedirectionSAP
enum : std::uint16_t { Listen = 2 };
}
namespace DevicesSupported { // CIM_MediaRedirectionCapabilities
enum : std::uint16_t { CdRomDrive = 2, DiskDrive = 3, DisketteDrive = 4 };
}
namespace SAPCapabilitiesSupported { // CIM_USBRedirectionCapabilities
enum : std::uint16_t { PreConfigured = 2 };
}

namespace RemovalConditions { // CIM_PhysicalPackage
enum : std::uint16_t { Unknown = 0, RemovableWhenOff = 3, RemovableWhenOnOrOff = 4 };
}
namespace PackageType { // CIM_PhysicalPackage
enum : std::uint16_t { Other = 1 };
}
namespace ChassisPackageType { // CIM_Chassis
enum : std::uint16_t { Unknown = 0, Other = 1, BladeEnclosure = 28 };
}

namespace OSType { // CIM_OperatingSystem
enum : std::uint16_t { Unknown = 0, Other = 1, Linux = 36 };
}
namespace Classifications { // CIM_SoftwareIdentity
enum : std::uint16_t { Firmware = 10, Bios = 11 };
}

namespace InstallAction { // CIM_SoftwareInstallationServiceCapabilities
enum : std::uint16_t { None = 2, FromSoftwareIdentity = 3, FromUri = 5 };
}
namespace InstallCharacteristics { // CIM_SoftwareInstallationService
enum : std::uint16_t { TargetAutomaticReset = 2 };
}
namespace InstallOption { // CIM_SoftwareInstallationService
enum : std::uint16_t { Install = 4, Update = 5 };
}
namespace InstallResult { // the values of its methods
enum : std::uint32_t {
    TargetInUse = 6,
    UnsupportedTargetType = 4097,
    NotApplicableToTarget = 4106,
    NoPathToImage = 4107, // also: the URI is not accessible
    CannotAddToCollection = 4108
};
}
namespace UriScheme { // CIM_SoftwareInstallationServiceCapabilities
enum : std::uint16_t { File = 3, Http = 5 };
}
namespace ExtendedResourceType { // CIM_SoftwareInstallationServiceCapabilities
enum : std::uint16_t { NotApplicable = 2 };
}

namespace PasswordEncryption { // CIM_Account, CIM_AccountManagementCapabilities
enum : std::uint16_t { None = 0, Other = 1 };
}
namespace PasswordEncoding { // CIM_Account
enum : std::uint16_t { Ascii = 2 };
}
namespace AccountOperations { // CIM_AccountManagementCapabilities
enum : std::uint16_t { Create = 2, Modify = 3, Delete = 4 };
}
namespace RoleCharacteristics { // CIM_Role
enum : std::uint16_t { Static = 2 };
}
namespace Activities { // CIM_Privilege
enum : std::uint16_t { Other = 1, Create = 2, Delete = 3, Detect = 4, Read = 5, Write = 6, Execute = 7 };
}
namespace RoleMethods { // CIM_RoleBasedManagementCapabilities.SupportedMethods
enum : std::uint16_t { ShowAccess = 1, AssignRoles = 6, ShowRoles = 7 };
}

} // namespace ph
