// CIM_MediaRedirectionSAP: where each kind of media is redirected from.
#include "redirection/service_access_point.h"

constexpr const char* const g_MediaRedirectionSAPKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace ph::media_redirection_sap {
namespace {

constexpr redirection::AccessPointClass accessPointClass{redirection::mediaAccessPointClass,
                                                         PH_Fill_MediaRedirectionSAP};
constexpr auto definition = redirection::define<accessPointClass>(g_MediaRedirectionSAPKeyList,
                                                                  redirection::driveAccessPointProperties);

} // namespace
} // namespace ph::media_redirection_sap

PH_EXPORT_CLASS_FAMILY(MediaRedirectionSAP, RedirectionSAPRecord, ph::media_redirection_sap::definition)

int PH_Fill_MediaRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record) {
    return ph::redirection::fillDrive(ph::media_redirection_sap::accessPointClass.name, session, *record);
}
