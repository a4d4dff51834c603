// Messages as they are on the wire.
#include "virtual_bmc_fixture.h"

namespace {

using testing::ElementsAreArray;

constexpr std::uint8_t sensorEvent = 0x04;
constexpr std::uint8_t app = 0x06;
constexpr std::uint8_t storage = 0x0A;

constexpr char model[] = R"({
    "device": {"deviceId": "0x21", "deviceRevision": 5, "firmwareMajor": 3, "firmwareMinor": 45,
               "manufacturerId": "0x12345", "productId": "0xABCD", "auxiliaryRevision": "01 02 03 04",
               "deviceGuid": "01020304-0506-0708-090a-0b0c0d0e0f10"},
    "users": [{"id": 1, "enabled": false, "fixedName": true, "privilege": "none", "messaging": false},
              {"id": 2, "name": "sixteen letters!", "linkAuthentication": true},
              {"id": 16, "name": "last", "privilege": "user", "callbackOnly": true}],
    "frus": [{"id": 0, "name": "Board", "data": "00 01 02 03 04 05 06 07"},
             {"id": 7, "name": "Words", "wordAddressed": true, "data": "10 11 12 13 14 15"}],
    "sensors": [
        {"number": 1, "name": "Temp", "analog": {"unit": "degrees C", "format": "twos-complement"},
         "thresholds": {"lowerCritical": -10, "upperNonCritical": 40, "upperCritical": 50,
                        "positiveHysteresis": 2, "negativeHysteresis": 3}, "reading": 45},
        {"number": 2, "name": "Inverse", "type": "Fan", "analog": {"m": -2, "b": 5, "bExponent": 2},
         "thresholds": {"lowerNonCritical": 100, "upperCritical": 400, "settable": false}, "reading": 96},
        {"number": 3, "name": "Power", "type": "Power Supply", "readingType": "sensor-specific",
         "record": "compact", "supportedStates": [0, 3, 14], "states": [0, 14]},
        {"number": 4, "name": "Absent", "availability": "unavailable", "reading": 99},
        {"number": 5, "name": "Broken", "availability": "unreadable"},
        {"number": 6, "name": "Hot", "record": "compact", "supportedStates": [4], "states": [4]},
        {"number": 254, "name": "Last", "readingType": "0x70", "type": "0xC1", "supportedStates": [1]}],
    "sdrRepository": {"oemRecords": [{"manufacturerId": 1, "data": "AA BB CC"}], "largestPart": 16}
})";

class Messages : public VirtualBmcFixture {
protected:
    void SetUp() override { create(model); }
};

struct Exchange {
    const char* name;
    std::uint8_t netFn;
    std::uint8_t command;
    Bytes request;
    Bytes answer;
};

void expectAll(ipmi::Transport& bmc, std::initializer_list<Exchange> exchanges,
               Bytes (*ask)(ipmi::Transport&, std::uint8_t, std::uint8_t, const Bytes&)) {
    for (const auto& item : exchanges)
        EXPECT_THAT(ask(bmc, item.netFn, item.command, item.request), ElementsAreArray(item.answer))
            << item.name;
}

TEST_F(Messages, application) {
    Bytes guid{0x00};
    for (std::uint8_t byte = 0x10; byte > 0; --byte)
        guid.push_back(byte);
    Bytes name{0x00};
    for (const char character : std::string_view("sixteen letters!"))
        name.push_back(static_cast<std::uint8_t>(character));
    const auto bmc = open();
    expectAll(*bmc,
              {
                  {"device ID",
                   app,
                   0x01,
                   {},
                   {0, 0x21, 5, 3, 0x45, 0x02, 0xBF, 0x45, 0x23, 0x01, 0xCD, 0xAB, 1, 2, 3, 4}},
                  {"self test", app, 0x04, {}, {0, 0x55, 0}},
                  {"device GUID", app, 0x08, {}, guid},
                  {"no system GUID", app, 0x37, {}, {0xC1}},
                  {"access of 1", app, 0x44, {0x0E, 1}, {0, 16, 0x82, 1, 0x0F}},
                  {"access of 2", app, 0x44, {0x01, 2}, {0, 16, 0x42, 1, 0x34}},
                  {"access of 16", app, 0x44, {0x01, 16}, {0, 16, 0x42, 1, 0x52}},
                  {"access of a free slot", app, 0x44, {0x01, 3}, {0, 16, 0x82, 1, 0x0F}},
                  {"access of user 0", app, 0x44, {0x01, 0}, {0xC9}},
                  {"access of user 17", app, 0x44, {0x01, 17}, {0xC9}},
                  {"longest name", app, 0x46, {2}, name},
                  {"no name", app, 0x46, {3}, Bytes(17, 0)},
                  {"name of user 17", app, 0x46, {17}, {0xC9}},
                  {"unknown command", app, 0xEE, {}, {0xC1}},
                  {"unknown network function", 0x3E, 0x01, {1, 2, 3}, {0xC1}},
                  {"response network function", 0x07, 0x01, {}, {0xC1}},
                  {"short request", app, 0x44, {0x01}, {0xC7}},
                  {"empty request", app, 0x46, {}, {0xC7}},
              },
              ask);
}

