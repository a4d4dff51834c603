// CIM_USBRedirectionSAP: where each drive is redirected from that the host finds at its USB.
#include "redirection/service_access_point.h"

constexpr const char* const g_USBRedirectionSAPKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace ph::usb_redirection_sap {
namespace {

constexpr redirection::AccessPointClass accessPointClass{redirection::usbAccessPointClass,
                                                         PH_Fill_USBRedirectionSAP};
constexpr auto definition = redirection::define<accessPointClass>(g_USBRedirectionSAPKeyList,
                                                                  redirection::driveAccessPointProperties);

} // namespace
} // namespace ph::usb_redirection_sap

PH_EXPORT_CLASS_FAMILY(USBRedirectionSAP, RedirectionSAPRecord, ph::usb_redirection_sap::definition)

int PH_Fill_USBRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record) {
    return ph::redirection::fillDrive(ph::usb_redirection_sap::accessPointClass.name, session, *record);
}
