// The SMASH database: its handles and the inventory, and how the tables refer to one another.
#include "check_platform/database_texts.h"
#include "check_platform/rows.h"
#include "ipmi/entity.h"

#include <cstring>
#include <map>

namespace phctl::check {
namespace {

// ---- Handles

void openHandle(Probe& probe) {
    Out<SMASH_DB_HANDLE> handle("the handle");
    if (probe.call<decltype(db_init)>("", handle))
        probe.use<decltype(db_close)>("db_close", *handle);
}

void closeHandle(Probe& probe) {
    SMASH_DB_HANDLE handle = nullptr;
    probe.use<decltype(db_init)>("db_init", &handle);
    probe.call<decltype(db_close)>("an open handle", handle);
    probe.call<decltype(db_close)>("NULL", nullptr).expectFailure("NULL");
}

// ---- Sensors

// "<owner ID>.<sensor number>.<owner LUN>.<sensor type>.<event/reading type>.<offset>:<ID string>"
void judgeSensor(Call& call, const CompactSdr& sdr) {
    char begin[64];
    std::snprintf(begin, sizeof begin, "%u.%u.%u.%u.%02x.", sdr.ownerId, sdr.sensorNumber, sdr.ownerLun,
                  sdr.ipmiSensorType, sdr.eventReadingType);
    call.expect(textOf(sdr, textsCompactSdr[0]).starts_with(begin),
                "deviceId is not that of the other fields");
    call.expect(sdr.sensorType >= 1 && sdr.sensorType <= 5, "sensorType is not 1 to 5");
}

void getSensors(Probe& probe) {
    checkAll<CompactSdr>(probe, judgeSensor);
}

void getNumericSensors(Probe& probe) {
    checkAll<FullSdr>(probe, [](Call& call, const FullSdr& sdr) {
        judgeSensor(call, sdr.common);
        call.expect(sdr.analogFormat >= 0 && sdr.analogFormat <= 3, "analogFormat is not 0 to 3");
        call.expect(sdr.m >= -512 && sdr.m <= 511 && sdr.b >= -512 && sdr.b <= 511,
                    "m or b has more than 10 bits");
        call.expect(sdr.exponents >= 0 && sdr.exponents <= 0xFF, "exponents is more than a byte");
    });
}

std::set<std::uint8_t> sensorNumbers(Probe& probe) {
    std::set<std::uint8_t> numbers;
    for (const auto& sdr : rowsOf<CompactSdr>(probe, "db_get_all_compact_sdrs"))
        numbers.insert(sdr.sensorNumber);
    for (const auto& sdr : rowsOf<FullSdr>(probe, "db_get_all_full_sdrs"))
        numbers.insert(sdr.common.sensorNumber);
    return numbers;
}

void getEntityDevices(Probe& probe) {
    const auto sensors = sensorNumbers(probe);
    const auto isThere = [&](std::uint8_t number) {
        return number == SMASH_NO_SENSOR || sensors.contains(number);
    };
    std::set<std::pair<std::uint8_t, std::uint8_t>> entities;
    checkAll<EntityDeviceRow>(probe, [&](Call& call, const EntityDeviceRow& device) {
        call.expect(entities.emplace(device.entityId, device.entityInstance).second,
                    "two devices are the same entity");
        call.expect(isThere(device.tachometer), "the database has no sensor of a device's tachometer");
        call.expect(isThere(device.presenceSensor), "the database has no sensor of a device's presence");
        call.expect(device.hasVariableSpeed <= 1, "hasVariableSpeed is neither 0 nor 1");
    });
}

void getEntityAssociations(Probe& probe) {
    checkAll<EntityAssociationRow>(probe, [](Call& call, const EntityAssociationRow& row) {
        call.expect(row.containerId != row.entityId || row.containerInstance != row.entityInstance,
                    "an entity contains itself");
    });
}

// ---- Inventory

bool isNumber(const char* text) {
    char* end = nullptr;
    static_cast<void>(std::strtol(text, &end, 0));
    return *end == '\0'; // an empty one is 0
}

void getSession(Probe& probe) {
    checkByNumbers<IPMISessionInfo, decltype(db_get_ipmi_session_info)>(
        probe, "", [](Call& call, const IPMISessionInfo& info) {
            for (const auto& field : std::span(textsIPMISessionInfo).subspan(3))
                call.expect(isNumber(textOf(info, field).c_str()), std::string(field.name) + " is no number");
        });
}

void getDevice(Probe& probe) {
    for (const auto& [words, type] :
         {std::pair{"the service processor", SMASH_DEVICE_SP}, {"the host", SMASH_DEVICE_HOST}})
        checkByNumbers<DeviceRecord, decltype(db_get_device_bytype)>(
            probe, words,
            [type = type](Call& call, const DeviceRecord& device) {
                call.expect(device.type == type, "it is another type of device");
                call.expect(device.deviceId[0] != '\0', "deviceId is empty");
                call.expect(std::string_view(device.guid, strnlen(device.guid, sizeof device.guid)).size() ==
                                36,
                            "guid is no GUID");
            },
            static_cast<int>(type));
}

void getFru(Probe& probe) {
    checkByNumbers<FruRecord, decltype(db_get_fru_by_entity_id)>(
        probe, "the system board",
        [](Call& call, const FruRecord& fru) {
            call.expect(fru.entityId == ipmi::entity::systemBoard, "it is another entity");
        },
        static_cast<int>(ipmi::entity::systemBoard));
}

void getPackages(Probe& probe) {
    checkAll<PackageRow>(probe, [](Call& call, const PackageRow& package) {
        const std::string entity =
            std::to_string(package.entityId) + '.' + std::to_string(package.entityInstance & 0x7F);
        const std::string tag = textOf(package, textsPackageRow[0]);
        call.expect(tag.starts_with(entity) &&
                        (tag.size() == entity.size() ||
                         !std::isdigit(static_cast<unsigned char>(tag[entity.size()]))),
                    "tag is not that of the entity");
        call.expect(package.hasFruData <= 1, "hasFruData is neither 0 nor 1");
    });
}

void getSupplies(Probe& probe) {
    bool isAny = false;
    for (const auto& package : rowsOf<PackageRow>(probe, "db_get_all_packages"))
        if (package.entityId == ipmi::entity::powerSupply) {
            isAny = true;
            checkByNumbers<PowerSupplyInfoRow, decltype(db_get_power_supply_info)>(
                probe, textOf(package, textsPackageRow[0]),
                [&](Call& call, const PowerSupplyInfoRow& info) {
                    call.expect(info.entityId == package.entityId &&
                                    info.entityInstance == package.entityInstance,
                                "it is another entity");
                },
                static_cast<int>(package.entityId), static_cast<int>(package.entityInstance));
        }
    if (!isAny)
        throw NotPossible("the database has no power supply");
}

void getSensor(Probe& probe) {
    checkOne<CompactSdr>(probe, "db_get_all_compact_sdrs");
}
void getNumericSensor(Probe& probe) {
    checkOne<FullSdr>(probe, "db_get_all_full_sdrs");
}

// All sensors of a number are among those of its events; one with a '(' in its name has the number behind it.
template <class Sdr>
void checkOfEvent(Probe& probe, const char* all) {
    std::map<std::uint8_t, std::set<std::string>> listed;
    for (const Sdr& sdr : rowsOf<Sdr>(probe, all))
        if (const CompactSdr& sensor = commonOf(sdr); strchr(sensor.name, '(') == nullptr)
            listed[sensor.sensorNumber].emplace(sensor.deviceId);
    for (auto& [number, sensors] : listed) {
        Out<Sdr*> rows("the rows");
        Out<int> count("the count");
        auto call = probe.call<int(SMASH_DB_HANDLE, int, Sdr**, int*)>(
            "sensor " + std::to_string(number), probe.database(), int{number}, rows, count);
        const auto size = call && *count > 0 ? static_cast<std::size_t>(*count) : 0;
        const auto owner = owned(call, rows, size);
        if (!call || (owner == nullptr && size > 0))
            continue;
        for (const Sdr& sdr : std::span(owner.get(), size))
            sensors.erase(commonOf(sdr).deviceId);
        call.expect(sensors.empty(), "a sensor of this number is missing");
        call.enter("free() of what it handed out");
    }
}
void getSensorsOfEvent(Probe& probe) {
    checkOfEvent<CompactSdr>(probe, "db_get_all_compact_sdrs");
}
void getNumericSensorsOfEvent(Probe& probe) {
    checkOfEvent<FullSdr>(probe, "db_get_all_full_sdrs");
}
void getPackage(Probe& probe) {
    checkOne<PackageRow>(probe, "db_get_all_packages");
}
} // namespace

std::span<const Row> databaseRows() {
    static constexpr Row rows[] = {
        {"db_init", openHandle},
        {"tmp_db_init", openHandle},
        {"smash_db_init", openHandle},
        {"db_close", closeHandle},
        {"db_get_ipmi_session_info", getSession},
        {"db_set_ipmi_session_info", nullptr, true, "it says where the BMC is"},
        {"db_get_device_bytype", getDevice},
        {"db_set_device", nullptr, true, "the sync calls it"},
        {"db_get_fru_by_entity_id", getFru},
        {"db_get_all_compact_sdrs", getSensors},
        {"db_get_compact_sdr", getSensor},
        {"db_get_compact_sdrs_of_event", getSensorsOfEvent, false,
         "without it, all sensors are read for an alert"},
        {"db_get_all_full_sdrs", getNumericSensors},
        {"db_get_full_sdr", getNumericSensor},
        {"db_get_full_sdrs_of_event", getNumericSensorsOfEvent, false,
         "without it, all sensors are read for an alert"},
        {"db_get_all_entity_devices", getEntityDevices},
        {"db_get_all_entity_associations", getEntityAssociations},
        {"db_get_all_packages", getPackages},
        {"db_get_package", getPackage},
        {"db_get_power_supply_info", getSupplies},
    };
    return rows;
}

} // namespace phctl::check
