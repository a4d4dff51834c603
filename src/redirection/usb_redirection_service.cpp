// CIM_USBRedirectionService: redirected media as the host finds them, at its USB.
#include "redirection/media_redirection_service.h"

constexpr const char* const g_USBRedirectionServiceKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace ph::usb_redirection_service {
namespace {

constexpr redirection::ServiceClass serviceClass{redirection::usbServiceClass, PH_Fill_USBRedirectionService};
constexpr auto definition =
    redirection::define<serviceClass>("CIM_RedirectionService", g_USBRedirectionServiceKeyList);

} // namespace
} // namespace ph::usb_redirection_service

PH_EXPORT_CLASS_FAMILY(USBRedirectionService, RedirectionServiceRecord,
                       ph::usb_redirection_service::definition)

int PH_Fill_USBRedirectionService(IPMI20_SESSION_T* session, RedirectionServiceRecord* record) {
    return ph::redirection::fillService(ph::usb_redirection_service::serviceClass.name, session, *record);
}
