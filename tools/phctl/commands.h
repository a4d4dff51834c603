// The commands: each function adds some to the program, and what they do to `chosen` when they are called.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <utility>

namespace phctl {

// Runs after the whole command line is understood; returns the exit status.
using Chosen = std::function<int()>;

// Adds a command. `addOptions` is called once the command line has named it: to set up the options of all
// commands takes longer than most commands do.
inline CLI::App* addCommand(CLI::App& app, Chosen& chosen, std::string name, std::string description,
                            std::function<void(CLI::App* command, Chosen& chosen)> addOptions) {
    CLI::App* command = app.add_subcommand(std::move(name), std::move(description));
    return command->preparse_callback(
        [command, &chosen, addOptions = std::move(addOptions)](std::size_t) { addOptions(command, chosen); });
}

void addInstanceCommands(CLI::App& app, Chosen& chosen);
void addAssociationCommands(CLI::App& app, Chosen& chosen);
void addMethodCommand(CLI::App& app, Chosen& chosen);
void addClassesCommand(CLI::App& app, Chosen& chosen);
void addMonitorCommand(CLI::App& app, Chosen& chosen);
void addSensorsCommand(CLI::App& app, Chosen& chosen);
void addMetricsCommand(CLI::App& app, Chosen& chosen);
void addServeCommand(CLI::App& app, Chosen& chosen);
void addSyncCommand(CLI::App& app, Chosen& chosen);
void addCheckPlatformCommand(CLI::App& app, Chosen& chosen);
void addEventLogCommand(CLI::App& app, Chosen& chosen);
void addPowerCommand(CLI::App& app, Chosen& chosen);
void addFruCommand(CLI::App& app, Chosen& chosen);
void addBmcsCommand(CLI::App& app, Chosen& chosen);
void addBmcCommand(CLI::App& app, Chosen& chosen);
// These are parts of it.
void addSelCommand(CLI::App& bmc, Chosen& chosen);
void addAlertCommands(CLI::App& bmc, Chosen& chosen);
void addLoginCommand(CLI::App& bmc, Chosen& chosen);
void addEventCommand(CLI::App& bmc, Chosen& chosen);
void addImageCommand(CLI::App& bmc, Chosen& chosen);

} // namespace phctl
