#include "ipmi/command.h"

#include <cstdio>
#include <unistd.h>

namespace ipmi {
namespace {

struct CodeText {
    std::uint8_t code;
    const char* text;
};

// IPMI 2.0 table 5-2.
constexpr CodeText texts[] = {
    {0x00, "success"},
    {0xC0, "node busy"},
    {0xC1, "invalid command"},
    {0xC2, "command invalid for LUN"},
    {0xC3, "timeout while processing command"},
    {0xC4, "out of space"},
    {0xC5, "reservation canceled or invalid"},
    {0xC6, "request data truncated"},
    {0xC7, "request data length invalid"},
    {0xC8, "request data field length limit exceeded"},
    {0xC9, "parameter out of range"},
    {0xCA, "cannot return number of requested data bytes"},
    {0xCB, "requested sensor, data or record not present"},
    {0xCC, "invalid data field in request"},
    {0xCD, "command illegal for this sensor or record type"},
    {0xCE, "response could not be provided"},
    {0xCF, "cannot execute duplicated request"},
    {0xD0, "SDR repository in update mode"},
    {0xD1, "device in firmware update mode"},
    {0xD2, "BMC initialization in progress"},
    {0xD3, "destination unavailable"},
    {0xD4, "insufficient privilege level"},
    {0xD5, "command or parameter not supported in present state"},
    {0xD6, "sub-function disabled or unavailable"},
    {0xFF, "unspecified error"},
};

// A BMC that is busy for the moment: the same request may succeed a little later.
constexpr unsigned busyAttempts = 4;
constexpr unsigned busyPauseMicroseconds = 20'000; // grows with each attempt

bool asksForPatience(std::uint8_t code) {
    return code == completion::nodeBusy || code == completion::timeout;
}

std::string describe(CommandCode command, const std::string& problem) {
    char name[64];
    std::snprintf(name, sizeof name, "IPMI command %02Xh of network function %02Xh: ", command.number,
                  command.netFn);
    return name + problem;
}

} // namespace

const char* completionCodeText(std::uint8_t code) {
    for (const auto& known : texts)
        if (known.code == code)
            return known.text;
    if (code >= 0x01 && code <= 0x7E)
        return "OEM completion code";
    if (code >= 0x80 && code <= 0xBE)
        return "completion code of this command";
    return "reserved completion code";
}

std::string describeCompletionCode(std::uint8_t code) {
    char number[16];
    std::snprintf(number, sizeof number, " (%02Xh)", code);
    return completionCodeText(code) + std::string(number);
}

CompletionCodeError::CompletionCodeError(CommandCode commandCode, std::uint8_t completionCode)
    : std::runtime_error(describe(commandCode, describeCompletionCode(completionCode))),
      command(commandCode),
      code(completionCode) {}

ShortAnswerError::ShortAnswerError(CommandCode command, std::size_t size)
    : std::runtime_error(describe(command, "answer of " + std::to_string(size) + " bytes is too short")) {}

void Answer::verify(const Reader& reader) const {
    if (!reader.ok())
        throw ShortAnswerError(command_, size_);
}

Answer ask(Transport& transport, CommandCode command, std::span<const std::uint8_t> request) {
    Answer answer(command);
    for (unsigned attempt = 1;; ++attempt) {
        const std::size_t size = transport.exchange(command.netFn, command.number, request, answer.bytes_);
        if (size < 1 || size > answer.bytes_.size())
            throw TransportError("the BMC's answer has no completion code");
        answer.size_ = size;
        if (!asksForPatience(answer.code()) || attempt == busyAttempts)
            return answer;
        usleep(busyPauseMicroseconds * attempt);
    }
}

Answer run(Transport& transport, CommandCode command, std::span<const std::uint8_t> request) {
    Answer answer = ask(transport, command, request);
    if (answer.code() != completion::success)
        throw CompletionCodeError(command, answer.code());
    return answer;
}

std::optional<Answer> askIfKnown(Transport& transport, CommandCode command,
                                 std::span<const std::uint8_t> request) {
    const Answer answer = ask(transport, command, request);
    if (completion::meansUnknown(answer.code()))
        return std::nullopt;
    if (answer.code() != completion::success)
        throw CompletionCodeError(command, answer.code());
    return answer;
}

} // namespace ipmi
