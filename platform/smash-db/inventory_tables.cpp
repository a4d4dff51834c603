// The tables of the BMC's inventory, a column per member of the row.
#include "smash-db/inventory_tables.h"

namespace smash {
namespace {

constexpr std::array sessionColumns = {
    SMASH_COLUMN(IPMISessionInfo, address),         SMASH_COLUMN(IPMISessionInfo, port),
    SMASH_COLUMN(IPMISessionInfo, userName),        SMASH_COLUMN(IPMISessionInfo, password),
    SMASH_COLUMN(IPMISessionInfo, interfaceType),   SMASH_COLUMN(IPMISessionInfo, cipherSuite),
    SMASH_COLUMN(IPMISessionInfo, workaroundFlags), SMASH_COLUMN(IPMISessionInfo, retransmission),
    SMASH_COLUMN(IPMISessionInfo, privilegeLevel),
};

constexpr std::array deviceRecordColumns = {
    SMASH_COLUMN(DeviceRecord, type),
    SMASH_COLUMN(DeviceRecord, deviceId),
    SMASH_COLUMN(DeviceRecord, guid),
    SMASH_COLUMN(DeviceRecord, manufacturerId),
    SMASH_COLUMN(DeviceRecord, productId),
    SMASH_COLUMN(DeviceRecord, firmwareMajor),
    SMASH_COLUMN(DeviceRecord, firmwareMinor),
    SMASH_COLUMN_AS(DeviceRecord, tag[0], "tagDeviceId"),
    SMASH_COLUMN_AS(DeviceRecord, tag[1], "tagDeviceRevision"),
    SMASH_COLUMN(DeviceRecord, requestedState),
};

constexpr std::array fruColumns = {
    SMASH_COLUMN(FruRecord, entityId),     SMASH_COLUMN(FruRecord, entityInstance),
    SMASH_COLUMN(FruRecord, manufacturer), SMASH_COLUMN(FruRecord, model),
    SMASH_COLUMN(FruRecord, serialNumber), SMASH_COLUMN(FruRecord, partNumber),
};

constexpr std::array compactSdrColumns = {
    SMASH_COLUMN(CompactSdr, deviceId),        SMASH_COLUMN(CompactSdr, name),
    SMASH_COLUMN(CompactSdr, otherSensorType), SMASH_COLUMN(CompactSdr, source),
    SMASH_COLUMN(CompactSdr, sensorType),      SMASH_COLUMN(CompactSdr, ownerId),
    SMASH_COLUMN(CompactSdr, ownerLun),        SMASH_COLUMN(CompactSdr, sensorNumber),
    SMASH_COLUMN(CompactSdr, entityId),        SMASH_COLUMN(CompactSdr, entityInstance),
    SMASH_COLUMN(CompactSdr, ipmiSensorType),  SMASH_COLUMN(CompactSdr, eventReadingType),
    SMASH_COLUMN(CompactSdr, supportedStates),
};

static_assert(offsetof(FullSdr, common) == 0);
constexpr auto fullSdrColumns =
    extend(compactSdrColumns, std::to_array<Column>({SMASH_COLUMN(FullSdr, baseUnits),
                                                     SMASH_COLUMN(FullSdr, rateUnits),
                                                     SMASH_COLUMN(FullSdr, analogFormat),
                                                     SMASH_COLUMN(FullSdr, m),
                                                     SMASH_COLUMN(FullSdr, b),
                                                     SMASH_COLUMN(FullSdr, exponents),
                                                     SMASH_COLUMN(FullSdr, nominalReading),
                                                     SMASH_COLUMN(FullSdr, normalMax),
                                                     SMASH_COLUMN(FullSdr, normalMin),
                                                     SMASH_COLUMN(FullSdr, maxReadable),
                                                     SMASH_COLUMN(FullSdr, minReadable),
                                                     SMASH_COLUMN(FullSdr, hysteresis),
                                                     SMASH_COLUMN(FullSdr, lowerNonCritical),
                                                     SMASH_COLUMN(FullSdr, lowerCritical),
                                                     SMASH_COLUMN(FullSdr, lowerNonRecoverable),
                                                     SMASH_COLUMN(FullSdr, upperNonCritical),
                                                     SMASH_COLUMN(FullSdr, upperCritical),
                                                     SMASH_COLUMN(FullSdr, upperNonRecoverable),
                                                     SMASH_COLUMN(FullSdr, resolution),
                                                     SMASH_COLUMN(FullSdr, tolerance),
                                                     SMASH_COLUMN(FullSdr, accuracy),
                                                     SMASH_COLUMN(FullSdr, isLinear)}));

constexpr std::array sdrRepositoryColumns = {
    SMASH_COLUMN(SdrRepositoryRow, records),
    SMASH_COLUMN(SdrRepositoryRow, lastAddition),
    SMASH_COLUMN(SdrRepositoryRow, lastErase),
};

} // namespace

constexpr TableOf<IPMISessionInfo> sessionTable{"ipmi_session", sessionColumns, 0};
constexpr TableOf<DeviceRecord> deviceTable{"device", deviceRecordColumns, 1};
constexpr TableOf<FruRecord> fruTable{"fru", fruColumns, 2};
constexpr TableOf<CompactSdr> compactSdrTable{"compact_sdr", compactSdrColumns, 1, SMASH_EVENT_NUMBER};
constexpr TableOf<FullSdr> fullSdrTable{"full_sdr", fullSdrColumns, 1, SMASH_EVENT_NUMBER};
constexpr TableOf<SdrRepositoryRow> sdrRepositoryTable{"sdr_repository", sdrRepositoryColumns, 0};

} // namespace smash
