#include "virtual_bmc_fixture.h"

#include <chrono>
#include <thread>

namespace {

constexpr std::uint8_t down = 0, up = 1, cycle = 2, reset = 3, interrupt = 4, soft = 5;
constexpr std::uint8_t notInPresentState = 0xD5;

class Chassis : public VirtualBmcFixture {
protected:
    void start(const std::string& chassis) {
        create(R"({"chassis": {)" + chassis + "}}");
        bmc = open();
    }
    std::uint8_t control(std::uint8_t action) { return ask(*bmc, 0x00, 0x02, {action}).at(0); }
    bool isOn() {
        const Bytes status = ask(*bmc, 0x00, 0x01, {});
        EXPECT_EQ(status.size(), 4U);
        return (status.at(1) & 1) != 0;
    }
    // Whether the power is as wanted within two seconds.
    bool comes(bool power) {
        for (int i = 0; i < 200 && isOn() != power; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return isOn() == power;
    }

    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(Chassis, actsOnTheHostAsItIs) {
    struct {
        const char* name;
        bool wasOn;
        std::vector<std::uint8_t> actions;
        std::uint8_t code; // of the last one
        const char* power;
        const char* coming; // "" nothing
        int resets = 0, interrupts = 0;
    } const cases[] = {
        {"up", false, {up}, 0, "on", ""},
        {"up again", true, {up}, 0, "on", ""},
        {"down", true, {down}, 0, "off", ""},
        {"down again", false, {down}, 0, "off", ""},
        {"cycle", true, {cycle}, 0, "off", "on"},
        {"cycle while off", false, {cycle}, notInPresentState, "off", ""},
        {"reset", true, {reset}, 0, "on", "", 1},
        {"reset while off", false, {reset}, notInPresentState, "off", ""},
        {"interrupt", true, {interrupt}, 0, "on", "", 0, 1},
        {"interrupt while off", false, {interrupt}, notInPresentState, "off", ""},
        {"soft off", true, {soft}, 0, "on", "off"},
        {"soft off while off", false, {soft}, notInPresentState, "off", ""},
        {"no such action", true, {6}, 0xCC, "on", ""},
        {"up during soft off", true, {soft, up}, 0, "on", "off, then on"},
        {"soft off once more", true, {soft, up, soft}, 0, "on", "off, then on"},
        {"down during soft off", true, {soft, down}, 0, "off", ""},
        {"reset during soft off", true, {soft, reset}, 0, "on", "", 1},
        {"up during the cycle", true, {cycle, up}, 0, "on", ""},
        {"down during the cycle", true, {cycle, down}, 0, "off", ""},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        start(std::string(R"("softOffDelay": 60000, "cycleInterval": 60000, "on": )") +
              (item.wasOn ? "true" : "false"));
        std::uint8_t code = 0;
        for (const std::uint8_t action : item.actions)
            code = control(action);
        const auto chassis = vbmc::VirtualBmc(stateFile).describe()["chassis"];
        EXPECT_EQ(code, item.code);
        EXPECT_EQ(chassis["power"], item.power);
        EXPECT_EQ(chassis.value("comingText", ""), item.coming);
        EXPECT_EQ(chassis["resets"], item.resets);
        EXPECT_EQ(chassis["diagnosticInterrupts"], item.interrupts);
    }
}

// By the clock: nobody has to ask in between, and another session sees it.
TEST_F(Chassis, takesItsTime) {
    start(R"("softOffDelay": 700, "cycleInterval": 700)");
    ASSERT_EQ(control(soft), 0);
    EXPECT_TRUE(isOn());
    bmc = open();
    EXPECT_TRUE(comes(false));
    ASSERT_EQ(control(up), 0);
    ASSERT_EQ(control(cycle), 0);
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(comes(true));
    EXPECT_EQ(control(interrupt), 0) << "it runs again";
}

TEST_F(Chassis, tellsWhatStartedTheHost) {
    start("");
    EXPECT_EQ(ask(*bmc, 0x00, 0x01, {}), (Bytes{0x00, 0x61, 0x00, 0x00}));
    EXPECT_EQ(ask(*bmc, 0x00, 0x07, {}), (Bytes{0x00, 0x00, 0x0F}));
    control(down);
    control(up);
    EXPECT_EQ(ask(*bmc, 0x00, 0x01, {}), (Bytes{0x00, 0x61, 0x10, 0x00}));
    EXPECT_EQ(ask(*bmc, 0x00, 0x07, {}), (Bytes{0x00, 0x01, 0x0F}));
    EXPECT_EQ(ask(*bmc, 0x00, 0x02, {}), (Bytes{0xC7}));
}

} // namespace
