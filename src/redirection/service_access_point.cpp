#include "redirection/service_access_point.h"

#include "provider_helper/services.h"
#include "Utility/values/text_writer.h"

#include <cstdio>

namespace ph::redirection {
namespace {

void describe(const CIM_ServiceConf& conf, RedirectionSAPRecord& record) {
    TextWriter description(record.Description);
    if (conf.port != 0)
        description.text("TCP port ").number(conf.port).text("; ");
    if (conf.securePort != 0)
        description.text(conf.port != 0 ? "with encryption " : "TCP port with encryption ")
            .number(conf.securePort)
            .text("; ");
    description.number(conf.activeSessions).text(" of ").number(conf.maxSessions).text(" sessions");
}

// Writes DMTF's form of an interval.
void writeInterval(char (&field)[26], unsigned seconds) {
    std::snprintf(field, sizeof(field), "00000000%02u%02u%02u.000000:000", seconds / 3600 % 24,
                  seconds / 60 % 60, seconds % 60);
}

std::optional<CIM_ServiceConf> fill(const AccessPointRow& row, IPMI20_SESSION_T* session,
                                    RedirectionSAPRecord& record) {
    copyText(record.ElementName, row.elementName);
    const auto conf = readService(session, row.bit);
    setState(record, conf ? stateOf(conf->currentState != 0, conf->activeSessions != 0)
                          : std::uint16_t{EnabledState::Unknown});
    if (conf)
        describe(*conf, record);
    return conf;
}

} // namespace

int fillAccessPoint(const char* className, IPMI20_SESSION_T* session, RedirectionSAPRecord& record) {
    const AccessPointRow* row = findRow(accessPointRows(), className, record.Name);
    if (row == nullptr)
        return -1;
    fill(*row, session, record);
    return 0;
}

int fillDrive(const char* className, IPMI20_SESSION_T* session, RedirectionSAPRecord& record) {
    const AccessPointRow* row = findRow(accessPointRows(), className, record.Name);
    if (row == nullptr)
        return -1;
    const auto conf = fill(*row, session, record);
    record.ConnectionMode = ConnectionMode::Listen;
    if (conf && conf->timeout != 0)
        writeInterval(record.SessionTimeout, conf->timeout);
    return 0;
}

MethodAnswer changeAccessPoint(MethodCall& call) {
    const char* const name = call.key(nameKey);
    if (name == nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Key Value Missing");
    std::uint16_t state = 0;
    if (!call.readRequestedState(state))
        return std::nullopt;
    if (state != RequestedState::Enabled && state != RequestedState::Disabled)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "The access point has no such state");
    // The keys were found to be those of an instance of the class, and no two classes share a name.
    const char* service = nullptr;
    for (const AccessPointRow& row : accessPointRows())
        if (std::strcmp(row.name, name) == 0)
            service = row.service;
    char jobName[64];
    TextWriter(jobName).text(name).text("_").text(requestStateChange);
    char message[PH_SERVICE_MESSAGE_SIZE];
    return call.report(jobName, [&] {
        return service != nullptr && PH_Set_ProtocolService_EnabledState(service, state, message) == 0;
    });
}

} // namespace ph::redirection
