// CIM_TelnetSettingData: what sessions of the Telnet service are set to.
#include "services/login_service.h"

constexpr const char* const g_TelnetSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_TelnetSettingData;
}

namespace ph::telnet_setting_data {
namespace {

constexpr auto definition = defineSettings<telnetLogin, family_TelnetSettingData>(
    "CIM_TelnetSettingData", "Get and Set Service Configuration (OEM)", g_TelnetSettingDataKeyList,
    loginSettingProperties);

} // namespace
} // namespace ph::telnet_setting_data

PH_EXPORT_CLASS_FAMILY(TelnetSettingData, LoginSettingRecord, ph::telnet_setting_data::definition)

int PH_Fill_TelnetSettingData(const CIM_ServiceConf* conf, LoginSettingRecord* record) {
    return ph::fillSetting(ph::telnetLogin, *conf, *record);
}
