// CIM_IPAssignmentSettingData: address by DHCP, or a static one.
#include "network/ip_assignment.h"
#include "provider_helper/network.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_IPAssignmentSettingDataKeyList[1] = {"InstanceID"};

namespace ph::ip_assignment_setting {
namespace {

using Record = IPAssignmentSettingDataRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, AddressOrigin),
};

int enumerate(RecordArray<Record>& settings, Detail) {
    for (const bool isStatic : {false, true}) {
        Record* setting = settings.append();
        if (setting == nullptr || PH_Fill_IPAssignmentSettingData(setting, isStatic) != 0)
            return -1;
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_IPAssignmentSettingData",
                                             .superclass = "CIM_SettingData",
                                             .source = "two fixed instances",
                                             .keys = g_IPAssignmentSettingDataKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::ip_assignment_setting

int PH_Fill_IPAssignmentSettingData(IPAssignmentSettingDataRecord* record, int isStatic) {
    ph::copyText(record->InstanceID, isStatic != 0 ? ph::staticAssignment : ph::dhcpAssignment);
    ph::copyText(record->ElementName, isStatic != 0 ? "Static IP Configuration" : "DHCP IP Configuration");
    record->AddressOrigin = isStatic != 0 ? 3 : 4; // static, DHCP
    return 0;
}

PH_EXPORT_CLASS_FAMILY(IPAssignmentSettingData, IPAssignmentSettingDataRecord,
                       ph::ip_assignment_setting::definition)
