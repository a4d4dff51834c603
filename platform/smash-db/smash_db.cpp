// The C interface of the SMASH database.
#include <platform/smash_db.h>

#include "smash-db/database.h"
#include "smash-db/rows.h"

#include <platform/support.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>

struct SmashDatabase {
    SQLite::Database connection;
};

namespace {

using namespace smash;

constexpr int debugLog = 134;

thread_local char lastError[512];

void keepError(const char* function, const char* reason) {
    std::snprintf(lastError, sizeof lastError, "%s: %s", function, reason);
    IDBG_LINUXAPP_DbgOut(debugLog, "%s\n", lastError);
}

// Runs a function's work: 0, or 1 when it throws. Nothing leaves a C function but that.
template <class Work>
int guarded(const char* function, Work&& work) noexcept {
    try {
        work();
        return 0;
    } catch (const std::exception& error) {
        keepError(function, error.what());
    } catch (...) {
        keepError(function, "unknown failure");
    }
    return 1;
}

int openHandle(const char* function, SMASH_DB_HANDLE* handle, const Schema& schema, OpenMode mode) {
    return guarded(function, [&] {
        if (handle == nullptr)
            throw std::invalid_argument("no place for the handle given");
        *handle = nullptr;
        *handle = new SmashDatabase{open(schema, mode)};
    });
}

// Runs work on an open database. An error names its file.
template <class Work>
int onDatabase(const char* function, SMASH_DB_HANDLE handle, Work&& work) noexcept {
    return guarded(function, [&] {
        if (handle == nullptr)
            throw std::invalid_argument("the database is not open");
        try {
            work(handle->connection);
        } catch (const std::exception& error) {
            throw std::runtime_error(handle->connection.getFilename() + ": " + error.what());
        }
    });
}

void require(bool isGiven) {
    if (!isGiven)
        throw std::invalid_argument("missing argument");
}

template <class Record, class... Keys>
int getRow(const char* function, SMASH_DB_HANDLE handle, Record** row, const TableOf<Record>& table,
           const char* clause = "", Keys... keys) {
    if (row != nullptr)
        *row = nullptr;
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(row != nullptr);
        auto selection = select(database, table, clause);
        int index = 0;
        (selection.bind(++index, keys), ...);
        auto rows = read(std::move(selection), table);
        if (rows.count == 0)
            throw std::runtime_error(std::string("no such row in table ") + table.name);
        *row = rows.records.release();
    });
}

template <class Record>
int getRows(const char* function, SMASH_DB_HANDLE handle, Record** rows, int* count,
            const TableOf<Record>& table) {
    if (rows != nullptr)
        *rows = nullptr;
    if (count != nullptr)
        *count = 0;
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(rows != nullptr && count != nullptr);
        auto all = read(select(database, table, "ORDER BY rowid"), table);
        if (!std::in_range<int>(all.count))
            throw std::length_error("too many rows");
        *count = static_cast<int>(all.count);
        *rows = all.records.release();
    });
}

template <class Record>
int setRow(const char* function, SMASH_DB_HANDLE handle, const Record* row, const TableOf<Record>& table) {
    return onDatabase(function, handle, [&](SQLite::Database& database) {
        require(row != nullptr);
        SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
        replace(database, table, *row);
        transaction.commit();
    });
}

} // namespace

const char* db_last_error(void) {
    return lastError;
}

int db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle, smashSchema, OpenMode::Existing);
}

int tmp_db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle, temporarySchema, OpenMode::CreateMissing);
}

int smash_db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle, smashSchema, OpenMode::CreateMissing);
}

int db_close(SMASH_DB_HANDLE handle) {
    return guarded(__func__, [&] {
        require(handle != nullptr);
        delete handle;
    });
}

int db_get_ipmi_session_info(SMASH_DB_HANDLE handle, IPMISessionInfo** info) {
    return getRow(__func__, handle, info, sessionTable);
}

int db_set_ipmi_session_info(SMASH_DB_HANDLE handle, const IPMISessionInfo* info) {
    return setRow(__func__, handle, info, sessionTable);
}

int db_get_device_bytype(SMASH_DB_HANDLE handle, int type, DeviceRecord** device) {
    return getRow(__func__, handle, device, deviceTable, "WHERE type = ?", type);
}

int db_set_device(SMASH_DB_HANDLE handle, const DeviceRecord* device) {
    return setRow(__func__, handle, device, deviceTable);
}

int db_get_fru_by_entity_id(SMASH_DB_HANDLE handle, int entityId, FruRecord** fru) {
    return getRow(__func__, handle, fru, fruTable, "WHERE entityId = ? ORDER BY entityInstance LIMIT 1",
                  entityId);
}

int db_get_all_compact_sdrs(SMASH_DB_HANDLE handle, CompactSdr** rows, int* count) {
    return getRows(__func__, handle, rows, count, compactSdrTable);
}

int db_get_all_full_sdrs(SMASH_DB_HANDLE handle, FullSdr** rows, int* count) {
    return getRows(__func__, handle, rows, count, fullSdrTable);
}

int db_get_compact_sdr(SMASH_DB_HANDLE handle, const char* deviceId, CompactSdr** row) {
    return getRow(__func__, handle, row, compactSdrTable, "WHERE deviceId = ?", deviceId);
}

int db_get_full_sdr(SMASH_DB_HANDLE handle, const char* deviceId, FullSdr** row) {
    return getRow(__func__, handle, row, fullSdrTable, "WHERE deviceId = ?", deviceId);
}
