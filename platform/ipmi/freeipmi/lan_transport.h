// IPMI 2.0 over LAN: an RMCP+ session.
#pragma once

#include "ipmi/freeipmi/context.h"

#include <chrono>
#include <optional>

namespace ipmi {

class LanTransport final : public Transport {
public:
    // Opens the session. A BMC that does not answer at all is given up after less than five seconds.
    explicit LanTransport(const SessionSettings& settings);

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override;
    void endBy(Clock::time_point deadline) override { deadline_ = deadline; }

private:
    FreeIpmiContext openWithoutSession() const;
    void probe() const;
    [[noreturn]] void refuse(const std::string& what) const;
    void open();
    void requireTime() const;

    SessionSettings settings_;
    std::string host_;        // as FreeIPMI wants it, port included
    unsigned messageTimeout_; // milliseconds, as is the next
    unsigned retransmission_;
    std::optional<FreeIpmiContext> context_;
    Clock::time_point lastAnswer_;
    Clock::time_point deadline_ = Clock::time_point::max();
};

} // namespace ipmi
