// The LAN transport against OpenIPMI's BMC simulator, with ipmitool as the witness of what it should say.
#include "elapsed.h"
#include "ipmi/command.h"
#include "ipmi_sim.h"
#include "udp_relay.h"

#include <chrono>
#include <cstdio>
#include <gmock/gmock.h>
#include <thread>

namespace {

using ipmi::SessionSettings;
using ph_test::IpmiSim;
using ph_test::SimSensor;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint8_t fanSlot = 9;

std::vector<SimSensor> sensors() {
    auto all = ph_test::thresholdSensors(2);
    all[1].reading = 125; // above upper critical
    all.push_back(
        {.number = fanSlot, .name = "Fan slot", .type = 0x25, .eventReadingType = 0x6F, .states = 0x0001});
    return all;
}

class Peer : public testing::Test {
protected:
    static void SetUpTestSuite() { bmc = std::make_unique<IpmiSim>(sensors()); }
    static void TearDownTestSuite() { bmc.reset(); }

    static std::string ipmitool(const std::string& arguments) { return bmc->ipmitool(arguments); }

    static std::unique_ptr<IpmiSim> bmc;
};

std::unique_ptr<IpmiSim> Peer::bmc;

std::string hexBytes(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const unsigned value : bytes) {
        char digits[8];
        std::snprintf(digits, sizeof digits, " %02x", value);
        text += digits;
    }
    return text + "\n";
}

TEST_F(Peer, answersAreTheBytesIpmitoolGets) {
    const auto transport = ipmi::openTransport(bmc->settings());
    const std::pair<ipmi::CommandCode, std::vector<std::uint8_t>> commands[] = {
        {ipmi::command::getDeviceId, {}},
        {ipmi::command::getSensorReading, {1}},
        {ipmi::command::getSensorReading, {2}},
        {ipmi::command::getSensorReading, {fanSlot}},
    };
    for (const auto& [command, data] : commands) {
        const auto answer = ipmi::run(*transport, command, data);
        const auto witness =
            ipmitool("raw " + std::to_string(command.netFn) + " " + std::to_string(command.number) +
                     (data.empty() ? "" : " " + std::to_string(data[0])));
        EXPECT_EQ(hexBytes(answer.data()), witness);
    }
}

TEST_F(Peer, completionCodesArriveAsErrors) {
    const auto transport = ipmi::openTransport(bmc->settings());
    try {
        ipmi::run(*transport, ipmi::command::getSensorReading, {200});
        FAIL() << "there is no sensor 200";
    } catch (const ipmi::CompletionCodeError& error) {
        char witness[16];
        std::snprintf(witness, sizeof witness, "rsp=0x%x", error.code);
        EXPECT_THAT(ipmitool("raw 4 0x2d 200"), HasSubstr(witness));
    }
}

TEST_F(Peer, refusedSessionsSayWhyAndAreRefusedAtOnce) {
    auto wrongPassword = bmc->settings();
    wrongPassword.password = "not-the-password";
    auto wrongUser = bmc->settings();
    wrongUser.userName = "nobody";
    for (const auto& each : {std::pair{wrongPassword, "password invalid"}, {wrongUser, "'nobody'"}}) {
        const SessionSettings& settings = each.first;
        const char* const problem = each.second;
        const double elapsed = seconds([&] {
            try {
                ipmi::openTransport(settings);
                ADD_FAILURE() << "opened without " << problem;
            } catch (const ipmi::TransportError& error) {
                EXPECT_THAT(error.what(), AllOf(HasSubstr(problem), Not(HasSubstr(settings.password))));
            }
        });
        EXPECT_LT(elapsed, 2);
    }
}

TEST_F(Peer, aBmcThatHangsFailsTheExchangeWithinItsTimeout) {
    auto settings = bmc->settings();
    settings.timeout = 2;
    const auto transport = ipmi::openTransport(settings);
    bmc->pause();
    EXPECT_LT(seconds([&] {
                  EXPECT_THROW(ipmi::run(*transport, ipmi::command::getDeviceId), ipmi::TransportError);
              }),
              2.2);
    bmc->resume();
}

// Opening and a command over a bad network. Answer 0 belongs to the probe, 1 to 5 to the opening of the
// session.
TEST_F(Peer, badNetworksAreSurvived) {
    using ph_test::Deliveries;
    using std::chrono::milliseconds;
    const struct {
        const char* name;
        ph_test::AnswerRule rule;
        double limit; // seconds
    } cases[] = {
        {"late", [](unsigned) { return Deliveries{milliseconds(700)}; }, 10},
        {"very late handshake",
         [](unsigned number) { return Deliveries{milliseconds(number >= 3 && number <= 4 ? 1300 : 0)}; }, 10},
        {"each third lost",
         [](unsigned number) { return number % 3 == 1 ? Deliveries{} : Deliveries{milliseconds(0)}; }, 12},
        {"twice",
         [](unsigned number) {
             return number < 9 ? Deliveries{milliseconds(0), milliseconds(0)} : Deliveries{milliseconds(0)};
         },
         5},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        auto settings = bmc->settings();
        const ph_test::UdpRelay relay(settings.port, item.rule);
        settings.port = relay.port();
        const double elapsed = seconds([&] {
            try {
                const auto transport = ipmi::openTransport(settings);
                for (int i = 0; i < 3; ++i)
                    EXPECT_FALSE(ipmi::run(*transport, ipmi::command::getDeviceId).data().empty());
            } catch (const ipmi::TransportError& error) {
                ADD_FAILURE() << error.what();
            }
        });
        EXPECT_LT(elapsed, item.limit);
    }
}

TEST_F(Peer, aSessionOutlivesAPauseLongerThanItsTimeout) {
    auto settings = bmc->settings();
    settings.timeout = 1;
    const auto transport = ipmi::openTransport(settings);
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    EXPECT_NO_THROW(ipmi::run(*transport, ipmi::command::getDeviceId));
}

} // namespace
