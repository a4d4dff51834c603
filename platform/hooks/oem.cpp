#include "hooks/oem.h"

#include <stdexcept>

namespace hooks {

std::optional<ipmi::Answer> askOem(Session& bmc, ipmi::CommandCode command,
                                   std::span<const std::uint8_t> request) {
    if (!bmc.hasOemCommands())
        return std::nullopt;
    const auto answer = ipmi::ask(bmc, command, request);
    if (answer.code() == ipmi::completion::invalidCommand)
        return std::nullopt;
    if (answer.code() != ipmi::completion::success)
        throw ipmi::CompletionCodeError(command, answer.code());
    return answer;
}

ipmi::Answer runOem(Session& bmc, ipmi::CommandCode command, std::span<const std::uint8_t> request) {
    if (const auto answer = askOem(bmc, command, request))
        return *answer;
    throw std::runtime_error("the BMC has no OEM command " + std::to_string(command.number) + " of ours");
}

} // namespace hooks
