#include "ipmi/local_device.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <linux/ipmi.h>
#include <platform/sysroot.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace ipmi {
namespace {

// Where the device lies depends on how its nodes are made.
constexpr const char* devices[] = {"/dev/ipmi0", "/dev/ipmi/0", "/dev/ipmidev/0"};

} // namespace

std::unique_ptr<LocalDevice> LocalDevice::find(const SessionSettings& settings) {
    const std::chrono::seconds timeout(std::clamp(settings.timeout, 1, 3600));
    for (const char* const device : devices) {
        char path[4096];
        if (PH_SysrootPath(device, path, sizeof path) != 0)
            throw TransportError("local IPMI device: PH_SYSROOT is too long");
        if (const int descriptor = ::open(path, O_RDWR | O_CLOEXEC); descriptor != -1)
            return std::make_unique<LocalDevice>(descriptor, path, timeout);
        if (errno != ENOENT && errno != ENOTDIR)
            throw TransportError("local IPMI device " + std::string(path) +
                                 " cannot be opened: " + std::strerror(errno));
    }
    return nullptr;
}

LocalDevice::LocalDevice(int descriptor, std::string name, std::chrono::seconds timeout)
    : descriptor_(descriptor), name_(std::move(name)), timeout_(timeout) {}

LocalDevice::~LocalDevice() {
    ::close(descriptor_);
}

void LocalDevice::failWithErrno(const char* what) const {
    throw TransportError("local IPMI device " + name_ + ": " + what + ": " + std::strerror(errno));
}

void LocalDevice::send(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request) {
    ipmi_system_interface_addr bmc{
        .addr_type = IPMI_SYSTEM_INTERFACE_ADDR_TYPE, .channel = IPMI_BMC_CHANNEL, .lun = 0};
    ipmi_req message{};
    message.addr = reinterpret_cast<unsigned char*>(&bmc);
    message.addr_len = sizeof bmc;
    message.msgid = ++messageId_;
    message.msg.netfn = netFn;
    message.msg.cmd = command;
    message.msg.data = const_cast<unsigned char*>(request.data()); // the driver only reads it
    message.msg.data_len = static_cast<unsigned short>(std::min<std::size_t>(request.size(), 0xFFFF));
    if (::ioctl(descriptor_, IPMICTL_SEND_COMMAND, &message) != 0)
        failWithErrno("the request cannot be sent");
}

void LocalDevice::awaitMessage(Clock::time_point end) const {
    pollfd waited{.fd = descriptor_, .events = POLLIN, .revents = 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        const int ready =
            ::poll(&waited, 1, static_cast<int>(std::clamp<decltype(left)>(left, 0, 3'600'000)));
        if (ready > 0 && left > 0)
            return;
        if (left <= 0 || ready == 0)
            throw TransportError("local IPMI device " + name_ + ": no answer in time");
        if (errno != EINTR)
            failWithErrno("no answer");
    }
}

// Returns nothing when the message does not answer the last request: it may be an event, or an answer to an
// earlier request that was given up.
std::optional<std::size_t> LocalDevice::receive(std::span<std::uint8_t> answer) {
    ipmi_addr sender{};
    ipmi_recv message{};
    message.addr = reinterpret_cast<unsigned char*>(&sender);
    message.addr_len = sizeof sender;
    message.msg.data = answer.data();
    message.msg.data_len = static_cast<unsigned short>(std::min<std::size_t>(answer.size(), 0xFFFF));
    const bool isCut = ::ioctl(descriptor_, IPMICTL_RECEIVE_MSG_TRUNC, &message) != 0;
    if (isCut && (errno == EAGAIN || errno == EINTR))
        return std::nullopt;
    if (isCut && errno != EMSGSIZE)
        failWithErrno("no answer");
    if (message.recv_type != IPMI_RESPONSE_RECV_TYPE || message.msgid != messageId_)
        return std::nullopt;
    if (isCut)
        throw TransportError("local IPMI device " + name_ + ": the answer is too long");
    if (message.msg.data_len == 0)
        throw TransportError("local IPMI device " + name_ + ": an answer without a completion code");
    return message.msg.data_len;
}

std::size_t LocalDevice::exchange(std::uint8_t netFn, std::uint8_t command,
                                  std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
    const auto now = Clock::now();
    if (now >= deadline_)
        throw DeadlineError("local IPMI device " + name_ + ": no time is left for another message");
    const auto end = std::min(now + timeout_, deadline_);
    send(netFn, command, request);
    for (;;) {
        awaitMessage(end);
        if (const auto size = receive(answer))
            return *size;
    }
}

} // namespace ipmi
