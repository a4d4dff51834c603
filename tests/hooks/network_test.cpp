// LANs, their addresses and interfaces, as messages of the BMC.
#include "scripted_bmc.h"

namespace {

using testing::ElementsAre;

constexpr std::uint8_t lanChannel = 2;

Bytes getParameter(std::uint8_t parameter, std::uint8_t set = 0) {
    return {0x0C, 0x02, lanChannel, parameter, set, 0};
}
Bytes setParameter(std::uint8_t parameter, const Bytes& value) {
    Bytes request{0x0C, 0x01, lanChannel, parameter};
    request.insert(request.end(), value.begin(), value.end());
    return request;
}
Bytes value(const Bytes& bytes) {
    Bytes answer{0x00, 0x11};
    answer.insert(answer.end(), bytes.begin(), bytes.end());
    return answer;
}
// Selector, source, 2001:db8::<last>, prefix length, status.
Bytes address(std::uint8_t selector, std::uint8_t source, std::uint8_t last, std::uint8_t prefixLength,
              std::uint8_t status = 0) {
    return {selector, source, 0x20, 0x01, 0x0D, 0xB8,         0,     0, 0, 0, 0, 0, 0,
            0,        0,      0,    0,    last, prefixLength, status};
}

class NetworkHooks : public HookTest {
protected:
    static void acceptChange(std::uint8_t parameter, const Bytes& bytes) {
        bmc.answers[setParameter(parameter, bytes)] = {0x00};
    }
};

TEST_F(NetworkHooks, lansAreTheChannelsOfMediumLan) {
    for (std::uint8_t other = 1; other <= CIM_MAX_LANS; ++other)
        bmc.answers[{0x06, 0x42, other}] = {0xCC};
    bmc.answers[{0x06, 0x42, 1}] = {0x00, 1, 0x04, 1, 0x81, 0xF2, 0x1B, 0, 0, 0};
    bmc.answers[{0x06, 0x42, 2}] = {0x00, 2, 0x05, 1, 0x81, 0xF2, 0x1B, 0, 0, 0}; // serial
    bmc.answers[{0x06, 0x42, 8}] = {0x00, 8, 0x84, 1, 0x80, 0xF2, 0x1B, 0, 0, 0};
    std::uint8_t count = 0;
    std::uint8_t number = 0;
    std::uint8_t indices[CIM_MAX_LANS] = {};
    // One that cannot be read may be a LAN: to leave it out would give the next one its index.
    for (const Bytes& trouble : {Bytes{0xC0}, Bytes{0xC3}, Bytes{0xD2}, Bytes{0x00, 1}}) {
        const Bytes answer = std::exchange(bmc.answers[{0x06, 0x42, 1}], trouble);
        EXPECT_NE(CIM_GetLANCount(&session, &count, indices, 30), 0);
        EXPECT_NE(CIM_GetChannelNum(&session, 1, &number, 30), 0);
        bmc.answers[{0x06, 0x42, 1}] = answer;
    }
    bmc.requests.clear();
    EXPECT_EQ(CIM_GetLANCount(&session, &count, indices, 30), 0);
    ASSERT_EQ(count, 2);
    EXPECT_THAT(std::span(indices, 2), ElementsAre(1, 2));
    EXPECT_EQ(CIM_GetChannelNum(&session, 2, &number, 30), 0);
    EXPECT_EQ(number, 8);
    EXPECT_NE(CIM_GetChannelNum(&session, 0, &number, 30), 0);
    EXPECT_NE(CIM_GetChannelNum(&session, 3, &number, 30), 0);
    EXPECT_EQ(bmc.requests.size(), CIM_MAX_LANS) << "they are read once";
}

// An answer that is lost, as that of a new address, must not leave a transaction (parameter 0) open.
TEST_F(NetworkHooks, changeIsOneCommand) {
    const std::uint8_t bytes[] = {192, 0, 2, 9};
    acceptChange(3, {192, 0, 2, 9});
    EXPECT_EQ(CIM_SetIPv4Address(&session, bytes, lanChannel, 30), 0);
    EXPECT_NE(CIM_SetIPv4NetMask(&session, bytes, lanChannel, 30), 0);
    EXPECT_THAT(bmc.requests, ElementsAre(setParameter(3, {192, 0, 2, 9}), setParameter(6, {192, 0, 2, 9})));
}

TEST_F(NetworkHooks, vlanIsAnIdAndABit) {
    std::uint8_t enabled = 9;
    std::uint16_t id = 9;
    std::uint8_t priority = 9;
    EXPECT_EQ(CIM_GetVlanStatus(&session, &enabled, &id, &priority, lanChannel, 30),
              -1); // C1h: no LAN at all
    bmc.answers[getParameter(20)] = {0x80};
    bmc.answers[getParameter(21)] = {0xCC};
    EXPECT_EQ(CIM_GetVlanStatus(&session, &enabled, &id, &priority, lanChannel, 30), 0);
    EXPECT_EQ(enabled, 0);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(priority, 0);
    bmc.answers[getParameter(20)] = value({0xD2, 0xF4});
    bmc.answers[getParameter(21)] = value({0xFD});
    EXPECT_EQ(CIM_GetVlanStatus(&session, &enabled, &id, &priority, lanChannel, 30), 0);
    EXPECT_EQ(enabled, 1);
    EXPECT_EQ(id, 1234);
    EXPECT_EQ(priority, 5);
}

TEST_F(NetworkHooks, ipv6AddressesInUseAreListed) {
    CIM_IPv6Addresses list{};
    bmc.answers[getParameter(51)] = {0x80};
    EXPECT_EQ(CIM_GetAllIPv6Addresses(&session, &list, lanChannel, 30), 0); // a BMC of IPv4
    EXPECT_EQ(list.count, 0);

    bmc.answers[getParameter(51)] = value({0x02});
    bmc.answers[getParameter(55)] = value({3, 4, 0x03});
    bmc.answers[getParameter(56, 0)] = value(address(0, 0x80, 0x0A, 64));
    bmc.answers[getParameter(56, 1)] = value(address(1, 0x00, 0x0B, 64, 1)); // disabled
    bmc.answers[getParameter(56, 2)] = {0xC9};                               // fewer than it said
    bmc.answers[getParameter(59, 0)] = value(address(0, 0x01, 0x0C, 64));
    bmc.answers[getParameter(59, 1)] = value(address(1, 0x02, 0x0D, 128));
    bmc.answers[getParameter(59, 2)] = value(address(2, 0x02, 0x0E, 128, 3)); // failed
    bmc.answers[getParameter(59, 3)] = value(Bytes(20, 0));                   // "::"
    ASSERT_EQ(CIM_GetAllIPv6Addresses(&session, &list, lanChannel, 30), 0);
    ASSERT_EQ(list.count, 3);
    EXPECT_EQ(list.addresses[0].address[15], 0x0A);
    EXPECT_EQ(list.addresses[0].origin, 0);
    EXPECT_EQ(list.addresses[1].address[15], 0x0C);
    EXPECT_EQ(list.addresses[1].origin, 1);
    EXPECT_EQ(list.addresses[2].prefixLength, 128);
    EXPECT_EQ(list.addresses[2].origin, 2);

    bmc.answers[getParameter(51)] = value({0x00});
    ASSERT_EQ(CIM_GetAllIPv6Addresses(&session, &list, lanChannel, 30), 0);
    EXPECT_EQ(list.count, 0);
    bmc.answers[getParameter(51)] = value({0x01});
    bmc.answers[getParameter(55)] =
        value({255, 255, 0x03}); // more than there is room for, or more than it has
    for (const bool has : {false, true}) {
        for (std::uint8_t set = 0; set < 255; ++set)
            bmc.answers[getParameter(56, set)] = has ? value(address(set, 0x80, set, 64)) : Bytes{0xC9};
        bmc.answers[getParameter(59, 0)] = value(address(7, 0x01, 0x0C, 64)); // not the set asked for
        bmc.requests.clear();
        EXPECT_EQ(CIM_GetAllIPv6Addresses(&session, &list, lanChannel, 30) == 0, has);
        EXPECT_LE(bmc.requests.size(), 2U + CIM_MAX_IPV6_ADDRESSES + 1);
    }
    EXPECT_EQ(list.count, CIM_MAX_IPV6_ADDRESSES);
}

TEST_F(NetworkHooks, ipv6RoutersInUseAreListed) {
    const auto router = [](std::uint8_t last) {
        Bytes bytes{0xFE, 0x80};
        bytes.resize(15);
        bytes.push_back(last);
        return bytes;
    };
    const auto dynamic = [&](std::uint8_t set, std::uint8_t last) {
        Bytes bytes = router(last);
        bytes.insert(bytes.begin(), set);
        return bytes;
    };
    bmc.answers[getParameter(51)] = value({0x02});
    bmc.answers[getParameter(65)] = value(router(1));
    bmc.answers[getParameter(69)] = value(Bytes(16, 0)); // not set
    bmc.answers[getParameter(73)] = value({200});        // more than it has
    bmc.answers[getParameter(74, 0)] = value(dynamic(0, 2));
    bmc.answers[getParameter(74, 1)] = value(dynamic(1, 3));
    for (std::uint8_t set = 2; set < CIM_MAX_IPV6_ROUTERS; ++set)
        bmc.answers[getParameter(74, set)] = {0xC9};
    using Last = std::vector<int>;
    const std::pair<Bytes, Last> cases[] = {
        {value({0x01}), {1}}, {value({0x02}), {2, 3}}, {value({0x03}), {1, 2, 3}}, {Bytes{0x80}, {}}};
    for (const auto& [control, expected] : cases) {
        bmc.answers[getParameter(64)] = control;
        CIM_IPv6Routers routers{};
        ASSERT_EQ(CIM_GetIPv6Routers(&session, &routers, lanChannel, 30), 0);
        Last found;
        for (int i = 0; i < routers.count; ++i)
            found.push_back(routers.addresses[i][15]);
        EXPECT_EQ(found, expected);
    }
    bmc.answers[getParameter(51)] = value({0x00});
    CIM_IPv6Routers routers{9, {}};
    EXPECT_EQ(CIM_GetIPv6Routers(&session, &routers, lanChannel, 30), 0);
    EXPECT_EQ(routers.count, 0);
}

// Network function 30h, command 27h: what it says of servers and names is taken only as far as it makes sense.
TEST_F(NetworkHooks, dnsSettingsAreReadBlockByBlock) {
    const auto block = [](std::uint8_t number) { return Bytes{0x30, 0x27, lanChannel, 4, 1, number}; };
    const auto filled = [](Bytes bytes) {
        bytes.insert(bytes.begin(), 0x00);
        bytes.resize(33);
        return bytes;
    };
    CIM_DNSConfig dns{};
    EXPECT_EQ(CIM_GetDNSConfig(&session, &dns, lanChannel, 4, 1, 30), 0);
    EXPECT_EQ(dns.isSupported, 0) << "a BMC without the command";
    bmc.answers[block(0)] = filled({0xFE, 0xFD, 9, 192, 0, 2, 53});
    bmc.answers[block(1)] = filled({});
    bmc.answers[block(2)] = filled({'b', 'm', 'c'});
    bmc.answers[block(4)] = filled(Bytes(32, 'a'));
    bmc.answers[block(5)] = filled({'.', 'e', 'u', 0, 'x'});
    bmc.requests.clear();
    ASSERT_EQ(CIM_GetDNSConfig(&session, &dns, lanChannel, 4, 1, 30), 0);
    EXPECT_EQ(bmc.requests.size(), 5U) << "names are read as far as they go";
    EXPECT_EQ(dns.isSupported, 1);
    EXPECT_EQ(dns.registersAddress, 0);
    EXPECT_EQ(dns.registersWithDomain, 1);
    EXPECT_EQ(dns.fromDhcp, CIM_DNS_SERVERS_FROM_DHCP | CIM_DNS_DOMAIN_FROM_DHCP);
    EXPECT_EQ(dns.serverCount, CIM_MAX_DNS_SERVERS);
    EXPECT_STREQ(dns.hostName, "bmc");
    EXPECT_EQ(dns.domainName, std::string(32, 'a') + ".eu");
    for (const Bytes& wrong : {Bytes{0xC9}, Bytes{0x00, 'a'}, filled({'b', 0xFC}), filled({'b', '\n'})}) {
        bmc.answers[block(2)] = wrong;
        EXPECT_NE(CIM_GetDNSConfig(&session, &dns, lanChannel, 4, 1, 30), 0);
    }
    bmc.answers[block(2)] = bmc.answers[block(3)] = filled(Bytes(32, 'h'));
    EXPECT_NE(CIM_GetDNSConfig(&session, &dns, lanChannel, 4, 1, 30), 0) << "a name without an end";
}

TEST_F(NetworkHooks, ipv6SourceFollowsAddressAndRouters) {
    const std::tuple<std::uint8_t, Bytes, int> cases[] = {
        {0x80, value({0x02}), CIM_ADDRESS_SOURCE_STATIC}, {0x00, value({0x02}), CIM_ADDRESS_SOURCE_DYNAMIC},
        {0x00, value({0x01}), CIM_ADDRESS_SOURCE_STATIC}, {0x00, value({0x03}), CIM_ADDRESS_SOURCE_DYNAMIC},
        {0x00, Bytes{0x80}, CIM_ADDRESS_SOURCE_DYNAMIC},
    };
    bmc.answers[getParameter(65)] = {0x80};
    for (const auto& [source, routers, expected] : cases) {
        bmc.answers[getParameter(56)] = value(address(0, source, 1, 48));
        bmc.answers[getParameter(64)] = routers;
        CIM_IPv6NetworkCfg configuration{};
        ASSERT_EQ(CIM_GetIPv6NetworkCfg(&session, &configuration, lanChannel, 30), 0);
        EXPECT_EQ(configuration.source, expected);
        EXPECT_EQ(configuration.prefixLength, 48);
    }
}

// Its addresses are dynamic, whatever its routers are.
TEST_F(NetworkHooks, aBmcMayHaveNoStaticIpv6Address) {
    bmc.answers[getParameter(56)] = {0xC9};
    bmc.answers[getParameter(64)] = value({0x01});
    bmc.answers[getParameter(65)] = {0x80};
    CIM_IPv6NetworkCfg configuration{};
    EXPECT_NE(CIM_GetIPv6NetworkCfg(&session, &configuration, lanChannel, 30), 0) << "nor IPv6 at all";
    bmc.answers[getParameter(51)] = value({0x00});
    ASSERT_EQ(CIM_GetIPv6NetworkCfg(&session, &configuration, lanChannel, 30), 0);
    EXPECT_EQ(configuration.source, CIM_ADDRESS_SOURCE_DYNAMIC);
    EXPECT_EQ(configuration.prefixLength, 0);

    acceptChange(51, {0x02});
    acceptChange(64, {0x02});
    bmc.requests.clear();
    EXPECT_NE(CIM_SetIPv6Source(&session, CIM_ADDRESS_SOURCE_STATIC, lanChannel, 30), 0);
    EXPECT_THAT(bmc.requests, ElementsAre(getParameter(56))) << "refused before anything is changed";
    EXPECT_EQ(CIM_SetIPv6Source(&session, CIM_ADDRESS_SOURCE_DYNAMIC, lanChannel, 30), 0);
    EXPECT_EQ(bmc.requests.back(), setParameter(64, {0x02}));
}

// Address and prefix length are parts of one parameter: each change keeps the other.
TEST_F(NetworkHooks, ipv6ChangesKeepWhatTheyDoNotChange) {
    bmc.answers[getParameter(51)] = value({0x00});
    bmc.answers[getParameter(56)] = value(address(0, 0x80, 1, 48));
    acceptChange(51, {0x02});
    acceptChange(64, {0x01});
    EXPECT_EQ(CIM_SetIPv6Source(&session, CIM_ADDRESS_SOURCE_STATIC, lanChannel, 30), 0);

    const std::uint8_t bytes[16] = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9};
    acceptChange(56, address(0, 0x80, 9, 48));
    EXPECT_EQ(CIM_SetIPv6Address(&session, bytes, lanChannel, 30), 0);
    acceptChange(56, address(0, 0x80, 1, 56));
    EXPECT_EQ(CIM_SetIPv6Prefix(&session, 56, lanChannel, 30), 0);
    EXPECT_NE(CIM_SetIPv6Prefix(&session, 129, lanChannel, 30), 0);

    acceptChange(64, {0x02});
    acceptChange(56, address(0, 0x00, 1, 48));
    EXPECT_EQ(CIM_SetIPv6Source(&session, CIM_ADDRESS_SOURCE_DYNAMIC, lanChannel, 30), 0);
    EXPECT_NE(CIM_SetIPv6Source(&session, 3, lanChannel, 30), 0);
}

// Names that would break keys and file names are not taken.
TEST_F(NetworkHooks, interfacesHaveProperNames) {
    char name[CIM_INTERFACE_NAME_SIZE];
    for (const std::string bad : {"", "../../etc/x", "eth 0", "eth0*1", "a-name-of-17-byte"}) {
        Bytes answer{0x00};
        answer.insert(answer.end(), bad.begin(), bad.end());
        bmc.answers[{0x30, 0x20, 1}] = answer;
        EXPECT_NE(CIM_GetLANIndex(&session, 1, name, 30), 0) << bad;
    }
    bmc.answers[{0x30, 0x20, 1}] = {0x00, 'b', 'o', 'n', 'd', '0'};
    EXPECT_EQ(CIM_GetLANIndex(&session, 1, name, 30), 0);
    EXPECT_STREQ(name, "bond0");
}

} // namespace
