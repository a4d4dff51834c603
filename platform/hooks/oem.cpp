#include "hooks/oem.h"

#include <stdexcept>

namespace hooks {

std::optional<ipmi::Answer> askOem(Session& bmc, std::uint8_t command,
                                   std::span<const std::uint8_t> request) {
    if (!bmc.hasOemCommands())
        return std::nullopt;
    const auto answer = ipmi::ask(bmc, ipmi::netFn::oem, command, request);
    if (answer.code() == ipmi::completion::invalidCommand)
        return std::nullopt;
    if (answer.code() != ipmi::completion::success)
        throw ipmi::CompletionCodeError(ipmi::netFn::oem, command, answer.code());
    return answer;
}

ipmi::Answer runOem(Session& bmc, std::uint8_t command, std::span<const std::uint8_t> request) {
    if (const auto answer = askOem(bmc, command, request))
        return *answer;
    throw std::runtime_error("the BMC has no OEM command " + std::to_string(command) + " of ours");
}

} // namespace hooks
