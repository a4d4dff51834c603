// SEL records in words, through the library as it is opened at run time.
#include "paths.h"
#include "platform/event_descriptions.h"

#include <array>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <memory>
#include <string>

namespace {

using testing::AllOf;
using testing::Each;
using testing::Ge;
using testing::IsEmpty;
using testing::Not;

using RecordBytes = std::array<std::uint8_t, 16>;

class EventDescriptions : public testing::Test {
protected:
    std::string ask(const char* entry, const std::uint8_t* record) const {
        const auto function = reinterpret_cast<EventText>(dlsym(library_.get(), entry));
        if (function == nullptr)
            return std::string("no entry ") + entry;
        std::array<char, EVENT_TEXT_SIZE + 1> text;
        text.fill('#');
        const int result = function(record, text.data());
        EXPECT_EQ(text.back(), '#') << "wrote beyond the text";
        EXPECT_EQ(result == 0, text[0] != '\0');
        return text.data();
    }
    std::string sensorType(const RecordBytes& record) const { return ask("FindSensorType", record.data()); }
    std::string severity(const RecordBytes& record) const { return ask("AlertSeverityLevel", record.data()); }
    std::string event(const RecordBytes& record) const { return ask("SELLog", record.data()); }

private:
    struct Close {
        void operator()(void* library) const { dlclose(library); }
    };
    std::unique_ptr<void, Close> library_{dlopen(paths::eventTexts, RTLD_LAZY)};
};

// A system event; the upper half of data 1 says what data 2 and 3 hold, which must not disturb.
RecordBytes systemEvent(unsigned sensorType, unsigned eventType, unsigned offset) {
    RecordBytes record{1, 0, 0x02, 0, 0, 0, 0, 0x20, 0, 0x04};
    record[10] = static_cast<std::uint8_t>(sensorType);
    record[11] = 0x42;
    record[12] = static_cast<std::uint8_t>(eventType);
    record[13] = static_cast<std::uint8_t>(0xA0 | offset);
    return record;
}

TEST_F(EventDescriptions, NamesTheEventAndItsSensorType) {
    struct Case {
        unsigned sensorType, eventType, offset;
        const char* type;
        const char* event;
    };
    for (const Case& c : {
             Case{0x01, 0x01, 9, "Temperature", "Upper Critical - going high"},
             Case{0x01, 0x81, 9, "Temperature", "Upper Critical - going high"},
             Case{0x02, 0x01, 0, "Voltage", "Lower Non-critical - going low"},
             Case{0x01, 0x07, 2, "Temperature", "transition to Critical from less severe"},
             Case{0x04, 0x0B, 1, "Fan", "Redundancy Lost"},
             Case{0x08, 0x6F, 1, "Power Supply", "Power Supply Failure detected"},
             Case{0x0C, 0xEF, 1, "Memory", "Uncorrectable ECC/other uncorrectable memory error"},
             // what the tables do not have
             Case{0x01, 0x01, 12, "Temperature", "Unknown event: event type 01h, offset 12"},
             Case{0x0C, 0x6F, 15, "Memory", "Unknown event: sensor type 0Ch, offset 15"},
             Case{0x50, 0x6F, 1, "Unknown (50h)", "Unknown event: sensor type 50h, offset 1"},
             Case{0xC3, 0x6F, 2, "OEM (C3h)", "OEM event: sensor type C3h, offset 2"},
             Case{0x01, 0x70, 3, "Temperature", "OEM event: event type 70h, offset 3"},
             Case{0x01, 0x30, 3, "Temperature", "Unknown event: event type 30h, offset 3"},
             Case{0x01, 0x00, 0, "Temperature", "Unspecified event"},
         }) {
        const RecordBytes record = systemEvent(c.sensorType, c.eventType, c.offset);
        EXPECT_EQ(sensorType(record), c.type);
        EXPECT_EQ(event(record), c.event);
    }
}

TEST_F(EventDescriptions, TellsHowSeriousAnEventIs) {
    struct Case {
        unsigned eventType;
        std::array<const char*, 16> byOffset;
    };
    static constexpr const char *un = "Unspecified", *ok = "Ok", *warn = "Warning", *crit = "Critical",
                                *dead = "Non-Recoverable";
    for (const Case& c : {
             Case{0x01,
                  {warn, warn, crit, crit, dead, dead, warn, warn, crit, crit, dead, dead, un, un, un, un}},
             Case{0x81, {ok, ok, ok, ok, ok, ok, ok, ok, ok, ok, ok, ok, un, un, un, un}},
             Case{0x07, {ok, warn, crit, dead, warn, crit, dead, un, un, un, un, un, un, un, un, un}},
             Case{0x87, {un, ok, ok, ok, ok, ok, ok, un, un, un, un, un, un, un, un, un}},
             Case{0x6F, {un, un, un, un, un, un, un, un, un, un, un, un, un, un, un, un}},
         })
        for (unsigned offset = 0; offset < c.byOffset.size(); ++offset)
            EXPECT_EQ(severity(systemEvent(0x01, c.eventType, offset)), c.byOffset[offset])
                << std::hex << c.eventType << " " << offset;
}

TEST_F(EventDescriptions, DescribesRecordsThatAreNoEvents) {
    RecordBytes record = systemEvent(0x01, 0x01, 9);
    record[2] = 0xC5;
    record[7] = 0x57, record[8] = 0x01, record[9] = 0x02; // manufacturer 020157h
    EXPECT_EQ(event(record), "OEM record C5h of manufacturer 131415");
    EXPECT_EQ(sensorType(record), "OEM");
    EXPECT_EQ(severity(record), "Unspecified") << "the bytes of an OEM record are no event";
    record[2] = 0xE0;
    EXPECT_EQ(event(record), "OEM record E0h");
    record[2] = 0x03;
    EXPECT_EQ(event(record), "Unknown record 03h");
    EXPECT_EQ(sensorType(record), "Unknown");
}

TEST_F(EventDescriptions, EveryEventHasATextThatFitsInALine) {
    for (unsigned code = 0; code < 256; ++code)
        for (unsigned offset = 0; offset < 16; ++offset)
            for (const RecordBytes& record :
                 {systemEvent(code, 0x6F, offset), systemEvent(0x01, code, offset)}) {
                ASSERT_THAT(event(record), AllOf(Not(IsEmpty()), Each(Ge(' ')))) << code << " " << offset;
                ASSERT_THAT(sensorType(record), Not(IsEmpty())) << code;
            }
}

TEST_F(EventDescriptions, RefusesToDescribeNothing) {
    for (const char* entry : {"FindSensorType", "AlertSeverityLevel", "SELLog"})
        EXPECT_EQ(ask(entry, nullptr), "");
}

} // namespace
