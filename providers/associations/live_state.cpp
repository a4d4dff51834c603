#include "associations/live_state.h"

#include "associations/elements.h"
#include "provider_helper/boot.h"
#include "provider_helper/computer_system.h"

namespace associations {
namespace {

std::string readBootChoice() {
    PHBootChoice choice;
    if (PH_GetBootChoice(&choice) != 0)
        throw Failure(CMPI_RC_ERR_FAILED, "The boot flags cannot be read");
    return std::string(choice.configuration) + ' ' + choice.source;
}

std::string readHostPower() {
    std::uint16_t state = 0;
    return PH_GetHostPowerState(&state) == 0 ? std::to_string(state) : "";
}

std::string read(Live what) {
    switch (what) {
    case Live::BootChoice:
        return readBootChoice();
    case Live::HostPower:
        return readHostPower();
    case Live::None:
        break;
    }
    return {};
}

} // namespace

const std::string& LiveState::get(Live what) {
    const auto known = texts_.find(what);
    return known != texts_.end() ? known->second : texts_.emplace(what, read(what)).first->second;
}

} // namespace associations
