// The virtual BMC that a command operates.
#pragma once

#include "command_line.h"
#include "virtual-bmc/virtual_bmc.h"

#include <filesystem>
#include <string>

namespace phctl {

// Adds --state, the name of a state file, to a command.
void addMachineOption(Command command, std::string& name);

// Returns the state file of this name; for an empty name, that of the machine that requests reach. Throws Failure
// when that is no virtual one.
std::filesystem::path machineFile(const std::string& name);
// Throws Failure when there is no such machine.
vbmc::VirtualBmc openMachine(const std::string& name);

} // namespace phctl
