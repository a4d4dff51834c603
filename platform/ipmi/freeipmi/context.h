// A FreeIPMI context: an IPMI session over LAN or an open local device.
#pragma once

#include "ipmi/transport.h"

#include <freeipmi/freeipmi.h>

namespace ipmi {

class FreeIpmiContext {
public:
    // `peer` names the BMC in error texts.
    explicit FreeIpmiContext(std::string peer);

    ipmi_ctx_t get() const { return context_.get(); }

    // Sends one message to LUN 0, as Transport::exchange does.
    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer);

    // Throws TransportError, which names the peer, what failed and why.
    [[noreturn]] void fail(const std::string& what) const;

private:
    struct Destroy {
        void operator()(ipmi_ctx_t context) const;
    };
    std::string peer_;
    std::unique_ptr<ipmi_ctx, Destroy> context_;
};

} // namespace ipmi
