#include "virtual-bmc/controller.h"

#include <algorithm>
#include <vector>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr unsigned keyOf(std::uint8_t netFn, std::uint8_t command) {
    return netFn << 8U | command;
}

unsigned keyOfCommand(const Command& command) {
    return keyOf(command.code.netFn, command.code.number);
}

// The commands of all parts, in the order of their keys.
template <class... Parts>
std::vector<Command> gather(const std::tuple<Parts...>*) {
    std::vector<Command> commands;
    (commands.insert(commands.end(), Parts::commands().begin(), Parts::commands().end()), ...);
    std::ranges::sort(commands, {}, keyOfCommand);
    return commands;
}

const Command* findCommand(std::uint8_t netFn, std::uint8_t command) {
    static const std::vector<Command> commands = gather(static_cast<const Parts*>(nullptr));
    const auto found = std::ranges::lower_bound(commands, keyOf(netFn, command), {}, keyOfCommand);
    return found != commands.end() && keyOfCommand(*found) == keyOf(netFn, command) ? &*found : nullptr;
}

// Returns the size of the answer.
std::size_t run(State& state, int privilege, std::uint8_t netFn, std::uint8_t command,
                std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
    const Command* const known = findCommand(netFn, command);
    std::uint8_t code = completion::invalidCommand;
    ipmi::Writer data(answer.subspan(1));
    if (state.get<Firmware>().isRestarting() && !Firmware::answersWhileRestarting({netFn, command}))
        code = completion::initializing;
    else if (known != nullptr && privilege < known->leastPrivilege)
        code = completion::insufficientPrivilege;
    else if (known != nullptr && request.size() < known->leastRequest)
        code = completion::requestLengthInvalid;
    else if (known != nullptr)
        code = known->handler(state, ipmi::Reader(request), data);
    if (code == completion::success && !data.ok())
        code = completion::responseUnavailable;
    answer[0] = code;
    if (code == completion::success)
        return 1 + data.size();
    state.undo();
    return 1;
}

Outcome runWithFault(State& state, const Fault& fault, int privilege, std::uint8_t netFn,
                     std::uint8_t command, std::span<const std::uint8_t> request,
                     std::span<std::uint8_t> answer) {
    switch (fault.kind) {
    case Fault::CompletionCode:
        answer[0] = static_cast<std::uint8_t>(fault.value);
        return {1};
    case Fault::ShortAnswer:
        return {std::min<std::size_t>(fault.value, run(state, privilege, netFn, command, request, answer))};
    case Fault::Late:
        return {run(state, privilege, netFn, command, request, answer),
                std::chrono::milliseconds(fault.value)};
    case Fault::Silent:
        break;
    }
    return {0};
}

} // namespace

Outcome execute(State& state, int privilege, std::uint8_t netFn, std::uint8_t command,
                std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
    // The faults are copied, because undoing the edits of a failed command may move them.
    std::optional<Fault> fault;
    if (const Fault* const striking = state.get<Faults>().strike(netFn, command))
        fault = *striking;
    const Outcome outcome = fault ? runWithFault(state, *fault, privilege, netFn, command, request, answer)
                                  : Outcome{run(state, privilege, netFn, command, request, answer)};
    if (state.get<Faults>().counts(netFn, command))
        state.edit<Faults>().countCall(netFn, command);
    MessageLog::record(state, netFn, command, request, answer.first(outcome.size));
    return outcome;
}

} // namespace vbmc
