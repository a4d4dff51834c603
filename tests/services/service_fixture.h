// A BMC with services, and requests to CIM_ProtocolService.
#pragma once

#include "class_requests.h"
#include "managed_bmc.h"
#include "provider_helper/jobs.h"
#include "provider_helper/services.h"
#include "slept.h"

#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>

class ServiceFixture : public ManagedBmc {
protected:
    ServiceFixture() : ManagedBmc("{}") {
        slept.clear();
        whileSleeping = nullptr;
        for (const char* folder : {"/usr/bin", "/usr/local/bin"})
            std::filesystem::create_directories(sysroot.place(folder));
        command("/usr/bin/ps", "cat \"$PH_SYSROOT/processes\" 2>/dev/null");
        command("/usr/bin/killall", "");
        command("/usr/local/bin/smashclpd", "echo ' 100 ?   S  0:00 smashclpd' >\"$PH_SYSROOT/processes\"");
    }

    // A stand-in that notes how it was called and does what `script` says.
    void command(const char* place, const std::string& script) const {
        const auto file = sysroot.place(place);
        std::ofstream(file) << "#!/bin/sh\necho \"${0##*/}${*:+ $*}\" >>\"$PH_SYSROOT/calls\"\n"
                            << script << '\n';
        std::filesystem::permissions(file, std::filesystem::perms(0755));
    }
    // How stand-ins were called since the last time, `ps` left out.
    std::vector<std::string> calls() const {
        std::vector<std::string> lines;
        std::ifstream file(sysroot.place("/calls"));
        for (std::string line; std::getline(file, line);)
            if (line != "ps ax")
                lines.push_back(line);
        std::filesystem::remove(sysroot.place("/calls"));
        return lines;
    }
    void runs(const char* processes) const { write("/processes", processes); }

    broker::ObjectPath path(const std::string& name) const {
        return services.path({{"SystemCreationClassName", text("CIM_SPComputerSystem")},
                              {"CreationClassName", text("CIM_ProtocolService")},
                              {"SystemName", text("controller")},
                              {"Name", text(name)}});
    }
    broker::Reply request(const char* service, std::uint16_t state) const {
        return services.invoke(path(service), "RequestStateChange", {{"RequestedState", number(state)}});
    }

    // The newest job, by its properties.
    broker::Instance lastJob() {
        const auto jobs = ClassRequests(broker, PH_CLASS_FUNCTIONS(ConcreteJob)).enumerate().instances;
        EXPECT_FALSE(jobs.empty());
        return jobs.empty() ? broker::Instance{} : jobs.back();
    }

    ClassRequests services{broker, PH_CLASS_FUNCTIONS(ProtocolService)};
};
