// The watchdog timer as messages of the BMC.
#include "scripted_bmc.h"

namespace {

using testing::ElementsAre;

const Bytes getTimer{0x06, 0x25};

class WatchdogHooks : public HookTest {
protected:
    CIM_WatchdogTimer timer{};
};

TEST_F(WatchdogHooks, timerIsReadAndWrittenField) {
    bmc.answers[getTimer] = {0x00, 0xC4, 0x21, 30, 0x15, 0x70, 0x17, 0x34, 0x12};
    ASSERT_EQ(CIM_GetWatchdogTimer(&session, &timer, 30), 0);
    EXPECT_TRUE(timer.isSupported == 1 && timer.isRunning == 1 && timer.doesNotLog == 1);
    EXPECT_EQ(timer.use, CIM_WATCHDOG_OS);
    EXPECT_EQ(timer.action, CIM_WATCHDOG_HARD_RESET);
    EXPECT_EQ(timer.interrupt, CIM_WATCHDOG_NMI);
    EXPECT_EQ(timer.interruptSeconds, 30);
    EXPECT_EQ(timer.expired, 0x14) << "bit 0 is reserved";
    EXPECT_EQ(timer.interval, 6000);
    EXPECT_EQ(timer.remaining, 0x1234);

    bmc.requests.clear();
    const Bytes running{0x06, 0x24, 0xC4, 0x21, 30, 0, 0x70, 0x17};
    const Bytes stopped{0x06, 0x24, 0x84, 0x21, 30, 0, 0x70, 0x17};
    bmc.answers[running] = bmc.answers[stopped] = {0x00};
    EXPECT_EQ(CIM_SetWatchdogTimer(&session, &timer, 30), 0);
    timer.isRunning = 0;
    EXPECT_EQ(CIM_SetWatchdogTimer(&session, &timer, 30), 0);
    timer.action = 8;
    EXPECT_EQ(CIM_SetWatchdogTimer(&session, &timer, 30), -1);
    EXPECT_THAT(bmc.requests, ElementsAre(running, stopped));
}

TEST_F(WatchdogHooks, timerMayBeMissing) {
    ASSERT_EQ(CIM_GetWatchdogTimer(&session, &timer, 30), 0) << "C1h";
    EXPECT_EQ(timer.isSupported, 0);
    bmc.answers[getTimer] = {0x00, 0x04, 0x01, 0, 0, 0x64, 0x00}; // a BMC that does not say what remains
    ASSERT_EQ(CIM_GetWatchdogTimer(&session, &timer, 30), 0);
    EXPECT_TRUE(timer.isSupported == 1 && timer.interval == 100 && timer.remaining == 0);
    for (const Bytes& trouble : {Bytes{0xD4}, Bytes{0x00, 0x04, 0x01, 0, 0, 0x64}}) {
        bmc.answers[getTimer] = trouble;
        EXPECT_EQ(CIM_GetWatchdogTimer(&session, &timer, 30), -1);
    }
    bmc.answers[{0x06, 0x22}] = {0x80};
    EXPECT_EQ(CIM_ResetWatchdogTimer(&session, 30), -1) << "it was never set";
}

} // namespace
