// A test with an empty SMASH database of its own.
#pragma once

#include <platform/smash_db.h>

#include <cstdlib>
#include <memory>
#include <sysroot_fixture.h>
#include <type_traits>

struct CloseDatabase {
    void operator()(SMASH_DB_HANDLE handle) const { EXPECT_EQ(db_close(handle), 0); }
};
using Handle = std::unique_ptr<SmashDatabase, CloseDatabase>;

inline Handle openDatabase(int (*init)(SMASH_DB_HANDLE*)) {
    SMASH_DB_HANDLE handle = nullptr;
    EXPECT_EQ(init(&handle), 0) << db_last_error();
    return Handle(handle);
}

struct FreeRows {
    void operator()(void* rows) const { std::free(rows); }
};
template <class Record>
using Owned = std::unique_ptr<Record, FreeRows>;

// The row that a function hands out; empty when it fails.
template <class Record>
Owned<Record> getRow(int (*getter)(SMASH_DB_HANDLE, Record**), const Handle& handle) {
    int untouched = 0;
    auto* row = reinterpret_cast<Record*>(&untouched);
    const int result = getter(handle.get(), &row);
    EXPECT_EQ(result == 0, row != nullptr);
    return Owned<Record>(row);
}

// The same by a key.
template <class Record, class Key>
Owned<Record> getRow(int (*getter)(SMASH_DB_HANDLE, Key, Record**), const Handle& handle,
                     std::type_identity_t<Key> key) {
    int untouched = 0;
    auto* row = reinterpret_cast<Record*>(&untouched);
    const int result = getter(handle.get(), key, &row);
    EXPECT_EQ(result == 0, row != nullptr);
    return Owned<Record>(row);
}

template <class Record>
struct Array {
    Owned<Record> rows;
    int count = -1;
    bool isRead = false;
};

template <class Record>
Array<Record> getAll(int (*getter)(SMASH_DB_HANDLE, Record**, int*), const Handle& handle) {
    Array<Record> all;
    Record* rows = nullptr;
    all.isRead = getter(handle.get(), &rows, &all.count) == 0;
    all.rows.reset(rows);
    EXPECT_EQ(rows != nullptr, all.count > 0);
    return all;
}

class DatabaseFixture : public SysrootFixture {
protected:
    Handle handle = openDatabase(smash_db_init);
};
