// What the session settings ask of this library.
#include "ipmi/freeipmi/driver_transport.h"
#include "ipmi/freeipmi/lan_transport.h"
#include "ipmi/transport_library.h"

namespace {

std::unique_ptr<ipmi::Transport> open(const ipmi::SessionSettings& settings) {
    if (settings.interfaceType == ipmi::SessionSettings::Lan)
        return std::make_unique<ipmi::LanTransport>(settings);
    return std::make_unique<ipmi::DriverTransport>(settings);
}

} // namespace

const ipmi::TransportLibrary PH_IpmiTransports{.open = open};
