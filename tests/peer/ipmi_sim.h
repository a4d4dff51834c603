// A running ipmi_sim(1), OpenIPMI's BMC simulator, on a free loopback port with files of its own.
#pragma once

#include "ipmi/transport.h"
#include "ipmi_sim_model.h"

#include <filesystem>
#include <sys/types.h>

namespace ph_test {

class IpmiSim {
public:
    // Starts the simulator and waits until it answers. Throws std::runtime_error with its log when it does
    // not. `chassisControl` is the command that stands for the chassis: "get power" and "set power 1" are put
    // behind it; without one the simulator has none. `moreCommands` of ipmi_sim(1) end its set-up, and
    // `moreConfiguration` is of ipmi_lan(5).
    explicit IpmiSim(const std::vector<SimSensor>& sensors, std::string chassisControl = {},
                     const std::string& moreCommands = {}, std::string moreConfiguration = {});
    ~IpmiSim();
    IpmiSim(const IpmiSim&) = delete;
    IpmiSim& operator=(const IpmiSim&) = delete;

    // Address, administrator and workaround flags of this simulator.
    ipmi::SessionSettings settings() const;

    // What `ipmitool <arguments>` prints, asking this simulator.
    std::string ipmitool(const std::string& arguments) const;

    // Stops answering, as a hung BMC does, and answers again.
    void pause() const;
    void resume() const;

private:
    bool start();
    bool answers() const;
    void stop();

    std::filesystem::path directory_;
    std::string chassisControl_;
    std::string moreConfiguration_;
    std::uint16_t port_ = 0;
    pid_t process_ = -1;
};

} // namespace ph_test
