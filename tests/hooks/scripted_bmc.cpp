#include "scripted_bmc.h"

#include <platform/support.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>

ScriptedBmc bmc;

namespace {

struct ScriptedTransport : ipmi::Transport {
    ScriptedTransport() { ++bmc.openTransports; }
    ~ScriptedTransport() override { --bmc.openTransports; }

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        if (!bmc.isReachable)
            throw ipmi::TransportError("bmc.example:623: no answer");
        Bytes message(2 + request.size());
        message[0] = netFn;
        message[1] = command;
        std::ranges::copy(request, message.begin() + 2);
        const Bytes bytes = respond(message);
        std::ranges::copy(bytes, answer.begin());
        return bytes.size();
    }

private:
    static Bytes respond(const Bytes& message) {
        if (message == Bytes{0x06, 0x01}) {
            ++bmc.identifications;
            return bmc.deviceId;
        }
        bmc.requests.push_back(message);
        if (bmc.respond)
            return bmc.respond(message);
        const auto found = bmc.answers.find(message);
        return found != bmc.answers.end() ? found->second : Bytes{0xC1};
    }
};

} // namespace

// These take the place of the libraries' own.

std::unique_ptr<ipmi::Transport> ipmi::openTransport(const SessionSettings& settings) {
    bmc.opened.push_back(settings);
    if (!bmc.isReachable)
        throw TransportError("bmc.example:623: no answer");
    return std::make_unique<ScriptedTransport>();
}

extern "C" __attribute__((visibility("default"))) void IDBG_LINUXAPP_DbgOut(int, const char* format, ...) {
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    bmc.debugLog += line;
}
