// CIM_PhysicalMemory: memory modules.
#include "inventory/physical_element.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_PhysicalMemoryKeyList[2] = {ph::inventory::elementKeys[0],
                                                          ph::inventory::elementKeys[1]};

namespace ph::physical_memory {
namespace {

using Record = PhysicalMemoryRecord;

template <auto number>
bool isKnown(const Record& memory) {
    return memory.*number != 0;
}
bool hasBankLabel(const Record& memory) {
    return memory.BankLabel[0] != '\0';
}
bool isFast(const Record&) {
    return true;
}

constexpr Property memoryProperties[] = {
    PH_PROPERTY(Record, FormFactor),
    PH_PROPERTY(Record, MemoryType),
    PH_PROPERTY_IF(Record, TotalWidth, isKnown<&Record::TotalWidth>),
    PH_PROPERTY_IF(Record, DataWidth, isKnown<&Record::DataWidth>),
    PH_PROPERTY_IF(Record, Capacity, isKnown<&Record::Capacity>),
    PH_PROPERTY_IF(Record, BankLabel, hasBankLabel),
    PH_PROPERTY_IF(Record, ConfiguredMemoryClockSpeed, isKnown<&Record::ConfiguredMemoryClockSpeed>),
    PH_COMPUTED_IF("IsSpeedInMhz", isFast, isKnown<&Record::MaxMemorySpeed>),
    PH_PROPERTY_IF(Record, MaxMemorySpeed, isKnown<&Record::MaxMemorySpeed>),
};
constexpr auto properties = joined(inventory::elementProperties, memoryProperties);

int fill(const PackageRow& row, SMASH_DB_HANDLE database, Record& memory) {
    MemoryModuleRow* module = nullptr;
    if (db_get_memory_module(database, row.entityId, row.entityInstance, &module) != 0)
        return -1;
    const HeapPtr<MemoryModuleRow> owner(module);
    return PH_Fill_PhysicalMemory(&row, module, &memory);
}

constexpr inventory::PhysicalClass<Record> physicalClass{"CIM_PhysicalMemory", fill};

constexpr auto definition = inventory::define<physicalClass, Record>(
    "CIM_Chip", "tables package and memory_module (FRU inventory, SDR types 10h and 11h, SMBIOS type 17)",
    g_PhysicalMemoryKeyList, properties);

} // namespace
} // namespace ph::physical_memory

int PH_Fill_PhysicalMemory(const PackageRow* row, const MemoryModuleRow* module,
                           PhysicalMemoryRecord* record) {
    ph::inventory::fillElement(*row, record->element);
    if (module == nullptr)
        return 0;
    record->FormFactor = module->formFactor;
    record->MemoryType = module->memoryType;
    record->TotalWidth = module->totalWidth;
    record->DataWidth = module->dataWidth;
    record->Capacity = static_cast<std::uint64_t>(module->capacity);
    ph::copyText(record->BankLabel, module->bankLabel);
    record->ConfiguredMemoryClockSpeed = module->configuredSpeed;
    record->MaxMemorySpeed = module->maxSpeed;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PhysicalMemory, PhysicalMemoryRecord, ph::physical_memory::definition)
