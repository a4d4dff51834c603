#include "redirection/sol.h"

#include "network/lans.h"

#include <algorithm>

namespace ph::redirection {

bool Sol::read() {
    if (!session_.open())
        return false;
    for (const Lan& lan : listLans(session_.get())) {
        SolChannel channel{lan.channel, {}};
        if (CIM_GetSOLConfig(session_.get(), lan.channel, &channel.config, hookTimeout) != 0)
            return false;
        if (channel.config.isSupported != 0)
            channels_.push_back(channel);
    }
    return true;
}

bool Sol::isEnabled() const {
    return std::ranges::any_of(channels_, [](const SolChannel& each) { return each.config.isEnabled != 0; });
}

CIM_SOLActivation Sol::activation() {
    CIM_SOLActivation activation{};
    return CIM_GetSOLActivation(session_.get(), &activation, hookTimeout) == 0 ? activation
                                                                               : CIM_SOLActivation{};
}

std::optional<CIM_SOLInstance> Sol::instance(std::uint8_t number) {
    CIM_SOLInstance instance{};
    if (CIM_GetSOLInstance(session_.get(), number, &instance, hookTimeout) != 0)
        return std::nullopt;
    return instance;
}

} // namespace ph::redirection
