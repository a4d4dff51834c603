// The local IPMI device of the machine, through its driver. The driver bounds the time of an exchange.
#pragma once

#include "ipmi/freeipmi_context.h"

namespace ipmi {

class LocalTransport final : public Transport {
public:
    explicit LocalTransport(const SessionSettings& settings);

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override;

private:
    FreeIpmiContext context_;
};

} // namespace ipmi
