#include "smash-db/rows.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

namespace smash {
namespace {

// Writes "a, b" or "a = ? AND b = ?".
std::string join(std::span<const Column> columns, const char* suffix, const char* separator) {
    std::string list;
    for (const Column& column : columns)
        list += (list.empty() ? "" : separator) + std::string(column.name) + suffix;
    return list;
}

std::string columnList(const Table& table) {
    return join(table.columns, "", ", ");
}

// Calls `visit` with a number of the column's type.
template <class Visitor>
void visitInteger(ColumnType type, Visitor visit) {
    switch (type) {
    case ColumnType::U8:
        return visit(std::uint8_t{});
    case ColumnType::U16:
        return visit(std::uint16_t{});
    case ColumnType::U32:
        return visit(std::uint32_t{});
    case ColumnType::I32:
        return visit(std::int32_t{});
    case ColumnType::I64:
        return visit(std::int64_t{});
    case ColumnType::Text:
        break;
    }
    throw std::logic_error("no integer column");
}

void readField(const SQLite::Column& value, const Column& column, std::byte* record) {
    std::byte* const field = record + column.offset;
    if (column.type == ColumnType::Text) {
        if (!value.isText())
            throw std::runtime_error("no text");
        copyText({reinterpret_cast<char*>(field), column.size}, value.getText());
        return;
    }
    visitInteger(column.type, [&](auto number) {
        const std::int64_t stored = value.getInt64();
        if (!value.isInteger() || !std::in_range<decltype(number)>(stored))
            throw std::runtime_error("no number of this width");
        number = static_cast<decltype(number)>(stored);
        std::memcpy(field, &number, sizeof number);
    });
}

void bindField(SQLite::Statement& statement, int index, const Column& column, const std::byte* record) {
    const std::byte* const field = record + column.offset;
    if (column.type == ColumnType::Text) {
        // The text is cut as a reader cuts it, even where the caller's text has no end.
        std::string text(column.size, '\0');
        const auto* const characters = reinterpret_cast<const char*>(field);
        copyText(text, {characters, strnlen(characters, column.size)});
        statement.bind(index, text.c_str());
        return;
    }
    visitInteger(column.type, [&](auto number) {
        std::memcpy(&number, field, sizeof number);
        statement.bind(index, std::int64_t{number});
    });
}

// One prepared statement for any number of rows.
void insertRows(SQLite::Database& database, const Table& table, const std::byte* records, std::size_t count) {
    std::string places;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        places += i == 0 ? "?" : ", ?";
    SQLite::Statement insertion(database, std::string("INSERT INTO ") + table.name + " (" +
                                              columnList(table) + ") VALUES (" + places + ")");
    for (const std::byte* record = records; record != records + count * table.recordSize;
         record += table.recordSize) {
        for (int i = 0; const Column& column : table.columns)
            bindField(insertion, ++i, column, record);
        insertion.exec();
        insertion.reset();
    }
}

} // namespace

void copyText(std::span<char> field, std::string_view text) {
    std::size_t length = std::min(text.size(), field.size() - 1);
    if (length < text.size())
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length; // the character that begins further left has no room
    std::copy_n(text.data(), length, field.data());
    std::fill(field.begin() + static_cast<std::ptrdiff_t>(length), field.end(), '\0');
}

SQLite::Statement select(const SQLite::Database& database, const Table& table, const char* clause) {
    return {database, "SELECT " + columnList(table) + " FROM " + table.name + " " + clause};
}

void* readRows(SQLite::Statement& selection, const Table& table, std::size_t& count) {
    std::unique_ptr<std::byte, Free> block;
    const auto resize = [&](std::size_t records) {
        void* const larger = std::realloc(block.get(), records * table.recordSize);
        if (larger == nullptr)
            throw std::bad_alloc();
        (void)block.release();
        block.reset(static_cast<std::byte*>(larger));
    };
    std::size_t capacity = 0;
    for (count = 0; selection.executeStep(); ++count) {
        if (count == capacity)
            resize(capacity = std::max<std::size_t>(1, 2 * capacity));
        std::byte* const record = block.get() + count * table.recordSize;
        std::memset(record, 0, table.recordSize);
        for (int i = 0; const Column& column : table.columns) {
            try {
                readField(selection.getColumn(i++), column, record);
            } catch (const std::runtime_error& error) {
                throw std::runtime_error(std::string(table.name) + "." + column.name + ": " + error.what());
            }
        }
    }
    if (count < capacity)
        resize(count);
    return block.release();
}

void replaceRow(SQLite::Database& database, const Table& table, const void* record) {
    const auto* const bytes = static_cast<const std::byte*>(record);
    std::string statement = std::string("DELETE FROM ") + table.name;
    if (table.keyColumns > 0)
        statement += " WHERE " + join(table.columns.first(table.keyColumns), " = ?", " AND ");
    SQLite::Statement deletion(database, statement);
    for (int i = 0; const Column& column : table.columns.first(table.keyColumns))
        bindField(deletion, ++i, column, bytes);
    deletion.exec();
    insertRows(database, table, bytes, 1);
}

void replaceRows(SQLite::Database& database, const Table& table, const void* records, std::size_t count) {
    database.exec(std::string("DELETE FROM ") + table.name);
    insertRows(database, table, static_cast<const std::byte*>(records), count);
}

} // namespace smash
