// Both sensor classes: readings become states and numbers, unreadable sensors are left out, what is opened is
// closed.
#include "class_fixture.h"

namespace {

using broker::Reply;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

TEST_F(SensorClasses, StatesAndHealthOfAReading) {
    // CurrentState, EnabledState, OperationalStatus, HealthState; of a numeric sensor the reading too.
    const std::vector<std::string> unreadable{"", "2", "{0}", "0", "0"},
        unavailable{"Unknown", "5", "{11}", "0", "0"}, good{"Good", "2", "{2}", "5"},
        unknown{"Unknown", "5", "{2}", "5"}, low{"Lower Non-Critical", "2", "{2}", "5", "300"},
        normal{"Normal", "2", "{2}", "5", "300"};
    const std::tuple<std::optional<CIM_SensorReading>, std::vector<std::string>, std::vector<std::string>>
        cases[] = {
            {std::nullopt, unreadable, unreadable},
            {CIM_SensorReading{0xCB, 1, 0xC0, 1, 0x80}, unreadable, unreadable},
            {makeReading(3, 1, 0xE0), unavailable, unavailable},
            {makeReading(3, 1), good, low},
            {makeReading(3, 0x38), unknown, normal},
            {makeReading(3, 0), unknown, normal}, // the reserved bit is no state
            {makeReading(3, 1, 0x00), good, low}, // scanning is off
        };
    sensors = {makeCompactSdr("Limit", 17, 0x01, 0x05)};
    numericSensors = {makeFullSdr("Inlet", 18)};
    for (const auto& [answer, discreteState, numericState] : cases) {
        readings.clear();
        if (answer)
            readings = {{17, *answer}, {18, *answer}};
        const auto stateOf = [](const broker::Instance& sensor) {
            std::vector<std::string> state;
            for (const char* name :
                 {"CurrentState", "EnabledState", "OperationalStatus", "HealthState", "CurrentReading"})
                state.push_back(textOf(sensor, name));
            return state;
        };
        auto ofDiscrete = discreteState;
        ofDiscrete.resize(4);
        ofDiscrete.push_back("<none>");
        EXPECT_EQ(stateOf(only(discrete)), ofDiscrete);
        EXPECT_EQ(stateOf(only(numeric)), numericState);
    }
}

TEST_F(SensorClasses, DiscreteSensorWithAllProperties) {
    CompactSdr sdr = makeCompactSdr("PSU 1", 17, 0x08, 0x6F, 1);
    std::snprintf(sdr.otherSensorType, sizeof(sdr.otherSensorType), "Power Supply");
    sdr.entityId = 10;
    sensors = {sdr};
    readings[17] = makeReading(0, 0x02);
    EXPECT_THAT(
        propertiesOf(only(discrete)),
        ElementsAre("SystemCreationClassName=CIM_HostComputerSystem", "SystemName=server",
                    "CreationClassName=CIM_Sensor", "DeviceID=32.17.0.8.6f.1:PSU 1", "SensorType=1",
                    "OtherSensorTypeDescription=Power Supply", "HealthState=5", "OperationalStatus={2}",
                    "PossibleStates={\"Power Supply Failure detected Assert\", \"Power Supply Failure "
                    "detected Deassert\", \"Unknown\"}",
                    "CurrentState=Power Supply Failure detected Assert", "Caption=PowerSupply(17.32.0)",
                    "Description=PSU 1(17.32.0):PowerSupply for Power Supply 1", "ElementName=PSU 1(17.32.0)",
                    "RequestedState=12", "EnabledState=2"));
}

// Sensors of a row each, and one of several: the first has number 0, another cannot be read.
TEST_F(SensorClasses, StatesOfOneSensorShareItsReading) {
    sensors = {makeCompactSdr("First", 0, 0x07, 0x6F, 7), makeCompactSdr("PSU", 5, 0x08, 0x6F, 0),
               makeCompactSdr("PSU", 5, 0x08, 0x6F, 1),   makeCompactSdr("Lost", 6, 0x08, 0x6F, 1),
               makeCompactSdr("Lost", 6, 0x08, 0x6F, 3),  makeCompactSdr("PSU", 5, 0x08, 0x6F, 2)};
    readings = {{0, makeReading(0)}, {5, makeReading(0, 0x02)}};
    const Reply reply = discrete.enumerate();
    EXPECT_THAT(readNumbers(), ElementsAre("CIM_ReadSensorsAhead(*, 4, 30)", reading(0), reading(5),
                                           reading(6), reading(5)));
    EXPECT_THAT(textsOf(reply.instances, "CurrentState"),
                ElementsAre("Processor Presence detected Deassert", "Presence detected Deassert",
                            "Power Supply Failure detected Assert", "Predictive Failure Deassert"));
    EXPECT_EQ(std::ranges::count(platformCalls.made, "CIM_Create_IPMI20_Session"), 1);
}

TEST_F(SensorClasses, UnreadableOnesAreLeftOut) {
    for (const int number : {1, 2, 3}) {
        const std::string name = "S" + std::to_string(number);
        sensors.push_back(makeCompactSdr(name.c_str(), number, 0x08, 0x0B));
        numericSensors.push_back(makeFullSdr(name.c_str(), number));
    }
    readings = {{1, makeReading(10)}, {3, makeReading(30)}};
    for (const ClassRequests* requests : {&discrete, &numeric}) {
        EXPECT_THAT(textsOf(requests->enumerate().instances, "ElementName"),
                    ElementsAre("S1(1.32.0)", "S3(3.32.0)"));
        EXPECT_THAT(textsOf(requests->instanceArray().value(), "ElementName"),
                    ElementsAre("S1(1.32.0)", "S3(3.32.0)"));
        readNumbers();
        const auto paths = requests->names().paths;
        EXPECT_THAT(readNumbers(), IsEmpty());
        ASSERT_EQ(paths.size(), 3U);
        EXPECT_THAT(textsOf(requests->get(paths[1]).instances, "ElementName"), ElementsAre("S2(2.32.0)"));
        EXPECT_THAT(readNumbers(), ElementsAre(reading(2)));

        platformCalls.broken = {"CIM_Create_IPMI20_Session"};
        EXPECT_THAT(requests->enumerate(), Refuses(CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance"));
        EXPECT_THAT(requests->get(paths[0]), Refuses(CMPI_RC_ERR_FAILED, "Failed to Get Instance"));
        EXPECT_EQ(requests->names().paths, paths);
        platformCalls.broken = {"CIM_GetSensorReading"};
        EXPECT_TRUE(requests->enumerate().ok());
        EXPECT_TRUE(requests->get(paths[0]).ok());
        platformCalls.broken = {"OEM_GetHostSystemName", "db_get_device_bytype"};
        EXPECT_EQ(requests->names().message, "Failed to Enumerate Instance Names");
        platformCalls.broken = {};
    }
    sensors.clear();
    numericSensors.clear();
    platformCalls.broken = {"CIM_Create_IPMI20_Session"};
    for (const ClassRequests* requests : {&discrete, &numeric})
        EXPECT_TRUE(requests->enumerate().ok()) << "no sensors need no session";
}

TEST_F(SensorClasses, SkippingGoesByTheStatusAlone) {
    EXPECT_EQ(IsSkipUnkwonError("", nullptr, 0), 1);
    EXPECT_EQ(IsSkipUnkwonError("32.1.0.1.01.99:x", "SDR", 2), 0);
    EXPECT_EQ(IsSkipUnkwonError("32.1.0.1.01.99:x", "SDR", 11), 0);
}

std::vector<std::string> describe(const broker::Instance& instance) {
    std::vector<std::string> lines;
    for (const auto& [name, value] : instance.properties)
        lines.push_back(name + " " + broker::typeName(value.type) + " " + broker::toText(value));
    return lines;
}

TEST_F(SensorClasses, NumericSensorWithAllProperties) {
    FullSdr sdr = makeFullSdr("Inlet", 17);
    sdr.common.supportedStates = 0x22;
    sdr.baseUnits = 1;
    sdr.rateUnits = 3;
    sdr.analogFormat = 2;
    sdr.m = 5;
    sdr.b = -20;
    sdr.exponents = 0xF0;
    sdr.nominalReading = 10;
    sdr.normalMax = 20;
    sdr.normalMin = 0;
    sdr.maxReadable = 127;
    sdr.minReadable = 128;
    sdr.hysteresis = 6;
    sdr.lowerNonCritical = 1;
    sdr.lowerCritical = 2;
    sdr.lowerNonRecoverable = 3;
    sdr.upperNonCritical = 4;
    sdr.upperCritical = 5;
    sdr.resolution = 50;
    sdr.tolerance = 25;
    sdr.accuracy = -7;
    sdr.isLinear = 1;
    numericSensors = {sdr};
    readings[17] = makeReading(30, 0xC2);

    EXPECT_THAT(describe(only(numeric)),
                ElementsAreArray({
                    "SystemCreationClassName string CIM_HostComputerSystem",
                    "SystemName string server",
                    "CreationClassName string CIM_NumericSensor",
                    "DeviceID string 32.17.0.1.01.99:Inlet",
                    "SensorType uint16 2",
                    "OtherSensorTypeDescription string ",
                    "HealthState uint16 5",
                    "OperationalStatus uint16[] {2}",
                    R"(PossibleStates string[] {"Lower Critical", "Upper Fatal", "Normal", "Unknown"})",
                    "CurrentState string Lower Critical",
                    "Caption string Temperature(17.32.0)",
                    "Description string Inlet(17.32.0):Temperature for System Board 1",
                    "ElementName string Inlet(17.32.0)",
                    "RequestedState uint16 12",
                    "EnabledState uint16 2",
                    "CurrentReading sint32 1300",
                    "BaseUnits uint16 1",
                    "UnitModifier sint32 0",
                    "RateUnits uint16 3",
                    "NominalReading sint32 300",
                    "NormalMax sint32 800",
                    "NormalMin sint32 0",
                    "MaxReadable sint32 6150",
                    "MinReadable sint32 -6600",
                    "Resolution uint32 50",
                    "Tolerance sint32 25",
                    "Accuracy sint32 -7",
                    "IsLinear boolean TRUE",
                    "Hysteresis uint32 100",
                    "SupportedThresholds uint16[] {2, 5}",
                    "EnabledThresholds uint16[] {2, 5}",
                    "SettableThresholds uint16[] {2, 5}",
                    "LowerThresholdCritical sint32 -100",
                    "UpperThresholdFatal sint32 -200",
                }));
}

TEST_F(SensorClasses, ThresholdsArePublishedWhenSupported) {
    constexpr const char* byBit[] = {"LowerThresholdNonCritical", "LowerThresholdCritical",
                                     "LowerThresholdFatal",       "UpperThresholdNonCritical",
                                     "UpperThresholdCritical",    "UpperThresholdFatal"};
    for (unsigned bits : {0x00U, 0x01U, 0x02U, 0x04U, 0x08U, 0x10U, 0x20U, 0x3FU}) {
        FullSdr sdr = makeFullSdr("Inlet", 17);
        sdr.common.supportedStates = bits;
        sdr.lowerNonCritical = 1;
        sdr.lowerCritical = 2;
        sdr.lowerNonRecoverable = 3;
        sdr.upperNonCritical = 4;
        sdr.upperCritical = 5;
        sdr.upperNonRecoverable = 6;
        numericSensors = {sdr};
        const broker::Instance instance = only(numeric);
        for (unsigned bit = 0; bit < 6; ++bit)
            EXPECT_EQ(textOf(instance, byBit[bit]),
                      (bits >> bit & 1) != 0 ? std::to_string((bit + 1) * 100) : "<none>")
                << byBit[bit] << " of " << bits;
    }
}

TEST_F(SensorClasses, NumbersAreHundredfoldAndRounded) {
    const struct {
        int format;
        int m;
        int b;
        int exponents;
        int raw;
        const char* reading; // also of the other published readings
        const char* hysteresis;
        const char* threshold;
        const char* unitModifier;
    } cases[] = {
        {0, 1, 0, 0x00, 200, "20000", "20000", "20000", "-2"},
        {0, 1, 20, 0x00, 0, "0", "0", "2000", "-2"}, // a raw 0 is 0, except in thresholds
        {1, 1, 0, 0x00, 0xFE, "-100", "4294967196", "-100", "-1"},
        {2, 1, 0, 0x00, 0xFF, "-100", "4294967196", "-100", "0"},
        {3, 7, 7, 0x11, 9, "900", "900", "900", "1"},
        {0, 2, 3, 0xF1, 10, "500", "500", "500", "-2"},
        {0, 1, 0, 0xD0, 15, "2", "2", "2", "-2"}, // 1.5, 2.5 and 10.5: to the even number
        {0, 1, 0, 0xD0, 25, "2", "2", "2", "-2"},
        {0, 1, 0, 0xD0, 105, "10", "10", "10", "-2"},
        {0, 1, 0, 0xD0, 26, "3", "3", "3", "-2"},
        {0, 511, 0, 0x70, 255, "2147483647", "4294967295", "2147483647", "-2"}, // at most what CIM has
        {0, -512, 0, 0x70, 255, "-2147483648", "2147483648", "-2147483648", "-2"},
    };
    for (const auto& [format, m, b, exponents, raw, reading, hysteresis, threshold, unitModifier] : cases) {
        FullSdr sdr = makeFullSdr("Inlet", 17);
        sdr.analogFormat = format;
        sdr.m = m;
        sdr.b = b;
        sdr.exponents = exponents;
        const auto byte = static_cast<uint8_t>(raw);
        sdr.nominalReading = sdr.normalMax = sdr.normalMin = sdr.maxReadable = sdr.minReadable = byte;
        sdr.hysteresis = sdr.lowerNonCritical = byte;
        numericSensors = {sdr};
        readings[17] = makeReading(raw);
        const broker::Instance instance = only(numeric);
        SCOPED_TRACE(::testing::Message()
                     << "raw " << raw << " format " << format << " exponents " << exponents);
        for (const char* name :
             {"CurrentReading", "NominalReading", "NormalMax", "NormalMin", "MaxReadable", "MinReadable"})
            EXPECT_EQ(textOf(instance, name), reading) << name;
        EXPECT_EQ(textOf(instance, "Hysteresis"), hysteresis);
        EXPECT_EQ(textOf(instance, "LowerThresholdNonCritical"), threshold);
        EXPECT_EQ(textOf(instance, "UnitModifier"), unitModifier);
    }
}

} // namespace
