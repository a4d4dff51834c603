// Jobs and errors, from what a method records to what a client reads, and those of the command-line protocol
// daemon beside them.
#include "clp_daemon.h"
#include "managed_bmc.h"

ClpDaemon clpDaemon;

namespace {

using broker::NamedValues;
using broker::Reply;
using testing::ElementsAre;
using testing::IsEmpty;

StoredJobRow clpJob(const char* instanceId) {
    StoredJobRow row{};
    std::snprintf(row.instanceId, sizeof(row.instanceId), "%s", instanceId);
    std::snprintf(row.job.elementName, sizeof(row.job.elementName), "load");
    std::snprintf(row.job.operationalStatus, sizeof(row.job.operationalStatus), "2");
    std::snprintf(row.job.minutesToKeep, sizeof(row.job.minutesToKeep), "1501"); // a day, an hour, a minute
    row.job.jobState = 4;
    return row;
}

class Jobs : public ManagedBmc {
protected:
    void SetUp() override { clpDaemon = {}; }

    static std::string create(const char* name = "Test_Job") {
        char instanceId[64] = "";
        EXPECT_EQ(PH_CreateJobInstance(name, instanceId, 4, "2"), 0);
        return instanceId;
    }
    static std::string createFailed() {
        std::string id = create();
        EXPECT_EQ(PH_ModifyConcreteJob(id.c_str(), 10, "17,6"), 0);
        EXPECT_EQ(PH_CreateErrorInstance(id.c_str()), 0);
        return id;
    }

