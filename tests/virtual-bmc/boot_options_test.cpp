#include "virtual_bmc_fixture.h"

namespace {

constexpr std::uint8_t notSupported = 0x80, alreadyInProgress = 0x81, badLength = 0xC7;

class BootOptions : public VirtualBmcFixture {
protected:
    void start(const std::string& boot = "") {
        create(R"({"chassis": {"cycleInterval": 0}, "boot": {)" + boot + "}}");
        bmc = open();
    }
    Bytes get(std::uint8_t parameter) { return ask(*bmc, 0x00, 0x09, {parameter, 0, 0}); }
    std::uint8_t set(std::uint8_t parameter, const Bytes& value) {
        Bytes request{parameter};
        request.insert(request.end(), value.begin(), value.end());
        return ask(*bmc, 0x00, 0x08, request).at(0);
    }
    void control(std::uint8_t action) { EXPECT_EQ(ask(*bmc, 0x00, 0x02, {action}).at(0), 0); }
    bool isValid() { return (get(5).at(3) & 0x80) != 0; }
    std::string lastBoot() const {
        return vbmc::VirtualBmc(stateFile).describe()["boot"]["lastBoot"].get<std::string>();
    }

    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(BootOptions, areReadAsTheyWereWritten) {
    start(R"("devices": ["network"])");
    struct {
        std::uint8_t parameter;
        Bytes written;
        std::uint8_t code;
        Bytes read;
    } const cases[] = {
        {0, {1}, 0, {1}},
        {0, {1}, alreadyInProgress, {1}},
        {0, {2}, invalidData, {1}}, // nothing is rolled back
        {0, {0}, 0, {0}},
        {1, {7}, 0, {7}},
        {2, {0xFF}, 0, {3}},
        {3, {0xFF}, 0, {0x1F}},
        {4, {0x1F, 0xFF}, 0, {0, 0x1F}},
        {4, {0x01, 0xFE}, 0, {0, 0x1E}}, // the system firmware alone
        {5, {0x80, 0x04, 1, 2, 3}, 0, {0x80, 0x04, 1, 2, 3}},
        {5, {0x80, 0x08, 0, 0, 0}, invalidData, {0x80, 0x04, 1, 2, 3}}, // no such device
        {5, {0x80, 0x04}, badLength, {0x80, 0x04, 1, 2, 3}},
    };
    for (const auto& [parameter, written, code, read] : cases) {
        SCOPED_TRACE(testing::PrintToString(parameter) + testing::PrintToString(written));
        EXPECT_EQ(set(parameter, written), code);
        Bytes expected{0, 1, parameter};
        expected.insert(expected.end(), read.begin(), read.end());
        EXPECT_EQ(get(parameter), expected);
    }
    EXPECT_EQ(set(6, {0}), notSupported);
    EXPECT_EQ(get(7), Bytes{notSupported});
    EXPECT_EQ(set(0x85, {}), 0); // marks it
    EXPECT_EQ(get(5).at(2), 0x85);
}

TEST_F(BootOptions, areTakenByTheNextBoot) {
    start();
    set(5, {0x80, 0x04, 0, 0, 0});
    control(0); // power down
    EXPECT_TRUE(isValid());
    control(1);
    EXPECT_FALSE(isValid());
    EXPECT_EQ(lastBoot(), "network");
    control(3); // hard reset
    EXPECT_EQ(lastBoot(), "firmware's order");
    set(5, {0xC0, 0x08, 0, 0, 0});
    for (const std::uint8_t action : {std::uint8_t{2}, std::uint8_t{3}}) {
        control(action);
        EXPECT_EQ(lastBoot(), "disk");
        EXPECT_TRUE(isValid());
    }
}

TEST_F(BootOptions, areForgottenUnlessParameter3SaysOtherwise) {
    start(R"("validTime": 0)");
    set(5, {0x80, 0x04, 0, 0, 0});
    EXPECT_FALSE(isValid()) << "no command came in time";
    set(3, {0x01});
    set(5, {0x80, 0x04, 0, 0, 0});
    EXPECT_TRUE(isValid());
    vbmc::VirtualBmc(stateFile).restartHost();
    EXPECT_EQ(lastBoot(), "firmware's order") << "a restart of the host's own clears them first";
    set(3, {0x03});
    set(5, {0x80, 0x04, 0, 0, 0});
    vbmc::VirtualBmc(stateFile).restartHost();
    EXPECT_EQ(lastBoot(), "network");
}

} // namespace
