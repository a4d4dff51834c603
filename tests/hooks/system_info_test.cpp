// What hooks read of the system, its power and the log's clock, of BMCs that have it and of those that have
// not.
#include "scripted_bmc.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace {

using testing::ElementsAre;

using SystemInfo = HookTest;

Bytes block(std::uint8_t number, std::initializer_list<std::uint8_t> head, const std::string& text) {
    Bytes answer{0x00, 0x11, number};
    std::ranges::copy(head, std::back_inserter(answer));
    std::ranges::copy(text, std::back_inserter(answer));
    return answer;
}

void answerBlocks(const std::vector<Bytes>& blocks) {
    bmc.answers.clear();
    for (std::uint8_t i = 0; i < blocks.size(); ++i)
        bmc.answers[{0x06, 0x59, 0x00, 0x01, i, 0x00}] = blocks[i];
}

TEST_F(SystemInfo, isReadInBlocks) {
    const std::string sixteen = "0123456789abcdef";
    const struct {
        const char* what;
        std::vector<Bytes> blocks;
        const char* text;
    } cases[] = {
        {"short", {block(0, {0, 4}, "1.02----------")}, "1.02"},
        {"three blocks",
         {block(0, {0, 31}, "Version number"), block(1, {}, sixteen), block(2, {}, "X")},
         "Version number0123456789abcdefX"},
        {"Latin-1", {block(0, {0, 3}, "A\xE9\x01")}, "A\xC3\xA9_"},
        {"UTF-8 across blocks",
         {block(0, {1, 15}, "Version num +\xC3"), block(1, {}, "\xA9")},
         "Version num +\xC3\xA9"},
        {"bad UTF-8", {block(0, {1, 4}, "A\xFF\xC3Z")}, "A\xEF\xBF\xBD\xEF\xBF\xBDZ"},
        {"Unicode", {block(0, {2, 4}, std::string("A\0\xAC\x20", 4))}, "A\xE2\x82\xAC"},
        {"shorter than it says",
         {block(0, {0, 200}, "Version number"), block(1, {}, "!")},
         "Version number!"},
        {"padded", {block(0, {0, 10}, std::string("1.02\0\0\0\0\0\0", 10))}, "1.02"},
        {"none", {block(0, {0, 0}, "")}, ""},
        {"not supported", {Bytes{0x80}}, ""},
        {"no such command", {}, ""},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        answerBlocks(item.blocks);
        char text[CIM_SYSTEM_INFO_SIZE] = "?";
        EXPECT_EQ(CIM_GetSystemInfo(&session, CIM_SYSTEM_FIRMWARE_VERSION, text, 30), 0);
        EXPECT_STREQ(text, item.text);
    }
}

TEST_F(SystemInfo, isNotGuessedFromAnswersThatAreWrong) {
    char text[CIM_SYSTEM_INFO_SIZE];
    for (const Bytes& wrong : {Bytes{0xFF}, Bytes{0x00, 0x11, 0x00}, block(0, {7, 4}, "1.02")}) {
        answerBlocks({wrong});
        EXPECT_NE(CIM_GetSystemInfo(&session, CIM_SYSTEM_FIRMWARE_VERSION, text, 30), 0);
    }
}

TEST_F(SystemInfo, tellsOfTheBmcsFirmware) {
    CIM_DeviceID device;
    bmc.deviceId = {0x00, 0x20, 0x81, 0x82, 0x14, 0x02, 0xBF, 0xD9, 0x7E, 0xF0, 0x48, 0x50, 1, 2, 3, 4};
    ASSERT_EQ(CIM_GetDeviceID(&session, &device, 30), 0);
    EXPECT_EQ(device.deviceRevision, 1);
    EXPECT_EQ(device.firmwareMajor, 2) << "bit 7 says that it is being updated";
    EXPECT_EQ(device.firmwareMinor, 0x14);
    EXPECT_EQ(device.manufacturerId, 0x07ED9U);
    EXPECT_EQ(device.hasAuxiliary, 1);
    EXPECT_THAT(device.auxiliary, ElementsAre(1, 2, 3, 4));
    bmc.deviceId.resize(14);
    ASSERT_EQ(CIM_GetDeviceID(&session, &device, 30), 0);
    EXPECT_EQ(device.hasAuxiliary, 0);
    bmc.deviceId.resize(11);
    EXPECT_NE(CIM_GetDeviceID(&session, &device, 30), 0);
}

TEST_F(SystemInfo, hasStatesOfPower) {
    CIM_ChassisStatus status;
    EXPECT_NE(CIM_GetChassisStatus(&session, &status, 30), 0) << "every BMC has it";
    bmc.answers[{0x00, 0x01}] = {0x00, 0x61, 0x10, 0x08, 0x77};
    ASSERT_EQ(CIM_GetChassisStatus(&session, &status, 30), 0);
    EXPECT_EQ(std::tie(status.power, status.lastEvent, status.state), std::make_tuple(0x61, 0x10, 0x08));

    std::uint8_t system = 0, device = 0;
    EXPECT_EQ(CIM_GetACPIPowerState(&session, &system, &device, 30), 0);
    EXPECT_EQ(system, CIM_ACPI_UNKNOWN);
    EXPECT_EQ(device, CIM_ACPI_UNKNOWN);
    bmc.answers[{0x06, 0x07}] = {0x00, 0x83, 0x82};
    EXPECT_EQ(CIM_GetACPIPowerState(&session, &system, &device, 30), 0);
    EXPECT_EQ(system, 3);
    EXPECT_EQ(device, 2);
    bmc.answers[{0x06, 0x07}] = {0x00, 0x03};
    EXPECT_NE(CIM_GetACPIPowerState(&session, &system, &device, 30), 0);
}

TEST_F(SystemInfo, hasAClockWithAndWithoutAnOffset) {
    std::uint32_t seconds = 0;
    std::int16_t minutes = 0;
    EXPECT_NE(CIM_GetSELTime(&session, &seconds, 30), 0);
    EXPECT_EQ(CIM_GetSELTimeUTCOffset(&session, &minutes, 30), 0);
    EXPECT_EQ(minutes, CIM_SEL_UTC_OFFSET_NONE);
    EXPECT_NE(CIM_SetSELTimeUTCOffset(&session, 60, 30), 0);
    bmc.answers = {{{0x0A, 0x48}, {0x00, 0x78, 0x56, 0x34, 0x12}}, {{0x0A, 0x5D, 0xC4, 0xFF}, {0x00}}};
    EXPECT_EQ(CIM_GetSELTime(&session, &seconds, 30), 0);
    EXPECT_EQ(seconds, 0x12345678U);
    EXPECT_EQ(CIM_SetSELTimeUTCOffset(&session, -60, 30), 0);
    for (const auto& [low, high, offset] : {std::tuple{0xC4, 0xFF, -60},
                                            {0xA0, 0x05, 1440},
                                            {0xA1, 0x05, CIM_SEL_UTC_OFFSET_NONE},
                                            {0xFF, 0x07, CIM_SEL_UTC_OFFSET_NONE}}) {
        bmc.answers[{0x0A, 0x5C}] = {0x00, static_cast<std::uint8_t>(low), static_cast<std::uint8_t>(high)};
        EXPECT_EQ(CIM_GetSELTimeUTCOffset(&session, &minutes, 30), 0);
        EXPECT_EQ(minutes, offset);
    }
}

} // namespace
