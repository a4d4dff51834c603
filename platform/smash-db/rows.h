// Rows of any table: records in, records out.
#pragma once

#include "smash-db/table.h"

#include <cstdlib>
#include <memory>
#include <SQLiteCpp/SQLiteCpp.h>
#include <string_view>

namespace smash {

struct Free {
    void operator()(void* block) const { std::free(block); }
};

// Records in one heap block, none of which is handed out before all were read.
template <class Record>
struct Rows {
    std::unique_ptr<Record, Free> records; // empty when there are none
    std::size_t count = 0;
};

// Makes the SELECT of a table's columns, to bind and to read; `clause` is what follows the table's name.
SQLite::Statement select(const SQLite::Database& database, const Table& table, const char* clause = "");

// Reads all rows of a statement that select() made for this table. Throws std::runtime_error for a value that
// its field cannot hold; a text is cut.
void* readRows(SQLite::Statement& selection, const Table& table, std::size_t& count);
template <class Record>
Rows<Record> read(SQLite::Statement selection, const TableOf<Record>& table) {
    Rows<Record> rows;
    rows.records.reset(static_cast<Record*>(readRows(selection, table, rows.count)));
    return rows;
}

// Replaces the row that has the record's key. The caller holds the transaction.
void replaceRow(SQLite::Database& database, const Table& table, const void* record);
template <class Record>
void replace(SQLite::Database& database, const TableOf<Record>& table, const Record& record) {
    replaceRow(database, table, &record);
}

// Replaces all rows. The caller holds the transaction.
void replaceRows(SQLite::Database& database, const Table& table, const void* records, std::size_t count);
template <class Record>
void replaceAll(SQLite::Database& database, const TableOf<Record>& table, std::span<const Record> records) {
    replaceRows(database, table, records.data(), records.size());
}

// Copies a text to a field, cut at the field's width and never within a UTF-8 character; always terminated.
void copyText(std::span<char> field, std::string_view text);

} // namespace smash
