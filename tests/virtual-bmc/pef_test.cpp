// Platform event filters and alert policies as clients read and write them.
#include "virtual_bmc_fixture.h"

namespace {

class Pef : public VirtualBmcFixture {
protected:
    Bytes set(Bytes request) const { return ask(*open(), sensorEvent, 0x12, request); }
    Bytes get(std::uint8_t parameter, std::uint8_t selector = 0) const {
        return ask(*open(), sensorEvent, 0x13, {parameter, selector, 0});
    }
};

TEST_F(Pef, tablesKeepWhatIsWritten) {
    create(R"({"pef": {"filterCount": 3, "policyCount": 2,
        "policies": [{"number": 1, "bytes": "18 11 00"}]}})");
    EXPECT_EQ(ask(*open(), sensorEvent, 0x10, {}), Bytes({0x00, 0x51, 0x01, 3}));
    EXPECT_EQ(get(5), Bytes({0x00, 0x11, 3}));
    EXPECT_EQ(get(8), Bytes({0x00, 0x11, 2}));
    EXPECT_EQ(get(9, 1), Bytes({0x00, 0x11, 1, 0x18, 0x11, 0x00}));
    EXPECT_EQ(set({9, 2, 0x28, 0x12, 0x80}), Bytes({0x00}));
    EXPECT_EQ(get(9, 2), Bytes({0x00, 0x11, 2, 0x28, 0x12, 0x80}));
    Bytes unwritten{0x00, 0x11, 2};
    unwritten.resize(23);
    EXPECT_EQ(get(6, 2), unwritten);
}

TEST_F(Pef, whatItDoesNotHaveIsRefused) {
    create(R"({"pef": {"filterCount": 3}})");
    const std::tuple<Bytes, std::uint8_t> cases[] = {
        {{5, 4}, 0x82}, {{8, 4}, 0x82}, {{15, 0}, 0x80}, {{9, 1, 0x18, 0x11}, 0xC7},
        {{0, 3}, 0xCC}, {{0}, 0xC7},
    };
    for (const auto& [request, code] : cases)
        EXPECT_EQ(set(request), Bytes({code}));
    Bytes beyond(22, 0);
    beyond[0] = 6;
    for (const std::uint8_t number : Bytes{0, 4}) {
        beyond[1] = number;
        EXPECT_EQ(set(beyond), Bytes({0xC9}));
        EXPECT_EQ(get(6, number), Bytes({0xC9}));
    }
    EXPECT_EQ(get(15), Bytes({0x80}));
    EXPECT_EQ(get(0x85), Bytes({0x00, 0x11})); // revision only

    EXPECT_EQ(set({0, 1}), Bytes({0x00}));
    EXPECT_EQ(set({0, 1}), Bytes({0x81}));
    EXPECT_EQ(get(0), Bytes({0x00, 0x11, 1}));
    EXPECT_EQ(set({0, 0}), Bytes({0x00}));
    EXPECT_EQ(set({0, 1}), Bytes({0x00}));
}

} // namespace
