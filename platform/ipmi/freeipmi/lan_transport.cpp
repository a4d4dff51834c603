#include "ipmi/freeipmi/lan_transport.h"

#include "ipmi/command.h"

#include <algorithm>

namespace ipmi {
namespace {

// Opening takes five messages, so each message has a fifth of the whole time, but not less than this.
constexpr unsigned messagesOfOpening = 5;
constexpr unsigned shortestMessageTimeout = 500; // milliseconds
constexpr int openAttempts = 4;
constexpr unsigned probeTimeout = 4000; // milliseconds

constexpr std::uint8_t presentChannel = 0x0E;
constexpr std::uint8_t withIpmi20Data = 0x80;

constexpr std::size_t maxUserName = 16;
constexpr std::size_t maxPassword = 20;

std::string hostWithPort(const SessionSettings& settings) {
    const bool isIpv6 = settings.address.find(':') != std::string::npos && settings.address.front() != '[';
    return (isIpv6 ? '[' + settings.address + ']' : settings.address) + ':' + std::to_string(settings.port);
}

// FreeIPMI only knows "invalid parameters" for these.
void check(const SessionSettings& settings, const std::string& host) {
    const auto require = [&](bool condition, const char* problem) {
        if (!condition)
            throw TransportError(host + ": " + problem);
    };
    require(!settings.address.empty(), "the BMC's address is missing");
    require(settings.userName.size() <= maxUserName, "the user name has more than 16 characters");
    require(settings.password.size() <= maxPassword, "the password has more than 20 characters");
    require(settings.cipherSuite >= 0 && settings.cipherSuite <= 0xFF &&
                IPMI_CIPHER_SUITE_ID_SUPPORTED(settings.cipherSuite),
            "the cipher suite is not supported");
    require(settings.privilegeLevel >= 0 && settings.privilegeLevel <= 0xFF &&
                IPMI_PRIVILEGE_LEVEL_VALID(settings.privilegeLevel),
            "the privilege level is not one of IPMI 2.0");
}

// FreeIPMI sets libgcrypt up when it opens a session, and threads that open their first ones at the same time
// would use it half set up. Once is enough for the process.
void setUpCryptography() {
    static const bool isSetUp = ipmi_rmcpplus_init() == 0;
    if (!isSetUp)
        throw TransportError("libgcrypt cannot be set up");
}

// Three messages for a timeout, of which the last waits for half of it: BMCs may be slow. A quarter to the
// millisecond may end just before the timeout and so cost a fourth message.
unsigned retransmissionFor(unsigned timeout) {
    return timeout / 4 + 10;
}

// FreeIPMI sends a message again after steps of one, one, two, two, three times the retransmission time,
// takes an answer only to what it sent last, and looks at the clock only between the steps.
unsigned longestWait(unsigned timeout, unsigned retransmission) {
    unsigned wait = 0;
    for (unsigned sent = 0; wait < timeout; ++sent)
        wait += std::min(timeout, retransmission * (sent / 2 + 1));
    return wait;
}

struct Refusal {
    int error;
    SessionProblem problem;
};

constexpr Refusal refusals[] = {
    {IPMI_ERR_USERNAME_INVALID, SessionProblem::UserName},
    {IPMI_ERR_PASSWORD_INVALID, SessionProblem::Password},
    {IPMI_ERR_PASSWORD_VERIFICATION_TIMEOUT, SessionProblem::Password},
    {IPMI_ERR_K_G_INVALID, SessionProblem::Key},
    {IPMI_ERR_PRIVILEGE_LEVEL_INSUFFICIENT, SessionProblem::Privilege},
    {IPMI_ERR_PRIVILEGE_LEVEL_CANNOT_BE_OBTAINED, SessionProblem::Privilege},
    {IPMI_ERR_CIPHER_SUITE_ID_UNAVAILABLE, SessionProblem::CipherSuite},
    {IPMI_ERR_AUTHENTICATION_TYPE_UNAVAILABLE, SessionProblem::Authentication},
    {IPMI_ERR_IPMI_2_0_UNAVAILABLE, SessionProblem::Version},
    {IPMI_ERR_SESSION_TIMEOUT, SessionProblem::Protocol},
    {IPMI_ERR_BAD_COMPLETION_CODE, SessionProblem::Protocol},
    {IPMI_ERR_BAD_RMCPPLUS_STATUS_CODE, SessionProblem::Protocol},
    {IPMI_ERR_IPMI_ERROR, SessionProblem::Protocol},
};

// The IDs of the cipher suites that the BMC has, out of records of different lengths, each behind a tag of its own
// (IPMI 2.0 22.15, table 22-18). An answer with less than 16 bytes of them is the last.
std::vector<std::uint8_t> readCipherSuites(FreeIpmiContext& bmc) {
    constexpr std::uint8_t ipmiPayload = 0x00, bySuite = 0x80, lastIndex = 0x3F;
    constexpr std::uint8_t standardSuite = 0xC0, oemSuite = 0xC1;
    constexpr std::size_t wholePart = 16;
    std::vector<std::uint8_t> records;
    for (std::uint8_t index = 0; index <= lastIndex; ++index) {
        const std::uint8_t request[] = {presentChannel, ipmiPayload,
                                        static_cast<std::uint8_t>(bySuite | index)};
        std::uint8_t answer[maxMessage];
        constexpr CommandCode ask = command::getChannelCipherSuites;
        const std::size_t size = bmc.exchange(ask.netFn, ask.number, request, answer);
        Reader reader(std::span<const std::uint8_t>(answer, size));
        if (reader.u8() != completion::success)
            break;
        reader.skip(1); // channel
        const auto part = reader.rest();
        records.insert(records.end(), part.begin(), part.end());
        if (part.size() < wholePart)
            break;
    }
    std::vector<std::uint8_t> suites;
    for (std::size_t i = 0; i + 1 < records.size(); ++i)
        if (records[i] == standardSuite || records[i] == oemSuite)
            suites.push_back(records[++i]);
    return suites;
}

} // namespace

LanTransport::LanTransport(const SessionSettings& settings)
    : settings_(settings), host_(hostWithPort(settings_)) {
    check(settings_, host_);
    setUpCryptography();
    const unsigned whole = static_cast<unsigned>(std::clamp(settings_.timeout, 1, 3600)) * 1000;
    messageTimeout_ = std::max(whole / messagesOfOpening, shortestMessageTimeout);
    retransmission_ = settings_.retransmission > 0
                          ? std::min(static_cast<unsigned>(settings_.retransmission), messageTimeout_)
                          : retransmissionFor(messageTimeout_);
    probe();
    open();
}

FreeIpmiContext LanTransport::openWithoutSession() const {
    FreeIpmiContext context(host_);
    const unsigned timeout = std::min(messageTimeout_, probeTimeout);
    if (ipmi_ctx_open_outofband(context.get(), host_.c_str(), nullptr, nullptr, IPMI_AUTHENTICATION_TYPE_NONE,
                                IPMI_PRIVILEGE_LEVEL_ADMIN, timeout,
                                std::min(retransmission_, retransmissionFor(timeout)),
                                IPMI_WORKAROUND_FLAGS_DEFAULT, IPMI_FLAGS_NOSESSION) < 0)
        context.fail("cannot reach the BMC");
    return context;
}

// Asks what can be asked without a session, so that an absent BMC costs seconds, not the timeout of a session
// whose BMC may be slow.
void LanTransport::probe() const {
    FreeIpmiContext context = openWithoutSession();
    const std::uint8_t request[] = {presentChannel | withIpmi20Data, IPMI_PRIVILEGE_LEVEL_ADMIN};
    std::uint8_t answer[maxMessage];
    constexpr CommandCode ask = command::getChannelAuthenticationCapabilities;
    try {
        context.exchange(ask.netFn, ask.number, request, answer);
    } catch (const TransportError& error) {
        throw SessionError(error.what(), SessionProblem::NoAnswer);
    }
}

// Throws SessionError where FreeIPMI knows what the BMC refuses.
void LanTransport::refuse(const std::string& what) const {
    const auto* const known = std::ranges::find(refusals, ipmi_ctx_errnum(context_->get()), &Refusal::error);
    if (known == std::end(refusals))
        context_->fail(what);
    SessionProblem problem = known->problem;
    std::vector<std::uint8_t> suites;
    // A session that is opened anew has a deadline, and one that timed out would cost the time once more.
    const bool hasTime = lastAnswer_ == Clock::time_point() && known->error != IPMI_ERR_SESSION_TIMEOUT;
    if (hasTime && (problem == SessionProblem::CipherSuite || problem == SessionProblem::Protocol)) {
        try {
            FreeIpmiContext context = openWithoutSession();
            suites = readCipherSuites(context);
        } catch (const TransportError&) { // it is only for advice
        }
        // BMCs answer a suite that they have not in many ways.
        if (!suites.empty() && std::ranges::count(suites, settings_.cipherSuite) == 0)
            problem = SessionProblem::CipherSuite;
    }
    throw SessionError(host_ + ": " + what + ": " + ipmi_ctx_errormsg(context_->get()), problem,
                       std::move(suites));
}

// FreeIPMI takes the copy of an answer that the network delivered twice for the answer to its next message,
// and gives up without an error of its own. A new try does not see the copies of the old one.
void LanTransport::open() {
    const std::string problem = "cannot open an IPMI session as user '" + settings_.userName + "'";
    for (int attempt = 1;; ++attempt) {
        context_.emplace(host_);
        if (ipmi_ctx_open_outofband_2_0(
                context_->get(), host_.c_str(), settings_.userName.c_str(), settings_.password.c_str(),
                nullptr, 0, static_cast<std::uint8_t>(settings_.privilegeLevel),
                static_cast<std::uint8_t>(settings_.cipherSuite), messageTimeout_, retransmission_,
                static_cast<unsigned>(settings_.workaroundFlags), IPMI_FLAGS_DEFAULT) >= 0)
            break;
        if (ipmi_ctx_errnum(context_->get()) != IPMI_ERR_SUCCESS)
            refuse(problem);
        if (attempt == openAttempts)
            throw TransportError(host_ + ": " + problem + ": answers arrive twice or out of order");
    }
    lastAnswer_ = Clock::now();
}

void LanTransport::requireTime() const {
    if (Clock::now() + std::chrono::milliseconds(longestWait(messageTimeout_, retransmission_)) > deadline_)
        throw DeadlineError(host_ + ": no time is left for another message");
}

std::size_t LanTransport::exchange(std::uint8_t netFn, std::uint8_t command,
                                   std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
    // FreeIPMI counts its timeout from the last answer: after a pause the session is a new one.
    if (Clock::now() - lastAnswer_ > std::chrono::milliseconds(messageTimeout_ / 6))
        open();
    requireTime();
    const std::size_t length = context_->exchange(netFn, command, request, answer);
    lastAnswer_ = Clock::now();
    return length;
}

} // namespace ipmi
