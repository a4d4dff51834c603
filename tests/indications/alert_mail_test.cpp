// Alerts as mails.
#include "delivery_fixture.h"

#include <cstring>
#include <unistd.h>

namespace {

using testing::StartsWith;

class AlertMails : public DeliveryFixture {
protected:
    AlertMails() {
        delivery.users = {{2, 3}};
        delivery.addresses = {{3, "admin@example.org"}};
        FakeServer& primary = delivery.servers[0];
        primary.info.isEnabled = 1;
        std::strcpy(primary.info.userName, "bmc");
        std::strcpy(primary.info.password, "secret");
        std::memset(primary.info.sender, 's', sizeof primary.info.sender); // no room for an end
        std::strcpy(primary.info.hostName, "bmc.example.org");
        primary.info.security = 3;
        primary.info.port = 587;
        primary.address = "192.0.2.1";
        delivery.servers[1].info.isEnabled = 1;
        delivery.servers[1].address = "192.0.2.2";
    }
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
    static std::string server() {
        const auto mail = mailOf(alert());
        return mail ? mail->server : "none";
    }
};

TEST_F(AlertMails, goToTheDestinationsUser) {
    const AlertMailRequest mail = mailOf(alert()).value();
    EXPECT_STREQ(mail.recipient, "admin@example.org");
    EXPECT_EQ(mail.userId, 3);
    EXPECT_STREQ(mail.userName, "bmc");
    EXPECT_STREQ(mail.password, "secret");
    EXPECT_EQ(mail.sender, std::string(sizeof(CIM_SMTPInfo::sender), 's'));
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
    const std::uint8_t loopback[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    struct ServerCase {
        const char* what;
        void (*set)(FakeServer& primary, FakeServer& secondary, const std::uint8_t* loopback);
        const char* server;
    };
    const ServerCase cases[] = {
        {"primary", [](auto&, auto&, auto*) {}, "192.0.2.1"},
        {"primary cannot be read", [](auto& first, auto&, auto*) { first.isReadable = false; }, "192.0.2.2"},
        {"primary is disabled", [](auto& first, auto&, auto*) { first.info.isEnabled = 0; }, "192.0.2.2"},
        {"primary has IPv6",
         [](auto& first, auto&, auto* address) {
             first.address = "0.0.0.0";
             std::memcpy(first.addressV6, address, 16);
         },
         "::1"},
        {"primary has no address", [](auto& first, auto&, auto*) { first.address = ""; }, "192.0.2.2"},
        {"primary says ::", [](auto& first, auto&, auto*) { first.address = "::"; }, "none"},
        {"neither",
         [](auto& first, auto& second, auto*) {
             first.info.isEnabled = 0;
             second.address = "0.0.0.0";
         },
         "none"},
    };
    for (const auto& item : cases) {
        const FakeServer before[2] = {delivery.servers[0], delivery.servers[1]};
        item.set(delivery.servers[0], delivery.servers[1], loopback);
        EXPECT_EQ(server(), item.server) << item.what;
        std::copy_n(before, 2, delivery.servers);
    }
}

TEST_F(AlertMails, needARecipient) {
    EXPECT_FALSE(mailOf(alert(), 5)) << "no such destination";
    delivery.addresses[3] = "";
    EXPECT_FALSE(mailOf(alert()));
    delivery.addresses.clear();
    EXPECT_FALSE(mailOf(alert()));
    platform.failing = {"CIM_Create_IPMI20_Session"};
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
    const std::pair<int, const char*> cases[] = {{0, "\r\nSeverity\t\t:\tUnknown"},
                                                 {2, "\r\nSeverity\t\t:\tOk"},
                                                 {3, "\r\nSeverity\t\t:\tWarning"},
                                                 {6, "\r\nSeverity\t\t:\tCritical"},
                                                 {7, "\r\nSeverity\t\t:\tNon Recoverable"},
                                                 {1, ""},
                                                 {5, ""}};
    for (const auto& [severity, line] : cases) {
        char buffer[64] = "";
        EXPECT_EQ(GetEventSev(severity, buffer), 0);
        EXPECT_STREQ(buffer, line);
    }
}

} // namespace
