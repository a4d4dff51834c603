// One IPMI command: request out, answer's data back, completion code checked.
#pragma once

#include "ipmi/commands.h"
#include "ipmi/message.h"
#include "ipmi/transport.h"

#include <optional>

namespace ipmi {

// Completion codes that callers tell apart (IPMI 2.0 table 5-2).
namespace completion {
inline constexpr std::uint8_t success = 0x00;
inline constexpr std::uint8_t nodeBusy = 0xC0;
inline constexpr std::uint8_t invalidCommand = 0xC1;
inline constexpr std::uint8_t invalidCommandForLun = 0xC2;
inline constexpr std::uint8_t timeout = 0xC3;
inline constexpr std::uint8_t outOfSpace = 0xC4;
inline constexpr std::uint8_t reservationCanceled = 0xC5;
inline constexpr std::uint8_t requestTruncated = 0xC6;
inline constexpr std::uint8_t requestLengthInvalid = 0xC7;
inline constexpr std::uint8_t requestLengthExceeded = 0xC8;
inline constexpr std::uint8_t parameterOutOfRange = 0xC9;
inline constexpr std::uint8_t cannotReturnBytes = 0xCA;
inline constexpr std::uint8_t notPresent = 0xCB;
inline constexpr std::uint8_t invalidDataField = 0xCC;
inline constexpr std::uint8_t illegalForSensorOrRecord = 0xCD;
inline constexpr std::uint8_t responseUnavailable = 0xCE;
inline constexpr std::uint8_t duplicateRequest = 0xCF;
inline constexpr std::uint8_t initializing = 0xD2;
inline constexpr std::uint8_t insufficientPrivilege = 0xD4;
inline constexpr std::uint8_t notInPresentState = 0xD5;
inline constexpr std::uint8_t unspecified = 0xFF;

// BMCs use these codes to refuse sending as many bytes of a record as were asked for.
constexpr bool meansTooMuch(std::uint8_t code) {
    return code == requestLengthInvalid || code == requestLengthExceeded || code == cannotReturnBytes ||
           code == unspecified;
}
// They use these to refuse a command that they do not have.
constexpr bool meansUnknown(std::uint8_t code) {
    return code == invalidCommand || code == invalidCommandForLun;
}
// They use these to refuse a parameter, a set, a channel or a user that they do not have.
constexpr bool meansAbsent(std::uint8_t code) {
    return code == parameterOutOfRange || code == notPresent || code == invalidDataField;
}
} // namespace completion

// What a completion code means; codes that belong to one command or to an OEM are named by their range.
const char* completionCodeText(std::uint8_t code);
// The same with the code: "node busy (C0h)".
std::string describeCompletionCode(std::uint8_t code);

// The BMC answered with a completion code other than 00h.
struct PH_IPMI_EXPORT CompletionCodeError : std::runtime_error {
    CompletionCodeError(CommandCode command, std::uint8_t code);
    CommandCode command;
    std::uint8_t code;
};

// The BMC answered with success and fewer bytes than the command's answer has.
struct PH_IPMI_EXPORT ShortAnswerError : std::runtime_error {
    ShortAnswerError(CommandCode command, std::size_t size);
};

class Answer {
public:
    ~Answer() { explicit_bzero(bytes_.data(), bytes_.size()); } // some hold a password
    Answer(const Answer&) = default;
    Answer& operator=(const Answer&) = default;

    std::uint8_t code() const { return bytes_[0]; }
    // The bytes after the completion code.
    std::span<const std::uint8_t> data() const { return std::span(bytes_).subspan(1, size_ - 1); }
    Reader reader() const { return Reader(data()); }

    // To be called at the end of a decoder: throws ShortAnswerError when `reader` ran over the end of this
    // answer.
    void verify(const Reader& reader) const;

private:
    friend Answer ask(Transport&, CommandCode, std::span<const std::uint8_t>);
    explicit Answer(CommandCode command) : command_(command) {}

    std::array<std::uint8_t, maxMessage> bytes_{};
    std::size_t size_ = 1;
    CommandCode command_;
};

// Runs one command whatever its completion code; a BMC that is busy (C0h, C3h) is asked again a few times
// before that is the answer. Throws TransportError.
Answer ask(Transport& transport, CommandCode command, std::span<const std::uint8_t> request);

// Runs one command that has to succeed. Throws TransportError or CompletionCodeError.
Answer run(Transport& transport, CommandCode command, std::span<const std::uint8_t> request);
inline Answer run(Transport& transport, CommandCode command,
                  std::initializer_list<std::uint8_t> request = {}) {
    return run(transport, command, std::span(request.begin(), request.size()));
}

// Runs a command that BMCs may lack. Returns nothing where this one does; any other code throws.
std::optional<Answer> askIfKnown(Transport& transport, CommandCode command,
                                 std::span<const std::uint8_t> request = {});

} // namespace ipmi
