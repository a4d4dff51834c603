#include "services/service_list.h"

#include "platform/cim_hooks.h"

#include <algorithm>

namespace ph {
namespace {

enum Protocol : std::uint16_t { other = 1, ssh = 2, telnet = 3, clp = 4 };

// HTTP and HTTPS are two faces of the BMC's web service.
constexpr Service services[] = {
    {"HTTPProtocolService", "HTTP Service", "http", other, CIM_SERVICE_WEB},
    {"HTTPSProtocolService", "HTTPS Service", "https", other, CIM_SERVICE_WEB},
    {"WEBProtocolService", "Web Service", "web", other, CIM_SERVICE_WEB},
    {"CLPProtocolService", "SM CLP Service", "clp", clp, 0},
    {"SSHProtocolService", "SSH Service", "ssh", ssh, CIM_SERVICE_SSH},
    {"TelnetProtocolService", "Telnet Service", "telnet", telnet, CIM_SERVICE_TELNET},
    {"KVMProtocolService", "KVM Redirection Service", "kvm", other, CIM_SERVICE_KVM},
    {"CDMEDIAProtocolService", "CD Media Redirection Service", "cd-media", other, CIM_SERVICE_CD_MEDIA},
    {"FDMEDIAProtocolService", "Floppy Media Redirection Service", "fd-media", other, CIM_SERVICE_FD_MEDIA},
    {"HDMEDIAProtocolService", "Hard Disk Media Redirection Service", "hd-media", other,
     CIM_SERVICE_HD_MEDIA},
};

} // namespace

std::span<const Service> allServices() {
    return services;
}

const Service* findService(std::string_view name) {
    const auto* found = std::ranges::find(services, name, &Service::name);
    return found != std::end(services) ? found : nullptr;
}

} // namespace ph
