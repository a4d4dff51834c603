// CIM_RedirectionService: KVM and media.
#include "redirection/media_redirection_service.h"

constexpr const char* const g_RedirectionServiceKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace ph::redirection_service {
namespace {

constexpr redirection::ServiceClass serviceClass{redirection::redirectionServiceClass,
                                                 PH_Fill_RedirectionService};
constexpr auto definition = redirection::define<serviceClass>("CIM_Service", g_RedirectionServiceKeyList);

} // namespace
} // namespace ph::redirection_service

PH_EXPORT_CLASS_FAMILY(RedirectionService, RedirectionServiceRecord, ph::redirection_service::definition)

int PH_Fill_RedirectionService(IPMI20_SESSION_T* session, RedirectionServiceRecord* record) {
    return ph::redirection::fillService(ph::redirection_service::serviceClass.name, session, *record);
}
