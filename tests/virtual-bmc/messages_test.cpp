// Messages as they are on the wire.
#include "virtual_bmc_fixture.h"

namespace {

using testing::ElementsAreArray;

constexpr char describedModel[] = R"({
    "device": {"deviceId": "0x21", "deviceRevision": 5, "firmwareMajor": 3, "firmwareMinor": 45,
               "manufacturerId": "0x12345", "productId": "0xABCD", "auxiliaryRevision": "01 02 03 04",
               "deviceGuid": "01020304-0506-0708-090a-0b0c0d0e0f10"},
    "users": [{"id": 1, "enabled": false, "fixedName": true, "privilege": "none", "messaging": false},
              {"id": 2, "name": "sixteen letters!", "linkAuthentication": true},
              {"id": 16, "name": "last", "privilege": "user", "callbackOnly": true}],
    "sessions": [{"user": 16}, {"user": 2, "privilege": "administrator", "channel": 8}],
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
    struct Exchange {
        const char* name;
        std::uint8_t command;
        Bytes request;
        Bytes answer;
    };

    void SetUp() override { create(describedModel); }
    static void expectAll(ipmi::Transport& bmc, std::uint8_t netFn, const std::vector<Exchange>& exchanges) {
        for (const auto& item : exchanges)
            EXPECT_THAT(ask(bmc, netFn, item.command, item.request), ElementsAreArray(item.answer))
                << item.name;
    }
};

TEST_F(Messages, application) {
    Bytes guid{0x00};
    for (std::uint8_t byte = 0x10; byte > 0; --byte)
        guid.push_back(byte);
    Bytes name{0x00};
    for (const char character : std::string_view("sixteen letters!"))
        name.push_back(static_cast<std::uint8_t>(character));
    const auto bmc = open();
    expectAll(*bmc, 0x3E, {{"unknown network function", 0x01, {1, 2, 3}, {0xC1}}});
    expectAll(*bmc, 0x07, {{"response network function", 0x01, {}, {0xC1}}});
    expectAll(*bmc, app,
              {
                  {"device ID",
                   0x01,
                   {},
                   {0, 0x21, 5, 3, 0x45, 0x02, 0xBF, 0x45, 0x23, 0x01, 0xCD, 0xAB, 1, 2, 3, 4}},
                  {"self test", 0x04, {}, {0, 0x55, 0}},
                  {"device GUID", 0x08, {}, guid},
                  {"no system GUID", 0x37, {}, {0xC1}},
                  {"access of 1", 0x44, {0x0E, 1}, {0, 16, 0x82, 1, 0x0F}},
                  {"access of 2", 0x44, {0x01, 2}, {0, 16, 0x42, 1, 0x34}},
                  {"access of 16", 0x44, {0x01, 16}, {0, 16, 0x42, 1, 0x52}},
                  {"access of a free slot", 0x44, {0x01, 3}, {0, 16, 0x82, 1, 0x0F}},
                  {"access of user 0", 0x44, {0x01, 0}, {0xC9}},
                  {"access of user 17", 0x44, {0x01, 17}, {0xC9}},
                  {"no session of one's own", 0x3D, {0}, {0, 0, 15, 2}},
                  {"a session", 0x3D, {2}, {0, 2, 15, 2, 2, 4, 0x18}},
                  {"a session by its handle", 0x3D, {0xFE, 1}, {0, 1, 15, 2, 16, 2, 0x11}},
                  {"no such session", 0x3D, {3}, {0, 0, 15, 2}},
                  {"no handle", 0x3D, {0xFE}, {0xC7}},
                  {"longest name", 0x46, {2}, name},
                  {"no name", 0x46, {3}, Bytes(17, 0)},
                  {"name of user 17", 0x46, {17}, {0xC9}},
                  {"unknown command", 0xEE, {}, {0xC1}},
                  {"short request", 0x44, {0x01}, {0xC7}},
                  {"empty request", 0x46, {}, {0xC7}},
              });
}

TEST_F(Messages, sensors) {
    const auto bmc = open();
    expectAll(*bmc, sensorEvent,
              {
                  {"upper non-critical crossed", 0x2D, {1}, {0, 45, 0xC0, 0xC0 | 0x08}},
                  {"comparison in units, not raw", 0x2D, {2}, {0, 202, 0xC0, 0xC0 | 0x01}},
                  {"states", 0x2D, {3}, {0, 0, 0xC0, 0x01, 0xC0}},
                  {"unavailable", 0x2D, {4}, {0, 0, 0xE0, 0xC0}},
                  {"unreadable", 0x2D, {5}, {0xCB}},
                  {"compact threshold sensor", 0x2D, {6}, {0, 0, 0xC0, 0xD0}},
                  {"last number", 0x2D, {254}, {0, 0, 0xC0, 0x00, 0x80}},
                  {"no sensor", 0x2D, {7}, {0xCB}},
                  {"reserved number", 0x2D, {0xFF}, {0xCB}},
                  {"no number", 0x2D, {}, {0xC7}},
                  {"thresholds", 0x27, {1}, {0, 0x1A, 0, 0xF6, 0, 40, 50, 0}},
                  {"thresholds of a discrete sensor", 0x27, {3}, {0xCD}},
                  {"hysteresis", 0x25, {1, 0xFF}, {0, 2, 3}},
                  {"factors", 0x23, {2, 0}, {0, 0xFF, 0xFE, 0xC0, 5, 0, 0, 0x02}},
                  {"type", 0x2F, {254}, {0, 0xC1, 0x70}},
                  {"event enable", 0x29, {1}, {0, 0xC0, 0x84, 0x02, 0x84, 0x02}},
              });
}

