// The SMASH database: what its tables hold and how they refer to one another.
#include "check_platform/rows.h"
#include "check_platform/table_check.h"

namespace phctl::check {

#define PH_TEXTS(Row, ...)                                                                                   \
    namespace {                                                                                              \
    constexpr TextField texts##Row[] = {__VA_ARGS__};                                                        \
    }                                                                                                        \
    template <>                                                                                              \
    const std::span<const TextField> textsOf<Row> = texts##Row;

PH_TEXTS(CompactSdr, PH_TEXT(CompactSdr, deviceId), PH_TEXT(CompactSdr, name),
         PH_TEXT(CompactSdr, otherSensorType), PH_TEXT(CompactSdr, source))
PH_TEXTS(FullSdr, PH_TEXT(FullSdr, common.deviceId), PH_TEXT(FullSdr, common.name),
         PH_TEXT(FullSdr, common.otherSensorType), PH_TEXT(FullSdr, common.source))
PH_TEXTS(PackageRow, PH_TEXT(PackageRow, tag), PH_TEXT(PackageRow, name), PH_TEXT(PackageRow, manufacturer),
         PH_TEXT(PackageRow, model), PH_TEXT(PackageRow, serialNumber), PH_TEXT(PackageRow, partNumber),
         PH_TEXT(PackageRow, version), PH_TEXT(PackageRow, assetTag))
PH_TEXTS(PowerServiceRow, PH_TEXT(PowerServiceRow, name), PH_TEXT(PowerServiceRow, elementName),
         PH_TEXT(PowerServiceRow, operationalStatus))
PH_TEXTS(PowerCapabilitiesRow, PH_TEXT(PowerCapabilitiesRow, instanceId),
         PH_TEXT(PowerCapabilitiesRow, elementName), PH_TEXT(PowerCapabilitiesRow, powerChangeCapabilities),
         PH_TEXT(PowerCapabilitiesRow, powerStatesSupported),
         PH_TEXT(PowerCapabilitiesRow, requestedPowerStatesSupported))
PH_TEXTS(IndicationServiceRow, PH_TEXT(IndicationServiceRow, name))
PH_TEXTS(CimxmlFilterRow, PH_TEXT(CimxmlFilterRow, name), PH_TEXT(CimxmlFilterRow, query))
PH_TEXTS(CimxmlDestinationRow, PH_TEXT(CimxmlDestinationRow, name),
         PH_TEXT(CimxmlDestinationRow, destination))
PH_TEXTS(StaticIPRow, PH_TEXT(StaticIPRow, key), PH_TEXT(StaticIPRow, IPv4Address),
         PH_TEXT(StaticIPRow, GatewayIPv4Address), PH_TEXT(StaticIPRow, SubnetMask),
         PH_TEXT(StaticIPRow, IPv6Address), PH_TEXT(StaticIPRow, GatewayIPv6Address))
PH_TEXTS(StoredJobRow, PH_TEXT(StoredJobRow, instanceId), PH_TEXT(StoredJobRow, job.elementName),
         PH_TEXT(StoredJobRow, job.kind), PH_TEXT(StoredJobRow, job.jobStatus),
         PH_TEXT(StoredJobRow, job.minutesToKeep), PH_TEXT(StoredJobRow, job.operationalStatus))
PH_TEXTS(JobErrorRow, PH_TEXT(JobErrorRow, errorSource))
PH_TEXTS(DeviceRecord, PH_TEXT(DeviceRecord, deviceId), PH_TEXT(DeviceRecord, guid))
PH_TEXTS(FruRecord, PH_TEXT(FruRecord, manufacturer), PH_TEXT(FruRecord, model),
         PH_TEXT(FruRecord, serialNumber), PH_TEXT(FruRecord, partNumber))
PH_TEXTS(IPMISessionInfo, PH_TEXT(IPMISessionInfo, address), PH_TEXT(IPMISessionInfo, userName),
         PH_TEXT(IPMISessionInfo, password), PH_TEXT(IPMISessionInfo, interfaceType),
         PH_TEXT(IPMISessionInfo, cipherSuite), PH_TEXT(IPMISessionInfo, workaroundFlags),
         PH_TEXT(IPMISessionInfo, retransmission), PH_TEXT(IPMISessionInfo, privilegeLevel))
template <>
const std::span<const TextField> textsOf<EntityDeviceRow>{};
template <>
const std::span<const TextField> textsOf<EntityAssociationRow>{};
template <>
const std::span<const TextField> textsOf<PowerSupplyInfoRow>{};

namespace {

constexpr const char* jobs = "tmp_db_init";
constexpr const char* settings = "smash_db_init";
constexpr const char* missingRow = "phctl checks this";
constexpr std::uint8_t systemBoard = 7, powerSupply = 10; // IPMI entity IDs

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

// A row that is asked for by numbers, and may be none.
template <class Row, class Function, class... Keys>
void checkByNumbers(Probe& probe, const std::string& words, const Judge<Row>& judge, Keys... keys) {
    Out<Row*> row("the row");
    auto call = probe.call<Function>(words, probe.database(), keys..., row);
    const auto owner = owned(call, row, 1);
    if (owner == nullptr)
        return;
    judgeTexts(call, *owner);
    if (judge)
        judge(call, *owner);
    explicit_bzero(owner.get(), sizeof(Row)); // one has a password
    call.enter("free() of what it handed out");
}

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
            call.expect(fru.entityId == systemBoard, "it is another entity");
        },
        static_cast<int>(systemBoard));
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
        if (package.entityId == powerSupply) {
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

// ---- Settings and jobs

// Decimal numbers, separated by commas.
bool isList(const std::string& text) {
    return text.find_first_not_of("0123456789,") == text.npos && !text.starts_with(',') &&
           !text.ends_with(',') && text.find(",,") == text.npos;
}

template <class Row>
void judgeLists(Call& call, const Row& row, std::size_t first) {
    for (const auto& field : textsOf<Row>.subspan(first))
        call.expect(isList(textOf(row, field)), std::string(field.name) + " is no list of numbers");
}

void getPowerServices(Probe& probe) {
    checkAll<PowerServiceRow>(probe, [](Call& call, const PowerServiceRow& row) {
        judgeLists(call, row, 2);
        call.expect(row.started <= 1, "started is neither 0 nor 1");
    });
}

void getPowerCapabilities(Probe& probe) {
    checkAll<PowerCapabilitiesRow>(
        probe, [](Call& call, const PowerCapabilitiesRow& row) { judgeLists(call, row, 2); });
}

void getJobs(Probe& probe) {
    checkAll<StoredJobRow>(
        probe,
        [](Call& call, const StoredJobRow& row) {
            call.expect(isList(row.job.operationalStatus), "operationalStatus is no list of numbers");
            call.expect(row.job.percentComplete >= 0 && row.job.percentComplete <= 100,
                        "percentComplete is none");
        },
        jobs);
}

template <class Row>
void getAllSettings(Probe& probe) {
    checkAll<Row>(probe, nullptr, settings);
}

void getSensor(Probe& probe) {
    checkOne<CompactSdr>(probe, "db_get_all_compact_sdrs");
}
void getNumericSensor(Probe& probe) {
    checkOne<FullSdr>(probe, "db_get_all_full_sdrs");
}
void getPackage(Probe& probe) {
    checkOne<PackageRow>(probe, "db_get_all_packages");
}
void getPowerService(Probe& probe) {
    checkOne<PowerServiceRow>(probe, "db_get_all_power_mgt_service");
}
void getPowerCapability(Probe& probe) {
    checkOne<PowerCapabilitiesRow>(probe, "db_get_all_power_mgt_capabilities");
}
void getJob(Probe& probe) {
    checkOne<StoredJobRow>(probe, "db_get_all_concretejob", jobs);
}

// A job without an error is a success with NULL.
void getError(Probe& probe) {
    const auto stored = rowsOf<StoredJobRow>(probe, "db_get_all_concretejob", jobs);
    if (stored.empty())
        throw NotPossible("there is no job");
    for (const StoredJobRow& job : stored) {
        Out<JobErrorRow*> error("the error");
        auto call = probe.call<decltype(db_get_error_info)>(job.instanceId, probe.database(jobs),
                                                            job.instanceId, error);
        if (const auto owner = owned(call, error, 1); owner != nullptr)
            judgeTexts(call, *owner);
    }
}

// These fill a row whose name is given.
template <class Row>
void getByName(Probe& probe, const char* all) {
    for (const Row& listed : rowsOf<Row>(probe, all, settings)) {
        Row named{};
        std::memcpy(named.name, listed.name, sizeof named.name);
        Out<Row> row("the row", named);
        if (auto call = probe.call<int(SMASH_DB_HANDLE, Row*)>(textOf(listed, textsOf<Row>[0]),
                                                               probe.database(settings), row)) {
            judgeTexts(call, *row);
            for (const TextField& field : textsOf<Row>)
                call.expect(textOf(*row, field) == textOf(listed, field),
                            std::string(field.name) + " is another than in the list");
        }
    }
    Row none{};
    std::strncpy(none.name, missingRow, sizeof none.name - 1);
    Out<Row> row("the row", none);
    auto call =
        probe.call<int(SMASH_DB_HANDLE, Row*)>("a name that no row has", probe.database(settings), row);
    call.expectFailure("a name that no row has");
    call.expect(!call.isMade() || std::memcmp(&*row, &none, sizeof none) == 0,
                "it fails and changes the row");
}

void getFilter(Probe& probe) {
    getByName<CimxmlFilterRow>(probe, "db_get_all_indication_filter_cimxml");
}
void getDestination(Probe& probe) {
    getByName<CimxmlDestinationRow>(probe, "db_get_all_listener_destination");
}

// ---- Changes, which are taken back

template <class Row>
struct NamedTable {
    const char* get;
    const char* set;
    const char* remove;
};
constexpr NamedTable<CimxmlFilterRow> filters{"db_get_indication_filter_cimxml",
                                              "db_set_indication_filter_cimxml",
                                              "db_delete_indication_filter_cimxml"};
constexpr NamedTable<CimxmlDestinationRow> destinations{
    "db_get_listener_destination", "db_set_listener_destination", "db_delete_listener_destination"};

template <class Row>
Row newRow() {
    Row row{};
    std::strncpy(row.name, missingRow, sizeof row.name - 1);
    return row;
}

template <class Row>
void setRow(Probe& probe, const NamedTable<Row>& table) {
    const Row row = newRow<Row>();
    if (auto call = probe.call<int(SMASH_DB_HANDLE, const Row*)>("a row, removed again",
                                                                 probe.database(settings), &row)) {
        Row stored = row;
        probe.use<int(SMASH_DB_HANDLE, Row*)>(table.get, probe.database(settings), &stored);
        call.expect(std::memcmp(&stored, &row, sizeof row) == 0, "what it stores is not read");
        probe.use<int(SMASH_DB_HANDLE, const char*)>(table.remove, probe.database(settings), row.name);
    }
}

template <class Row>
void removeRow(Probe& probe, const NamedTable<Row>& table) {
    Row row = newRow<Row>();
    probe
        .call<int(SMASH_DB_HANDLE, const char*)>("a name that no row has", probe.database(settings), row.name)
        .expectFailure("a name that no row has");
    probe.use<int(SMASH_DB_HANDLE, const Row*)>(table.set, probe.database(settings), &row);
    probe.call<int(SMASH_DB_HANDLE, const char*)>("a row that was stored for this", probe.database(settings),
                                                  row.name);
}

void setFilter(Probe& probe) {
    setRow(probe, filters);
}
void removeFilter(Probe& probe) {
    removeRow(probe, filters);
}
void setDestination(Probe& probe) {
    setRow(probe, destinations);
}
void removeDestination(Probe& probe) {
    removeRow(probe, destinations);
}

void addJob(Probe& probe) {
    ConcreteJobRow job{};
    std::strncpy(job.elementName, missingRow, sizeof job.elementName - 1);
    std::strncpy(job.minutesToKeep, "1", sizeof job.minutesToKeep - 1);
    OutText instanceId("the InstanceID", sizeof(StoredJobRow::instanceId));
    if (auto call = probe.call<decltype(db_set_concretejob)>("a job, removed again", probe.database(jobs),
                                                             &job, instanceId)) {
        call.expect(*static_cast<const char*>(instanceId) != '\0', "the InstanceID is empty");
        probe.use<decltype(db_delete_concretejob)>("db_delete_concretejob", probe.database(jobs),
                                                   static_cast<const char*>(instanceId));
    }
}

constexpr const char* staged = "it would change what clients have staged";
constexpr const char* ofJobs = "methods call it for jobs of theirs";

constexpr Row rows[] = {
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
    {"db_get_all_full_sdrs", getNumericSensors},
    {"db_get_full_sdr", getNumericSensor},
    {"db_get_all_entity_devices", getEntityDevices},
    {"db_get_all_entity_associations", getEntityAssociations},
    {"db_get_all_packages", getPackages},
    {"db_get_package", getPackage},
    {"db_get_power_supply_info", getSupplies},
    {"db_get_all_power_mgt_service", getPowerServices},
    {"db_get_power_mgt_service", getPowerService},
    {"db_get_all_power_mgt_capabilities", getPowerCapabilities},
    {"db_get_power_mgt_capabilities", getPowerCapability},
    {"db_get_all_indication_service", getAllSettings<IndicationServiceRow>},
    {"db_set_indication_service", nullptr, true, "it would change how alerts are delivered"},
    {"db_get_all_indication_filter_cimxml", getAllSettings<CimxmlFilterRow>},
    {"db_get_indication_filter_cimxml", getFilter},
    {"db_set_indication_filter_cimxml", setFilter, true},
    {"db_delete_indication_filter_cimxml", removeFilter, true},
    {"db_get_all_listener_destination", getAllSettings<CimxmlDestinationRow>},
    {"db_get_listener_destination", getDestination},
    {"db_set_listener_destination", setDestination, true},
    {"db_delete_listener_destination", removeDestination, true},
    {"db_get_all_static_ip_assignment_settingdata", getAllSettings<StaticIPRow>},
    {"db_init_static_ip_assignment_settingdata", nullptr, true, staged},
    {"db_set_static_ip_assignment_settingdata", nullptr, true, staged},
    {"db_delete_static_ip", nullptr, true, staged},
    {"db_get_all_concretejob", getJobs},
    {"db_get_concretejob", getJob},
    {"db_set_concretejob", addJob, true},
    {"db_modify_concretejob", nullptr, true, ofJobs},
    {"db_delete_concretejob", nullptr, true, ofJobs},
    {"db_get_error_info", getError},
    {"db_set_error_info", nullptr, true, ofJobs},
    {"db_get_clp_error_info", getError},
    {"db_get_MessageID", nullptr, true, "it numbers a text for good"},
};

} // namespace

std::span<const Row> databaseRows() {
    return rows;
}

} // namespace phctl::check
