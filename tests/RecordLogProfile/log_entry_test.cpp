// CIM_LogEntry through its class functions, on the virtual BMC's event log.
#include "log_fixture.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

class LogEntries : public LogFixture {
protected:
    broker::ObjectPath named(const std::string& id) const {
        return entries.path({{"InstanceID", {CMPI_string, id}}});
    }

    const ClassRequests entries{broker, PH_CLASS_FUNCTIONS(LogEntry)};
};

// A system event of 1979-09-05 22:51:36: deassertion by sensor 48.
constexpr SelBytes deassertion{0,    0,    0x02, 0x78, 0x56, 0x34, 0x12, 0x20,
                               0x00, 0x04, 0x01, 0x30, 0x81, 5,    255,  255};

TEST_F(LogEntries, publishWhatARecordHolds) {
    makeBmc(R"({"nextId": 4660})");
    bmc->addSelRecord(deassertion);
    const broker::Reply reply = entries.enumerate();
    ASSERT_EQ(reply.instances.size(), 1U) << reply.message;
    std::vector<std::pair<std::string, std::string>> properties;
    for (const auto& property : reply.instances[0].properties)
        properties.emplace_back(property.name, broker::toText(property.value));
    using Property = std::pair<std::string, std::string>;
    EXPECT_THAT(
        properties,
        ElementsAre(Property("InstanceID", "4660"), Property("LogInstanceID", logId),
                    Property("LogName", "IPMI SEL"), Property("RecordID", "4660"),
                    Property("CreationTimeStamp", "19790905225136.000000-300"),
                    Property("RecordFormat", RecordFormat[0]),
                    Property("RecordData", "*48.0.32*4660 2*305419896*3232*4*2*48*false*129*5*255*255*"),
                    Property("ElementName", "nBMC - Log 4660")));
    EXPECT_EQ(reply.instances[0].path, named("4660"));
    EXPECT_THAT(entries.get(named("4660")).instances, ElementsAre(reply.instances[0]));
    EXPECT_THAT(entries.names().paths, ElementsAre(named("4660")));
    EXPECT_THAT(entries.instanceArray().value(), ElementsAre(reply.instances[0]));
}

TEST_F(LogEntries, haveTheFormatOfTheirRecordType) {
    struct FormatCase {
        std::uint8_t type;
        int row;
    };
    const FormatCase cases[] = {{0x02, 0}, {0xC0, 1}, {0xC5, 1}, {0xDF, 1}, {0xE0, 2},
                                {0xFF, 2}, {0x10, 2}, {0xBF, 2}, {0x00, 2}};
    for (const auto& item : cases)
        bmc->addSelRecord(SelBytes{0, 0, item.type, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0x6F, 11, 12, 13});
    const auto instances = entries.enumerate().instances;
    ASSERT_EQ(instances.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(text(instances[i], "RecordFormat"), RecordFormat[cases[i].row]) << +cases[i].type;
        const std::string data = text(instances[i], "RecordData");
        if (cases[i].row == 0)
            EXPECT_EQ(data, "*9.6.5*1 2*67305985*55*7*2*9*true*111*11*12*13*");
        else
            EXPECT_EQ(data, "");
    }
}

TEST_F(LogEntries, leaveFormatAndDataOutOfALargeLog) {
    for (const std::size_t count : {1000, 1001}) {
        bmc->clearSel();
        ASSERT_EQ(bmc->fillSel(count), count);
        const auto instances = entries.enumerate().instances;
        ASSERT_EQ(instances.size(), count);
        EXPECT_EQ(SELCount, count);
        for (const auto& instance : instances) {
            EXPECT_EQ(text(instance, "RecordFormat") != "<none>", count == 1000);
            EXPECT_EQ(text(instance, "RecordData") != "<none>", count == 1000);
        }
    }
}

TEST_F(LogEntries, areFoundByTheirOwnIdOnly) {
    bmc->fillSel(3);
    EXPECT_EQ(entries.get(named("2")).instances.size(), 1U);
    // 0 and 65535 ask a BMC for its first and last record.
    for (const char* id : {"4", "0", "65535", "65538", "02", " 2", "2 ", "-2", "x", ""}) {
        const broker::Reply reply = entries.get(named(id));
        EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED) << id;
        EXPECT_EQ(reply.message, "Failed to Get Instance") << id;
    }
}

TEST_F(LogEntries, oneIsReadWithOneMessage) {
    bmc->fillSel(50);
    bmc->recordMessages(100);
    ASSERT_TRUE(entries.get(named("20")).ok());
    EXPECT_EQ(bmc->recordedMessages().size(), 1U);
}

