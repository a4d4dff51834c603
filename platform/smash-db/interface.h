// What the functions of the C interface have in common: a handle, an outcome, rows in and out.
#pragma once

#include "smash-db/connection.h"
#include "smash-db/rows.h"

#include <platform/smash_db_handle.h>

#include <cstring>
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

// Finds the first row that `clause` selects with `keys` bound to its places.
template <class Record, class... Keys>
int getRow(const char* function, SMASH_DB_HANDLE handle, Record** row, const TableOf<Record>& table,
           NoRow noRow, const char* clause = "", Keys... keys) {
    if (row != nullptr)
        *row = nullptr;
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(row != nullptr);
        auto selection = select(database, table, clause);
        int index = 0;
        (selection.bind(++index, keys), ...);
        auto rows = read(std::move(selection), table);
        if (rows.count == 0 && noRow == NoRow::IsFailure)
            throw std::runtime_error(std::string("no such row in table ") + table.name);
        *row = rows.records.release();
    });
}

template <class Record, class... Keys>
int getRow(const char* function, SMASH_DB_HANDLE handle, Record** row, const TableOf<Record>& table,
           const char* clause = "", Keys... keys) {
    return getRow(function, handle, row, table, NoRow::IsFailure, clause, keys...);
}

template <class Record, class... Keys>
int getRows(const char* function, SMASH_DB_HANDLE handle, Record** rows, int* count,
            const TableOf<Record>& table, const char* clause = "ORDER BY rowid", Keys... keys) {
    if (rows != nullptr)
        *rows = nullptr;
    if (count != nullptr)
        *count = 0;
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(rows != nullptr && count != nullptr);
        auto selection = select(database, table, clause);
        int index = 0;
        (selection.bind(++index, keys), ...);
        auto all = read(std::move(selection), table);
        if (!std::in_range<int>(all.count))
            throw std::length_error("too many rows");
        *count = static_cast<int>(all.count);
        *rows = all.records.release();
    });
}

// Fills a row that has its table's key, the text of the first column.
template <class Record>
int fillRow(const char* function, SMASH_DB_HANDLE handle, Record* row, const TableOf<Record>& table) {
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(row != nullptr);
        const Column& key = table.columns.front();
        const char* const text = reinterpret_cast<const char*>(row) + key.offset;
        auto selection = select(database, table, (std::string("WHERE ") + key.name + " = ?").c_str());
        selection.bind(1, std::string(text, strnlen(text, key.size)));
        const auto rows = read(std::move(selection), table);
        if (rows.count == 0)
            throw std::runtime_error(std::string("no such row in table ") + table.name);
        *row = *rows.records;
    });
}

// Stores a row, replacing the one that has its key.
template <class Record>
int setRow(const char* function, SMASH_DB_HANDLE handle, const Record* row, const TableOf<Record>& table) {
    return inTransaction(function, handle, [&](SQLite::Database& database) {
        require(row != nullptr);
        replace(database, table, *row);
    });
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
