#include "scripted_bmc.h"

#include <platform/cim_hooks.h>
#include <platform/smash_db.h>

#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr std::uint8_t client[] = {192, 0, 2, 7};

Bytes userName(const char* name) {
    Bytes answer(17, 0);
    std::memcpy(answer.data() + 1, name, strnlen(name, 16));
    return answer;
}

class Session : public testing::Test {
protected:
    Session() {
        bmc = {};
        std::memset(&session, 0xA5, sizeof session); // a local of the caller's, never initialized
    }

    int open() {
        return CIM_Create_IPMI20_Session(&session, "bmc.example", 1623, "operator", "s3cr3t", 0, 17, 0x10,
                                         250, 3, 12);
    }

    int openFor(const char* user, int interfaceType = 1) {
        return CIM_Create_IPMI20_Session_Ext(&session, user, client, interfaceType, 4, 0, 30);
    }

    IPMI20_SESSION_T session;
};

TEST_F(Session, opensWithAllSettingsAndClosesTwice) {
    ASSERT_EQ(open(), 0);
    ASSERT_THAT(bmc.opened, SizeIs(1));
    const auto& settings = bmc.opened[0];
    EXPECT_EQ(settings.address, "bmc.example");
    EXPECT_EQ(settings.port, 1623);
    EXPECT_EQ(settings.userName, "operator");
    EXPECT_EQ(settings.password, "s3cr3t");
    EXPECT_EQ(settings.interfaceType, 0);
    EXPECT_EQ(settings.cipherSuite, 17);
    EXPECT_EQ(settings.workaroundFlags, 0x10);
    EXPECT_EQ(settings.retransmission, 250);
    EXPECT_EQ(settings.privilegeLevel, 3);
    EXPECT_EQ(settings.timeout, 12);
    EXPECT_EQ(bmc.openTransports, 1);
    EXPECT_EQ(CIM_Close_Session(&session), 0);
    EXPECT_EQ(bmc.openTransports, 0);
    EXPECT_EQ(CIM_Close_Session(&session), 0);
}

TEST_F(Session, whichDoesNotOpenIsClosedAndSaysWhy) {
    bmc.isReachable = false;
    EXPECT_NE(open(), 0);
    EXPECT_THAT(bmc.debugLog, HasSubstr("bmc.example:623: no answer"));
    EXPECT_THAT(bmc.debugLog, Not(HasSubstr("s3cr3t")));
    CIM_SensorReading reading;
    EXPECT_NE(CIM_GetSensorReading(&session, 1, &reading, 30), 0);
    EXPECT_EQ(CIM_Close_Session(&session), 0);
}

TEST_F(Session, refusesWhatIsMissing) {
    session = {};
    CIM_SensorReading reading;
    EXPECT_NE(CIM_GetSensorReading(&session, 1, &reading, 30), 0) << "a zeroed session is not open";
    EXPECT_EQ(CIM_Close_Session(&session), 0);

    EXPECT_NE(CIM_Create_IPMI20_Session(nullptr, "", 623, "", "", 0, 3, 0, 0, 4, 30), 0);
    EXPECT_NE(CIM_Create_IPMI20_Session_Ext(nullptr, "operator", client, 1, 4, 0, 30), 0);
    EXPECT_NE(CIM_Create_IPMI20_Session_Ext(&session, "operator", nullptr, 1, 4, 0, 30), 0);
    EXPECT_NE(CIM_GetSensorReading(nullptr, 1, &reading, 30), 0);
    EXPECT_NE(CIM_Close_Session(nullptr), 0);
    EXPECT_THAT(bmc.opened, SizeIs(0));
    ASSERT_EQ(open(), 0);
    EXPECT_NE(CIM_GetSensorReading(&session, 1, nullptr, 30), 0);
    EXPECT_EQ(CIM_Close_Session(&session), 0);
}

