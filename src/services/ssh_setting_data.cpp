// CIM_SSHSettingData: what sessions of the SSH service are set to.
#include "services/login_service.h"

constexpr const char* const g_SSHSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_SSHSettingData;
}

namespace ph::ssh_setting_data {
namespace {

constexpr auto properties = joined(loginSettingProperties, ssh::properties<LoginSettingRecord>);

constexpr auto definition = defineSettings<sshLogin, family_SSHSettingData>(
    "CIM_SSHSettingData", "Get and Set Service Configuration (OEM); /etc/ssh/sshd_config",
    g_SSHSettingDataKeyList, properties);

} // namespace
} // namespace ph::ssh_setting_data

PH_EXPORT_CLASS_FAMILY(SSHSettingData, LoginSettingRecord, ph::ssh_setting_data::definition)

int PH_Fill_SSHSettingData(const CIM_ServiceConf* conf, LoginSettingRecord* record) {
    return ph::guarded(-1, [&] { return ph::fillSetting(ph::sshLogin, *conf, *record); });
}
