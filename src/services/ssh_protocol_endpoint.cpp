// CIM_SSHProtocolEndpoint: the sessions of the SSH service.
#include "services/login_service.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_SSHProtocolEndpointKeyList[4] = {
    ph::loginEndpointKeys[0], ph::loginEndpointKeys[1], ph::loginEndpointKeys[2], ph::loginEndpointKeys[3]};

namespace {

using Record = LoginEndpointRecord;

// A session has the version that is enabled, where it is one.
std::uint16_t version(const Record& session) {
    const auto& enabled = session.ssh.EnabledSSHVersions;
    return enabled[0] != ph::noSlot && enabled[1] == ph::noSlot ? enabled[0]
                                                                : std::uint16_t{ph::SSHVersion::Unknown};
}
// Client and server agree on one of those enabled, and nobody tells on which.
std::uint16_t algorithm(const Record&) {
    return ph::EncryptionAlgorithm::Unknown;
}

constexpr ph::Property ownProperties[] = {
    PH_COMPUTED("SSHVersion", version),
    PH_COMPUTED("EncryptionAlgorithm", algorithm),
};
constexpr auto properties =
    ph::joined(ph::joined(ph::loginEndpointProperties, ownProperties), ph::ssh::properties<Record>);

constexpr auto definition = ph::defineSessions<ph::sshLogin>(
    "Get Service Configuration (OEM); /etc/ssh/sshd_config", g_SSHProtocolEndpointKeyList, properties);

} // namespace

PH_EXPORT_CLASS_FAMILY(SSHProtocolEndpoint, Record, definition)

int PH_Fill_SSHProtocolEndpoint(const CIM_ServiceConf* conf, LoginEndpointRecord* record) {
    return ph::guarded(-1, [&] { return ph::fillSession(ph::sshLogin, *conf, *record); });
}
