// CIM_TextRedirectionSAP: each instance of Serial over LAN that can be active.
#include "redirection/access_point.h"
#include "redirection/sol.h"
#include "Utility/values/text_writer.h"

#include <algorithm>

constexpr const char* const g_TextRedirectionSAPKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace ph::text_redirection_sap {
namespace {

using Record = RedirectionSAPRecord;
using redirection::Sol;

constexpr const char* className = "CIM_TextRedirectionSAP";

// A session ends with a message (Deactivate Payload), not with anything in its text.
const char* terminateSequence(const Record&) {
    return "";
}

constexpr Property textProperties[] = {
    PH_COMPUTED("SessionTerminateSequence", terminateSequence),
    PH_PROPERTY(Record, TextFlowType),
};
constexpr auto properties = joined(redirection::accessPointProperties, textProperties);

bool isActive(const CIM_SOLActivation& activation, std::uint8_t instance) {
    return (activation.active >> (instance - 1) & 1) != 0;
}

// A BMC that does not tell how often SOL can be active has it once.
int enumerate(RecordArray<Record>& accessPoints, Detail detail) {
    char systemName[256] = "";
    Sol sol;
    if (PH_GetSPSystemName(systemName) != 0 || !sol.read())
        return -1;
    if (!sol.isThere())
        return 0;
    const CIM_SOLActivation activation = sol.activation();
    const std::uint8_t capacity = std::clamp<std::uint8_t>(activation.capacity, 1, CIM_MAX_SOL_INSTANCES);
    for (std::uint8_t number = 1; number <= capacity; ++number) {
        Record* accessPoint = accessPoints.append();
        if (accessPoint == nullptr)
            return -1;
        setHostedKeys(*accessPoint, processorClass, systemName, className);
        TextWriter(accessPoint->Name).text("TextRedirectionSAP-").number(number);
        if (detail == Detail::Names)
            continue;
        const auto instance = isActive(activation, number) ? sol.instance(number) : std::nullopt;
        PH_Fill_TextRedirectionSAP(number, sol.isEnabled(), &activation, instance ? &*instance : nullptr,
                                   accessPoint);
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ServiceAccessPoint",
    .source = "Get Payload Activation Status, Get Payload Instance Info; Get SOL Configuration Parameters",
    .keys = g_TextRedirectionSAPKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::text_redirection_sap

PH_EXPORT_CLASS_FAMILY(TextRedirectionSAP, RedirectionSAPRecord, ph::text_redirection_sap::definition)

int PH_Fill_TextRedirectionSAP(uint8_t instance, bool isEnabled, const CIM_SOLActivation* activation,
                               const CIM_SOLInstance* sol, RedirectionSAPRecord* record) {
    const bool isTold = activation->isSupported != 0 || !isEnabled;
    ph::TextWriter(record->ElementName).text("Serial over LAN ").number(instance);
    if (sol != nullptr && sol->serialPort != 0)
        ph::TextWriter(record->Description).text("serial port ").number(sol->serialPort);
    ph::redirection::setState(
        *record, isTold ? ph::redirection::stateOf(isEnabled,
                                                   ph::text_redirection_sap::isActive(*activation, instance))
                        : std::uint16_t{ph::EnabledState::Unknown});
    record->TextFlowType = ph::TextFlowType::CharacterStream;
    return 0;
}
