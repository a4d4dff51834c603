#include "services/login_service.h"

#include "services/service_record.h"
#include "services/ssh_options.h"
#include "Utility/engine/changed_record.h"
#include "Utility/requests/request_status.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

namespace ph {
namespace {

constexpr const char* notWritten = "The BMC refuses the settings";

constexpr Settable settables[] = {{"IdleTimeout", 0, 0xFFFF}};

// Reads the record of the service, where that is the one that these classes are about.
bool readOwn(IPMI20_SESSION_T* session, const LoginService& login, ServiceRecord& record) {
    return readServiceRecord(session, *findService(login.service), record) && record.isOurs;
}

template <class Record>
int fillCommon(const LoginService& login, const CIM_ServiceConf& conf, Record& record) {
    record.IdleTimeout = conf.timeout;
    return login.hasSshdConfig ? readSshOptions(record.ssh) : 0;
}

} // namespace

int enumerateSessions(const LoginService& login, RecordArray<LoginEndpointRecord>& sessions, Detail detail) {
    char systemName[256] = "";
    IpmiSession bmc;
    ServiceRecord record;
    if (PH_GetSPSystemName(systemName) != 0 || !bmc.open())
        return -1;
    const int count = readOwn(bmc.get(), login, record) ? record.conf.activeSessions : 0;
    for (int number = 1; number <= count; ++number) {
        LoginEndpointRecord* session = sessions.append();
        if (session == nullptr)
            return -1;
        setHostedKeys(*session, processorClass, systemName, login.endpointClass);
        std::snprintf(session->Name, sizeof(session->Name), "%sProtocolEndpoint%d", login.title, number);
        if (detail == Detail::All && fillSession(login, record.conf, *session) != 0)
            return -1;
    }
    return 0;
}

int fillSession(const LoginService& login, const CIM_ServiceConf& conf, LoginEndpointRecord& session) {
    fillEndpoint(session, "ClassName[Instance Count]", login.title);
    std::snprintf(session.ElementName, sizeof(session.ElementName), "%s session", login.title);
    return fillCommon(login, conf, session);
}

int enumerateSettings(const LoginService& login, RecordArray<LoginSettingRecord>& settings, Detail detail) {
    IpmiSession bmc;
    ServiceRecord record;
    if (!bmc.open())
        return -1;
    if (!readOwn(bmc.get(), login, record))
        return 0;
    LoginSettingRecord* setting = settings.append();
    if (setting == nullptr)
        return -1;
    copyText(setting->InstanceID, login.setting);
    return detail == Detail::Names ? 0 : fillSetting(login, record.conf, *setting);
}

int fillSetting(const LoginService& login, const CIM_ServiceConf& conf, LoginSettingRecord& setting) {
    std::snprintf(setting.ElementName, sizeof(setting.ElementName), "%s Settings", login.title);
    return fillCommon(login, conf, setting);
}

CMPIStatus modifySetting(const LoginService& login, const ClassFamily& family, const Request& request) {
    ChangedRecord changed(family);
    if (const CMPIStatus status = changed.apply(request, settables);
        status.rc != CMPI_RC_OK || !changed.hasChanges())
        return status;
    IpmiSession bmc;
    ServiceRecord record;
    if (!bmc.open() || !readOwn(bmc.get(), login, record))
        return fail(request.broker, notWritten);
    CIM_ServiceSettings wanted = settingsOf(record.conf);
    wanted.timeout = static_cast<std::uint16_t>(changed.as<LoginSettingRecord>().IdleTimeout);
    return CIM_SetServiceConf(bmc.get(), findService(login.service)->bit, &wanted, hookTimeout) == 0
               ? success
               : fail(request.broker, notWritten);
}

} // namespace ph
