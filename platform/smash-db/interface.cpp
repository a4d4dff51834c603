#include "smash-db/interface.h"

namespace smash {

void Key::bindTo(SQLite::Statement& statement, int place) const {
    if (isText_)
        statement.bind(place, text_);
    else
        statement.bind(place, number_);
}

namespace untyped {
namespace {

// All pointers to records look alike.
void setPointerAt(void* address, void* pointer) {
    std::memcpy(address, &pointer, sizeof pointer);
}

SQLite::Statement bound(const SQLite::Database& database, const Table& table, const char* clause, Keys keys) {
    auto selection = select(database, table, clause);
    int place = 0;
    for (const Key& key : keys)
        key.bindTo(selection, ++place);
    return selection;
}

Rows<void> find(SQLite::Statement selection, const Table& table) {
    Rows<void> found;
    found.records.reset(readRows(selection, table, found.count));
    return found;
}

std::runtime_error noSuchRow(const Table& table) {
    return std::runtime_error(std::string("no such row in table ") + table.name);
}

} // namespace

int getRow(const char* function, SMASH_DB_HANDLE handle, void* row, const Table& table, NoRow noRow,
           const char* clause, Keys keys) {
    if (row != nullptr)
        setPointerAt(row, nullptr);
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(row != nullptr);
        auto found = find(bound(database, table, clause, keys), table);
        if (found.count == 0 && noRow == NoRow::IsFailure)
            throw noSuchRow(table);
        setPointerAt(row, found.records.release());
    });
}

int getRows(const char* function, SMASH_DB_HANDLE handle, void* rows, int* count, const Table& table,
            const char* clause, Keys keys) {
    if (rows != nullptr)
        setPointerAt(rows, nullptr);
    if (count != nullptr)
        *count = 0;
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(rows != nullptr && count != nullptr);
        auto found = find(bound(database, table, clause, keys), table);
        if (!std::in_range<int>(found.count))
            throw std::length_error("too many rows");
        *count = static_cast<int>(found.count);
        setPointerAt(rows, found.records.release());
    });
}

int fillRow(const char* function, SMASH_DB_HANDLE handle, void* row, const Table& table) {
    return onDatabase(function, handle, [&](const SQLite::Database& database) {
        require(row != nullptr);
        const Column& key = table.columns.front();
        const char* const text = static_cast<const char*>(row) + key.offset;
        const std::string bounded(text, strnlen(text, key.size));
        const auto found = find(
            bound(database, table, (std::string("WHERE ") + key.name + " = ?").c_str(), {bounded.c_str()}),
            table);
        if (found.count == 0)
            throw noSuchRow(table);
        std::memcpy(row, found.records.get(), table.recordSize);
    });
}

int setRow(const char* function, SMASH_DB_HANDLE handle, const void* row, const Table& table) {
    return inTransaction(function, handle, [&](SQLite::Database& database) {
        require(row != nullptr);
        replaceRow(database, table, row);
    });
}

} // namespace untyped
} // namespace smash
