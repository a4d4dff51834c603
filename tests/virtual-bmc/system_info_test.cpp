// System info parameters and the log's clock, as programs on the host set them.
#include "virtual_bmc_fixture.h"

namespace {

class SystemInfo : public VirtualBmcFixture {
protected:
    void start(const std::string& model) {
        create(model);
        bmc = open();
    }
    Bytes get(std::uint8_t parameter, std::uint8_t block = 0) {
        return ask(*bmc, 0x06, 0x59, {0x00, parameter, block, 0x00});
    }
    static Bytes first(const std::string& text) {
        Bytes bytes(5 + 14, 0x00);
        bytes[1] = 0x11;
        bytes[4] = static_cast<std::uint8_t>(text.size());
        std::copy(text.begin(), text.end(), bytes.begin() + 5);
        return bytes;
    }

    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(SystemInfo, isThereAsFarAsTheModelHasIt) {
    start("{}");
    EXPECT_EQ(get(1), Bytes{0xC1});
    start(R"({"systemInfo": {"firmwareVersion": "1.02", "osName": "Linux"}})");
    EXPECT_EQ(get(1), first("1.02"));
    EXPECT_EQ(get(2), Bytes{0x80});
    EXPECT_EQ(get(9), Bytes{0x80});
    EXPECT_EQ(get(1, 1), Bytes{0xC9});
    EXPECT_EQ(get(4), first("Linux"));
    EXPECT_EQ(ask(*bmc, 0x00, 0x02, {0}), Bytes{0x00}); // power off
    EXPECT_EQ(get(4), first("")) << "nothing runs there";
    EXPECT_EQ(get(1), first("1.02"));
}

TEST_F(SystemInfo, isSetInBlocks) {
    start(R"({"systemInfo": {"firmwareVersion": "1.02"}})");
    const Bytes head{0x02, 0x00, 0x00, 18,  'h', 'o', 's', 't', '4',
                     '2',  '.',  'e',  'x', 'a', 'm', 'p', 'l', 'e'};
    EXPECT_EQ(ask(*bmc, 0x06, 0x58, head), Bytes{0x00});
    EXPECT_EQ(ask(*bmc, 0x06, 0x58, {0x02, 0x01, '.', 'o', 'r', 'g', 0, 0}), Bytes{0x00});
    const auto info = vbmc::VirtualBmc(stateFile).describe()["systemInfo"];
    EXPECT_EQ(info["systemName"], "host42.example.org");
    EXPECT_EQ(get(2, 1).size(), 3U + 16);
    EXPECT_EQ(ask(*bmc, 0x06, 0x58, {0x02, 0x02, 'x'}), Bytes{0xC9});
    EXPECT_EQ(ask(*bmc, 0x06, 0x58, {0x02, 0x00, 0x00, 1, 0xE9}), Bytes{0xCC})
        << "what no text of the state may hold";
    EXPECT_EQ(vbmc::VirtualBmc(stateFile).describe()["systemInfo"], info);
}

TEST_F(SystemInfo, theClockHasAnOffset) {
    start("{}");
    EXPECT_EQ(ask(*bmc, 0x0A, 0x5C, {}), (Bytes{0x00, 0xFF, 0x07}));
    EXPECT_EQ(ask(*bmc, 0x0A, 0x5D, {0xC4, 0xFF}), Bytes{0x00});
    EXPECT_EQ(ask(*bmc, 0x0A, 0x5C, {}), (Bytes{0x00, 0xC4, 0xFF}));
    EXPECT_EQ(ask(*bmc, 0x0A, 0x5D, {0xA1, 0x05}), Bytes{0xC9});
    EXPECT_EQ(ask(*bmc, 0x0A, 0x49, {0x70, 0x2A, 0x36, 0x66}), Bytes{0x00});
    const auto log = vbmc::VirtualBmc(stateFile).describe()["sel"];
    EXPECT_EQ(log["utcOffset"], -60);
    EXPECT_THAT(log["timeText"].get<std::string>(), testing::StartsWith("2024-05-04 12:3"));
    EXPECT_THROW(create(R"({"sel": {"utcOffset": 1441}})"), vbmc::Error);
}

} // namespace
