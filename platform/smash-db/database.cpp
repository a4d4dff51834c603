#include "smash-db/database.h"

#include "smash-db/rows.h"

#include <platform/shared_file.h>

#include <sqlite3.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace smash {
namespace {

// The time to wait for a lock of another process. A sync's commit is the longest: some thousand rows written
// to flash. SQLite's own waiting grows to 100 ms a time, in which a busy neighbour always comes first.
constexpr int waitMs = 2;
constexpr int longestWaitMs = 4000;

int waitForLock(void*, int times) {
    usleep(waitMs * 1000);
    return times < longestWaitMs / waitMs ? 1 : 0;
}

constexpr mode_t privateMode = S_IRUSR | S_IWUSR; // the file holds the BMC's password

// Thrown for a file that is no database of this schema.
struct WrongFile : std::runtime_error {
    using std::runtime_error::runtime_error;
};

bool isWrongFile(const std::exception& error) {
    if (const auto* failure = dynamic_cast<const SQLite::Exception*>(&error))
        return failure->getErrorCode() == SQLITE_NOTADB || failure->getErrorCode() == SQLITE_CORRUPT ||
               failure->getErrorCode() == SQLITE_ERROR; // no such table or column
    return dynamic_cast<const WrongFile*>(&error) != nullptr;
}

// Sees to it that SQLite finds our own files, and nothing that somebody else put there. Returns the file's
// number. It is made without being opened: closing a descriptor of ours would drop SQLite's locks.
ino_t secure(const std::string& path, OpenMode mode) {
    if (mode == OpenMode::CreateMissing && mknod(path.c_str(), S_IFREG | privateMode, 0) != 0 &&
        errno != EEXIST)
        throw std::runtime_error(std::strerror(errno));
    ino_t number = 0;
    for (const char* suffix : {"-journal", "-wal", ""}) {
        struct stat status = {};
        if (lstat((path + suffix).c_str(), &status) == 0) {
            if (!PH_IsTrustedFile(&status))
                throw std::runtime_error("not a file of this user");
            number = status.st_ino;
        } else if (*suffix == '\0') {
            throw std::runtime_error(std::strerror(errno));
        }
    }
    return number;
}

// Another process may have been quicker.
void setAside(const std::string& path, ino_t number) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0 || status.st_ino != number)
        return;
    if (std::rename(path.c_str(), (path + ".damaged").c_str()) != 0)
        throw std::runtime_error(std::strerror(errno));
    unlink((path + "-journal").c_str());
}

// SQLite keeps it as it is written here.
std::string createStatement(const Table& table) {
    std::string columns;
    for (const Column& column : table.columns)
        columns += (columns.empty() ? "" : ", ") + std::string(column.name) +
                   (column.type == ColumnType::Text ? " TEXT NOT NULL" : " INTEGER NOT NULL");
    std::string key;
    for (const Column& column : table.columns.first(table.keyColumns))
        key += (key.empty() ? ", UNIQUE (" : ", ") + std::string(column.name);
    return std::string("CREATE TABLE ") + table.name + " (" + columns + key + (key.empty() ? ")" : "))");
}

int versionOf(SQLite::Database& database) {
    return readNumber(database, "PRAGMA user_version");
}

bool isBlank(SQLite::Database& database) {
    return versionOf(database) == 0 && readNumber(database, "SELECT count(*) FROM sqlite_schema") == 0;
}

bool lacksTables(SQLite::Database& database, const Schema& schema) {
    const int version = versionOf(database);
    return isBlank(database) || (version > 0 && version < schema.version);
}

// Later versions of a schema have further tables and indexes, and the old ones as they were.
void createTables(SQLite::Database& database, const Schema& schema) {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    if (!lacksTables(database, schema)) // another process was quicker
        return;
    // By path, while SQLite holds the file: closing a descriptor of ours would drop its locks.
    if (chmod(database.getFilename().c_str(), privateMode) != 0)
        throw std::runtime_error(std::strerror(errno));
    for (const Table* table : schema.tables) {
        if (!database.tableExists(table->name))
            database.exec(createStatement(*table));
        if (table->indexed != nullptr)
            database.exec(std::string("CREATE INDEX IF NOT EXISTS ") + table->name + "_index ON " +
                          table->name + " (" + table->indexed + ")");
    }
    database.exec("PRAGMA user_version = " + std::to_string(schema.version));
    transaction.commit();
}

