// CIM_TelnetSettingData: what sessions of the Telnet service are set to.
#include "services/login_service.h"

constexpr const char* const g_TelnetSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_TelnetSettingData;
}

namespace {

constexpr auto definition = ph::defineSettings<ph::telnetLogin, ph::family_TelnetSettingData>(
    "CIM_TelnetSettingData", "Get and Set Service Configuration (OEM)", g_TelnetSettingDataKeyList,
    ph::loginSettingProperties);

} // namespace

PH_EXPORT_CLASS_FAMILY(TelnetSettingData, LoginSettingRecord, definition)

int PH_Fill_TelnetSettingData(const CIM_ServiceConf* conf, LoginSettingRecord* record) {
    return ph::fillSetting(ph::telnetLogin, *conf, *record);
}
