#include "virtual-bmc/message_log.h"

#include "ipmi/oem_commands.h"
#include "virtual-bmc/state/file_handle.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vbmc {
namespace {

// Slots of one size: how many there are follows from the file's size, without reading it.
//   netFn, command, size of request (2 bytes), size of answer (2), request, answer
constexpr std::size_t headSize = 6;
constexpr std::size_t slotSize = headSize + 2 * ipmi::maxMessage;

// Passwords must not be logged: this much of a request and of an answer is shown.
constexpr struct {
    ipmi::CommandCode command;
    std::size_t request, answer;
} secrets[] = {{ipmi::command::setUserPassword, 2, ipmi::maxMessage}, // user, operation
               {ipmi::oem::getMailText, ipmi::maxMessage, 1},
               {ipmi::oem::setMailText, 4, ipmi::maxMessage}};

void hide(std::span<std::uint8_t> bytes, std::size_t shown) {
    if (bytes.size() > shown)
        std::ranges::fill(bytes.subspan(shown), '*');
}

void hideSecrets(std::span<std::uint8_t, slotSize> slot, ipmi::CommandCode command, std::size_t requestSize,
                 std::size_t answerSize) {
    const auto request = slot.subspan(headSize, requestSize);
    const bool isPublicText =
        command.netFn == ipmi::netFn::oem && requestSize > 0 && request[0] != ipmi::oem::serverPassword;
    for (const auto& secret : secrets)
        if (secret.command == command && !isPublicText) {
            hide(request, secret.request);
            hide(slot.subspan(headSize + ipmi::maxMessage, answerSize), secret.answer);
        }
}

} // namespace

void MessageLog::fields(Fields& fields) {
    fields("limit", limit);
}

void MessageLog::record(const State& state, std::uint8_t netFn, std::uint8_t command,
                        std::span<const std::uint8_t> request, std::span<const std::uint8_t> answer) {
    const std::uint32_t limit = state.get<MessageLog>().limit;
    if (limit == 0)
        return;
    const auto path = state.bulkFile(bulkFile);
    const FileHandle file = openPrivate(path, O_WRONLY | O_CREAT | O_APPEND);
    struct stat status = {};
    if (fstat(file.get(), &status) != 0)
        failWithErrno(path);
    if (status.st_size / static_cast<off_t>(slotSize) >= static_cast<off_t>(limit))
        return;

    request = request.first(std::min(request.size(), ipmi::maxMessage));
    std::array<std::uint8_t, slotSize> slot = {};
    ipmi::Writer writer(slot);
    writer.u8(netFn)
        .u8(command)
        .u16(static_cast<std::uint16_t>(request.size()))
        .u16(static_cast<std::uint16_t>(answer.size()))
        .bytes(request)
        .fill(ipmi::maxMessage - request.size(), 0)
        .bytes(answer);
    hideSecrets(slot, {netFn, command}, request.size(), answer.size());
    if (!writeAll(file, {reinterpret_cast<const char*>(slot.data()), slot.size()}))
        failWithErrno(path);
}

void MessageLog::restart(State& state, std::uint32_t limit) {
    std::error_code ignored; // most often there is none
    std::filesystem::remove(state.bulkFile(bulkFile), ignored);
    state.edit<MessageLog>().limit = limit;
}

std::vector<Message> MessageLog::read(const State& state) {
    const auto path = state.bulkFile(bulkFile);
    std::vector<Message> messages;
    if (access(path.c_str(), F_OK) != 0)
        return messages;
    const std::string bytes = readAll(openPrivate(path, O_RDONLY), path);
    ipmi::Reader reader({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    while (reader.left() >= slotSize) {
        Message message;
        message.netFn = reader.u8();
        message.command = reader.u8();
        const std::size_t requestSize = std::min<std::size_t>(reader.u16(), ipmi::maxMessage);
        const std::size_t answerSize = std::min<std::size_t>(reader.u16(), ipmi::maxMessage);
        const auto request = reader.bytes(ipmi::maxMessage);
        const auto answer = reader.bytes(ipmi::maxMessage);
        message.request.assign(request.begin(), request.begin() + static_cast<std::ptrdiff_t>(requestSize));
        message.answer.assign(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(answerSize));
        messages.push_back(std::move(message));
    }
    return messages;
}

} // namespace vbmc
