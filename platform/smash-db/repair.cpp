#include "smash-db/repair.h"

#include "smash-db/database.h"
#include "smash-db/rows.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <sqlite3.h>
#include <stdexcept>

namespace smash {
namespace {

constexpr int busyTimeout = 4000; // milliseconds

SQLite::Database openToLook(const std::string& path) {
    return {path, SQLite::OPEN_READONLY | SQLite::OPEN_NOMUTEX, busyTimeout};
}

// Throws SQLite::Exception for what SQLite cannot read at all.
std::optional<std::string> look(SQLite::Database& database, const std::string& path, const Schema& schema) {
    const int version = readNumber(database, "PRAGMA user_version");
    if (version < 1 || version > schema.version)
        return std::nullopt;
    const auto size = static_cast<std::uintmax_t>(readNumber(database, "PRAGMA page_count")) *
                      static_cast<std::uintmax_t>(readNumber(database, "PRAGMA page_size"));
    if (std::filesystem::file_size(path) < size)
        return "the file is cut short";
    const std::string check = database.execAndGet("PRAGMA quick_check(1)").getString();
    if (check != "ok")
        return check;
    if (version == schema.version)
        for (const Table* table : schema.tables)
            select(database, *table);
    return std::nullopt;
}

void rename(const std::string& from, const std::string& to) {
    if (std::rename(from.c_str(), to.c_str()) != 0 && errno != ENOENT)
        throw std::runtime_error(from + ": " + std::strerror(errno));
}

void copyRows(SQLite::Database& from, SQLite::Database& to, const Table& table) {
    try {
        std::size_t count = 0;
        auto selection = select(from, table);
        const std::unique_ptr<void, Free> rows(readRows(selection, table, count));
        SQLite::Transaction transaction(to, SQLite::TransactionBehavior::IMMEDIATE);
        replaceRows(to, table, rows.get(), count);
        transaction.commit();
    } catch (const std::exception&) { // the rows of this table are lost
    }
}

} // namespace

std::optional<std::string> findDamage(const Schema& schema) {
    const std::string path = fileOf(schema);
    if (!std::filesystem::is_regular_file(path))
        return std::nullopt;
    try {
        auto database = openToLook(path);
        return look(database, path, schema);
    } catch (const SQLite::Exception& error) {
        const int code = error.getErrorCode();
        const bool isDamage = code == SQLITE_NOTADB || code == SQLITE_CORRUPT || code == SQLITE_ERROR;
        return isDamage ? std::optional<std::string>(error.what()) : std::nullopt;
    }
}

bool holdsRows(const Schema& schema, const Table& table) {
    try {
        auto database = openToLook(fileOf(schema));
        auto selection = select(database, table);
        std::size_t count = 0;
        const std::unique_ptr<void, Free> rows(readRows(selection, table, count));
        return count > 0;
    } catch (const std::exception&) {
        return false;
    }
}

std::string rebuild(const Schema& schema) {
    const std::string path = fileOf(schema);
    std::string aside = path + ".damaged";
    rename(path + "-journal", aside + "-journal");
    rename(path, aside);
    auto fresh = open(schema, OpenMode::CreateMissing);
    try {
        auto damaged = openToLook(aside);
        for (const Table* table : schema.tables)
            copyRows(damaged, fresh, *table);
    } catch (const SQLite::Exception&) { // nothing of it can be read
    }
    return aside;
}

} // namespace smash
