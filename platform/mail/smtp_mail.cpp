// Sends alerts through an SMTP server, with libcurl.
#include "platform/mail.h"

#include "ipmi/secret.h"
#include "mail/message.h"
#include "platform/cim_mail.h"
#include "platform/sysroot.h"
#include "transfer/silent_peers.h"
#include "transfer/transfer.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <climits>
#include <cstring>
#include <netinet/tcp.h>
#include <optional>
#include <unistd.h>

namespace {

constexpr std::uint16_t usualPort = 25;
constexpr long readyForMessage = 354;                  // SMTP reply to DATA
constexpr std::uint32_t longestTimeout = 24 * 60 * 60; // seconds: a number that libcurl takes
// Issuers of the mail servers' certificates, PEM. Without the file, those that the machine trusts are used.
constexpr char issuersFile[] = "/conf/smtp_ca.pem";

// Fields that are filled to their end have no NUL.
template <std::size_t N>
std::string text(const char (&field)[N]) {
    return {field, strnlen(field, N)};
}

bool isHostName(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return (c < 0x80 && std::isalnum(c) != 0) || c == '.' || c == '-' || c == '_';
    });
}

// Returns the name of this machine.
std::string hostName(const AlertMailRequest& request) {
    std::string name = text(request.hostName);
    if (isHostName(name))
        return name;
    char own[HOST_NAME_MAX + 1] = {};
    if (gethostname(own, HOST_NAME_MAX) == 0 && isHostName(own))
        return own;
    return "localhost";
}

// Only addresses: looking up a name could take longer than the time-out allows, and a text that is no address
// may not change what the URL means.
std::optional<std::string> serverUrl(const AlertMailRequest& request, const std::string& host) {
    std::string server = text(request.server);
    in6_addr address{};
    if (inet_pton(AF_INET6, server.c_str(), &address) == 1)
        server = "[" + server + "]";
    else if (inet_pton(AF_INET, server.c_str(), &address) != 1)
        return std::nullopt;
    const std::uint32_t port = request.port != 0 ? request.port : usualPort;
    if (port > UINT16_MAX)
        return std::nullopt;
    return "smtp://" + server + ":" + std::to_string(port) + "/" + host; // libcurl says hello with the path
}

// Makes the mail; nothing when there is nobody to send it to, or an address is not valid.
std::optional<mail::Message> makeMessage(const AlertMailRequest& request, const std::string& host) {
    mail::Message message{.host = host,
                          .sender = text(request.sender),
                          .recipients = {text(request.recipient)},
                          .subject = text(request.subject),
                          .body = text(request.body)};
    if (message.sender.empty())
        message.sender = "bmc@" + host;
    for (const auto& more : request.moreRecipients)
        if (more[0] != '\0')
            message.recipients.push_back(text(more));
    if (!mail::isAddress(message.sender) ||
        !std::all_of(message.recipients.begin(), message.recipients.end(), mail::isAddress))
        return std::nullopt;
    return message;
}

// A conversation with a server, over one connection or several.
struct Conversation {
    std::string_view rest; // of the message
    bool mustAuthenticate;
    bool isAuthenticated = false; // on this connection

    // libcurl goes on without authentication when the server offers none. The server may not be the one that
    // is meant then, and gets no message.
    bool isRefused() const { return mustAuthenticate && !isAuthenticated; }
};

std::size_t readMessage(char* buffer, std::size_t size, std::size_t count, void* context) {
    auto& conversation = *static_cast<Conversation*>(context);
    if (conversation.isRefused())
        return CURL_READFUNC_ABORT;
    const std::size_t taken = conversation.rest.copy(buffer, size * count);
    conversation.rest.remove_prefix(taken);
    return taken;
}

// Takes note of the server's replies.
std::size_t takeReply(char* line, std::size_t size, std::size_t count, void* context) {
    constexpr std::string_view ready = "220";         // RFC 5321: the connection begins
    constexpr std::string_view authenticated = "235"; // RFC 4954
    const std::string_view reply(line, size * count);
    if (reply.starts_with(ready) || reply.starts_with(authenticated))
        static_cast<Conversation*>(context)->isAuthenticated = reply.starts_with(authenticated);
    return size * count;
}

