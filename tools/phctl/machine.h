// The virtual BMC that a command operates.
#pragma once

#include "virtual-bmc/virtual_bmc.h"

#include <filesystem>
#include <string>

namespace phctl {

// The state file of this name, or for an empty one that of the machine that requests reach.
std::filesystem::path machineFile(const std::string& name);
// Throws Failure when there is no such machine.
vbmc::VirtualBmc openMachine(const std::string& name);

} // namespace phctl
