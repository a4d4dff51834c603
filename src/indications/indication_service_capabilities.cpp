// CIM_IndicationServiceCapabilities: what of the indication service clients may change.
#include "provider_helper/indications.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_IndicationServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::indication_service_capabilities {
namespace {

using Record = IndicationServiceCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, FilterCreationEnabledIsSettable),
    PH_PROPERTY(Record, DeliveryRetryAttemptsIsSettable),
    PH_PROPERTY(Record, DeliveryRetryIntervalIsSettable),
    PH_PROPERTY(Record, SubscriptionRemovalActionIsSettable),
    PH_PROPERTY(Record, SubscriptionRemovalTimeIntervalIsSettable),
};

int enumerate(RecordArray<Record>& all, Detail detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, "IndicationServiceCapabilities1");
    return detail == Detail::Names ? 0 : PH_Fill_IndicationServiceCapabilities(capabilities);
}

constexpr ClassDefinition<Record> definition{.name = "CIM_IndicationServiceCapabilities",
                                             .superclass = "CIM_Capabilities",
                                             .source = "one fixed instance",
                                             .keys = g_IndicationServiceCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .isInInterop = true};

} // namespace
} // namespace ph::indication_service_capabilities

PH_EXPORT_CLASS_FAMILY(IndicationServiceCapabilities, IndicationServiceCapabilitiesRecord,
                       ph::indication_service_capabilities::definition)

int PH_Fill_IndicationServiceCapabilities(IndicationServiceCapabilitiesRecord* record) {
    ph::copyText(record->ElementName, "Indication Service Capabilities");
    record->DeliveryRetryAttemptsIsSettable = true;
    record->DeliveryRetryIntervalIsSettable = true;
    return 0;
}
