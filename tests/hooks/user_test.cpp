#include "scripted_bmc.h"

#include <algorithm>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint8_t app = 0x06;
constexpr std::uint8_t keep = CIM_USER_KEEP;

Bytes padded(Bytes message, std::string_view text, std::size_t size) {
    message.insert(message.end(), text.begin(), text.end());
    message.resize(message.size() + size - text.size());
    return message;
}

Bytes setName(std::uint8_t user, std::string_view name) {
    return padded({app, 0x45, user}, name, 16);
}
Bytes setPassword(std::uint8_t user, std::uint8_t operation, std::string_view password, std::size_t size) {
    return padded({app, 0x47, user, operation}, password, size);
}

const Bytes readAccess = {app, 0x44, 0x01, 5};
const Bytes disable = {app, 0x47, 5, 0};
const Bytes enable = {app, 0x47, 5, 1};

// User 5 of a BMC that does what it is told. Its access on channel 1: callback only, link authentication,
// operator.
class User : public HookTest {
protected:
    User() {
        for (const Bytes& request :
             {disable, enable, setName(5, "eva"), setName(5, ""), setPassword(5, 2, "secret", 16),
              setPassword(0x85, 2, "secret", 20), setPassword(5, 3, "secret", 16)})
            bmc.answers[request] = {0x00};
        for (const std::uint8_t channel : Bytes{0x01, 0x0E})
            bmc.answers[{app, 0x44, channel, 5}] = {0x00, 0x10, 0x43, 0x01, 0x63};
    }

    int modify(std::uint8_t slot, const char* name, const char* password, std::uint8_t operation = 2,
               std::uint8_t privilege = keep, std::uint8_t messaging = keep, std::uint8_t link = keep,
               std::uint8_t enabled = keep) {
        return CIM_ModUser(&session, slot, 1, name, password, operation, privilege, messaging, link, enabled,
                           30);
    }
};

TEST_F(User, accessGathersBothBytesOfTheAnswer) {
    const struct {
        Bytes answer;
        int access; // -1: the hook fails
    } cases[] = {
        {{0x00, 0x10, 0x42, 0x01, 0x14}, 0x54}, // enabled, messaging, administrator
        {{0x00, 0x10, 0x82, 0x01, 0x14}, 0x14}, // disabled
        {{0x00, 0x10, 0x02, 0x01, 0x34}, 0x74}, // does not tell: enabled; link authentication
        {{0x00, 0x10, 0x42, 0x01, 0x42}, 0xC2}, // callback only
        {{0x00, 0x10, 0x42, 0x01}, -1},         {{0xCC}, -1},
    };
    for (const auto& [answer, expected] : cases) {
        bmc.answers[{app, 0x44, 0x0E, 7}] = answer;
        std::uint8_t access = 0;
        EXPECT_EQ(CIM_GetUserAccess(&session, 7, 14, &access, 30), expected < 0 ? -1 : 0);
        EXPECT_EQ(access, std::max(expected, 0));
    }
}

TEST_F(User, sessionsAreReadUntilThereIsNone) {
    const Bytes open = {0x00, 0x11, 0x3F, 0xC2,
                        0xC5, 0xF4, 0x11}; // the first of two: user 5, administrator, channel 1
    const struct {
        Bytes first, second;
        int result;
        std::vector<int> users;
    } cases[] = {
        {{0x00, 0x00, 0x3F, 0x00}, {0xCC}, 0, {}},
        {open, {0x00, 0x12, 0x3F, 0x02, 7, 2, 2}, 0, {5, 7}},
        {open, {0x00, 0x00, 0x3F, 0x01}, 0, {5}}, // ended meanwhile
        {open, {0xCB}, 0, {5}},
        {open, {0xC0}, -1, {}},
        {open, {0x00, 0x12, 0x3F, 0x02, 7, 2}, -1, {}},
        {{0xC1}, {0xC1}, -1, {}},
        {{0x00, 0x00, 0x3F}, {0xC1}, -1, {}},
    };
    for (const auto& [first, second, result, users] : cases) {
        bmc.answers[{app, 0x3D, 1}] = first;
        bmc.answers[{app, 0x3D, 2}] = second;
        CIM_OpenSession sessions[CIM_MAX_OPEN_SESSIONS] = {};
        std::uint8_t count = 0;
        EXPECT_EQ(CIM_GetOpenSessions(&session, sessions, &count, 30), result);
        std::vector<int> found;
        for (int i = 0; result == 0 && i < count; ++i)
            found.push_back(sessions[i].user);
        EXPECT_EQ(found, users);
        EXPECT_EQ(sessions[0].privilege * 16 + sessions[0].channel, first == open ? 0x41 : 0);
    }
}

TEST_F(User, slotsAreCountedWithoutTheReservedBits) {
    bmc.answers[{app, 0x44, 0x0E, 1}] = {0x00, 0xCA, 0x42, 0x01, 0x14};
    std::uint8_t count = 0;
    EXPECT_EQ(CIM_GetMaxNumUsers(&session, &count, 30), 0);
    EXPECT_EQ(count, 10);
}

TEST_F(User, nameIsReadInFullAndFreeSlotsHaveNone) {
    const std::tuple<Bytes, int, const char*> cases[] = {
        {padded({0x00}, "eva", 16), 0, "eva"},
        {padded({0x00}, "sixteen-letters!", 16), 0, "sixteen-letters!"},
        {padded({0x00}, "", 16), 0, ""},
        {{0xCB}, 0, ""},
        {{0xCC}, 0, ""},
        {{0xC0}, -1, ""}, // busy is not free
        {{0x00, 'e', 'v'}, -1, ""},
    };
    for (const auto& [answer, result, expected] : cases) {
        bmc.answers[{app, 0x46, 5}] = answer;
        char name[CIM_USER_NAME_SIZE];
        EXPECT_EQ(CIM_GetUser(&session, 5, name, 30), result);
        EXPECT_STREQ(name, expected);
    }
}

