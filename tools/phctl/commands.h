// The commands: each function adds some to the program.
#pragma once

#include "command_line.h"

namespace phctl {

void addInstanceCommands(Command program);
void addAssociationCommands(Command program);
void addMethodCommand(Command program);
void addClassesCommand(Command program);
void addMonitorCommand(Command program);
void addSensorsCommand(Command program);
void addMetricsCommand(Command program);
void addServeCommand(Command program);
void addSyncCommand(Command program);
void addCheckPlatformCommand(Command program);
void addEventLogCommand(Command program);
void addPowerCommand(Command program);
void addFruCommand(Command program);
void addBmcsCommand(Command program);
void addBmcCommand(Command program);
// These are parts of it.
void addSelCommand(Command bmc);
void addAlertCommands(Command bmc);
void addLoginCommand(Command bmc);
void addEventCommand(Command bmc);
void addImageCommand(Command bmc);

} // namespace phctl
