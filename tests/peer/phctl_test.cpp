// phctl against OpenIPMI's BMC simulator over RMCP+, with ipmitool as the witness of what the BMC says.
#include "elapsed.h"
#include "ipmi_sim.h"
#include "phctl_program.h"
#include "sysroot_fixture.h"

#include <gmock/gmock.h>
#include <map>
#include <regex>
#include <sstream>

namespace {

using ph_test::IpmiSim;
using ph_test::Outcome;
using ph_test::phctl;
using ph_test::SimSensor;
using testing::HasSubstr;

constexpr std::uint8_t sensorSpecific = 0x6F;

std::vector<SimSensor> sensors() {
    auto all = ph_test::thresholdSensors(6);
    all[1].reading = 125; // above upper critical
    all[2] = {.number = 3, .name = "Fan 3", .type = 0x04, .reading = 33, .unit = 18, .m = 100};
    all[3] = {.number = 4, .name = "P12V", .type = 0x02, .reading = 201, .unit = 4, .m = 6, .rExponent = -2};
    all[4] = {.number = 5, .name = "Offset", .reading = 10, .m = 2, .b = 3, .rExponent = -1, .bExponent = 1};
    all[5] = {.number = 6,
              .name = "N12V",
              .type = 0x02,
              .reading = 20,
              .unit = 4,
              .m = 59,
              .b = -14,
              .rExponent = -3,
              .bExponent = 3};
    const std::vector<SimSensor> discrete = {
        {.number = 9, .name = "Fan slot", .type = 0x25, .eventReadingType = sensorSpecific, .states = 0x0001},
        {.number = 10, .name = "PSU", .type = 0x08, .eventReadingType = sensorSpecific, .states = 0x0003},
        {.number = 11, .name = "Intrusion", .type = 0x05, .eventReadingType = sensorSpecific, .states = 0},
        {.number = 12, .name = "Redundancy", .type = 0x08, .eventReadingType = 0x0B, .states = 0x0001},
        {.number = 13, .name = "Presence", .type = 0x15, .eventReadingType = 0x08, .states = 0x0002},
    };
    all.insert(all.end(), discrete.begin(), discrete.end());
    return all;
}

class PhctlPeer : public testing::Test {
protected:
    static void SetUpTestSuite() {
        bmc = std::make_unique<IpmiSim>(sensors());
        sysroot = std::make_unique<Sysroot>();
        setenv("PH_TEST_PASSWORD", bmc->settings().password.c_str(), 1);
        const Outcome outcome = sync({"--password-env", "PH_TEST_PASSWORD"});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }
    static void TearDownTestSuite() {
        bmc.reset();
        sysroot.reset();
    }

