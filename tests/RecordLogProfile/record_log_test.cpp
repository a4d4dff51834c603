// CIM_RecordLog, its method ClearLog and its capabilities.
#include "log_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordLogs : public LogFixture {
protected:
    broker::ObjectPath named(const std::string& id) const {
        return logs.path({{"InstanceID", {CMPI_string, id}}});
    }
    broker::Instance only() const {
        const broker::Reply reply = logs.enumerate();
        EXPECT_EQ(reply.instances.size(), 1U) << reply.message;
        return reply.instances.at(0);
    }
    int records() const { return bmc->describe()["sel"]["records"]; }

    static broker::ObjectPath jobOf(const broker::Reply& reply) {
        return **reply.arguments.at(0).value.as<broker::Value::Reference>();
    }
    // The jobs that methods left behind.
    std::vector<broker::Instance> jobs() { return jobRequests.enumerate().instances; }

    const ClassRequests logs{broker, PH_CLASS_FUNCTIONS(RecordLog)};
    const ClassRequests jobRequests{broker, PH_CLASS_FUNCTIONS(ConcreteJob)};
};

TEST_F(RecordLogs, tellCountsAndPolicy) {
    struct PolicyCase {
        const char* sel;
        std::size_t records;
        const char* enabledState;
        const char* logState;
        const char* overwritePolicy;
    };
    const PolicyCase cases[] = {
        {R"({"capacity": 4, "whenFull": "stop"})", 3, "2", "4", "7"},
        {R"({"capacity": 4, "whenFull": "stop"})", 4, "6", "4", "7"},
        {R"({"capacity": 4, "whenFull": "wrap"})", 3, "2", "2", "2"},
        {R"({"capacity": 4, "whenFull": "wrap"})", 4, "2", "2", "2"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.sel);
        makeBmc(item.sel);
        bmc->fillSel(item.records);
        const broker::Instance log = only();
        EXPECT_EQ(log.path, named(logId));
        EXPECT_EQ(text(log, "InstanceID"), logId);
        EXPECT_EQ(text(log, "CurrentNumberOfRecords"), std::to_string(item.records));
        EXPECT_EQ(text(log, "MaxNumberOfRecords"), "4");
        EXPECT_EQ(text(log, "EnabledState"), item.enabledState);
        EXPECT_EQ(text(log, "LogState"), item.logState);
        EXPECT_EQ(text(log, "OverwritePolicy"), item.overwritePolicy);
        EXPECT_EQ(text(log, "HealthState"), "5");
        EXPECT_EQ(text(log, "RequestedState"), "12");
        EXPECT_EQ(text(log, "ElementName"), "IPMI SEL");
        EXPECT_EQ(broker::find(log.properties, "OperationalStatus")->type, CMPI_uint16A);
        EXPECT_THAT(logs.names().paths, ElementsAre(named(logId)));
        EXPECT_THAT(logs.get(named(logId)).instances, ElementsAre(log));
    }
    EXPECT_EQ(logs.get(named("IPMI:Other BMC SEL Log")).message, "Failed to Get Instance");
}

TEST_F(RecordLogs, failWithoutTheirCounts) {
    for (const char* function :
         {"CIM_Create_IPMI20_Session", "CIM_GetNumOfSELEntries", "CIM_GetMaxPossibleSELEntries"}) {
        platform.failing = {function};
        EXPECT_EQ(logs.enumerate().message, "Failed to Enumerate Instance") << function;
        RecordLogRecord record{};
        EXPECT_EQ(PH_Fill_RecordLog(&record), -1);
        EXPECT_STREQ(record.InstanceID, "");
        EXPECT_EQ(record.HealthState, 0);
    }
    platform.failing = {"CIM_GetSELPolicy"};
    EXPECT_EQ(text(only(), "OverwritePolicy"), "0");
    EXPECT_EQ(text(only(), "EnabledState"), "0");
}

