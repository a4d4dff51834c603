// CIM_RedirectionServiceCapabilities: of Serial over LAN, where there is any, and of KVM.
#include "redirection/capabilities.h"
#include "redirection/sol.h"

constexpr const char* const g_RedirectionServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

using Record = RedirectionCapabilitiesRecord;

int enumerate(ph::RecordArray<Record>& all, ph::Detail detail) {
    ph::redirection::Sol sol;
    if (!sol.read())
        return -1;
    const bool asksMore = detail == ph::Detail::All;
    if (sol.isThere()) {
        Record* text = ph::redirection::append(all, "Text", asksMore ? sol.activation().capacity : 0);
        if (text == nullptr)
            return -1;
        ph::setList(text->RequestedStatesSupported,
                    {ph::RequestedState::Enabled, ph::RequestedState::Disabled});
    }
    const unsigned sessions =
        asksMore ? ph::redirection::mostSessions(sol.session(), ph::redirection::kvmServices) : 0;
    return ph::redirection::append(all, "KVM", sessions) != nullptr ? 0 : -1;
}

constexpr ph::ClassDefinition<Record> definition{
    .name = "CIM_RedirectionServiceCapabilities",
    .superclass = "CIM_EnabledLogicalElementCapabilities",
    .source =
        "Get SOL Configuration Parameters, Get Payload Activation Status; Get Service Configuration (OEM)",
    .keys = g_RedirectionServiceCapabilitiesKeyList,
    .properties = ph::redirection::capabilitiesProperties,
    .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(RedirectionServiceCapabilities, Record, definition)
