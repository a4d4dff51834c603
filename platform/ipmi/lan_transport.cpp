#include "ipmi/lan_transport.h"

#include "ipmi/command.h"

#include <algorithm>

namespace ipmi {
namespace {

constexpr unsigned defaultRetransmission = 500; // milliseconds
constexpr unsigned probeTimeout = 4000;         // milliseconds; FreeIPMI notices half a second later

// A BMC ends a session after a minute without messages, give or take three seconds (IPMI 2.0, 6.12.15).
constexpr unsigned longestPause = 30000; // milliseconds

constexpr std::uint8_t getChannelAuthenticationCapabilities = 0x38;
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

} // namespace

// FreeIPMI waits for an answer in steps that grow, and looks at the clock only between them. With a first
// step of at most a tenth, three quarters of the time keep it within the whole.
LanTransport::LanTransport(const SessionSettings& settings)
    : settings_(settings), host_(hostWithPort(settings_)) {
    check(settings_, host_);
    const unsigned whole = static_cast<unsigned>(std::clamp(settings_.timeout, 1, 3600)) * 1000;
    sessionTimeout_ = whole / 4 * 3;
    retransmission_ = settings_.retransmission > 0 ? static_cast<unsigned>(settings_.retransmission)
                                                   : defaultRetransmission;
    retransmission_ = std::min(retransmission_, whole / 10);
    probe();
    open();
}

// Asks what can be asked without a session, so that an absent BMC costs seconds, not the timeout of a session
// whose BMC may be slow.
void LanTransport::probe() const {
    FreeIpmiContext context(host_);
    const unsigned timeout = std::min(sessionTimeout_, probeTimeout);
    if (ipmi_ctx_open_outofband(context.get(), host_.c_str(), nullptr, nullptr, IPMI_AUTHENTICATION_TYPE_NONE,
                                IPMI_PRIVILEGE_LEVEL_ADMIN, timeout, std::min(retransmission_, timeout / 8),
                                IPMI_WORKAROUND_FLAGS_DEFAULT, IPMI_FLAGS_NOSESSION) < 0)
        context.fail("cannot reach the BMC");
    const std::uint8_t request[] = {presentChannel | withIpmi20Data, IPMI_PRIVILEGE_LEVEL_ADMIN};
    std::uint8_t answer[maxMessage];
    context.exchange(netFn::app, getChannelAuthenticationCapabilities, request, answer);
}

void LanTransport::open() {
    context_.emplace(host_);
    if (ipmi_ctx_open_outofband_2_0(
            context_->get(), host_.c_str(), settings_.userName.c_str(), settings_.password.c_str(), nullptr,
            0, static_cast<std::uint8_t>(settings_.privilegeLevel),
            static_cast<std::uint8_t>(settings_.cipherSuite), sessionTimeout_, retransmission_,
            static_cast<unsigned>(settings_.workaroundFlags), IPMI_FLAGS_DEFAULT) < 0)
        context_->fail("cannot open an IPMI session as user '" + settings_.userName + "'");
    lastAnswer_ = Clock::now();
}

std::size_t LanTransport::exchange(std::uint8_t netFn, std::uint8_t command,
                                   std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
    // FreeIPMI counts its timeout from the last answer: after a pause the session is a new one.
    if (Clock::now() - lastAnswer_ > std::chrono::milliseconds(std::min(sessionTimeout_ / 2, longestPause)))
        open();
    const std::size_t length = context_->exchange(netFn, command, request, answer);
    lastAnswer_ = Clock::now();
    return length;
}

} // namespace ipmi
