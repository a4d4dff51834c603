// The event log of OpenIPMI's BMC simulator, with ipmitool as the witness of ids, times and bytes.
#include "ipmi-view/event_log.h"
#include "ipmi-view/event_text.h"
#include "provider_on_simulator.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <platform/sel_record.h>
#include <sstream>

namespace {

// Of its command file: a deassertion, an OEM record with a time and one without, and an event of a sensor.
constexpr char someRecords[] =
    "sel_add 0x20 0x02 0x78 0x56 0x34 0x12 0x20 0x00 0x04 0x01 0x30 0x81 0x05 0xff 0xff\n"
    "sel_add 0x20 0xc5 0x00 0xe4 0x0b 0x54 0x57 0x01 0x00 0x01 0x02 0x03 0x04 0x05 0x06\n"
    "sel_add 0x20 0xe0 0x01 0x02 0x03 0x04 0x05 0x06 0x07 0x08 0x09 0x0a 0x0b 0x0c 0x0d\n"
    "sel_add 0x20 0x02 0x00 0xe4 0x0b 0x54 0x20 0x00 0x04 0x07 0x11 0x6f 0x01 0xff 0xff\n";

class PeerSel : public ProviderOnSimulator {
protected:
    PeerSel() : ProviderOnSimulator(someRecords) { setenv("TZ", "UTC0", 1); }

