// Records of the SMASH database as data: a table per record, a column per member. The code that creates,
// reads and writes a table works on its description, so that another record needs only another description.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <utility>

namespace smash {

enum class ColumnType : std::uint8_t { Text, U8, U16, U32, I32, I64 };

struct Column {
    const char* name;
    ColumnType type;
    std::uint16_t offset; // in the record
    std::uint16_t size;
};

struct Table {
    const char* name;
    std::span<const Column> columns;
    std::size_t keyColumns; // the first ones, unique together; 0: the table holds one row
    std::size_t recordSize;
    const char* indexed = nullptr; // a term that rows are searched by; nullptr: none but the key
};

// A table whose rows are `Record`s.
template <class Record>
struct TableOf : Table {
    static_assert(std::is_trivially_copyable_v<Record> && std::is_standard_layout_v<Record>);
    constexpr TableOf(const char* tableName, std::span<const Column> tableColumns, std::size_t keys,
                      const char* indexedTerm = nullptr)
        : Table{tableName, tableColumns, keys, sizeof(Record), indexedTerm} {}
};

// A member's type without a column type does not compile.
template <class Member>
consteval ColumnType columnType() {
    using T = std::remove_reference_t<Member>;
    if constexpr (std::is_array_v<T>) {
        static_assert(std::is_same_v<std::remove_extent_t<T>, char>);
        return ColumnType::Text;
    } else if constexpr (std::is_same_v<T, std::uint8_t>) {
        return ColumnType::U8;
    } else if constexpr (std::is_same_v<T, std::uint16_t>) {
        return ColumnType::U16;
    } else if constexpr (std::is_same_v<T, std::uint32_t>) {
        return ColumnType::U32;
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
        return ColumnType::I32;
    } else {
        static_assert(std::is_same_v<T, std::int64_t>);
        return ColumnType::I64;
    }
}

#define SMASH_COLUMN_AS(Record, member, name)                                                                \
    ::smash::Column {                                                                                        \
        name, ::smash::columnType<decltype(std::declval<Record&>().member)>(), offsetof(Record, member),     \
            sizeof(std::declval<Record&>().member)                                                           \
    }
#define SMASH_COLUMN(Record, member) SMASH_COLUMN_AS(Record, member, #member)

// The columns of a record that begins with another record.
template <std::size_t N, std::size_t M>
consteval std::array<Column, N + M> extend(const std::array<Column, N>& base,
                                           const std::array<Column, M>& more) {
    std::array<Column, N + M> all;
    for (std::size_t i = 0; i < N + M; ++i)
        all[i] = i < N ? base[i] : more[i - N];
    return all;
}

} // namespace smash
