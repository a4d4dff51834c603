#include "ipmi-view/sensors.h"

#include "scripted_transport.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using view::Severity;

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t sensorSpecific = 0x6F;

view::SensorRow temperature() {
    view::SensorRow sensor{.name = "Temp", .number = 7, .type = 0x01, .readingType = 0x01};
    sensor.conversion.emplace();
    sensor.thresholds = {.mask = 0x3A, .raw = {0, 10, 0, 80, 90, 100}};
    return sensor;
}

view::SensorRow discrete(std::uint8_t type, std::uint8_t readingType) {
    return {.name = "State", .number = 7, .type = type, .readingType = readingType};
}

TEST(Conversion, namesTheWholeUnit) {
    const struct {
        std::uint8_t units, base, modifier;
        const char* text;
    } cases[] = {{0x00, 1, 0, "degrees C"},
                 {0x01, 0, 0, "percent"},
                 {0x01, 18, 0, "% RPM"},
                 {0x18, 7, 0, "Joules per s"},
                 {0x04, 6, 24, "Watts * hour"},
                 {0x02, 4, 22, "Volts / second"},
                 {0x00, 0, 0, ""},
                 {0x00, 93, 0, "reserved unit"},
                 {0xC0, 1, 9, "degrees C"}};
    for (const auto& [units, base, modifier, text] : cases) {
        const view::Conversion conversion{.units = units, .baseUnit = base, .modifierUnit = modifier};
        EXPECT_EQ(conversion.unit(), text);
        EXPECT_EQ(conversion.isPlain(), (units & 0x3F) == 0) << text;
    }
}

TEST(Conversion, writesNumbersThatPeopleRead) {
    const std::pair<double, const char*> cases[] = {
        {53, "53"},        {12.06, "12.06"},          {-0.0, "0"},
        {3.2984, "3.298"}, {0.0512345, "0.0512"},     {-0.5, "-0.5"},
        {4.0004, "4"},     {1.25e11, "125000000000"}, {1e21, "1e+21"},
        {1.0 / 0.0, "inf"}};
    for (const auto& [number, text] : cases)
        EXPECT_EQ(view::readingText(number), text);
}

TEST(SensorReading, tellsWhyThereIsNone) {
    const std::pair<Bytes, const char*> cases[] = {
        {{0xCB}, "requested sensor, data or record not present (CBh)"},
        {{0x00, 50, 0xE0, 0xC0}, "reading unavailable"},
        {{0x00, 50, 0x80, 0xC0}, "scanning disabled"},
        {{0x00, 50}, "the answer is too short"}};
    for (const auto& [answer, problem] : cases) {
        const auto reading = view::decodeReading(temperature(), answer);
        EXPECT_EQ(reading.problem, problem);
        EXPECT_FALSE(reading.value) << problem;
        EXPECT_EQ(reading.severity, Severity::Unknown) << problem;
    }
}

TEST(SensorReading, takesTheStateOfTheBmcAndComparesOnlyWhereItTellsNone) {
    const struct {
        Bytes answer;
        Severity severity;
        std::vector<std::string> events;
    } cases[] = {
        {{0x00, 50, 0xC0, 0xC0}, Severity::Nominal, {}},
        {{0x00, 50, 0xC0, 0xC8}, Severity::Warning, {"Upper Non-Critical"}}, // hysteresis holds it
        {{0x00, 95, 0xC0, 0xC0}, Severity::Nominal, {}},                     // not re-armed
        {{0x00, 50, 0xC0}, Severity::Nominal, {}},
        {{0x00, 80, 0xC0}, Severity::Warning, {"Upper Non-Critical"}},
        {{0x00, 90, 0xC0}, Severity::Critical, {"Upper Non-Critical", "Upper Critical"}},
        {{0x00, 10, 0xC0}, Severity::Critical, {"Lower Critical"}},
        {{0x00, 0, 0xC0}, Severity::Critical, {"Lower Critical"}}, // the others do not exist
    };
    for (const auto& [answer, severity, events] : cases) {
        const auto reading = view::decodeReading(temperature(), answer);
        EXPECT_EQ(reading.value, answer[1]);
        EXPECT_EQ(reading.severity, severity) << testing::PrintToString(answer);
        EXPECT_EQ(reading.events, events) << testing::PrintToString(answer);
    }
}

