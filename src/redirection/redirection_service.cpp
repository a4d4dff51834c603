// CIM_RedirectionService: KVM and media.
#include "redirection/media_redirection_service.h"

constexpr const char* const g_RedirectionServiceKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace {

constexpr ph::redirection::ServiceClass serviceClass{ph::redirection::redirectionServiceClass,
                                                     PH_Fill_RedirectionService};
constexpr auto definition = ph::redirection::define<serviceClass>("CIM_Service", g_RedirectionServiceKeyList);

} // namespace

PH_EXPORT_CLASS_FAMILY(RedirectionService, RedirectionServiceRecord, definition)

int PH_Fill_RedirectionService(IPMI20_SESSION_T* session, RedirectionServiceRecord* record) {
    return ph::redirection::fillService(serviceClass.name, session, *record);
}
