#include "smash-db/connection.h"

#include <array>
#include <mutex>
#include <unistd.h>

namespace smash {
namespace {

// A file that is still open here keeps its number: no other file is ever taken for it.
std::optional<FileState> stateOf(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? std::optional<FileState>(status) : std::nullopt;
}

// Tells whether another change would be seen: times are those of the system's tick, 10 ms at most.
bool isSettled(const FileState& state) {
    constexpr std::int64_t tick = 20'000'000; // nanoseconds
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return state.changed + tick < nanoseconds(now);
}

// Keeps as many connections as requests that run at once usually need.
class KeptConnections {
public:
    std::unique_ptr<SQLite::Database> take(const FileState& state) {
        const std::lock_guard lock(mutex_);
        forgetThoseOfTheParent();
        std::unique_ptr<SQLite::Database> found;
        for (Kept& kept : kept_)
            if (kept.database != nullptr && kept.state != state)
                kept.database.reset();
            else if (found == nullptr)
                found = std::move(kept.database);
        return found;
    }
    void keep(std::unique_ptr<SQLite::Database> database, const FileState& state) {
        const std::lock_guard lock(mutex_);
        forgetThoseOfTheParent();
        for (Kept& kept : kept_)
            if (kept.database == nullptr || kept.state != state) {
                kept = {std::move(database), state};
                return;
            }
    }

private:
    struct Kept {
        std::unique_ptr<SQLite::Database> database;
        std::optional<FileState> state;
    };

    // SQLite allows a process that was forked neither to use nor to close them.
    void forgetThoseOfTheParent() {
        if (process_ == getpid())
            return;
        for (Kept& kept : kept_)
            (void)kept.database.release();
        process_ = getpid();
    }

    std::mutex mutex_;
    pid_t process_ = getpid();
    std::array<Kept, 2> kept_;
};

KeptConnections& keptConnections() {
    static KeptConnections instance;
    return instance;
}

} // namespace

Connection::~Connection() {
    if (database_ == nullptr || !state_)
        return;
    if (isSettled(*state_) && stateOf(database_->getFilename()) == state_)
        keptConnections().keep(std::move(database_), *state_);
}

Connection connect(const Schema& schema) {
    const std::optional<FileState> state = stateOf(fileOf(schema));
    auto database = state ? keptConnections().take(*state) : nullptr;
    if (database != nullptr)
        checkAgain(*database, schema);
    else
        database = std::make_unique<SQLite::Database>(open(schema, OpenMode::Existing));
    return Connection(std::move(database), state);
}

std::size_t rowCount(const Connection& connection, const Table& table) {
    return connection->execAndGet(std::string("SELECT count(*) FROM ") + table.name).getUInt();
}

} // namespace smash
