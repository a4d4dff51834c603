// What opening a transport says and how long it takes when there is no BMC. Sessions that open are tested
// against peers (tests/peer) and the virtual BMC (tests/virtual-bmc).
#include "ipmi/transport.h"

#include <arpa/inet.h>
#include <chrono>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using ipmi::SessionSettings;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// What opening says; a transport that opens fails the test.
std::string openError(const SessionSettings& settings) {
    try {
        ipmi::openTransport(settings);
    } catch (const ipmi::TransportError& error) {
        return error.what();
    }
    ADD_FAILURE() << "opened";
    return {};
}

struct Refusal {
    const char* name;
    void (*change)(SessionSettings&);
    const char* problem;
};

TEST(OpenTransport, saysWhatIsWrongWithTheSettings) {
    const Refusal cases[] = {
        {"no address", [](auto& s) { s.address = ""; }, "address is missing"},
        {"unknown host", [](auto& s) { s.address = "bmc.invalid"; }, "bmc.invalid"},
        {"long user name", [](auto& s) { s.userName.assign(17, 'u'); }, "user name"},
        {"long password", [](auto& s) { s.password.assign(21, 'p'); }, "password has more than 20"},
        {"cipher suite out of range", [](auto& s) { s.cipherSuite = 259; }, "cipher suite"},
        {"privilege level out of range", [](auto& s) { s.privilegeLevel = 7; }, "privilege level"},
        {"unknown interface", [](auto& s) { s.interfaceType = 7; }, "interface type 7"},
        {"unknown driver", [](auto& s) { s.interfaceType = SessionSettings::LocalDevice; }, "driver type"},
    };
    for (const auto& refusal : cases) {
        SCOPED_TRACE(refusal.name);
        SessionSettings settings{.address = "127.0.0.1", .port = 9, .userName = "root", .password = "s3cr3t"};
        refusal.change(settings);
        EXPECT_THAT(openError(settings),
                    AllOf(HasSubstr(refusal.problem), Not(HasSubstr(settings.password))));
    }
}

// A bound UDP port that nobody answers on: nothing else can take it while the test runs.
class SilentPort {
public:
    explicit SilentPort(const char* address) : socket_(::socket(AF_INET, SOCK_DGRAM, 0)) {
        sockaddr_in place{.sin_family = AF_INET, .sin_port = 0, .sin_addr = {}, .sin_zero = {}};
        inet_pton(AF_INET, address, &place.sin_addr);
        socklen_t size = sizeof place;
        if (::bind(socket_, reinterpret_cast<sockaddr*>(&place), size) != 0 ||
            ::getsockname(socket_, reinterpret_cast<sockaddr*>(&place), &size) != 0)
            ADD_FAILURE() << "cannot bind a loopback port";
        number_ = ntohs(place.sin_port);
    }
    ~SilentPort() { ::close(socket_); }
    SilentPort(const SilentPort&) = delete;
    SilentPort& operator=(const SilentPort&) = delete;
    std::uint16_t number() const { return number_; }

private:
    int socket_;
    std::uint16_t number_ = 0;
};

TEST(OpenTransport, givesUpAnAbsentBmcInTime) {
    const SilentPort port("127.0.0.1");
    for (const auto& [timeout, limit] : {std::pair{30, 5.5}, std::pair{1, 1.5}}) {
        const auto start = std::chrono::steady_clock::now();
        const auto text = openError({.address = "127.0.0.1",
                                     .port = port.number(),
                                     .userName = "root",
                                     .password = "s3cr3t",
                                     .timeout = timeout});
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        EXPECT_LT(elapsed.count(), limit);
        EXPECT_THAT(text, HasSubstr("127.0.0.1:" + std::to_string(port.number())));
    }
}

} // namespace
