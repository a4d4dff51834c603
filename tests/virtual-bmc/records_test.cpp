// Sensor data records, byte by byte, and FRU images.
#include "virtual_bmc_fixture.h"

namespace {

using testing::ElementsAreArray;

class Records : public VirtualBmcFixture {
protected:
    // The only record of a repository.
    Bytes record(const std::string& model) const {
        create(model);
        Bytes answer = ask(*open(), 0x0A, 0x23, {0, 0, 0, 0, 0, 0xFF});
        answer.erase(answer.begin(), answer.begin() + 3); // completion code, next record
        return answer;
    }
};

TEST_F(Records, areThoseOfTheModel) {
    const struct {
        const char* name;
        const char* model;
        Bytes bytes;
    } cases[] = {
        {"full, all fields",
         R"({"sensors": [{"number": 9, "name": "Full", "type": "Voltage", "entity": 3, "entityInstance": 2, "oem": 7,
             "analog": {"format": "twos-complement", "unit": "volts", "modifierUnit": "s", "modifierUse": "divide",
                        "per": "ms", "linearization": "sqrt", "m": -300, "b": 511, "bExponent": -3,
                        "resultExponent": 4, "tolerance": 63, "accuracy": 1023, "accuracyExponent": 3,
                        "nominal": "0x11", "normalMax": "0x22", "normalMin": "0x33", "max": "0x44", "min": "0x55"},
             "thresholds": {"lowerNonCritical": "0x01", "lowerCritical": "0x02", "lowerNonRecoverable": "0x03",
                            "upperNonCritical": "0x04", "upperCritical": "0x05", "upperNonRecoverable": "0x06",
                            "positiveHysteresis": 8, "negativeHysteresis": 9}}]})",
         {1,    0,    0x51, 0x01, 47,   0x20, 0,    9,    3,    2,    0x7F, 0x68, 0x02,
          0x01, 0x95, 0x7A, 0x95, 0x7A, 0x3F, 0x3F, 0x92, 4,    22,   0x0A, 0xD4, 0xBF,
          0xFF, 0x7F, 0xFC, 0x4D, 0x07, 0x11, 0x22, 0x33, 0x44, 0x55, 6,    5,    4,
          3,    2,    1,    8,    9,    0,    0,    7,    0xC4, 'F',  'u',  'l',  'l'}},
        {"full, defaults of a signed sensor",
         R"({"sensors": [{"number": 1, "name": "T", "analog": {"format": "ones-complement", "percentage": true}}]})",
         {1,    0,    0x51, 0x01, 45, 0x20, 0, 1, 7, 1, 0x7F, 0x60, 0x01, 0x01, 0,   0,  0,
          0,    0,    0,    0x41, 0,  0,    0, 1, 0, 0, 0,    0,    0,    0,    0,   0,  0,
          0x7F, 0x80, 0,    0,    0,  0,    0, 0, 0, 0, 0,    0,    0,    0xC2, 'T', ' '}},
        {"thresholds that cannot be set",
         R"({"sensors": [{"number": 1, "name": "", "thresholds": {"upperCritical": 200, "settable": false}}]})",
         {1,    0,    0x51, 0x01, 43,   0x20, 0, 1, 7, 1, 0x7F, 0x64, 0x01, 0x01, 0x00, 0x02,
          0x00, 0x22, 0x10, 0x00, 0x00, 0,    0, 0, 1, 0, 0,    0,    0,    0,    0,    0,
          0,    0,    0xFF, 0x00, 0,    200,  0, 0, 0, 0, 0,    0,    0,    0,    0,    0xC0}},
        {"compact, shared",
         R"({"sensors": [{"number": 5, "name": "DIMM", "type": "Memory", "readingType": "sensor-specific",
             "record": "compact", "supportedStates": [0, 6, 14], "entity": 32,
             "sharing": {"count": 15, "alphabetic": true, "offset": 127, "entityIncrements": true}}]})",
         {1,    0,    0x51, 0x02, 31, 0x20, 0,    5, 32, 1, 0x7F, 0x40, 0x0C, 0x6F, 0x41, 0x40, 0x41, 0x40,
          0x41, 0x40, 0xC0, 0,    0,  0x1F, 0xFF, 0, 0,  0, 0,    0,    0,    0xC4, 'D',  'I',  'M',  'M'}},
        {"FRU device locator",
         R"({"frus": [{"id": 4, "name": "PSU", "entity": 10, "entityInstance": 2}]})",
         {1, 0, 0x51, 0x11, 14, 0x20, 4, 0x80, 0, 0, 0x10, 0, 10, 2, 0, 0xC3, 'P', 'S', 'U'}},
        {"generic device locator",
         R"({"sdrRepository": {"genericDevices": [{"name": "CPU", "address": "0x2C", "slaveAddress": "0x98", "type": 8,
                                                   "entity": 3, "entityInstance": 2}]}})",
         {1, 0, 0x51, 0x10, 14, 0x2C, 0x98, 0, 0, 0, 8, 0, 3, 2, 0, 0xC3, 'C', 'P', 'U'}},
        {"controller locator",
         R"({"sdrRepository": {"controllers": [{"name": "ME", "address": "0x2C", "channel": 6, "capabilities": 1,
                                                "entity": 46}]}})",
         {1, 0, 0x51, 0x12, 13, 0x2C, 6, 0, 1, 0, 0, 0, 46, 1, 0, 0xC2, 'M', 'E'}},
        {"entity association, ranges",
         R"({"sdrRepository": {"associations": [{"entity": 30, "entityInstance": 2, "ranges": true,
             "contains": [{"entity": 29}, {"entity": 29, "entityInstance": 4}]}]}})",
         {1, 0, 0x51, 0x08, 11, 30, 2, 0xA0, 29, 1, 29, 4, 0, 0, 0, 0}},
        {"device-relative entity association",
         R"({"sdrRepository": {"associations": [{"entity": 19, "deviceRelative": true,
             "contains": [{"entity": 10, "entityInstance": 96}]}]}})",
         {1, 0, 0x51, 0x09, 27, 19, 1, 0x20, 0, 0x20, 0x20, 0, 10, 96, 0, 0,
          0, 0, 0,    0,    0,  0,  0, 0,    0, 0,    0,    0, 0,  0,  0, 0}},
        {"raw record that ends within its head",
         R"({"sdrRepository": {"rawRecords": ["51 01"]}})",
         {1, 0, 0x51, 0x01}},
        {"raw record whose length byte lies",
         R"({"sdrRepository": {"rawRecords": ["51 C0 FF 01 02"]}})",
         {1, 0, 0x51, 0xC0, 0xFF, 1, 2}},
    };
    for (const auto& item : cases)
        EXPECT_THAT(record(item.model), ElementsAreArray(item.bytes)) << item.name;
}

