// All numeric sensors of a BMC over RMCP+: this project beside the usual tools, and beside a bare loop of the
// same number of Get Sensor Reading exchanges over one session; each a process of its own.
//
//     sensor_tools [--json FILE] [ROUNDS]
#include "ipmi/command.h"
#include "ipmi_sim.h"
#include "support/contest.h"
#include "support/loop_process.h"
#include "support/udp_relay.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr char about[] = "Reads the sensors of a simulated BMC with this project and with other tools.";
constexpr int sensorCount = 180;

int runLoop(ipmi::Transport& bmc) {
    for (int number = 1; number <= sensorCount; ++number)
        ipmi::run(bmc, ipmi::command::getSensorReading, {static_cast<std::uint8_t>(number)});
    return 0;
}

void run(const char* program, const bench::ContestOptions& options) {
    const bench::PrivateRoot root;
    const ph_test::IpmiSim simulator(ph_test::thresholdSensors(sensorCount));
    ipmi::SessionSettings settings = simulator.settings();
    bench::UdpRelay relay(settings.port);
    settings.port = relay.port();

    const std::string port = std::to_string(settings.port);
    const std::string phctl = PHCTL;
    const std::string loop = bench::loopCommand(program, settings);
    bench::runCommand(phctl + " sync --lan 127.0.0.1:" + port + " --user " + settings.userName +
                      " --password-env IPMI_PASSWORD --workaround " +
                      std::to_string(settings.workaroundFlags));
    // ipmi-sensors keeps the SDRs where it is told: reading them is not part of what is compared.
    const std::string ipmiSensors = "ipmi-sensors -D LAN_2_0 -h 127.0.0.1:" + port + " -u " +
                                    settings.userName + " -p " + settings.password +
                                    " -l admin -I 3 -W opensesspriv --sdr-cache-directory=" + root.path();
    const std::string ipmitool =
        "ipmitool -I lanplus -C 3 -H 127.0.0.1 -p " + port + " -U " + settings.userName + " -E sdr list";

    const auto messages = [&] { return relay.requests(); };
    const auto command = [](const std::string& text) { return [text] { bench::runCommand(text); }; };
    bench::runCommand(ipmiSensors);
    const std::vector<bench::Contestant> contestants = {
        {"phctl ei CIM_NumericSensor", command(phctl + " ei CIM_NumericSensor"), messages},
        {"ipmi-sensors, warm SDR cache", command(ipmiSensors), messages},
        {"ipmitool sdr list", command(ipmitool), messages},
        {"bare loop of Get Sensor Reading", command(loop), messages}};
    bench::report(
        {bench::contest("sensors", std::to_string(sensorCount) + " numeric sensors of ipmi_sim over RMCP+",
                        contestants, options.rounds)},
        options);
}

} // namespace

int main(int argc, char** argv) try {
    if (const auto bmc = bench::openLoop(argc, argv))
        return runLoop(*bmc);
    bench::ContestOptions options;
    if (const auto status = bench::readOptions(argc, argv, about, options))
        return *status;
    run(argv[0], options);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "sensor_tools: %s\n", error.what());
    return 1;
}
