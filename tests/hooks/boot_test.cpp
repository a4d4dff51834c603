// The boot flags as messages of the BMC.
#include "scripted_bmc.h"

namespace {

using testing::ElementsAre;

constexpr std::uint8_t notSupported = 0x80, alreadyInProgress = 0x81, invalidData = 0xCC;

Bytes get(std::uint8_t parameter) {
    return {0x00, 0x09, parameter, 0, 0};
}
Bytes set(std::uint8_t parameter, const Bytes& value) {
    Bytes request{0x00, 0x08, parameter};
    request.insert(request.end(), value.begin(), value.end());
    return request;
}
Bytes answer(std::uint8_t parameter, const Bytes& value) {
    Bytes bytes{0x00, 0x01, parameter};
    bytes.insert(bytes.end(), value.begin(), value.end());
    return bytes;
}

const Bytes beginWriting = set(0, {1}), endWriting = set(0, {0}), acknowledge = set(4, {0x1F, 0xFF});

class BootHooks : public HookTest {
protected:
    // Gives the BMC all parameters, and these flags.
    static void have(const Bytes& present) {
        bmc.answers[get(5)] = answer(5, present);
        bmc.answers[get(3)] = answer(3, {0x18});
        for (const Bytes& request : {beginWriting, endWriting, acknowledge, set(3, {0x1F})})
            bmc.answers[request] = {0x00};
    }
    int write(const CIM_BootFlags& wanted) {
        bmc.requests.clear();
        return CIM_SetBootFlags(&session, &wanted, 30);
    }

    CIM_BootFlags flags{9, 9, 9, 9};
};

TEST_F(BootHooks, areReadFromTheirParameter) {
    bmc.answers[get(5)] = answer(5, {0xE0, 0xBF, 0, 0, 0});
    ASSERT_EQ(CIM_GetBootFlags(&session, &flags, 30), 0);
    EXPECT_TRUE(flags.isSupported == 1 && flags.isValid == 1 && flags.isPersistent == 1);
    EXPECT_EQ(flags.device, CIM_BOOT_FLOPPY);

    for (const std::uint8_t code : Bytes{0x80, 0xC1, 0xC2, 0xC9, 0xCB, 0xCC}) {
        bmc.answers[get(5)] = {code};
        ASSERT_EQ(CIM_GetBootFlags(&session, &flags, 30), 0);
        EXPECT_TRUE(flags.isSupported == 0 && flags.isValid == 0 && flags.device == 0);
    }
    for (const Bytes& trouble : {Bytes{0xD4}, Bytes{0xFF}, Bytes{0x00, 0x01, 0x05, 0x80, 0x04}}) {
        bmc.answers[get(5)] = trouble;
        EXPECT_EQ(CIM_GetBootFlags(&session, &flags, 30), -1);
    }
}

TEST_F(BootHooks, areWrittenBetweenTwoMarksAndHoldUntilTheBoot) {
    have({0x20, 0x88, 0x10, 0, 0}); // they do not hold, and would boot by EFI
    bmc.answers[set(5, {0xA0, 0x04, 0, 0, 0})] = {0x00};
    EXPECT_EQ(write({.isSupported = 1, .isValid = 1, .isPersistent = 0, .device = CIM_BOOT_NETWORK}), 0);
    EXPECT_THAT(bmc.requests, ElementsAre(get(5), beginWriting, set(5, {0xA0, 0x04, 0, 0, 0}), acknowledge,
                                          get(3), set(3, {0x1F}), endWriting));
    // Flags that hold keep what else they say. Nothing has to last of flags that are cleared.
    have({0xA0, 0x87, 0x10, 1, 2});
    bmc.answers[set(5, {0x20, 0x83, 0x10, 1, 2})] = {0x00};
    EXPECT_EQ(write({.isSupported = 1, .isValid = 0, .isPersistent = 0, .device = 0}), 0);
    EXPECT_THAT(bmc.requests,
                ElementsAre(get(5), beginWriting, set(5, {0x20, 0x83, 0x10, 1, 2}), endWriting));
}

TEST_F(BootHooks, needNoParameterButTheirOwn) {
    bmc.answers[get(5)] = answer(5, {0, 0, 0, 0, 0});
    bmc.answers[set(5, {0xC0, 0x08, 0, 0, 0})] = {0x00};
    bmc.answers[beginWriting] = {notSupported};
    EXPECT_EQ(write({.isSupported = 1, .isValid = 1, .isPersistent = 1, .device = CIM_BOOT_DISK}), 0);
    EXPECT_THAT(bmc.requests,
                ElementsAre(get(5), beginWriting, set(5, {0xC0, 0x08, 0, 0, 0}), acknowledge, get(3)));
}

TEST_F(BootHooks, thatAreRefusedLeaveNothingBehind) {
    have({0, 0, 0, 0, 0});
    const Bytes refused = set(5, {0x80, 0x14, 0, 0, 0});
    const CIM_BootFlags wanted{.isSupported = 1, .isValid = 1, .isPersistent = 0, .device = CIM_BOOT_CD};
    bmc.answers[refused] = {invalidData};
    EXPECT_EQ(write(wanted), -1);
    EXPECT_THAT(bmc.requests, ElementsAre(get(5), beginWriting, refused, endWriting));
    bmc.answers[beginWriting] = {alreadyInProgress};
    EXPECT_EQ(write(wanted), -1);
    EXPECT_THAT(bmc.requests, ElementsAre(get(5), beginWriting)) << "somebody else ends what they began";
    EXPECT_EQ(write({.isSupported = 1, .isValid = 1, .isPersistent = 0, .device = 16}), -1);
    EXPECT_EQ(CIM_SetBootFlags(&session, nullptr, 30), -1);
}

} // namespace