TEST_F(Records, fruAreas) {
    create(R"({"frus": [{"id": 0, "name": "", "board": {"manufactured": "1996-01-02", "manufacturer": "A",
                                                        "product": "Bo"},
                        "product": {"version": "v"}}]})");
    const Bytes answer = ask(*open(), 0x0A, 0x11, {0, 0, 0, 0xFF});
    // A text of one character is padded: its type/length byte would be the end mark. 1996-01-02 is 1440
    // minutes.
    Bytes expected{0x00, 48, 1, 0, 0, 1, 4, 0, 0, 0xFA};
    expected.insert(expected.end(), {1,    3,    25,   0xA0, 0x05, 0, 0xC2, 'A', ' ', 0xC2, 'B', 'o',
                                     0xC0, 0xC0, 0xC0, 0xC1, 0,    0, 0,    0,   0,   0,    0});
    expected.push_back(0);
    ASSERT_GE(answer.size(), 34u);
    std::uint8_t sum = 0;
    for (std::size_t i = 10; i < 34; ++i)
        sum = static_cast<std::uint8_t>(sum + answer[i]);
    EXPECT_EQ(sum, 0) << "checksum of the board area";
    expected.back() = answer[33];
    expected.insert(expected.end(),
                    {1, 2, 25, 0xC0, 0xC0, 0xC0, 0xC2, 'v', ' ', 0xC0, 0xC0, 0xC0, 0xC1, 0, 0});
    ASSERT_EQ(answer.size(), expected.size() + 1);
    EXPECT_THAT(Bytes(answer.begin(), answer.end() - 1), ElementsAreArray(expected));
}

TEST_F(Records, fruOfAPowerSupplyInAChassis) {
    create(R"({"frus": [{"id": 0, "name": "", "chassis": {"type": "0x17", "partNumber": "CN"},
                        "powerSupply": {"capacity": 880, "peakVoltAmperes": 1100, "inrushCurrent": 25, "inrushInterval": 5,
                        "lowVoltage1": 10000, "highVoltage1": 12700, "lowVoltage2": 20000, "highVoltage2": 24000,
                        "lowFrequency": 47, "highFrequency": 63, "dropoutTolerance": 12, "correctsPowerFactor": true,
                        "switchesRanges": true, "hotSwap": true, "peakCapacity": 1000, "holdUpTime": 10}}]})");
    const Bytes expected{0x00, 53,                                       // completion code, count
                         1,    0,    1,    0,    0,    3,    0,    0xFB, // header
                         1,    2,    0x17, 0xC2, 'C',  'N',  0xC0, 0xC1, // chassis area
                         0,    0,    0,    0,    0,    0,    0,    0x12, //
                         0,    0x82, 24,   0x7D, 0xE9,                   // multirecord header
                         0x70, 0x03, 0x4C, 0x04, 25,   5,    0x10, 0x27, 0x9C, 0x31, 0x20, 0x4E,
                         0xC0, 0x5D, 47,   63,   12,   0x0E, 0xE8, 0xA3, 0,    0,    0,    0};
    EXPECT_EQ(ask(*open(), 0x0A, 0x11, {0, 0, 0, 0xFF}), expected);
}

} // namespace
