// CIM_Processor.
#include "devices/entity_device.h"

constexpr const char* const g_ProcessorKeyList[4] = {ph::entityDeviceKeys[0], ph::entityDeviceKeys[1],
                                                     ph::entityDeviceKeys[2], ph::entityDeviceKeys[3]};

namespace ph::processor {
namespace {

using Record = ProcessorRecord;

static_assert(offsetof(Record, device) == 0, "the properties of every device lie where they are shared");

template <auto number>
bool isKnown(const Record& processor) {
    return processor.*number != 0;
}
template <auto text>
bool isGiven(const Record& processor) {
    return (processor.*text)[0] != '\0';
}
bool hasCharacteristics(const Record& processor) {
    return processor.Characteristics[0] >= 0;
}

constexpr Property processorProperties[] = {
    PH_PROPERTY_IF(Record, Description, isGiven<&Record::Description>),
    PH_PROPERTY_IF(Record, Role, isGiven<&Record::Role>),
    PH_PROPERTY(Record, Family),
    PH_PROPERTY_IF(Record, OtherFamilyDescription, isGiven<&Record::OtherFamilyDescription>),
    PH_PROPERTY(Record, UpgradeMethod),
    PH_PROPERTY_IF(Record, MaxClockSpeed, isKnown<&Record::MaxClockSpeed>),
    PH_PROPERTY_IF(Record, CurrentClockSpeed, isKnown<&Record::CurrentClockSpeed>),
    PH_PROPERTY_IF(Record, ExternalBusClockSpeed, isKnown<&Record::ExternalBusClockSpeed>),
    PH_PROPERTY_IF(Record, DataWidth, isKnown<&Record::DataWidth>),
    PH_PROPERTY(Record, CPUStatus),
    PH_PROPERTY_IF(Record, Characteristics, hasCharacteristics),
    PH_PROPERTY_IF(Record, NumberOfEnabledCores, isKnown<&Record::NumberOfEnabledCores>),
};
constexpr auto properties = joined(entityDeviceProperties, processorProperties);

int fill(const EntityDeviceRow& row, SMASH_DB_HANDLE database, Record& record) {
    ProcessorRow* processor = nullptr;
    if (db_get_processor(database, row.entityId, row.entityInstance, &processor) != 0)
        return -1;
    const HeapPtr<ProcessorRow> owner(processor);
    return PH_Fill_Processor(&row, processor, &record);
}

// What the firmware did with a processor counts more than that its sensors are content.
void finish(Record& processor) {
    EntityDeviceRecord& device = processor.device;
    if (device.Availability == Availability::NotInstalled)
        return;
    if (processor.CPUStatus == CPUStatus::DisabledByUser ||
        processor.CPUStatus == CPUStatus::DisabledByFirmware) {
        device.EnabledState = EnabledState::Disabled;
        device.Availability = Availability::OffLine;
    } else if (device.EnabledState == EnabledState::NotApplicable &&
               (processor.CPUStatus == CPUStatus::Enabled || processor.CPUStatus == CPUStatus::Idle)) {
        device.EnabledState = EnabledState::Enabled;
        device.Availability = Availability::Running;
    }
}

constexpr EntityDeviceClass<Record> deviceClass{"CIM_Processor", fill, &DeviceReader::rollUp, finish};

int enumerate(RecordArray<Record>& processors, Detail detail) {
    return enumerateEntityDevices(deviceClass, processors, detail);
}

int get(RecordArray<Record>& processors, CMPIString** keyValues) {
    return getEntityDevice(deviceClass, processors, keyValues);
}

constexpr ClassDefinition<Record> definition{
    .name = deviceClass.name,
    .superclass = "CIM_LogicalDevice",
    .source = "tables entity_device and processor (SMBIOS type 4); Get Sensor Reading",
    .keys = g_ProcessorKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .get = get};

// SMBIOS processor characteristics (DSP0134, 7.5.9) and the DMTF Characteristics that they are.
struct Characteristic {
    std::uint16_t bit;
    int value;
};
constexpr std::uint16_t is64BitCapable = 1U << 2U;
constexpr Characteristic characteristics[] = {
    {is64BitCapable, 2}, {1U << 6U, 4}, {1U << 4U, 5}, {1U << 5U, 6}, {1U << 7U, 7}};

} // namespace
} // namespace ph::processor

int PH_Fill_Processor(const EntityDeviceRow* row, const ProcessorRow* processor, ProcessorRecord* record) {
    ph::fillEntityDevice(*row, record->device);
    record->Family = ph::Family::Unknown;
    record->UpgradeMethod = ph::UpgradeMethod::Unknown;
    ph::setList(record->Characteristics, {});
    if (processor == nullptr)
        return 0;
    record->Family = processor->family;
    record->UpgradeMethod = processor->upgradeMethod;
    ph::copyText(record->Description, processor->version);
    ph::copyText(record->Role, processor->role);
    if (record->Family == ph::Family::Other)
        ph::copyText(record->OtherFamilyDescription, processor->version);
    record->MaxClockSpeed = processor->maxClock;
    record->CurrentClockSpeed = processor->currentClock;
    record->ExternalBusClockSpeed = processor->externalBusClock;
    record->DataWidth = (processor->characteristics & ph::processor::is64BitCapable) != 0 ? 64 : 0;
    record->CPUStatus = processor->status;
    record->NumberOfEnabledCores = processor->enabledCores;
    record->threads = processor->threads;
    int* next = record->Characteristics;
    for (const ph::processor::Characteristic& each : ph::processor::characteristics)
        if ((processor->characteristics & each.bit) != 0)
            *next++ = each.value;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(Processor, ProcessorRecord, ph::processor::definition)
