// Opening and closing databases, and how the functions of the C interface end.
#include "smash-db/interface.h"

#include <platform/support.h>

#include <cstdio>

namespace smash {
namespace {

constexpr int debugLog = 134;

thread_local char lastError[512];

template <class Open>
int openHandle(const char* function, SMASH_DB_HANDLE* handle, Open openFile) {
    return guarded(function, [&] {
        if (handle == nullptr)
            throw std::invalid_argument("no place for the handle given");
        *handle = nullptr;
        *handle = new SmashDatabase{openFile()};
    });
}

// A file that is missing is made.
Connection make(const Schema& schema) {
    return Connection(std::make_unique<SQLite::Database>(open(schema, OpenMode::CreateMissing)));
}

} // namespace

// This allocates nothing, because memory may be short.
void keepFailure(const char* function, SMASH_DB_HANDLE handle) noexcept {
    const bool isOpen = handle != nullptr;
    const auto keep = [&](const char* reason) {
        std::snprintf(lastError, sizeof lastError, "%s: %s%s%s", function,
                      isOpen ? handle->connection->getFilename().c_str() : "", isOpen ? ": " : "", reason);
        IDBG_LINUXAPP_DbgOut(debugLog, "%s\n", lastError);
    };
    try {
        throw;
    } catch (const std::exception& error) {
        keep(error.what());
    } catch (...) {
        keep("unknown failure");
    }
}

} // namespace smash

using namespace smash;

const char* db_last_error(void) {
    return smash::lastError;
}

int db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle, [] { return connect(smashSchema); });
}

int tmp_db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle, [] { return make(temporarySchema); });
}

int smash_db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle, [] { return make(smashSchema); });
}

int db_close(SMASH_DB_HANDLE handle) {
    return guarded(__func__, [&] {
        require(handle != nullptr);
        delete handle;
    });
}