TEST_F(Messages, sensors) {
    const auto bmc = open();
    expectAll(*bmc,
              {
                  {"upper non-critical crossed", sensorEvent, 0x2D, {1}, {0, 45, 0xC0, 0xC0 | 0x08}},
                  {"comparison in units, not raw", sensorEvent, 0x2D, {2}, {0, 202, 0xC0, 0xC0 | 0x01}},
                  {"states", sensorEvent, 0x2D, {3}, {0, 0, 0xC0, 0x01, 0xC0}},
                  {"unavailable", sensorEvent, 0x2D, {4}, {0, 0, 0xE0, 0xC0}},
                  {"unreadable", sensorEvent, 0x2D, {5}, {0xCB}},
                  {"compact threshold sensor", sensorEvent, 0x2D, {6}, {0, 0, 0xC0, 0xD0}},
                  {"last number", sensorEvent, 0x2D, {254}, {0, 0, 0xC0, 0x00, 0x80}},
                  {"no sensor", sensorEvent, 0x2D, {7}, {0xCB}},
                  {"reserved number", sensorEvent, 0x2D, {0xFF}, {0xCB}},
                  {"no number", sensorEvent, 0x2D, {}, {0xC7}},
                  {"thresholds", sensorEvent, 0x27, {1}, {0, 0x1A, 0, 0xF6, 0, 40, 50, 0}},
                  {"thresholds of a discrete sensor", sensorEvent, 0x27, {3}, {0xCD}},
                  {"hysteresis", sensorEvent, 0x25, {1, 0xFF}, {0, 2, 3}},
                  {"factors", sensorEvent, 0x23, {2, 0}, {0, 0xFF, 0xFE, 0xC0, 5, 0, 0, 0x02}},
                  {"type", sensorEvent, 0x2F, {254}, {0, 0xC1, 0x70}},
                  {"event enable", sensorEvent, 0x29, {1}, {0, 0xC0, 0x84, 0x02, 0x84, 0x02}},
              },
              ask);
}

TEST_F(Messages, settingsOfSensors) {
    const auto bmc = open();
    expectAll(*bmc,
              {
                  {"set two", sensorEvent, 0x26, {1, 0x12, 9, 20, 9, 9, 46, 9}, {0}},
                  {"both set", sensorEvent, 0x27, {1}, {0, 0x1A, 0, 20, 0, 40, 46, 0}},
                  {"set two others", sensorEvent, 0x26, {1, 0x0A, 9, 1, 9, 1, 9, 9}, {0}},
                  {"set one it has not", sensorEvent, 0x26, {1, 0x03, 7, 7, 7, 7, 7, 7}, {0xCC}},
                  {"none set", sensorEvent, 0x27, {1}, {0, 0x1A, 0, 1, 0, 1, 46, 0}},
                  {"not settable", sensorEvent, 0x26, {2, 0x01, 7, 7, 7, 7, 7, 7}, {0xCD}},
                  {"set hysteresis", sensorEvent, 0x24, {1, 0xFF, 4, 5}, {0}},
                  {"hysteresis set", sensorEvent, 0x25, {1, 0xFF}, {0, 4, 5}},
                  {"events off", sensorEvent, 0x28, {1, 0x40}, {0}},
                  {"reads so", sensorEvent, 0x2D, {1}, {0, 45, 0x40, 0xC0 | 0x08}},
                  {"disable an event", sensorEvent, 0x28, {3, 0xE0, 0x08, 0x00, 0x01}, {0}},
                  {"disabled", sensorEvent, 0x29, {3}, {0, 0xC0, 0x01, 0x40, 0x08, 0x40}},
                  {"enable it", sensorEvent, 0x28, {3, 0xD0, 0x08}, {0}},
                  {"enabled", sensorEvent, 0x29, {3}, {0, 0xC0, 0x09, 0x40, 0x08, 0x40}},
                  {"enable an unknown event", sensorEvent, 0x28, {3, 0x10, 0x02}, {0xCC}},
                  {"unchanged", sensorEvent, 0x29, {3}, {0, 0xC0, 0x09, 0x40, 0x08, 0x40}},
              },
              ask);
    expectAll(*open(), {{"kept", sensorEvent, 0x29, {3}, {0, 0xC0, 0x09, 0x40, 0x08, 0x40}}}, ask);
}

