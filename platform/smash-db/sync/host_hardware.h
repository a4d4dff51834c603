// The host's hardware as its firmware describes it, put together with what the BMC tells of the same parts.
#pragma once

#include "smash-db/sync/packages.h"
#include "smash-db/sync/sync.h"
#include "smbios/hardware.h"

#include <platform/smash_db_devices.h>
#include <platform/smash_db_hardware.h>

#include <vector>

namespace smash {

struct HostHardware {
    std::vector<ProcessorRow> processors;
    std::vector<MemoryRow> memory; // one, or none
    std::vector<MemoryModuleRow> memoryModules;
    std::vector<ConnectorRow> connectors;
    std::vector<PciDeviceRow> pciDevices;
};

// Makes the rows. Packages get what their FRU does not tell; those that the BMC does not know are added, as are the
// processors to the devices. docs/smbios-mapping.md says what becomes of what.
HostHardware mapHardware(const smbios::Hardware& hardware, const SdrMapping& sensors, Packages& packages,
                         std::vector<EntityDeviceRow>& devices, std::vector<SyncRemark>& remarks);

} // namespace smash
