// What the functions of the C interface have in common: a handle, an outcome, rows in and out.
#pragma once

#include "smash-db/connection.h"
#include "smash-db/rows.h"

#include <platform/smash_db_handle.h>

#include <concepts>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>

struct SmashDatabase {
    smash::Connection connection;
};

namespace smash {

// Keeps what happened for db_last_error; for catch blocks. An error on an open database names its file.
void keepFailure(const char* function, SMASH_DB_HANDLE handle) noexcept;

// Runs a function's work: 0, or 1 when it throws, which db_last_error then tells. Nothing leaves a C function
// but that: whatever may throw, texts of clauses included, belongs into the work.
template <class Work>
int guarded(const char* function, Work&& work, SMASH_DB_HANDLE handle = nullptr) noexcept {
    try {
        work();
        return 0;
    } catch (...) {
        keepFailure(function, handle);
        return 1;
    }
}

// Does the same on an open database.
template <class Work>
int onDatabase(const char* function, SMASH_DB_HANDLE handle, Work&& work) noexcept {
    return guarded(
        function,
        [&] {
            if (handle == nullptr)
                throw std::invalid_argument("the database is not open");
            work(*handle->connection);
        },
        handle);
}

inline void require(bool isGiven) {
    if (!isGiven)
        throw std::invalid_argument("missing argument");
}

// Changes the database as a whole or not at all.
template <class Work>
int inTransaction(const char* function, SMASH_DB_HANDLE handle, Work&& work) noexcept {
    return onDatabase(function, handle, [&](SQLite::Database& database) {
        SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
        work(database);
        transaction.commit();
    });
}

enum class NoRow { IsFailure, IsSuccess };

// A value for a place in a clause: a number, or a text that may be NULL.
class Key {
public:
    template <std::integral Number>
    Key(Number number) : number_(number) {}
    Key(const char* text) : text_(text), isText_(true) {}

    void bindTo(SQLite::Statement& statement, int place) const;

private:
    std::int64_t number_ = 0;
    const char* text_ = nullptr;
    bool isText_ = false;
};
using Keys = std::initializer_list<Key>;

// What the functions below do for records of any type; `rows` and `row` of the first two are the address of the caller's
// pointer, or NULL.
namespace untyped {
int getRow(const char* function, SMASH_DB_HANDLE handle, void* row, const Table& table, NoRow noRow,
           const char* clause, Keys keys);
int getRows(const char* function, SMASH_DB_HANDLE handle, void* rows, int* count, const Table& table,
            const char* clause, Keys keys);
int fillRow(const char* function, SMASH_DB_HANDLE handle, void* row, const Table& table);
int setRow(const char* function, SMASH_DB_HANDLE handle, const void* row, const Table& table);
} // namespace untyped

// Finds the first row that `clause` selects with `keys` bound to its places.
template <class Record>
int getRow(const char* function, SMASH_DB_HANDLE handle, Record** row, const TableOf<Record>& table,
           const char* clause = "", Keys keys = {}, NoRow noRow = NoRow::IsFailure) {
    return untyped::getRow(function, handle, row, table, noRow, clause, keys);
}

template <class Record>
int getRows(const char* function, SMASH_DB_HANDLE handle, Record** rows, int* count,
            const TableOf<Record>& table, const char* clause = "ORDER BY rowid", Keys keys = {}) {
    return untyped::getRows(function, handle, rows, count, table, clause, keys);
}

// Fills a row that has its table's key, the text of the first column.
template <class Record>
int fillRow(const char* function, SMASH_DB_HANDLE handle, Record* row, const TableOf<Record>& table) {
    return untyped::fillRow(function, handle, row, table);
}

// Stores a row, replacing the one that has its key.
template <class Record>
int setRow(const char* function, SMASH_DB_HANDLE handle, const Record* row, const TableOf<Record>& table) {
    return untyped::setRow(function, handle, row, table);
}

// Runs a statement that changes rows, `values` bound to its places. It is a failure when none is changed.
template <class... Values>
void change(SQLite::Database& database, const std::string& statement, Values... values) {
    SQLite::Statement prepared(database, statement);
    int index = 0;
    (prepared.bind(++index, values), ...);
    if (prepared.exec() == 0)
        throw std::runtime_error("no such row: " + statement);
}

// Removes the row with this text in the first column, the table's key.
inline int removeRow(const char* function, SMASH_DB_HANDLE handle, const Table& table, const char* key) {
    return inTransaction(function, handle, [&](SQLite::Database& database) {
        require(key != nullptr);
        change(database,
               std::string("DELETE FROM ") + table.name + " WHERE " + table.columns.front().name + " = ?",
               key);
    });
}

} // namespace smash
