#include "services/service_list.h"

#include "platform/cim_hooks.h"
#include "Utility/values/dmtf_values.h"

#include <algorithm>

namespace ph {
namespace {

// HTTP and HTTPS are both the BMC's web service.
constexpr Service services[] = {
    {"HTTPProtocolService", "HTTP Service", "http", Protocol::Other, CIM_SERVICE_WEB, Ports::Clear},
    {"HTTPSProtocolService", "HTTPS Service", "https", Protocol::Other, CIM_SERVICE_WEB, Ports::Encrypted},
    {"WEBProtocolService", "Web Service", "web", Protocol::Other, CIM_SERVICE_WEB, Ports::Both},
    {"CLPProtocolService", "SM CLP Service", "clp", Protocol::SmClp, 0, Ports::None},
    {"SSHProtocolService", "SSH Service", "ssh", Protocol::Ssh, CIM_SERVICE_SSH, Ports::Both},
    {"TelnetProtocolService", "Telnet Service", "telnet", Protocol::Telnet, CIM_SERVICE_TELNET, Ports::Both},
    {"KVMProtocolService", "KVM Redirection Service", "kvm", Protocol::Other, CIM_SERVICE_KVM, Ports::Both},
    {"CDMEDIAProtocolService", "CD Media Redirection Service", "cd-media", Protocol::Other,
     CIM_SERVICE_CD_MEDIA, Ports::Both},
    {"FDMEDIAProtocolService", "Floppy Media Redirection Service", "fd-media", Protocol::Other,
     CIM_SERVICE_FD_MEDIA, Ports::Both},
    {"HDMEDIAProtocolService", "Hard Disk Media Redirection Service", "hd-media", Protocol::Other,
     CIM_SERVICE_HD_MEDIA, Ports::Both},
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
