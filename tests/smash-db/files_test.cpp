#include "database_fixture.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/repair.h"

#include <functional>
#include <gmock/gmock.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr char file[] = "/conf/smash.db";

void execute(const fs::path& path, const std::string& statements) {
    SQLite::Database(path, SQLite::OPEN_READWRITE).exec(statements);
}

void overwrite(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::trunc) << text;
}

struct Damage {
    const char* name;
    void (*apply)(const fs::path& path); // to a database that is in order
    const char* reason;
    bool isCreated = false; // by smash_db_init
    bool isDamage = false;  // of a file of ours, which may be made anew
};

void PrintTo(const Damage& damage, std::ostream* out) {
    *out << damage.name;
}

const Damage damages[] = {
    {"missing", [](const fs::path& path) { fs::remove(path); }, "No such file", true},
    {"empty", [](const fs::path& path) { overwrite(path, ""); }, "schema version 0", true},
    {"text", [](const fs::path& path) { overwrite(path, std::string(9000, 'x')); }, "not a database", false,
     true},
    {"onlyAHeader", [](const fs::path& path) { fs::resize_file(path, 100); }, "malformed", false, true},
    {"cutByAPage", [](const fs::path& path) { fs::resize_file(path, fs::file_size(path) - 4096); },
     "malformed", false, true},
    {"cutWithinAPage",
     [](const fs::path& path) {
         execute(path, "CREATE TABLE last (page)"); // no part of the schema stands in the page that is cut
         fs::resize_file(path, fs::file_size(path) - 1);
     },
     "cut short", false, true},
    {"ofALaterVersion", [](const fs::path& path) { execute(path, "PRAGMA user_version = 99"); },
     "schema version 99 instead of 6"},
    {"withoutATable", [](const fs::path& path) { execute(path, "DROP TABLE fru"); }, "no such table: fru",
     false, true},
    {"withoutAColumn", [](const fs::path& path) { execute(path, "ALTER TABLE fru DROP COLUMN model"); },
     "no such column: model", false, true},
    {"ofAnotherProgram",
     [](const fs::path& path) {
         fs::remove(path);
         SQLite::Database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("CREATE TABLE own (a)");
     },
     "schema version 0"},
    {"aFolder",
     [](const fs::path& path) {
         fs::remove(path);
         fs::create_directory(path);
     },
     "unable to open"},
    {"belowAFile",
     [](const fs::path& path) {
         fs::remove_all(path.parent_path());
         overwrite(path.parent_path(), "x");
     },
     "Not a directory"},
};

int openDescriptors(const fs::path& path) {
    int count = 0;
    std::error_code error; // a descriptor may be closed meanwhile
    for (const auto& entry : fs::directory_iterator("/proc/self/fd"))
        count += fs::read_symlink(entry, error) == path ? 1 : 0;
    return count;
}

