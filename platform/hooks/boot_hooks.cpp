#include "hooks/session.h"
#include "ipmi/boot_options.h"
#include "ipmi/command.h"

#include <array>
#include <stdexcept>

namespace {

namespace boot = ipmi::boot;
namespace completion = ipmi::completion;

using ipmi::command::getSystemBootOptions;
using ipmi::command::setSystemBootOptions;

using FlagBytes = std::array<std::uint8_t, boot::flagsSize>;

// BMCs answer so for a command or a parameter that they do not have.
bool meansNoFlags(std::uint8_t code) {
    return code == boot::parameterNotSupported || code == completion::invalidCommand ||
           code == completion::invalidCommandForLun || completion::meansAbsent(code);
}

std::optional<ipmi::Answer> readBootParameter(ipmi::Transport& bmc, std::uint8_t number) {
    const std::uint8_t request[] = {number, 0, 0};
    auto answer = ipmi::ask(bmc, getSystemBootOptions, request);
    if (meansNoFlags(answer.code()))
        return std::nullopt;
    if (answer.code() != completion::success)
        throw ipmi::CompletionCodeError(getSystemBootOptions, answer.code());
    return answer;
}

template <std::size_t N>
std::array<std::uint8_t, N> valueOf(const ipmi::Answer& answer) {
    auto reader = answer.reader();
    reader.skip(2); // parameter version, parameter number
    const auto bytes = reader.bytes(N);
    answer.verify(reader);
    std::array<std::uint8_t, N> value{};
    std::ranges::copy(bytes, value.begin());
    return value;
}

// Returns the completion code of the answer.
std::uint8_t writeParameter(ipmi::Transport& bmc, std::uint8_t number, std::span<const std::uint8_t> value) {
    std::array<std::uint8_t, 1 + boot::flagsSize> storage;
    ipmi::Writer request(storage);
    request.u8(number).bytes(value);
    return ipmi::ask(bmc, setSystemBootOptions, request.written()).code();
}

std::uint8_t writeParameter(ipmi::Transport& bmc, std::uint8_t number,
                            std::initializer_list<std::uint8_t> value) {
    return writeParameter(bmc, number, std::span(value.begin(), value.size()));
}

// Tells others of the change that is being made. Some BMCs have no such parameter, and do without.
class Progress {
public:
    explicit Progress(ipmi::Transport& bmc) : bmc_(bmc) {
        const std::uint8_t code = writeParameter(bmc, boot::parameter::setInProgress, {boot::inProgress});
        if (code == boot::alreadyInProgress)
            throw std::runtime_error("somebody else is changing the boot options");
        isTold_ = code == completion::success;
    }
    // Also after a change that was refused: what stays in progress locks everybody out.
    ~Progress() {
        if (isTold_)
            hooks::guarded("CIM_SetBootFlags", [&] {
                if (writeParameter(bmc_, boot::parameter::setInProgress, {boot::setComplete}) !=
                    completion::success)
                    throw std::runtime_error("the boot options stay in progress");
            });
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    ipmi::Transport& bmc_;
    bool isTold_ = false;
};

// By default a BMC forgets flags that are not followed by a Chassis Control command, and those of a boot that
// the operating system or somebody at the machine begins. Whoever sets them through CIM means the next boot,
// whatever begins it; only after the BMC's own emergencies it decides itself.
void keepUntilBoot(ipmi::Transport& bmc) {
    constexpr std::uint8_t kept = boot::keepWithoutCommand | boot::keepOnSoftReset | boot::keepOnPowerButton;
    const auto answer = readBootParameter(bmc, boot::parameter::validBitClearing);
    if (!answer)
        return;
    const std::uint8_t bits = valueOf<1>(*answer)[0];
    if ((bits & kept) != kept)
        writeParameter(bmc, boot::parameter::validBitClearing,
                       {static_cast<std::uint8_t>((bits & 0x1F) | kept)});
}

FlagBytes changed(FlagBytes bytes, const CIM_BootFlags& flags) {
    if ((bytes[0] & boot::flagsValid) == 0)
        bytes = {static_cast<std::uint8_t>(bytes[0] & boot::efiBoot)};
    bytes[0] =
        static_cast<std::uint8_t>((bytes[0] & boot::efiBoot) | (flags.isValid != 0 ? boot::flagsValid : 0) |
                                  (flags.isPersistent != 0 ? boot::persistent : 0));
    bytes[1] = static_cast<std::uint8_t>((bytes[1] & ~boot::deviceMask) | flags.device << boot::deviceShift);
    return bytes;
}

void writeFlags(ipmi::Transport& bmc, const CIM_BootFlags& flags) {
    const auto answer = readBootParameter(bmc, boot::parameter::flags);
    if (!answer)
        throw std::runtime_error("the BMC has no boot flags");
    const FlagBytes bytes = changed(valueOf<boot::flagsSize>(*answer), flags);
    const Progress progress(bmc);
    // They come first: when the BMC refuses them, nothing else has been changed.
    if (const std::uint8_t code = writeParameter(bmc, boot::parameter::flags, bytes);
        code != completion::success)
        throw ipmi::CompletionCodeError(setSystemBootOptions, code);
    if (flags.isValid == 0)
        return;
    writeParameter(bmc, boot::parameter::infoAcknowledge, {boot::everyParty, boot::notHandled});
    keepUntilBoot(bmc);
}

} // namespace

int CIM_GetBootFlags(IPMI20_SESSION_T* session, CIM_BootFlags* flags, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(flags != nullptr);
        *flags = {};
        const auto answer = readBootParameter(hooks::sessionOf(session, timeout), boot::parameter::flags);
        if (!answer)
            return;
        const FlagBytes bytes = valueOf<boot::flagsSize>(*answer);
        flags->isSupported = 1;
        flags->isValid = (bytes[0] & boot::flagsValid) != 0;
        flags->isPersistent = (bytes[0] & boot::persistent) != 0;
        flags->device = (bytes[1] & boot::deviceMask) >> boot::deviceShift;
    });
}

int CIM_SetBootFlags(IPMI20_SESSION_T* session, const CIM_BootFlags* flags, int timeout) {
    return hooks::guarded(__func__, [&] {
        if (flags == nullptr || flags->device > boot::lastDevice)
            throw std::invalid_argument("these are no boot flags");
        writeFlags(hooks::sessionOf(session, timeout), *flags);
    });
}
