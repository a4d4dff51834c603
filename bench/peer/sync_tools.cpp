// The sensor data records of a BMC over RMCP+: `phctl sync`, which also reads the inventory and fills the database,
// beside what other tools do to have them in a file.
//
//     sync_tools [--json FILE] [ROUNDS]
#include "ipmi_sim.h"
#include "support/contest.h"
#include "support/udp_relay.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace {

constexpr char about[] =
    "Reads the sensor data records of a simulated BMC with this project and with other tools.";
constexpr int recordCount = 1000;
constexpr int sensorNumbers = 250; // that the records share

// The records of sensors that the simulator has already, under other names.
std::string moreRecords() {
    std::string commands;
    for (int first = sensorNumbers; first < recordCount; first += sensorNumbers) {
        auto sensors = ph_test::thresholdSensors(std::min(sensorNumbers, recordCount - first));
        for (ph_test::SimSensor& sensor : sensors)
            sensor.name = "Temp " + std::to_string(first + sensor.number);
        std::istringstream lines(ph_test::simCommands(sensors));
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("main_sdr_add"))
                commands += line + '\n';
    }
    return commands;
}

void run(const bench::ContestOptions& options) {
    const bench::PrivateRoot root;
    const ph_test::IpmiSim simulator(ph_test::thresholdSensors(sensorNumbers), {}, moreRecords());
    const ipmi::SessionSettings settings = simulator.settings();
    bench::UdpRelay relay(settings.port);
    setenv("IPMI_PASSWORD", settings.password.c_str(), 1); // that ipmitool -E reads, too

    const std::string port = std::to_string(relay.port());
    const std::string sync = std::string(PHCTL) + " sync --lan 127.0.0.1:" + port + " --user " +
                             settings.userName + " --password-env IPMI_PASSWORD --workaround " +
                             std::to_string(settings.workaroundFlags);
    const std::string cache = root.path() + "/ipmi-sensors";
    const std::string ipmiSensors = "rm -rf " + cache + " && mkdir " + cache +
                                    " && ipmi-sensors -D LAN_2_0 -h 127.0.0.1:" + port + " -u " +
                                    settings.userName + " -p " + settings.password +
                                    " -l admin -I 3 -W opensesspriv -r 1 --sdr-cache-directory=" + cache;
    const std::string ipmitool = "ipmitool -I lanplus -C 3 -H 127.0.0.1 -p " + port + " -U " +
                                 settings.userName + " -E sdr dump " + root.path() + "/dump";

    const auto messages = [&] { return relay.requests(); };
    const auto command = [](const std::string& text) { return [text] { bench::runCommand(text); }; };
    bench::report(
        {bench::contest("sync", std::to_string(recordCount) + " sensor data records of ipmi_sim over RMCP+",
                        {{"phctl sync", command(sync), messages},
                         {"ipmi-sensors without cache, one sensor", command(ipmiSensors), messages},
                         {"ipmitool sdr dump", command(ipmitool), messages}},
                        options.rounds)},
        options);
}

} // namespace

int main(int argc, char** argv) {
    return bench::contestMain(argc, argv, about, run);
}