// Makes the library keep a connection to a file that was not changed just now.
void keepConnection(const fs::path& path) {
    usleep(30'000);
    EXPECT_EQ(db_close(openDatabase(db_init).release()), 0);
    EXPECT_EQ(openDescriptors(path), 1);
}

class BadFile : public DatabaseFixture, public testing::WithParamInterface<Damage> {};

TEST_P(BadFile, isRefusedByNameAndLeftAlone) {
    handle.reset();
    const auto path = sysroot.place(file);
    keepConnection(path);
    GetParam().apply(path);
    const auto contents = [&] {
        std::ifstream in(path, std::ios::binary);
        return fs::is_regular_file(path) ? std::string(std::istreambuf_iterator<char>(in), {}) : "";
    };
    const std::string before = contents();

    EXPECT_EQ(smash::findDamage(smash::smashSchema).has_value(), GetParam().isDamage);

    SMASH_DB_HANDLE opened = nullptr;
    EXPECT_EQ(db_init(&opened), 1);
    EXPECT_EQ(opened, nullptr);
    EXPECT_THAT(db_last_error(), HasSubstr(path.string() + ": "));
    EXPECT_THAT(db_last_error(), HasSubstr(GetParam().reason));

    EXPECT_EQ(smash_db_init(&opened), GetParam().isCreated ? 0 : 1);
    if (!GetParam().isCreated)
        EXPECT_EQ(contents(), before);
    else
        EXPECT_EQ(db_close(opened), 0);
}

INSTANTIATE_TEST_SUITE_P(Files, BadFile, testing::ValuesIn(damages),
                         [](const auto& test) { return test.param.name; });

TEST_F(DatabaseFixture, keptConnectionGivesWhatIsStoredNow) {
    const auto path = sysroot.place(file);
    handle.reset();
    keepConnection(path);
    const auto portOf = [](const Handle& database) {
        const auto session = getRow(db_get_ipmi_session_info, database);
        return session != nullptr ? session->port : -1;
    };
    EXPECT_EQ(portOf(openDatabase(db_init)), -1);
    IPMISessionInfo session = {};
    session.port = 6230;
    ASSERT_EQ(db_set_ipmi_session_info(openDatabase(db_init).get(), &session), 0);
    EXPECT_EQ(portOf(openDatabase(db_init)), 6230);
    keepConnection(path);
    execute(path, "UPDATE ipmi_session SET port = 6231");
    EXPECT_EQ(portOf(openDatabase(db_init)), 6231);
    keepConnection(path);
    fs::copy_file(path, path.string() + ".new");
    execute(path.string() + ".new", "UPDATE ipmi_session SET port = 6232");
    fs::rename(path.string() + ".new", path);
    EXPECT_EQ(portOf(openDatabase(db_init)), 6232) << "of a file that took its place";
}

TEST_F(DatabaseFixture, childLeavesTheConnectionOfItsParentAlone) {
    const auto path = sysroot.place(file);
    handle.reset();
    keepConnection(path);
    const pid_t child = fork();
    if (child == 0) {
        const Handle own = openDatabase(db_init);
        _exit(own != nullptr && openDescriptors(path) == 2 ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(db_close(openDatabase(db_init).release()), 0);
}

TEST_F(DatabaseFixture, damageWithinAPageGivesAnErrorInsteadOfRows) {
    const auto path = sysroot.place(file);
    execute(path, "INSERT INTO fru VALUES (7, 1, 'm', 'model', 's', 'p')");
    const int page =
        SQLite::Database(path).execAndGet("SELECT rootpage FROM sqlite_schema WHERE name = 'fru'").getInt();
    {
        std::fstream raw(path, std::ios::in | std::ios::out | std::ios::binary);
        raw.seekp((page - 1) * 4096);
        raw << std::string(4096, '\x5A');
    }
    EXPECT_TRUE(smash::findDamage(smash::smashSchema));
    EXPECT_FALSE(smash::holdsRows(smash::smashSchema, smash::fruTable));
    handle = openDatabase(db_init);
    EXPECT_EQ(getRow(db_get_fru_by_entity_id, handle, 7), nullptr);
    EXPECT_THAT(db_last_error(), HasSubstr(path.string()));
    EXPECT_EQ(getAll(db_get_all_full_sdrs, handle).count, 0) << "the other tables are in order";

    IPMISessionInfo session = {};
    session.port = 6230;
    ASSERT_EQ(db_set_ipmi_session_info(handle.get(), &session), 0);
    handle.reset();
    EXPECT_EQ(smash::rebuild(smash::smashSchema), path.string() + ".damaged");
    EXPECT_FALSE(smash::findDamage(smash::smashSchema));
    handle = openDatabase(db_init);
    EXPECT_EQ(getRow(db_get_ipmi_session_info, handle)->port, 6230) << "what can be read is kept";
}

TEST_F(DatabaseFixture, olderVersionGetsTheTablesItLacks) {
    handle.reset();
    const auto path = sysroot.place(file);
    execute(path, "INSERT INTO fru VALUES (7, 1, 'm', 'model', 's', 'p'); DROP TABLE event_message;"
                  "PRAGMA user_version = 1");
    handle = openDatabase(db_init);
    EXPECT_EQ(getRow(db_get_fru_by_entity_id, handle, 7)->model, std::string("model"));
    std::int32_t id = 0;
    EXPECT_EQ(db_get_MessageID(handle.get(), "Fan failed", &id), 0) << db_last_error();
}

TEST_F(DatabaseFixture, messagesKeepTheirNumbers) {
    const auto idOf = [&](const std::string& description) {
        std::int32_t id = -1;
        EXPECT_EQ(db_get_MessageID(handle.get(), description.c_str(), &id), 0) << db_last_error();
        return id;
    };
    EXPECT_EQ(idOf("Fan failed"), 1);
    EXPECT_EQ(idOf("Unknown"), 2);
    EXPECT_EQ(idOf("fan failed"), 3);
    EXPECT_EQ(idOf(std::string(255, 'x')), idOf(std::string(300, 'x'))) << "cut";
    handle = openDatabase(db_init);
    EXPECT_EQ(idOf("Fan failed"), 1);
    std::int32_t id = -1;
    EXPECT_EQ(db_get_MessageID(handle.get(), nullptr, &id), 1);
    EXPECT_EQ(id, -1);
}

TEST_F(DatabaseFixture, lockedFileIsAFailure) {
    handle.reset();
    keepConnection(sysroot.place(file));
    SQLite::Database other(sysroot.place(file), SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    SMASH_DB_HANDLE opened = nullptr;
    EXPECT_EQ(db_init(&opened), 1);
    EXPECT_THAT(db_last_error(), HasSubstr(sysroot.place(file).string() + ": database is locked"));
    other.exec("ROLLBACK");
    EXPECT_EQ(db_close(openDatabase(db_init).release()), 0);
}

TEST_F(DatabaseFixture, filesAreForTheirOwner) {
    const Handle temporary = openDatabase(tmp_db_init);
    for (const char* name : {file, "/tmp/method_jobs.db"}) {
        struct stat status = {};
        ASSERT_EQ(stat(sysroot.place(name).c_str(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777, 0600u) << name;
    }
}

class SharedFolder : public SysrootFixture {
protected:
    const fs::path jobs = sysroot.place("/tmp/method_jobs.db");
    const fs::path journal = sysroot.place("/tmp/method_jobs.db-journal");
};

// Another user may put anything there before us, and must neither stop a request nor have it write elsewhere.
TEST_F(SharedFolder, whatIsNoFileOfOursIsRefused) {
    const fs::path target = sysroot.place("/var/lib/target"), other = sysroot.place("/var/lib/other");
    overwrite(other, "");
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"dangling link", [&] { fs::create_symlink(target, jobs); }},
        {"second name", [&] { fs::create_hard_link(other, jobs); }},
        {"pipe", [&] { mkfifo(jobs.c_str(), 0600); }},
        {"pipe as journal", [&] { mkfifo(journal.c_str(), 0600); }},
        {"another user's",
         [&] {
             overwrite(jobs, "");
             EXPECT_TRUE(chown(jobs.c_str(), 1, 1) == 0 || geteuid() != 0);
             fs::create_hard_link(jobs, journal); // for a user who cannot give files away
         }},
    };
    for (const auto& [name, put] : cases) {
        SCOPED_TRACE(name);
        put();
        SMASH_DB_HANDLE opened = nullptr;
        EXPECT_EQ(tmp_db_init(&opened), 1);
        EXPECT_THAT(db_last_error(), HasSubstr("not a file of this user"));
        EXPECT_FALSE(fs::exists(target));
        EXPECT_TRUE(fs::is_empty(other));
        fs::remove(jobs);
        fs::remove(journal);
    }
}

TEST_F(SharedFolder, unusableJobsOfOursAreSetAside) {
    const std::pair<const char*, void (*)(const fs::path&)> cases[] = {
        {"text", [](const fs::path& path) { overwrite(path, std::string(9000, 'x')); }},
        {"cut", [](const fs::path& path) { fs::resize_file(path, fs::file_size(path) - 4096); }},
        {"older", [](const fs::path& path) { execute(path, "PRAGMA user_version = 1"); }},
        {"later", [](const fs::path& path) { execute(path, "PRAGMA user_version = 99"); }},
        {"foreign", [](const fs::path& path) { execute(path, "DROP TABLE job_error"); }},
    };
    for (const auto& [name, damage] : cases) {
        SCOPED_TRACE(name);
        ASSERT_EQ(db_close(openDatabase(tmp_db_init).release()), 0);
        damage(jobs);
        const auto size = fs::file_size(jobs);
        const Handle handle = openDatabase(tmp_db_init);
        EXPECT_EQ(getAll(db_get_all_concretejob, handle).count, 0) << db_last_error();
        EXPECT_EQ(fs::file_size(jobs.string() + ".damaged"), size);
    }
}

TEST(TooLongSysroot, isAFailure) {
    setenv("PH_SYSROOT", std::string(5000, '/').c_str(), 1);
    SMASH_DB_HANDLE opened = nullptr;
    EXPECT_EQ(db_init(&opened), 1);
    EXPECT_THAT(db_last_error(), HasSubstr("too long"));
    unsetenv("PH_SYSROOT");
}

} // namespace
