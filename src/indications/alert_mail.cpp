// Alerts as mails to the BMC's users.
#include "provider_helper/alert_delivery.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/guard.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <ctime>
#include <initializer_list>
#include <string_view>
#include <unistd.h>

namespace {

constexpr std::uint32_t timeoutSeconds = 30;
constexpr std::uint32_t retries = 3;
constexpr std::uint32_t retrySeconds = 3;
constexpr std::string_view noIpv4 = "0.0.0.0";
constexpr std::string_view noIpv6 = "::";

// The hook that reads a server of a channel.
struct ServerHooks {
    int (*info)(IPMI20_SESSION_T*, CIM_SMTPInfo*, std::uint8_t channel, int timeout);
    int (*address)(IPMI20_SESSION_T*, char*, std::uint8_t channel, int timeout);
    int (*addressV6)(IPMI20_SESSION_T*, std::uint8_t*, std::uint8_t channel, int timeout);
};
constexpr ServerHooks primary{CIM_TRZGetSMTPInfo, CIM_TRZGetSMTPServerInfo, CIM_TRZGetSMTPServerInfoIPv6};
constexpr ServerHooks secondary{CIM_TRZGetSMTP2Info, CIM_TRZGetSMTPServer2Info,
                                CIM_TRZGetSMTPServer2InfoIPv6};

struct MailServer {
    CIM_SMTPInfo info{};
    char address[CIM_SMTP_ADDRESS_SIZE] = "";

    MailServer() = default;
    MailServer(const MailServer&) = delete;
    MailServer& operator=(const MailServer&) = delete;
    ~MailServer() { explicit_bzero(&info, sizeof(info)); } // the password
};

// Returns an enabled server's address, IPv4 before IPv6.
bool readServer(IPMI20_SESSION_T* session, const ServerHooks& hooks, std::uint8_t channel,
                MailServer& server) {
    if (hooks.info(session, &server.info, channel, ph::hookTimeout) != 0 || server.info.isEnabled == 0)
        return false;
    if (hooks.address(session, server.address, channel, ph::hookTimeout) == 0 && server.address[0] != '\0' &&
        server.address != noIpv4)
        return true;
    std::uint8_t bytes[16];
    return hooks.addressV6(session, bytes, channel, ph::hookTimeout) == 0 &&
           ConvertIP6numToStr(bytes, server.address) == 0 && server.address[0] != '\0' &&
           server.address != noIpv6;
}

bool readRecipient(IPMI20_SESSION_T* session, std::uint8_t selector, std::uint8_t channel,
                   AlertMailRequest& mail) {
    char subject[CIM_EMAIL_SUBJECT_SIZE + 1]; // what a destination says itself is not mailed
    char message[CIM_EMAIL_MESSAGE_SIZE + 1];
    static_assert(sizeof(mail.recipient) == CIM_USER_EMAIL_SIZE);
    return CIM_TRZGetEmailDest(session, selector, &mail.userId, subject, message, channel, ph::hookTimeout) ==
               0 &&
           CIM_TRZGetUserEmail(session, mail.userId, mail.recipient, ph::hookTimeout) == 0 &&
           mail.recipient[0] != '\0';
}

// Copies a text that may fill its field into a larger one.
template <std::size_t N, std::size_t M>
void copyField(char (&target)[N], const char (&source)[M]) {
    static_assert(N > M);
    const std::size_t length = strnlen(source, M);
    std::memcpy(target, source, length);
    target[length] = '\0';
}

void setServer(AlertMailRequest& mail, const MailServer& server) {
    ph::copyText(mail.userName, server.info.userName);
    ph::copyText(mail.password, server.info.password);
    copyField(mail.hostName, server.info.hostName);
    ph::copyText(mail.server, server.address);
    copyField(mail.sender, server.info.sender);
    mail.security = server.info.security;
    mail.timeout = timeoutSeconds;
    mail.retries = retries;
    mail.retryInterval = retrySeconds;
    mail.port = server.info.port;
}

void setSubject(AlertMailRequest& mail) {
    char host[128] = "";
    gethostname(host, sizeof(host) - 1);
    if (host[0] == '\0')
        ph::copyText(host, mail.hostName);
    std::snprintf(mail.subject, sizeof(mail.subject), "Alert from %s CIM Module", host);
}

// The time is as asctime writes it, with its line feed.
void localTime(std::uint32_t seconds, char (&text)[32]) {
    const std::time_t time = seconds;
    std::tm local{};
    if (localtime_r(&time, &local) == nullptr || asctime_r(&local, text) == nullptr)
        text[0] = '\0';
}

void setBody(AlertMailRequest& mail, const AlertRecord& alert) {
    char time[32] = "";
    localTime(alert.EventTime, time);
    // This is enough for an alert whose texts are all full; the mail has room for less.
    char body[2 * sizeof(mail.body)] = "Generated new instance for CIM_AlertIndication\n";
    const struct {
        const char* name;
        const char* value;
    } lines[] = {{"EventID", alert.EventID},
                 {"SensorName", alert.MessageArguments[0]},
                 {"EventType", alert.MessageArguments[3]},
                 {"SensorType", alert.MessageArguments[4]},
                 {"Description", alert.Description},
                 {"PerceivedSeverity", alert.PerceivedSeverity},
                 {"AlertingManagedElement", alert.AlertingManagedElement},
                 {"MessageID", alert.MessageID},
                 {"OwningEntity", alert.OwningEntity},
                 {"EventTime", time}};
    for (const auto& line : lines)
        AddPropertyValToBuffer(body, line.name, line.value);
    ph::copyText(mail.body, body);
}

int convert(const AlertRecord& alert, AlertMailRequest& mail, std::uint8_t selector, std::uint8_t channel) {
    ph::IpmiSession session;
    MailServer server;
    if (!session.open() || !readRecipient(session.get(), selector, channel, mail) ||
        (!readServer(session.get(), primary, channel, server) &&
         !readServer(session.get(), secondary, channel, server)) ||
        server.address == noIpv6)
        return -1;
    setServer(mail, server);
    setSubject(mail);
    setBody(mail, alert);
    return 0;
}

} // namespace

int AddPropertyValToBuffer(char* buffer, const char* name, const char* value) {
    if (*value == '\0')
        return -1;
    constexpr std::size_t longName = 16; // one tab stop more
    buffer += std::strlen(buffer);
    for (const char* part : {"\r\n", name, std::strlen(name) < longName ? "\t\t:\t" : "\t:\t", value})
        buffer = stpcpy(buffer, part);
    return 0;
}

int GetEventSev(int severity, char* buffer) {
    constexpr struct {
        int severity;
        const char* text;
    } texts[] = {{0, "Unknown"}, {2, "Ok"}, {3, "Warning"}, {6, "Critical"}, {7, "Non Recoverable"}};
    for (const auto& row : texts)
        if (row.severity == severity)
            AddPropertyValToBuffer(buffer, "Severity", row.text);
    return 0;
}

int ConvertAlertToMail(const AlertRecord* alert, AlertMailRequest* mail, uint8_t selector, uint8_t channel) {
    return ph::guarded(-1, [&] { return convert(*alert, *mail, selector, channel); });
}
