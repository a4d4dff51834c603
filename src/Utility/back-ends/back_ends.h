// Owners of what a function opens: nothing stays open when it returns.
#pragma once

#include "provider_helper/utility.h"

#include <cstdlib>
#include <memory>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

namespace ph {

struct FreeDeleter {
    void operator()(void* block) const { std::free(block); }
};
template <class T>
using HeapPtr = std::unique_ptr<T, FreeDeleter>;

// The row that a db_get_* call hands out: record(db_get_x, handle, key…); nullptr when it fails.
template <class... Parameters, class... Arguments>
auto record(int (*get)(Parameters...), SMASH_DB_HANDLE handle, Arguments... arguments) {
    using RowOut = std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>;
    using Row = std::remove_pointer_t<std::remove_pointer_t<RowOut>>;
    Row* row = nullptr;
    const int result = get(handle, arguments..., &row);
    HeapPtr<Row> owner(row);
    return result == 0 ? std::move(owner) : nullptr;
}

// An IPMI session of the enumerating function.
class IpmiSession {
public:
    IpmiSession() = default;
    ~IpmiSession() {
        if (open_)
            CloseIPMISession(&session_);
    }
    IpmiSession(const IpmiSession&) = delete;
    IpmiSession& operator=(const IpmiSession&) = delete;

    // Only -1 is a failure: a database without session settings gives a session on which every call fails.
    bool open() { return open_ = CreateIPMISession(&session_) != -1; }
    // Closes early, for a function whose outcome depends on it; the owner's end closes otherwise.
    bool close() { return std::exchange(open_, false) && CloseIPMISession(&session_) == 0; }
    IPMI20_SESSION_T* get() { return &session_; }

private:
    IPMI20_SESSION_T session_{};
    bool open_ = false;
};

// A database handle of the enumerating function.
class Database {
public:
    using Opener = int (*)(SMASH_DB_HANDLE*);
    Database() = default;
    ~Database() {
        if (open_)
            PH_CloseDBHandle(handle_);
    }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    bool open(Opener opener = PH_CreateDBHandle) { return open_ = opener(&handle_) == 0; }
    bool close() { return std::exchange(open_, false) && PH_CloseDBHandle(handle_) == 0; }
    SMASH_DB_HANDLE get() const { return handle_; }

private:
    SMASH_DB_HANDLE handle_ = nullptr;
    bool open_ = false;
};

// All rows of a table. The database is open only while they are read.
template <class Row>
class Rows {
public:
    using Getter = int (*)(SMASH_DB_HANDLE, Row**, int*);
    bool read(Getter getAll, Database::Opener opener = PH_CreateDBHandle) {
        Database database;
        return database.open(opener) && read(database.get(), getAll);
    }
    template <class Get> // called like a Getter
    bool read(SMASH_DB_HANDLE handle, Get get) {
        Row* rows = nullptr;
        const bool isRead = get(handle, &rows, &count_) == 0;
        rows_.reset(isRead ? rows : nullptr);
        return isRead;
    }
    std::span<const Row> all() const { return {rows_.get(), static_cast<std::size_t>(count_)}; }

private:
    HeapPtr<Row> rows_;
    int count_ = 0;
};

// The row with this key, nullptr when it cannot be had.
template <class Row>
HeapPtr<Row> storedRow(int (*getOne)(SMASH_DB_HANDLE, const char*, Row**), const char* key,
                       Database::Opener opener = PH_CreateDBHandle) {
    Database database;
    return database.open(opener) ? record(getOne, database.get(), key) : nullptr;
}

inline constexpr int hookTimeout = 30; // seconds, of every call on an IPMI session

} // namespace ph
