// CIM_BootSourceSetting: what the host can be told to boot from.
#include "boot/boot_choice.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_BootSourceSettingKeyList[1] = {"InstanceID"};

namespace {

using Record = BootSourceSettingRecord;
using ph::Property;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, StructuredBootString),
    PH_PROPERTY(Record, FailThroughSupported),
};

bool append(ph::RecordArray<Record>& records, const ph::boot::Source& source) {
    Record* record = records.append();
    if (record == nullptr)
        return false;
    ph::copyText(record->InstanceID, source.instanceId);
    ph::copyText(record->ElementName, source.elementName);
    record->StructuredBootString = source.structuredBootString;
    record->FailThroughSupported = ph::FailThroughSupported::Unknown;
    return true;
}

int enumerate(ph::RecordArray<Record>& records, ph::Detail) {
    return ph::boot::appendAll(records, ph::boot::sources(), append);
}

constexpr ph::ClassDefinition<Record> definition{
    .name = "CIM_BootSourceSetting",
    .superclass = "CIM_SettingData",
    .source = "the device selectors of the boot flags (system boot options, parameter 5)",
    .keys = g_BootSourceSettingKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(BootSourceSetting, Record, definition)
