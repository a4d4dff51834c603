#include "smash-db/sync/sync.h"

#include "ipmi/command.h"
#include "smash-db/database.h"
#include "smash-db/device_tables.h"
#include "smash-db/hardware_tables.h"
#include "smash-db/indication_tables.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/package_tables.h"
#include "smash-db/power_tables.h"
#include "smash-db/rows.h"
#include "smash-db/sync/entity_devices.h"
#include "smash-db/sync/fru_inventory.h"
#include "smash-db/sync/host_hardware.h"
#include "smash-db/sync/packages.h"
#include "smash-db/sync/power_services.h"
#include "smash-db/sync/sdr_mapping.h"
#include "smash-db/sync/smbios_source.h"

#include <array>

namespace smash {
namespace {

constexpr std::uint16_t notApplicable = 12; // RequestedState

// The canonical text of a GUID, which a BMC sends with the last byte first (IPMI 2.0 table 20-10). Empty
// where the BMC has none: both commands are optional.
std::string readGuid(ipmi::Transport& bmc, ipmi::CommandCode command, const char* name,
                     std::vector<SyncRemark>& remarks) {
    try {
        const auto answer = ipmi::run(bmc, command);
        auto reader = answer.reader();
        const auto bytes = reader.bytes(16);
        answer.verify(reader);
        std::string text;
        for (std::size_t i = bytes.size(); i-- > 0;) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
            text += digits;
            if (i == 12 || i == 10 || i == 8 || i == 6)
                text += '-';
        }
        return text;
    } catch (const ipmi::CompletionCodeError& error) {
        remarks.push_back({name, error.what()});
    } catch (const ipmi::ShortAnswerError& error) {
        remarks.push_back({name, error.what()});
    }
    return {};
}

void setGuid(DeviceRecord& device, std::string guid) {
    copyText(device.guid, guid);
    std::erase(guid, '-');
    copyText(device.deviceId, guid);
}

std::array<DeviceRecord, 2> readDevices(ipmi::Transport& bmc, std::vector<SyncRemark>& remarks) {
    const auto answer = ipmi::run(bmc, ipmi::command::getDeviceId);
    auto reader = answer.reader();
    DeviceRecord device = {};
    device.type = SMASH_DEVICE_SP;
    device.tag[0] = reader.u8();
    device.tag[1] = reader.u8() & 0x0F;
    device.firmwareMajor = reader.u8() & 0x7F;
    device.firmwareMinor = reader.u8();
    reader.skip(2); // IPMI version, additional device support
    device.manufacturerId = reader.u24() & 0xFFFFF;
    device.productId = reader.u16();
    device.requestedState = notApplicable;
    answer.verify(reader);

    // The host is told apart by its GUID; IPMI identifies it by nothing else.
    DeviceRecord host = device;
    host.type = SMASH_DEVICE_HOST;

    // A BMC that has only one GUID has it for both.
    const std::string own = readGuid(bmc, ipmi::command::getDeviceGuid, "device GUID", remarks);
    const std::string system = readGuid(bmc, ipmi::command::getSystemGuid, "system GUID", remarks);
    constexpr char nil[] = "00000000-0000-0000-0000-000000000000";
    setGuid(device, !own.empty() ? own : !system.empty() ? system : nil);
    setGuid(host, !system.empty() ? system : !own.empty() ? own : nil);
    return {device, host};
}

void keepRequestedState(const SQLite::Database& database, DeviceRecord& device) {
    auto selection = select(database, deviceTable, "WHERE type = ?");
    selection.bind(1, device.type);
    if (const auto known = read(std::move(selection), deviceTable); known.count > 0)
        device.requestedState = known.records->requestedState;
}

// Clients change it: a service that is there stays as it is.
void addIndicationService(SQLite::Database& database) {
    constexpr std::uint16_t ignore = 4; // SubscriptionRemovalAction
    constexpr IndicationServiceRow service{"Indication Service", 1, 3, 20, ignore, 0};
    if (read(select(database, indicationServiceTable), indicationServiceTable).count == 0)
        replace(database, indicationServiceTable, service);
}

struct Inventory {
    SdrRepositoryRow repository;
    std::array<DeviceRecord, 2> devices;
    std::vector<FruRecord> frus;
    SdrMapping sensors;
    std::vector<EntityDeviceRow> entityDevices;
    Packages packages;
    HostHardware hardware;
};

void store(SQLite::Database& database, Inventory& inventory) {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    for (DeviceRecord& device : inventory.devices)
        keepRequestedState(database, device);
    replaceAll<DeviceRecord>(database, deviceTable, inventory.devices);
    replaceAll<FruRecord>(database, fruTable, inventory.frus);
    replaceAll<PackageRow>(database, packageTable, inventory.packages.packages);
    replaceAll<PowerSupplyInfoRow>(database, powerSupplyInfoTable, inventory.packages.powerSupplies);
    replaceAll<SdrRepositoryRow>(database, sdrRepositoryTable, std::span(&inventory.repository, 1));
    replaceAll<FullSdr>(database, fullSdrTable, inventory.sensors.numericSensors);
    replaceAll<CompactSdr>(database, compactSdrTable, inventory.sensors.sensors);
    replaceAll<SensorConversionRow>(database, sensorConversionTable, inventory.sensors.conversions);
    replaceAll<EntityDeviceRow>(database, entityDeviceTable, inventory.entityDevices);
    replaceAll<EntityAssociationRow>(database, entityAssociationTable, inventory.sensors.associations);
    replaceAll<ProcessorRow>(database, processorTable, inventory.hardware.processors);
    replaceAll<MemoryRow>(database, memoryTable, inventory.hardware.memory);
    replaceAll<MemoryModuleRow>(database, memoryModuleTable, inventory.hardware.memoryModules);
    replaceAll<ConnectorRow>(database, connectorTable, inventory.hardware.connectors);
    replaceAll<PciDeviceRow>(database, pciDeviceTable, inventory.hardware.pciDevices);
    replaceAll(database, powerServiceTable, powerServices());
    replaceAll(database, powerCapabilitiesTable, powerCapabilities());
    addIndicationService(database);
    transaction.commit();
}

} // namespace

