// CIM_Memory: the host's memory as a whole.
#include "devices/entity_device.h"

constexpr const char* const g_MemoryKeyList[4] = {ph::entityDeviceKeys[0], ph::entityDeviceKeys[1],
                                                  ph::entityDeviceKeys[2], ph::entityDeviceKeys[3]};

namespace ph::memory {
namespace {

using Record = MemoryRecord;

static_assert(offsetof(Record, device) == 0, "the properties of every device lie where they are shared");

constexpr const char* className = "CIM_Memory";

bool hasErrorMethodology(const Record& memory) {
    return memory.ErrorMethodology[0] != '\0';
}

constexpr Property memoryProperties[] = {
    PH_PROPERTY(Record, Volatile),
    PH_PROPERTY(Record, Access),
    PH_PROPERTY(Record, BlockSize),
    PH_PROPERTY(Record, NumberOfBlocks),
    PH_PROPERTY_IF(Record, ErrorMethodology, hasErrorMethodology),
};
constexpr auto properties = joined(entityDeviceProperties, memoryProperties);

// Rolls the health of the modules up.
int readHealth(SMASH_DB_HANDLE database, EntityDeviceRecord& device) {
    Rows<MemoryModuleRow> modules;
    DeviceReader reader;
    if (!modules.read(database, db_get_all_memory_modules) || !reader.open())
        return -1;
    EntityDeviceRow row{};
    row.presenceSensor = SMASH_NO_SENSOR;
    for (const MemoryModuleRow& module : modules.all()) {
        row.entityId = module.entityId;
        row.entityInstance = module.entityInstance;
        reader.rollUp(row, device);
    }
    reader.readState(row, device);
    return 0;
}

int enumerate(RecordArray<Record>& records, Detail detail) {
    char systemName[256] = "";
    Database database;
    MemoryRow* row = nullptr;
    if (PH_GetHostSystemName(systemName) != 0 || !database.open() || db_get_memory(database.get(), &row) != 0)
        return -1;
    const HeapPtr<MemoryRow> owner(row);
    if (row == nullptr)
        return 0;
    Record* memory = records.append();
    if (memory == nullptr || PH_Fill_Memory(row, memory) != 0)
        return -1;
    setHostedKeys(memory->device, hostClass, systemName, className);
    return detail == Detail::Names ? 0 : readHealth(database.get(), memory->device);
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_StorageExtent",
    .source = "tables memory and memory_module (SMBIOS types 16 and 17); Get Sensor Reading",
    .keys = g_MemoryKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::memory

int PH_Fill_Memory(const MemoryRow* row, MemoryRecord* record) {
    constexpr std::uint16_t readAndWrite = 3;
    ph::fillDevice("Memory", "System Memory", record->device);
    record->Volatile = true;
    record->Access = readAndWrite;
    record->BlockSize = 1;
    record->NumberOfBlocks = static_cast<std::uint64_t>(row->size);
    ph::copyText(record->ErrorMethodology, row->errorMethodology);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(Memory, MemoryRecord, ph::memory::definition)
