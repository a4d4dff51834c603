// `phctl sensors` against OpenIPMI's BMC simulator over RMCP+, with ipmitool as the witness of each reading.
#include "elapsed.h"
#include "ipmi_sim.h"
#include "phctl_program.h"
#include "sysroot_fixture.h"

#include <cmath>
#include <gmock/gmock.h>
#include <map>
#include <sstream>

namespace {

using ph_test::IpmiSim;
using ph_test::Outcome;
using ph_test::phctl;
using ph_test::SimSensor;

constexpr std::uint8_t twosComplement = 0x80, onesComplement = 0x40, percentage = 0x01, perSecond = 0x18;
constexpr std::uint8_t divide = 0x02, multiply = 0x04;

// Each line is a kind of number that sensors have.
std::vector<SimSensor> sensors() {
    std::vector<SimSensor> all = {
        {.name = "Plain", .reading = 31},
        {.name = "Two's complement", .reading = 0xF0, .units = twosComplement},
        {.name = "One's complement", .reading = 0xF0, .units = onesComplement},
        {.name = "Percent", .type = 0x04, .reading = 45, .unit = 0, .units = percentage},
        {.name = "Rate", .reading = 40, .unit = 72, .m = 100, .units = perSecond},
        {.name = "Product", .reading = 10, .unit = 6, .m = 3, .units = multiply, .modifierUnit = 24},
        {.name = "Quotient",
         .reading = 10,
         .unit = 4,
         .m = 7,
         .rExponent = -1,
         .units = divide,
         .modifierUnit = 22},
        {.name = "Zero + offset",
         .type = 0x02,
         .reading = 0,
         .unit = 4,
         .m = 2,
         .b = 3,
         .rExponent = -1,
         .bExponent = 1},
        {.name = "Large", .reading = 250, .unit = 6, .m = 500, .rExponent = 6},
        {.name = "Small", .reading = 3, .unit = 5, .m = 5, .rExponent = -3},
        {.name = "Negative",
         .type = 0x02,
         .reading = 20,
         .unit = 4,
         .m = 59,
         .b = -14,
         .rExponent = -3,
         .bExponent = 3},
        {.name = "Critical", .reading = 125},
        {.name = "Non-critical", .reading = 15},
        {.name = "Non-recoverable", .reading = 140},
    };
    constexpr const char* functions[] = {"ln",  "log10",  "log2", "e^x",  "10^x",     "2^x",
                                         "1/x", "square", "cube", "root", "cube root"}; // 01h to 0Bh
    for (std::uint8_t function = 1; const char* name : functions)
        all.push_back(
            {.name = name, .reading = 12, .unit = 20, .m = 5, .rExponent = -1, .linearization = function++});
    for (std::uint8_t number = 1; SimSensor & sensor : all)
        sensor.number = number++;
    return all;
}

std::vector<std::string> split(const std::string& line) {
    std::vector<std::string> cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, ',');)
        cells.push_back(cell);
    return cells;
}

std::string withoutBlanks(std::string text) {
    std::erase(text, ' ');
    return text;
}

// ipmitool prints three digits behind the point.
void expectAlike(const nlohmann::json& number, const std::string& witness, const std::string& line) {
    ASSERT_TRUE(number.is_number()) << line;
    const double value = std::stod(witness);
    EXPECT_NEAR(number.get<double>(), value, 0.000501 + std::abs(value) * 1e-12) << line;
}

class SensorsPeer : public testing::Test {
protected:
    void SetUp() override {
        const auto settings = bmc.settings();
        const Outcome synced =
            phctl({"sync", "--lan", settings.address + ':' + std::to_string(settings.port), "--user",
                   settings.userName, "--workaround", "opensesspriv", "--password", settings.password});
        ASSERT_EQ(synced.status, 0) << synced.err;
    }

    const IpmiSim bmc{sensors()};
    const Sysroot sysroot;
};

TEST_F(SensorsPeer, readingsAndStatesAreThoseThatIpmitoolPrints) {
    const Outcome outcome = phctl({"sensors", "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const auto published = outcome.json();
    // "Plain,31.000,degrees C,ok" with the six thresholds behind it, the lowest first
    const std::map<std::string, std::string> states = {
        {"ok", "nominal"}, {"nc", "warning"}, {"cr", "critical"}, {"nr", "critical"}};
    constexpr const char* thresholds[] = {"lowerNonRecoverable", "lowerCritical", "lowerNonCritical",
                                          "upperNonCritical",    "upperCritical", "upperNonRecoverable"};
    std::size_t compared = 0;
    std::istringstream lines(bmc.ipmitool("-c sensor list"));
    for (std::string line; std::getline(lines, line); ++compared) {
        const auto cells = split(line);
        ASSERT_EQ(cells.size(), 10u) << line;
        ASSERT_LT(compared, published.size());
        const auto& sensor = published[compared];
        EXPECT_EQ(sensor["name"], cells[0]);
        expectAlike(sensor["reading"], cells[1], line);
        // ipmitool leaves the rate out.
        EXPECT_THAT(withoutBlanks(sensor["unit"]), testing::StartsWith(withoutBlanks(cells[2])));
        EXPECT_EQ(sensor["state"], states.at(cells[3])) << line;
        for (std::size_t i = 0; const char* name : thresholds)
            expectAlike(sensor["thresholds"][name], cells[4 + i++], line);
    }
    EXPECT_EQ(compared, sensors().size());
}

TEST_F(SensorsPeer, metricsComeInTimeFromABmcThatHangs) {
    EXPECT_THAT(phctl({"metrics"}).out, testing::HasSubstr("ipmi_up{collector=\"ipmi\"} 1\n"));
    bmc.pause();
    Outcome outcome;
    EXPECT_LT(seconds([&] { outcome = phctl({"metrics", "--timeout", "3"}); }), 5);
    bmc.resume();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::HasSubstr("ipmi_up{collector=\"ipmi\"} 0\n"));
}

} // namespace
