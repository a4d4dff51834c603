// Opening and closing databases, and how the functions of the C interface end.
#include "smash-db/database.h"
#include "smash-db/interface.h"

#include <platform/support.h>

#include <cstdio>

namespace smash {
namespace {

constexpr int debugLog = 134;

thread_local char lastError[512];

void keepError(const char* function, const char* reason) noexcept {
    std::snprintf(lastError, sizeof lastError, "%s: %s", function, reason);
    IDBG_LINUXAPP_DbgOut(debugLog, "%s\n", lastError);
}

int openHandle(const char* function, SMASH_DB_HANDLE* handle, const Schema& schema, OpenMode mode) {
    return guarded(function, [&] {
        if (handle == nullptr)
            throw std::invalid_argument("no place for the handle given");
        *handle = nullptr;
        *handle = new SmashDatabase{open(schema, mode)};
    });
}

} // namespace

int guarded(const char* function, const std::function<void()>& work) noexcept {
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

int onDatabase(const char* function, SMASH_DB_HANDLE handle,
               const std::function<void(SQLite::Database&)>& work) noexcept {
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

} // namespace smash

using namespace smash;

const char* db_last_error(void) {
    return smash::lastError;
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
