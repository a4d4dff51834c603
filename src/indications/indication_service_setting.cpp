// CIM_IndicationServiceSettingData: what the indication service is set to.
#include "indications/delivery_settings.h"
#include "provider_helper/indications.h"

#include <cstdio>

constexpr const char* const g_IndicationServiceSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_IndicationServiceSettingData;
}

namespace ph::indication_service_setting {
namespace {

using namespace indications;
using Record = IndicationServiceSettingDataRecord;

constexpr const char* className = "CIM_IndicationServiceSettingData";

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, FilterCreationEnabled),
    PH_PROPERTY(Record, DeliveryRetryAttempts),
    PH_PROPERTY(Record, DeliveryRetryInterval),
    PH_PROPERTY(Record, SubscriptionRemovalAction),
    PH_PROPERTY(Record, SubscriptionRemovalTimeInterval),
};

int enumerate(RecordArray<Record>& settings, Detail detail) {
    return forEachService([&](const IndicationServiceRow& row) {
        Record* setting = settings.append();
        if (setting == nullptr)
            return -1;
        std::snprintf(setting->InstanceID, sizeof(setting->InstanceID), "%s Settings", row.name);
        return detail == Detail::Names ? 0 : PH_Fill_IndicationServiceSettingData(&row, setting);
    });
}

CMPIStatus modify(const Request& request) {
    return modifyDelivery(request, family_IndicationServiceSettingData, &Record::serviceName);
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_SettingData",
                                             .source = "table indication_service",
                                             .keys = g_IndicationServiceSettingDataKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .modify = modify,
                                             .isInInterop = true};

} // namespace
} // namespace ph::indication_service_setting

PH_EXPORT_CLASS_FAMILY(IndicationServiceSettingData, IndicationServiceSettingDataRecord,
                       ph::indication_service_setting::definition)

int PH_Fill_IndicationServiceSettingData(const IndicationServiceRow* row,
                                         IndicationServiceSettingDataRecord* record) {
    ph::indications::fillDelivery(*record, *row);
    ph::copyText(record->ElementName, record->InstanceID);
    ph::copyText(record->serviceName, row->name);
    return 0;
}
