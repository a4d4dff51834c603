// The local IPMI device of a machine without a Linux driver for it: FreeIPMI has drivers of its own, which
// bound the time of an exchange.
#pragma once

#include "ipmi/freeipmi/context.h"

namespace ipmi {

class DriverTransport final : public Transport {
public:
    explicit DriverTransport(const SessionSettings& settings);

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override;

private:
    FreeIpmiContext context_;
};

} // namespace ipmi
