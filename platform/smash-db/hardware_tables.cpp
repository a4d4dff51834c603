#include "smash-db/hardware_tables.h"

namespace smash {
namespace {

constexpr std::array processorColumns = {
    SMASH_COLUMN(ProcessorRow, entityId),     SMASH_COLUMN(ProcessorRow, entityInstance),
    SMASH_COLUMN(ProcessorRow, family),       SMASH_COLUMN(ProcessorRow, upgradeMethod),
    SMASH_COLUMN(ProcessorRow, status),       SMASH_COLUMN(ProcessorRow, maxClock),
    SMASH_COLUMN(ProcessorRow, currentClock), SMASH_COLUMN(ProcessorRow, externalBusClock),
    SMASH_COLUMN(ProcessorRow, cores),        SMASH_COLUMN(ProcessorRow, enabledCores),
    SMASH_COLUMN(ProcessorRow, threads),      SMASH_COLUMN(ProcessorRow, characteristics),
    SMASH_COLUMN(ProcessorRow, role),         SMASH_COLUMN(ProcessorRow, version),
};

constexpr std::array memoryColumns = {
    SMASH_COLUMN(MemoryRow, size),
    SMASH_COLUMN(MemoryRow, capacity),
    SMASH_COLUMN(MemoryRow, modules),
    SMASH_COLUMN(MemoryRow, sockets),
    SMASH_COLUMN(MemoryRow, errorMethodology),
};

constexpr std::array memoryModuleColumns = {
    SMASH_COLUMN(MemoryModuleRow, entityId),   SMASH_COLUMN(MemoryModuleRow, entityInstance),
    SMASH_COLUMN(MemoryModuleRow, formFactor), SMASH_COLUMN(MemoryModuleRow, memoryType),
    SMASH_COLUMN(MemoryModuleRow, totalWidth), SMASH_COLUMN(MemoryModuleRow, dataWidth),
    SMASH_COLUMN(MemoryModuleRow, maxSpeed),   SMASH_COLUMN(MemoryModuleRow, configuredSpeed),
    SMASH_COLUMN(MemoryModuleRow, capacity),   SMASH_COLUMN(MemoryModuleRow, bankLabel),
};

constexpr std::array connectorColumns = {
    SMASH_COLUMN(ConnectorRow, tag),
    SMASH_COLUMN(ConnectorRow, isSlot),
    SMASH_COLUMN(ConnectorRow, isHotPluggable),
    SMASH_COLUMN(ConnectorRow, layout),
    SMASH_COLUMN(ConnectorRow, gender),
    SMASH_COLUMN(ConnectorRow, dataWidth),
    SMASH_COLUMN(ConnectorRow, linkWidth),
    SMASH_COLUMN(ConnectorRow, number),
    SMASH_COLUMN(ConnectorRow, name),
    SMASH_COLUMN(ConnectorRow, connector),
    SMASH_COLUMN(ConnectorRow, description),
};

constexpr std::array pciDeviceColumns = {
    SMASH_COLUMN(PciDeviceRow, deviceId), SMASH_COLUMN(PciDeviceRow, classCode),
    SMASH_COLUMN(PciDeviceRow, bus),      SMASH_COLUMN(PciDeviceRow, device),
    SMASH_COLUMN(PciDeviceRow, function), SMASH_COLUMN(PciDeviceRow, enabledState),
    SMASH_COLUMN(PciDeviceRow, name),     SMASH_COLUMN(PciDeviceRow, description),
};

} // namespace

constexpr TableOf<ProcessorRow> processorTable{"processor", processorColumns, 2};
constexpr TableOf<MemoryRow> memoryTable{"memory", memoryColumns, 0};
constexpr TableOf<MemoryModuleRow> memoryModuleTable{"memory_module", memoryModuleColumns, 2};
constexpr TableOf<ConnectorRow> connectorTable{"connector", connectorColumns, 1};
constexpr TableOf<PciDeviceRow> pciDeviceTable{"pci_device", pciDeviceColumns, 1};

} // namespace smash
