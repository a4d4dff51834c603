// Connections to the SMASH database that the next request can use again.
#pragma once

#include "smash-db/database.h"

#include <memory>
#include <optional>
#include <sys/stat.h>

namespace smash {

constexpr std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// Whose values change with every change of a file, and with the file itself.
struct FileState {
    explicit FileState(const struct stat& status)
        : device(status.st_dev),
          number(status.st_ino),
          size(status.st_size),
          modified(nanoseconds(status.st_mtim)),
          changed(nanoseconds(status.st_ctim)) {}
    bool operator==(const FileState&) const = default;

    dev_t device;
    ino_t number;
    off_t size;
    std::int64_t modified, changed;
};

// An open database. To open one, read its schema and check it takes longer than what most requests read of it.
// So the connection is kept when this ends, unless the file was changed since it was opened.
class Connection {
public:
    // The state is that of a file that may be kept open.
    explicit Connection(std::unique_ptr<SQLite::Database> database, std::optional<FileState> state = {})
        : database_(std::move(database)), state_(state) {}
    ~Connection();
    Connection(Connection&&) = default;
    Connection& operator=(Connection&&) = delete;

    SQLite::Database& operator*() const { return *database_; }
    SQLite::Database* operator->() const { return database_.get(); }

private:
    std::unique_ptr<SQLite::Database> database_;
    std::optional<FileState> state_;
};

// Opens the schema's file as open() does one that exists, or takes a connection that was kept: what was in order
// then is so still, as nobody has changed it. Throws what open() does.
Connection connect(const Schema& schema);

// Counts the rows of a table. Throws std::runtime_error.
std::size_t rowCount(const Connection& connection, const Table& table);

} // namespace smash
