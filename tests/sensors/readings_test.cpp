// From raw readings to numbers, and the identity of the sensor that is read.
#include "records.h"

#include <cmath>
#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAreArray;

TEST(Conversion, OfRawReadings) {
    const struct {
        int format;
        int m;
        int b;
        int exponents; // K2, K1
        int raw;
        float value;
        int result = 0;
    } cases[] = {
        {0, 1, 0, 0x00, 200, 200.0F},
        {0, 1, 0, 0x00, 0, 0.0F},
        {1, 1, 0, 0x00, 0xFF, 0.0F},
        {1, 1, 0, 0x00, 0xFE, -1.0F},
        {1, 1, 0, 0x00, 0x80, -127.0F},
        {1, 1, 0, 0x00, 0x7F, 127.0F},
        {2, 1, 0, 0x00, 0xFF, -1.0F},
        {2, 1, 0, 0x00, 0x80, -128.0F},
        {2, 1, 0, 0x00, 0x7F, 127.0F},
        {0, 2, 3, 0xF1, 10, 5.0F},
        {0, 1, -5, 0x0F, 10, 9.5F},
        {0, 0, 1, 0x07, 255, 1e7F},
        {0, 0, 1, 0x08, 255, 1.0F / 1e8F},
        {0, 3, 0, 0x70, 1, 3e7F},
        {0, 100, 0, 0xE0, 37, 3700.0F * (1.0F / 100.0F)},
        {2, -512, 511, 0x22, 0x80, 11663600.0F},
        {3, 2, 3, 0xF1, 10, 10.0F, -1},
        {-1, 2, 3, 0xF1, 0xFF, 255.0F, -1},
    };
    for (const auto& [format, m, b, exponents, raw, value, result] : cases) {
        PHConversionFactors factors;
        std::snprintf(factors.analogFormat, sizeof(factors.analogFormat), "%d", format);
        std::snprintf(factors.m, sizeof(factors.m), "%d", m);
        std::snprintf(factors.b, sizeof(factors.b), "%d", b);
        std::snprintf(factors.exponents, sizeof(factors.exponents), "%d", exponents);
        float converted = NAN;
        EXPECT_EQ(PH_ConvertReading(&factors, std::to_string(raw).c_str(), &converted), result);
        EXPECT_EQ(converted, value) << "raw " << raw << " format " << format;

        const auto record = makeRecord<NumericSensorRecord>();
        record->analogFormat = format;
        record->m = m;
        record->b = b;
        record->exponents = exponents;
        EXPECT_EQ(PH_ConvertRawReading(raw, record.get()), value) << "raw " << raw << " format " << format;
    }
}

TEST(Conversion, OfTextsThatAreNoNumbers) {
    float converted = NAN;
    const PHConversionFactors factors{"", "0x10", "7 apples", "-0"};
    EXPECT_EQ(PH_ConvertReading(&factors, "99999999999", &converted), 0);
    EXPECT_EQ(converted, 7.0F);
}

TEST(Thresholds, ListedByBit) {
    const struct {
        unsigned bits;
        std::vector<int> list;
    } cases[] = {
        {0x3F, {0, 2, 4, 1, 3, 5, -1}},
        {0x09, {0, 1, -1, -1, -1, -1, -1}},
        {0x40, {-1, -1, -1, -1, -1, -1, -1}},
    };
    for (const auto& [bits, list] : cases) {
        const auto record = makeRecord<NumericSensorRecord>();
        record->sensor.supportedStates = bits;
        EXPECT_EQ(PH_Fill_Settable_SupportedThresholds_NumericSensor(record.get()), 0);
        EXPECT_THAT(record->SupportedThresholds, ElementsAreArray(list));
        EXPECT_THAT(record->SettableThresholds, ElementsAreArray(list));
    }
}

TEST(DeviceId, IsTakenApart) {
    const struct {
        const char* text;
        std::vector<std::string> parts;
    } cases[] = {
        {"32.17.0.1.01.99:Temp", {"32", "17", "0", "1", "01", "99", "Temp"}},
        {"32.17.0.1.6f.3:CPU 1.Temp", {"32", "17", "0", "1", "6f", "3", "CPU"}},
        {"32.17.0.1.6f.3: Temp", {"32", "17", "0", "1", "6f", "3", "Temp"}},
        {"1234.99999.0.1.6f6.1000:x", {"123", "999", "0", "1", "6f6", "100", "x"}},
        {"32.17.0.1.01.99", {"32", "17", "0", "1", "01", "99", ""}},
        {"32.17.0.1.01.9.9:Temp", {"32", "17", "0", "1", "01", "9", ""}},
        {"32.17.0.1.01.:Temp", {"32", "17", "0", "1", "01", "", ""}},
        {"32..0.1.01.99:Temp", {"32", "", "", "", "", "", ""}},
        {"a:b", {"a:b", "", "", "", "", "", ""}},
        {"", {"", "", "", "", "", "", ""}},
        {"1.2.3.4.5.6:0123456789012345678901234567890123456789",
         {"1", "2", "3", "4", "5", "6", "0123456789012345678901234567890"}},
    };
    for (const auto& [text, parts] : cases) {
        PHSensorDeviceId id;
        EXPECT_EQ(PH_Parse_Sensor_DeviceID(text, &id), 0);
        const std::vector<std::string> found = {
            id.ownerId, id.sensorNumber, id.ownerLun, id.sensorType, id.eventReadingType, id.offset, id.name};
        EXPECT_EQ(found, parts) << text;
    }
}

} // namespace
