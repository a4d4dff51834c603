// Serial over LAN as the BMC has it now.
#pragma once

#include "Utility/back-ends/back_ends.h"

#include <optional>
#include <span>
#include <vector>

namespace ph::redirection {

struct SolChannel {
    std::uint8_t channel;
    CIM_SOLConfig config;
};

// Sol holds a session that stays open between what is read.
class Sol {
public:
    // Reads the channels with SOL. Returns false when the BMC does not tell.
    bool read();

    std::span<const SolChannel> channels() const { return channels_; }
    bool isThere() const { return !channels_.empty(); }
    bool isEnabled() const; // on any channel
    IPMI20_SESSION_T* session() { return session_.get(); }
    // Not supported, also where the BMC does not tell.
    CIM_SOLActivation activation();
    std::optional<CIM_SOLInstance> instance(std::uint8_t number);

private:
    IpmiSession session_;
    std::vector<SolChannel> channels_;
};

} // namespace ph::redirection
