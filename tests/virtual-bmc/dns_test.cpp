// The settings of DNS clients as blocks of bytes.
#include "virtual_bmc_fixture.h"

namespace {

constexpr std::uint8_t getDns = 0x27, setDns = 0x28;

class DnsCommands : public VirtualBmcFixture {
protected:
    void SetUp() override {
        create(R"({"lans": [{"channel": 1, "name": "eth0"}], "dns": {"suffixes": ["a", "b.c"]}})");
        bmc = open();
    }
    Bytes get(const Bytes& request) { return ask(*bmc, oem, getDns, request); }
    Bytes set(std::uint8_t channel, std::uint8_t version, std::uint8_t block, const std::string& bytes = {}) {
        Bytes request{channel, version, block};
        request.insert(request.end(), bytes.begin(), bytes.end());
        request.resize(3 + blockSize);
        return ask(*bmc, oem, setDns, request);
    }
    // Sets all 12 blocks of a client; the last one's answer.
    Bytes setClient(std::uint8_t version, const std::string& head, const std::string& host,
                    const std::string& domain) {
        Bytes answer;
        for (std::uint8_t block = 0; block < 12; ++block)
            answer = set(1, version, block, block == 0 ? head : block == 2 ? host : block == 4 ? domain : "");
        return answer;
    }
    std::string text(const Bytes& request) {
        const Bytes answer = get(request);
        return {answer.begin() + 1, std::find(answer.begin() + 1, answer.end(), 0)};
    }
    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(DnsCommands, takeEffectWithTheLastBlock) {
    EXPECT_EQ(text({0, 0, 0, 1}), "a b.c");
    for (std::uint8_t block = 0; block < 8; ++block)
        EXPECT_EQ(set(0, 0, block, block == 1 ? "x.y" : ""), Bytes({0}));
    EXPECT_EQ(text({0, 0, 0, 1}), "a b.c");
    EXPECT_EQ(set(0, 0, 7), Bytes({0xCC})) << "out of order";
    EXPECT_EQ(set(1, 4, 8), Bytes({0xCC})) << "of others";
    EXPECT_EQ(set(0, 0, 8), Bytes({0}));
    EXPECT_EQ(text({0, 0, 0, 1}), "x.y");
    for (const Bytes& absent :
         std::initializer_list<Bytes>{{0, 4, 0, 0}, {0, 0, 0, 9}, {1, 4, 0, 12}, {1, 5, 0, 0}, {2, 4, 0, 0}})
        EXPECT_EQ(get(absent), Bytes({0xC9})) << testing::PrintToString(absent);
}

TEST_F(DnsCommands, refuseWhatIsNoName) {
    const std::string oneServer("\x03\x07\x01\xC0\x00\x02\x35", 7);
    EXPECT_EQ(setClient(4, oneServer, "bmc", "example.com"), Bytes({0}));
    const struct {
        std::string head, host, domain;
    } wrong[] = {{oneServer, "bmc_1", ""},
                 {oneServer, "", "a..b"},
                 {oneServer, "", "-a"},
                 {std::string("\x04", 1), "", ""},
                 {std::string("\x00\x08", 2), "", ""},
                 {std::string("\x00\x00\x04\x01", 4), "", ""},
                 {std::string("\x00\x00\x01", 3), "", ""}}; // 0.0.0.0
    for (const auto& [head, host, domain] : wrong)
        EXPECT_EQ(setClient(4, head, host, domain), Bytes({0xCC})) << host << domain << head.size();
    EXPECT_EQ(text({1, 4, 0, 2}), "bmc");
    EXPECT_EQ(text({1, 4, 1, 4}), "example.com");
    EXPECT_EQ(text({1, 6, 0, 2}), "") << "that is another client";
}

} // namespace
