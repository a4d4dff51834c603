// SSH and Telnet: services by which people log in to the BMC. Each is a row of data; their sessions and settings
// are the same.
#pragma once

#include "provider_helper/service_sessions.h"
#include "services/service_list.h"
#include "Utility/engine/processor_endpoint.h"

namespace ph {

struct LoginService {
    const char* service; // Name of the CIM_ProtocolService
    const char* title;
    const char* endpointClass;
    const char* setting; // InstanceID
    bool hasSshdConfig;
};
constexpr LoginService sshLogin{"SSHProtocolService", "SSH", "CIM_SSHProtocolEndpoint", "SSHSettingData",
                                true};
constexpr LoginService telnetLogin{"TelnetProtocolService", "Telnet", "CIM_TelnetProtocolEndpoint",
                                   "TelnetSettingData", false};

inline constexpr const char* loginEndpointKeys[4] = {"SystemCreationClassName", "CreationClassName",
                                                     "SystemName", "Name"};
inline constexpr Property loginOwnProperties[] = {PH_PROPERTY(LoginEndpointRecord, IdleTimeout)};
inline constexpr auto loginEndpointProperties =
    joined(endpointProperties<LoginEndpointRecord>, loginOwnProperties);
inline constexpr Property loginSettingProperties[] = {
    PH_KEY(LoginSettingRecord, InstanceID),
    PH_PROPERTY(LoginSettingRecord, ElementName),
    PH_PROPERTY(LoginSettingRecord, IdleTimeout),
};

int enumerateSessions(const LoginService& login, RecordArray<LoginEndpointRecord>& sessions, Detail detail);
int enumerateSettings(const LoginService& login, RecordArray<LoginSettingRecord>& settings, Detail detail);
int fillSession(const LoginService& login, const CIM_ServiceConf& conf, LoginEndpointRecord& session);
int fillSetting(const LoginService& login, const CIM_ServiceConf& conf, LoginSettingRecord& setting);
CMPIStatus modifySetting(const LoginService& login, const ClassFamily& family, const Request& request);

// Make the definitions of their classes.
template <const LoginService& login>
constexpr ClassDefinition<LoginEndpointRecord>
defineSessions(const char* source, std::span<const char* const> keys, std::span<const Property> properties) {
    return {.name = login.endpointClass,
            .superclass = "CIM_ProtocolEndpoint",
            .source = source,
            .keys = keys,
            .properties = properties,
            .enumerate = [](RecordArray<LoginEndpointRecord>& sessions, Detail detail) {
                return enumerateSessions(login, sessions, detail);
            }};
}
template <const LoginService& login, const ClassFamily& family>
constexpr ClassDefinition<LoginSettingRecord> defineSettings(const char* name, const char* source,
                                                             std::span<const char* const> keys,
                                                             std::span<const Property> properties) {
    return {.name = name,
            .superclass = "CIM_SettingData",
            .source = source,
            .keys = keys,
            .properties = properties,
            .enumerate = [](RecordArray<LoginSettingRecord>& settings,
                            Detail detail) { return enumerateSettings(login, settings, detail); },
            .modify = [](const Request& request) { return modifySetting(login, family, request); }};
}

// Properties of what sshd_config says.
namespace ssh {

template <class Record, std::uint8_t bit>
bool tells(const void* record) {
    return (static_cast<const Record*>(record)->ssh.told & bit) != 0;
}
#define PH_SSH_PROPERTY(field, ...)                                                                          \
    stored(#field, kindOf<decltype(SSHOptions::field)>(),                                                    \
           offsetof(Record, ssh) + offsetof(SSHOptions, field) __VA_OPT__(, ) __VA_ARGS__)
template <class Record>
inline constexpr Property properties[] = {
    PH_SSH_PROPERTY(EnabledSSHVersions),
    PH_SSH_PROPERTY(EnabledEncryptionAlgorithms),
    PH_SSH_PROPERTY(OtherEnabledEncryptionAlgorithm),
    PH_SSH_PROPERTY(KeepAlive, tells<Record, PH_SSH_TELLS_KEEP_ALIVE>),
    PH_SSH_PROPERTY(ForwardX11, tells<Record, PH_SSH_TELLS_FORWARD_X11>),
    PH_SSH_PROPERTY(Compression, tells<Record, PH_SSH_TELLS_COMPRESSION>),
};
#undef PH_SSH_PROPERTY

} // namespace ssh
} // namespace ph
