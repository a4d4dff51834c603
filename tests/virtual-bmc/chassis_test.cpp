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
    nlohmann::ordered_json described() const { return vbmc::VirtualBmc(stateFile).describe()["chassis"]; }
    // Whether the power is as wanted within two seconds.
    bool comes(bool power) {
        for (int i = 0; i < 200 && isOn() != power; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return isOn() == power;
    }

    std::unique_ptr<ipmi::Transport> bmc;
};

constexpr const char* slow = R"("softOffDelay": 60000, "cycleInterval": 60000)";

TEST_F(Chassis, actsOnTheHostAsItIs) {
    struct {
        const char* name;
        bool wasOn;
        std::uint8_t action, code;
        const char* power;
        const char* coming; // "" nothing
    } const cases[] = {
        {"up", false, up, 0, "on", ""},
        {"up again", true, up, 0, "on", ""},
        {"down", true, down, 0, "off", ""},
        {"down again", false, down, 0, "off", ""},
        {"cycle", true, cycle, 0, "off", "on"},
        {"cycle while off", false, cycle, notInPresentState, "off", ""},
        {"reset", true, reset, 0, "on", ""},
        {"reset while off", false, reset, notInPresentState, "off", ""},
        {"interrupt", true, interrupt, 0, "on", ""},
        {"interrupt while off", false, interrupt, notInPresentState, "off", ""},
        {"soft off", true, soft, 0, "on", "off"},
        {"soft off while off", false, soft, notInPresentState, "off", ""},
        {"no such action", true, 6, 0xCC, "on", ""},
    };
    for (const auto& action : cases) {
        SCOPED_TRACE(action.name);
        start(std::string(slow) + R"(, "on": )" + (action.wasOn ? "true" : "false"));
        EXPECT_EQ(control(action.action), action.code);
        EXPECT_EQ(described()["power"], action.power);
        EXPECT_EQ(described().value("comingText", ""), action.coming);
        EXPECT_EQ(described()["resets"], action.action == reset && action.wasOn ? 1 : 0);
        EXPECT_EQ(described()["diagnosticInterrupts"], action.action == interrupt && action.wasOn ? 1 : 0);
    }
}

TEST_F(Chassis, changesItsMindAboutWhatIsComing) {
    struct {
        const char* name;
        std::vector<std::uint8_t> actions;
        const char* power;
        const char* coming;
    } const cases[] = {
        {"up during soft off", {soft, up}, "on", "off, then on"},
        {"soft off once more", {soft, up, soft}, "on", "off, then on"},
        {"down during soft off", {soft, down}, "off", ""},
        {"reset during soft off", {soft, reset}, "on", ""},
        {"up during the cycle", {cycle, up}, "on", ""},
        {"down during the cycle", {cycle, down}, "off", ""},
    };
    for (const auto& change : cases) {
        SCOPED_TRACE(change.name);
        start(slow);
        for (const std::uint8_t action : change.actions)
            EXPECT_EQ(control(action), 0);
        EXPECT_EQ(described()["power"], change.power);
        EXPECT_EQ(described().value("comingText", ""), change.coming);
    }
}

// By the clock: nobody has to ask in between, and another session sees it.
TEST_F(Chassis, takesItsTime) {
    start(R"("softOffDelay": 100, "cycleInterval": 100)");
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
