// The commands: each function adds some to the program, and what they do to `chosen` when they are called.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace phctl {

// Runs after the whole command line is understood; returns the exit status.
using Chosen = std::function<int()>;

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

} // namespace phctl
