// The sensors of a BMC over RMCP+ in a process that runs all the time, as an object manager's does: PH_EI_NumericSensor
// with its session and database, beside a session and a bare loop of Get Sensor Reading.
//
//     sensor_calls [--json FILE] [ROUNDS]
#include "broker/broker.h"
#include "ipmi/command.h"
#include "ipmi_sim.h"
#include "provider_helper/sensors.h"
#include "support/contest.h"
#include "support/counted_instances.h"
#include "support/udp_relay.h"

#include <cstdlib>

namespace {

constexpr char about[] =
    "Reads the sensors of a simulated BMC in this process, by the library and by a bare loop.";
constexpr int sensorCount = 180;

void readAll(ipmi::Transport& bmc) {
    for (int number = 1; number <= sensorCount; ++number)
        ipmi::run(bmc, ipmi::command::getSensorReading, {static_cast<std::uint8_t>(number)});
}

void enumerate(const broker::Broker& broker) {
    if (bench::countInstances(broker, "CIM_NumericSensor", PH_EI_NumericSensor) != sensorCount)
        throw std::runtime_error("not every sensor was read");
}

void run(const bench::ContestOptions& options) {
    const bench::PrivateRoot root;
    const ph_test::IpmiSim simulator(ph_test::thresholdSensors(sensorCount));
    ipmi::SessionSettings settings = simulator.settings();
    bench::UdpRelay relay(settings.port);
    settings.port = relay.port();
    setenv("IPMI_PASSWORD", settings.password.c_str(), 1);
    bench::runCommand(std::string(PHCTL) + " sync --lan 127.0.0.1:" + std::to_string(settings.port) +
                      " --user " + settings.userName + " --password-env IPMI_PASSWORD --workaround " +
                      std::to_string(settings.workaroundFlags));

    const broker::Broker broker;
    const auto messages = [&] { return relay.requests(); };
    bench::report({bench::contest("sensors-in-process",
                                  std::to_string(sensorCount) +
                                      " numeric sensors of ipmi_sim over RMCP+, in a process that has served",
                                  {{"PH_EI_NumericSensor, session and database included",
                                    [&] { enumerate(broker); }, messages},
                                   {"session and bare loop of Get Sensor Reading",
                                    [&] { readAll(*ipmi::openTransport(settings)); }, messages}},
                                  options.rounds)},
                  options);
}

} // namespace

int main(int argc, char** argv) {
    return bench::contestMain(argc, argv, about, run);
}
