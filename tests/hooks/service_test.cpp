#include "scripted_bmc.h"

namespace {

const Bytes ask = {0x30, 0x10, 0x20, 0, 0, 0};
const Bytes sshConfiguration = {
    0x00, 's',  's', 'h', 0, 0, 0,    0,    0,    0,    0,
    0,    0,    0,   0,   0, 0, 0x01, 0x00, 0x00, 0x16, 0x00, // no plain port, secure 22
    0x58, 0x02, 8,   3};                                      // 600 seconds; 3 sessions of 8

TEST_F(HookTest, serviceSettingsGoBackAsTheyCame) {
    bmc.answers[ask] = sshConfiguration;
    CIM_ServiceConf conf;
    ASSERT_EQ(CIM_GetServiceConf(&session, CIM_SERVICE_SSH, &conf, 30), 0);
    EXPECT_STREQ(conf.name, "ssh");
    EXPECT_EQ(conf.currentState, 1);
    EXPECT_EQ(conf.port, 0);
    EXPECT_EQ(conf.securePort, 22);
    EXPECT_EQ(conf.timeout, 600);
    EXPECT_EQ(conf.maxSessions, 8);
    EXPECT_EQ(conf.activeSessions, 3);

    CIM_ServiceSettings settings{"ssh", 0, conf.port, conf.securePort, conf.timeout, conf.maxSessions};
    Bytes tell = {0x30, 0x11, 0x20, 0, 0, 0}; // the same bytes up to the active sessions, but disabled
    tell.insert(tell.end(), sshConfiguration.begin() + 1, sshConfiguration.end() - 1);
    tell[22] = 0;
    bmc.answers[tell] = {0x00};
    EXPECT_EQ(CIM_SetServiceConf(&session, CIM_SERVICE_SSH, &settings, 30), 0);
    settings.enable = 2;
    EXPECT_EQ(CIM_SetServiceConf(&session, CIM_SERVICE_SSH, &settings, 30), -1);

    bmc.answers[ask].pop_back();
    EXPECT_EQ(CIM_GetServiceConf(&session, CIM_SERVICE_SSH, &conf, 30), -1) << "short answer";
    bmc.answers.clear();
    EXPECT_EQ(CIM_GetServiceConf(&session, CIM_SERVICE_SSH, &conf, 30), -1) << "no such command";
}

} // namespace
