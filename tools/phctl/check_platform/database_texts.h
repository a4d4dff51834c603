// The texts of the rows of each table of the database.
#pragma once

#include "check_platform/table_check.h"

namespace phctl::check {

#define PH_TEXTS(Row, ...)                                                                                   \
    inline constexpr TextField texts##Row[] = {__VA_ARGS__};                                                 \
    template <>                                                                                              \
    inline constexpr std::span<const TextField> textsOf<Row>{texts##Row};

PH_TEXTS(CompactSdr, PH_TEXT(CompactSdr, deviceId), PH_TEXT(CompactSdr, name),
         PH_TEXT(CompactSdr, otherSensorType), PH_TEXT(CompactSdr, source))
PH_TEXTS(FullSdr, PH_TEXT(FullSdr, common.deviceId), PH_TEXT(FullSdr, common.name),
         PH_TEXT(FullSdr, common.otherSensorType), PH_TEXT(FullSdr, common.source))
PH_TEXTS(PackageRow, PH_TEXT(PackageRow, tag), PH_TEXT(PackageRow, name), PH_TEXT(PackageRow, manufacturer),
         PH_TEXT(PackageRow, model), PH_TEXT(PackageRow, serialNumber), PH_TEXT(PackageRow, partNumber),
         PH_TEXT(PackageRow, version), PH_TEXT(PackageRow, assetTag))
PH_TEXTS(PowerServiceRow, PH_TEXT(PowerServiceRow, name), PH_TEXT(PowerServiceRow, elementName),
         PH_TEXT(PowerServiceRow, operationalStatus))
PH_TEXTS(PowerCapabilitiesRow, PH_TEXT(PowerCapabilitiesRow, instanceId),
         PH_TEXT(PowerCapabilitiesRow, elementName), PH_TEXT(PowerCapabilitiesRow, powerChangeCapabilities),
         PH_TEXT(PowerCapabilitiesRow, powerStatesSupported),
         PH_TEXT(PowerCapabilitiesRow, requestedPowerStatesSupported))
PH_TEXTS(IndicationServiceRow, PH_TEXT(IndicationServiceRow, name))
PH_TEXTS(CimxmlFilterRow, PH_TEXT(CimxmlFilterRow, name), PH_TEXT(CimxmlFilterRow, query))
PH_TEXTS(CimxmlDestinationRow, PH_TEXT(CimxmlDestinationRow, name),
         PH_TEXT(CimxmlDestinationRow, destination))
PH_TEXTS(StaticIPRow, PH_TEXT(StaticIPRow, key), PH_TEXT(StaticIPRow, IPv4Address),
         PH_TEXT(StaticIPRow, GatewayIPv4Address), PH_TEXT(StaticIPRow, SubnetMask),
         PH_TEXT(StaticIPRow, IPv6Address), PH_TEXT(StaticIPRow, GatewayIPv6Address))
PH_TEXTS(StoredJobRow, PH_TEXT(StoredJobRow, instanceId), PH_TEXT(StoredJobRow, job.elementName),
         PH_TEXT(StoredJobRow, job.kind), PH_TEXT(StoredJobRow, job.jobStatus),
         PH_TEXT(StoredJobRow, job.minutesToKeep), PH_TEXT(StoredJobRow, job.operationalStatus))
PH_TEXTS(JobErrorRow, PH_TEXT(JobErrorRow, errorSource))
PH_TEXTS(DeviceRecord, PH_TEXT(DeviceRecord, deviceId), PH_TEXT(DeviceRecord, guid))
PH_TEXTS(FruRecord, PH_TEXT(FruRecord, manufacturer), PH_TEXT(FruRecord, model),
         PH_TEXT(FruRecord, serialNumber), PH_TEXT(FruRecord, partNumber))
PH_TEXTS(IPMISessionInfo, PH_TEXT(IPMISessionInfo, address), PH_TEXT(IPMISessionInfo, userName),
         PH_TEXT(IPMISessionInfo, password), PH_TEXT(IPMISessionInfo, interfaceType),
         PH_TEXT(IPMISessionInfo, cipherSuite), PH_TEXT(IPMISessionInfo, workaroundFlags),
         PH_TEXT(IPMISessionInfo, retransmission), PH_TEXT(IPMISessionInfo, privilegeLevel))
PH_TEXTS(ConnectorRow, PH_TEXT(ConnectorRow, tag), PH_TEXT(ConnectorRow, name),
         PH_TEXT(ConnectorRow, connector), PH_TEXT(ConnectorRow, description))
PH_TEXTS(PciDeviceRow, PH_TEXT(PciDeviceRow, deviceId), PH_TEXT(PciDeviceRow, name),
         PH_TEXT(PciDeviceRow, description))
template <>
inline constexpr std::span<const TextField> textsOf<EntityDeviceRow>{};
template <>
inline constexpr std::span<const TextField> textsOf<EntityAssociationRow>{};
template <>
inline constexpr std::span<const TextField> textsOf<PowerSupplyInfoRow>{};

} // namespace phctl::check