    broker::ObjectPath pathOf(const std::string& id) const { return jobs.path({{"InstanceID", text(id)}}); }
    std::vector<std::string> read(const std::string& id) const {
        const Reply reply = jobs.get(pathOf(id));
        return reply.instances.size() == 1 ? propertiesOf(reply.instances[0])
                                           : std::vector<std::string>{reply.message};
    }
    std::vector<std::string> ids() const {
        return textsOf(jobs.enumerate({{"InstanceID"}}).instances, "InstanceID");
    }
    // The errors that GetErrors hands out.
    std::vector<broker::Instance> errorsOf(const std::string& id) const {
        const Reply reply = jobs.invoke(pathOf(id), "geterrors");
        EXPECT_TRUE(reply.ok()) << reply.message;
        EXPECT_EQ(reply.values, std::vector{number(0, CMPI_uint32)});
        const broker::Value* errors = broker::find(reply.arguments, "Errors");
        if (errors == nullptr || errors->type != CMPI_instanceA) {
            ADD_FAILURE() << "no array of errors";
            return {};
        }
        std::vector<broker::Instance> instances;
        for (const broker::Value& error : *errors->as<broker::Value::Array>())
            instances.push_back(**error.as<broker::Value::Embedded>());
        return instances;
    }
};

TEST_F(Jobs, tellTheirStateFromBeginningToEnd) {
    const std::string id = create("Host_RequestStateChange");
    const auto expect = [&](const char* state, const char* status, const char* percent,
                            const char* operational) {
        EXPECT_THAT(read(id),
                    ElementsAre("InstanceID=" + id, "ElementName=Host_RequestStateChange", "Name=ConcreteJob",
                                std::string("JobState=") + state, std::string("JobStatus=") + status,
                                std::string("PercentComplete=") + percent, "DeleteOnCompletion=TRUE",
                                "TimeBeforeRemoval=00000000000500.000000:000",
                                std::string("OperationalStatus=") + operational));
    };
    expect("4", "Running", "0", "{2}");
    ASSERT_EQ(PH_ModifyConcreteJob(id.c_str(), 4, "2"), 0);
    expect("4", "Running", "50", "{2}");
    ASSERT_EQ(PH_ModifyConcreteJob(id.c_str(), 7, "17,2"), 0);
    expect("7", "Completed", "100", "{17, 2}");
    ASSERT_EQ(PH_ModifyConcreteJob(id.c_str(), 10, "17,6"), 0);
    expect("10", "Exception", "100", "{17, 6}");
    EXPECT_THAT(errorsOf(id), IsEmpty());

    char ended[64] = "";
    ASSERT_EQ(PH_CreateJobInstance("Ended", ended, 7, "17,2"), 0);
    EXPECT_THAT(read(ended), testing::IsSupersetOf({"JobStatus=Completed", "PercentComplete=100"}));
    EXPECT_THAT(ids(), ElementsAre(id, ended));
    EXPECT_THAT(propertiesOf(jobs.enumerate({{"jobstate"}}).instances.at(0)),
                ElementsAre("InstanceID=" + id, "JobState=10"));
}

TEST_F(Jobs, areRecordedForAJobThatIsThere) {
    const std::string tooLong(200, 'x');
    const std::string id = create(tooLong.c_str());
    EXPECT_THAT(read(id), testing::Contains("ElementName=" + tooLong.substr(0, 63)));
    for (const char* missing : {static_cast<const char*>(nullptr), "", "no such job"})
        EXPECT_EQ(PH_ModifyConcreteJob(missing, 7, "17,2"), -1);
    for (const char* missing : {static_cast<const char*>(nullptr), ""})
        EXPECT_EQ(PH_CreateErrorInstance(missing), -1);
}

TEST_F(Jobs, thatFailedSayWhy) {
    const std::string id = createFailed();
    const auto errors = errorsOf(id);
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_EQ(errors[0].path.className, "CIM_Error");
    EXPECT_THAT(propertiesOf(errors[0]),
                ElementsAre("ErrorSource=" + id, "ErrorType=0", "PerceivedSeverity=3", "ProbableCause=0",
                            "ErrorSourceFormat=0", "CIMStatusCode=1", "OwningEntity=TRZ", "MessageID=JOB0001",
                            "Message=The job has failed."));
}

TEST_F(Jobs, getErrorsRefusesWhatItDoesNotKnow) {
    EXPECT_THAT(jobs.invoke(pathOf(create()), "GetError"),
                Refuses(CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available"));
    for (const char* missing : {"none", "clp-job 9"})
        EXPECT_THAT(jobs.invoke(pathOf(missing), "GetErrors"),
                    Refuses(CMPI_RC_ERR_FAILED, "Given instance does not exist"));
}

TEST_F(Jobs, areDeletedWithTheirError) {
    const std::string id = createFailed();
    EXPECT_TRUE(jobs.remove(pathOf(id)).ok());
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_FALSE(jobs.invoke(pathOf(id), "GetErrors").ok());
    for (const auto& path : {pathOf(id), pathOf("clp-job 1"), jobs.path()})
        EXPECT_THAT(jobs.remove(path), Refuses(CMPI_RC_ERR_FAILED, "SetInstance Failed"));
}

TEST_F(Jobs, ofTheDaemonStandBesideTheOthers) {
    const std::string own = create();
    clpDaemon.jobs = {clpJob("clp-job 1"), clpJob("clp-job 2")};
    EXPECT_THAT(ids(), ElementsAre(own, "clp-job 1", "clp-job 2"));
    EXPECT_THAT(read("clp-job 2"), testing::IsSupersetOf({"InstanceID=clp-job 2", "ElementName=load",
                                                          "JobState=4", "DeleteOnCompletion=FALSE",
                                                          "TimeBeforeRemoval=00000001010100.000000:000"}));
    EXPECT_EQ(jobs.get(pathOf("clp-job 3")).message, "Failed to Get Instance");

    ConcreteJobRecord* records = nullptr;
    int count = 0;
    EXPECT_EQ(PH_Enum_All_CLP_Jobs(&records, &count, 1), 0);
    EXPECT_EQ(count, 2) << "the daemon's jobs alone";
    PH_Clean_ConcreteJob(&records, count);

    ASSERT_EQ(PH_CreateErrorInstance("clp-job 1"), 0);
    EXPECT_TRUE(jobs.remove(pathOf("clp-job 1")).ok());
    EXPECT_THAT(ids(), ElementsAre(own, "clp-job 2"));
    EXPECT_FALSE(jobs.invoke(pathOf("clp-job 1"), "GetErrors").ok());

    // The daemon stores its errors in the database, where they are even if it has gone.
    ASSERT_EQ(PH_CreateErrorInstance("clp-job 2"), 0);
    clpDaemon.answers = false;
    EXPECT_EQ(errorsOf("clp-job 2").size(), 1U);
    EXPECT_THAT(platformCalls.made, testing::Contains("db_get_clp_error_info"));
    EXPECT_THAT(ids(), ElementsAre(own)) << "a daemon that does not answer has no jobs";
    EXPECT_EQ(jobs.remove(pathOf("clp-job 2")).message, "SetInstance Failed");
}

// Every platform call of an operation fails in turn.
TEST_F(Jobs, reportEveryFailureOfTheDatabase) {
    const std::string id = createFailed();
    char created[64];
    const std::function<bool()> operations[] = {
        [&] { return PH_CreateJobInstance("x", created, 4, "2") == 0; },
        [&] { return PH_ModifyConcreteJob(id.c_str(), 7, "17,2") == 0; },
        [&] { return PH_CreateErrorInstance(id.c_str()) == 0; },
    };
    for (const auto& operation : operations)
        for (unsigned nth = 1; nth <= 3; ++nth) { // open, work, close
            platformCalls.clear();
            platformCalls.failing = nth;
            EXPECT_FALSE(operation());
            EXPECT_TRUE(platformCalls.hasFailed);
            EXPECT_EQ(platformCalls.openHandles, 0);
        }

    const std::tuple<const char*, std::function<Reply()>, const char*> requests[] = {
        {"enumerate", [&] { return jobs.enumerate(); }, "Failed to Enumerate Instance"},
        {"names", [&] { return jobs.names(); }, "Failed to Enumerate Instance Names"},
        {"get", [&] { return jobs.get(pathOf(id)); }, "Failed to Get Instance"},
        {"delete", [&] { return jobs.remove(pathOf(id)); }, "SetInstance Failed"},
        {"GetErrors", [&] { return jobs.invoke(pathOf(id), "GetErrors"); }, "Failed to Get Errors"},
    };
    for (const auto& [name, request, message] : requests)
        for (unsigned nth = 1; nth <= 2; ++nth) { // what a failure to close takes from a reader: nothing
            SCOPED_TRACE(std::string(name) + " " + std::to_string(nth));
            platformCalls.clear();
            platformCalls.failing = nth;
            EXPECT_THAT(request(), Refuses(CMPI_RC_ERR_FAILED, message));
            EXPECT_EQ(platformCalls.openHandles, 0);
        }
}

} // namespace
