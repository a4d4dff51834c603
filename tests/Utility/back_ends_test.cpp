// Sessions, database handles and system names over platform functions that fail to order.
#include "managed_bmc.h"
#include "Utility/back-ends/back_ends.h"

#include <sys/stat.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr char noHandle[] = "\nUnable to create handle for DB Access\n";
constexpr char noDevice[] = "\nUnable to get Info from device table \n";
constexpr char openSession[] = "CIM_Create_IPMI20_Session";

class BackEnds : public ManagedBmc {
protected:
    BackEnds() {
        setenv("DEBUG_PROVIDER", "YES", 1);
        std::filesystem::remove(sysroot.place("/conf/system_names.ini"));
        testing::internal::CaptureStdout();
    }
    void TearDown() override {
        output();
        testing::internal::GetCapturedStdout();
        unsetenv("DEBUG_PROVIDER");
        ManagedBmc::TearDown();
    }
    // What was printed since this was asked last.
    static std::string output() {
        std::string text = testing::internal::GetCapturedStdout();
        testing::internal::CaptureStdout();
        return text;
    }

    IPMI20_SESSION_T session{};
};

TEST_F(BackEnds, sessionTakesItsSettingsFromTheDatabase) {
    PH_STAND_IN(db_get_ipmi_session_info, [](auto*, IPMISessionInfo** row) {
        *row = static_cast<IPMISessionInfo*>(std::malloc(sizeof(IPMISessionInfo)));
        **row = {.address = "bmc.example",
                 .port = 6230,
                 .userName = "admin",
                 .password = "secret",
                 .interfaceType = "2",
                 .cipherSuite = "0x11",
                 .workaroundFlags = "010",
                 .retransmission = "junk",
                 .privilegeLevel = ""};
        return 0;
    });
    PH_STAND_IN(CIM_Create_IPMI20_Session,
                [failures = 2](auto&&...) mutable { return failures-- > 0 ? 0xCC : 0; });
    EXPECT_EQ(CreateIPMISession(&session), 0);
    EXPECT_THAT(
        platformCalls.texts,
        Contains(openSession + std::string(R"(("bmc.example", 6230, "admin", "secret", 2, 17, 8, 0, 4, 30))"))
            .Times(3));
    EXPECT_THAT(platformCalls.pauses, ElementsAre(5, 5));
    EXPECT_THAT(output(), HasSubstr("\nIPMI Connection established \n"));
    EXPECT_EQ(CloseIPMISession(&session), 0);
}

TEST_F(BackEnds, sessionIsGivenUpAfterSixAttemptsAndNotTriedWithoutSettings) {
    platformCalls.broken = {openSession};
    EXPECT_EQ(CreateIPMISession(&session), -1);
    EXPECT_EQ(std::ranges::count(platformCalls.made, openSession), 6);
    EXPECT_EQ(platformCalls.pauses, std::vector(6, 5U));

    platformCalls.clear();
    platformCalls.broken = {"db_init"};
    EXPECT_EQ(CreateIPMISession(&session), -1);
    platformCalls.broken = {"db_get_ipmi_session_info"};
    EXPECT_EQ(CreateIPMISession(&session), 1);
    EXPECT_TRUE(ph::IpmiSession().open()) << "only -1 is a failure for the owner";
    EXPECT_THAT(platformCalls.made, Not(Contains(openSession)));
    EXPECT_THAT(output(), AllOf(HasSubstr("\nUnable to create handle to for DB Access\n"),
                                HasSubstr("\nUnable to get IPMI Session Info\n")));
}

TEST_F(BackEnds, sessionClosesWithItsOwnerWhateverTheBmcSays) {
    {
        ph::IpmiSession owned;
        EXPECT_TRUE(owned.open());
        EXPECT_EQ(platformCalls.openSessions, 1);
    }
    EXPECT_EQ(platformCalls.openSessions, 0);
    platformCalls.broken = {"CIM_Close_Session"};
    EXPECT_EQ(CloseIPMISession(&session), 0);
    EXPECT_EQ(CloseIPMISession(nullptr), -1);
}

TEST_F(BackEnds, sessionOnBehalfOfTheRequestsUser) {
    PH_STAND_IN(CIM_Create_IPMI20_Session_Ext, [](auto*, auto*, const uint8_t* address, auto...) {
        EXPECT_THAT(std::vector(address, address + 4), ElementsAre(10, 1, 2, 3));
        return 0;
    });
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
    platformCalls.broken = {"db_close"};
    EXPECT_EQ(CreateIPMISession_Ext(&session), 0);
    EXPECT_EQ(platformCalls.texts.back(), "CIM_Create_IPMI20_Session_Ext(\"operator\", *, 2, 4, 0, 30)");
    EXPECT_THAT(output(), AllOf(HasSubstr("\nFailed in PH_ConvertStrToIP\n"),
                                HasSubstr("\nCreateIPMISession_Ext - Failed in PH_CloseDBHandle\n")));
}

TEST_F(BackEnds, systemNames) {
    PH_STAND_IN(db_get_device_bytype, [](auto*, int type, DeviceRecord** device) {
        *device = static_cast<DeviceRecord*>(std::calloc(1, sizeof(DeviceRecord)));
        std::snprintf((*device)->deviceId, sizeof(*device)->deviceId, "id-%d", type);
        return 0;
    });
    char name[256] = "";
    EXPECT_EQ(PH_GetHostSystemName(name), 0);
    EXPECT_STREQ(name, "Unknown.IPMI BMC DeviceID.id-2");
    EXPECT_EQ(PH_GetSPSystemName(name), 0);
    EXPECT_STREQ(name, "IPMI Controller id-1");
    write("/conf/system_names.ini", "[names]\nhost = rack7\n");
    EXPECT_EQ(PH_GetHostSystemName(name), 0);
    EXPECT_STREQ(name, "rack7");
    output();
    platformCalls.broken = {"db_get_device_bytype"};
    EXPECT_EQ(PH_GetSPSystemName(name), -1);
    EXPECT_EQ(output(), noDevice);
    platformCalls.broken = {"db_init"};
    EXPECT_EQ(PH_GetSPSystemName(name), -1);
    EXPECT_EQ(output(), std::string(noHandle) + noDevice);
}

// All but the failures of handles is silent.
TEST_F(BackEnds, printOnlyWhatIsAskedFor) {
    SMASH_DB_HANDLE handle = nullptr;
    char name[256] = "";
    for (const char* wanted : {static_cast<const char*>(nullptr), "", "NO"}) {
        wanted != nullptr ? setenv("DEBUG_PROVIDER", wanted, 1) : unsetenv("DEBUG_PROVIDER");
        platformCalls.broken = {};
        EXPECT_EQ(CreateIPMISession(&session), 0);
        EXPECT_EQ(CloseIPMISession(&session), 0);
        platformCalls.broken = {"db_get_device_bytype", "db_get_ipmi_session_info"};
        EXPECT_EQ(PH_GetSPSystemName(name), -1);
        EXPECT_EQ(CreateIPMISession(&session), 1);
    }
    EXPECT_EQ(PH_CreateDBHandle(&handle), 0);
    platformCalls.broken = {"db_init", "db_close"};
    EXPECT_EQ(PH_CloseDBHandle(handle), -1);
    EXPECT_EQ(PH_CreateDBHandle(&handle), -1);
    EXPECT_EQ(output(), std::string(noHandle) + noHandle);
}

} // namespace
