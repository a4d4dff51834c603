// What is made of the chassis status and of the event log's state.
#include "answering_bmc.h"
#include "ipmi-view/chassis_status.h"
#include "ipmi-view/sel_info.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> conditions(const view::ChassisStatus& status) {
    std::vector<std::string> names;
    for (const auto& condition : view::chassisConditions())
        if (condition.isIn(status))
            names.emplace_back(condition.name);
    return names;
}

TEST(ChassisStatus, isReadByItsBits) {
    AnsweringBmc bmc;
    bmc.answers[0x01] = {0x00, 0x21, 0x10, 0x00, 0xFF}; // with front panel buttons
    auto status = view::readChassisStatus(bmc);
    EXPECT_TRUE(status.isOn());
    EXPECT_STREQ(status.restorePolicy(), "previous");
    EXPECT_THAT(status.lastEvents(), ElementsAre(testing::StrEq("command")));
    EXPECT_THAT(conditions(status), IsEmpty());

    bmc.answers[0x01] = {0x00, 0x5E, 0x0A, 0x7F};
    status = view::readChassisStatus(bmc);
    EXPECT_FALSE(status.isOn());
    EXPECT_STREQ(status.restorePolicy(), "on");
    EXPECT_THAT(status.lastEvents(), ElementsAre(testing::StrEq("overload"), testing::StrEq("power fault")));
    EXPECT_THAT(conditions(status),
                ElementsAre("Power overload", "Power interlock", "Power fault", "Power control fault",
                            "Intrusion", "Front panel lockout", "Drive fault", "Cooling fault"));
    EXPECT_TRUE(status.hasDriveFault() && status.hasCoolingFault());

    bmc.answers[0x01] = {0x00, 0x21, 0x10};
    EXPECT_THROW(view::readChassisStatus(bmc), ipmi::ShortAnswerError);
}

TEST(SelInfo, tellsHowFullTheLogIs) {
    AnsweringBmc bmc;
    bmc.answers[0x40] = {0x00, 0x51, 0x03, 0x00, 0x50, 0x00, 1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0x88};
    auto info = view::readSelInfo(bmc);
    EXPECT_EQ(info.entries, 3);
    EXPECT_EQ(info.freeBytes, 80);
    EXPECT_TRUE(info.hasDropped && info.canDelete);
    EXPECT_FALSE(info.allocation) << "the BMC does not say that it has the command";
    EXPECT_EQ(info.percentUsed(), 37u) << "of 3 records and room for 5";

    bmc.answers[0x40].back() = 0x01;
    bmc.answers[0x41] = {0x00, 0x64, 0x00, 0x12, 0x00, 0x61, 0x00, 0x61, 0x00, 0x01};
    info = view::readSelInfo(bmc);
    EXPECT_FALSE(info.hasDropped || info.canDelete);
    EXPECT_EQ(info.percentUsed(), 3u);

    bmc.answers[0x41] = {0xC1};
    bmc.answers[0x40][4] = bmc.answers[0x40][5] = 0xFF;
    EXPECT_EQ(view::readSelInfo(bmc).percentUsed(), std::nullopt) << "FFFFh is that much or more";
    bmc.answers[0x40].pop_back(); // some leave the last byte out
    EXPECT_EQ(view::readSelInfo(bmc).entries, 3);
}

} // namespace
