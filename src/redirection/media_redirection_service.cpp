#include "redirection/media_redirection_service.h"

namespace ph::redirection {
namespace {

// One of them is enough for the service to be enabled; it is disabled when the BMC says so of each.
std::uint16_t stateOfServices(IPMI20_SESSION_T* session, std::span<const std::uint32_t> services) {
    bool isTold = true;
    for (const std::uint32_t bit : services) {
        const auto conf = readService(session, bit);
        if (conf && conf->currentState != 0)
            return EnabledState::Enabled;
        isTold = isTold && conf.has_value();
    }
    return isTold ? EnabledState::Disabled : EnabledState::Unknown;
}

} // namespace

int fillService(const char* className, IPMI20_SESSION_T* session, RedirectionServiceRecord& record) {
    const ServiceRow* row = findRow(serviceRows(), className, record.Name);
    if (row == nullptr)
        return -1;
    copyText(record.ElementName, row->elementName);
    setState(record, stateOfServices(session, row->services));
    setList(record.RedirectionServiceType, {row->type});
    record.MaxCurrentEnabledSAPs = static_cast<std::uint16_t>(row->services.size());
    record.SharingMode = sharingMode(mostSessions(session, row->services));
    return 0;
}

} // namespace ph::redirection
