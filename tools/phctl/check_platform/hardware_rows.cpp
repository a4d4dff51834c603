// The SMASH database: the host's hardware, and how its rows refer to packages and devices.
#include "check_platform/database_texts.h"
#include "check_platform/rows.h"

namespace phctl::check {
namespace {

using Entity = std::pair<std::uint8_t, std::uint8_t>;

template <class Row>
std::set<Entity> entitiesOf(Probe& probe, const char* getter) {
    std::set<Entity> entities;
    for (const Row& row : rowsOf<Row>(probe, getter))
        entities.emplace(row.entityId, row.entityInstance);
    return entities;
}

template <std::size_t N>
void judgeText(Call& call, const char* name, const char (&field)[N]) {
    call.addFault(faultOfText(name, {field, N}));
}

void judge(Call& call, const ProcessorRow& row) {
    judgeText(call, "role", row.role);
    judgeText(call, "version", row.version);
    call.expect(row.enabledCores <= row.cores || row.cores == 0, "there are more enabled cores than cores");
}

void judge(Call& call, const MemoryModuleRow& row) {
    judgeText(call, "bankLabel", row.bankLabel);
    call.expect(row.capacity >= 0, "capacity is negative");
}

// All rows of a table of entities, each of which is a package too.
template <class Row>
void checkEntities(Probe& probe) {
    const auto packages = entitiesOf<PackageRow>(probe, "db_get_all_packages");
    std::set<Entity> entities;
    checkAll<Row>(probe, [&](Call& call, const Row& row) {
        const Entity entity(row.entityId, row.entityInstance);
        call.expect(entities.insert(entity).second, "two rows are the same entity");
        call.expect(packages.contains(entity), "the database has no package of an entity");
        judge(call, row);
    });
}

// The row of each of them.
template <class Row, class Function>
void checkByEntity(Probe& probe, const char* all) {
    const auto entities = entitiesOf<Row>(probe, all);
    if (entities.empty())
        throw NotPossible("the database has none");
    for (const auto& [id, instance] : entities)
        checkByNumbers<Row, Function>(
            probe, "entity " + std::to_string(id) + '.' + std::to_string(instance),
            [id = id, instance = instance](Call& call, const Row& row) {
                call.expect(row.entityId == id && row.entityInstance == instance, "it is another entity");
                judge(call, row);
            },
            int{id}, int{instance});
}

void getProcessor(Probe& probe) {
    checkByEntity<ProcessorRow, decltype(db_get_processor)>(probe, "db_get_all_processors");
}
void getModule(Probe& probe) {
    checkByEntity<MemoryModuleRow, decltype(db_get_memory_module)>(probe, "db_get_all_memory_modules");
}

void getMemory(Probe& probe) {
    checkByNumbers<MemoryRow, decltype(db_get_memory)>(probe, "", [](Call& call, const MemoryRow& row) {
        judgeText(call, "errorMethodology", row.errorMethodology);
        call.expect(row.size >= 0 && row.capacity >= 0, "size or capacity is negative");
    });
}

void getConnectors(Probe& probe) {
    checkAll<ConnectorRow>(probe, [](Call& call, const ConnectorRow& row) {
        call.expect(row.isSlot <= 1 && row.isHotPluggable <= 1,
                    "isSlot or isHotPluggable is neither 0 nor 1");
    });
}

void getPciDevices(Probe& probe) {
    checkAll<PciDeviceRow>(probe, [](Call& call, const PciDeviceRow& row) {
        call.expect(row.device <= 31 && row.function <= 7, "device or function is none of PCI");
    });
}

} // namespace

std::span<const Row> hardwareRows() {
    static constexpr Row rows[] = {
        {"db_get_processor", getProcessor},
        {"db_get_all_processors", checkEntities<ProcessorRow>},
        {"db_get_memory", getMemory},
        {"db_get_memory_module", getModule},
        {"db_get_all_memory_modules", checkEntities<MemoryModuleRow>},
        {"db_get_all_connectors", getConnectors},
        {"db_get_all_pci_devices", getPciDevices},
    };
    return rows;
}

} // namespace phctl::check
