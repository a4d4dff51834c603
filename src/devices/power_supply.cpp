// CIM_PowerSupply.
#include "devices/entity_device.h"

constexpr const char* const g_PowerSupplyKeyList[4] = {ph::entityDeviceKeys[0], ph::entityDeviceKeys[1],
                                                       ph::entityDeviceKeys[2], ph::entityDeviceKeys[3]};

namespace ph::power_supply {
namespace {

using Record = PowerSupplyRecord;

static_assert(offsetof(Record, device) == 0, "the properties of every device lie where they are shared");

bool hasRange1(const Record& supply) {
    return supply.Range1InputVoltageHigh != 0;
}

bool hasRange2(const Record& supply) {
    return supply.Range2InputVoltageHigh != 0;
}

constexpr Property supplyProperties[] = {
    PH_PROPERTY(Record, TotalOutputPower),
    PH_PROPERTY_IF(Record, Range1InputVoltageLow, hasRange1),
    PH_PROPERTY_IF(Record, Range1InputVoltageHigh, hasRange1),
    PH_PROPERTY_IF(Record, Range1InputFrequencyLow, hasRange1),
    PH_PROPERTY_IF(Record, Range1InputFrequencyHigh, hasRange1),
    PH_PROPERTY_IF(Record, Range2InputVoltageLow, hasRange2),
    PH_PROPERTY_IF(Record, Range2InputVoltageHigh, hasRange2),
    PH_PROPERTY_IF(Record, Range2InputFrequencyLow, hasRange2),
    PH_PROPERTY_IF(Record, Range2InputFrequencyHigh, hasRange2),
};
constexpr auto properties = joined(entityDeviceProperties, supplyProperties);

int fill(const EntityDeviceRow& row, SMASH_DB_HANDLE database, Record& supply) {
    PowerSupplyInfoRow* info = nullptr;
    if (db_get_power_supply_info(database, row.entityId, row.entityInstance, &info) != 0)
        return -1;
    const HeapPtr<PowerSupplyInfoRow> owner(info);
    return PH_Fill_PowerSupply(&row, info, &supply);
}

constexpr EntityDeviceClass<Record> deviceClass{"CIM_PowerSupply", fill, &DeviceReader::rollUp};

int enumerate(RecordArray<Record>& supplies, Detail detail) {
    return enumerateEntityDevices(deviceClass, supplies, detail);
}

int get(RecordArray<Record>& supplies, CMPIString** keyValues) {
    return getEntityDevice(deviceClass, supplies, keyValues);
}

constexpr ClassDefinition<Record> definition{
    .name = deviceClass.name,
    .superclass = "CIM_LogicalDevice",
    .source = "tables entity_device and power_supply_info (sensors, FRU multirecord 00h); Get Sensor Reading",
    .keys = g_PowerSupplyKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .get = get};

} // namespace
} // namespace ph::power_supply

int PH_Fill_PowerSupply(const EntityDeviceRow* row, const PowerSupplyInfoRow* info,
                        PowerSupplyRecord* record) {
    constexpr std::uint32_t milliwatts = 1000; // in a watt
    constexpr std::uint32_t millivolts = 10;   // in the row's unit of 10 mV
    ph::fillEntityDevice(*row, record->device);
    if (info == nullptr)
        return 0;
    record->TotalOutputPower = info->capacity * milliwatts;
    record->Range1InputVoltageLow = info->lowVoltage1 * millivolts;
    record->Range1InputVoltageHigh = info->highVoltage1 * millivolts;
    record->Range2InputVoltageLow = info->lowVoltage2 * millivolts;
    record->Range2InputVoltageHigh = info->highVoltage2 * millivolts;
    record->Range1InputFrequencyLow = record->Range2InputFrequencyLow = info->lowFrequency;
    record->Range1InputFrequencyHigh = record->Range2InputFrequencyHigh = info->highFrequency;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PowerSupply, PowerSupplyRecord, ph::power_supply::definition)
