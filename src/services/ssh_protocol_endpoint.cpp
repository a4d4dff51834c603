// CIM_SSHProtocolEndpoint: the sessions of the SSH service.
#include "services/login_service.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_SSHProtocolEndpointKeyList[4] = {
    ph::loginEndpointKeys[0], ph::loginEndpointKeys[1], ph::loginEndpointKeys[2], ph::loginEndpointKeys[3]};

namespace ph::ssh_protocol_endpoint {
namespace {

using Record = LoginEndpointRecord;

// A session has the version that is enabled, where it is one.
std::uint16_t version(const Record& session) {
    const auto& enabled = session.ssh.EnabledSSHVersions;
    return enabled[0] != noSlot && enabled[1] == noSlot ? enabled[0] : std::uint16_t{SSHVersion::Unknown};
}
// Client and server agree on one of those enabled, and nobody tells on which.
std::uint16_t algorithm(const Record&) {
    return EncryptionAlgorithm::Unknown;
}

constexpr Property ownProperties[] = {
    PH_COMPUTED("SSHVersion", version),
    PH_COMPUTED("EncryptionAlgorithm", algorithm),
};
constexpr auto properties = joined(joined(loginEndpointProperties, ownProperties), ssh::properties<Record>);

constexpr auto definition = defineSessions<sshLogin>("Get Service Configuration (OEM); /etc/ssh/sshd_config",
                                                     g_SSHProtocolEndpointKeyList, properties);

} // namespace
} // namespace ph::ssh_protocol_endpoint

PH_EXPORT_CLASS_FAMILY(SSHProtocolEndpoint, LoginEndpointRecord, ph::ssh_protocol_endpoint::definition)

int PH_Fill_SSHProtocolEndpoint(const CIM_ServiceConf* conf, LoginEndpointRecord* record) {
    return ph::guarded(-1, [&] { return ph::fillSession(ph::sshLogin, *conf, *record); });
}
