// CIM_MediaRedirectionSAP: where each kind of media is redirected from.
#include "redirection/service_access_point.h"

constexpr const char* const g_MediaRedirectionSAPKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace {

constexpr ph::redirection::AccessPointClass accessPointClass{ph::redirection::mediaAccessPointClass,
                                                             PH_Fill_MediaRedirectionSAP};
constexpr auto definition = ph::redirection::define<accessPointClass>(
    g_MediaRedirectionSAPKeyList, ph::redirection::driveAccessPointProperties);

} // namespace

PH_EXPORT_CLASS_FAMILY(MediaRedirectionSAP, RedirectionSAPRecord, definition)

int PH_Fill_MediaRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record) {
    return ph::redirection::fillDrive(accessPointClass.name, session, *record);
}
