// Alerts as mails.
#include "delivery_fixture.h"

#include <cstring>
#include <unistd.h>

namespace {

using nlohmann::json;

// E-mail destination 2 of channel 1 is of user 3; both servers are there.
const json machine = json::parse(R"({
    "users": [{"id": 3, "name": "admin", "email": "admin@example.org"}],
    "lans": [{"channel": 1, "name": "eth0"}],
    "alertDestinations": [{"channel": 1, "selector": 2, "kind": "e-mail", "user": 3,
                           "subject": "not mailed", "message": "not mailed"}],
    "mail": {"servers": [
        {"channel": 1, "enabled": true, "ipv4": "192.0.2.1", "port": 587, "hostName": "bmc.example.org",
         "startTls": true, "authenticate": true, "userName": "bmc", "password": "secret",
         "sender": "sixty-four-characters-leave-no-room-for-an-end.bmc@mail.example."},
        {"channel": 1, "secondary": true, "enabled": true, "ipv4": "192.0.2.2"}]}})");

class AlertMails : public DeliveryFixture {
protected:
    AlertMails() : DeliveryFixture(machine.dump()) {}

    static AlertRecord alert() {
        AlertRecord alert{};
        std::strcpy(alert.EventID, "12a");
        std::strcpy(alert.MessageArguments[0], "Inlet Temp(26.32.0)");
        std::strcpy(alert.MessageArguments[3], "Asserted");
        std::strcpy(alert.MessageArguments[4], "Temperature");
        std::strcpy(alert.Description, "Upper Critical - going high");
        std::strcpy(alert.PerceivedSeverity, "6 (Critical)");
        std::strcpy(alert.AlertingManagedElement, "1:26");
        std::strcpy(alert.MessageID, "12");
        std::strcpy(alert.OwningEntity, "TRZ");
        alert.EventTime = 1714564800;
        return alert;
    }
    // Nothing when there is no mail.
    static std::optional<AlertMailRequest> mailOf(const AlertRecord& alert, std::uint8_t selector = 2) {
        AlertMailRequest mail{};
        return ConvertAlertToMail(&alert, &mail, selector, 1) == 0 ? std::optional(mail) : std::nullopt;
    }
};

TEST_F(AlertMails, goToTheDestinationsUser) {
    const AlertMailRequest mail = mailOf(alert()).value();
    EXPECT_STREQ(mail.recipient, "admin@example.org");
    EXPECT_EQ(mail.userId, 3);
    EXPECT_STREQ(mail.userName, "bmc");
    EXPECT_STREQ(mail.password, "secret");
    EXPECT_EQ(json(mail.sender), machine["mail"]["servers"][0]["sender"]);
    EXPECT_EQ(std::strlen(mail.sender), sizeof(CIM_SMTPInfo::sender));
    EXPECT_STREQ(mail.hostName, "bmc.example.org");
    EXPECT_STREQ(mail.server, "192.0.2.1");
    // Unary plus: the numbers are not aligned, and a reference would be bound to them.
    EXPECT_EQ(+mail.security, 3U);
    EXPECT_EQ(+mail.port, 587U);
    EXPECT_EQ(+mail.timeout, 30U);
    EXPECT_EQ(+mail.retries, 3U);
    EXPECT_EQ(+mail.retryInterval, 3U);
    char host[128] = "";
    gethostname(host, sizeof host);
    EXPECT_EQ(mail.subject, "Alert from " + std::string(host) + " CIM Module");
    EXPECT_STREQ(mail.body, "Generated new instance for CIM_AlertIndication\n"
                            "\r\nEventID\t\t:\t12a"
                            "\r\nSensorName\t\t:\tInlet Temp(26.32.0)"
                            "\r\nEventType\t\t:\tAsserted"
                            "\r\nSensorType\t\t:\tTemperature"
                            "\r\nDescription\t\t:\tUpper Critical - going high"
                            "\r\nPerceivedSeverity\t:\t6 (Critical)"
                            "\r\nAlertingManagedElement\t:\t1:26"
                            "\r\nMessageID\t\t:\t12"
                            "\r\nOwningEntity\t\t:\tTRZ"
                            "\r\nEventTime\t\t:\tWed May  1 12:00:00 2024\n");
}

