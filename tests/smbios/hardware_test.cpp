// What structures of all versions say.
#include "smbios/hardware.h"
#include "smbios_builder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

smbios::Hardware read(SmbiosBuilder builder) {
    return smbios::readHardware(smbios::Table(builder.end().bare()));
}

constexpr std::uint64_t mebibyte = 1024 * 1024;

TEST(SmbiosHardware, takesSizesFromTheirExtendedFields) {
    const struct {
        std::uint16_t size;
        std::uint32_t extended;
        std::size_t length;
        std::uint64_t bytes;
        bool isInstalled;
    } modules[] = {
        {0, 0, 0x5C, 0, false},
        {0xFFFF, 0, 0x5C, 0, true}, // of unknown size
        {16384, 0, 0x5C, 16384 * mebibyte, true},
        {0x8400, 0, 0x5C, mebibyte, true},                             // in KiB
        {0x7FFF, 32768, 0x5C, 32768 * mebibyte, true},                 // 32 GiB
        {0x7FFF, 0x80000000U | 131072, 0x5C, 131072 * mebibyte, true}, // a reserved bit
        {0x7FFF, 32768, 0x15, 0, true},                                // whose structure is too short for it
        {4096, 7, 0x15, 4096 * mebibyte, true},
    };
    for (const auto& each : modules) {
        const auto hardware =
            read(SmbiosBuilder().add(17, 1, each.length, {{0x0C, each.size, 2}, {0x1C, each.extended, 4}}));
        ASSERT_EQ(hardware.memoryDevices.size(), 1U);
        EXPECT_EQ(hardware.memoryDevices[0].size, each.bytes);
        EXPECT_EQ(hardware.memoryDevices[0].isInstalled, each.isInstalled);
    }

    const auto capacity = [](std::uint32_t small, std::uint64_t large, std::size_t length) {
        return read(SmbiosBuilder().add(16, 1, length, {{7, small, 4}, {0x0F, large, 8}}))
            .memoryArrays[0]
            .capacity;
    };
    EXPECT_EQ(capacity(1024, 5, 0x17), mebibyte);
    EXPECT_EQ(capacity(0x80000000, 4096 * mebibyte * mebibyte, 0x17), 4096 * mebibyte * mebibyte);
    EXPECT_EQ(capacity(0x80000000, 5, 0x0F), 0U);

    const auto cores = [](std::uint8_t small, std::uint16_t large, std::size_t length) {
        const auto processor = read(SmbiosBuilder().add(4, 1, length,
                                                        {{0x23, small},
                                                         {0x24, small},
                                                         {0x25, small},
                                                         {0x2A, large, 2},
                                                         {0x2C, large, 2},
                                                         {0x2E, large, 2}}))
                                   .processors[0];
        EXPECT_EQ(processor.cores, processor.enabledCores);
        EXPECT_EQ(processor.cores, processor.threads);
        return processor.cores;
    };
    EXPECT_EQ(cores(24, 300, 0x30), 24);
    EXPECT_EQ(cores(0xFF, 300, 0x30), 300);
    EXPECT_EQ(cores(0xFF, 300, 0x2A), 255) << "SMBIOS 2.7";
    EXPECT_EQ(cores(24, 0, 0x1A), 0) << "SMBIOS 2.0 did not know";
}