    // `ipmitool -c sel list` in the words of log entries: "1 19700101013728", without a time where there is
    // none.
    std::vector<std::string> listed() const {
        std::vector<std::string> records;
        std::istringstream lines(ipmitool("-c sel list"));
        for (std::string line; std::getline(lines, line);) {
            unsigned id = 0, month = 0, day = 0, year = 0, hour = 0, minute = 0, second = 0;
            char record[64];
            if (std::sscanf(line.c_str(), "%x,%u/%u/%u,%u:%u:%u", &id, &month, &day, &year, &hour, &minute,
                            &second) == 7)
                std::snprintf(record, sizeof record, "%u %04u%02u%02u%02u%02u%02u", id,
                              year < 100 ? 2000 + year : year, month, day, hour, minute, second);
            else if (std::time_t seconds = 0; // the simulator's clock begins when this machine was started
                     std::sscanf(line.c_str(), "%x, Pre-Init ,%ld", &id, &seconds) == 2)
                std::strftime(record + std::snprintf(record, sizeof record, "%u ", id), sizeof record / 2,
                              "%Y%m%d%H%M%S", std::gmtime(&seconds));
            else
                std::snprintf(record, sizeof record, "%u", id);
            records.emplace_back(record);
        }
        return records;
    }
    // The same of log entries.
    std::vector<std::string> published() {
        std::vector<std::string> records;
        for (const auto& entry : list(path("CIM_LogEntry"))) {
            const bool hasTime = textOf(entry, "RecordFormat").find("[4] IPMI_Time") != std::string::npos;
            records.push_back(textOf(entry, "InstanceID") +
                              (hasTime ? " " + textOf(entry, "CreationTimeStamp").substr(0, 14) : ""));
        }
        return records;
    }
};

TEST_F(PeerSel, entriesAreWhatIpmitoolLists) {
    ipmitool("raw 0x0a 0x49 0x70 0x2a 0x36 0x66"); // Set SEL Time: 2024-05-04 12:30:40
    ipmitool("raw 0x0a 0x44 0 0 0x02 0 0 0 0 0x20 0 4 1 0x30 1 0x59 0x7d 0x78"); // Add SEL Entry
    ipmitool("raw 0x0a 0x44 0 0 0xff 1 2 3 4 5 6 7 8 9 10 11 12 13");
    ipmitool("raw 0x0a 0x44 0 0 0xdf 0 0 0 0 5 6 7 8 9 10 11 12 13");
    ipmitool("raw 0x0a 0x46 0 0 2 0"); // Delete SEL Entry
    const auto entry = published();
    EXPECT_EQ(entry, listed());
    ASSERT_EQ(entry.size(), 6U);
    EXPECT_THAT(entry[3], testing::StartsWith("5 20240504123"));
    EXPECT_THAT(entry[4], "6");
}

// Without blanks, signs and case, in which the two differ.
std::string plain(const std::string& text) {
    std::string letters;
    for (const unsigned char character : text)
        if (std::isalnum(character) != 0)
            letters += static_cast<char>(std::tolower(character));
    return letters;
}

// What phctl says of a record, in the order of ipmitool: ID, seconds since the start, sensor or OEM record, the rest.
std::string inItsOrder(const view::SelRecord& record, const view::EventText& text) {
    unsigned hours = 0, minutes = 0, seconds = 0;
    char words[160] = "";
    int length = std::snprintf(words, sizeof words, "%x ", PH_SelRecordId(record.data()));
    if (std::sscanf(text.time.c_str(), "Pre-Init +%u:%u:%u", &hours, &minutes, &seconds) == 3)
        length += std::snprintf(words + length, sizeof words - static_cast<std::size_t>(length),
                                "Pre-Init %010u ", hours * 3600 + minutes * 60 + seconds);
    if (PH_IsSelSystemEvent(record.data()))
        std::snprintf(words + length, sizeof words - static_cast<std::size_t>(length), "%s #0x%02x %s %s",
                      text.sensorType.c_str(), PH_SelSensorNumber(record.data()), text.event.c_str(),
                      text.state().c_str());
    std::string line = words;
    if (PH_IsSelOem(record.data()))
        line += text.event;
    for (const char* ours : {"h of manufacturer", "h:"})
        if (const auto place = line.find(ours); place != std::string::npos)
            line.erase(place, std::strlen(ours));
    return plain(line);
}

TEST_F(PeerSel, recordsAreDecodedAsIpmitoolDoes) {
    std::vector<std::string> printed, decoded;
    std::istringstream lines(ipmitool("-c sel list"));
    for (std::string line; std::getline(lines, line);)
        printed.push_back(plain(line));
    const auto session = ipmi::openTransport(bmc.settings());
    for (const view::SelRecord& record : view::readEventLog(*session))
        decoded.push_back(inItsOrder(record, view::describeRecord(record, {})));
    ASSERT_EQ(printed.size(), 4u);
    EXPECT_EQ(decoded, printed);
    view::deleteRecord(*session, 2);
    EXPECT_THAT(ipmitool("-c sel list"), testing::Not(testing::HasSubstr("OEM record c5")));
    view::clearEventLog(*session);
    EXPECT_THAT(ipmitool("sel list"), testing::HasSubstr("SEL has no entries"));
}

TEST_F(PeerSel, clearLogEmptiesIt) {
    const auto log = only("CIM_RecordLog");
    EXPECT_EQ(textOf(log, "CurrentNumberOfRecords"), "4");
    EXPECT_THAT(ipmitool("sel info"), testing::HasSubstr("Entries          : 4"));
    const broker::Reply reply = broker.invokeMethod(log.path, "ClearLog");
    ASSERT_TRUE(reply.ok()) << reply.message;
    EXPECT_EQ(broker::toText(reply.values.at(0)), "0");
    EXPECT_THAT(ipmitool("sel list"), testing::HasSubstr("SEL has no entries"));
    EXPECT_THAT(list(path("CIM_LogEntry")), testing::IsEmpty());
}

// Its clock has no offset from UTC.
TEST_F(PeerSel, theTimeServiceSetsTheClockThatIpmitoolReads) {
    const broker::ObjectPath service = only("CIM_TimeService").path;
    broker::NamedValues arguments{
        {"GetRequest", {CMPI_boolean, false}},
        {"TimeData", {CMPI_dateTime, broker::DateTime::parse("20300102030405.000000+000").value()}},
        {"ManagedElement", reference(path("CIM_SPComputerSystem", {{"Name", text("sim")}}))}};
    broker::Reply reply = broker.invokeMethod(service, "ManageTime", arguments);
    ASSERT_TRUE(reply.ok()) << reply.message;
    // ipmitool writes and reads times in the form of the locale, which is C.
    EXPECT_THAT(ipmitool("sel time get"), testing::HasSubstr("01/02/30 03:04:"));
    ipmitool("sel time set '05/04/24 12:30:00'");
    arguments[0].value = {CMPI_boolean, true};
    reply = broker.invokeMethod(service, "ManageTime", arguments);
    ASSERT_TRUE(reply.ok()) << reply.message;
    EXPECT_THAT(broker::toText(*broker::find(reply.arguments, "TimeData")),
                testing::StartsWith("202405041230"));
}

} // namespace
