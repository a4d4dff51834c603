// Serial over LAN of the virtual BMC, message by message.
#include "virtual_bmc_fixture.h"

namespace {

constexpr std::uint8_t done = 0x00, noParameter = 0x80, inProgress = 0x81, readOnly = 0x82, tooShort = 0xC7,
                       outOfRange = 0xC9;

class Sol : public VirtualBmcFixture {
protected:
    void start(const std::string& model = R"({"sol": {"channels": [{"channel": 2}], "capacity": 9,
            "active": [{"instance": 9, "session": 305419896, "serialPort": 2}]}})") {
        create(model);
        bmc = open();
    }
    Bytes get(std::uint8_t parameter, std::uint8_t channel = 2) {
        return ask(*bmc, 0x0C, 0x22, {channel, parameter, 0, 0});
    }
    std::uint8_t set(const Bytes& request) { return ask(*bmc, 0x0C, 0x21, request).at(0); }

    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(Sol, parametersAreSetWithinTheirLimits) {
    start();
    const struct {
        std::uint8_t parameter;
        Bytes before, after;
        std::vector<Bytes> refused;
    } cases[] = {
        {1, {0x01}, {0x00}, {}},
        {2, {0xC2}, {0x84}, {{0x81}, {0x06}}},
        {3, {12, 96}, {1, 0}, {{0, 96}}},
        {4, {7, 50}, {3, 20}, {}},
        {5, {0x0A}, {0x00}, {{0x01}, {0x0B}}},
        {6, {0x0A}, {0x06}, {{0x05}}},
        {8, {0x6F, 0x02}, {0x70, 0x02}, {{0, 0}}},
    };
    for (const auto& [parameter, before, after, refused] : cases) {
        SCOPED_TRACE(parameter);
        const auto answer = [](Bytes value) {
            value.insert(value.begin(), {done, 0x11});
            return value;
        };
        const auto write = [&, number = parameter](Bytes value) {
            value.insert(value.begin(), {0x02, number});
            return set(value);
        };
        EXPECT_EQ(get(parameter), answer(before));
        EXPECT_EQ(write(Bytes(before.size() - 1)), tooShort);
        for (const Bytes& wrong : refused)
            EXPECT_EQ(write(wrong), invalidData);
        EXPECT_EQ(get(parameter), answer(before));
        EXPECT_EQ(write(after), done);
        EXPECT_EQ(get(parameter), answer(after));
    }
    EXPECT_EQ(get(1, 0x82), (Bytes{done, 0x11})) << "the revision only";
}

TEST_F(Sol, refusesWhatItDoesNotHave) {
    start();
    EXPECT_EQ(get(7), (Bytes{done, 0x11, 2}));
    EXPECT_EQ(set({2, 7, 2}), readOnly);
    EXPECT_EQ(get(9), Bytes{noParameter});
    EXPECT_EQ(set({2, 9, 0}), noParameter);
    EXPECT_EQ(get(1, 1), Bytes{invalidData});
    EXPECT_EQ(set({1, 1, 1}), invalidData);
    start(R"({"lans": [{"channel": 1, "name": "eth0"}]})");
    EXPECT_EQ(get(1), Bytes{0xC1});
    EXPECT_EQ(set({2, 1, 0}), 0xC1);
    EXPECT_EQ(ask(*bmc, 0x06, 0x4A, {1}), Bytes{0xC1});
    EXPECT_EQ(ask(*bmc, 0x06, 0x4B, {1, 1}), Bytes{0xC1});
}

TEST_F(Sol, isSetByOneAtATime) {
    start();
    EXPECT_EQ(set({2, 0, 1}), done);
    EXPECT_EQ(get(0), (Bytes{done, 0x11, 1}));
    EXPECT_EQ(set({2, 0, 1}), inProgress);
    EXPECT_EQ(set({2, 0, 3}), invalidData);
    EXPECT_EQ(set({2, 0, 2}), done);
    EXPECT_EQ(get(0), (Bytes{done, 0x11, 1})) << "a commit does not end it";
    EXPECT_EQ(set({2, 0, 0}), done);
    EXPECT_EQ(set({2, 0, 1}), done);
}

TEST_F(Sol, tellsWhatIsActive) {
    start();
    EXPECT_EQ(ask(*bmc, 0x06, 0x4A, {1}), (Bytes{done, 9, 0x00, 0x01}));
    EXPECT_EQ(ask(*bmc, 0x06, 0x4A, {0}), Bytes{invalidData});
    EXPECT_EQ(ask(*bmc, 0x06, 0x4B, {1, 9}), (Bytes{done, 0x78, 0x56, 0x34, 0x12, 2, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(ask(*bmc, 0x06, 0x4B, {1, 1}), Bytes(13));
    for (const std::uint8_t instance : Bytes{0, 10})
        EXPECT_EQ(ask(*bmc, 0x06, 0x4B, {1, instance}), Bytes{outOfRange});
    EXPECT_THROW(create(R"({"sol": {"active": [{"instance": 2, "session": 1}]}})"), vbmc::Error);
    EXPECT_THROW(create(R"({"sol": {"channels": [{"channel": 2}, {"channel": 2}]}})"), vbmc::Error);
    EXPECT_THROW(create(R"({"sol": {"channels": [{"channel": 12}]}})"), vbmc::Error);
}

} // namespace
