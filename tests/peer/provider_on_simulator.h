// The provider module in the broker on a simulated BMC of one sensor. A script that a test lays at /chassis stands
// for its chassis.
#pragma once

#include "bmc_session.h"
#include "cim_values.h"
#include "ipmi_sim.h"
#include "paths.h"

#include <gmock/gmock.h>
#include <sysroot_fixture.h>

class ProviderOnSimulator : public SysrootFixture {
protected:
    explicit ProviderOnSimulator(const std::string& moreCommands = {}, std::string moreConfiguration = {})
        : bmc(ph_test::thresholdSensors(1), sysroot.place("/chassis").string(), moreCommands,
              std::move(moreConfiguration)) {
        storeSession(bmc.settings());
        // Associations look the library up there.
        std::filesystem::create_symlink(paths::library, sysroot.place("/usr/local/lib/libProviderHelper.so"));
        write("/conf/system_names.ini", "[names]\nsp = sim\n");
        broker.loadProvider(paths::providerModule, "ProviderHelperProviders");
    }

    std::string ipmitool(const std::string& arguments) const { return bmc.ipmitool(arguments); }

    std::vector<broker::Instance> list(const broker::ObjectPath& classPath) {
        const broker::Reply reply = broker.enumerateInstances(classPath);
        EXPECT_TRUE(reply.ok()) << reply.message;
        return reply.instances;
    }
    broker::Instance only(const std::string& className) {
        const auto all = list(path(className));
        EXPECT_EQ(all.size(), 1U) << className;
        return all.at(0);
    }
    std::string get(const std::string& className, const char* property) {
        return textOf(only(className), property);
    }

    ph_test::IpmiSim bmc;
    broker::Broker broker;
};
