// Sessions, database handles and system names over platform functions that fail to order.
#include "sysroot_fixture.h"
#include "Utility/back-ends/back_ends.h"

#include <cstring>
#include <gmock/gmock.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

// The scripted platform.
struct Platform {
    int failingSessions = 0; // so many attempts fail
    bool noDatabase = false;
    bool noSettings = false;
    bool noDevice = false;
    int closeResult = 0;
    std::string vendorName;

    int attempts = 0;
    std::vector<unsigned int> pauses;
    std::vector<int> settings;
    std::string user;
    std::vector<int> address;
    int openHandles = 0;
    int openSessions = 0;
} platform;

IPMISessionInfo sessionRow;

int openSession() {
    ++platform.attempts;
    if (platform.attempts <= platform.failingSessions)
        return 0xcc;
    ++platform.openSessions;
    return 0;
}

template <class Row>
Row* heapCopy(const Row& row) {
    Row* copy = static_cast<Row*>(std::malloc(sizeof(Row)));
    std::memcpy(copy, &row, sizeof(Row));
    return copy;
}

} // namespace

extern "C" {

unsigned int sleep(unsigned int seconds) {
    platform.pauses.push_back(seconds);
    return 0;
}

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T*, const char* address, uint16_t port, const char* userName,
                              const char*, int interfaceType, int cipherSuite, int workaroundFlags,
                              int retransmission, int privilegeLevel, int timeout) {
    platform.user = std::string(userName) + "@" + address + ":" + std::to_string(port);
    platform.settings = {interfaceType,  cipherSuite,    workaroundFlags,
                         retransmission, privilegeLevel, timeout};
    return openSession();
}

int CIM_Create_IPMI20_Session_Ext(IPMI20_SESSION_T*, const char* userName, const uint8_t* address,
                                  int interfaceType, int privilegeLevel, int flags, int timeout) {
    platform.user = userName;
    platform.address.assign(address, address + 4);
    platform.settings = {interfaceType, privilegeLevel, flags, timeout};
    return openSession();
}

int CIM_Close_Session(IPMI20_SESSION_T*) {
    --platform.openSessions;
    return -1; // the BMC does not answer
}

int db_init(SMASH_DB_HANDLE*) {
    platform.openHandles += !platform.noDatabase;
    return platform.noDatabase;
}

int db_close(SMASH_DB_HANDLE) {
    --platform.openHandles;
    return platform.closeResult;
}

int db_get_ipmi_session_info(SMASH_DB_HANDLE, IPMISessionInfo** info) {
    if (platform.noSettings)
        return 1;
    *info = heapCopy(sessionRow);
    return 0;
}

int db_get_device_bytype(SMASH_DB_HANDLE, int type, DeviceRecord** device) {
    if (platform.noDevice)
        return 1;
    DeviceRecord row{};
    std::snprintf(row.deviceId, sizeof(row.deviceId), "id-%d", type);
    *device = heapCopy(row);
    return 0;
}

int OEM_GetHostSystemName(char* name) {
    std::snprintf(name, 256, "%s", platform.vendorName.c_str());
    return 0;
}

int OEM_GetSPSystemName(char*) {
    return 1;
}

} // extern "C"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

constexpr char noHandle[] = "\nUnable to create handle for DB Access\n";
constexpr char noDevice[] = "\nUnable to get Info from device table \n";

class BackEnds : public SysrootFixture {
protected:
    void SetUp() override {
        SysrootFixture::SetUp();
        platform = {};
        sessionRow = {};
        setenv("DEBUG_PROVIDER", "YES", 1);
        ::testing::internal::CaptureStdout();
    }
    void TearDown() override {
        if (capturing_)
            output();
        unsetenv("DEBUG_PROVIDER");
        EXPECT_EQ(platform.openHandles, 0);
        SysrootFixture::TearDown();
    }
    std::string output() {
        capturing_ = false;
        return ::testing::internal::GetCapturedStdout();
    }

    IPMI20_SESSION_T session{};

private:
    bool capturing_ = true;
};

TEST_F(BackEnds, SessionTakesItsSettingsFromTheDatabase) {
    sessionRow = {.address = "bmc.example",
                  .port = 6230,
                  .userName = "admin",
                  .password = "secret",
                  .interfaceType = "2",
                  .cipherSuite = "0x11",
                  .workaroundFlags = "010",
                  .retransmission = "junk",
                  .privilegeLevel = ""};
    platform.failingSessions = 2;
    EXPECT_EQ(CreateIPMISession(&session), 0);
    EXPECT_EQ(platform.user, "admin@bmc.example:6230");
    EXPECT_THAT(platform.settings, ElementsAre(2, 17, 8, 0, 4, 30));
    EXPECT_THAT(platform.pauses, ElementsAre(5, 5));
    EXPECT_THAT(output(), HasSubstr("\nIPMI Connection established \n"));
}

