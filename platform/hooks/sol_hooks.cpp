#include "hooks/session.h"
#include "ipmi/command.h"
#include "ipmi/sol_configuration.h"

#include <stdexcept>

// Layouts shared with the library.
static_assert(offsetof(CIM_SOLConfig, port) == 6 && offsetof(CIM_SOLConfig, bitRate) == 8 &&
              sizeof(CIM_SOLConfig) == 12);
static_assert(offsetof(CIM_SOLActivation, active) == 2 && sizeof(CIM_SOLActivation) == 4);
static_assert(offsetof(CIM_SOLInstance, serialPort) == 4 && sizeof(CIM_SOLInstance) == 8);

namespace {

namespace completion = ipmi::completion;
namespace sol = ipmi::sol;

// BMCs answer so for a command, a channel, a parameter or a payload that they do not have.
bool meansNoSol(std::uint8_t code) {
    return code == sol::parameterNotSupported || completion::meansUnknown(code) ||
           completion::meansAbsent(code);
}

// Returns nothing where the BMC lacks what is asked for.
std::optional<ipmi::Answer> askIfPresent(ipmi::Transport& bmc, ipmi::CommandCode command,
                                         std::initializer_list<std::uint8_t> request) {
    auto answer = ipmi::ask(bmc, command, std::span(request.begin(), request.size()));
    if (meansNoSol(answer.code()))
        return std::nullopt;
    if (answer.code() != completion::success)
        throw ipmi::CompletionCodeError(command, answer.code());
    return answer;
}

// Returns a parameter of one byte or two; nothing where the channel does not have it.
std::optional<std::uint16_t> readParameter(ipmi::Transport& bmc, std::uint8_t channel, std::uint8_t number,
                                           std::size_t size = 1) {
    const auto answer = askIfPresent(bmc, ipmi::command::getSolConfiguration, {channel, number, 0, 0});
    if (!answer)
        return std::nullopt;
    auto reader = answer->reader();
    reader.skip(1); // parameter revision
    const std::uint16_t value = size == 1 ? reader.u8() : reader.u16();
    answer->verify(reader);
    return value;
}

std::uint32_t bitsPerSecond(std::uint16_t code) {
    constexpr std::pair<std::uint8_t, std::uint32_t> rates[] = {{sol::bitRate9600, 9600},
                                                                {sol::bitRate19200, 19200},
                                                                {sol::bitRate38400, 38400},
                                                                {sol::bitRate57600, 57600},
                                                                {sol::bitRate115200, 115200}};
    for (const auto& [each, rate] : rates)
        if (each == (code & sol::bitRateMask))
            return rate;
    return 0;
}

void readConfig(ipmi::Transport& bmc, std::uint8_t channel, CIM_SOLConfig& config) {
    const auto enable = readParameter(bmc, channel, sol::parameter::enable);
    if (!enable)
        return;
    config.isSupported = 1;
    config.isEnabled = (*enable & sol::isEnabled) != 0;
    if (const auto bits = readParameter(bmc, channel, sol::parameter::authentication)) {
        config.privilege = *bits & sol::privilegeMask;
        config.forcesEncryption = (*bits & sol::forcesEncryption) != 0;
        config.forcesAuthentication = (*bits & sol::forcesAuthentication) != 0;
    }
    config.bitRate = bitsPerSecond(
        readParameter(bmc, channel, sol::parameter::volatileBitRate).value_or(sol::bitRateOfSerial));
    config.port = readParameter(bmc, channel, sol::parameter::payloadPort, 2).value_or(0);
}

} // namespace

int CIM_GetSOLConfig(IPMI20_SESSION_T* session, uint8_t channel, CIM_SOLConfig* config, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(config != nullptr);
        *config = {};
        readConfig(hooks::sessionOf(session, timeout), channel, *config);
    });
}

// One command writes the parameter whole, so none of the BMC's transactions (parameter 0) is opened.
int CIM_SetSOLEnable(IPMI20_SESSION_T* session, uint8_t channel, uint8_t enable, int timeout) {
    return hooks::guarded(__func__, [&] {
        if (enable > sol::isEnabled)
            throw std::invalid_argument("SOL is enabled or not");
        ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::setSolConfiguration,
                  {channel, sol::parameter::enable, enable});
    });
}

int CIM_GetSOLActivation(IPMI20_SESSION_T* session, CIM_SOLActivation* activation, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(activation != nullptr);
        *activation = {};
        const auto answer = askIfPresent(hooks::sessionOf(session, timeout),
                                         ipmi::command::getPayloadActivationStatus, {sol::payloadType});
        if (!answer)
            return;
        auto reader = answer->reader();
        const std::uint8_t capacity = reader.u8() & sol::capacityMask;
        const std::uint16_t active = reader.u16();
        answer->verify(reader);
        if (capacity != 0) // which is reserved
            *activation = {1, capacity, static_cast<std::uint16_t>(active & ((1U << capacity) - 1))};
    });
}

int CIM_GetSOLInstance(IPMI20_SESSION_T* session, uint8_t instance, CIM_SOLInstance* sol, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(sol != nullptr);
        const auto answer =
            ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::getPayloadInstanceInfo,
                      {ipmi::sol::payloadType, instance});
        auto reader = answer.reader();
        *sol = {};
        sol->sessionId = reader.u32();
        sol->serialPort = reader.u8();
        answer.verify(reader);
    });
}
