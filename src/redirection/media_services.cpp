#include "redirection/media_services.h"

#include <algorithm>

namespace ph::redirection {
namespace {

constexpr ServiceRow services[] = {
    {redirectionServiceClass, "KVMRedirectionService", "KVM Redirection", RedirectionServiceType::Kvm,
     kvmServices},
    {redirectionServiceClass, "MediaRedirectionService", "Media Redirection", RedirectionServiceType::Media,
     mediaServices},
    {usbServiceClass, "USBRedirectionService", "USB Redirection", RedirectionServiceType::Usb, mediaServices},
};

constexpr const char* cdService = "CDMEDIAProtocolService";
constexpr const char* floppyService = "FDMEDIAProtocolService";
constexpr const char* diskService = "HDMEDIAProtocolService";

constexpr AccessPointRow accessPoints[] = {
    {kvmAccessPointClass, "KVMRedirectionSAP", "KVM Redirection", "KVMProtocolService", CIM_SERVICE_KVM},
    {mediaAccessPointClass, "CDMEDIARedirectionSAP", "CD Media Redirection", cdService, CIM_SERVICE_CD_MEDIA},
    {mediaAccessPointClass, "FDMEDIARedirectionSAP", "Floppy Media Redirection", floppyService,
     CIM_SERVICE_FD_MEDIA},
    {mediaAccessPointClass, "HDMEDIARedirectionSAP", "Hard Disk Media Redirection", diskService,
     CIM_SERVICE_HD_MEDIA},
    {usbAccessPointClass, "CDMEDIAUSBRedirectionSAP", "USB CD Redirection", cdService, CIM_SERVICE_CD_MEDIA},
    {usbAccessPointClass, "FDMEDIAUSBRedirectionSAP", "USB Floppy Redirection", floppyService,
     CIM_SERVICE_FD_MEDIA},
    {usbAccessPointClass, "HDMEDIAUSBRedirectionSAP", "USB Hard Disk Redirection", diskService,
     CIM_SERVICE_HD_MEDIA},
};

} // namespace

std::span<const ServiceRow> serviceRows() {
    return services;
}

std::span<const AccessPointRow> accessPointRows() {
    return accessPoints;
}

std::optional<CIM_ServiceConf> readService(IPMI20_SESSION_T* session, std::uint32_t bit) {
    CIM_ServiceConf conf{};
    if (CIM_GetServiceConf(session, bit, &conf, hookTimeout) != 0)
        return std::nullopt;
    return conf;
}

unsigned mostSessions(IPMI20_SESSION_T* session, std::span<const std::uint32_t> services) {
    unsigned most = 0;
    for (const std::uint32_t bit : services) {
        const auto conf = readService(session, bit);
        if (!conf)
            return 0;
        most = std::max<unsigned>(most, conf->maxSessions);
    }
    return most;
}

} // namespace ph::redirection