TEST_F(BackEnds, SessionGivesUpAfterSixAttempts) {
    platform.failingSessions = 100;
    EXPECT_EQ(CreateIPMISession(&session), -1);
    EXPECT_EQ(platform.attempts, 6);
    EXPECT_THAT(platform.pauses, ::testing::AllOf(SizeIs(6), Each(5)));
}

TEST_F(BackEnds, SessionWithoutDatabaseOrSettings) {
    platform.noDatabase = true;
    EXPECT_EQ(CreateIPMISession(&session), -1);
    platform.noDatabase = false;
    platform.noSettings = true;
    EXPECT_EQ(CreateIPMISession(&session), 1);
    EXPECT_EQ(platform.attempts, 0);
    const std::string text = output();
    EXPECT_THAT(text, HasSubstr("\nUnable to create handle to for DB Access\n"));
    EXPECT_THAT(text, HasSubstr("\nUnable to get IPMI Session Info\n"));
}

TEST_F(BackEnds, OnlyMinusOneIsAFailureForTheOwner) {
    platform.noSettings = true;
    {
        ph::IpmiSession owned;
        EXPECT_TRUE(owned.open());
    }
    platform.noSettings = false;
    platform.openSessions = 0;
    {
        ph::IpmiSession owned;
        EXPECT_TRUE(owned.open());
        EXPECT_EQ(platform.openSessions, 1);
    }
    EXPECT_EQ(platform.openSessions, 0);
    EXPECT_EQ(CloseIPMISession(nullptr), -1);
    EXPECT_EQ(CloseIPMISession(&session), 0);
}

TEST_F(BackEnds, SessionOnBehalfOfTheRequestsUser) {
    std::snprintf(sessionRow.interfaceType, sizeof(sessionRow.interfaceType), "1");
    EXPECT_EQ(CreateIPMISession_Ext(&session), -1) << "no current request";
    const auto place = sysroot.place("/tmp/current_req");
    ASSERT_EQ(mkfifo(place.c_str(), 0600), 0);
    EXPECT_EQ(CreateIPMISession_Ext(&session), -1) << "a pipe";
    std::filesystem::remove(place);
    write("/tmp/elsewhere", "operator 10.1.2.3");
    std::filesystem::create_symlink(sysroot.place("/tmp/elsewhere"), place);
    EXPECT_EQ(CreateIPMISession_Ext(&session), -1) << "a link";
    std::filesystem::remove(place);
    write("/tmp/current_req", "operator 10.1.2");
    EXPECT_EQ(CreateIPMISession_Ext(&session), -1) << "no address";
    write("/tmp/current_req", "operator 10.1.2.3\n");
    platform.closeResult = 1;
    EXPECT_EQ(CreateIPMISession_Ext(&session), 0);
    EXPECT_EQ(platform.user, "operator");
    EXPECT_THAT(platform.address, ElementsAre(10, 1, 2, 3));
    EXPECT_THAT(platform.settings, ElementsAre(1, 4, 0, 30));
    const std::string text = output();
    EXPECT_THAT(text, HasSubstr("\nFailed in PH_ConvertStrToIP\n"));
    EXPECT_THAT(text, HasSubstr("\nCreateIPMISession_Ext - Failed in PH_CloseDBHandle\n"));
}

TEST_F(BackEnds, SystemNames) {
    char name[256] = "";
    EXPECT_EQ(PH_GetHostSystemName(name), 0);
    EXPECT_STREQ(name, "Unknown.IPMI BMC DeviceID.id-2");
    EXPECT_EQ(PH_GetSPSystemName(name), 0);
    EXPECT_STREQ(name, "IPMI Controller id-1");
    platform.vendorName = "rack7";
    EXPECT_EQ(PH_GetHostSystemName(name), 0);
    EXPECT_STREQ(name, "rack7");
    platform.noDevice = true;
    EXPECT_EQ(PH_GetSPSystemName(name), -1);
    EXPECT_EQ(output(), noDevice);
    ::testing::internal::CaptureStdout();
    platform.noDatabase = true;
    EXPECT_EQ(PH_GetSPSystemName(name), -1);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), std::string(noHandle) + noDevice);
}

// All but the failures of handles is silent.
TEST_F(BackEnds, PrintOnlyWhatIsAskedFor) {
    for (const char* wanted : {static_cast<const char*>(nullptr), "", "NO"}) {
        wanted != nullptr ? setenv("DEBUG_PROVIDER", wanted, 1) : unsetenv("DEBUG_PROVIDER");
        platform = {};
        char name[256] = "";
        EXPECT_EQ(CreateIPMISession(&session), 0);
        platform.noDevice = platform.noSettings = true;
        EXPECT_EQ(PH_GetSPSystemName(name), -1);
        EXPECT_EQ(CreateIPMISession(&session), 1);
    }
    SMASH_DB_HANDLE handle = nullptr;
    platform.noDatabase = true;
    EXPECT_EQ(PH_CreateDBHandle(&handle), -1);
    platform.openHandles = 1;
    platform.closeResult = 1;
    EXPECT_EQ(PH_CloseDBHandle(handle), -1);
    EXPECT_EQ(output(), std::string(noHandle) + noHandle);
}

} // namespace
