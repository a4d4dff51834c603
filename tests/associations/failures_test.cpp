// Whatever fails: the answer is right or a failure, and nothing is left behind.
#include "association_fixture.h"
#include "associations/profiles.h"
#include "paths.h"
#include "sampling.h"

#include <cmpimacs.h>
#include <dlfcn.h>

namespace {

using broker::ObjectPath;
using broker::Reply;
using testing::HasSubstr;

using Failures = Associations;

// Paths and properties as text, for messages that can be read.
std::vector<std::string> described(const Reply& reply) {
    std::vector<std::string> all = texts(reply.paths);
    for (const auto& instance : reply.instances) {
        all.push_back(toText(instance.path));
        for (const auto& [name, value] : instance.properties)
            all.push_back(name + '=' + toText(value));
    }
    return all;
}

TEST_F(Failures, ofTheBrokerNeverChangeAnAnswer) {
    const ObjectPath endpoint = element("CIM_IPProtocolEndpoint", "eth0-4");
    const ObjectPath setting = element("CIM_IPAssignmentSettingData", "Static");
    const ObjectPath one =
        broker.referenceNames(endpoint, {.resultClass = "CIM_ElementSettingData"}).paths.at(0);
    const std::function<Reply()> requests[] = {
        [&] {
            return broker.associators(setting, {.assocClass = "CIM_OrderedComponent"}, {{"ElementName"}});
        },
        [&] { return broker.references(endpoint, {.resultClass = "CIM_ElementSettingData"}); },
        [&] { return broker.associatorNames(profile("DSP1004")); },
        [&] { return broker.enumerateInstances(path("CIM_OrderedComponent")); },
        [&] { return broker.enumerateInstances(path("CIM_RegisteredProfile", {}, "root/interop")); },
        [&] { return broker.getInstance(one); },
    };
    unsigned failed = 0;
    for (const auto& request : requests) {
        const Reply expected = request();
        ASSERT_TRUE(expected.ok()) << expected.message;
        ASSERT_TRUE(!expected.instances.empty() || !expected.paths.empty());
        for (const std::string& name : broker::Broker::callNames()) {
            // The library takes a namespace whose text cannot be read for an empty one.
            if (name == "getCharPtr")
                continue;
            broker.resetCalls();
            request();
            // The last calls of many are like those before.
            const unsigned calls = std::min(broker.calls(name), 40U);
            for (unsigned nth = 1; nth <= calls; nth += sampling()) {
                broker.resetCalls();
                broker.failCall(name, nth);
                const Reply reply = request();
                broker.failCall(name, 0);
                failed += reply.ok() ? 0 : 1;
                if (reply.ok()) {
                    EXPECT_EQ(described(reply), described(expected)) << name << ' ' << nth;
                }
                ASSERT_EQ(broker.liveObjects(), 0U) << name << ' ' << nth;
            }
        }
    }
    EXPECT_GT(failed, 100U / sampling());
}

// Who cannot be read is not the same as who is not there.
TEST_F(Failures, ofTheBmcAreToldAndNotAnEmptyAnswer) {
    const ObjectPath host = element("CIM_HostComputerSystem");
    const auto aside = stateFile().string() + ".aside";
    std::filesystem::rename(stateFile(), aside);
    for (const Reply& reply : {broker.associators(host), broker.referenceNames(host),
                               broker.enumerateInstances(path("CIM_SystemComponent"))}) {
        EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED);
        EXPECT_EQ(reply.message, "The instances of CIM_HostComputerSystem cannot be read");
    }
    std::filesystem::rename(aside, stateFile());
    EXPECT_TRUE(broker.associatorNames(host).ok());
}

// A broker frees at a request's end what a provider forgets. A long answer must not wait for that.
TEST_F(Failures, andAnswersLeaveNoObjectsWithTheRequest) {
    using Create = CMPIAssociationMI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
    const ObjectPath endpoint = element("CIM_SPComputerSystem");
    void* module = dlopen(paths::providerModule, RTLD_NOW);
    ASSERT_NE(module, nullptr) << dlerror();
    const auto create = reinterpret_cast<Create>(dlsym(module, "ProviderHelper_Create_AssociationMI"));
    ASSERT_NE(create, nullptr);
    {
        broker::Scope scope(broker);
        CMPIAssociationMI* mi = create(broker.handle(), scope.makeContext(), nullptr);
        ASSERT_NE(mi, nullptr);
        const auto left = [&](const char* resultClass, std::size_t& results) {
            CMPIContext* context = scope.makeContext();
            CMPIResult* result = scope.makeResult();
            CMPIObjectPath* ref = scope.make(profile("DSP1004"));
            const std::size_t before = broker.liveObjects();
            EXPECT_EQ(mi->ft->references(mi, context, result, ref, resultClass, nullptr, nullptr).rc,
                      CMPI_RC_OK);
            const std::size_t after = broker.liveObjects();
            results = broker::toReply(result).instances.size();
            CMRelease(ref); // with the texts that it was asked for
            return after - before;
        };
        std::size_t few = 0, many = 0;
        const std::size_t withFew = left("CIM_NoSuchClass", few);
        const std::size_t withMany = left("CIM_ReferencedProfile", many);
        EXPECT_EQ(few, 0U);
        EXPECT_GE(many, 4U);
        // A text of the request's path is read per class at most, and one of each profile.
        EXPECT_LE(withMany, withFew + 2 + associations::profiles().size());
        mi->ft->cleanup(mi, nullptr, 1);
    }
    dlclose(module);
}

} // namespace
