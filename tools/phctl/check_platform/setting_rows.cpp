// The SMASH database: power services, what clients have set, and jobs.
#include "check_platform/database_texts.h"
#include "check_platform/rows.h"

namespace phctl::check {
namespace {

constexpr const char* jobs = "tmp_db_init";
constexpr const char* settingsDatabase = "smash_db_init";
constexpr const char* missingRow = "phctl checks this";

// ---- Settings and jobs

// Decimal numbers, separated by commas.
bool isList(const std::string& text) {
    return text.find_first_not_of("0123456789,") == std::string::npos && !text.starts_with(',') &&
           !text.ends_with(',') && text.find(",,") == std::string::npos;
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
    checkAll<Row>(probe, nullptr, settingsDatabase);
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
    for (const Row& listed : rowsOf<Row>(probe, all, settingsDatabase)) {
        Row named{};
        std::memcpy(named.name, listed.name, sizeof named.name);
        Out<Row> row("the row", named);
        if (auto call = probe.call<int(SMASH_DB_HANDLE, Row*)>(textOf(listed, textsOf<Row>[0]),
                                                               probe.database(settingsDatabase), row)) {
            judgeTexts(call, *row);
            for (const TextField& field : textsOf<Row>)
                call.expect(textOf(*row, field) == textOf(listed, field),
                            std::string(field.name) + " is another than in the list");
        }
    }
    Row none{};
    std::strncpy(none.name, missingRow, sizeof none.name - 1);
    Out<Row> row("the row", none);
    auto call = probe.call<int(SMASH_DB_HANDLE, Row*)>("a name that no row has",
                                                       probe.database(settingsDatabase), row);
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
                                                                 probe.database(settingsDatabase), &row)) {
        Row stored = row;
        probe.use<int(SMASH_DB_HANDLE, Row*)>(table.get, probe.database(settingsDatabase), &stored);
        call.expect(std::memcmp(&stored, &row, sizeof row) == 0, "what it stores is not read");
        probe.use<int(SMASH_DB_HANDLE, const char*)>(table.remove, probe.database(settingsDatabase),
                                                     row.name);
    }
}

template <class Row>
void removeRow(Probe& probe, const NamedTable<Row>& table) {
    Row row = newRow<Row>();
    probe
        .call<int(SMASH_DB_HANDLE, const char*)>("a name that no row has", probe.database(settingsDatabase),
                                                 row.name)
        .expectFailure("a name that no row has");
    probe.use<int(SMASH_DB_HANDLE, const Row*)>(table.set, probe.database(settingsDatabase), &row);
    probe.call<int(SMASH_DB_HANDLE, const char*)>("a row that was stored for this",
                                                  probe.database(settingsDatabase), row.name);
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

} // namespace

std::span<const Row> settingRows() {
    static constexpr Row rows[] = {
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
    return rows;
}

} // namespace phctl::check