TEST_F(User, onlyWhatChangesIsSent) {
    EXPECT_EQ(modify(5, nullptr, "secret"), 0);
    EXPECT_EQ(modify(5, nullptr, "secret", 3), 0);
    EXPECT_EQ(modify(5, nullptr, nullptr, keep, keep, keep, keep, 0), 0);
    EXPECT_THAT(bmc.requests,
                ElementsAre(setPassword(5, 2, "secret", 16), setPassword(5, 3, "secret", 16), disable));

    bmc.requests.clear();
    const Bytes setAccess = {app, 0x43, 0x80 | 0x40 | 0x20 | 0x10 | 1, 5, 3}; // messaging on, the rest kept
    bmc.answers[setAccess] = {0x00};
    EXPECT_EQ(modify(5, nullptr, nullptr, keep, keep, 1), 0);
    EXPECT_THAT(bmc.requests, ElementsAre(readAccess, setAccess));
}

TEST_F(User, whatIsNotAllowedIsRefusedBeforeAnythingIsSent) {
    const std::string name17(17, 'n'), word17(17, 'p'), word21(21, 'p');
    EXPECT_EQ(modify(0, "eva", "secret"), -1);
    EXPECT_EQ(modify(64, "eva", "secret"), -1);
    EXPECT_EQ(modify(5, "", "secret"), -1);
    EXPECT_EQ(modify(5, name17.c_str(), "secret"), -1);
    EXPECT_EQ(modify(5, "eva", word17.c_str()), -1);
    EXPECT_EQ(modify(0x85, "eva", word21.c_str()), -1);
    EXPECT_EQ(modify(5, "eva", "secret", 1), -1);
    EXPECT_EQ(modify(5, "eva", "secret", 2, 6), -1);
    EXPECT_EQ(modify(5, "eva", "secret", 2, 4, 2), -1);
    EXPECT_EQ(modify(5, "eva", "secret", 2, 4, 1, 1, 2), -1);
    EXPECT_THAT(bmc.requests, IsEmpty());
    EXPECT_THAT(bmc.debugLog, HasSubstr("the password is too long"));
    EXPECT_THAT(bmc.debugLog, Not(HasSubstr("ppp")));
}

TEST_F(User, creationEnablesLastAndEndsWithAStepThatFails) {
    const Bytes setAccess = {app, 0x43, 0x80 | 0x40 | 0x20 | 0x10 | 1, 5, 2};
    const Bytes steps[] = {setName(5, "eva"), setPassword(0x85, 2, "secret", 20), readAccess, setAccess,
                           enable};
    const auto create = [&] {
        bmc.requests.clear();
        return modify(0x85, "eva", "secret", 2, 2, 1, 1, 1);
    };
    bmc.answers[setAccess] = {0x00};
    EXPECT_EQ(create(), 0);
    EXPECT_THAT(bmc.requests, testing::ElementsAreArray(steps));
    for (std::size_t failing = 0; failing < std::size(steps); ++failing) {
        const Bytes good = std::exchange(bmc.answers[steps[failing]], Bytes{0xD4});
        EXPECT_EQ(create(), -1);
        EXPECT_EQ(bmc.requests.size(), failing + 1);
        bmc.answers[steps[failing]] = good;
    }
    EXPECT_THAT(bmc.debugLog, Not(HasSubstr("secret")));
}

TEST_F(User, deletionDisablesFirstAndFreesTheNameLast) {
    const auto access = [](std::uint8_t channel, std::uint8_t bits, std::uint8_t limit) {
        return Bytes{app, 0x43, static_cast<std::uint8_t>(0x80 | bits | channel), 5, limit};
    };
    const Bytes steps[] = {disable, access(0x0E, 0x40, 0x0F), access(1, 0x40, 0x0F), setName(5, "")};
    const Bytes reads[] = {{app, 0x44, 0x0E, 5}, {app, 0x44, 0x01, 5}};
    const Bytes undone[] = {access(0x0E, 0x60, 3), access(1, 0x60, 3), enable};
    for (const auto& messages : {std::span<const Bytes>(steps), std::span<const Bytes>(undone)})
        for (const Bytes& message : messages)
            bmc.answers[message] = {0x00};
    const auto remove = [&] {
        bmc.requests.clear();
        return CIM_DelUser(&session, 5, 30);
    };
    EXPECT_EQ(remove(), 0);
    EXPECT_THAT(bmc.requests, ElementsAre(reads[0], reads[1], steps[0], steps[1], steps[2], steps[3]));

    // A step that is refused: all is as it was.
    for (std::size_t failing = 0; failing < std::size(steps); ++failing) {
        bmc.answers[steps[failing]] = {0xCC};
        EXPECT_EQ(remove(), -1);
        const std::size_t undoing = failing == 0 ? 0 : std::size(undone);
        ASSERT_EQ(bmc.requests.size(), 2 + failing + 1 + undoing);
        EXPECT_TRUE(std::equal(undone, undone + undoing, bmc.requests.end() - static_cast<long>(undoing)));
        bmc.answers[steps[failing]] = {0x00};
    }
    // A user that was disabled stays so; a channel without access or none at all is left alone.
    bmc.answers[reads[0]] = {0x00, 0x10, 0x83, 0x01, 0x0F};
    bmc.answers[reads[1]] = {0xCC};
    bmc.answers[steps[3]] = {0xCC};
    EXPECT_EQ(remove(), -1);
    EXPECT_THAT(bmc.requests, ElementsAre(reads[0], reads[1], disable, steps[3]));
}

} // namespace
