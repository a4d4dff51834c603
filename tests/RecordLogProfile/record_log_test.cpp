// CIM_RecordLog, its method ClearLog, its capabilities and CIM_LogEntry, on the virtual BMC's event log.
#include "managed_bmc.h"
#include "provider_helper/provider_helper.h"
#include "Utility/back-ends/back_ends.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using SelBytes = std::array<std::uint8_t, 16>;

class RecordLogs : public ManagedBmc {
protected:
    static constexpr const char* logId = "IPMI:controller SEL Log";

    void SetUp() override { setenv("TZ", "EST5", 1); }

    void createLog(const std::string& sel) const { createBmc(R"({"device": {}, "sel": )" + sel + "}"); }
    std::size_t records() const { return bmc().selRecords().size(); }

    broker::ObjectPath log(const std::string& id = logId) const {
        return logs.path({{"InstanceID", text(id)}});
    }
    broker::ObjectPath entry(const std::string& id) const { return entries.path({{"InstanceID", text(id)}}); }
    broker::Reply clear() const { return logs.invoke(log(), "clearlog"); }

    const ClassRequests logs{broker, PH_CLASS_FUNCTIONS(RecordLog)};
    const ClassRequests entries{broker, PH_CLASS_FUNCTIONS(LogEntry)};
};

TEST_F(RecordLogs, tellCountsAndPolicy) {
    const std::tuple<const char*, std::size_t, const char*, const char*, const char*> cases[] = {
        {R"({"capacity": 4, "whenFull": "stop"})", 3, "2", "4", "7"},
        {R"({"capacity": 4, "whenFull": "stop"})", 4, "6", "4", "7"},
        {R"({"capacity": 4, "whenFull": "wrap"})", 3, "2", "2", "2"},
        {R"({"capacity": 4, "whenFull": "wrap"})", 4, "2", "2", "2"},
    };
    for (const auto& [sel, count, enabledState, logState, overwritePolicy] : cases) {
        SCOPED_TRACE(sel);
        createLog(sel);
        bmc().fillSel(count);
        const broker::Instance instance = only(logs);
        EXPECT_EQ(instance.path, log());
        EXPECT_EQ(textOf(instance, "CurrentNumberOfRecords"), std::to_string(count));
        EXPECT_EQ(textOf(instance, "MaxNumberOfRecords"), "4");
        EXPECT_EQ(textOf(instance, "EnabledState"), enabledState);
        EXPECT_EQ(textOf(instance, "LogState"), logState);
        EXPECT_EQ(textOf(instance, "OverwritePolicy"), overwritePolicy);
        EXPECT_EQ(textOf(instance, "HealthState"), "5");
        EXPECT_EQ(textOf(instance, "RequestedState"), "12");
        EXPECT_EQ(textOf(instance, "ElementName"), "IPMI SEL");
    }
    const auto capabilities = only(ClassRequests(broker, PH_CLASS_FUNCTIONS(RecordLogCapabilities)));
    EXPECT_EQ(textOf(capabilities, "InstanceID"), "RecordLogCapabilities1");
    EXPECT_EQ(textOf(capabilities, "ElementName"), "RecordLog Capabilities");
    EXPECT_EQ(textOf(capabilities, "ElementNameEditSupported"), "FALSE");
}

TEST_F(RecordLogs, failWithoutTheirCounts) {
    ASSERT_TRUE(logs.enumerate().ok());
    EXPECT_THAT(platformCalls.hooks(),
                ElementsAre("CIM_GetNumOfSELEntries(*, 30)", "CIM_GetMaxPossibleSELEntries(*, 30)",
                            "CIM_GetSELPolicy(*, 30)"));
    for (const char* function :
         {"CIM_Create_IPMI20_Session", "CIM_GetNumOfSELEntries", "CIM_GetMaxPossibleSELEntries"}) {
        platformCalls.broken = {function};
        EXPECT_EQ(logs.enumerate().message, "Failed to Enumerate Instance") << function;
        RecordLogRecord record{};
        EXPECT_EQ(PH_Fill_RecordLog(&record), -1);
        EXPECT_STREQ(record.InstanceID, "");
        EXPECT_EQ(record.HealthState, 0);
    }
    platformCalls.broken = {"CIM_GetSELPolicy"};
    EXPECT_EQ(textOf(only(logs), "OverwritePolicy"), "0");
    EXPECT_EQ(textOf(only(logs), "EnabledState"), "0");
}

