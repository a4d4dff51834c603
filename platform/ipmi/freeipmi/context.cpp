#include "ipmi/freeipmi/context.h"

#include "ipmi/secret.h"

#include <algorithm>
#include <array>
#include <new>

namespace ipmi {

void FreeIpmiContext::Destroy::operator()(ipmi_ctx_t context) const {
    ipmi_ctx_close(context); // fails on a context that never opened, which is no concern here
    ipmi_ctx_destroy(context);
}

FreeIpmiContext::FreeIpmiContext(std::string peer) : peer_(std::move(peer)), context_(ipmi_ctx_create()) {
    if (!context_)
        throw std::bad_alloc();
}

void FreeIpmiContext::fail(const std::string& what) const {
    throw TransportError(peer_ + ": " + what + ": " + ipmi_ctx_errormsg(context_.get()));
}

std::size_t FreeIpmiContext::exchange(std::uint8_t netFn, std::uint8_t command,
                                      std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
    // FreeIPMI's raw messages begin with the command. A request may hold a password.
    SecretBytes<maxMessage + 1> secret;
    auto& sent = secret.bytes();
    std::array<std::uint8_t, maxMessage + 1> received;
    if (request.size() >= sent.size())
        throw TransportError(peer_ + ": a request of " + std::to_string(request.size()) +
                             " bytes is too long");
    sent[0] = command;
    std::ranges::copy(request, sent.begin() + 1);

    const int length = ipmi_cmd_raw(get(), 0, netFn, sent.data(), static_cast<unsigned>(request.size() + 1),
                                    received.data(), received.size());
    if (length < 0)
        fail("no answer");
    if (length < 2)
        throw TransportError(peer_ + ": an answer without a completion code");
    const auto bytes = std::span(received).subspan(1, static_cast<std::size_t>(length) - 1);
    if (bytes.size() > answer.size())
        throw TransportError(peer_ + ": an answer of " + std::to_string(bytes.size()) + " bytes is too long");
    std::ranges::copy(bytes, answer.begin());
    return bytes.size();
}

} // namespace ipmi
