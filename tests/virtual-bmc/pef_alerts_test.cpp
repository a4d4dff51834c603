// Which filters match an event, and whom that alerts.
#include "virtual_bmc_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Record = std::array<std::uint8_t, 16>;

// Upper critical going high of temperature sensor 3h: reading 7Dh, threshold 78h.
constexpr Record temperature = {0, 0, 0x02, 0, 0, 0, 0, 0x20, 0x00, 0x04, 0x01, 0x03, 0x01, 0x59, 0x7D, 0x78};
constexpr Record deasserted = {0, 0, 0x02, 0, 0, 0, 0, 0x20, 0x00, 0x04, 0x01, 0x03, 0x81, 0x59, 0x7D, 0x78};

class PefAlerts : public VirtualBmcFixture {
protected:
    // Numbers of the filters that match, of those that the JSON array holds.
    std::vector<std::uint8_t> matching(const std::string& filters, const Record& record) {
        create(R"({"pef": {"filters": )" + filters + "}}");
        return vbmc::VirtualBmc(stateFile).matchEvent(record).filters;
    }
    bool matches(const std::string& filter, const Record& record) {
        return !matching(R"([{"number": 1, "bytes": ")" + filter + "\"}]", record).empty();
    }
    // Alerts of an event that matches policies 1 and 2, as channel:selector:type.
    std::vector<std::string> alerts(const std::string& policies, const std::string& more = "") {
        create(R"({"lans": [{"channel": 1, "name": "eth0"}, {"channel": 8, "name": "eth1"}],
            "alertDestinations": [{"channel": 1, "selector": 1, "kind": "e-mail"}, {"channel": 1, "selector": 2, "kind": "e-mail"},
                                  {"channel": 8, "selector": 1, "kind": "listener"}],
            "pef": {"filters": [{"number": 1, "bytes": "80 01 02 00 00 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00"},
                                {"number": 2, "bytes": "80 01 01 00 00 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00"},
                                {"number": 3, "bytes": "80 02 03 00 00 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00"}],
                    "policies": [)" +
               policies + "]" + more + "}}");
        std::vector<std::string> all;
        for (const vbmc::Alert& alert : vbmc::VirtualBmc(stateFile).matchEvent(temperature).alerts)
            all.push_back(std::to_string(alert.channel) + ':' + std::to_string(alert.selector) + ':' +
                          std::to_string(alert.type));
        return all;
    }
};