SyncReport sync(ipmi::Transport& bmc, const SyncProgress& progress, const std::filesystem::path& smbiosFile) {
    const auto phase = [&](std::string_view name) {
        return [&progress, name](std::size_t done, std::size_t total) {
            if (progress)
                progress(name, done, total);
        };
    };
    // A database that cannot be opened is found before the minutes that a slow BMC may take.
    auto database = open(smashSchema, OpenMode::CreateMissing);
    SyncReport report;
    Inventory inventory;

    phase("device")(0, 1);
    inventory.devices = readDevices(bmc, report.remarks);
    phase("device")(1, 1);
    // Before the records: what is added while they are read makes the database an old one.
    inventory.repository = readSdrRepositoryInfo(bmc);
    const auto records = readSdrRepository(bmc, report.remarks, phase("SDR"));
    for (const SdrRecord& record : records)
        inventory.sensors.add(record, report.remarks);
    inventory.entityDevices = findEntityDevices(inventory.sensors);
    FruDevices fruDevices(bmc, report.remarks);
    inventory.frus = readFrus(fruDevices, inventory.sensors.locators, phase("FRU"));
    inventory.packages = readPackages(bmc, inventory.sensors, fruDevices);

    if (const auto table =
            findSmbiosTable(bmc, inventory.devices[0], smbiosFile, report.remarks, phase("SMBIOS"))) {
        const smbios::Hardware hardware = smbios::readHardware(table->table);
        noteOtherSystem(hardware, inventory.devices[1], report.remarks);
        inventory.hardware = mapHardware(hardware, inventory.sensors, inventory.packages,
                                         inventory.entityDevices, report.remarks);
        report.hardwareSource = table->source;
    }

    phase("database")(0, 1);
    try {
        store(database, inventory);
    } catch (const SQLite::Exception& error) {
        throw std::runtime_error(database.getFilename() + ": " + error.what());
    }
    phase("database")(1, 1);

    report.recordsRead = records.size();
    report.numericSensors = inventory.sensors.numericSensors.size();
    report.sensors = inventory.sensors.sensors.size();
    report.frus = inventory.frus.size();
    report.packages = inventory.packages.packages.size();
    report.processors = inventory.hardware.processors.size();
    report.memoryModules = inventory.hardware.memoryModules.size();
    report.connectors = inventory.hardware.connectors.size();
    report.pciDevices = inventory.hardware.pciDevices.size();
    return report;
}

} // namespace smash
