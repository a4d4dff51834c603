// cm: method values, out-arguments, and the jobs that methods start.
#include "paths.h"
#include "phctl_fixture.h"

#include <chrono>
#include <platform/smash_db.h>

namespace {

using ph_test::Outcome;
using ph_test::phctl;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

using Methods = ph_test::PhctlTest;

// A call of the job provider's method.
Outcome start(const std::string& method, const std::string& polls, const std::string& end,
              const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {
        "cm", "CIM_Thing.Name=\"x\"", method, "Polls=" + polls, "End=" + end, "--module", paths::jobProvider};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return phctl(arguments);
}

TEST_F(Methods, aJobIsFollowedToItsEnd) {
    const std::tuple<const char*, const char*, int> cases[] = {
        {"Start", "7", 0}, {"Start", "10", 1}, {"Start", "8", 1}, {"Refuse", "7", 1}};
    for (const auto& [method, end, status] : cases) {
        const Outcome outcome = start(method, "2", end, {"--wait"});
        EXPECT_EQ(outcome.status, status) << method << ' ' << end << outcome.err;
        const std::string path = std::string("root/cimv2:CIM_ConcreteJob.InstanceID=\"2:") + end + '"';
        EXPECT_THAT(outcome.out,
                    AllOf(HasSubstr("\nJob = " + path + '\n'), HasSubstr('\n' + path + "\n  InstanceID"),
                          testing::EndsWith(std::string("\n  JobState   = ") + end + '\n')));
    }
    const auto json = start("Start", "1", "7", {"--wait", "--json"}).json();
    EXPECT_EQ(json["returnValue"], 4096);
    EXPECT_EQ(json["arguments"]["Job"], "root/cimv2:CIM_ConcreteJob.InstanceID=\"1:7\"");
    EXPECT_EQ(json["job"]["properties"]["JobState"], 7);
}

TEST_F(Methods, argumentsAreTypedFromTheSignature) {
    auto host = succeed({"ein", "CIM_HostComputerSystem"}).out;
    host.pop_back();
    const auto json =
        succeed({"cm", host, "requeststatechange", "requestedstate=0x2", "--wait", "--json"}).json();
    EXPECT_EQ(json["returnValue"], 0);
    EXPECT_EQ(json["job"]["properties"]["JobState"], 7);
    EXPECT_EQ(fail({"cm", host, "RequestStateChange", "RequestedState=on"}, 2),
              "phctl: RequestedState: \"on\" is not a uint16 (0 to 65535)\n");
    EXPECT_EQ(fail({"cm", host, "RequestStateChange", "RequestdState=2"}, 1),
              "phctl: CMPI_RC_ERR_INVALID_PARAMETER (4): RequestedState Parameter is Invalid "
              "(CIM_HostComputerSystem.RequestStateChange has no argument RequestdState; did you mean "
              "RequestedState?)\n");
}

TEST_F(Methods, aSignedValueCountsToo) {
    const auto first = [](const char* className) {
        const std::string paths = succeed({"ein", className}).out;
        return paths.substr(0, paths.find('\n'));
    };
    const auto request = [&](const char* state) {
        return phctl({"cm", first("CIM_PowerManagementService"), "RequestPowerStateChange", state,
                      "ManagedElement=" + first("CIM_HostComputerSystem")});
    };
    EXPECT_EQ(request("PowerState=6").status, 0);
    EXPECT_EQ(succeed({"bmc", "show", "chassis", "--json"}).json()["chassis"]["power"], "off");
    const Outcome refused = request("PowerState=10"); // there is nothing to reset
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.out, testing::StartsWith("ReturnValue = 2\nJob = "));
}

TEST_F(Methods, anEmbeddedInstanceIsGivenAsJson) {
    auto service = succeed({"ein", "CIM_AccountManagementService"}).out;
    service.pop_back();
    const auto create = [&](const std::string& accountTemplate) {
        return std::vector<std::string>{"cm", service, "CreateAccount",
                                        "System=CIM_SPComputerSystem.Name=\"x\"",
                                        "AccountTemplate=" + accountTemplate};
    };
    const std::string account =
        R"({"name": "IPMI User-9", "UserID": "eva", "UserPassword": ["one, two \\ comma"]})";
    const auto outcome = succeed(create(account));
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("Name=\"IPMI User-9\""), testing::Not(HasSubstr("comma"))));
    EXPECT_THAT(succeed({"ei", "CIM_Account", "--properties", "UserID"}).out, HasSubstr("eva"));
    for (const auto& [given, error] :
         {std::pair{R"("secret")", "AccountTemplate is an instance: give its properties as JSON"},
          {R"({"UserPassword": "secret")", "AccountTemplate is an instance"},
          {R"({"Pasword": ["secret"]})", "AccountTemplate: CIM_Account has no property Pasword"},
          {R"({"UserID": ["secret", "too"]})", "AccountTemplate.UserID is no array"}})
        EXPECT_THAT(fail(create(given), 2), AllOf(HasSubstr(error), testing::Not(HasSubstr("secret"))));
}

TEST_F(Methods, aJobIsNotFollowedUnlessAskedFor) {
    const Outcome outcome = start("Start", "1000", "7", {});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "ReturnValue = 4096\nJob = root/cimv2:CIM_ConcreteJob.InstanceID=\"1000:7\"\n");
    EXPECT_EQ(start("Refuse", "1000", "7", {}).status, 1);
}

TEST_F(Methods, waitingHasAnEnd) {
    const auto begin = std::chrono::steady_clock::now();
    const Outcome outcome = start("Start", "1000", "7", {"--wait", "--timeout", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("did not end within 1 s"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(700));
}

TEST_F(Methods, errorsOfAJobArePrintedAsInstances) {
    SMASH_DB_HANDLE database = nullptr;
    ASSERT_EQ(tmp_db_init(&database), 0);
    const ConcreteJobRow job{"Host_RequestStateChange", "ConcreteJob", 10, "Exception", 1, "5", "17,6", 100};
    char id[64];
    ASSERT_EQ(db_set_concretejob(database, &job, id), 0);
    JobErrorRow error{0, 3, 0, "", 0, 1};
    std::snprintf(error.errorSource, sizeof error.errorSource, "%s", id);
    ASSERT_EQ(db_set_error_info(database, &error), 0);
    db_close(database);

    const std::string path = "CIM_ConcreteJob.InstanceID=\"" + std::string(id) + '"';
    EXPECT_THAT(
        succeed({"cm", path, "geterrors"}).out,
        ContainsRegex("^ReturnValue = 0\nErrors\\[0\\] = root/cimv2:CIM_Error\n  ErrorSource +=.*\n"));
    EXPECT_EQ(succeed({"cm", path, "GetErrors", "--json"})
                  .json()["arguments"]["Errors"][0]["properties"]["CIMStatusCode"],
              1);
    EXPECT_THAT(succeed({"ei", "CIM_ConcreteJob"}).out,
                HasSubstr("  TimeBeforeRemoval  = 00000000000500.000000:000\n"));
    EXPECT_EQ(succeed({"di", path}).out, "Deleted root/cimv2:" + path + '\n');
    EXPECT_THAT(fail({"gi", path}, 1), HasSubstr("Failed to Get Instance"));
}

} // namespace
