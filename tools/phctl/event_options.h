// The event that a command adds to the virtual BMC's log.
#pragma once

#include "command_line.h"
#include "virtual-bmc/virtual_bmc.h"

#include <optional>

namespace phctl {

class EventOptions {
public:
    void addTo(Command command);
    // Returns the record's ID. Throws UsageError when there is no event in the options.
    std::uint16_t addEvent(vbmc::VirtualBmc& machine) const;

private:
    std::string sensor_;
    std::optional<std::uint8_t> offset_;
    bool isDeassertion_ = false;
    std::string record_;
};

} // namespace phctl
