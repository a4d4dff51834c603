// The event log of a BMC over RMCP+: this project beside the usual tools, and beside a bare loop of Get SEL
// Entry over one session.
//
//     log_tools [--json FILE] [ROUNDS]
#include "broker/broker.h"
#include "ipmi/command.h"
#include "ipmi_sim.h"
#include "provider_helper/record_log.h"
#include "support/contest.h"
#include "support/loop_process.h"
#include "support/udp_relay.h"

#include <cmpimacs.h>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

constexpr char about[] =
    "Reads the event log of a simulated BMC with this project and with other tools, process by process.";
constexpr std::size_t recordCount = 3000;
constexpr int sensorCount = 20;             // that the events are of
constexpr char enumeration[] = "enumerate"; // argument of the process that only does that

std::string records() {
    std::ostringstream commands;
    for (std::size_t i = 0; i < recordCount; ++i)
        commands << "sel_add 0x20 0x02 0 0 0 0 0x20 0x00 0x04 0x01 " << 1 + i / 2 % sensorCount
                 << (i % 2 == 0 ? " 0x01" : " 0x81") << " 0x59 0x7d 0x78\n";
    return commands.str();
}

void writeSettings(const bench::PrivateRoot& root, const ipmi::SessionSettings& settings) {
    std::ofstream(root.path() + "/conf/system_names.ini") << "[names]\nsp = Benchmark\n";
    IPMISessionInfo row{};
    const auto set = [](auto& field, const std::string& text) {
        std::snprintf(field, sizeof field, "%s", text.c_str());
    };
    set(row.address, settings.address);
    row.port = settings.port;
    set(row.userName, settings.userName);
    set(row.password, settings.password);
    set(row.cipherSuite, std::to_string(settings.cipherSuite));
    set(row.workaroundFlags, std::to_string(settings.workaroundFlags));
    SMASH_DB_HANDLE database = nullptr;
    if (smash_db_init(&database) != 0 || db_set_ipmi_session_info(database, &row) != 0)
        throw std::runtime_error(db_last_error());
    db_close(database);
}

void requireAll(std::size_t count) {
    if (count != recordCount)
        throw std::runtime_error(std::to_string(count) + " records were read");
}

int enumerate() {
    const broker::Broker broker;
    broker::Scope request(broker);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIResult* result = request.makeResult();
    PH_EI_LogEntry(broker.handle(), request.makeContext(),
                   request.make(broker::parseObjectPath("root/cimv2:CIM_LogEntry")), nullptr, result,
                   &status);
    requireAll(broker::toReply(result).instances.size());
    return 0;
}

int readBare(ipmi::Transport& bmc) {
    std::size_t count = 0;
    for (std::uint16_t next = 0; next != 0xFFFF; ++count) {
        const auto answer =
            ipmi::run(bmc, ipmi::command::getSelEntry,
                      {0, 0, static_cast<std::uint8_t>(next), static_cast<std::uint8_t>(next >> 8), 0, 0xFF});
        next = answer.reader().u16();
    }
    requireAll(count);
    return 0;
}

void run(const std::string& program, const bench::ContestOptions& options) {
    const bench::PrivateRoot root;
    const ph_test::IpmiSim simulator(ph_test::thresholdSensors(sensorCount), {}, records());
    ipmi::SessionSettings settings = simulator.settings();
    bench::UdpRelay relay(settings.port);
    settings.port = relay.port();
    writeSettings(root, settings);

    const std::string port = std::to_string(settings.port);
    const std::string loop = bench::loopCommand(program, settings);
    // ipmi-sel keeps SDRs and would not read them again: each run has a folder of its own.
    const std::string cache = root.path() + "/ipmi-sel";
    const std::string ipmiSel = "rm -rf " + cache + " && mkdir " + cache +
                                " && ipmi-sel -D LAN_2_0 -h 127.0.0.1:" + port + " -u " + settings.userName +
                                " -p " + settings.password +
                                " -l admin -I 3 -W opensesspriv --sdr-cache-directory=" + cache;
    const std::string ipmitool =
        "ipmitool -I lanplus -C 3 -H 127.0.0.1 -p " + port + " -U " + settings.userName + " -E sel list";

    const auto messages = [&] { return relay.requests(); };
    const auto command = [](const std::string& text) { return [text] { bench::runCommand(text); }; };
    std::vector<bench::Contestant> contestants = {
#ifdef PHCTL
        {"phctl ei CIM_LogEntry", command(std::string(PHCTL) + " ei CIM_LogEntry"), messages},
#endif
        {"PH_EI_LogEntry", command(program + ' ' + enumeration), messages},
        {"ipmi-sel, first run", command(ipmiSel), messages},
        {"ipmitool sel list", command(ipmitool), messages},
        {"bare loop of Get SEL Entry", command(loop), messages}};
    bench::report({bench::contest("log", std::to_string(recordCount) + " SEL records of ipmi_sim over RMCP+",
                                  contestants, options.rounds)},
                  options);
}

} // namespace

int main(int argc, char** argv) try {
    if (const auto bmc = bench::openLoop(argc, argv))
        return readBare(*bmc);
    if (argc == 2 && std::string(argv[1]) == enumeration)
        return enumerate();
    bench::ContestOptions options;
    if (const auto status = bench::readOptions(argc, argv, about, options))
        return *status;
    run(argv[0], options);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "log_tools: %s\n", error.what());
    return 1;
}