TEST(SensorReading, judgesDiscreteStates) {
    const struct {
        std::uint8_t type, readingType;
        std::uint16_t states;
        Severity severity;
    } cases[] = {
        {0x08, sensorSpecific, 0x0001, Severity::Nominal},  // supply present
        {0x08, sensorSpecific, 0x0003, Severity::Critical}, // and failed
        {0x04, 0x0B, 0x0002, Severity::Critical},           // redundancy lost
        {0x21, 0x0B, 0x0004, Severity::Warning},            // degraded, of a type that FreeIPMI leaves open
        {0x07, 0x06, 0x0001, Severity::Nominal},            // performance met
        {0x07, 0x06, 0x0002, Severity::Critical},           // lags
        {0x20, sensorSpecific, 0x0002, Severity::Critical}, // the operating system stopped
        {0x03, 0x03, 0x0002, Severity::Unknown},            // asserted: what, nobody says
        {0x08, 0x70, 0x0001, Severity::Unknown},            // OEM
    };
    for (const auto& [type, readingType, states, severity] : cases)
        EXPECT_EQ(view::severityOf(readingType, type, states), severity)
            << unsigned{type} << ' ' << unsigned{readingType} << ' ' << states;

    const auto reading = view::decodeReading(discrete(0x08, 0x0B), Bytes{0x00, 0x00, 0xC0, 0x01, 0x80});
    EXPECT_THAT(reading.events, ElementsAre("Fully Redundant"));
    EXPECT_FALSE(reading.value);
    const auto high = view::decodeReading(discrete(0x01, 0x70), Bytes{0x00, 0x00, 0xC0, 0x00, 0x81});
    EXPECT_THAT(high.events, ElementsAre("state 8 of event type 70h"));
}

// A transport that answers in turn.
struct SequenceTransport : ipmi::Transport {
    std::vector<Bytes> answers;
    std::vector<Bytes> requests;

    std::size_t exchange(std::uint8_t, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> out) override {
        requests.push_back({command});
        requests.back().insert(requests.back().end(), request.begin(), request.end());
        const Bytes& answer = answers.at(requests.size() - 1);
        std::ranges::copy(answer, out.begin());
        return answer.size();
    }
};

TEST(SensorReading, asksForTheFactorsOfANonLinearReading) {
    view::SensorRow sensor = temperature();
    sensor.conversion->factors.linearization = 0x70;
    const Bytes reading = {0x00, 50, 0xC0, 0xC0};
    SequenceTransport bmc;
    // M = -2, B = 300, result exponent -1, B exponent 1
    bmc.answers = {reading, {0x00, 0xFF, 0xFE, 0xC0, 0x2C, 0x40, 0x00, 0xF1}};
    EXPECT_DOUBLE_EQ(view::readSensor(bmc, sensor).value.value(), 290);
    EXPECT_THAT(bmc.requests, ElementsAre(Bytes{0x2D, 7}, Bytes{0x23, 7, 50}));

    SequenceTransport without;
    without.answers = {reading, {0xC1}};
    EXPECT_DOUBLE_EQ(view::readSensor(without, sensor).value.value(), 50);
}

TEST(SensorThresholds, areThoseThatTheBmcTellsOrThoseOfTheRecord) {
    ScriptedTransport bmc;
    bmc.answer = {0x00, 0xC9, 1, 0, 0, 4, 0, 0};
    const auto told = view::readThresholds(bmc, temperature());
    EXPECT_EQ(told.mask, 0x09);
    EXPECT_THAT(told.raw, ElementsAre(1, 0, 0, 4, 0, 0));
    for (const Bytes& answer : {Bytes{0xCD}, Bytes{0x00, 0x3F, 1, 2}}) {
        bmc.answer = answer;
        EXPECT_EQ(view::readThresholds(bmc, temperature()).mask, 0x3A);
    }
}

} // namespace
