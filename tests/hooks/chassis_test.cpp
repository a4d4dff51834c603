#include "scripted_bmc.h"

namespace {

TEST_F(HookTest, chassisIsControlledByOneCommand) {
    struct {
        int (*hook)(IPMI20_SESSION_T*, int);
        std::uint8_t control;
    } const cases[] = {{CIM_PowerOff, 0},  {CIM_PowerUp, 1},       {CIM_PowerCycle, 2},
                       {CIM_HardReset, 3}, {CIM_DiagnosticInt, 4}, {CIM_SoftOff, 5}};
    for (const auto& [hook, control] : cases) {
        const Bytes request{0x00, 0x02, control};
        bmc.requests.clear();
        bmc.answers[request] = {0x00};
        EXPECT_EQ(hook(&session, 30), 0);
        EXPECT_THAT(bmc.requests, testing::ElementsAre(request));
        bmc.answers[request] = {0xD5};
        EXPECT_NE(hook(&session, 30), 0);
    }
    EXPECT_THAT(bmc.debugLog, testing::HasSubstr("CIM_SoftOff"));
    EXPECT_EQ(CIM_Close_Session(&session), 0);
    EXPECT_NE(CIM_PowerUp(&session, 30), 0) << "the session is closed";
    EXPECT_NE(CIM_PowerUp(nullptr, 30), 0);
}

} // namespace
