// What setting "Set In Progress" does.
#pragma once

#include "ipmi/command.h"
#include "ipmi/set_in_progress.h"

namespace vbmc {

// Returns the completion code. Writes take effect at once, so that a commit changes nothing more.
inline std::uint8_t setProgress(bool& isSetInProgress, std::uint8_t value) {
    switch (value & ipmi::progress::mask) {
    case ipmi::progress::complete:
        isSetInProgress = false;
        return ipmi::completion::success;
    case ipmi::progress::started:
        if (isSetInProgress)
            return ipmi::progress::alreadyStarted;
        isSetInProgress = true;
        return ipmi::completion::success;
    case ipmi::progress::commitWrite:
        return ipmi::completion::success;
    default:
        return ipmi::completion::invalidDataField;
    }
}

} // namespace vbmc
