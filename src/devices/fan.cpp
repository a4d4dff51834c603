// CIM_Fan: fans and cooling units.
#include "devices/entity_device.h"

constexpr const char* const g_FanKeyList[4] = {ph::entityDeviceKeys[0], ph::entityDeviceKeys[1],
                                               ph::entityDeviceKeys[2], ph::entityDeviceKeys[3]};

namespace ph::fan {
namespace {

using Record = FanRecord;

static_assert(offsetof(Record, device) == 0, "the properties of every device lie where they are shared");

constexpr Property fanProperties[] = {
    PH_PROPERTY(Record, VariableSpeed),
    PH_PROPERTY(Record, ActiveCooling),
};
constexpr auto properties = joined(entityDeviceProperties, fanProperties);

constexpr EntityDeviceClass<Record> deviceClass{
    "CIM_Fan",
    [](const EntityDeviceRow& row, SMASH_DB_HANDLE, Record& fan) { return PH_Fill_Fan(&row, &fan); },
    &DeviceReader::readTachometer};

int enumerate(RecordArray<Record>& fans, Detail detail) {
    return enumerateEntityDevices(deviceClass, fans, detail);
}

int get(RecordArray<Record>& fans, CMPIString** keyValues) {
    return getEntityDevice(deviceClass, fans, keyValues);
}

constexpr ClassDefinition<Record> definition{
    .name = deviceClass.name,
    .superclass = "CIM_CoolingDevice",
    .source = "table entity_device (sensors of SDR types 01h and 02h); Get Sensor Reading",
    .keys = g_FanKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .get = get};

} // namespace
} // namespace ph::fan

int PH_Fill_Fan(const EntityDeviceRow* row, FanRecord* record) {
    ph::fillEntityDevice(*row, record->device);
    record->VariableSpeed = row->hasVariableSpeed != 0;
    record->ActiveCooling = true;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(Fan, FanRecord, ph::fan::definition)
