// The road to a BMC: one IPMI request, one answer.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

// The library is built with hidden symbols. What crosses it, exceptions included, is marked.
#define PH_IPMI_EXPORT __attribute__((visibility("default")))

namespace ipmi {

// Thrown when there is no answer: the BMC cannot be reached, refused the session or stopped answering.
struct PH_IPMI_EXPORT TransportError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Why there is no session, as far as the BMC tells.
enum class SessionProblem {
    NoAnswer, // not even to what needs no session
    UserName,
    Password,
    Key, // K_g, the BMC's own
    Privilege,
    CipherSuite,
    Authentication, // none that both sides have
    Version,        // it does not speak IPMI 2.0, or does not say so
    Protocol,       // messages that are not as IPMI 2.0 has them
};

// Thrown when a session cannot be opened.
struct PH_IPMI_EXPORT SessionError : TransportError {
    SessionError(const std::string& text, SessionProblem reason, std::vector<std::uint8_t> suites = {})
        : TransportError(text), problem(reason), offeredSuites(std::move(suites)) {}

    SessionProblem problem;
    std::vector<std::uint8_t> offeredSuites; // of a wrong cipher suite, where the BMC tells: IDs that it has
};

// Thrown when there is no time left for another message; none was sent.
struct PH_IPMI_EXPORT DeadlineError : TransportError {
    using TransportError::TransportError;
};

using Clock = std::chrono::steady_clock;

// Room for the longest answer: IPMI messages carry at most 255 bytes of data, which follow the completion
// code.
inline constexpr std::size_t maxMessage = 272;

class PH_IPMI_EXPORT Transport {
public:
    virtual ~Transport() = default;

    // Sends `request` (the bytes after the command) to the BMC (LUN 0) and writes its answer, completion code
    // first, to `answer`. Returns the number of bytes written, at least 1. Throws TransportError.
    virtual std::size_t exchange(std::uint8_t netFn, std::uint8_t command,
                                 std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) = 0;

    // From now on exchanges end by then: one that could take longer throws DeadlineError, unsent, or gives
    // its answer up at that time. A transport whose driver bounds its exchanges does without.
    virtual void endBy(Clock::time_point /*deadline*/) {}

    // Tells whether the BMC is somebody else, so that there is time for other work during an exchange.
    virtual bool waits() const { return true; }
};

// The settings of the SMASH database's session row; see CIM_Create_IPMI20_Session (platform/cim_hooks.h).
struct SessionSettings {
    enum Interface { Lan = 0, LocalDevice = 1, VirtualBmc = 2 };
    std::string address;
    std::uint16_t port = 623;
    std::string userName;
    std::string password;
    int interfaceType = Lan;
    int cipherSuite = 3;
    int workaroundFlags = 0;
    int retransmission = 0; // milliseconds, 0: default
    int privilegeLevel = 4;
    int timeout = 30; // seconds, of opening; an exchange with its retries takes no longer either

    // No copy of the password stays behind in freed memory.
    ~SessionSettings() { explicit_bzero(password.data(), password.size()); }
};

// Called after each exchange, with network function, command, request and answer; an empty one when there was
// none.
using ExchangeObserver =
    std::function<void(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                       std::span<const std::uint8_t> answer)>;
// For tools that show how far a long request is: transports opened from now on, in the whole process, tell
// `observer`, in whatever thread exchanges. To be called before other threads open any.
PH_IPMI_EXPORT void observeExchanges(ExchangeObserver observer);

// For tools that have only so much time: whatever the process asks of a BMC over transports that are opened from
// now on ends by then, as after Transport::endBy.
PH_IPMI_EXPORT void endExchangesBy(Clock::time_point deadline);

// Returns why a transport could last not be opened, for tools whose providers do not tell; empty when none failed.
PH_IPMI_EXPORT std::string lastOpenFailure();

// Opens the transport that the settings name. Throws TransportError; its text names the BMC, never the
// password.
PH_IPMI_EXPORT std::unique_ptr<Transport> openTransport(const SessionSettings& settings);

} // namespace ipmi