TEST(SmbiosHardware, readsProcessorsOfAllVersions) {
    const auto processor = [](std::size_t length) {
        return read(SmbiosBuilder().add(4, 4, length,
                                        {{4, 1},
                                         {5, 3},
                                         {6, 0xFE},
                                         {7, 2},
                                         {0x10, 3},
                                         {0x12, 100, 2},
                                         {0x14, 4000, 2},
                                         {0x16, 2400, 2},
                                         {0x18, 0x41},
                                         {0x19, 0x26},
                                         {0x20, 4},
                                         {0x22, 5},
                                         {0x26, 0xFC, 2},
                                         {0x28, 0x0101, 2}},
                                        {"CPU1", "Maker", "CPU 7", "SN", "PN"}))
            .processors.at(0);
    };
    const auto newest = processor(0x40); // longer than any that is known
    EXPECT_EQ(newest.socket, "CPU1");
    EXPECT_EQ(newest.identity.product, "CPU 7");
    EXPECT_EQ(newest.identity.partNumber, "PN");
    EXPECT_EQ(newest.family, 0x0101);
    EXPECT_EQ(newest.characteristics, 0xFC);
    EXPECT_TRUE(newest.isInstalled);
    EXPECT_EQ(newest.status, 1);
    EXPECT_EQ(newest.currentSpeed, 2400);
    const auto oldest = processor(0x1A);
    EXPECT_EQ(oldest.identity.manufacturer, "Maker");
    EXPECT_EQ(oldest.identity.serialNumber, "") << "of SMBIOS 2.3";
    EXPECT_EQ(oldest.family, 2) << "unknown";
    EXPECT_EQ(oldest.upgrade, 0x26);
}

TEST(SmbiosHardware, readsSpeedsBeyondTheirField) {
    const auto hardware = read(SmbiosBuilder().add(
        17, 1, 0x5C, {{0x15, 0xFFFF, 2}, {0x20, 4800, 2}, {0x54, 70000, 4}, {8, 0xFFFF, 2}, {10, 64, 2}}));
    EXPECT_EQ(hardware.memoryDevices[0].speed, 70000U);
    EXPECT_EQ(hardware.memoryDevices[0].configuredSpeed, 4800U);
    EXPECT_EQ(hardware.memoryDevices[0].totalWidth, 0) << "unknown";
    EXPECT_EQ(hardware.memoryDevices[0].dataWidth, 64);
}

TEST(SmbiosHardware, findsWhereDevicesAre) {
    const auto hardware =
        read(SmbiosBuilder()
                 .add(9, 1, 0x11, {{7, 4}, {9, 12, 2}, {0x0C, 2}, {0x0D, 1, 2}, {0x0F, 0x3B}, {0x10, 0xA9}})
                 .add(9, 2, 0x11, {{0x0D, 0, 2}, {0x0F, 0xFF}, {0x10, 0xFF}})
                 .add(9, 3, 0x0D)
                 .add(41, 4, 0x0B, {{5, 0x85}, {9, 1}, {10, 1}}));
    ASSERT_TRUE(hardware.slots[0].address);
    EXPECT_EQ(hardware.slots[0].address->segment, 1);
    EXPECT_EQ(hardware.slots[0].address->bus, 0x3B);
    EXPECT_EQ(hardware.slots[0].address->device, 21);
    EXPECT_EQ(hardware.slots[0].address->function, 1);
    EXPECT_TRUE(hardware.slots[0].isHotPluggable);
    EXPECT_FALSE(hardware.slots[1].address);
    EXPECT_FALSE(hardware.slots[2].address) << "of a version that did not tell";
    EXPECT_EQ(hardware.onboardDevices[0].type, 5);
    EXPECT_TRUE(hardware.onboardDevices[0].isEnabled);
}

TEST(SmbiosHardware, namesWhatMakesNoSense) {
    const auto hardware =
        read(SmbiosBuilder()
                 .add(1, 1, 0x1B, {{4, 9}, {8, 0xFFFFFFFFFFFFFFFF, 8}, {16, 0xFFFFFFFFFFFFFFFF, 8}}, {"A"})
                 .add(1, 2, 0x1B)
                 .add(4, 3, 0x19)
                 .add(200, 4, 60));
    std::vector<std::string> problems;
    for (const auto& [place, reason, isLoss] : hardware.problems)
        problems.push_back(place + ": " + reason);
    EXPECT_THAT(problems, ElementsAre("structure 0x0001 (system): it has no string 9",
                                      "structure 0x0002 (system): there is another one",
                                      "structure 0x0003 (processor): it is too short"));
    EXPECT_EQ(hardware.system->uuid, "") << "not set";
    EXPECT_THAT(hardware.processors, IsEmpty());
}

} // namespace
