#include "ipmi/freeipmi/driver_transport.h"

#include <array>

namespace ipmi {
namespace {

struct Driver {
    const char* name;
    ipmi_driver_type_t type;
};

constexpr Driver drivers[] = {
    {"kcs", IPMI_DEVICE_KCS},
    {"ssif", IPMI_DEVICE_SSIF},
    {"sunbmc", IPMI_DEVICE_SUNBMC},
};

const Driver& findDriver(const std::string& name) {
    for (const auto& driver : drivers)
        if (name == driver.name)
            return driver;
    throw TransportError("local IPMI device: driver type '" + name +
                         "' is unknown; known are kcs, ssif, openipmi, sunbmc and the empty text for any");
}

} // namespace

DriverTransport::DriverTransport(const SessionSettings& settings)
    : context_(settings.address.empty() ? "local IPMI device" : "local IPMI device " + settings.address) {
    const auto flags = static_cast<unsigned>(settings.workaroundFlags);
    if (settings.address.empty()) {
        // 1 found, 0 not found, -1 failed.
        if (const int found = ipmi_ctx_find_inband(context_.get(), nullptr, 0, 0, 0, nullptr, flags, 0);
            found == 0)
            throw TransportError("local IPMI device: none found");
        else if (found < 0)
            context_.fail("cannot be opened");
    } else if (ipmi_ctx_open_inband(context_.get(), findDriver(settings.address).type, 0, 0, 0, nullptr,
                                    flags, 0) < 0) {
        context_.fail("cannot be opened");
    }
}

std::size_t DriverTransport::exchange(std::uint8_t netFn, std::uint8_t command,
                                      std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
    return context_.exchange(netFn, command, request, answer);
}

} // namespace ipmi
