// Requests down the whole road: broker, provider module, library, hooks, virtual BMC and database.
#include "bmc_session.h"
#include "cim_values.h"
#include "paths.h"
#include "virtual-bmc/virtual_bmc.h"

#include <platform/support.h>

#include <algorithm>
#include <cctype>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <sysroot_fixture.h>

namespace {

int initialisations;

} // namespace

// In place of the platform's and libc's.
#pragma GCC visibility push(default)
extern "C" {
int RetrieveCoreFeatures(CoreFeatures* features) {
    ++initialisations;
    *features = {};
    return 0;
}
unsigned int sleep(unsigned int) {
    return 0;
}
}
#pragma GCC visibility pop

namespace {

using broker::Broker;
using broker::Instance;
using broker::ObjectPath;
using broker::Reply;
using broker::Request;
using testing::SizeIs;

class ProviderModule : public SysrootFixture {
protected:
    // A database that was filled from the sample server.
    void SetUp() override {
        const auto stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
        vbmc::create(stateFile, paths::sampleServer);
        synchronise(stateFile);
        broker.loadProvider(paths::providerModule, "ProviderHelper");
    }
    void TearDown() override { EXPECT_EQ(broker.liveObjects(), 0U); }

    Broker broker;
};

TEST_F(ProviderModule, successfulRequestsAreClosed) {
    const ObjectPath host = broker.enumerateInstanceNames(path("CIM_HostComputerSystem")).paths.at(0);
    EXPECT_TRUE(broker.enumerateInstanceNames(path("CIM_HostComputerSystem")).done);
    EXPECT_TRUE(broker.enumerateInstances(path("CIM_HostComputerSystem")).done);
    EXPECT_TRUE(broker.getInstance(host).done);
    // Some classes close the result of their methods themselves, when they succeed.
    const ObjectPath log = broker.enumerateInstanceNames(path("CIM_RecordLog")).paths.at(0);
    const ObjectPath port = broker.enumerateInstanceNames(path("CIM_EthernetPort")).paths.at(0);
    const std::tuple<ObjectPath, const char*, std::uint64_t> calls[] = {{host, "RequestStateChange", 2},
                                                                        {host, "RequestStateChange", 5},
                                                                        {port, "RequestStateChange", 5},
                                                                        {log, "ClearLog", 0}};
    for (const auto& [object, method, state] : calls) {
        broker.resetCalls();
        EXPECT_TRUE(broker.invokeMethod(object, method, {{"RequestedState", {CMPI_uint16, state}}}).ok());
        EXPECT_EQ(broker.calls("returnDone"), 1U) << method << state;
    }
}

TEST_F(ProviderModule, namesAreTakenWithoutRegardToCase) {
    const Instance account = broker.enumerateInstances(path("CIM_Account")).instances.back();
    EXPECT_EQ(broker.enumerateInstances(path("cim_account")).instances.back(), account);
    ObjectPath shouted = account.path;
    shouted.className = "CIM_ACCOUNT";
    for (auto& [name, value] : shouted.keys)
        std::transform(name.begin(), name.end(), name.begin(), ::toupper);
    EXPECT_EQ(broker.getInstance(shouted).instances, std::vector{account});
    const Instance change{shouted, {{"USERID", {CMPI_string, "renamed"}}}};
    const Reply changed = broker.modifyInstance(shouted, change, {{"userid"}});
    EXPECT_TRUE(changed.ok()) << changed.message;
    const ObjectPath host = broker.enumerateInstanceNames(path("CIM_HostComputerSystem")).paths.at(0);
    EXPECT_TRUE(
        broker.invokeMethod(host, "requeststatechange", {{"requestedstate", {CMPI_uint16, 5ULL}}}).ok());
}

// For object managers that have some classes of their own, a class derives from each under a vendor's prefix.
TEST_F(ProviderModule, classesHaveAVendorsPrefixWhereTheyAreAskedForSo) {
    auto expected = broker.enumerateInstances(path("CIM_Account")).instances;
    for (Instance& each : expected)
        each.path.className = "PH_Account";
    EXPECT_EQ(broker.enumerateInstances(path("PH_Account")).instances, expected);
    const ObjectPath account = broker.enumerateInstanceNames(path("PH_Account")).paths.back();
    EXPECT_EQ(account, expected.back().path);
    EXPECT_EQ(broker.getInstance(account).instances, std::vector{expected.back()});
    const Instance change{account, {{"UserID", {CMPI_string, "renamed"}}}};
    EXPECT_TRUE(broker.modifyInstance(account, change, {{"UserID"}}).ok());
    EXPECT_TRUE(broker.deleteInstance(account).ok());
    EXPECT_EQ(broker.enumerateInstances(path("CIM_Account")).instances.size(), expected.size() - 1);
    EXPECT_EQ(broker.enumerateInstances(path("PH_NoSuchClass")).code, CMPI_RC_ERR_INVALID_CLASS);
}

TEST_F(ProviderModule, servesAStrictBroker) {
    broker.beStrict([](const std::string&, std::string_view) { return CMPI_null; });
    Instance account = broker.enumerateInstances(path("CIM_Account")).instances.back();
    broker::set(account.properties, "UserID", {CMPI_string, "renamed"});
    const Reply changed = broker.modifyInstance(account.path, account);
    EXPECT_TRUE(changed.ok()) << changed.message;
    broker::set(account.properties, "SystemName", {CMPI_string, "another"});
    EXPECT_FALSE(broker.modifyInstance(account.path, account).ok());

    // The keys of what is made come from its properties.
    const ObjectPath filters = path("CIM_IndicationFilter");
    Instance made{filters, broker.enumerateInstanceNames(path("CIM_Account")).paths.at(0).keys};
    broker::set(made.properties, "CreationClassName", {CMPI_string, "CIM_IndicationFilter"});
    broker::set(made.properties, "Name", {CMPI_string, "IndicationFilter:CIMXML-8"});
    broker::set(made.properties, "Query",
                {CMPI_string, "select * from CIM_AlertIndication where PerceivedSeverity=6"});
    const Reply created = broker.createInstance(filters, made);
    ASSERT_THAT(created.paths, SizeIs(1)) << created.message;
    EXPECT_TRUE(broker.deleteInstance(created.paths[0]).ok());
}

TEST_F(ProviderModule, unknownClassesAreRefused) {
    using Operation = Request::Operation;
    for (const std::string& name : {std::string("CIM_Nothing"), std::string("Sensor"), std::string("CIM_"),
                                    std::string(), "CIM_" + std::string(300, 'X')})
        for (const Operation operation :
             {Operation::EnumerateInstances, Operation::EnumerateInstanceNames, Operation::GetInstance,
              Operation::ModifyInstance, Operation::CreateInstance, Operation::DeleteInstance,
              Operation::InvokeMethod}) {
            const Reply reply =
                broker.execute({.operation = operation, .path = path(name), .method = "Reset"});
            EXPECT_EQ(reply.code, CMPI_RC_ERR_INVALID_CLASS) << name;
            EXPECT_EQ(reply.message, "This provider does not serve the class");
        }
}

// Object managers look for the provider's registered name, or for the module file's name.
TEST_F(ProviderModule, entryPointsForEveryObjectManager) {
    for (const char* name : {"ProviderHelper", "ProviderHelperProviders"}) {
        Broker other;
        other.loadProvider(paths::providerModule, name);
        EXPECT_TRUE(other.enumerateInstanceNames(path("CIM_HostComputerSystem")).ok()) << name;
        EXPECT_EQ(other.deleteInstance(path("CIM_Sensor")).code, CMPI_RC_ERR_NOT_SUPPORTED) << name;
        EXPECT_EQ(other.invokeMethod(path("CIM_Sensor"), "Reset").code, CMPI_RC_ERR_NOT_SUPPORTED) << name;
    }
    EXPECT_EQ(initialisations, 1) << "the library is initialised once in a process";
}

TEST_F(ProviderModule, statusIsOptional) {
    using Create = CMPIInstanceMI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
    void* module = dlopen(paths::providerModule, RTLD_NOW);
    ASSERT_NE(module, nullptr) << dlerror();
    const auto create = reinterpret_cast<Create>(dlsym(module, "ProviderHelper_Create_InstanceMI"));
    ASSERT_NE(create, nullptr);
    CMPIInstanceMI* mi = create(broker.handle(), nullptr, nullptr);
    ASSERT_NE(mi, nullptr);
    EXPECT_EQ(mi->ft->execQuery(mi, nullptr, nullptr, nullptr, "", "").rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(mi->ft->cleanup(mi, nullptr, 0).rc, CMPI_RC_OK);
    dlclose(module);
}

} // namespace
