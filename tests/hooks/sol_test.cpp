// Serial over LAN as messages of the BMC.
#include "scripted_bmc.h"

namespace {

using testing::ElementsAre;

Bytes get(std::uint8_t channel, std::uint8_t parameter) {
    return {0x0C, 0x22, channel, parameter, 0, 0};
}

class SolHooks : public HookTest {
protected:
    CIM_SOLConfig config{};
    CIM_SOLActivation activation{};
    CIM_SOLInstance instance{};
};

TEST_F(SolHooks, configurationIsReadFieldByField) {
    bmc.answers[get(8, 1)] = {0x00, 0x11, 0xFF};
    bmc.answers[get(8, 2)] = {0x00, 0x11, 0xB4};
    bmc.answers[get(8, 6)] = {0x00, 0x11, 0xF9};
    bmc.answers[get(8, 8)] = {0x00, 0x11, 0x6F, 0x02};
    ASSERT_EQ(CIM_GetSOLConfig(&session, 8, &config, 30), 0);
    EXPECT_TRUE(config.isSupported == 1 && config.isEnabled == 1);
    EXPECT_EQ(config.privilege, 4) << "two bits are reserved";
    EXPECT_TRUE(config.forcesEncryption == 1 && config.forcesAuthentication == 0);
    EXPECT_EQ(config.bitRate, 57600U);
    EXPECT_EQ(config.port, 623);
    bmc.answers[get(8, 6)] = {0x00, 0x11, 0x00};
    ASSERT_EQ(CIM_GetSOLConfig(&session, 8, &config, 30), 0);
    EXPECT_EQ(config.bitRate, 0U) << "that of the serial channel";
}

TEST_F(SolHooks, allMayBeMissing) {
    ASSERT_EQ(CIM_GetSOLConfig(&session, 1, &config, 30), 0) << "C1h";
    EXPECT_EQ(config.isSupported, 0);
    for (const std::uint8_t code : Bytes{0x80, 0xC9, 0xCB, 0xCC}) {
        bmc.answers[get(1, 1)] = {code};
        ASSERT_EQ(CIM_GetSOLConfig(&session, 1, &config, 30), 0);
        EXPECT_EQ(config.isSupported, 0);
    }
    bmc.answers[get(1, 1)] = {0x00, 0x11, 0x00};
    for (const std::uint8_t parameter : Bytes{2, 6, 8})
        bmc.answers[get(1, parameter)] = {0x80};
    ASSERT_EQ(CIM_GetSOLConfig(&session, 1, &config, 30), 0);
    EXPECT_TRUE(config.isSupported == 1 && config.isEnabled == 0);
    EXPECT_TRUE(config.privilege == 0 && config.bitRate == 0 && config.port == 0);

    for (const Bytes& trouble : {Bytes{0xD4}, {0x00, 0x11}, {0x00}}) {
        bmc.answers[get(1, 1)] = trouble;
        EXPECT_EQ(CIM_GetSOLConfig(&session, 1, &config, 30), -1);
    }
    bmc.answers[get(1, 1)] = {0x00, 0x11, 0x01};
    bmc.answers[get(1, 8)] = {0x00, 0x11, 0x6F};
    EXPECT_EQ(CIM_GetSOLConfig(&session, 1, &config, 30), -1) << "half a port is none";
}

TEST_F(SolHooks, enableIsOneMessage) {
    const Bytes on{0x0C, 0x21, 3, 1, 1}, off{0x0C, 0x21, 3, 1, 0};
    bmc.answers[on] = {0x00};
    bmc.answers[off] = {0x82};
    EXPECT_EQ(CIM_SetSOLEnable(&session, 3, 1, 30), 0);
    EXPECT_EQ(CIM_SetSOLEnable(&session, 3, 0, 30), -1) << "read-only";
    EXPECT_EQ(CIM_SetSOLEnable(&session, 3, 2, 30), -1);
    EXPECT_THAT(bmc.requests, ElementsAre(on, off));
}

TEST_F(SolHooks, activationIsThatOfThePayload) {
    const Bytes status{0x06, 0x4A, 1};
    ASSERT_EQ(CIM_GetSOLActivation(&session, &activation, 30), 0) << "C1h";
    EXPECT_EQ(activation.isSupported, 0);
    bmc.answers[status] = {0x00, 0x00, 0x00, 0x00};
    ASSERT_EQ(CIM_GetSOLActivation(&session, &activation, 30), 0);
    EXPECT_EQ(activation.isSupported, 0) << "a capacity of 0 is reserved";
    bmc.answers[status] = {0x00, 0xF9, 0x02, 0xFF};
    ASSERT_EQ(CIM_GetSOLActivation(&session, &activation, 30), 0);
    EXPECT_TRUE(activation.isSupported == 1 && activation.capacity == 9);
    EXPECT_EQ(activation.active, 0x0102) << "no instance beyond the capacity";
    bmc.answers[status] = {0x00, 0x01, 0x01};
    EXPECT_EQ(CIM_GetSOLActivation(&session, &activation, 30), -1);

    bmc.answers[{0x06, 0x4B, 1, 9}] = {0x00, 0x78, 0x56, 0x34, 0x12, 2, 0, 0, 0, 0, 0, 0, 0};
    ASSERT_EQ(CIM_GetSOLInstance(&session, 9, &instance, 30), 0);
    EXPECT_EQ(instance.sessionId, 0x12345678U);
    EXPECT_EQ(instance.serialPort, 2);
    EXPECT_EQ(CIM_GetSOLInstance(&session, 1, &instance, 30), -1);
}

} // namespace