TEST_F(PefAlerts, filtersMatchByEachOfTheirFields) {
    const struct {
        const char* filter;
        bool matchesAssertion, matchesDeassertion;
    } cases[] = {
        {"80 01 01 10 ff ff ff ff ff ff ff 00 00 00 00 00 00 00 00 00", true, true},
        {"80 01 01 10 00 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00", true, true}, // zeros of a fresh slot
        {"00 01 01 10 ff ff ff ff ff ff ff 00 00 00 00 00 00 00 00 00", false, false},
        {"80 01 01 10 20 00 01 03 01 00 02 00 00 00 00 00 00 00 00 00", true, false},
        {"80 01 01 10 20 ff ff ff 81 ff ff 00 00 00 00 00 00 00 00 00", false, true},
        {"80 01 01 10 21 00 ff ff ff ff ff 00 00 00 00 00 00 00 00 00", false, false}, // generator
        {"80 01 01 10 20 01 ff ff ff ff ff 00 00 00 00 00 00 00 00 00", false, false},
        {"80 01 01 10 ff ff 02 ff ff ff ff 00 00 00 00 00 00 00 00 00", false, false}, // sensor type
        {"80 01 01 10 ff ff 01 04 ff ff ff 00 00 00 00 00 00 00 00 00", false, false}, // sensor number
        {"80 01 01 10 ff ff 00 ff ff ff ff 00 00 00 00 00 00 00 00 00", false, false},
        {"80 01 01 10 ff ff ff ff 6f ff ff 00 00 00 00 00 00 00 00 00", false, false}, // trigger
        {"80 01 01 10 ff ff ff ff ff ff 01 00 00 00 00 00 00 00 00 00", false,
         false}, // offset 9 is in byte 2
        {"80 01 01 10 ff ff ff ff ff 00 fd 00 00 00 00 00 00 00 00 00", false, false},
        {"80 01 01 10 ff ff ff ff ff ff ff f0 f0 5f 00 00 00 00 00 00", true,
         true}, // high nibble of data 1 is 5
        {"80 01 01 10 ff ff ff ff ff ff ff f0 f0 6f 00 00 00 00 00 00", false, false},
        {"80 01 01 10 ff ff ff ff ff ff ff 00 00 00 0f 0c 0c 00 00 00", true,
         true}, // 7Dh: xxxx11 exactly, and 0 of bit 1
        {"80 01 01 10 ff ff ff ff ff ff ff 00 00 00 0f 0c 0e 00 00 00", false,
         false}, // neither bit 1 nor bit 0
        {"80 01 01 10 ff ff ff ff ff ff ff 00 00 00 00 00 00 ff ff 78", true, true},
        {"80 01 01 10 ff ff ff ff ff ff ff 00 00 00 00 00 00 ff ff 79", false, false},
    };
    for (const auto& expected : cases) {
        EXPECT_EQ(matches(expected.filter, temperature), expected.matchesAssertion) << expected.filter;
        EXPECT_EQ(matches(expected.filter, deasserted), expected.matchesDeassertion) << expected.filter;
    }
    Record oemRecord = temperature;
    oemRecord[2] = 0xC0;
    EXPECT_FALSE(matches(cases[0].filter, oemRecord)) << "no event";
}

TEST_F(PefAlerts, policiesNameTheDestinations) {
    EXPECT_THAT(alerts(R"({"number": 1, "bytes": "18 11 00"}, {"number": 2, "bytes": "10 12 00"},
                          {"number": 3, "bytes": "28 81 00"}, {"number": 4, "bytes": "38 12 00"},
                          {"number": 5, "bytes": "18 81 00"}, {"number": 6, "bytes": "18 21 00"},
                          {"number": 7, "bytes": "18 83 00"})"),
                ElementsAre("8:1:7", "1:1:6", "8:3:0"))
        << "policy 2 of the first filter; then policy 1, each destination once, none that is disabled, of a "
           "filter "
           "without the alert action, or without a LAN";
    const std::string one = R"({"number": 1, "bytes": "18 11 00"})";
    EXPECT_THAT(alerts(one, R"(, "control": 0)"), IsEmpty());
    EXPECT_THAT(alerts(one, R"(, "actionControl": 0)"), IsEmpty());
}

TEST_F(PefAlerts, laterEntriesDependOnEarlierOnes) {
    const std::string first = R"({"number": 1, "bytes": "18 11 00"}, )";
    const std::string rest = R"({"number": 3, "bytes": "18 12 00"}, {"number": 4, "bytes": "18 81 00"})";
    const struct {
        const char* rule;
        std::vector<std::string> sent;
    } cases[] = {
        {"18", {"1:1:6", "1:3:0", "1:2:6", "8:1:7"}}, // send too
        {"19", {"1:1:6", "1:2:6", "8:1:7"}},          // do not send, go on
        {"1a", {"1:1:6"}},                            // stop
        {"1b", {"1:1:6", "8:1:7"}},                   // go on with another channel
        {"1c", {"1:1:6", "1:2:6", "8:1:7"}},          // go on with another kind than a trap
    };
    for (const auto& [rule, sent] : cases)
        EXPECT_EQ(alerts(first + R"({"number": 2, "bytes": ")" + (rule + (" 13 00\"}, " + rest))), sent)
            << rule;
    EXPECT_THAT(alerts(R"({"number": 1, "bytes": "1a 11 00"}, )" + rest),
                ElementsAre("1:1:6", "1:2:6", "8:1:7"))
        << "nothing was sent before the first";
}

} // namespace
