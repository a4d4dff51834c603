// Jobs and errors in the temporary database.
#include "database_fixture.h"
#include "smash-db/database.h"
#include "smash-db/schema.h"

#include <cstring>
#include <gmock/gmock.h>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::HasSubstr;

ConcreteJobRow runningJob() {
    ConcreteJobRow job{};
    std::strcpy(job.elementName, "Host_RequestStateChange");
    std::strcpy(job.kind, "ConcreteJob");
    job.jobState = 4;
    std::strcpy(job.jobStatus, "Running");
    job.deleteOnCompletion = 1;
    std::strcpy(job.minutesToKeep, "5");
    std::strcpy(job.operationalStatus, "2");
    return job;
}

class Jobs : public SysrootFixture {
protected:
    std::string add(const ConcreteJobRow& job) {
        char instanceId[64] = "";
        EXPECT_EQ(db_set_concretejob(handle.get(), &job, instanceId), 0) << db_last_error();
        return instanceId;
    }
    std::string add() { return add(runningJob()); }
    int finish(const std::string& id, int state) {
        return db_modify_concretejob(handle.get(), id.c_str(), "Completed", "17,2", 100, state);
    }
    Owned<StoredJobRow> get(const std::string& id) {
        return getRow<StoredJobRow, const char*>(db_get_concretejob, handle, id.c_str());
    }
    void setError(const std::string& id) {
        JobErrorRow error{0, 3, 0, {}, 0, 1};
        std::snprintf(error.errorSource, sizeof error.errorSource, "%s", id.c_str());
        EXPECT_EQ(db_set_error_info(handle.get(), &error), 0) << db_last_error();
    }
    bool hasError(const std::string& id) {
        JobErrorRow* error = nullptr;
        EXPECT_EQ(db_get_error_info(handle.get(), id.c_str(), &error), 0) << db_last_error();
        const Owned<JobErrorRow> owner(error);
        return error != nullptr && error->errorSource == id && error->cimStatusCode == 1;
    }
    // The clock of finished jobs, moved back.
    void age(int seconds) {
        smash::open(smash::temporarySchema, smash::OpenMode::Existing)
            .exec("UPDATE concrete_job SET endedAt = endedAt - " + std::to_string(seconds) +
                  " WHERE endedAt <> 0");
    }

    Handle handle = openDatabase(tmp_db_init);
};

TEST_F(Jobs, areStoredChangedAndRemoved) {
    const std::string id = add();
    ASSERT_NE(get(id), nullptr);
    EXPECT_EQ(get(id)->instanceId, id);
    EXPECT_STREQ(get(id)->job.elementName, "Host_RequestStateChange");
    EXPECT_EQ(get(id)->job.percentComplete, 0);

    ASSERT_EQ(finish(id, 7), 0) << db_last_error();
    EXPECT_EQ(get(id)->job.jobState, 7);
    EXPECT_STREQ(get(id)->job.jobStatus, "Completed");
    EXPECT_STREQ(get(id)->job.operationalStatus, "17,2");
    EXPECT_EQ(get(id)->job.percentComplete, 100);

    setError(id);
    EXPECT_TRUE(hasError(id));
    ASSERT_EQ(db_delete_concretejob(handle.get(), id.c_str()), 0) << db_last_error();
    EXPECT_EQ(get(id), nullptr);
    EXPECT_FALSE(hasError(id)) << "an error without its job";
}

TEST_F(Jobs, unknownOnesAreFailures) {
    EXPECT_EQ(finish("none", 7), 1);
    EXPECT_THAT(db_last_error(), HasSubstr("method_jobs.db"));
    EXPECT_EQ(db_delete_concretejob(handle.get(), "none"), 1);
    EXPECT_EQ(get("none"), nullptr);
    EXPECT_FALSE(hasError("none"));
}

TEST_F(Jobs, neverShareAnIdentity) {
    const std::string first = add();
    ASSERT_EQ(db_delete_concretejob(handle.get(), first.c_str()), 0);
    EXPECT_NE(add(), first);
}

TEST_F(Jobs, goWhenTheirTimeIsOver) {
    const std::string running = add();
    const std::string completed = add();
    const std::string failed = add();
    auto kept = runningJob();
    kept.deleteOnCompletion = 0;
    const std::string permanent = add(kept);
    for (const auto& [id, state] : {std::pair(completed, 7), {failed, 10}, {permanent, 7}})
        ASSERT_EQ(finish(id, state), 0);
    setError(failed);

    age(299);
    EXPECT_EQ(getAll(db_get_all_concretejob, handle).count, 4) << "within five minutes";
    age(2);
    EXPECT_EQ(getAll(db_get_all_concretejob, handle).count, 2);
    EXPECT_EQ(get(failed), nullptr);
    add();
    EXPECT_FALSE(hasError(failed)) << "the next job should have swept the errors";
    EXPECT_NE(get(running), nullptr);
    EXPECT_NE(get(permanent), nullptr);
}

TEST_F(Jobs, ofTwoProcessesAllSurvive) {
    constexpr int rounds = 100;
    const auto work = [] {
        for (int i = 0; i < rounds; ++i) {
            SMASH_DB_HANDLE own = nullptr;
            char id[64];
            const ConcreteJobRow job = runningJob();
            const bool good = tmp_db_init(&own) == 0 && db_set_concretejob(own, &job, id) == 0 &&
                              db_modify_concretejob(own, id, "Exception", "17,6", 100, 10) == 0;
            if (!good || db_close(own) != 0)
                return 1;
        }
        return 0;
    };
    const pid_t child = fork();
    if (child == 0)
        _exit(work());
    EXPECT_EQ(work(), 0) << db_last_error();
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);

    const auto all = getAll(db_get_all_concretejob, handle);
    std::set<std::string> ids;
    for (int i = 0; i < all.count; ++i) {
        ids.insert(all.rows.get()[i].instanceId);
        EXPECT_EQ(all.rows.get()[i].job.jobState, 10);
    }
    EXPECT_EQ(ids.size(), 2U * rounds);
}

} // namespace
