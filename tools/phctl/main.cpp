// phctl: asks the providers through the embedded broker, and operates the virtual BMC.
#include "commands.h"
#include "configurations.h"
#include "database.h"
#include "errors.h"
#include "names.h"
#include "session_hints.h"
#include "text_layout.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <span>

namespace phctl {
namespace {

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
        for (const std::string& alias : command->get_aliases())
            names.push_back(alias);
    }
    return names;
}

// The innermost command that was understood, and its names from the program on.
const CLI::App* innermost(const CLI::App& app, std::string& name) {
    const CLI::App* command = &app;
    name = app.get_name();
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        name += ' ' + command->get_name();
    }
    return command;
}

// The commands that tell where a BMC is.
bool makesConfigurations(const CLI::App& app) {
    std::string name;
    innermost(app, name);
    return name == "phctl sync" || name == "phctl bmc create";
}

int explain(const CLI::App& app, const CLI::ParseError& error) {
    std::string name;
    const CLI::App* command = innermost(app, name);
    const auto candidates = commandNames(*command);
    const auto rest = app.remaining(true);
    if (!candidates.empty() && !rest.empty() && !rest.front().starts_with('-'))
        return complain("there is no command " + rest.front() + didYouMean(rest.front(), candidates) + " (" +
                            name + " --help)",
                        wrongUsage);
    return complain(std::string(error.what()) + " (" + name + " --help)", wrongUsage);
}

int run(int argc, char** argv) {
    CLI::App app("Asks the CIM providers of a BMC, and operates the virtual BMC.", "phctl");
    app.footer(
        "PH_SYSROOT names a folder that stands for the machine's root.\n"
        "Several BMCs have a configuration each, which `--bmc NAME` chooses, before or after the command.\n"
        "Exit status: 0 done, 1 refused or failed, 2 wrong usage. With --json errors and warnings are "
        "objects, too, one a "
        "line of\nstderr: {\"error\": \"…\", \"status\": 1}, {\"warning\": \"…\"}.\n\n"
        "Examples:\n"
        "  phctl bmc create sample-server && phctl sync\n"
        "  phctl ei CIM_NumericSensor --properties ElementName,CurrentReading,BaseUnits,CurrentState");
    app.set_version_flag("--version", "phctl " PH_VERSION);
    app.require_subcommand(1);
    app.fallthrough(); // its options may stand behind a command
    std::optional<std::string> bmc;
    app.add_option("--bmc", bmc,
                   "Name of a configuration (`phctl bmcs`), whose folder takes the place of PH_SYSROOT");
    Chosen chosen;
    addInstanceCommands(app, chosen);
    addAssociationCommands(app, chosen);
    addMethodCommand(app, chosen);
    addClassesCommand(app, chosen);
    addMonitorCommand(app, chosen);
    addSensorsCommand(app, chosen);
    addMetricsCommand(app, chosen);
    addServeCommand(app, chosen);
    addSyncCommand(app, chosen);
    addCheckPlatformCommand(app, chosen);
    addEventLogCommand(app, chosen);
    addPowerCommand(app, chosen);
    addFruCommand(app, chosen);
    addBmcsCommand(app, chosen);
    addBmcCommand(app, chosen);
    // Known before the command line is understood: it may be wrong.
    if (std::ranges::count(std::span(argv, static_cast<std::size_t>(argc)), std::string_view("--json")) > 0)
        complainInJson();
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& help) { // --help, --version
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return explain(app, error);
    }
    try {
        const Configuration configuration(bmc, makesConfigurations(app));
        checkSysroot();
        const int status = chosen();
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