// A table of five users: 2 unnamed, 3 "operator", 4 refused by the BMC, 5 disabled.
void addUserTable() {
    bmc.answers[{0x06, 0x44, 0x0E, 1}] = {0x00, 5, 0x02, 0x00, 0x34};
    bmc.answers[{0x06, 0x44, 0x0E, 3}] = {0x00, 5, 0x42, 0x00, 0x34};
    bmc.answers[{0x06, 0x44, 0x0E, 5}] = {0x00, 5, 0x82, 0x00, 0x34};
    bmc.answers[{0x06, 0x46, 1}] = userName("");
    bmc.answers[{0x06, 0x46, 2}] = userName("");
    bmc.answers[{0x06, 0x46, 3}] = userName("operator");
    bmc.answers[{0x06, 0x46, 4}] = {0xCC};
    bmc.answers[{0x06, 0x46, 5}] = userName("sixteen-letters!");
}

TEST_F(Session, ofARequestNeedsAnEnabledUserOfTheBmc) {
    const std::tuple<const char*, bool> cases[] = {
        {"operator", true},          {"operato", false}, {"operators", false}, {"Operator", false},
        {"sixteen-letters!", false}, {"", false},        {nullptr, false}};
    for (const auto& [user, isKnown] : cases) {
        SCOPED_TRACE(user != nullptr ? user : "NULL");
        bmc = {};
        addUserTable();
        EXPECT_EQ(openFor(user) == 0, isKnown);
        EXPECT_EQ(bmc.openTransports, isKnown ? 1 : 0);
        EXPECT_EQ(CIM_Close_Session(&session), 0);
    }
}

TEST_F(Session, ofARequestWithAUserTableInTroubleFails) {
    const Bytes troubles[] = {{0xC1}, {0xD4}, {0x00}, {0x00, 5}};
    for (const auto& answer : troubles) {
        bmc = {};
        bmc.answers[{0x06, 0x44, 0x0E, 1}] = answer;
        const bool hasNoUserTable = answer[0] == 0xC1;
        EXPECT_EQ(openFor("operator") == 0, hasNoUserTable);
        EXPECT_EQ(CIM_Close_Session(&session), 0);
        EXPECT_EQ(bmc.openTransports, 0);
    }
}

TEST_F(Session, ofARequestIsNeverRmcpPlus) {
    addUserTable();
    EXPECT_NE(openFor("operator", 0), 0);
    EXPECT_THAT(bmc.opened, SizeIs(0));
    EXPECT_THAT(bmc.debugLog, HasSubstr("needs a password"));
}

// The record that the database hands out, and what was wiped of it.
IPMISessionInfo* row = nullptr;
bool isWiped = false;

TEST_F(Session, ofTheDatabasesRowLeavesNoPasswordBehind) {
    CIM_NWExtEthCfg configuration;
    std::uint8_t isDefault = 9;
    isWiped = false;
    EXPECT_EQ(CIM_GetNWExtEthCfg(&configuration, &isDefault), 0);
    EXPECT_EQ(isDefault, 1);
    ASSERT_THAT(bmc.opened, SizeIs(1));
    EXPECT_EQ(bmc.opened[0].password, "from the row");
    EXPECT_TRUE(isWiped);
}

} // namespace

// These take the place of the database's and of the C library's.

extern "C" {

__attribute__((visibility("default"))) int db_init(SMASH_DB_HANDLE* handle) {
    *handle = nullptr;
    return 0;
}
__attribute__((visibility("default"))) int db_close(SMASH_DB_HANDLE) {
    return 0;
}
__attribute__((visibility("default"))) int db_get_ipmi_session_info(SMASH_DB_HANDLE, IPMISessionInfo** info) {
    row = static_cast<IPMISessionInfo*>(std::calloc(1, sizeof(IPMISessionInfo)));
    std::strcpy(row->password, "from the row");
    *info = row;
    return 0;
}
// With and without the checks of _FORTIFY_SOURCE.
__attribute__((visibility("default"))) void wipe(void* place, std::size_t size) __asm__("explicit_bzero");
__attribute__((visibility("default"))) void wipeChecked(void* place, std::size_t size,
                                                        std::size_t) __asm__("__explicit_bzero_chk");
void wipe(void* place, std::size_t size) {
    isWiped = isWiped || (row != nullptr && place == row->password && size == sizeof row->password);
    volatile auto* byte = static_cast<volatile char*>(place);
    while (size-- > 0)
        *byte++ = 0;
}
void wipeChecked(void* place, std::size_t size, std::size_t) {
    wipe(place, size);
}
}