TEST_F(AlertMails, haveNoLineForWhatIsEmptyAndFitIntoTheRequest) {
    AlertRecord empty{};
    EXPECT_STREQ(mailOf(empty)->body, "Generated new instance for CIM_AlertIndication\n"
                                      "\r\nEventTime\t\t:\tThu Jan  1 00:00:00 1970\n");
    AlertRecord full;
    std::memset(&full, 'x', sizeof full);
    for (char* end :
         {std::end(full.Description), std::end(full.EventID), std::end(full.AlertingManagedElement),
          std::end(full.PerceivedSeverity), std::end(full.OwningEntity), std::end(full.MessageID),
          std::end(full.MessageArguments[0]), std::end(full.MessageArguments[3]),
          std::end(full.MessageArguments[4])})
        end[-1] = '\0';
    const AlertMailRequest mail = mailOf(full).value();
    EXPECT_EQ(std::strlen(mail.body), sizeof(mail.body) - 1);
    EXPECT_EQ(+mail.attachments, 0U);
}

TEST_F(AlertMails, takeTheFirstServerThatCanBeUsed) {
    const auto server = [](const char* broken = "") {
        platformCalls.broken = {broken};
        const auto mail = mailOf(alert());
        return mail ? mail->server : std::string("none");
    };
    EXPECT_EQ(server("CIM_TRZGetSMTPInfo"), "192.0.2.2");
    const struct {
        json primary, secondary; // what is changed of them
        const char* server;
    } cases[] = {{{{"enabled", false}}, {}, "192.0.2.2"},
                 {{{"ipv4", "0.0.0.0"}, {"ipv6", "::1"}}, {}, "::1"},
                 {{{"ipv4", "0.0.0.0"}}, {}, "192.0.2.2"},
                 {{{"enabled", false}}, {{"ipv4", "0.0.0.0"}}, "none"}};
    for (const auto& item : cases) {
        json changed = machine;
        changed["mail"]["servers"][0].update(item.primary.is_null() ? json::object() : item.primary);
        changed["mail"]["servers"][1].update(item.secondary.is_null() ? json::object() : item.secondary);
        createBmc(changed.dump());
        EXPECT_EQ(server(), item.server) << item.primary << item.secondary;
    }
    createBmc(machine.dump());
    for (const auto& [address, expected] : {std::pair{"", "192.0.2.2"}, {"::", "none"}}) {
        PH_STAND_IN(CIM_TRZGetSMTPServerInfo, [given = address](auto*, char* text, auto...) {
            std::strcpy(text, given);
            return 0;
        });
        EXPECT_EQ(server(), expected);
    }
}

TEST_F(AlertMails, needARecipient) {
    EXPECT_FALSE(mailOf(alert(), 5)) << "no such destination";
    for (const char* function : {"CIM_TRZGetUserEmail", "CIM_Create_IPMI20_Session"}) {
        platformCalls.broken = {function};
        EXPECT_FALSE(mailOf(alert())) << function;
    }
    platformCalls.broken = {};
    json changed = machine;
    changed["users"][0].erase("email");
    createBmc(changed.dump());
    EXPECT_FALSE(mailOf(alert()));
}

TEST(AlertLines, areAlignedByTabs) {
    char buffer[256] = "begin";
    EXPECT_EQ(AddPropertyValToBuffer(buffer, "fifteen letters", "x"), 0);
    EXPECT_EQ(AddPropertyValToBuffer(buffer, "sixteen letters!", "y"), 0);
    EXPECT_EQ(AddPropertyValToBuffer(buffer, "nothing", ""), -1);
    EXPECT_STREQ(buffer, "begin\r\nfifteen letters\t\t:\tx\r\nsixteen letters!\t:\ty");
}

TEST(AlertLines, nameSeverities) {
    char buffer[256] = "";
    for (int severity = -1; severity <= 8; ++severity)
        EXPECT_EQ(GetEventSev(severity, buffer), 0);
    EXPECT_STREQ(buffer, "\r\nSeverity\t\t:\tUnknown\r\nSeverity\t\t:\tOk\r\nSeverity\t\t:\tWarning"
                         "\r\nSeverity\t\t:\tCritical\r\nSeverity\t\t:\tNon Recoverable");
}

} // namespace
