// CIM_IndicationServiceSettingData: what the indication service is set to.
#include "indications/delivery_settings.h"
#include "provider_helper/indications.h"

#include <cstdio>

constexpr const char* const g_IndicationServiceSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_IndicationServiceSettingData;
}

namespace {

using namespace ph::indications;
using Record = IndicationServiceSettingDataRecord;

constexpr const char* className = "CIM_IndicationServiceSettingData";

constexpr ph::Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, FilterCreationEnabled),
    PH_PROPERTY(Record, DeliveryRetryAttempts),
    PH_PROPERTY(Record, DeliveryRetryInterval),
    PH_PROPERTY(Record, SubscriptionRemovalAction),
    PH_PROPERTY(Record, SubscriptionRemovalTimeInterval),
};

int enumerate(ph::RecordArray<Record>& settings, ph::Detail detail) {
    return forEachService([&](const IndicationServiceRow& row) {
        Record* setting = settings.append();
        if (setting == nullptr)
            return -1;
        std::snprintf(setting->InstanceID, sizeof(setting->InstanceID), "%s Settings", row.name);
        return detail == ph::Detail::Names ? 0 : PH_Fill_IndicationServiceSettingData(&row, setting);
    });
}

CMPIStatus modify(const ph::Request& request) {
    return modifyDelivery(request, ph::family_IndicationServiceSettingData, &Record::serviceName);
}

constexpr ph::ClassDefinition<Record> definition{.name = className,
                                                 .superclass = "CIM_SettingData",
                                                 .source = "table indication_service",
                                                 .keys = g_IndicationServiceSettingDataKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate,
                                                 .modify = modify,
                                                 .isInInterop = true};

} // namespace

PH_EXPORT_CLASS_FAMILY(IndicationServiceSettingData, Record, definition)

int PH_Fill_IndicationServiceSettingData(const IndicationServiceRow* row,
                                         IndicationServiceSettingDataRecord* record) {
    fillDelivery(*record, *row);
    ph::copyText(record->ElementName, record->InstanceID);
    ph::copyText(record->serviceName, row->name);
    return 0;
}
