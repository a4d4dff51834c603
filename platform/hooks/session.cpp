#include "hooks/session.h"

#include "ipmi/command.h"
#include "ipmi/lan_configuration.h"
#include "ipmi/oem_commands.h"

#include <utility>

namespace hooks {
namespace {

bool isLan(ipmi::Transport& bmc, std::uint8_t channel) {
    const auto answer =
        ipmi::ask(bmc, ipmi::command::getChannelInfo, std::span<const std::uint8_t>(&channel, 1));
    const std::uint8_t code = answer.code();
    if (ipmi::completion::meansAbsent(code) || code == ipmi::completion::invalidCommand)
        return false;
    if (code != ipmi::completion::success)
        throw ipmi::CompletionCodeError(ipmi::command::getChannelInfo, code);
    auto reader = answer.reader();
    reader.skip(1); // the channel again
    const std::uint8_t medium = reader.u8() & 0x7F;
    answer.verify(reader);
    return medium == ipmi::channel::mediumLan;
}

} // namespace

void Session::begin(int timeout) {
    deadline_ = ipmi::Clock::now() + std::chrono::seconds(timeout);
    transport_->endBy(deadline_);
}

std::size_t Session::exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                              std::span<std::uint8_t> answer) {
    if (isDead_)
        throw ipmi::TransportError("the session ended when the BMC left a message unanswered");
    if (ipmi::Clock::now() >= deadline_)
        throw ipmi::DeadlineError("the time of the call is over");
    try {
        return transport_->exchange(netFn, command, request, answer);
    } catch (const ipmi::DeadlineError&) {
        throw;
    } catch (const ipmi::TransportError&) {
        isDead_ = true;
        throw;
    }
}

const std::vector<std::uint8_t>& Session::lanChannels() {
    if (!lanChannels_) {
        std::vector<std::uint8_t> channels;
        for (std::uint8_t channel = 1; channel <= ipmi::channel::last; ++channel)
            if (isLan(*this, channel))
                channels.push_back(channel);
        lanChannels_ = std::move(channels);
    }
    return *lanChannels_;
}

bool Session::hasOemCommands() {
    if (!hasOemCommands_) {
        const auto answer = ipmi::run(*this, ipmi::command::getDeviceId);
        auto reader = answer.reader();
        reader.skip(6); // device ID and revision, firmware revision, IPMI version, additional devices
        const std::uint32_t manufacturer = reader.u24() & 0xFFFFF;
        const std::uint16_t product = reader.u16();
        answer.verify(reader);
        hasOemCommands_ = manufacturer == ipmi::oem::manufacturer && product == ipmi::oem::product;
    }
    return *hasOemCommands_;
}

void store(IPMI20_SESSION_T& session, std::unique_ptr<Session> open) {
    session.platform.handle = open.release();
}

std::unique_ptr<Session> release(IPMI20_SESSION_T& session) {
    return std::unique_ptr<Session>(static_cast<Session*>(std::exchange(session.platform.handle, nullptr)));
}

Session& openSession(const IPMI20_SESSION_T* session) {
    if (session == nullptr || session->platform.handle == nullptr)
        throw ipmi::TransportError("the IPMI session is not open");
    return *static_cast<Session*>(session->platform.handle);
}

Session& sessionOf(const IPMI20_SESSION_T* session, int timeout) {
    Session& open = openSession(session);
    open.readingAhead = nullptr;
    open.begin(timeout);
    return open;
}

} // namespace hooks
