// Fans and power supplies of a virtual BMC, by their sensors.
#pragma once

#include "managed_bmc.h"
#include "provider_helper/devices.h"

class DeviceFixture : public ManagedBmc {
protected:
    // Makes another machine, with these sensors and entity associations and FRUs, and reads it into the database.
    void serve(const std::string& sensors, const std::string& associations = "[]",
               const std::string& frus = "[]") {
        createBmc(R"({"sensors": )" + sensors + R"(, "sdrRepository": {"associations": )" + associations +
                  R"(}, "frus": )" + frus + "}");
        synchronise(stateFile);
        platformCalls.clear();
    }
    // Gives these properties of each instance as "a b c".
    static std::vector<std::string> rows(const ClassRequests& requests,
                                         std::initializer_list<std::string_view> properties) {
        std::vector<std::string> all;
        const broker::Reply reply = requests.enumerate();
        EXPECT_TRUE(reply.ok()) << reply.message;
        for (const broker::Instance& instance : reply.instances) {
            std::string& row = all.emplace_back();
            for (const std::string_view property : properties)
                row += (row.empty() ? "" : " ") + textOf(instance, property);
        }
        return all;
    }
    static std::vector<std::string> states(const ClassRequests& requests) {
        return rows(requests,
                    {"DeviceID", "Availability", "EnabledState", "HealthState", "OperationalStatus"});
    }

    const ClassRequests fans{broker, PH_CLASS_FUNCTIONS(Fan)};
    const ClassRequests supplies{broker, PH_CLASS_FUNCTIONS(PowerSupply)};
    const ClassRequests sets{broker, PH_CLASS_FUNCTIONS(RedundancySet)};
};