void secure(const transfer::Handle& smtp, const AlertMailRequest& request) {
    if ((request.security & CIM_SMTP_STARTTLS) != 0) {
        set(smtp, CURLOPT_USE_SSL, CURLUSESSL_ALL + 0L);
        char issuers[4096];
        if (PH_SysrootPath(issuersFile, issuers, sizeof issuers) == 0 && access(issuers, R_OK) == 0)
            set(smtp, CURLOPT_CAINFO, issuers);
    }
    if ((request.security & CIM_SMTP_AUTHENTICATE) != 0) {
        set(smtp, CURLOPT_USERNAME, text(request.userName).c_str());
        ipmi::SecretBytes<sizeof request.password + 1> password;
        std::memcpy(password.bytes().data(), request.password, sizeof request.password);
        set(smtp, CURLOPT_PASSWORD, reinterpret_cast<const char*>(password.bytes().data()));
    }
}

// Linux asks for a connection, again after one and three seconds, and gives up after seven. libcurl's own
// time-out for connections would include the server's greeting, which may take longer.
int giveUpConnecting(void*, curl_socket_t connection, curlsocktype) {
    constexpr int repetitions = 2;
    setsockopt(connection, IPPROTO_TCP, TCP_SYNCNT, &repetitions, sizeof repetitions);
    return CURL_SOCKOPT_OK;
}

int send(const AlertMailRequest& request) {
    static auto& silentServers = *new transfer::SilentPeers; // the monitor thread sees the process end
    const std::string host = hostName(request);
    const auto url = serverUrl(request, host);
    const auto message = makeMessage(request, host);
    if (!url || !message)
        return -1;
    // A server that speaks may have refused this recipient only.
    const std::string mailbox = *url + ' ' + message->recipients.front();
    if (silentServers.contains(*url) || silentServers.contains(mailbox))
        return -1;
    // All attempts send the same Message-ID: a server whose answer was lost can tell that it has the mail.
    const std::string wire = mail::compose(*message);
    Conversation conversation{.rest = wire,
                              .mustAuthenticate = (request.security & CIM_SMTP_AUTHENTICATE) != 0};

    const auto smtp = transfer::make("smtp");
    transfer::Lines recipients;
    for (const std::string& recipient : message->recipients)
        recipients.add("<" + recipient + ">");
    set(smtp, CURLOPT_URL, url->c_str());
    const std::uint32_t asked = request.timeout; // not aligned there
    const auto timeout = static_cast<long>(std::clamp(asked, 1U, longestTimeout));
    set(smtp, CURLOPT_TIMEOUT, timeout);
    set(smtp, CURLOPT_SERVER_RESPONSE_TIMEOUT, timeout); // QUIT is not part of that
    set(smtp, CURLOPT_MAIL_FROM, ("<" + message->sender + ">").c_str());
    set(smtp, CURLOPT_MAIL_RCPT, recipients.list());
    set(smtp, CURLOPT_UPLOAD, 1L);
    set(smtp, CURLOPT_READFUNCTION, readMessage);
    set(smtp, CURLOPT_READDATA, &conversation);
    set(smtp, CURLOPT_HEADERFUNCTION, takeReply);
    set(smtp, CURLOPT_HEADERDATA, &conversation);
    set(smtp, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(wire.size()));
    set(smtp, CURLOPT_SOCKOPTFUNCTION, giveUpConnecting);
    secure(smtp, request);

    for (std::uint32_t attempt = 0;; ++attempt) {
        conversation.rest = wire;
        const CURLcode code = curl_easy_perform(smtp.get());
        if (code == CURLE_OK)
            return 0;
        long reply = 0;
        curl_easy_getinfo(smtp.get(), CURLINFO_RESPONSE_CODE, &reply);
        const bool isPermanent = reply >= 500 || (reply == readyForMessage && conversation.isRefused());
        const bool hasWaited = transfer::hasWaited(smtp, code);
        if (isPermanent || hasWaited || attempt == request.retries) {
            const bool hasPaused = attempt > 0 && request.retryInterval > 0;
            if (hasWaited || hasPaused)
                silentServers.add(hasWaited || reply == 0 ? *url : mailbox);
            return -1;
        }
        sleep(request.retryInterval);
    }
}

} // namespace

int smtp_mail(const AlertMailRequest* request) {
    try {
        return request != nullptr ? send(*request) : -1;
    } catch (...) {
        return -1;
    }
}
