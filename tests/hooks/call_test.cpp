// What holds for each hook that has a session: its call ends in time, a session whose BMC fell silent is
// over, and OEM commands go to the BMCs that they belong to.
#include "scripted_bmc.h"

#include <chrono>
#include <thread>

namespace {

using testing::IsEmpty;

constexpr std::uint8_t someBytes[32] = {1};
CIM_LANDestinationType types[CIM_MAX_LAN_DESTINATIONS];
CIM_LANDestinationAddress addresses[CIM_MAX_LAN_DESTINATIONS];
CIM_PEFEntry filters[CIM_MAX_PEF_ENTRIES];
std::uint8_t u8[CIM_MAX_LANS];
std::uint16_t u16 = 0;
char someText[CIM_EMAIL_MESSAGE_SIZE + 1];
struct {
    CIM_LANDestinationV6Address v6Destination;
    CIM_SELInfo selInfo;
    CIM_IPv4NetworkCfg ipv4;
    CIM_IPv6NetworkCfg ipv6;
    CIM_IPv6Addresses ipv6Addresses;
    CIM_SELEntry entry;
    CIM_SELEntryAnswer entryAnswer;
    CIM_SensorReading reading;
    CIM_BondInfo bondInfo;
    CIM_BondConfig bond;
    CIM_SMTPInfo mailServer;
    CIM_ServiceConf service;
    CIM_FirmwareUpdate firmware;
    std::uint32_t phy;
} out;
constexpr CIM_PEFEntry filter = {};
constexpr CIM_SELEntryRequest entryRequest = {{0, 0}, {1, 0}, 0, 0xFF};
constexpr CIM_BondConfig bond = {};
constexpr CIM_ServiceSettings service = {"ssh", 1, 0, 22, 600, 8};

// What a BMC without the OEM commands makes of the hook.
enum Need { None, Default, Oem };

struct Hook {
    const char* name;
    Need need;
    int (*call)(IPMI20_SESSION_T* session, int timeout);
};

#define HOOK(name, need, ...)                                                                                \
    Hook {                                                                                                   \
#name, need, [](IPMI20_SESSION_T * s, int t) { return name(s, __VA_ARGS__); }                        \
    }

const Hook hooks[] = {
    HOOK(CIM_PowerUp, None, t),
    HOOK(CIM_GetLANDestinationType_AddrTable, None, types, addresses, u8, 1, t),
    HOOK(CIM_SetLANDestinationType, None, 1, 1, 6, t),
    HOOK(CIM_SetLANDestinationAddress, None, 1, 1, 0, someBytes, t),
    HOOK(CIM_GetLANDestinationV6Address, None, 1, 1, &out.v6Destination, t),
    HOOK(CIM_SetLANDestinationV6Address, None, 1, 1, 1, someBytes, t),
    HOOK(CIM_GetLANCount, None, u8, u8, t),
    HOOK(CIM_GetChannelNum, None, 1, u8, t),
    HOOK(CIM_Get_MACAddress, None, u8, 1, t),
    HOOK(LIBIPMI_HL_GetMACAddress, None, u8, 1, t),
    HOOK(CIM_GetVlanStatus, None, u8, &u16, u8, 1, t),
    HOOK(CIM_GetIPv4NetworkCfg, None, &out.ipv4, 1, t),
    HOOK(CIM_SetIPv4Source, None, 1, 1, t),
    HOOK(CIM_SetIPv4Address, None, someBytes, 1, t),
    HOOK(CIM_SetIPv4NetMask, None, someBytes, 1, t),
    HOOK(CIM_SetIPv4Gateway, None, someBytes, 1, t),
    HOOK(CIM_GetIPv6NetworkCfg, None, &out.ipv6, 1, t),
    HOOK(CIM_GetAllIPv6Addresses, None, &out.ipv6Addresses, 1, t),
    HOOK(CIM_SetIPv6Source, None, 1, 1, t),
    HOOK(CIM_SetIPv6Address, None, someBytes, 1, t),
    HOOK(CIM_SetIPv6Prefix, None, 64, 1, t),
    HOOK(CIM_SetIPv6Gateway, None, someBytes, 1, t),
    HOOK(CIM_GetPEFTable, None, filters, u8, t),
    HOOK(CIM_GetPEFEntry, None, 1, filters, t),
    HOOK(CIM_SetPEFEntry, None, 1, &filter, t),
    HOOK(CIM_GetMaxPossibleSELEntries, None, &u16, t),
    HOOK(CIM_GetNumOfSELEntries, None, &u16, t),
    HOOK(CIM_GetSELInfo, None, &out.selInfo, t),
    HOOK(CIM_GetSELRecords, None, &out.entry, &u16, t),
    HOOK(CIM_GetSELEntry, None, &entryRequest, &out.entryAnswer, t),
    HOOK(CIM_ClearSEL, None, t),
    HOOK(CIM_GetSensorReading, None, 1, &out.reading, t),
    HOOK(CIM_ReadSensorsAhead, None, someBytes, 0, t),
    HOOK(CIM_GetMaxNumUsers, None, u8, t),
    HOOK(CIM_GetUser, None, 2, someText, t),
    HOOK(CIM_GetUserAccess, None, 2, 1, u8, t),
    HOOK(CIM_ModUser, None, 5, 1, "eva", "secret", 2, 4, 1, 1, 1, t),
    HOOK(CIM_DelUser, None, 5, t),
    HOOK(CIM_GetSELPolicy, Oem, u8, t),
    HOOK(CIM_GetLANIndex, Default, 1, someText, t),
    HOOK(CIM_GetLANEnable, Oem, 1, u8, t),
    HOOK(LIBIPMI_HL_GetLANEnable, Oem, 1, u8, t),
    HOOK(CIM_IsBondEnabled, Default, &out.bondInfo, t),
    HOOK(CIM_SetLANEnable, Oem, 1, 3, t),
    HOOK(CIM_GetBondEnable, Oem, &out.bond, t),
    HOOK(CIM_SetBondEnable, Oem, &bond, t),
    HOOK(CIM_GetPHYConfig, Oem, 1, &out.phy, t),
    HOOK(CIM_TRZGetEmailDest, Oem, 1, u8, someText, someText, 1, t),
    HOOK(CIM_TRZSetEmailDest, Oem, 1, 2, "subject", "message", 1, t),
    HOOK(CIM_TRZGetUserEmail, Oem, 2, someText, t),
    HOOK(CIM_TRZGetSMTPInfo, Oem, &out.mailServer, 1, t),
    HOOK(CIM_TRZGetSMTPServerInfo, Oem, someText, 1, t),
    HOOK(CIM_TRZGetSMTPServerInfoIPv6, Oem, u8, 1, t),
    HOOK(CIM_TRZGetSMTP2Info, Oem, &out.mailServer, 1, t),
    HOOK(CIM_TRZGetSMTPServer2Info, Oem, someText, 1, t),
    HOOK(CIM_TRZGetSMTPServer2InfoIPv6, Oem, u8, 1, t),
    HOOK(CIM_GetFirmwareUpdate, Default, &out.firmware, t),
    HOOK(CIM_BeginFirmwareUpdate, Oem, 1000, u8, t),
    HOOK(CIM_FinishFirmwareUpdate, Oem, 1, t),
    HOOK(CIM_CancelFirmwareUpdate, Oem, 1, t),
    HOOK(CIM_GetServiceConf, Oem, CIM_SERVICE_SSH, &out.service, t),
    HOOK(CIM_SetServiceConf, Oem, CIM_SERVICE_SSH, &service, t),
};

class Call : public HookTest {
protected:
    void expectNothingIsSent(int timeout) {
        for (const Hook& hook : hooks)
            EXPECT_NE(hook.call(&session, timeout), 0) << hook.name;
        EXPECT_THAT(bmc.requests, IsEmpty());
        EXPECT_EQ(bmc.identifications, 0);
    }
};

TEST_F(Call, withoutTimeSendsNothing) {
    expectNothingIsSent(0);
}

TEST_F(Call, afterALostAnswerSendsNothing) {
    bmc.isReachable = false;
    EXPECT_NE(CIM_GetSensorReading(&session, 1, &out.reading, 30), 0);
    bmc.isReachable = true;
    expectNothingIsSent(30);
}

TEST_F(Call, endsInTimeHoweverManyMessagesItTakes) {
    using namespace std::chrono_literals;
    bmc.respond = [](const Bytes&) {
        std::this_thread::sleep_for(300ms);
        return Bytes{0x00, 5, 0x42, 0x01, 0x34};
    };
    const auto start = std::chrono::steady_clock::now();
    EXPECT_NE(CIM_ModUser(&session, 5, 1, "eva", "secret", 2, 4, 1, 1, 1, 1), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1500ms);
    EXPECT_EQ(CIM_GetUserAccess(&session, 5, 1, u8, 1), 0) << "each call has its own time";
}

TEST_F(Call, sendsOemCommandsToNoBmcOfOthers) {
    bmc.deviceId[10] ^= 1; // another product
    for (const Hook& hook : hooks) {
        const int result = hook.call(&session, 30);
        EXPECT_TRUE(hook.need == None || (hook.need == Default) == (result == 0)) << hook.name;
    }
    for (const Bytes& request : bmc.requests)
        EXPECT_LT(request[0], 0x2C) << "network function";
    EXPECT_EQ(bmc.identifications, 1) << "it is asked once";
}

} // namespace
