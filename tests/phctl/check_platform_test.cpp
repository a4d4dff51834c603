// check-platform: on the reference platform, and on one that breaks its contract everywhere.
#include "paths.h"
#include "phctl_fixture.h"

#include <algorithm>
#include <set>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

// Where the dynamic linker looks first, for the processes of a test.
class LibraryFolder {
public:
    explicit LibraryFolder(const char* folder) { setenv("LD_LIBRARY_PATH", folder, 1); }
    ~LibraryFolder() { unsetenv("LD_LIBRARY_PATH"); }
};

class CheckPlatform : public ph_test::PhctlTest {
protected:
    static json check(std::vector<std::string> arguments, int status) {
        arguments.insert(arguments.begin(), {"check-platform", "--json"});
        const auto outcome = ph_test::phctl(arguments);
        EXPECT_EQ(outcome.status, status) << outcome.err << outcome.out;
        return outcome.json();
    }
    static json withOutcome(const json& calls, const char* outcome) {
        json found = json::array();
        std::ranges::copy_if(calls, std::back_inserter(found),
                             [=](const json& call) { return call["outcome"] == outcome; });
        return found;
    }
};

TEST_F(CheckPlatform, referencePlatformKeepsToItsContract) {
    ASSERT_EQ(ph_test::phctl({"bmc", "sel", "fill", "20"}).status, 0);
    const auto state = [] {
        const json bmc = ph_test::phctl({"bmc", "show", "--json"}).json();
        return json{bmc["users"], bmc["pef"], bmc["watchdog"], bmc["sel"]["utcOffset"],
                    ph_test::phctl({"ei", "CIM_BootConfigSetting", "--json"}).json()};
    };
    const json before = state();
    const json calls = check({"--change"}, 0);
    EXPECT_EQ(withOutcome(calls, "breaks"), json::array());
    EXPECT_EQ(state(), before) << "what it changes is put back";
    for (const char* function :
         {"CIM_GetSensorReading", "CIM_SetBootFlags", "CIM_GetSELRecords", "db_get_full_sdr", "CIM_ModUser"})
        EXPECT_TRUE(std::ranges::any_of(calls, [=](const json& call) {
            return call["function"] == function && call["outcome"] == "works";
        })) << function;
}

// The list of what there is to check is that of the headers.
TEST_F(CheckPlatform, noFunctionIsForgotten) {
#define FORWARD(name, ...) #name,
#define OPTIONAL FORWARD
#define TEXT(name)
    std::set<std::string> declared{
#include "platform_functions.inc"
    };
    const LibraryFolder stubs(paths::stubPlatform);
    for (const json& call : check({}, 0)) {
        const std::string name = call["function"];
        if (declared.erase(name) > 0) {
            const bool hasStub = name != "smtp_mail"; // not in this folder
            EXPECT_EQ(call["outcome"] == "missing", hasStub) << call;
        }
    }
    EXPECT_THAT(declared, IsEmpty());
}

TEST_F(CheckPlatform, whatBreaksTheContractIsTold) {
    const LibraryFolder bad(paths::badPlatform);
    const json calls = check({"--timeout", "1"}, 1);
    const struct {
        const char* function;
        const char* arguments;
        const char* remark;
        const char* outcome = "breaks";
    } expected[] = {
        {"CIM_GetDeviceID", "", "deviceRevision is above 15"},
        {"CIM_GetSystemInfo", "parameter 1", "the text does not end within its 768 bytes"},
        {"CIM_GetSystemInfo", "parameter 2", "the text is not UTF-8"},
        {"CIM_GetSystemInfo", "parameter 3", "it writes beyond the text"},
        {"CIM_GetSystemInfo", "parameter 4", "it succeeds without writing the text"},
        {"CIM_GetSystemInfo", "parameter 5", "it has taken longer than the 1 s it was given"},
        {"CIM_GetChassisStatus", "", PH_CRASH},
        {"CIM_GetACPIPowerState", "", "it does not return within 6 s"},
        {"CIM_GetServiceConf", "kvm", PH_CRASH},
        {"CIM_GetServiceConf", "ssh", "another maker's service, since its name is \"web\"", "works"},
        {"CIM_GetChannelNum", "a LAN that is not listed", "it succeeds for a LAN that is not listed"},
        {"db_close", "NULL", "it succeeds for NULL"},
        {"db_get_all_compact_sdrs", "", "what it handed out"},
        {"db_get_all_full_sdrs", "", "it returns -1, which is neither 0 nor 1"},
        {"db_get_all_packages", "", "two rows have the same tag"},
        {"db_get_all_packages", "", "model does not end within its 128 bytes"},
        {"db_get_package", "10.1", "model is another than in the list"},
        {"db_get_package", "a key that no row has", "it succeeds for a key that no row has"},
        {"db_get_all_power_mgt_service", "", "the block is smaller than its rows"},
        {"db_get_device_bytype", "the host", "it fails and hands out rows"},
    };
    for (const auto& [function, arguments, remark, outcome] : expected) {
        const auto found = std::ranges::find_if(calls, [&, f = function, a = arguments](const json& call) {
            return call["function"] == f && call["arguments"] == a;
        });
        ASSERT_NE(found, calls.end()) << function << ' ' << arguments;
        EXPECT_EQ((*found)["outcome"], outcome) << *found;
        EXPECT_THAT((*found)["remark"].get<std::string>(), HasSubstr(remark)) << function << ' ' << arguments;
    }
}

TEST_F(CheckPlatform, whatTheBmcRefusesHasItsReason) {
    ASSERT_EQ(ph_test::phctl({"bmc", "fault", "get-lan-configuration", "--code", "0xD4"}).status, 0);
    for (const json& call : check({"--only", "CIM_GetIPv4NetworkCfg"}, 0)) {
        EXPECT_EQ(call["outcome"], "refused");
        EXPECT_THAT(call["remark"].get<std::string>(), HasSubstr("privilege"));
    }
    fail({"check-platform", "--only", "CIM_NoSuchHook"}, 2);
}

} // namespace
