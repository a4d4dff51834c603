// CIM_BootSourceSetting: what the host can be told to boot from.
#include "boot/boot_choice.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_BootSourceSettingKeyList[1] = {"InstanceID"};

namespace ph::boot_source_setting {
namespace {

using Record = BootSourceSettingRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, StructuredBootString),
    PH_PROPERTY(Record, FailThroughSupported),
};

bool append(RecordArray<Record>& records, const boot::Source& source) {
    Record* record = records.append();
    if (record == nullptr)
        return false;
    copyText(record->InstanceID, source.instanceId);
    copyText(record->ElementName, source.elementName);
    record->StructuredBootString = source.structuredBootString;
    record->FailThroughSupported = FailThroughSupported::Unknown;
    return true;
}

int enumerate(RecordArray<Record>& records, Detail) {
    return boot::appendAll(records, boot::sources(), append);
}

constexpr ClassDefinition<Record> definition{
    .name = "CIM_BootSourceSetting",
    .superclass = "CIM_SettingData",
    .source = "the device selectors of the boot flags (system boot options, parameter 5)",
    .keys = g_BootSourceSettingKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::boot_source_setting

PH_EXPORT_CLASS_FAMILY(BootSourceSetting, BootSourceSettingRecord, ph::boot_source_setting::definition)
