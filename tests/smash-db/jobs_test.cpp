// Jobs and errors in the temporary database.
#include "database_fixture.h"
#include "smash-db/database.h"
#include "smash-db/schema.h"

#include <cstring>
#include <ctime>
#include <gmock/gmock.h>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

time_t timeOfDay = 1; // until the BMC learns it

} // namespace

extern "C" __attribute__((visibility("default"))) time_t time(time_t*) {
    return timeOfDay;
}

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
    // The clock, moved on.
    void age(int seconds) {
        smash::open(smash::temporarySchema, smash::OpenMode::Existing)
            .exec("UPDATE concrete_job SET changedAt = changedAt - " + std::to_string(seconds) +
                  "; UPDATE job_error SET storedAt = storedAt - " + std::to_string(seconds));
    }

    Handle handle = openDatabase(tmp_db_init);
};

TEST_F(Jobs, neverShareAnIdentity) {
    const std::string first = add();
    ASSERT_EQ(db_delete_concretejob(handle.get(), first.c_str()), 0);
    EXPECT_NE(add(), first);
}

TEST_F(Jobs, goWhenTheirTimeIsOver) {
    const std::string running = add();
    const std::string failed = add();
    auto kept = runningJob();
    kept.deleteOnCompletion = 0;
    const std::string permanent = add(kept);
    ASSERT_EQ(finish(failed, 10), 0);
    ASSERT_EQ(finish(permanent, 7), 0);
    setError(failed);
    setError("clp-job 1");
    const auto expectKept = [&](std::initializer_list<std::string> ids) {
        const auto all = getAll(db_get_all_concretejob, handle);
        ASSERT_EQ(all.count, static_cast<int>(ids.size()));
        for (int i = 0; const std::string& id : ids)
            EXPECT_EQ(all.rows.get()[i++].instanceId, id);
    };

    timeOfDay += 86400;
    age(299);
    expectKept({running, failed, permanent});
    EXPECT_TRUE(hasError(failed));
    age(2); // past five minutes: gone for everybody
    expectKept({running, permanent});
    EXPECT_EQ(get(failed), nullptr);
    EXPECT_FALSE(hasError(failed));
    EXPECT_EQ(db_delete_concretejob(handle.get(), failed.c_str()), 1);

    age(3400); // past an hour: its process has died
    expectKept({permanent});
    const std::string next = add();
    EXPECT_EQ(finish(running, 7), 1) << "swept by the next job";
    EXPECT_FALSE(hasError("clp-job 1"));
    age(-10); // of a boot before
    expectKept({permanent});

    setError("clp-job 2");
    EXPECT_EQ(db_delete_concretejob(handle.get(), "clp-job 2"), 0);
    EXPECT_FALSE(hasError("clp-job 2"));
}

} // namespace