TEST_F(Messages, settingsOfSensors) {
    const auto bmc = open();
    expectAll(*bmc, sensorEvent,
              {
                  {"set two", 0x26, {1, 0x12, 9, 20, 9, 9, 46, 9}, {0}},
                  {"both set", 0x27, {1}, {0, 0x1A, 0, 20, 0, 40, 46, 0}},
                  {"set two others", 0x26, {1, 0x0A, 9, 1, 9, 1, 9, 9}, {0}},
                  {"set one it has not", 0x26, {1, 0x03, 7, 7, 7, 7, 7, 7}, {0xCC}},
                  {"none set", 0x27, {1}, {0, 0x1A, 0, 1, 0, 1, 46, 0}},
                  {"not settable", 0x26, {2, 0x01, 7, 7, 7, 7, 7, 7}, {0xCD}},
                  {"set hysteresis", 0x24, {1, 0xFF, 4, 5}, {0}},
                  {"hysteresis set", 0x25, {1, 0xFF}, {0, 4, 5}},
                  {"events off", 0x28, {1, 0x40}, {0}},
                  {"reads so", 0x2D, {1}, {0, 45, 0x40, 0xC0 | 0x08}},
                  {"disable an event", 0x28, {3, 0xE0, 0x08, 0x00, 0x01}, {0}},
                  {"disabled", 0x29, {3}, {0, 0xC0, 0x01, 0x40, 0x08, 0x40}},
                  {"enable it", 0x28, {3, 0xD0, 0x08}, {0}},
                  {"enabled", 0x29, {3}, {0, 0xC0, 0x09, 0x40, 0x08, 0x40}},
                  {"enable an unknown event", 0x28, {3, 0x10, 0x02}, {0xCC}},
                  {"unchanged", 0x29, {3}, {0, 0xC0, 0x09, 0x40, 0x08, 0x40}},
              });
    expectAll(*open(), sensorEvent, {{"kept", 0x29, {3}, {0, 0xC0, 0x09, 0x40, 0x08, 0x40}}});
}

TEST_F(Messages, repository) {
    const auto bmc = open();
    constexpr std::uint8_t oemRecord = 10; // after 7 sensors and 2 FRU devices
    const Bytes info = ask(*bmc, storage, 0x20, {});
    ASSERT_EQ(info.size(), 15u);
    EXPECT_EQ(Bytes(info.begin(), info.begin() + 6), (Bytes{0, 0x51, 10, 0, 0xFF, 0xFF}));
    EXPECT_NE(Bytes(info.begin() + 6, info.begin() + 10), Bytes(4)); // when the records came
    EXPECT_EQ(Bytes(info.begin() + 10, info.end()), (Bytes{0, 0, 0, 0, 0x22}));
    expectAll(*bmc, storage,
              {
                  {"first", 0x23, {0, 0, 0, 0, 0, 5}, {0, 2, 0, 1, 0, 0x51, 0x01, 47}},
                  {"by its ID", 0x23, {0, 0, 3, 0, 0, 5}, {0, 4, 0, 3, 0, 0x51, 0x02, 32}},
                  {"last, whole",
                   0x23,
                   {0, 0, 0xFF, 0xFF, 0, 0xFF},
                   {0, 0xFF, 0xFF, oemRecord, 0, 0x51, 0xC0, 6, 1, 0, 0, 0xAA, 0xBB, 0xCC}},
                  {"more than the limit", 0x23, {0, 0, 0, 0, 0, 17}, {0xCA}},
                  {"whole one beyond the limit", 0x23, {0, 0, 0, 0, 0, 0xFF}, {0xCA}},
                  {"no record", 0x23, {0, 0, 11, 0, 0, 5}, {0xCB}},
                  {"within, without reservation", 0x23, {0, 0, oemRecord, 0, 5, 3}, {0xC5}},
                  {"reserve", 0x22, {}, {0, 1, 0}},
                  {"within", 0x23, {1, 0, oemRecord, 0, 5, 3}, {0, 0xFF, 0xFF, 1, 0, 0}},
                  {"what is left", 0x23, {1, 0, oemRecord, 0, 9, 16}, {0, 0xFF, 0xFF, 0xBB, 0xCC}},
                  {"at the end", 0x23, {1, 0, oemRecord, 0, 11, 1}, {0, 0xFF, 0xFF}},
                  {"behind the end", 0x23, {1, 0, oemRecord, 0, 12, 1}, {0xC9}},
              });
    expectAll(*open(), storage, {{"reserve again", 0x22, {}, {0, 2, 0}}});
    expectAll(*bmc, storage,
              {{"reservation lost to another session", 0x23, {1, 0, oemRecord, 0, 5, 3}, {0xC5}},
               {"at the start too", 0x23, {1, 0, oemRecord, 0, 0, 5}, {0xC5}}});
}

TEST_F(Messages, frus) {
    const auto bmc = open();
    expectAll(*bmc, storage,
              {
                  {"size", 0x10, {0}, {0, 8, 0, 0}},
                  {"size, by words", 0x10, {7}, {0, 6, 0, 1}},
                  {"no such device", 0x10, {1}, {0xCB}},
                  {"part", 0x11, {0, 2, 0, 3}, {0, 3, 2, 3, 4}},
                  {"up to the end", 0x11, {0, 6, 0, 16}, {0, 2, 6, 7}},
                  {"at the end", 0x11, {0, 8, 0, 1}, {0, 0}},
                  {"behind the end", 0x11, {0, 9, 0, 1}, {0xC9}},
                  {"words", 0x11, {7, 1, 0, 1}, {0, 1, 0x12, 0x13}},
                  {"read from no device", 0x11, {1, 0, 0, 1}, {0xCB}},
              });
}

} // namespace
