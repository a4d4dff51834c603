#include "ipmi/transport.h"

#include "ipmi/lan_transport.h"
#include "ipmi/local_transport.h"
#include "virtual-bmc/transport.h"

namespace ipmi {

std::unique_ptr<Transport> openTransport(const SessionSettings& settings) {
    switch (settings.interfaceType) {
    case SessionSettings::Lan:
        return std::make_unique<LanTransport>(settings);
    case SessionSettings::LocalDevice:
        return std::make_unique<LocalTransport>(settings);
    case SessionSettings::VirtualBmc:
        return vbmc::openTransport(settings);
    }
    throw TransportError("IPMI interface type " + std::to_string(settings.interfaceType) +
                         " is unknown; 0 is LAN, 1 the local device, 2 the virtual BMC");
}

} // namespace ipmi