TEST_F(Messages, repository) {
    const auto bmc = open();
    constexpr std::uint8_t oemRecord = 10; // after 7 sensors and 2 FRU devices
    expectAll(*bmc,
              {
                  {"info", storage, 0x20, {}, {0, 0x51, 10, 0, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0x22}},
                  {"first", storage, 0x23, {0, 0, 0, 0, 0, 5}, {0, 2, 0, 1, 0, 0x51, 0x01, 47}},
                  {"by its ID", storage, 0x23, {0, 0, 3, 0, 0, 5}, {0, 4, 0, 3, 0, 0x51, 0x02, 32}},
                  {"last, whole",
                   storage,
                   0x23,
                   {0, 0, 0xFF, 0xFF, 0, 0xFF},
                   {0, 0xFF, 0xFF, oemRecord, 0, 0x51, 0xC0, 6, 1, 0, 0, 0xAA, 0xBB, 0xCC}},
                  {"more than the limit", storage, 0x23, {0, 0, 0, 0, 0, 17}, {0xCA}},
                  {"whole one beyond the limit", storage, 0x23, {0, 0, 0, 0, 0, 0xFF}, {0xCA}},
                  {"no record", storage, 0x23, {0, 0, 11, 0, 0, 5}, {0xCB}},
                  {"within, without reservation", storage, 0x23, {0, 0, oemRecord, 0, 5, 3}, {0xC5}},
                  {"reserve", storage, 0x22, {}, {0, 1, 0}},
                  {"within", storage, 0x23, {1, 0, oemRecord, 0, 5, 3}, {0, 0xFF, 0xFF, 1, 0, 0}},
                  {"what is left", storage, 0x23, {1, 0, oemRecord, 0, 9, 16}, {0, 0xFF, 0xFF, 0xBB, 0xCC}},
                  {"at the end", storage, 0x23, {1, 0, oemRecord, 0, 11, 1}, {0, 0xFF, 0xFF}},
                  {"behind the end", storage, 0x23, {1, 0, oemRecord, 0, 12, 1}, {0xC9}},
              },
              ask);
    expectAll(*open(), {{"reserve again", storage, 0x22, {}, {0, 2, 0}}}, ask);
    expectAll(*bmc,
              {{"reservation lost to another session", storage, 0x23, {1, 0, oemRecord, 0, 5, 3}, {0xC5}},
               {"at the start too", storage, 0x23, {1, 0, oemRecord, 0, 0, 5}, {0xC5}}},
              ask);
}

TEST_F(Messages, frus) {
    const auto bmc = open();
    expectAll(*bmc,
              {
                  {"size", storage, 0x10, {0}, {0, 8, 0, 0}},
                  {"size, by words", storage, 0x10, {7}, {0, 6, 0, 1}},
                  {"no such device", storage, 0x10, {1}, {0xCB}},
                  {"part", storage, 0x11, {0, 2, 0, 3}, {0, 3, 2, 3, 4}},
                  {"up to the end", storage, 0x11, {0, 6, 0, 16}, {0, 2, 6, 7}},
                  {"at the end", storage, 0x11, {0, 8, 0, 1}, {0, 0}},
                  {"behind the end", storage, 0x11, {0, 9, 0, 1}, {0xC9}},
                  {"words", storage, 0x11, {7, 1, 0, 1}, {0, 1, 0x12, 0x13}},
                  {"read from no device", storage, 0x11, {1, 0, 0, 1}, {0xCB}},
              },
              ask);
}

} // namespace