TEST_F(LogEntries, takePropertyListsAndAnEmptyLog) {
    EXPECT_TRUE(entries.enumerate().ok());
    EXPECT_TRUE(entries.enumerate().instances.empty());
    EXPECT_EQ(entries.instanceArray()->size(), 0U);
    bmc->fillSel(1);
    const auto instances = entries.enumerate({{"recorddata"}}).instances;
    ASSERT_EQ(instances.size(), 1U);
    EXPECT_EQ(instances[0].properties.size(), 2U);
    EXPECT_THAT(text(instances[0], "RecordData"), StartsWith("*"));
}

TEST_F(LogEntries, failWhenThePlatformDoes) {
    bmc->fillSel(3);
    for (const char* function :
         {"CIM_Create_IPMI20_Session", "CIM_GetMaxPossibleSELEntries", "CIM_GetSELRecords"}) {
        platform.failing = {function};
        EXPECT_EQ(entries.enumerate().message, "Failed to Enumerate Instance") << function;
        EXPECT_EQ(entries.names().message, "Failed to Enumerate Instance Names") << function;
        EXPECT_FALSE(entries.instanceArray()) << function;
        EXPECT_EQ(platform.openSessions, 0);
    }
    platform.failing = {"CIM_Create_IPMI20_Session"};
    EXPECT_EQ(entries.get(named("1")).message, "Failed to Get Instance");
    platform.failing = {"CIM_GetSELEntry"};
    EXPECT_EQ(entries.get(named("1")).message, "Failed to Get Instance");
    // Without a vendor's name and a device record the log cannot be named.
    platform.failing = {"OEM_GetSPSystemName"};
    EXPECT_EQ(entries.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(entries.get(named("1")).message, "Failed to Get Instance");
}

TEST_F(LogEntries, failWhenTheBrokerDoes) {
    bmc->fillSel(2);
    for (const std::string& call : broker::Broker::callNames())
        for (unsigned nth = 1;; ++nth) {
            broker.resetCalls();
            broker.failCall(call, nth);
            const broker::Reply reply = entries.enumerate();
            const bool struck = broker.calls(call) >= nth;
            broker.resetCalls();
            if (!struck)
                break;
            if (call != "release" && call != "newString" && call != "getCharPtr") {
                EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED) << call << ' ' << nth;
                EXPECT_EQ(reply.message, "Failed to Enumerate Instance") << call << ' ' << nth;
            }
            EXPECT_EQ(broker.liveObjects(), 0U) << call << ' ' << nth;
        }
}

TEST_F(LogEntries, areRefusedAsClientsCannotWriteThem) {
    EXPECT_EQ(entries.remove(named("1")).message, "DeleteInstance not supported");
    EXPECT_EQ(entries.invoke(named("1"), "ClearLog").message, "Invoke Method not supported");
}

class SelRecords : public LogFixture {
protected:
    void SetUp() override {
        LogFixture::SetUp();
        ASSERT_EQ(CreateIPMISession(&session), 0);
    }
    void TearDown() override {
        CloseIPMISession(&session);
        LogFixture::TearDown();
    }

    IPMI20_SESSION_T session;
    std::uint16_t count = 7;
    CIM_SELEntry* records = nullptr;
};

TEST_F(SelRecords, areHandedOutAsTheBmcHasThem) {
    EXPECT_EQ(GetSELEntries(&session, &count, &records), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(records, nullptr);
    bmc->addSelRecord(deassertion);
    bmc->fillSel(1);
    ASSERT_EQ(GetSELEntries(&session, &count, &records), 0);
    EXPECT_EQ(count, 2);
    SelBytes expected = deassertion;
    expected[0] = 1;
    EXPECT_THAT(records[0].record, testing::ElementsAreArray(expected));
    EXPECT_THAT(records[0].nextRecordId, ElementsAre(2, 0));
    EXPECT_THAT(records[1].nextRecordId, ElementsAre(0xFF, 0xFF));
    std::free(records);
    std::uint8_t* record = nullptr;
    ASSERT_EQ(GetLogEntryData(&session, 1, &record), 0);
    EXPECT_THAT(std::vector(record, record + 16), testing::ElementsAreArray(expected));
    std::free(record);
    EXPECT_EQ(GetLogEntryData(&session, 3, &record), -1);
    EXPECT_EQ(record, nullptr);
}

TEST_F(SelRecords, needASessionAndAPlace) {
    EXPECT_EQ(GetSELEntries(nullptr, &count, &records), -1);
    EXPECT_EQ(GetSELEntries(&session, nullptr, &records), -1);
    EXPECT_EQ(GetSELEntries(&session, &count, nullptr), -1);
    EXPECT_EQ(count, 7);
    platform.failing = {"CIM_GetMaxPossibleSELEntries"};
    EXPECT_EQ(GetSELEntries(&session, &count, &records), -1);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(GetLogEntryData(nullptr, 1, nullptr), -1);
}

} // namespace
