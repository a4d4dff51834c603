// Alert destinations of LANs, as messages of the BMC.
#include "scripted_bmc.h"

namespace {

constexpr std::uint8_t alertChannel = 2;

class AlertHooks : public HookTest {
protected:
    static void answer(std::uint8_t parameter, std::uint8_t selector, const Bytes& value) {
        Bytes& bytes = bmc.answers[{0x0C, 0x02, alertChannel, parameter, selector, 0}];
        bytes = {0x00, 0x11};
        bytes.insert(bytes.end(), value.begin(), value.end());
    }
    static void acceptChange(std::uint8_t parameter, const Bytes& value) {
        Bytes request{0x0C, 0x01, alertChannel, parameter};
        request.insert(request.end(), value.begin(), value.end());
        bmc.answers[request] = {0x00};
    }
    static constexpr std::uint8_t ipv6[16] = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9};
    static Bytes ipv6Value(std::uint8_t selector) {
        Bytes value{selector, 0x10};
        value.insert(value.end(), ipv6, ipv6 + sizeof ipv6);
        return value;
    }

    CIM_LANDestinationType types[CIM_MAX_LAN_DESTINATIONS] = {};
    CIM_LANDestinationAddress addresses[CIM_MAX_LAN_DESTINATIONS] = {};
    std::uint8_t count = 0;
};

TEST_F(AlertHooks, tablesHoldWhatTheBmcHas) {
    answer(17, 0, {0xF3}); // the count has 4 bits
    answer(18, 1, {1, 0x86, 3, 2});
    answer(19, 1, {1, 0x00, 1, 192, 0, 2, 9, 2, 0, 0, 0, 0, 1});
    bmc.answers[{0x0C, 0x02, alertChannel, 18, 2, 0}] = {0xC9}; // a set that this BMC does not have
    answer(18, 3, {3, 0x00, 0, 0});
    answer(19, 3, ipv6Value(3));
    ASSERT_EQ(CIM_GetLANDestinationType_AddrTable(&session, types, addresses, &count, alertChannel, 30), 0);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(types[0].type, 0x86);
    EXPECT_EQ(types[0].acknowledgeTimeout, 3);
    EXPECT_EQ(types[0].retries, 2);
    EXPECT_EQ(addresses[0].selector, 1);
    EXPECT_EQ(addresses[0].gateway, 1);
    EXPECT_EQ(addresses[0].address[3], 9);
    EXPECT_EQ(addresses[0].mac[5], 1);
    EXPECT_EQ(types[1].selector, 0);
    EXPECT_EQ(addresses[1].selector, 0);
    EXPECT_EQ(types[2].selector, 3);
    EXPECT_EQ(addresses[2].selector, 0) << "no IPv4 address";

    CIM_LANDestinationV6Address address{};
    ASSERT_EQ(CIM_GetLANDestinationV6Address(&session, alertChannel, 3, &address, 30), 0);
    EXPECT_EQ(address.isUsed, 1);
    EXPECT_TRUE(std::equal(ipv6, ipv6 + 16, address.address));
    ASSERT_EQ(CIM_GetLANDestinationV6Address(&session, alertChannel, 1, &address, 30), 0);
    EXPECT_EQ(address.isUsed, 0);
    EXPECT_EQ(address.address[0], 0);
}

TEST_F(AlertHooks, noIpv6AddressIsClearedWhereThereIsNone) {
    // To clear an IPv6 address where there is none sends no change, which a BMC without IPv6 would refuse.
    const std::uint8_t none[16] = {};
    answer(19, 4, {4, 0x00, 0, 192, 0, 2, 9, 0, 0, 0, 0, 0, 0});
    bmc.requests.clear();
    EXPECT_EQ(CIM_SetLANDestinationV6Address(&session, alertChannel, 4, 1, none, 30), 0);
    EXPECT_EQ(bmc.requests.size(), 1u);
    answer(19, 4, ipv6Value(4));
    EXPECT_EQ(CIM_SetLANDestinationV6Address(&session, alertChannel, 4, 1, none, 30), -1)
        << "refused by this BMC";
}

TEST_F(AlertHooks, anotherSetThanTheOneAskedForIsNone) {
    CIM_LANDestinationV6Address address{};
    answer(17, 0, {2});
    answer(18, 1, {2, 6, 0, 0});
    answer(19, 1, ipv6Value(2));
    EXPECT_EQ(CIM_GetLANDestinationType_AddrTable(&session, types, addresses, &count, alertChannel, 30), -1);
    EXPECT_EQ(CIM_SetLANDestinationType(&session, alertChannel, 1, 6, 30), -1);
    EXPECT_EQ(CIM_GetLANDestinationV6Address(&session, alertChannel, 1, &address, 30), -1);
    answer(18, 1, {0, 0, 0, 0});
    answer(18, 2, {2, 6, 0, 0});
    answer(19, 2, {2, 0, 0, 192, 0, 2, 9, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(CIM_GetLANDestinationType_AddrTable(&session, types, addresses, &count, alertChannel, 30), 0);
    EXPECT_EQ(types[0].selector, 0) << "not used";
    EXPECT_EQ(types[1].selector, 2);

    Bytes& filter = bmc.answers[{0x04, 0x13, 6, 3, 0}];
    filter = Bytes(23, 0);
    CIM_PEFEntry entry{};
    for (const std::uint8_t selector :
         std::initializer_list<std::uint8_t>{0x03, 0x83, 0x04, 0x00}) { // bit 7 is reserved
        filter[2] = selector;
        EXPECT_EQ(CIM_GetPEFEntry(&session, 3, &entry, 30), (selector & 0x7F) == 3 ? 0 : -1);
    }
}

TEST_F(AlertHooks, shortAnswersAndMissingArgumentsFail) {
    answer(17, 0, {1});
    answer(18, 1, {1, 0, 0});
    EXPECT_EQ(CIM_GetLANDestinationType_AddrTable(&session, types, addresses, &count, alertChannel, 30), -1);
    EXPECT_EQ(CIM_SetLANDestinationType(&session, alertChannel, 1, 6, 30), -1);
    answer(19, 1, {1, 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}); // IPv6, and cut after 13 bytes
    CIM_LANDestinationV6Address address{};
    EXPECT_EQ(CIM_GetLANDestinationV6Address(&session, alertChannel, 1, &address, 30), -1);
    EXPECT_EQ(CIM_GetLANDestinationType_AddrTable(&session, nullptr, addresses, &count, alertChannel, 30),
              -1);
    EXPECT_EQ(CIM_SetLANDestinationAddress(&session, alertChannel, 1, 0, nullptr, 30), -1);
    EXPECT_EQ(CIM_SetLANDestinationV6Address(&session, alertChannel, 1, 1, nullptr, 30), -1);
}

} // namespace
