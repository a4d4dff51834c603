// CIM_NumericSensor: what is published, and the numbers.
#include "class_fixture.h"

namespace {

using ::testing::ElementsAreArray;

std::vector<std::string> describe(const broker::Instance& instance) {
    std::vector<std::string> lines;
    for (const broker::NamedValue& property : instance.properties)
        lines.push_back(property.name + " " + broker::typeName(property.value.type) + " " +
                        broker::toText(property.value));
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
    platform.numericSensors = {sdr};
    platform.readings[17] = makeReading(30, 0xC2);

    const broker::Reply reply = numeric.enumerate();
    ASSERT_EQ(reply.instances.size(), 1U) << reply.message;
    EXPECT_EQ(
        broker::toText(reply.instances[0].path),
        "root/cimv2:CIM_NumericSensor.SystemCreationClassName=\"CIM_HostComputerSystem\","
        "SystemName=\"rack7\",CreationClassName=\"CIM_NumericSensor\",DeviceID=\"32.17.0.1.01.99:Inlet\"");
    EXPECT_THAT(describe(reply.instances[0]),
                ElementsAreArray({
                    "SystemCreationClassName string CIM_HostComputerSystem",
                    "SystemName string rack7",
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
        platform.numericSensors = {sdr};
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
        platform.numericSensors = {sdr};
        platform.readings[17] = makeReading(raw);
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
