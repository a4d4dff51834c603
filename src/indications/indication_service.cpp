// CIM_IndicationService: delivers the alerts.
#include "indications/delivery_settings.h"
#include "provider_helper/indications.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_IndicationServiceKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                             "SystemName", "Name"};

namespace ph {
extern const ClassFamily family_IndicationService;
}

namespace ph::indication_service {
namespace {

using namespace indications;
using Record = IndicationServiceRecord;

constexpr const char* className = "CIM_IndicationService";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, FilterCreationEnabled),
    PH_PROPERTY(Record, DeliveryRetryAttempts),
    PH_PROPERTY(Record, DeliveryRetryInterval),
    PH_PROPERTY(Record, SubscriptionRemovalAction),
    PH_PROPERTY(Record, SubscriptionRemovalTimeInterval),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, Started),
};

int enumerate(RecordArray<Record>& services, Detail detail) {
    char systemName[256] = "";
    if (PH_GetSPSystemName(systemName) != 0)
        return -1;
    return forEachService([&](const IndicationServiceRow& row) {
        Record* service = append(services, className, systemName, row.name);
        if (service == nullptr)
            return -1;
        return detail == Detail::Names ? 0 : PH_Fill_IndicationService(&row, service);
    });
}

CMPIStatus modify(const Request& request) {
    return modifyDelivery(request, family_IndicationService, &Record::Name);
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_Service",
                                             .source = "table indication_service",
                                             .keys = g_IndicationServiceKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .modify = modify,
                                             .isInInterop = true};

} // namespace
} // namespace ph::indication_service

PH_EXPORT_CLASS_FAMILY(IndicationService, IndicationServiceRecord, ph::indication_service::definition)

int PH_Fill_IndicationService(const IndicationServiceRow* row, IndicationServiceRecord* record) {
    ph::indications::fillDelivery(*record, *row);
    ph::fillService(*record, row->name);
    return 0;
}