TEST_F(RecordLogs, clearLogErasesAndLeavesACompletedJob) {
    makeBmc(R"({"erasureSteps": 2})");
    bmc->fillSel(5);
    const broker::Reply reply = logs.invoke(named(logId), "clearlog");
    ASSERT_TRUE(reply.ok()) << reply.message;
    ASSERT_EQ(reply.values.size(), 1U);
    EXPECT_EQ(broker::toText(reply.values[0]), "0");
    EXPECT_EQ(records(), 0);
    ASSERT_EQ(jobs().size(), 1U);
    EXPECT_EQ(text(jobs()[0], "JobState"), "7");
    ASSERT_EQ(reply.arguments.size(), 1U);
    EXPECT_EQ(reply.arguments[0].name, "Job");
    EXPECT_EQ(jobRequests.get(jobOf(reply)).instances.size(), 1U);
}

TEST_F(RecordLogs, clearLogThatFailsLeavesAFailedJobWithAnError) {
    bmc->fillSel(5);
    for (const char* function : {"CIM_ClearSEL", "CIM_Create_IPMI20_Session"}) {
        platform.failing = {function};
        const broker::Reply reply = logs.invoke(named(logId), "ClearLog");
        ASSERT_TRUE(reply.ok()) << reply.message;
        EXPECT_EQ(broker::toText(reply.values.at(0)), "2");
        const broker::ObjectPath job = jobOf(reply);
        EXPECT_EQ(text(jobRequests.get(job).instances.at(0), "JobState"), "10");
        const broker::Reply errors = jobRequests.invoke(job, "GetErrors");
        EXPECT_EQ(errors.arguments.at(0).name, "Errors");
    }
    EXPECT_EQ(records(), 5);
}

TEST_F(RecordLogs, clearLogRefusesWhatItCannotRecordOrName) {
    bmc->fillSel(5);
    const broker::Reply unknown = logs.invoke(named(logId), "RequestStateChange");
    EXPECT_EQ(unknown.code, CMPI_RC_ERR_METHOD_NOT_FOUND);
    EXPECT_EQ(unknown.message, "No such method available");
    for (const auto& path : {logs.path(), named("IPMI:Other BMC SEL Log"), named("it's"),
                             logs.path({{"Name", {CMPI_string, std::string(logId)}}})})
        EXPECT_EQ(logs.invoke(path, "ClearLog").message, "ObjectPath is not valid");
    EXPECT_THAT(jobs(), IsEmpty());
    platform.failing = {"db_set_concretejob"};
    EXPECT_EQ(logs.invoke(named(logId), "ClearLog").message, "Create CMPIObjectPath failed.");
    platform.failing = {};
    broker.failCall("newObjectPath", 1);
    EXPECT_EQ(logs.invoke(named(logId), "ClearLog").message, "Create CMPIObjectPath failed.");
    broker.resetCalls();
    EXPECT_EQ(records(), 5);
    platform.failing = {"OEM_GetSPSystemName"}; // then the log's name is not known either
    for (const char* other : {"IPMI:Test BMC", "Test BMC SEL Log"})
        EXPECT_EQ(logs.invoke(named(other), "ClearLog").message, "ObjectPath is not valid");
    EXPECT_TRUE(logs.invoke(named(logId), "ClearLog").ok());
    EXPECT_EQ(records(), 0);
    platform.failing = {"db_modify_concretejob"};
    EXPECT_EQ(broker::toText(logs.invoke(named(logId), "ClearLog").values.at(0)), "2");
}

TEST_F(RecordLogs, haveCapabilities) {
    const ClassRequests capabilities(broker, PH_CLASS_FUNCTIONS(RecordLogCapabilities));
    const auto instances = capabilities.enumerate().instances;
    ASSERT_EQ(instances.size(), 1U);
    EXPECT_EQ(text(instances[0], "InstanceID"), "RecordLogCapabilities1");
    EXPECT_EQ(text(instances[0], "ElementName"), "RecordLog Capabilities");
    EXPECT_EQ(text(instances[0], "ElementNameEditSupported"), "FALSE");
    EXPECT_EQ(broker::find(instances[0].properties, "MaxElementNameLen")->type, CMPI_uint16);
    EXPECT_EQ(broker::find(instances[0].properties, "RequestedStatesSupported")->type, CMPI_uint16A);
    EXPECT_EQ(broker::find(instances[0].properties, "SupportedRecordTypes")->type, CMPI_uint16A);
    EXPECT_THAT(capabilities.names().paths, ElementsAre(instances[0].path));
}

} // namespace
