// CIM_TelnetProtocolEndpoint: the sessions of the Telnet service.
#include "services/login_service.h"

constexpr const char* const g_TelnetProtocolEndpointKeyList[4] = {
    ph::loginEndpointKeys[0], ph::loginEndpointKeys[1], ph::loginEndpointKeys[2], ph::loginEndpointKeys[3]};

namespace ph::telnet_protocol_endpoint {
namespace {

using Record = LoginEndpointRecord;

// Nobody tells what a session's terminal is like (CIM_TelnetProtocolEndpoint.TerminalMode: 0 unknown).
std::uint16_t unknown(const Record&) {
    return 0;
}

constexpr Property ownProperties[] = {
    PH_COMPUTED("TerminalMode", unknown),
    PH_COMPUTED("CharacterDisplayMode", unknown),
};
constexpr auto properties = joined(loginEndpointProperties, ownProperties);

constexpr auto definition = defineSessions<telnetLogin>("Get Service Configuration (OEM)",
                                                        g_TelnetProtocolEndpointKeyList, properties);

} // namespace
} // namespace ph::telnet_protocol_endpoint

PH_EXPORT_CLASS_FAMILY(TelnetProtocolEndpoint, LoginEndpointRecord, ph::telnet_protocol_endpoint::definition)

int PH_Fill_TelnetProtocolEndpoint(const CIM_ServiceConf* conf, LoginEndpointRecord* record) {
    return ph::fillSession(ph::telnetLogin, *conf, *record);
}
