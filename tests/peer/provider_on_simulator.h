// The provider module in the broker on a simulated BMC of one sensor, which all tests of a group share.
#pragma once

#include "broker/broker.h"
#include "ipmi_sim.h"
#include "simulator_session.h"

#include <gmock/gmock.h>
#include <sysroot_fixture.h>

class ProviderOnSimulator : public SysrootFixture {
protected:
    static void SetUpTestSuite() { bmc = std::make_unique<ph_test::IpmiSim>(ph_test::thresholdSensors(1)); }
    static void TearDownTestSuite() { bmc.reset(); }

    ProviderOnSimulator() {
        ph_test::storeSession(bmc->settings());
        write("/conf/system_names.ini", "[names]\nsp = sim\n");
        broker.loadProvider(PROVIDERS, "ProviderHelperProviders");
    }

    static std::string ipmitool(const std::string& arguments) { return bmc->ipmitool(arguments); }
    static broker::Value text(const std::string& value) { return {CMPI_string, value}; }

    static inline std::unique_ptr<ph_test::IpmiSim> bmc;
    broker::Broker broker;
};
