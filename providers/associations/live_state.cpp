#include "associations/live_state.h"

#include "associations/elements.h"
#include "provider_helper/boot.h"

namespace associations {
namespace {

std::string readBootChoice() {
    PHBootChoice choice;
    if (PH_GetBootChoice(&choice) != 0)
        throw Failure(CMPI_RC_ERR_FAILED, "The boot flags cannot be read");
    return std::string(choice.configuration) + ' ' + choice.source;
}

} // namespace

const std::string& LiveState::get(Live what) {
    static const std::string nothing;
    if (what == Live::None)
        return nothing;
    if (!bootChoice_)
        bootChoice_ = readBootChoice();
    return *bootChoice_;
}

} // namespace associations
