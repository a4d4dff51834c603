#include "database.h"

#include "broker/value.h"
#include "errors.h"
#include "hooks/session_row.h"
#include "served_classes.h"
#include "session_hints.h"
#include "smash-db/connection.h"
#include "smash-db/inventory_tables.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cstdlib>
#include <platform/sysroot.h>

namespace phctl {
namespace {

using ipmi::SessionSettings;

Database open(int (*opener)(SMASH_DB_HANDLE*)) {
    SMASH_DB_HANDLE handle = nullptr;
    if (opener(&handle) != 0)
        throw Failure(db_last_error());
    return Database(handle);
}

template <std::size_t size>
void copy(char (&field)[size], const std::string& text, const char* what) {
    if (text.size() >= size)
        throw UsageError(std::string(what) + " is longer than " + std::to_string(size - 1) + " characters");
    text.copy(field, size - 1);
    field[text.size()] = '\0';
}

template <class Row>
std::size_t rowCount(const Database& database, int (*get)(SMASH_DB_HANDLE, Row**, int*)) {
    Row* rows = nullptr;
    int count = 0;
    if (get(database.get(), &rows, &count) != 0)
        return 0;
    std::free(rows);
    return static_cast<std::size_t>(count);
}

std::filesystem::path place(const char* absolutePath) {
    char path[4096];
    if (PH_SysrootPath(absolutePath, path, sizeof path) != 0)
        throw UsageError("PH_SYSROOT is too long");
    return path;
}

} // namespace

void checkSysroot() {
    const char* root = secure_getenv("PH_SYSROOT");
    if (root != nullptr && !std::filesystem::is_directory(root))
        throw UsageError(std::string("PH_SYSROOT names \"") + root + "\", which is no folder");
}

std::filesystem::path databaseFile() {
    return place("/conf/smash.db");
}

std::optional<SessionRow> sessionRow() {
    if (!exists(databaseFile()))
        return {};
    const Database database = open(db_init);
    IPMISessionInfo* row = nullptr;
    if (db_get_ipmi_session_info(database.get(), &row) != 0)
        return {};
    const SessionRow copied(*row);
    explicit_bzero(row->password, sizeof row->password);
    std::free(row);
    return copied;
}

void setSessionRow(const IPMISessionInfo& row) {
    create_directories(databaseFile().parent_path());
    create_directories(place("/tmp")); // of a new PH_SYSROOT: methods keep their jobs there
    const Database database = open(smash_db_init);
    if (db_set_ipmi_session_info(database.get(), &row) != 0)
        throw Failure(db_last_error());
}

std::size_t sensorCount(std::string_view className) {
    if (!isSensorClass(className) || !exists(databaseFile()))
        return 0;
    try {
        const auto database = smash::connect(smash::smashSchema);
        return broker::sameName(className, "CIM_NumericSensor")
                   ? smash::rowCount(database, smash::fullSdrTable)
                   : smash::rowCount(database, smash::compactSdrTable);
    } catch (const std::exception& error) {
        throw Failure(error.what());
    }
}

SessionSettings settingsOf(const IPMISessionInfo& row) {
    SessionSettings settings = hooks::settingsOf(row);
    if (settings.interfaceType == SessionSettings::VirtualBmc && settings.address.empty())
        settings.address = vbmc::defaultStateFile();
    return settings;
}

SessionRow rowOf(const SessionSettings& settings) {
    SessionRow row({});
    copy(row.address, settings.address, "the address");
    row.port = settings.port;
    copy(row.userName, settings.userName, "the user name");
    copy(row.password, settings.password, "the password");
    copy(row.interfaceType, std::to_string(settings.interfaceType), "the interface type");
    copy(row.cipherSuite, std::to_string(settings.cipherSuite), "the cipher suite");
    copy(row.workaroundFlags, std::to_string(settings.workaroundFlags), "the workaround flags");
    copy(row.retransmission, std::to_string(settings.retransmission), "the retransmission time");
    copy(row.privilegeLevel, std::to_string(settings.privilegeLevel), "the privilege level");
    return row;
}

std::string describe(const SessionSettings& settings) {
    switch (settings.interfaceType) {
    case SessionSettings::Lan:
        return "the BMC at " + settings.address + ':' + std::to_string(settings.port) + " (user " +
               (settings.userName.empty() ? "of no name" : settings.userName) + ')';
    case SessionSettings::LocalDevice:
        return "this machine's BMC";
    default:
        return "the virtual BMC " + settings.address;
    }
}

void requireBmc(const SessionSettings& settings) {
    if (settings.interfaceType == SessionSettings::VirtualBmc && !std::filesystem::exists(settings.address))
        throw Failure("there is no virtual BMC " + settings.address + ": run `phctl bmc create MODEL` first");
}

SessionSettings knownBmc() {
    if (!exists(databaseFile()))
        throw Failure("there is no database " + databaseFile().string() + ": run `phctl sync` first");
    const auto row = sessionRow();
    if (!row)
        throw Failure(databaseFile().string() + " does not say where the BMC is: run `phctl sync --help`");
    SessionSettings settings = settingsOf(*row);
    requireBmc(settings);
    return settings;
}

std::string diagnose() {
    constexpr int secondsToAnswer = 3;
    try {
        SessionSettings settings = knownBmc();
        settings.timeout = secondsToAnswer;
        ipmi::openTransport(settings);
    } catch (const std::exception& error) {
        return explain(error);
    }
    // A provider may look for a row that nobody has stored yet, which is no reason for a failure.
    std::string error = db_last_error();
    if (error.find("no such row") == std::string::npos && !error.empty())
        return error;
    const Database database = open(db_init);
    const bool hasSensors =
        rowCount(database, db_get_all_full_sdrs) > 0 || rowCount(database, db_get_all_compact_sdrs) > 0;
    return hasSensors ? "" : databaseFile().string() + " has no sensors: run `phctl sync` first";
}

} // namespace phctl