void requireVersion(SQLite::Database& database, const Schema& schema) {
    const int version = versionOf(database);
    if (version != schema.version)
        throw WrongFile("schema version " + std::to_string(version) + " instead of " +
                        std::to_string(schema.version));
}

// Throws SQLite::Exception for a table, or a column, that there is not. A table that was made with our own words is in
// order; to compile a statement that reads its columns takes far longer.
void requireTables(SQLite::Database& database, const Schema& schema) {
    std::vector<const Table*> unknown(schema.tables.begin(), schema.tables.end());
    SQLite::Statement definitions(database, "SELECT name, sql FROM sqlite_schema WHERE type = 'table'");
    while (definitions.executeStep())
        std::erase_if(unknown, [&](const Table* table) {
            return std::strcmp(table->name, definitions.getColumn(0).getText()) == 0 &&
                   createStatement(*table) == definitions.getColumn(1).getText();
        });
    for (const Table* table : unknown)
        select(database, *table);
}

// These checks are what a request can afford: SQLite has read the header and the table definitions by now, which
// are ours, and the file is as long as its header says. Damage within a page makes the reading of its rows fail.
void verify(SQLite::Database& database, const Schema& schema) {
    requireVersion(database, schema);
    const auto size =
        off_t{readNumber(database, "PRAGMA page_count")} * readNumber(database, "PRAGMA page_size");
    struct stat status = {};
    if (stat(database.getFilename().c_str(), &status) != 0)
        throw std::runtime_error(std::strerror(errno));
    if (status.st_size < size)
        throw WrongFile("the file is cut short");
    requireTables(database, schema);
}

SQLite::Database openFile(const std::string& path, const Schema& schema, OpenMode mode) {
    const int create = mode == OpenMode::CreateMissing ? SQLite::OPEN_CREATE : 0;
    if (create == 0 && access(path.c_str(), R_OK) != 0)
        throw std::runtime_error(std::strerror(errno)); // SQLite says no more than "unable to open"
    SQLite::Database database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX | create);
    sqlite3_busy_handler(database.getHandle(), waitForLock, nullptr);
    if (schema.isTemporary)
        database.exec("PRAGMA synchronous = OFF"); // it does not outlive the machine's run
    const auto isIncomplete = [&] {
        return isBlank(database) ? create != 0 : !schema.isTemporary && lacksTables(database, schema);
    };
    bool isWhole = false;
    {
        const SQLite::Transaction reading(database); // locks the file once for all that is read
        isWhole = !isIncomplete();
        if (isWhole)
            verify(database, schema);
    }
    if (!isWhole) {
        createTables(database, schema);
        verify(database, schema);
    }
    return database;
}

SQLite::Database openTemporary(const std::string& path, const Schema& schema, OpenMode mode) {
    const ino_t number = secure(path, mode);
    try {
        return openFile(path, schema, mode);
    } catch (const std::exception& error) {
        if (!isWrongFile(error))
            throw;
        setAside(path, number);
    }
    secure(path, mode);
    return openFile(path, schema, mode);
}

} // namespace

int readNumber(SQLite::Database& database, const char* query) {
    return database.execAndGet(query).getInt();
}

std::string fileOf(const Schema& schema) {
    char path[4096];
    if (PH_SysrootPath(schema.path, path, sizeof path) != 0)
        throw std::runtime_error(std::string(schema.path) + ": the path is too long");
    return path;
}

SQLite::Database open(const Schema& schema, OpenMode mode) {
    const std::string path = fileOf(schema);
    try {
        return schema.isTemporary ? openTemporary(path, schema, mode) : openFile(path, schema, mode);
    } catch (const std::exception& error) {
        throw std::runtime_error(path + ": " + error.what());
    }
}

void checkAgain(SQLite::Database& database, const Schema& schema) {
    try {
        requireVersion(database, schema);
    } catch (const std::exception& error) {
        throw std::runtime_error(database.getFilename() + ": " + error.what());
    }
}

} // namespace smash