TEST_F(RecordLogs, areClearedByAJob) {
    createLog(R"({"erasureSteps": 2})");
    bmc().fillSel(5);
    const broker::Reply done = clear();
    EXPECT_THAT(done, Returns(0));
    EXPECT_EQ(records(), 0U);
    const Job job = jobOf(done);
    EXPECT_EQ(job, Job::completed(job.name));
    EXPECT_THAT(platformCalls.hooks(), ElementsAre("CIM_ClearSEL(30)"));

    bmc().fillSel(5);
    for (const char* function : {"CIM_ClearSEL", "CIM_Create_IPMI20_Session"}) {
        platformCalls.broken = {function};
        const broker::Reply failed = clear();
        EXPECT_THAT(failed, Returns(2));
        EXPECT_EQ(jobOf(failed), Job::failed(job.name));
    }
    EXPECT_EQ(records(), 5U);
    platformCalls.broken = {"db_modify_concretejob"};
    EXPECT_THAT(clear(), Returns(2));
    EXPECT_EQ(records(), 0U);
}

TEST_F(RecordLogs, areNotClearedWhereNobodyWouldKnow) {
    constexpr const char *noPath = "Create CMPIObjectPath failed.", *badPath = "ObjectPath is not valid";
    bmc().fillSel(5);
    EXPECT_THAT(logs.invoke(log(), "RequestStateChange"),
                Refuses(CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available"));
    for (const auto& path :
         {logs.path(), log("IPMI:Other SEL Log"), log("it's"), logs.path({{"Name", text(logId)}})})
        EXPECT_EQ(logs.invoke(path, "ClearLog").message, badPath);
    platformCalls.broken = {"db_set_concretejob"};
    EXPECT_EQ(clear().message, noPath);
    platformCalls.broken = {};
    EXPECT_EQ(jobCount(), 0U);
    broker.failCall("newObjectPath", 1);
    EXPECT_EQ(clear().message, noPath);
    broker.resetCalls();
    EXPECT_EQ(records(), 5U);
    platformCalls.broken = {"OEM_GetSPSystemName", "db_get_device_bytype"}; // then the log has no name either
    for (const char* other : {"IPMI:controller", "controller SEL Log"})
        EXPECT_EQ(logs.invoke(log(other), "ClearLog").message, badPath);
    EXPECT_THAT(clear(), Returns(0));
    EXPECT_EQ(records(), 0U);
}

// A system event of 1979-09-05 22:51:36: deassertion by sensor 48.
constexpr SelBytes deassertion{0,    0,    0x02, 0x78, 0x56, 0x34, 0x12, 0x20,
                               0x00, 0x04, 0x01, 0x30, 0x81, 5,    255,  255};

TEST_F(RecordLogs, entriesPublishWhatARecordHolds) {
    createLog(R"({"nextId": 4660})");
    bmc().addSelRecord(deassertion);
    EXPECT_THAT(propertiesOf(only(entries)),
                ElementsAre("InstanceID=4660", "LogInstanceID=IPMI:controller SEL Log", "LogName=IPMI SEL",
                            "RecordID=4660", "CreationTimeStamp=19790905225136.000000-300",
                            "RecordFormat=" + std::string(RecordFormat[0]),
                            "RecordData=*48.0.32*4660 2*305419896*3232*4*2*48*false*129*5*255*255*",
                            "ElementName=nBMC - Log 4660"));
}

TEST_F(RecordLogs, entriesHaveTheFormatOfTheirRecordType) {
    const std::pair<std::uint8_t, int> cases[] = {{0x02, 0}, {0xC0, 1}, {0xC5, 1}, {0xDF, 1}, {0xE0, 2},
                                                  {0xFF, 2}, {0x10, 2}, {0xBF, 2}, {0x00, 2}};
    for (const auto& [type, row] : cases)
        bmc().addSelRecord(SelBytes{0, 0, type, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0x6F, 11, 12, 13});
    const auto all = entries.enumerate().instances;
    ASSERT_EQ(all.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(textOf(all[i], "RecordFormat"), RecordFormat[cases[i].second]) << +cases[i].first;
        EXPECT_EQ(textOf(all[i], "RecordData"),
                  cases[i].second == 0 ? "*9.6.5*1 2*67305985*55*7*2*9*true*111*11*12*13*" : "");
    }
}

TEST_F(RecordLogs, entriesOfALargeLogHaveNoFormatAndData) {
    for (const std::size_t count : {1000, 1001}) {
        bmc().clearSel();
        ASSERT_EQ(bmc().fillSel(count), count);
        const auto all = entries.enumerate().instances;
        ASSERT_EQ(all.size(), count);
        EXPECT_EQ(SELCount, count);
        for (const char* property : {"RecordFormat", "RecordData"})
            EXPECT_EQ(std::ranges::count(textsOf(all, property), "<none>"), count == 1000 ? 0 : 1001);
    }
}

TEST_F(RecordLogs, entriesAreFoundByTheirOwnIdOnly) {
    bmc().fillSel(3);
    EXPECT_EQ(entries.get(entry("2")).instances.size(), 1U);
    EXPECT_THAT(platformCalls.hooks(), ElementsAre("CIM_GetSELEntry(*, *, 30)"));
    // 0 and 65535 ask a BMC for its first and last record.
    for (const char* id : {"4", "0", "65535", "65538", "02", " 2", "2 ", "-2", "x", ""})
        EXPECT_THAT(entries.get(entry(id)), Refuses(CMPI_RC_ERR_FAILED, "Failed to Get Instance")) << id;
}

TEST_F(RecordLogs, entriesFailWithThePlatform) {
    EXPECT_EQ(entries.instanceArray()->size(), 0U);
    EXPECT_THAT(platformCalls.hooks(),
                ElementsAre("CIM_GetMaxPossibleSELEntries(*, 30)", "CIM_GetSELRecords(*, *, 30)"));
    bmc().fillSel(3);
    for (const char* function :
         {"CIM_Create_IPMI20_Session", "CIM_GetMaxPossibleSELEntries", "CIM_GetSELRecords"}) {
        platformCalls.broken = {function};
        EXPECT_EQ(entries.enumerate().message, "Failed to Enumerate Instance") << function;
        EXPECT_EQ(entries.names().message, "Failed to Enumerate Instance Names") << function;
        EXPECT_FALSE(entries.instanceArray()) << function;
    }
    // Without a vendor's name and a device record the log cannot be named.
    platformCalls.broken = {"OEM_GetSPSystemName", "db_get_device_bytype"};
    EXPECT_EQ(entries.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(entries.get(entry("1")).message, "Failed to Get Instance");
    EXPECT_EQ(entries.names().paths.size(), 3U);
}

class SelRecords : public RecordLogs {
protected:
    SelRecords() { EXPECT_TRUE(session.open()); }
    void TearDown() override {
        session.close();
        RecordLogs::TearDown();
    }

    ph::IpmiSession session;
    std::uint16_t count = 7;
    CIM_SELEntry* records = nullptr;
    std::uint8_t* record = nullptr;
};

TEST_F(SelRecords, areHandedOutAsTheBmcHasThem) {
    EXPECT_EQ(GetSELEntries(session.get(), &count, &records), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(records, nullptr);
    bmc().addSelRecord(deassertion);
    bmc().fillSel(1);
    ASSERT_EQ(GetSELEntries(session.get(), &count, &records), 0);
    EXPECT_EQ(count, 2);
    SelBytes expected = deassertion;
    expected[0] = 1;
    EXPECT_THAT(records[0].record, testing::ElementsAreArray(expected));
    EXPECT_THAT(records[0].nextRecordId, ElementsAre(2, 0));
    EXPECT_THAT(records[1].nextRecordId, ElementsAre(0xFF, 0xFF));
    std::free(records);
    ASSERT_EQ(GetLogEntryData(session.get(), 1, &record), 0);
    EXPECT_THAT(std::vector(record, record + 16), testing::ElementsAreArray(expected));
    std::free(record);
}

// What a platform gives that breaks its promises, or says no in its answer.
TEST_F(SelRecords, areRefusedWhereTheAnswerIsNone) {
    PH_STAND_IN(CIM_GetSELEntry, [](auto*, const auto*, CIM_SELEntryAnswer* answer, int) {
        *answer = {};
        answer->completionCode = 0xCB;
        return 0;
    });
    EXPECT_EQ(GetLogEntryData(session.get(), 1, &record), -1);
    EXPECT_EQ(record, nullptr);
    PH_STAND_IN(CIM_GetMaxPossibleSELEntries, [](auto*, uint16_t* room, int) {
        *room = 3;
        return 0;
    });
    for (const std::uint16_t found : {std::uint16_t{3}, std::uint16_t{4}}) {
        PH_STAND_IN(CIM_GetSELRecords, [=](auto*, auto*, uint16_t* given, int) {
            EXPECT_EQ(*given, 3) << "the room that there is";
            *given = found;
            return 0;
        });
        EXPECT_EQ(GetSELEntries(session.get(), &count, &records), found == 3 ? 0 : -1);
        EXPECT_EQ(count, found == 3 ? 3 : 0);
        std::free(std::exchange(records, nullptr));
    }
}

TEST_F(SelRecords, needASessionAndAPlace) {
    EXPECT_EQ(GetSELEntries(nullptr, &count, &records), -1);
    EXPECT_EQ(GetSELEntries(session.get(), nullptr, &records), -1);
    EXPECT_EQ(GetSELEntries(session.get(), &count, nullptr), -1);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(GetLogEntryData(nullptr, 1, nullptr), -1);
}

} // namespace
