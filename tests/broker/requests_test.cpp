// Requests through a loaded provider, and providers' own requests.
#include "broker/broker.h"
#include "paths.h"

#include <gmock/gmock.h>

namespace {

using broker::Broker;
using broker::Instance;
using broker::NamedValues;
using broker::ObjectPath;
using broker::Reply;
using broker::Value;
using testing::ElementsAre;
using testing::HasSubstr;

ObjectPath path(const std::string& className, NamedValues keys = {}) {
    return {.host = {}, .nameSpace = "root/cimv2", .className = className, .keys = std::move(keys)};
}

NamedValues named(const std::string& name) {
    return {{"Name", {CMPI_string, name}}};
}

Instance item(const std::string& name) {
    return {path("CIM_Item", named(name)),
            {{"Name", {CMPI_string, name}},
             {"Size", {CMPI_uint16, std::uint64_t{7}}},
             {"Colour", {CMPI_string, std::string("blue")}}}};
}

class Requests : public testing::Test {
protected:
    void SetUp() override { broker.loadProvider(paths::brokerTestProvider, "Test"); }
    void TearDown() override { EXPECT_EQ(broker.liveObjects(), 0U); }

    Broker broker;
};

// CIM_Relay makes the same requests through the broker: an object manager's answers and the provider's must
// be the same.
class RequestsOf : public Requests, public testing::WithParamInterface<const char*> {
protected:
    std::string className = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Direct, RequestsOf, testing::Values("CIM_Item"));
INSTANTIATE_TEST_SUITE_P(Relayed, RequestsOf, testing::Values("CIM_Relay"));

TEST_P(RequestsOf, enumerateInstances) {
    const Reply all = broker.enumerateInstances(path(className));
    EXPECT_TRUE(all.ok()) << all.message;
    EXPECT_THAT(all.instances, ElementsAre(item("1"), item("2"), item("3")));
    EXPECT_TRUE(all.paths.empty());

    Instance small = item("1");
    small.properties.pop_back();
    const Reply wanted = broker.enumerateInstances(path(className), {{"SIZE"}});
    ASSERT_EQ(wanted.instances.size(), 3U);
    EXPECT_EQ(wanted.instances[0], small);
}

TEST_P(RequestsOf, enumerateNames) {
    const Reply reply = broker.enumerateInstanceNames(path(className));
    EXPECT_TRUE(reply.ok()) << reply.message;
    EXPECT_THAT(reply.paths, ElementsAre(item("1").path, item("2").path, item("3").path));
    EXPECT_TRUE(reply.instances.empty());
}

TEST_P(RequestsOf, getInstance) {
    EXPECT_THAT(broker.getInstance(path(className, named("x"))).instances, ElementsAre(item("x")));
    const Reply none = broker.getInstance(path(className));
    EXPECT_EQ(none.code, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(none.message, "no Name");
}

TEST_P(RequestsOf, createInstance) {
    const Reply created = broker.createInstance(path(className), {{}, named("new")});
    EXPECT_THAT(created.paths, ElementsAre(item("new").path));
    EXPECT_EQ(broker.createInstance(path(className), {}).code, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_P(RequestsOf, modifyInstance) {
    const Reply reply = broker.modifyInstance(
        path(className, named("x")), {{}, {{"Size", {CMPI_uint16, std::uint64_t{9}}}}}, {{"Size", "Colour"}});
    EXPECT_EQ(reply.code, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(reply.message, "x Size=9 list: Size Colour");
}

TEST_P(RequestsOf, deleteInstance) {
    const Reply reply = broker.deleteInstance(path(className, named("gone")));
    EXPECT_EQ(reply.code, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(reply.message, "gone");
}

TEST_P(RequestsOf, invokeMethod) {
    const Reply reply = broker.invokeMethod(path(className, named("x")), "Count",
                                            {{"Number", {CMPI_uint32, std::uint64_t{41}}}});
    EXPECT_TRUE(reply.ok()) << reply.message;
    EXPECT_THAT(reply.values, ElementsAre(Value{CMPI_uint32, std::uint64_t{42}}));
    EXPECT_EQ(reply.arguments, (NamedValues{{"Method", {CMPI_string, std::string("Count")}}}));
    EXPECT_EQ(broker.invokeMethod(path(className), "Count").message, "no Number");
}

// The provider's association names its arguments: CIM_Item "assocClass|resultClass|role|resultRole".
TEST_P(RequestsOf, associations) {
    const broker::AssociationFilter filter{"CIM_A", "CIM_R", "Here", "There"};
    Instance small = item("CIM_A|CIM_R|Here|There");
    small.properties.pop_back();
    EXPECT_THAT(broker.associators(path(className), filter, {{"Size"}}).instances, ElementsAre(small));
    EXPECT_THAT(broker.associatorNames(path(className), {.resultRole = "There"}).paths,
                ElementsAre(item("-|-|-|There").path));
    EXPECT_THAT(broker.references(path(className), filter).instances, ElementsAre(item("CIM_R|Here")));
    EXPECT_THAT(broker.referenceNames(path(className), {.role = "Here"}).paths,
                ElementsAre(item("-|Here").path));
}

TEST_F(Requests, everyProviderIsAskedForAssociations) {
    broker.loadProvider(paths::brokerTestProvider, "Test", {"CIM_Other"});
    EXPECT_EQ(broker.associatorNames(path("CIM_Item")).paths.size(), 2U);
    EXPECT_EQ(broker.associatorNames(path("CIM_Broken")).code, CMPI_RC_ERR_FAILED);
    Broker empty;
    EXPECT_EQ(empty.associatorNames(path("CIM_Item")).code, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(Requests, failureHasNoResults) {
    const Reply reply = broker.enumerateInstances(path("CIM_Broken"));
    EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(reply.message, "broken");
    EXPECT_TRUE(reply.instances.empty());
}

TEST_F(Requests, userIsTheContextsPrincipal) {
    const auto who = [&] {
        return toText(*find(broker.enumerateInstances(path("CIM_Who")).instances.at(0).properties, "Name"));
    };
    EXPECT_EQ(who(), "nobody");
    broker.setUser("admin");
    EXPECT_EQ(who(), "admin");
}

TEST_F(Requests, doneIsTheProvidersWord) {
    EXPECT_TRUE(broker.enumerateInstances(path("CIM_Item")).done);
    EXPECT_FALSE(broker.enumerateInstances(path("CIM_Relay")).done);
}

TEST_F(Requests, classesAreServedByTheFirstModuleThatNamesThem) {
    Broker narrow;
    narrow.loadProvider(paths::brokerTestProvider, "Test", {"CIM_Item"});
    EXPECT_TRUE(narrow.enumerateInstances(path("cim_item")).ok());
    const Reply reply = narrow.enumerateInstances(path("CIM_Broken"));
    EXPECT_EQ(reply.code, CMPI_RC_ERR_INVALID_CLASS);
    EXPECT_THAT(reply.message, HasSubstr("CIM_Broken"));
}

TEST_F(Requests, routerTakesTheProvidersPlace) {
    std::vector<broker::Request> requests;
    broker.setRouter([&](const broker::Request& request) {
        requests.push_back(request);
        return Reply{.code = CMPI_RC_ERR_ACCESS_DENIED, .message = "router"};
    });
    EXPECT_EQ(broker.invokeMethod(path("CIM_Item"), "Go").message, "router");
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].method, "Go");
}

TEST_F(Requests, loadErrorsSayWhatIsMissing) {
    const auto error = [&](const std::string& file, const std::string& name) -> std::string {
        try {
            broker.loadProvider(file, name);
        } catch (const broker::LoadError& failure) {
            return failure.what();
        }
        return {};
    };
    EXPECT_THAT(error("/nowhere/module.so", "Test"), HasSubstr("/nowhere/module.so"));
    EXPECT_THAT(error(paths::brokerTestProvider, "Other"), HasSubstr("Other_Create_InstanceMI"));
}

TEST_F(Requests, indicationsReachTheHandler) {
    std::vector<std::string> delivered;
    EXPECT_EQ(broker.subscribe("SELECT *", path("CIM_AlertIndication")).message,
              "nobody listens to indications");
    broker.setIndicationHandler([&](const std::string& nameSpace, const Instance& indication) {
        delivered.push_back(nameSpace + ' ' + indication.path.className + ' ' +
                            toText(*find(indication.properties, "Description")));
    });
    EXPECT_TRUE(broker.subscribe("SELECT *", path("CIM_AlertIndication")).ok());
    EXPECT_TRUE(broker.unsubscribe("SELECT *", path("CIM_AlertIndication")).ok());
    EXPECT_THAT(delivered, ElementsAre("root/interop CIM_AlertIndication begin SELECT *",
                                       "root/interop CIM_AlertIndication end SELECT *"));

    broker.setUser("guest");
    EXPECT_EQ(broker.subscribe("SELECT *", path("CIM_AlertIndication")).code, CMPI_RC_ERR_ACCESS_DENIED);
    broker.setUser("admin");
    broker.setIndicationHandler(
        [](const auto&, const auto&) { throw std::runtime_error("listener is gone"); });
    EXPECT_EQ(broker.subscribe("SELECT *", path("CIM_AlertIndication")).message, "listener is gone");
}

} // namespace