    static Outcome sync(const std::vector<std::string>& options) {
        const auto settings = bmc->settings();
        std::vector<std::string> arguments = {
            "sync",        "--lan",           settings.address + ':' + std::to_string(settings.port),
            "--user",      settings.userName, "--workaround",
            "opensesspriv"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return phctl(arguments);
    }

    static nlohmann::json instances(const char* className) {
        const Outcome outcome = phctl({"ei", className, "--json"});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.status == 0 ? outcome.json() : nlohmann::json::array();
    }

    static inline std::unique_ptr<IpmiSim> bmc;
    static inline std::unique_ptr<Sysroot> sysroot;
};

TEST_F(PhctlPeer, readingsAreThoseThatIpmitoolPrints) {
    std::map<std::string, double> witness; // "Temp 1,31,degrees C,ok"
    std::istringstream lines(bmc->ipmitool("-c sdr list full"));
    for (std::string name, reading, rest;
         std::getline(lines, name, ',') && std::getline(lines, reading, ',') && std::getline(lines, rest);)
        witness[name] = std::stod(reading);
    ASSERT_EQ(witness.size(), 6u);

    const auto published = instances("CIM_NumericSensor");
    EXPECT_EQ(published.size(), witness.size());
    for (const auto& instance : published) {
        const auto element = instance["properties"]["ElementName"].get<std::string>();
        const std::string name = element.substr(0, element.find('('));
        ASSERT_TRUE(witness.contains(name)) << name;
        // ipmitool prints three digits behind the point, of which CIM's hundredths have two.
        EXPECT_NEAR(instance["properties"]["CurrentReading"].get<double>() / 100, witness[name], 0.0051)
            << name;
    }
}

// The state bits of a sensor, in the answer of Get Sensor Reading that ipmitool prints as " 00 c0 01 80".
unsigned stateBits(const IpmiSim& bmc, int number) {
    std::istringstream bytes(bmc.ipmitool("raw 4 0x2d " + std::to_string(number)));
    unsigned reading = 0, flags = 0, low = 0, high = 0;
    bytes >> std::hex >> reading >> flags >> low >> high;
    EXPECT_FALSE(bytes.fail());
    return low | (high & 0x7F) << 8;
}

TEST_F(PhctlPeer, statesAreThoseThatIpmitoolReads) {
    std::map<int, unsigned> asserted, offsets; // by sensor number
    std::map<int, std::string> genericStates;
    for (const auto& instance : instances("CIM_Sensor")) {
        const auto& properties = instance["properties"];
        unsigned number = 0, type = 0, eventType = 0, offset = 0;
        ASSERT_EQ(std::sscanf(properties["DeviceID"].get<std::string>().c_str(),
                              "%*u.%u.%*u.%u.%x.%u:", &number, &type, &eventType, &offset),
                  4);
        const auto state = properties["CurrentState"].get<std::string>();
        if (eventType != sensorSpecific) {
            genericStates[static_cast<int>(number)] = state;
            continue;
        }
        if (!properties.contains(
                "PossibleStates")) { // the simulator's records claim more states than IPMI has
            EXPECT_EQ(state, "");
            continue;
        }
        offsets[static_cast<int>(number)] |= 1U << offset;
        if (state.ends_with(" Assert"))
            asserted[static_cast<int>(number)] |= 1U << offset;
        else
            EXPECT_THAT(state, testing::EndsWith(" Deassert"));
    }
    for (const SimSensor& sensor : sensors()) {
        if (sensor.eventReadingType != sensorSpecific)
            continue;
        const unsigned bits = stateBits(*bmc, sensor.number);
        EXPECT_EQ(asserted[sensor.number], bits) << sensor.name;
        EXPECT_GT(offsets[sensor.number], bits) << sensor.name; // and others that are not asserted
    }

    // A generic sensor is judged on its first state: so far CIM and ipmitool say the same.
    const std::string printed = bmc->ipmitool("sdr elist compact");
    EXPECT_EQ(genericStates[12], "Fully Redundant");
    EXPECT_THAT(printed, testing::ContainsRegex("Redundancy .*Fully Redundant"));
    EXPECT_EQ(genericStates[13], "No Events"); // first state: device absent
    EXPECT_THAT(printed, testing::ContainsRegex("Presence .*Present"));
}

// ipmitool's columns "Temperature Temp 1", "Upper Critical going high", "Asserted" and what it says of reading and
// threshold, in the words of phctl.
std::vector<std::string> listedEvents(const IpmiSim& bmc) {
    std::vector<std::string> events;
    std::istringstream lines(bmc.ipmitool("-c sel elist"));
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> cells;
        std::istringstream stream(line);
        for (std::string cell; std::getline(stream, cell, ',');)
            cells.push_back(cell);
        if (cells.size() < 6)
            continue;
        const std::size_t going = cells[4].find("going");
        cells[4].erase(cells[4].find_last_not_of(' ') + 1);
        cells[4].insert(going, "- ");
        std::string& event = events.emplace_back(cells[3].substr(cells[3].find(' ') + 1));
        event.append(": ").append(cells[4]);
        if (cells.size() > 6) // "Reading 125 > Threshold 120 degrees C"
            event.append(" (")
                .append(std::regex_replace(cells[6], std::regex("R(eading.*)T"), "r$1t"))
                .append(")");
        event.append(cells[5] == "Asserted" ? ", asserted" : ", deasserted");
    }
    return events;
}

TEST_F(PhctlPeer, eventsAreThoseThatIpmitoolLists) {
    for (const char* event : {"1 1 0x59", "2 0x81 0x57", "1 1 0x52"}) // sensor, direction and type, offset
        bmc->ipmitool("raw 0x0a 0x44 0 0 0x02 0x70 0x2a 0x36 0x66 0x20 0 4 1 " + std::string(event) +
                      " 0x7d 0x78"); // Add SEL Entry
    std::vector<std::string> published;
    const Outcome outcome = phctl({"ei", "CIM_LogEntry", "--properties", "RecordData"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    std::istringstream lines(outcome.out);
    for (std::string line; std::getline(lines, line);)
        if (const std::size_t meaning = line.rfind("  "); line.starts_with("*"))
            published.push_back(line.substr(meaning + 2));
    EXPECT_THAT(published, testing::SizeIs(3));
    EXPECT_EQ(published, listedEvents(*bmc));
}

TEST_F(PhctlPeer, aWrongPasswordIsRefusedAtOnceAndChangesNothing) {
    std::ofstream(sysroot->place("/tmp/password")) << "not-the-password\nsecond line\n";
    Outcome outcome;
    EXPECT_LT(seconds([&] { outcome = sync({"--password-file", sysroot->place("/tmp/password")}); }), 10);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("password invalid"));
    EXPECT_THAT(outcome.err, testing::Not(HasSubstr("not-the-password")));
    EXPECT_EQ(phctl({"sync"}).status, 0);
}

// The simulator wants a workaround, and has few cipher suites.
TEST_F(PhctlPeer, aRefusedSessionIsToldWithWhatMayHelp) {
    const auto settings = bmc->settings();
    const std::vector<std::string> session = {"power", "--lan",
                                              settings.address + ':' + std::to_string(settings.port),
                                              "--password-env", "PH_TEST_PASSWORD"};
    const struct {
        std::vector<std::string> options;
        const char* hint;
    } cases[] = {
        {{"--user", settings.userName}, "--workaround opensesspriv"},
        {{"--user", settings.userName, "--workaround", "opensesspriv", "--cipher-suite", "17"},
         "the BMC has the cipher suites "},
        {{"--workaround", "opensesspriv", "--user", "nobody"}, "check --user"},
    };
    for (const auto& [options, hint] : cases) {
        auto arguments = session;
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Outcome outcome = phctl(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(hint));
    }
}

TEST_F(PhctlPeer, aBmcThatHangsEndsTheSyncInTimeAndKeepsTheDatabase) {
    const auto before = instances("CIM_NumericSensor").size();
    bmc->pause();
    Outcome outcome;
    EXPECT_LT(seconds([&] { outcome = phctl({"sync", "--timeout", "3"}); }), 10);
    bmc->resume();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("phctl: "));
    EXPECT_EQ(instances("CIM_NumericSensor").size(), before);
}

} // namespace
