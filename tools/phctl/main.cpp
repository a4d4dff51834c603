// phctl: asks the providers through the embedded broker, and operates the virtual BMC.
#include "commands.h"
#include "configurations.h"
#include "database.h"
#include "errors.h"
#include "session_hints.h"
#include "text_layout.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <span>

namespace phctl {
namespace {

int run(int argc, char** argv) {
    CommandLine line("phctl", "Asks the CIM providers of a BMC, and operates the virtual BMC.",
                     "phctl " PH_VERSION);
    const Command program = line.program();
    program.footer(
        "PH_SYSROOT names a folder that stands for the machine's root.\n"
        "Several BMCs have a configuration each, which `--bmc NAME` chooses, before or after the command.\n"
        "Exit status: 0 done, 1 refused or failed, 2 wrong usage. With --json errors and warnings are "
        "objects, too, one a "
        "line of\nstderr: {\"error\": \"…\", \"status\": 1}, {\"warning\": \"…\"}.\n\n"
        "Examples:\n"
        "  phctl bmc create sample-server && phctl sync\n"
        "  phctl ei CIM_NumericSensor --properties ElementName,CurrentReading,BaseUnits,CurrentState");
    program.requireSubcommand();
    std::optional<std::string> bmc;
    program.option("--bmc", bmc,
                   "Name of a configuration (`phctl bmcs`), whose folder takes the place of PH_SYSROOT");
    addInstanceCommands(program);
    addAssociationCommands(program);
    addMethodCommand(program);
    addClassesCommand(program);
    addMonitorCommand(program);
    addSensorsCommand(program);
    addMetricsCommand(program);
    addServeCommand(program);
    addSyncCommand(program);
    addCheckPlatformCommand(program);
    addEventLogCommand(program);
    addPowerCommand(program);
    addFruCommand(program);
    addBmcsCommand(program);
    addBmcCommand(program);
    // Known before the command line is understood: it may be wrong.
    if (std::ranges::count(std::span(argv, static_cast<std::size_t>(argc)), std::string_view("--json")) > 0)
        complainInJson();
    try {
        if (!line.parse(argc, argv))
            return done;
        const std::string command = line.commandName();
        const bool tellsWhereABmcIs = command == "phctl sync" || command == "phctl bmc create";
        const Configuration configuration(bmc, tellsWhereABmcIs);
        checkSysroot();
        const int status = line.run();
        if (!std::cout.flush())
            return complain("cannot write the output", failed);
        return status;
    } catch (const UsageError& error) {
        return complain(error.what(), wrongUsage);
    }
}

} // namespace
} // namespace phctl

int main(int argc, char** argv) {
    try {
        phctl::bufferOutput();
        phctl::useUtf8();
        return phctl::run(argc, argv);
    } catch (const std::exception& error) {
        return phctl::complain(phctl::explain(error), phctl::failed);
    }
}
