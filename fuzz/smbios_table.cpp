// The table by which a host's firmware describes its hardware, and the rows that the sync makes of it.
#include "smash-db/sync/host_hardware.h"
#include "target.h"

#include <set>
#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const smbios::Table table({data, data + size});
        const smbios::Hardware hardware = smbios::readHardware(table);
        const smash::SdrMapping sensors;
        smash::Packages packages;
        std::vector<EntityDeviceRow> devices;
        std::vector<smash::SyncRemark> remarks;
        const auto rows = smash::mapHardware(hardware, sensors, packages, devices, remarks);
        // What the database takes for keys is there once.
        std::set<std::string> keys;
        for (const PackageRow& row : packages.packages)
            require(keys.insert(row.tag).second, "tags of packages differ");
        for (const ConnectorRow& row : rows.connectors)
            require(keys.insert(row.tag).second, "tags of connectors differ from all others");
        for (const PciDeviceRow& row : rows.pciDevices)
            require(keys.insert(row.deviceId).second, "PCI addresses differ");
        for (const ProcessorRow& row : rows.processors)
            require(row.enabledCores <= row.cores &&
                        keys.insert("cpu" + std::to_string(row.entityInstance)).second,
                    "processors are told apart");
        for (const MemoryModuleRow& row : rows.memoryModules)
            require(row.capacity >= 0 && keys.insert("memory" + std::to_string(row.entityInstance)).second,
                    "modules are told apart");
    } catch (const smbios::NoTable&) {
    }
    return 0;
}
