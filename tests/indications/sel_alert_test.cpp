// Events of the log as alerts.
#include "delivery_fixture.h"
#include "paths.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SelAlerts : public DeliveryFixture {
protected:
    SelAlerts() {
        delivery.eventTexts = {{"FindSensorType", "Temperature"},
                               {"AlertSeverityLevel", "CRITICAL"},
                               {"SELLog", "Upper Critical - going high"}};
        EXPECT_EQ(get_message_id("Unknown"), 1);
    }
    static AlertRecord alertOf(const SelEventMessage& message) {
        AlertRecord alert{};
        EXPECT_EQ(SelToAlert(&message, &alert, message.destination, message.channel), 0);
        return alert;
    }
};

TEST_F(SelAlerts, tellWhatTheRecordSays) {
    installEventTexts();
    sensors = {temperature("Other", 3), temperature("Inlet Temp"), temperature("Second")};
    const AlertRecord alert = alertOf(thresholdEvent());
    EXPECT_EQ(alert.EventTime, 0x66322EC0U);
    EXPECT_EQ(alert.AlertingElementFormat, 1);
    EXPECT_EQ(alert.AlertType, 5);
    EXPECT_THAT(
        (std::vector<std::string>{alert.EventID, alert.AlertingManagedElement, alert.PerceivedSeverity,
                                  alert.Description, alert.MessageID, alert.OwningEntity, alert.SystemName}),
        ElementsAre("12a", "1:26", "6 (CRITICAL)", "Upper Critical - going high", "2", "TRZ", ""));
    EXPECT_THAT(
        std::vector<std::string>(alert.MessageArguments, alert.MessageArguments + alert.argumentCount),
        ElementsAre("Inlet Temp(26.32.0)", "1", "7", "Asserted", "Temperature"));
}

TEST_F(SelAlerts, nameTheSensorByItsNumber) {
    const FullSdr both = makeFullSdr("Numeric", 0x1A);
    const std::tuple<const char*, std::vector<CompactSdr>, std::vector<FullSdr>, const char*, const char*>
        cases[] = {
            {"none", {temperature("Other", 27)}, {}, "", ""},
            {"both kinds: the numeric one", {temperature("Discrete")}, {both}, "1:26", "Numeric(26.32.0)"},
            {"a bracket in the name hides the number", {temperature("Fan (rear)")}, {}, "", ""},
            {"a number in brackets in the name counts",
             {temperature("CPU (26)", 9)},
             {},
             "1:26",
             "CPU (26)(9.32.0)"},
        };
    platformCalls.broken = {"CIM_Create_IPMI20_Session"}; // the rows do, without the BMC
    for (const auto& [what, discrete, numeric, element, name] : cases) {
        SCOPED_TRACE(what);
        sensors = discrete;
        numericSensors = numeric;
        const AlertRecord alert = alertOf(thresholdEvent());
        EXPECT_STREQ(alert.AlertingManagedElement, element);
        EXPECT_STREQ(alert.MessageArguments[0], name);
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
    installEventTexts(paths::standInEventTextsWithoutSeverity);
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
    platformCalls.broken = {"db_get_MessageID"};
    EXPECT_STREQ(alertOf(thresholdEvent()).MessageID, "-1");
    platformCalls.broken = {"db_init"};
    EXPECT_EQ(get_message_id("Unknown"), -1);
}

TEST_F(SelAlerts, failWithoutTheSensors) {
    for (const char* function : {"db_init", "db_get_compact_sdrs_of_event", "db_get_full_sdrs_of_event"}) {
        platformCalls.broken = {function};
        AlertRecord alert{};
        const SelEventMessage message = thresholdEvent();
        EXPECT_EQ(SelToAlert(&message, &alert, 7, 1), -1) << function;
    }
}

} // namespace
