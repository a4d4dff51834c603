// Commands of network function 30h, which only a BMC of docs/oem-commands.md is asked: with others the same
// numbers may do anything.
#pragma once

#include "hooks/session.h"
#include "ipmi/command.h"

namespace hooks {

// Returns nothing where the BMC does not have the command. Throws what ipmi::run does.
std::optional<ipmi::Answer> askOem(Session& bmc, ipmi::CommandCode command,
                                   std::span<const std::uint8_t> request);
inline std::optional<ipmi::Answer> askOem(Session& bmc, ipmi::CommandCode command,
                                          std::initializer_list<std::uint8_t> request = {}) {
    return askOem(bmc, command, std::span(request.begin(), request.size()));
}

// Does the same for a command that is needed: throws std::runtime_error where the BMC does not have it.
ipmi::Answer runOem(Session& bmc, ipmi::CommandCode command, std::span<const std::uint8_t> request);
inline ipmi::Answer runOem(Session& bmc, ipmi::CommandCode command,
                           std::initializer_list<std::uint8_t> request = {}) {
    return runOem(bmc, command, std::span(request.begin(), request.size()));
}

} // namespace hooks
