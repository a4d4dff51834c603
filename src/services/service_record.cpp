#include "services/service_record.h"

#include <cstring>

namespace ph {

bool readServiceRecord(IPMI20_SESSION_T* session, const Service& service, ServiceRecord& record) {
    record = {};
    if (CIM_GetServiceConf(session, service.bit, &record.conf, hookTimeout) != 0)
        return false;
    record.isOurs = std::strncmp(record.conf.name, service.word, sizeof(record.conf.name)) == 0;
    return true;
}

std::uint16_t portOf(const CIM_ServiceConf& conf, bool isEncrypted) {
    if (!isEncrypted)
        return conf.port;
    return conf.securePort != conf.port ? conf.securePort : std::uint16_t{0};
}

CIM_ServiceSettings settingsOf(const CIM_ServiceConf& conf) {
    CIM_ServiceSettings settings{};
    static_assert(sizeof(settings.name) == sizeof(conf.name));
    std::memcpy(settings.name, conf.name, sizeof(settings.name));
    settings.enable = conf.currentState != 0;
    settings.port = conf.port;
    settings.securePort = conf.securePort;
    settings.timeout = conf.timeout;
    settings.maxSessions = conf.maxSessions;
    return settings;
}

} // namespace ph
