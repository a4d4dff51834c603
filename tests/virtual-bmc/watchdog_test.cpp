#include "virtual_bmc_fixture.h"

#include <chrono>
#include <thread>

namespace {

constexpr std::uint8_t notInitialized = 0x80;

class Watchdog : public VirtualBmcFixture {
protected:
    void start(const std::string& model = "{}") {
        create(model);
        bmc = open();
    }
    Bytes get() { return ask(*bmc, 0x06, 0x25, {}); }
    std::uint8_t set(const Bytes& request) { return ask(*bmc, 0x06, 0x24, request).at(0); }
    std::uint8_t reset() { return ask(*bmc, 0x06, 0x22, {}).at(0); }
    nlohmann::json part(const char* name) const {
        return nlohmann::json(vbmc::VirtualBmc(stateFile).describe())[name];
    }
    // Tells whether it ends within two seconds.
    bool ends() {
        for (int i = 0; i < 200 && (get().at(1) & 0x40) != 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return (get().at(1) & 0x40) == 0;
    }

    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(Watchdog, countsAsItIsTold) {
    start(R"({"watchdog": {"expired": 30}})");
    EXPECT_EQ(reset(), notInitialized);
    for (const Bytes& wrong : {Bytes{0, 1, 0, 0, 1, 0},
                               {6, 1, 0, 0, 1, 0},
                               {4, 4, 0, 0, 1, 0},
                               {4, 0x41, 0, 0, 1, 0},
                               {4, 0x21, 1, 0, 9, 0}}) // its interrupt would come before the start
        EXPECT_EQ(set(wrong), invalidData);
    EXPECT_EQ(set({4, 0x21, 1, 0x12, 0x70, 0x17}), 0);
    EXPECT_EQ(get(), (Bytes{0, 4, 0x21, 1, 0x0C, 0x70, 0x17, 0x70, 0x17}));
    EXPECT_EQ(reset(), 0);
    EXPECT_EQ(get().at(1), 0x44);
    EXPECT_EQ(set({0x44, 1, 0, 0, 0x64, 0}), 0); // goes on
    EXPECT_EQ(get().at(1), 0x44);
    EXPECT_LE(get().at(7), 0x64);
    EXPECT_EQ(set({0xC4, 1, 0, 0, 0x64, 0}), 0);
    EXPECT_EQ(get().at(1), 0xC4);
    EXPECT_EQ(set({4, 1, 0, 0, 0x64, 0}), 0); // stops
    EXPECT_EQ(set({0x44, 1, 0, 0, 0x64, 0}), 0);
    EXPECT_EQ(get().at(1), 4) << "one that is stopped is not started";
    EXPECT_EQ(reset(), 0);
    EXPECT_EQ(ask(*bmc, 0x00, 0x02, {3}).at(0), 0);
    EXPECT_EQ(get().at(1), 4) << "a reset of the host stops it";
}

constexpr char withSensor[] = R"({"chassis": {"cycleInterval": 600000}, "boot": {"flags": "c0 04 00 00 00"},
    "sensors": [{"number": 9, "name": "Watchdog", "type": "Watchdog 2", "readingType": "sensor-specific",
                 "supportedStates": [0, 1, 2, 3, 8]}]})";

TEST_F(Watchdog, actsOnTheHostWhenItRunsOut) {
    struct {
        std::uint8_t action;
        const char* power;
        int resets;
        Bytes events; // first data bytes
    } const cases[] = {
        {0x00, "on", 0, {0xC0}},  {0x01, "on", 1, {0xC1}},       {0x02, "off", 0, {0xC2}},
        {0x03, "off", 0, {0xC3}}, {0x21, "on", 1, {0xC8, 0xC1}},
    };
    for (const auto& [action, power, resets, events] : cases) {
        SCOPED_TRACE(action);
        start(withSensor);
        set({4, action, 0, 0, 1, 0}); // 100 milliseconds
        reset();
        ASSERT_TRUE(ends());
        EXPECT_EQ(get().at(4), 0x10);
        EXPECT_EQ(part("chassis")["power"], power);
        EXPECT_EQ(part("chassis")["resets"], resets);
        EXPECT_EQ(part("boot")["valid"], action == 0) << "flags are not for a boot of the watchdog";
        Bytes first;
        for (const auto& record : vbmc::VirtualBmc(stateFile).selRecords()) {
            first.push_back(record[13]);
            EXPECT_EQ(record[10], 0x23);
            EXPECT_EQ(record[11], 9);
            EXPECT_EQ(record[14], (action & 0x70) | 4) << "interrupt and use";
        }
        EXPECT_EQ(first, events);
    }
    EXPECT_EQ(part("chassis")["diagnosticInterrupts"], 1);
}

TEST_F(Watchdog, withoutASensorOrALogActsAllTheSame) {
    start();
    set({4, 1, 0, 0, 0, 0});
    reset();
    ASSERT_TRUE(ends());
    EXPECT_EQ(part("chassis")["resets"], 1);
    start(withSensor);
    set({0x84, 1, 0, 0, 0, 0});
    reset();
    ASSERT_TRUE(ends());
    EXPECT_EQ(part("chassis")["resets"], 1);
    EXPECT_TRUE(vbmc::VirtualBmc(stateFile).selRecords().empty());
}

} // namespace
