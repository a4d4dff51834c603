// CIM_RedirectionServiceCapabilities: of Serial over LAN, where there is any, and of KVM.
#include "redirection/capabilities.h"
#include "redirection/sol.h"

constexpr const char* const g_RedirectionServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::redirection_service_capabilities {
namespace {

using Record = RedirectionCapabilitiesRecord;

int enumerate(RecordArray<Record>& all, Detail detail) {
    redirection::Sol sol;
    if (!sol.read())
        return -1;
    const bool asksMore = detail == Detail::All;
    if (sol.isThere()) {
        Record* text = redirection::append(all, "Text", asksMore ? sol.activation().capacity : 0);
        if (text == nullptr)
            return -1;
        setList(text->RequestedStatesSupported, {RequestedState::Enabled, RequestedState::Disabled});
    }
    const unsigned sessions =
        asksMore ? redirection::mostSessions(sol.session(), redirection::kvmServices) : 0;
    return redirection::append(all, "KVM", sessions) != nullptr ? 0 : -1;
}

constexpr ClassDefinition<Record> definition{
    .name = "CIM_RedirectionServiceCapabilities",
    .superclass = "CIM_EnabledLogicalElementCapabilities",
    .source =
        "Get SOL Configuration Parameters, Get Payload Activation Status; Get Service Configuration (OEM)",
    .keys = g_RedirectionServiceCapabilitiesKeyList,
    .properties = redirection::capabilitiesProperties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::redirection_service_capabilities

PH_EXPORT_CLASS_FAMILY(RedirectionServiceCapabilities, RedirectionCapabilitiesRecord,
                       ph::redirection_service_capabilities::definition)
