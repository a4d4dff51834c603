// The host's hardware as its firmware describes it.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_hardware.h>

namespace smash {

extern const TableOf<ProcessorRow> processorTable;
extern const TableOf<MemoryRow> memoryTable;
extern const TableOf<MemoryModuleRow> memoryModuleTable;
extern const TableOf<ConnectorRow> connectorTable;
extern const TableOf<PciDeviceRow> pciDeviceTable;

} // namespace smash
