// CIM_PowerSupply.
#include "devices/entity_device.h"

constexpr const char* const g_PowerSupplyKeyList[4] = {ph::entityDeviceKeys[0], ph::entityDeviceKeys[1],
                                                       ph::entityDeviceKeys[2], ph::entityDeviceKeys[3]};

namespace {

using Record = PowerSupplyRecord;
using ph::Property;

static_assert(offsetof(Record, device) == 0, "the properties of every device lie where they are shared");

constexpr Property supplyProperties[] = {
    PH_PROPERTY(Record, TotalOutputPower),
};
constexpr auto properties = ph::joined(ph::entityDeviceProperties, supplyProperties);

constexpr ph::EntityDeviceClass<Record> deviceClass{"CIM_PowerSupply", PH_Fill_PowerSupply,
                                                    &ph::DeviceReader::rollUp};

int enumerate(ph::RecordArray<Record>& supplies, ph::Detail detail) {
    return ph::enumerateEntityDevices(deviceClass, supplies, detail);
}

int get(ph::RecordArray<Record>& supplies, CMPIString** keyValues) {
    return ph::getEntityDevice(deviceClass, supplies, keyValues);
}

constexpr ph::ClassDefinition<Record> definition{
    .name = deviceClass.name,
    .superclass = "CIM_LogicalDevice",
    .source = "tables entity_device and power_supply_info (sensors, FRU multirecord 00h); Get Sensor Reading",
    .keys = g_PowerSupplyKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .get = get};

} // namespace

int PH_Fill_PowerSupply(const EntityDeviceRow* row, PowerSupplyRecord* record) {
    ph::fillEntityDevice(*row, record->device);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PowerSupply, Record, definition)
