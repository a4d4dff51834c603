// CIM_RecordLogCapabilities: what clients may expect of the event log.
#include "provider_helper/record_log.h"

#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_RecordLogCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::record_log_capabilities {
namespace {

using Record = RecordLogCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ElementNameEditSupported),
    PH_PROPERTY(Record, MaxElementNameLen),
    PH_PROPERTY(Record, RequestedStatesSupported),
    PH_PROPERTY(Record, SupportedRecordTypes),
};

int enumerate(RecordArray<Record>& all, Detail detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, "RecordLogCapabilities1");
    return detail == Detail::Names ? 0 : PH_Fill_RecordLogCapabilities(capabilities);
}

constexpr ClassDefinition<Record> definition{.name = "CIM_RecordLogCapabilities",
                                             .superclass = "CIM_EnabledLogicalElementCapabilities",
                                             .source = "one fixed instance",
                                             .keys = g_RecordLogCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::record_log_capabilities

int PH_Fill_RecordLogCapabilities(RecordLogCapabilitiesRecord* record) {
    ph::copyText(record->ElementName, "RecordLog Capabilities");
    record->ElementNameEditSupported = false;
    record->MaxElementNameLen = 0;
    ph::setList(record->RequestedStatesSupported, {});
    ph::setList(record->SupportedRecordTypes, {ph::SupportedRecordTypes::RecordData});
    return 0;
}

PH_EXPORT_CLASS_FAMILY(RecordLogCapabilities, RecordLogCapabilitiesRecord,
                       ph::record_log_capabilities::definition)
