// Events of the log as alerts.
#include "delivery_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SelAlerts : public DeliveryFixture {
protected:
    SelAlerts() {
        delivery.eventTexts = {{"FindSensorType", "Temperature"},
                               {"AlertSeverityLevel", "CRITICAL"},
                               {"SELLog", "Upper Critical - going high"}};
        delivery.messageIds = {{"Upper Critical - going high", 12}, {"Unknown", 1}};
    }
    static AlertRecord alertOf(const SelEventMessage& message) {
        AlertRecord alert{};
        EXPECT_EQ(SelToAlert(&message, &alert, message.destination, message.channel), 0);
        return alert;
    }
};

TEST_F(SelAlerts, tellWhatTheRecordSays) {
    installEventTexts();
    platform.sensors = {sensorRow("Other", 3), sensorRow("Inlet Temp", 0x1A), sensorRow("Second", 0x1A)};
    const AlertRecord alert = alertOf(thresholdEvent());
    EXPECT_EQ(alert.EventTime, 0x66322EC0U);
    EXPECT_STREQ(alert.EventID, "12a");
    EXPECT_STREQ(alert.AlertingManagedElement, "1:26");
    EXPECT_STREQ(alert.PerceivedSeverity, "6 (CRITICAL)");
    EXPECT_STREQ(alert.Description, "Upper Critical - going high");
    EXPECT_STREQ(alert.MessageID, "12");
    EXPECT_STREQ(alert.OwningEntity, "TRZ");
    EXPECT_STREQ(alert.SystemName, "");
    EXPECT_EQ(alert.AlertingElementFormat, 1);
    EXPECT_EQ(alert.AlertType, 5);
    EXPECT_EQ(alert.argumentCount, 5);
    EXPECT_STREQ(alert.MessageArguments[0], "Inlet Temp(26.32.0)");
    EXPECT_STREQ(alert.MessageArguments[1], "1");
    EXPECT_STREQ(alert.MessageArguments[2], "7");
    EXPECT_STREQ(alert.MessageArguments[3], "Asserted");
    EXPECT_STREQ(alert.MessageArguments[4], "Temperature");
}

TEST_F(SelAlerts, nameTheSensorByItsNumber) {
    FullSdr numeric{};
    numeric.common = sensorRow("Numeric", 0x1A);
    const struct {
        const char* what;
        std::vector<CompactSdr> sensors;
        std::vector<FullSdr> numericSensors;
        const char* element;
        const char* name;
    } cases[] = {
        {"none", {sensorRow("Other", 27)}, {}, "", ""},
        {"both kinds: the numeric one", {sensorRow("Discrete", 0x1A)}, {numeric}, "1:26", "Numeric(26.32.0)"},
        {"a bracket in the name hides the number", {sensorRow("Fan (rear)", 0x1A)}, {}, "", ""},
        {"a number in brackets in the name counts",
         {sensorRow("CPU (26)", 9)},
         {},
         "1:26",
         "CPU (26)(9.32.0)"},
    };
    platform.failing = {"CIM_Create_IPMI20_Session"}; // the rows do, without the BMC
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        platform.sensors = item.sensors;
        platform.numericSensors = item.numericSensors;
        const AlertRecord alert = alertOf(thresholdEvent());
        EXPECT_STREQ(alert.AlertingManagedElement, item.element);
        EXPECT_STREQ(alert.MessageArguments[0], item.name);
    }
}

TEST_F(SelAlerts, askForTheSeverityOfThresholdsAndSeverities) {
    installEventTexts();
    const struct {
        std::uint8_t direction; // and event type
        const char* asserted;
        const char* severity;
    } cases[] = {{0x01, "Asserted", "6 (CRITICAL)"},
                 {0x81, "Deasserted", "6 (CRITICAL)"},
                 {0x87, "Deasserted", "6 (CRITICAL)"},
                 {0x6F, "Asserted", ""},
                 {0x83, "Deasserted", ""}};
    for (const auto& item : cases) {
        SCOPED_TRACE(int(item.direction));
        SelEventMessage message = thresholdEvent();
        message.record[12] = item.direction;
        const AlertRecord alert = alertOf(message);
        EXPECT_STREQ(alert.MessageArguments[3], item.asserted);
        EXPECT_STREQ(alert.PerceivedSeverity, item.severity);
    }
}

TEST_F(SelAlerts, numberTheSeveritiesThatHaveOne) {
    installEventTexts();
    const std::pair<const char*, const char*> cases[] = {{"Unspecified", "0 (Unspecified)"},
                                                         {"OK", "2 (OK)"},
                                                         {"WARNING", "3 (WARNING)"},
                                                         {"non-recoverable", "7 (non-recoverable)"},
                                                         {"Bad", ""},
                                                         {"Critically", ""},
                                                         {"", ""}};
    for (const auto& [text, severity] : cases) {
        delivery.eventTexts["AlertSeverityLevel"] = text;
        EXPECT_STREQ(alertOf(thresholdEvent()).PerceivedSeverity, severity) << text;
    }
}

TEST_F(SelAlerts, doWithoutTheDescriptionLibrary) {
    const AlertRecord alert = alertOf(thresholdEvent());
    EXPECT_STREQ(alert.Description, "");
    EXPECT_STREQ(alert.PerceivedSeverity, "");
    EXPECT_STREQ(alert.MessageID, "1") << "the number of Unknown";
    EXPECT_THAT(delivery.eventQueries, IsEmpty());
}

TEST_F(SelAlerts, askNoFurtherWhereAnEntryIsMissing) {
    install(PH_EVENT_TEXTS_WITHOUT_SEVERITY, "/usr/local/lib/libEventLogDes.so");
    const AlertRecord alert = alertOf(thresholdEvent());
    EXPECT_STREQ(alert.MessageArguments[4], "Temperature");
    EXPECT_STREQ(alert.Description, "");
    EXPECT_THAT(delivery.eventQueries, ElementsAre("FindSensorType"));
    // An event that the severity is not asked of gets its description.
    SelEventMessage discrete = thresholdEvent();
    discrete.record[12] = 0x6F;
    EXPECT_STREQ(alertOf(discrete).Description, "Upper Critical - going high");
}

TEST_F(SelAlerts, haveNoNumberWhereTheDatabaseFails) {
    delivery.messageIds.clear();
    EXPECT_STREQ(alertOf(thresholdEvent()).MessageID, "-1");
    platform.failing = {"db_init"};
    EXPECT_EQ(get_message_id("Unknown"), -1);
}

TEST_F(SelAlerts, failWithoutTheSensors) {
    platform.sensors = {sensorRow("Inlet Temp", 0x1A)};
    for (const char* function : {"db_init", "db_get_all_compact_sdrs", "db_get_all_full_sdrs"}) {
        platform.failing = {function};
        AlertRecord alert{};
        const SelEventMessage message = thresholdEvent();
        EXPECT_EQ(SelToAlert(&message, &alert, 7, 1), -1) << function;
    }
}

} // namespace
