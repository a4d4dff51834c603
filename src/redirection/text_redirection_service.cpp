// CIM_TextRedirectionService: Serial over LAN on each LAN channel.
#include "redirection/redirection_service.h"
#include "redirection/sol.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/text_writer.h"

#include <algorithm>
#include <cstdlib>

constexpr const char* const g_TextRedirectionServiceKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace ph::text_redirection_service {
namespace {

using Record = RedirectionServiceRecord;
using redirection::Sol;

constexpr const char* className = "CIM_TextRedirectionService";
constexpr std::string_view namePrefix = "TextRedirectionService*Channel-";

int enumerate(RecordArray<Record>& services, Detail detail) {
    char systemName[256] = "";
    Sol sol;
    if (PH_GetSPSystemName(systemName) != 0 || !sol.read())
        return -1;
    const bool asksMore = detail == Detail::All && sol.isThere();
    const CIM_SOLActivation activation = asksMore ? sol.activation() : CIM_SOLActivation{};
    for (const auto& [channel, config] : sol.channels()) {
        Record* service = services.append();
        if (service == nullptr)
            return -1;
        setHostedKeys(*service, processorClass, systemName, className);
        TextWriter(service->Name).text(namePrefix).number(channel);
        if (asksMore)
            PH_Fill_TextRedirectionService(channel, &config, &activation, service);
    }
    return 0;
}

const char* privilegeName(std::uint8_t privilege) {
    constexpr const char* names[] = {"Callback", "User", "Operator", "Administrator", "OEM"};
    return privilege >= 1 && privilege <= std::size(names) ? names[privilege - 1] : nullptr;
}

// ---- RequestStateChange

// The channel that the name of a service tells. It was found among those that there are.
std::uint8_t channelOf(const char* name) {
    return static_cast<std::uint8_t>(std::strtoul(name + namePrefix.size(), nullptr, 10));
}

bool enable(std::uint8_t channel, bool isEnabled) {
    IpmiSession session;
    return session.open() && CIM_SetSOLEnable(session.get(), channel, isEnabled, hookTimeout) == 0;
}

MethodAnswer changeState(MethodCall& call) {
    using namespace RequestedState;
    const char* const name = call.key(redirection::nameKey);
    if (name == nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Key Value Missing");
    std::uint16_t state = 0;
    if (!call.readRequestedState(state))
        return std::nullopt;
    if (state != Enabled && state != Disabled)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "The service has no such state");
    char jobName[64];
    TextWriter(jobName).text(name).text("_").text(requestStateChange);
    return call.report(jobName, [&] { return enable(channelOf(name), state == Enabled); });
}

constexpr Method methods[] = {{.name = requestStateChange,
                               .parameters = requestStateChangeParameters,
                               .carryOut = changeState,
                               .job = JobReport{}}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_RedirectionService",
    .source = "Get and Set SOL Configuration Parameters 1, 2, 6 and 8; Get Payload Activation Status",
    .keys = g_TextRedirectionServiceKeyList,
    .properties = redirection::serviceProperties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = noSuchInstance}};

} // namespace
} // namespace ph::text_redirection_service

PH_EXPORT_CLASS_FAMILY(TextRedirectionService, RedirectionServiceRecord,
                       ph::text_redirection_service::definition)

int PH_Fill_TextRedirectionService(uint8_t channel, const CIM_SOLConfig* config,
                                   const CIM_SOLActivation* activation, RedirectionServiceRecord* record) {
    ph::TextWriter(record->ElementName).text("Serial over LAN on channel ").number(channel);
    ph::TextWriter description(record->Description);
    description.text(record->ElementName);
    if (config->port != 0)
        description.text("; UDP port ").number(config->port);
    if (config->bitRate != 0)
        description.text("; ").number(config->bitRate).text(" bit/s");
    if (const char* const privilege = ph::text_redirection_service::privilegeName(config->privilege))
        description.text("; privilege level ").text(privilege);
    if (config->forcesEncryption != 0)
        description.text("; encryption required");
    if (config->forcesAuthentication != 0)
        description.text("; authentication required");
    ph::redirection::setState(*record, config->isEnabled != 0 ? ph::EnabledState::Enabled
                                                              : ph::EnabledState::Disabled);
    ph::setList(record->RedirectionServiceType, {ph::RedirectionServiceType::Text});
    record->MaxCurrentEnabledSAPs = activation->capacity;
    record->SharingMode = ph::redirection::sharingMode(activation->capacity);
    return 0;
}
