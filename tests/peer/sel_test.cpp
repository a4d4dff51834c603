// The event log of OpenIPMI's BMC simulator, with ipmitool as the witness of ids, times and bytes.
#include "class_requests.h"
#include "ipmi_sim.h"
#include "provider_helper/provider_helper.h"
#include "simulator_session.h"
#include "sysroot_fixture.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <sstream>

namespace {

using ph_test::IpmiSim;

// Of its command file: a deassertion, an OEM record with a time and one without, and an event of a sensor.
constexpr char someRecords[] =
    "sel_add 0x20 0x02 0x78 0x56 0x34 0x12 0x20 0x00 0x04 0x01 0x30 0x81 0x05 0xff 0xff\n"
    "sel_add 0x20 0xc5 0x00 0xe4 0x0b 0x54 0x57 0x01 0x00 0x01 0x02 0x03 0x04 0x05 0x06\n"
    "sel_add 0x20 0xe0 0x01 0x02 0x03 0x04 0x05 0x06 0x07 0x08 0x09 0x0a 0x0b 0x0c 0x0d\n"
    "sel_add 0x20 0x02 0x00 0xe4 0x0b 0x54 0x20 0x00 0x04 0x07 0x11 0x6f 0x01 0xff 0xff\n";

class PeerSel : public SysrootFixture {
protected:
    void SetUp() override {
        setenv("TZ", "UTC0", 1);
        write("/conf/system_names.ini", "[names]\nsp = Simulated\n");
        ph_test::storeSession(simulator.settings());
    }

    static std::string text(const broker::Instance& instance, std::string_view property) {
        const broker::Value* value = broker::find(instance.properties, property);
        return value != nullptr ? broker::toText(*value) : "<none>";
    }

    // `ipmitool -c sel list` in the words of log entries: "1 19700101013728", without a time where there is
    // none.
    std::vector<std::string> listed() const {
        std::vector<std::string> records;
        std::istringstream lines(simulator.ipmitool("-c sel list"));
        for (std::string line; std::getline(lines, line);) {
            unsigned id = 0, month = 0, day = 0, year = 0, hour = 0, minute = 0, second = 0;
            char record[64];
            if (std::sscanf(line.c_str(), "%x,%u/%u/%u,%u:%u:%u", &id, &month, &day, &year, &hour, &minute,
                            &second) == 7)
                std::snprintf(record, sizeof record, "%u %04u%02u%02u%02u%02u%02u", id,
                              year < 100 ? 2000 + year : year, month, day, hour, minute, second);
            else if (std::sscanf(line.c_str(), "%x, Pre-Init ,%u", &id, &second) == 2) // of its first day
                std::snprintf(record, sizeof record, "%u 19700101%02u%02u%02u", id, second / 3600,
                              second / 60 % 60, second % 60);
            else
                std::snprintf(record, sizeof record, "%u", id);
            records.emplace_back(record);
        }
        return records;
    }
    // The same of log entries.
    std::vector<std::string> published() const {
        std::vector<std::string> records;
        for (const auto& entry : entries.enumerate().instances) {
            const bool hasTime = text(entry, "RecordFormat") != RecordFormat[2];
            records.push_back(text(entry, "InstanceID") +
                              (hasTime ? " " + text(entry, "CreationTimeStamp").substr(0, 14) : ""));
        }
        return records;
    }
    // The bytes of record `id` as `ipmitool raw` prints them.
    std::string rawRecord(unsigned id) const {
        const std::string printed = simulator.ipmitool("raw 0x0a 0x43 0 0 " + std::to_string(id % 256) + " " +
                                                       std::to_string(id / 256) + " 0 0xff");
        std::istringstream bytes(printed);
        std::string text, byte;
        for (int i = 0; bytes >> byte; ++i)
            if (i >= 2) // behind the ID of the next record
                text += byte + " ";
        return text;
    }

    IpmiSim simulator{{}, {}, someRecords};
    broker::Broker broker;
    const ClassRequests entries{broker, PH_CLASS_FUNCTIONS(LogEntry)};
    const ClassRequests logs{broker, PH_CLASS_FUNCTIONS(RecordLog)};
};

TEST_F(PeerSel, entriesAreWhatIpmitoolLists) {
    simulator.ipmitool("raw 0x0a 0x49 0x70 0x2a 0x36 0x66"); // Set SEL Time: 2024-05-04 12:30:40
    simulator.ipmitool("raw 0x0a 0x44 0 0 0x02 0 0 0 0 0x20 0 4 1 0x30 1 0x59 0x7d 0x78"); // Add SEL Entry
    simulator.ipmitool("raw 0x0a 0x44 0 0 0xff 1 2 3 4 5 6 7 8 9 10 11 12 13");
    simulator.ipmitool("raw 0x0a 0x44 0 0 0xdf 0 0 0 0 5 6 7 8 9 10 11 12 13");
    simulator.ipmitool("raw 0x0a 0x46 0 0 2 0"); // Delete SEL Entry
    const auto entry = published();
    EXPECT_EQ(entry, listed());
    ASSERT_EQ(entry.size(), 6U);
    EXPECT_THAT(entry[3], testing::StartsWith("5 20240504123"));
    EXPECT_THAT(entry[4], "6");
}

TEST_F(PeerSel, bytesAreThoseIpmitoolGets) {
    IPMI20_SESSION_T session;
    ASSERT_EQ(CreateIPMISession(&session), 0);
    std::uint16_t count = 0;
    CIM_SELEntry* records = nullptr;
    ASSERT_EQ(GetSELEntries(&session, &count, &records), 0);
    ASSERT_EQ(count, 4);
    for (unsigned i = 0; i < count; ++i) {
        std::string bytes;
        for (const unsigned byte : records[i].record) {
            char digits[8];
            std::snprintf(digits, sizeof digits, "%02x ", byte);
            bytes += digits;
        }
        EXPECT_EQ(bytes, rawRecord(i + 1));
    }
    std::free(records);
    EXPECT_EQ(CloseIPMISession(&session), 0);
    const auto last = entries.get(entries.path({{"InstanceID", {CMPI_string, std::string("4")}}})).instances;
    ASSERT_EQ(last.size(), 1U);
    EXPECT_THAT(text(last[0], "RecordData"), testing::EndsWith("*17*true*111*1*255*255*"));
}

TEST_F(PeerSel, clearLogEmptiesIt) {
    const auto log = logs.enumerate().instances;
    ASSERT_EQ(log.size(), 1U);
    EXPECT_EQ(text(log[0], "CurrentNumberOfRecords"), "4");
    EXPECT_THAT(simulator.ipmitool("sel info"), testing::HasSubstr("Entries          : 4"));
    const broker::Reply reply = logs.invoke(log[0].path, "ClearLog");
    ASSERT_TRUE(reply.ok()) << reply.message;
    EXPECT_EQ(broker::toText(reply.values.at(0)), "0");
    EXPECT_THAT(simulator.ipmitool("sel list"), testing::HasSubstr("SEL has no entries"));
    EXPECT_TRUE(entries.enumerate().ok());
    EXPECT_TRUE(entries.enumerate().instances.empty());
}

} // namespace
